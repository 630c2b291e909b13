// Character classes of the ASCII bytes that the parsers of lexical forms test, independent of the
// C locale.
#ifndef OVXMLLIB6_SRC_TYPES_CHARCLASS_H
#define OVXMLLIB6_SRC_TYPES_CHARCLASS_H

namespace OvXmlLib6 {
namespace detail {

inline bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// isspace() of the C locale: space, tab, line feed, vertical tab, form feed, carriage return.
inline bool IsCSpace(char c) { return c == ' ' || (c >= '\t' && c <= '\r'); }

// The four whitespace characters of XML: space, tab, carriage return, line feed.
inline bool IsXmlSpace(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_CHARCLASS_H
