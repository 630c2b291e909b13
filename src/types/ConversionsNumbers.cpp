// Integers, reals, decimals and big integers. The parsers follow the C library's
// strtol/strtoul/strtod rules (leading whitespace, optional sign, decimal digits, the text ending
// at its end or at a NUL byte) but are written over string views without the C locale, errno or a
// terminating NUL; values that a 32-bit C `long` could not hold are refused explicitly with the
// same messages. The parsers are shared with the Fast Infoset encoding algorithms (NumberText.h).
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"
#include "types/CharClass.h"
#include "types/NumberText.h"
#include "types/WhitespaceView.h"

#include <cfloat>
#include <charconv>
#include <cmath>
#include <cstdio>
#include <limits>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

namespace {

// Whether a parse that stopped at `end` consumed the whole text: the C functions' end pointer
// stands on the terminating NUL or at the string's end.
bool EndsText(std::string_view t, std::size_t end) { return end == t.size() || t[end] == '\0'; }

[[noreturn]] void ThrowCannotConvert(std::string_view text, const char* typeName) {
  throw COvInvalidValueException(FormatString("The value [%s] can not be converted to a %s",
                                              std::string(text).c_str(), typeName));
}

// The position after the prefix of strtol and strtod: C-locale whitespace, one optional sign.
std::size_t SkipSpaceAndSign(std::string_view t, bool& negative) {
  std::size_t i = 0;
  while (i < t.size() && IsCSpace(t[i])) ++i;
  negative = i < t.size() && t[i] == '-';
  if (i < t.size() && (t[i] == '+' || negative)) ++i;
  return i;
}

// The special words of the real types, matched on the whole text.
bool SpecialReal(std::string_view t, double& value) {
  if (t == "NaN" || t == "1.#QNAN" || t == "-NAN") {
    value = std::numeric_limits<double>::quiet_NaN();
  } else if (t == "INF") {
    value = std::numeric_limits<double>::infinity();
  } else if (t == "-INF") {
    value = -std::numeric_limits<double>::infinity();
  } else {
    return false;
  }
  return true;
}

// The syntax of strtod without its hexadecimal and word forms: whitespace, sign, digits with an
// optional point (at least one digit), an optional exponent. Returns false when the text is not
// wholly such a number; an empty text or a text starting with NUL converts nothing and gives 0.
bool ScanReal(std::string_view t, double& value) {
  const std::size_t n = t.size();
  bool negative = false;
  std::size_t i = SkipSpaceAndSign(t, negative);
  const std::size_t mantissa = i;
  std::size_t digits = 0;
  // Decimal position of the first significant digit relative to the point, for telling an
  // overflow from an underflow when the value is out of range.
  long long magnitude = 0;
  bool significant = false;
  for (; i < n && IsDigit(t[i]); ++i, ++digits) {
    if (t[i] != '0') significant = true;
    if (significant) ++magnitude;
  }
  if (i < n && t[i] == '.') {
    for (++i; i < n && IsDigit(t[i]); ++i, ++digits) {
      if (t[i] != '0') significant = true;
      if (!significant) --magnitude;
    }
  }
  if (digits == 0) {
    value = 0.0;
    return EndsText(t, 0);
  }
  std::size_t end = i;
  long long exponent = 0;
  if (i < n && (t[i] == 'e' || t[i] == 'E')) {
    std::size_t j = i + 1;
    bool negativeExponent = false;
    if (j < n && (t[j] == '+' || t[j] == '-')) {
      negativeExponent = t[j] == '-';
      ++j;
    }
    if (j < n && IsDigit(t[j])) {
      for (; j < n && IsDigit(t[j]); ++j) {
        if (exponent < 1000000000) exponent = exponent * 10 + (t[j] - '0');
      }
      if (negativeExponent) exponent = -exponent;
      end = j;
    }
  }
  if (!EndsText(t, end)) return false;
  const auto result =
      std::from_chars(t.data() + mantissa, t.data() + end, value, std::chars_format::general);
  if (result.ec == std::errc::result_out_of_range) {
    value = magnitude + exponent > 0 ? std::numeric_limits<double>::infinity() : 0.0;
  } else if (result.ec != std::errc() || result.ptr != t.data() + end) {
    return false;
  }
  if (negative) value = -value;
  return true;
}

double ParseReal(std::string_view t, const char* typeName) {
  if (t.empty()) return std::numeric_limits<double>::quiet_NaN();
  double value = 0.0;
  if (!SpecialReal(t, value) && !ScanReal(t, value)) ThrowCannotConvert(t, typeName);
  return value;
}

}  // namespace

void ThrowTooLarge(std::string_view text, const char* typeName) {
  throw COvInvalidValueException(FormatString("The value [%s] is to large to fit in a %s",
                                              std::string(text).c_str(), typeName));
}

// The syntax of strtol: whitespace, one optional sign, decimal digits. Without digits nothing is
// consumed (the end is the text's start).
std::uint64_t ParseInteger(std::string_view t, const IntegerRange& range) {
  const std::size_t n = t.size();
  bool negative = false;
  std::size_t i = SkipSpaceAndSign(t, negative);
  const std::size_t firstDigit = i;
  // v * 10 + d stays below 2^64 while v < kLimit, or v == kLimit and d <= 5; compared with
  // constants rather than divided, since this loop is the whole cost of a parse.
  constexpr std::uint64_t kLimit = std::numeric_limits<std::uint64_t>::max() / 10;
  std::uint64_t v = 0;
  bool overflow = false;  // the digits exceed 2^64 - 1
  for (; i < n && IsDigit(t[i]); ++i) {
    const unsigned d = static_cast<unsigned>(t[i] - '0');
    if (v > kLimit || (v == kLimit && d > 5)) {
      overflow = true;
    } else {
      v = v * 10 + d;
    }
  }
  if (i == firstDigit) {
    if (!EndsText(t, 0)) ThrowCannotConvert(t, range.typeName);
    return 0;
  }
  if (overflow || v > (negative ? range.maxNegative : range.maxPositive)) {
    ThrowTooLarge(t, range.typeName);
  }
  if (!EndsText(t, i)) ThrowCannotConvert(t, range.typeName);
  // Negation in unsigned arithmetic covers the most negative value too.
  return negative ? 0 - v : v;
}

float ParseR4(std::string_view t) {
  const double value = ParseReal(t, "r4");
  // Narrowing a finite double beyond the float range is undefined, so the rounding that IEEE
  // arithmetic would do is spelt out: from half an ulp above FLT_MAX the result is infinite.
  if (std::isfinite(value) && std::fabs(value) > FLT_MAX) {
    const double halfUlpAboveMax = static_cast<double>(FLT_MAX) + std::ldexp(1.0, 103);
    const float limit =
        std::fabs(value) >= halfUlpAboveMax ? std::numeric_limits<float>::infinity() : FLT_MAX;
    return value < 0 ? -limit : limit;
  }
  return static_cast<float>(value);
}

double ParseR8(std::string_view t) { return ParseReal(t, "r8"); }

}  // namespace detail

namespace {

using detail::IsCSpace;
using detail::IsDigit;

// A format for one double: any text, "%%", and at most one conversion e, f, g or a (either case)
// with flags, a width and a precision given as digits. Anything else (a "*" or another
// conversion) would make the C library read an argument that is not there.
bool IsRealFormat(const char* format) {
  int conversions = 0;
  for (const char* p = format; *p != '\0'; ++p) {
    if (*p != '%') continue;
    ++p;
    if (*p == '%') continue;
    while (*p == '-' || *p == '+' || *p == ' ' || *p == '#' || *p == '0') ++p;
    while (IsDigit(*p)) ++p;
    if (*p == '.') {
      ++p;
      while (IsDigit(*p)) ++p;
    }
    if (*p == 'l') ++p;
    if (*p == '\0' || std::char_traits<char>::find("eEfFgGaA", 8, *p) == nullptr) return false;
    if (++conversions > 1) return false;
  }
  return true;
}

// `bufferSize` is the fixed buffer the value is printed into; a longer result is cut to fit.
std::string RealToString(double value, const char* format, int defaultPrecision,
                         std::size_t bufferSize) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char buffer[48];
  if (format == nullptr) {
    // "%.7g" / "%.16g": to_chars in general format with a precision prints the same text.
    const auto result = std::to_chars(buffer, buffer + sizeof buffer, value,
                                      std::chars_format::general, defaultPrecision);
    return std::string(buffer, result.ptr);
  }
  if (!IsRealFormat(format)) {
    throw COvInvalidParamException(
        FormatString("The format [%s] is not a format for one real value", format));
  }
  const int written = std::snprintf(buffer, bufferSize, format, value);
  if (written < 0) return std::string();
  return std::string(buffer,
                     std::min<std::size_t>(static_cast<std::size_t>(written), bufferSize - 1));
}

// atoi without its undefined overflow: leading whitespace, a sign, digits; saturates.
int ReadCount(const char* text) {
  std::size_t i = 0;
  while (IsCSpace(text[i])) ++i;
  bool negative = false;
  if (text[i] == '+' || text[i] == '-') negative = text[i++] == '-';
  long long value = 0;
  for (; IsDigit(text[i]); ++i) {
    value = value * 10 + (text[i] - '0');
    if (value > std::numeric_limits<int>::max()) value = std::numeric_limits<int>::max();
  }
  return static_cast<int>(negative ? -value : value);
}

template <typename Integer>
std::string IntegerToString(Integer value) {
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

template <typename Integer>
Integer IntegerFromString(const std::string& s, CWhitespaceUtils::WhitespaceRule rule,
                          const detail::IntegerRange& range) {
  std::string scratch;
  return static_cast<Integer>(detail::ParseInteger(detail::ApplyRuleView(rule, s, scratch), range));
}

}  // namespace

std::int8_t CConversions::i1FromString(const std::string& s, WhitespaceRule rule) {
  return detail::NarrowInteger<std::int8_t>(i4FromString(s, rule), s, "i1");
}

std::string CConversions::i1ToString(std::int8_t value) { return IntegerToString(int{value}); }

std::int16_t CConversions::i2FromString(const std::string& s, WhitespaceRule rule) {
  return detail::NarrowInteger<std::int16_t>(i4FromString(s, rule), s, "i2");
}

std::string CConversions::i2ToString(std::int16_t value) { return IntegerToString(int{value}); }

std::int32_t CConversions::i4FromString(const std::string& s, WhitespaceRule rule) {
  return IntegerFromString<std::int32_t>(s, rule, detail::kI4Range);
}

std::string CConversions::i4ToString(std::int32_t value) { return IntegerToString(value); }

std::int64_t CConversions::i8FromString(const std::string& s, WhitespaceRule rule) {
  return IntegerFromString<std::int64_t>(s, rule, detail::kI8Range);
}

std::string CConversions::i8ToString(std::int64_t value) { return IntegerToString(value); }

std::uint8_t CConversions::ui1FromString(const std::string& s, WhitespaceRule rule) {
  return detail::NarrowInteger<std::uint8_t>(ui4FromString(s, rule), s, "ui1");
}

std::string CConversions::ui1ToString(std::uint8_t value) {
  return IntegerToString(unsigned{value});
}

std::uint16_t CConversions::ui2FromString(const std::string& s, WhitespaceRule rule) {
  return detail::NarrowInteger<std::uint16_t>(ui4FromString(s, rule), s, "ui2");
}

std::string CConversions::ui2ToString(std::uint16_t value) {
  return IntegerToString(unsigned{value});
}

std::uint32_t CConversions::ui4FromString(const std::string& s, WhitespaceRule rule) {
  return IntegerFromString<std::uint32_t>(s, rule, detail::kUi4Range);
}

std::string CConversions::ui4ToString(std::uint32_t value) { return IntegerToString(value); }

std::uint64_t CConversions::ui8FromString(const std::string& s, WhitespaceRule rule) {
  return IntegerFromString<std::uint64_t>(s, rule, detail::kUi8Range);
}

std::string CConversions::ui8ToString(std::uint64_t value) { return IntegerToString(value); }

float CConversions::r4FromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  return detail::ParseR4(detail::ApplyRuleView(rule, s, scratch));
}

std::string CConversions::r4ToString(float value, const char* format) {
  return RealToString(static_cast<double>(value), format, 7, 32);
}

double CConversions::r8FromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  return detail::ParseR8(detail::ApplyRuleView(rule, s, scratch));
}

std::string CConversions::r8ToString(double value, const char* format) {
  return RealToString(value, format, 16, 48);
}

CDecimal CConversions::decimalFromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  return CDecimal(detail::ApplyRuleView(rule, s, scratch).data());
}

std::string CConversions::decimalToString(const CDecimal& value, const char* format) {
  return format == nullptr ? value.ToString() : value.ToString(ReadCount(format));
}

CBigInteger CConversions::integerFromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  return CBigInteger(detail::ApplyRuleView(rule, s, scratch).data());
}

std::string CConversions::integerToString(const CBigInteger& value) { return value.ToString(); }

}  // namespace OvXmlLib6
