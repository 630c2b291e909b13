// Helpers for the C strings that the public interface takes, where null stands for "empty", and
// for the text forms the writers share.
#ifndef OVXMLLIB6_SRC_CORE_STRINGS_H
#define OVXMLLIB6_SRC_CORE_STRINGS_H

#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// The text, or "" for null.
inline const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

// Whether `text` is exactly one CDATA section, as text read with CDATA kept holds it: "<![CDATA["
// first, "]]>" last and nowhere before. Its content goes to `inner`. The writers put such text
// out as a section; any other text is plain text, whatever it begins with, so that no text can
// carry markup into a document.
inline bool IsOneCDataSection(std::string_view text, std::string_view& inner) {
  constexpr std::string_view kStart = "<![CDATA[";
  constexpr std::string_view kEnd = "]]>";
  if (text.size() < kStart.size() + kEnd.size() || text.compare(0, kStart.size(), kStart) != 0 ||
      text.compare(text.size() - kEnd.size(), kEnd.size(), kEnd) != 0) {
    return false;
  }
  inner = text.substr(kStart.size(), text.size() - kStart.size() - kEnd.size());
  return inner.find(kEnd) == std::string_view::npos;
}

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_STRINGS_H
