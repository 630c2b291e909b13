#include "metadata/Restriction.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <string>

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

bool NamespaceSatisfies(std::string_view ns, std::string_view restriction,
                        std::string_view targetNamespace) {
  std::string_view rest = restriction;
  while (true) {
    const std::size_t blank = rest.find(' ');
    const std::string_view token = rest.substr(0, blank);
    if (token == "##any") return true;
    if (token == "##other") {
      if (ns != targetNamespace) return true;
    } else if (token == "##local") {
      if (ns.empty()) return true;
    } else if (token == "##targetNamespace") {
      if (ns == targetNamespace) return true;
    } else if (ns == restriction) {
      return true;
    }
    if (blank == std::string_view::npos) return false;
    rest.remove_prefix(blank + 1);
  }
}

void RequireNamespace(std::string_view ns, std::string_view restriction,
                      std::string_view targetNamespace) {
  if (NamespaceSatisfies(ns, restriction, targetNamespace)) return;
  throw COvInvalidNamespaceException(FormatString(
      "Invalid namespace [%s]. The namespace must be one of [%s] where the target namespace is "
      "[%s]",
      std::string(ns).c_str(), std::string(restriction).c_str(),
      std::string(targetNamespace).c_str()));
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
