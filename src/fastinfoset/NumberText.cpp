#include "fastinfoset/NumberText.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <charconv>
#include <cmath>
#include <limits>
#include <system_error>

namespace OvXmlLib6 {
namespace detail {
namespace numbertext {

namespace {

enum class ParseStatus { Ok, Invalid, Overflow };

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Reads an optional sign and decimal digits spanning the whole text, as the C library's strtol
// family does after its leading whitespace. The empty text is 0. Too many digits report
// overflow even when something else follows them, as the C functions' range error does.
ParseStatus ParseSignedDecimal(std::string_view text, bool& negative, std::uint64_t& magnitude) {
  negative = false;
  magnitude = 0;
  if (text.empty()) return ParseStatus::Ok;
  std::size_t pos = 0;
  if (text[0] == '+' || text[0] == '-') {
    negative = text[0] == '-';
    ++pos;
  }
  const std::size_t firstDigit = pos;
  bool overflow = false;
  for (; pos < text.size() && IsDigit(text[pos]); ++pos) {
    const std::uint64_t digit = static_cast<std::uint64_t>(text[pos] - '0');
    if (magnitude > (std::numeric_limits<std::uint64_t>::max() - digit) / 10) overflow = true;
    if (!overflow) magnitude = magnitude * 10 + digit;
  }
  if (pos == firstDigit) return ParseStatus::Invalid;
  if (overflow) return ParseStatus::Overflow;
  return pos == text.size() ? ParseStatus::Ok : ParseStatus::Invalid;
}

[[noreturn]] void ThrowCannotConvert(std::string_view text, const char* typeName) {
  throw COvInvalidValueException(FormatString("The value [%s] can not be converted to a %s",
                                              std::string(text).c_str(), typeName));
}

[[noreturn]] void ThrowTooLarge(std::string_view text, const char* typeName) {
  throw COvInvalidValueException(FormatString("The value [%s] is to large to fit in a %s",
                                              std::string(text).c_str(), typeName));
}

// Whether a signed value of this sign and magnitude lies in [-limit - 1, limit].
bool FitsSigned(bool negative, std::uint64_t magnitude, std::uint64_t limit) {
  return negative ? magnitude <= limit + 1 : magnitude <= limit;
}

std::int64_t ToSigned(bool negative, std::uint64_t magnitude) {
  // Two's complement negation in unsigned arithmetic covers the most negative value too.
  return static_cast<std::int64_t>(negative ? 0 - magnitude : magnitude);
}

// Whether an out-of-range decimal real is too large (true) or too small (false) in magnitude:
// the decimal exponent of its first significant digit decides.
bool ExceedsRange(std::string_view mantissa, std::string_view exponent) {
  // The first significant digit stands at 10^(digits before the point - 1 - zeros before it).
  long digitsBeforePoint = 0;
  long leadingZeros = 0;
  bool seenPoint = false;
  bool seenSignificant = false;
  for (char c : mantissa) {
    if (c == '.') {
      seenPoint = true;
      continue;
    }
    if (!seenPoint) ++digitsBeforePoint;
    if (c != '0') seenSignificant = true;
    if (!seenSignificant) ++leadingZeros;
  }
  long exponentValue = 0;
  bool exponentNegative = false;
  for (char c : exponent) {
    if (c == '-') exponentNegative = true;
    // Clamped: far beyond any real's range either way.
    if (IsDigit(c) && exponentValue < 100000) exponentValue = exponentValue * 10 + (c - '0');
  }
  const long leadExponent = digitsBeforePoint - 1 - leadingZeros;
  return leadExponent + (exponentNegative ? -exponentValue : exponentValue) > 0;
}

bool EqualsIgnoringCase(std::string_view text, std::string_view lowerWord) {
  if (text.size() != lowerWord.size()) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    char c = text[i];
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
    if (c != lowerWord[i]) return false;
  }
  return true;
}

}  // namespace

std::string FormatInteger(std::int64_t value) {
  char buffer[24];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, value);
  return std::string(buffer, result.ptr);
}

std::string FormatReal(double value, int precision) {
  if (std::isnan(value)) return "NaN";
  if (std::isinf(value)) return value < 0 ? "-INF" : "INF";
  char buffer[48];
  const auto result =
      std::to_chars(buffer, buffer + sizeof buffer, value, std::chars_format::general, precision);
  return std::string(buffer, result.ptr);
}

std::string FormatBoolean(bool value) { return value ? "true" : "false"; }

std::int32_t ParseI4(std::string_view text) {
  bool negative = false;
  std::uint64_t magnitude = 0;
  switch (ParseSignedDecimal(text, negative, magnitude)) {
    case ParseStatus::Invalid:
      ThrowCannotConvert(text, "i4");
    case ParseStatus::Overflow:
      ThrowTooLarge(text, "i4");
    case ParseStatus::Ok:
      break;
  }
  if (!FitsSigned(negative, magnitude, std::numeric_limits<std::int32_t>::max())) {
    ThrowTooLarge(text, "i4");
  }
  return static_cast<std::int32_t>(ToSigned(negative, magnitude));
}

std::int16_t ParseI2(std::string_view text) {
  const std::int32_t value = ParseI4(text);
  if (value < std::numeric_limits<std::int16_t>::min() ||
      value > std::numeric_limits<std::int16_t>::max()) {
    ThrowTooLarge(text, "i2");
  }
  return static_cast<std::int16_t>(value);
}

std::uint64_t ParseI8OrUi8(std::string_view text) {
  bool negative = false;
  std::uint64_t magnitude = 0;
  switch (ParseSignedDecimal(text, negative, magnitude)) {
    case ParseStatus::Invalid:
      ThrowCannotConvert(text, "i8");
    case ParseStatus::Overflow:
      ThrowTooLarge(text, "i8");
    case ParseStatus::Ok:
      break;
  }
  // Positive values may use the whole unsigned range; negative ones stop at the i8 minimum.
  if (negative && !FitsSigned(true, magnitude, std::numeric_limits<std::int64_t>::max())) {
    ThrowTooLarge(text, "i8");
  }
  return negative ? 0 - magnitude : magnitude;
}

double ParseReal(std::string_view text, const char* typeName) {
  if (text.empty() || text == "NaN" || text == "1.#QNAN" || text == "-NAN") {
    return std::numeric_limits<double>::quiet_NaN();
  }
  if (text == "INF") return std::numeric_limits<double>::infinity();
  if (text == "-INF") return -std::numeric_limits<double>::infinity();

  // The decimal form only: sign, digits with an optional point, optional exponent. Checking the
  // syntax here keeps out the words and hexadecimal forms that the library functions accept.
  std::size_t pos = 0;
  const bool negative = text[0] == '-';
  if (text[0] == '+' || text[0] == '-') ++pos;
  const std::size_t mantissaStart = pos;
  std::size_t digits = 0;
  for (; pos < text.size() && IsDigit(text[pos]); ++pos) ++digits;
  if (pos < text.size() && text[pos] == '.') {
    for (++pos; pos < text.size() && IsDigit(text[pos]); ++pos) ++digits;
  }
  const std::size_t mantissaEnd = pos;
  if (digits == 0) ThrowCannotConvert(text, typeName);
  if (pos < text.size() && (text[pos] == 'e' || text[pos] == 'E')) {
    std::size_t exponentPos = pos + 1;
    if (exponentPos < text.size() && (text[exponentPos] == '+' || text[exponentPos] == '-')) {
      ++exponentPos;
    }
    std::size_t exponentDigits = 0;
    for (; exponentPos < text.size() && IsDigit(text[exponentPos]); ++exponentPos) {
      ++exponentDigits;
    }
    if (exponentDigits == 0) ThrowCannotConvert(text, typeName);
    pos = exponentPos;
  }
  if (pos != text.size()) ThrowCannotConvert(text, typeName);

  // from_chars takes no plus sign; the sign is applied afterwards.
  const std::string_view unsignedText = text.substr(mantissaStart);
  double value = 0;
  const auto result =
      std::from_chars(unsignedText.data(), unsignedText.data() + unsignedText.size(), value,
                      std::chars_format::general);
  if (result.ec == std::errc::result_out_of_range) {
    const std::string_view mantissa = text.substr(mantissaStart, mantissaEnd - mantissaStart);
    const std::string_view exponent =
        mantissaEnd < text.size() ? text.substr(mantissaEnd + 1) : std::string_view();
    value = ExceedsRange(mantissa, exponent) ? std::numeric_limits<double>::infinity() : 0.0;
  } else if (result.ec != std::errc() || result.ptr != unsignedText.data() + unsignedText.size()) {
    ThrowCannotConvert(text, typeName);
  }
  return negative ? -value : value;
}

bool ParseBoolean(std::string_view text) {
  if (EqualsIgnoringCase(text, "true")) return true;
  if (EqualsIgnoringCase(text, "false")) return false;
  if (text == "1") return true;
  if (text == "0") return false;
  throw COvInvalidValueException(
      FormatString("A Boolean Value read from an XML document was invalid [%s]. Valid values are "
                   "'true', 'false', '1', or '0'",
                   std::string(text).c_str()));
}

}  // namespace numbertext
}  // namespace detail
}  // namespace OvXmlLib6
