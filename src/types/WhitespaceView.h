// The whitespace rules as the conversions use them: the result is a view of the input when the
// rule changes nothing, and is built in a caller-supplied scratch string otherwise, so the common
// case (a value that is already clean) costs no allocation.
#ifndef OVXMLLIB6_SRC_TYPES_WHITESPACEVIEW_H
#define OVXMLLIB6_SRC_TYPES_WHITESPACEVIEW_H

#include "OvXmlLib6/types/WhitespaceUtils.h"

#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// s under the rule; either a view of s or of `scratch`, always the whole of one of them, so when
// s is a std::string the view's data() is terminated by a NUL. Throws COvException
// "Unknown WhitespaceRule" for a rule outside 0 to 3.
std::string_view ApplyRuleView(CWhitespaceUtils::WhitespaceRule rule, std::string_view s,
                               std::string& scratch);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_WHITESPACEVIEW_H
