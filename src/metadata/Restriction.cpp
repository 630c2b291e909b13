#include "metadata/Restriction.h"

namespace OvXmlLib6 {
namespace detail {

namespace {
constexpr std::string_view kKeywords[] = {"##any", "##other", "##local", "##targetNamespace"};
}  // namespace

bool IsNamespaceKeyword(std::string_view text) {
  for (std::string_view keyword : kKeywords) {
    if (text == keyword) return true;
  }
  return false;
}

CSharedString SharedRestriction(const char* restriction) {
  static const CSharedString kShared[] = {
      CSharedString::Permanent(kKeywords[0]), CSharedString::Permanent(kKeywords[1]),
      CSharedString::Permanent(kKeywords[2]), CSharedString::Permanent(kKeywords[3])};
  if (restriction == nullptr) return CSharedString();
  const std::string_view text(restriction);
  for (std::size_t i = 0; i < sizeof kKeywords / sizeof kKeywords[0]; ++i) {
    if (text == kKeywords[i]) return kShared[i];
  }
  return CSharedString(text);
}

}  // namespace detail
}  // namespace OvXmlLib6
