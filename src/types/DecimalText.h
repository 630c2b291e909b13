// Exact arithmetic facts about decimal numbers written as text, for the facets: the order of two
// numbers of any length and their digit counts. The integer types, CDecimal and CBigInteger all
// print plain decimal text, so one routine compares any of them with a bound by value.
#ifndef OVXMLLIB6_SRC_TYPES_DECIMALTEXT_H
#define OVXMLLIB6_SRC_TYPES_DECIMALTEXT_H

#include "OvXmlLib6/types/Decimal.h"

#include <cstddef>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

enum class Order { kLess, kEqual, kGreater, kIncomparable };

// The order of a against b. Each is an optional sign, digits with an optional point (at least
// one digit) and an optional exponent; anything else (surrounding whitespace included) makes the
// pair kIncomparable. Minus zero equals zero.
Order CompareDecimalText(std::string_view a, std::string_view b);

// The digits of a plain decimal text as XML Schema counts them: `fraction` is the number of
// fraction digits without trailing zeros, `total` that plus the integer digits without leading
// zeros (so 0.0050 has total 3, fraction 3, and 120.0 has total 3, fraction 0).
void CountDecimalDigits(std::string_view text, int& total, int& fraction);

// What the library asks of a decimal beyond its public members.
struct CDecimalAccess {
  // The digits its storage has room for: what keeping it for reuse holds on to.
  static std::size_t StorageDigits(const CDecimal& value) { return value.StorageDigits(); }
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_DECIMALTEXT_H
