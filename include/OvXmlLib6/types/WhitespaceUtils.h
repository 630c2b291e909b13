// CWhitespaceUtils: the XML Schema whitespace facet (preserve, replace, collapse) applied to a
// lexical value. Only the four bytes space, tab, carriage return and line feed count as
// whitespace; every other byte, including those of multi-byte UTF-8 sequences, passes unchanged.
// Carriage returns are removed under every rule but WhitespaceRule_None.
#ifndef OVXMLLIB6_TYPES_WHITESPACEUTILS_H
#define OVXMLLIB6_TYPES_WHITESPACEUTILS_H

#include "OvXmlLib6/core/Export.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CWhitespaceUtils {
 public:
  // Held as a 32-bit integer, so that any number converts and an unknown rule can be refused.
  enum WhitespaceRule : std::int32_t {
    WhitespaceRule_None = 0,      // text passes unchanged
    WhitespaceRule_Preserve = 1,  // carriage returns removed
    WhitespaceRule_Replace = 2,   // CR removed; tab, LF and space each become one space
    WhitespaceRule_Collapse = 3   // as Replace, runs become one space, ends trimmed
  };

  // s after the rule. Throws COvException "Unknown WhitespaceRule" for a rule outside 0 to 3.
  static std::string ApplyRule(WhitespaceRule rule, const std::string& s);

  // s without carriage returns.
  static std::string Preserve(const std::string& s);
  // The first len bytes of p without carriage returns; len below 1 (or a null p) gives "".
  static std::string Preserve(const char* p, int len);
  // Carriage returns dropped; tab, line feed and space each written as one space.
  static std::string Replace(const std::string& s);
  // Carriage returns dropped outright (so "a\rb" becomes "ab"); runs of tab, line feed and space
  // become one space; leading and trailing whitespace removed.
  static std::string Collapse(const std::string& s);

  static bool IsWhiteSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_WHITESPACEUTILS_H
