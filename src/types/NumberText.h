// The parsers of the integer and real lexical forms, shared by the public conversions
// (CConversions::i4FromString, r8FromString, ...) and the Fast Infoset encoding algorithms, which
// read one whitespace-separated value of a list at a time. Both hand over a view of the text that
// is to be read (after the whitespace rule, or one value of the list).
//
// The syntax is that of the C library's strtol, strtoul and strtod: leading C-locale whitespace,
// one optional sign, decimal digits (for reals with an optional point and exponent), the text
// ending at its end or at a NUL byte. The printed forms are the conversions' ToString members,
// which the encoding algorithms call directly. Defined in ConversionsNumbers.cpp.
#ifndef OVXMLLIB6_SRC_TYPES_NUMBERTEXT_H
#define OVXMLLIB6_SRC_TYPES_NUMBERTEXT_H

#include <cstdint>
#include <limits>
#include <string_view>
#include <type_traits>

namespace OvXmlLib6 {
namespace detail {

// What an integer parse accepts and which type its messages name. The magnitude allowed after a
// "-" differs from the positive limit: the signed types reach one further, and the unsigned ones
// accept a "-" and negate modulo 2^n up to their own maximum, as strtoul does.
struct IntegerRange {
  std::uint64_t maxPositive;
  std::uint64_t maxNegative;  // the largest magnitude after a "-"
  const char* typeName;       // "i4", "ui8", ...
};

inline constexpr IntegerRange kI4Range{0x7FFFFFFFu, 0x80000000u, "i4"};
inline constexpr IntegerRange kUi4Range{0xFFFFFFFFu, 0xFFFFFFFFu, "ui4"};
inline constexpr IntegerRange kI8Range{0x7FFFFFFFFFFFFFFFu, 0x8000000000000000u, "i8"};
inline constexpr IntegerRange kUi8Range{0xFFFFFFFFFFFFFFFFu, 0xFFFFFFFFFFFFFFFFu, "ui8"};
// Fast Infoset's long algorithm carries i8, ui4 and ui8 values alike, so it takes every value of
// both 64-bit types (a negative one down to the i8 minimum) and reports failures as i8.
inline constexpr IntegerRange kI8OrUi8Range{0xFFFFFFFFFFFFFFFFu, 0x8000000000000000u, "i8"};

// The value of t as 64 bits, two's complement when negative, for the caller to cast to its type.
// The empty text is 0. Throws COvInvalidValueException "The value [%s] is to large to fit in a
// <type>" when the digits exceed the range (reported before anything that follows them, as
// strtol's range error is) and "The value [%s] can not be converted to a <type>" when t is not
// wholly such a number; %s is t.
std::uint64_t ParseInteger(std::string_view t, const IntegerRange& range);

// Throws COvInvalidValueException "The value [%s] is to large to fit in a <typeName>".
[[noreturn]] void ThrowTooLarge(std::string_view text, const char* typeName);

// value as the narrower type of the same signedness (i1, i2, ui1, ui2), or ThrowTooLarge with
// `text`, which is what the caller was given.
template <typename Narrow, typename Wide>
Narrow NarrowInteger(Wide value, std::string_view text, const char* typeName) {
  static_assert(std::is_signed_v<Narrow> == std::is_signed_v<Wide>, "same signedness");
  bool fits = value <= static_cast<Wide>(std::numeric_limits<Narrow>::max());
  if constexpr (std::is_signed_v<Narrow>) {
    fits = fits && value >= static_cast<Wide>(std::numeric_limits<Narrow>::min());
  }
  if (!fits) ThrowTooLarge(text, typeName);
  return static_cast<Narrow>(value);
}

// A real: the empty text is NaN; "NaN", "1.#QNAN" and "-NAN" give NaN and "INF" and "-INF" the
// infinities (whole text, case-sensitive); anything else is strtod's decimal form, without its
// hexadecimal form and words. Overflow gives an infinity and underflow zero, without error; for
// r4 a value beyond the float range rounds as IEEE narrowing does. Throws
// COvInvalidValueException "The value [%s] can not be converted to a r4" (r8); %s is t.
float ParseR4(std::string_view t);
double ParseR8(std::string_view t);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_NUMBERTEXT_H
