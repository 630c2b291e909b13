// The text forms of the numbers and booleans that Fast Infoset's encoding algorithms carry, in
// the forms and with the messages of the library's value conversions: integers in decimal,
// reals as "%.7g" (float) and "%.16g" (double) with NaN, INF and -INF, booleans as true/false.
// Kept in this one place so that it can be switched to the shared conversions.
#ifndef OVXMLLIB6_SRC_FASTINFOSET_NUMBERTEXT_H
#define OVXMLLIB6_SRC_FASTINFOSET_NUMBERTEXT_H

#include <cstdint>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {
namespace numbertext {

// Decimal digits with a leading "-" when negative.
std::string FormatInteger(std::int64_t value);

// "NaN", "-INF", "INF", or the value printed like printf's "%.<precision>g".
std::string FormatReal(double value, int precision);

std::string FormatBoolean(bool value);

// Parse one value of an i2, i4 or i8 text (an optional sign and decimal digits; the empty text
// is 0). Failures throw COvInvalidValueException with the conversions' "can not be converted"
// and "is to large to fit" messages.
std::int16_t ParseI2(std::string_view text);
std::int32_t ParseI4(std::string_view text);
// Takes the whole range of both i8 and ui8 and returns the value's 64 bits, so that an unsigned
// 64-bit value travels as its two's complement.
std::uint64_t ParseI8OrUi8(std::string_view text);

// Parse a real: the empty text, "NaN", "1.#QNAN" and "-NAN" give NaN, "INF" and "-INF" the
// infinities, otherwise an optional sign, digits with an optional point and an optional
// exponent. Overflow gives an infinity and underflow zero. `typeName` ("r4" or "r8") names the
// type in the error message.
double ParseReal(std::string_view text, const char* typeName);

// "true" and "1" (true), "false" and "0" (false), the words in any case.
bool ParseBoolean(std::string_view text);

}  // namespace numbertext
}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_FASTINFOSET_NUMBERTEXT_H
