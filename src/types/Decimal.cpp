#include "OvXmlLib6/types/Decimal.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "types/CharClass.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <limits>
#include <memory>
#include <utility>

namespace OvXmlLib6 {

namespace {

// The largest count of fraction digits that SetMaxDecimalPlaces and ToString(places) accept, and
// the largest exponent magnitude the parser accepts: far beyond any real value, yet small enough
// that no text can ask for gigabytes of digits or overflow the int divider.
constexpr int kPlacesLimit = 100000;
constexpr std::int64_t kExponentLimit = 100000;

// Texts up to this length collect their digits on the stack.
constexpr std::size_t kStackDigits = 128;

using detail::IsDigit;
using detail::IsXmlSpace;

int MessagePosition(std::size_t position) {
  return static_cast<int>(
      std::min<std::size_t>(position, static_cast<std::size_t>(std::numeric_limits<int>::max())));
}

[[noreturn]] void ThrowInvalidChar(std::size_t position, const char* text) {
  throw COvInvalidValueException(FormatString(
      "The string representing a Decimal, contained an invalid char at position %d [%s]",
      MessagePosition(position), text));
}

[[noreturn]] void ThrowExponentOutOfRange(std::size_t position, const char* text) {
  throw COvInvalidValueException(FormatString(
      "The string representing a Decimal, contained an exponent out of range at position %d [%s]",
      MessagePosition(position), text));
}

void CheckPlaces(int places, const char* what) {
  if (places < 0 || places > kPlacesLimit) {
    throw COvInvalidParamException(
        FormatString("Invalid %s [%d] (0 <= places <= %d)", what, places, kPlacesLimit));
  }
}

}  // namespace

int CDecimal::m_maxDivider = 30;

CDecimal::CDecimal() : m_divider(0) {}

CDecimal::CDecimal(int value) : CDecimal(static_cast<long long>(value)) {}

CDecimal::CDecimal(long value) : CDecimal(static_cast<long long>(value)) {}

CDecimal::CDecimal(long long value) : m_integral(value), m_divider(0) {
  m_fractional.m_sign = m_integral.m_sign;
}

CDecimal::CDecimal(double value) : m_divider(0) {
  // Thirteen fixed decimals and a line feed, which the parser skips as whitespace. Fixed
  // notation of DBL_MAX takes 309 integral digits; an infinity or NaN prints as a word that the
  // parser refuses.
  char text[400];
  auto result = std::to_chars(text, text + sizeof text - 2, value, std::chars_format::fixed, 13);
  char* end = result.ec == std::errc() ? result.ptr : text;
  *end++ = '\n';
  *end = '\0';
  Parse(text);
}

CDecimal::CDecimal(const char* text) : m_divider(0) { Parse(text); }

CDecimal::CDecimal(const CBigInteger& value) : m_integral(value), m_divider(0) {
  m_fractional.m_sign = m_integral.m_sign;
}

CDecimal::CDecimal(const CBigInteger& integral, const CBigInteger& fractional, int divider)
    : m_integral(integral), m_fractional(fractional), m_divider(divider) {}

CDecimal::CDecimal(const CDecimal& other) = default;

CDecimal::CDecimal(CDecimal&& other) noexcept
    : m_integral(std::move(other.m_integral)),
      m_fractional(std::move(other.m_fractional)),
      m_divider(other.m_divider) {
  other.m_divider = 0;
}

CDecimal& CDecimal::operator=(const CDecimal& other) = default;

CDecimal& CDecimal::operator=(CDecimal&& other) noexcept {
  if (this != &other) {
    m_integral = std::move(other.m_integral);
    m_fractional = std::move(other.m_fractional);
    m_divider = other.m_divider;
    other.m_divider = 0;
  }
  return *this;
}

CDecimal::~CDecimal() = default;

int CDecimal::GetMaxDecimalPlaces() { return m_maxDivider; }

void CDecimal::SetMaxDecimalPlaces(int places) {
  CheckPlaces(places, "maximum number of decimal places");
  m_maxDivider = places;
}

void CDecimal::Parse(const char* text) {
  if (text == nullptr) text = "";
  const std::size_t length = std::strlen(text);

  // Every digit, integral ones first, most significant first, as values 0..9.
  char local[kStackDigits];
  std::unique_ptr<char[]> heap;
  char* digits = local;
  if (length > kStackDigits) {
    heap.reset(new char[length]);
    digits = heap.get();
  }
  std::size_t count = 0;
  bool negative = false;
  std::size_t i = 0;

  // Integral section: signs anywhere (the last one wins), whitespace skipped.
  for (; i < length; ++i) {
    const char c = text[i];
    if (IsDigit(c)) {
      digits[count++] = static_cast<char>(c - '0');
    } else if (c == '-') {
      negative = true;
    } else if (c == '+') {
      negative = false;
    } else if (c == '.' || c == 'e' || c == 'E') {
      break;
    } else if (!IsXmlSpace(c)) {
      ThrowInvalidChar(i, text);
    }
  }
  const std::size_t integralCount = count;

  // Fraction section: digits and whitespace; anything else ends it.
  if (i < length && text[i] == '.') {
    for (++i; i < length; ++i) {
      const char c = text[i];
      if (IsDigit(c)) {
        digits[count++] = static_cast<char>(c - '0');
      } else if (!IsXmlSpace(c)) {
        break;
      }
    }
  }

  // Exponent section: signs and whitespace, then digits and whitespace to the end.
  std::int64_t exponent = 0;
  if (i < length && (text[i] == 'e' || text[i] == 'E')) {
    bool exponentNegative = false;
    for (++i; i < length; ++i) {
      const char c = text[i];
      if (c == '-') {
        exponentNegative = true;
      } else if (c == '+') {
        exponentNegative = false;
      } else if (!IsXmlSpace(c)) {
        break;
      }
    }
    for (; i < length; ++i) {
      const char c = text[i];
      if (IsDigit(c)) {
        exponent = exponent * 10 + (c - '0');
        if (exponent > kExponentLimit) ThrowExponentOutOfRange(i, text);
      } else if (!IsXmlSpace(c)) {
        ThrowInvalidChar(i, text);
      }
    }
    if (exponentNegative) exponent = -exponent;
  }
  if (i < length) ThrowInvalidChar(i, text);

  // Multiplying or dividing by 10^exponent moves the decimal point; with the point after
  // `point` digits (possibly before the first or after the last), the parts are cut directly
  // from the digit sequence, which gives exactly the product or the truncated quotient.
  const std::int64_t point = static_cast<std::int64_t>(integralCount) + exponent;
  const std::size_t split = point <= 0 ? 0 : std::min(count, static_cast<std::size_t>(point));
  const std::size_t integralZeros =
      point > static_cast<std::int64_t>(count) ? static_cast<std::size_t>(point) - count : 0;
  const std::size_t fractionZeros = point < 0 ? static_cast<std::size_t>(-point) : 0;

  CBigInteger::Digits integral;
  std::size_t first = 0;
  while (first < split && digits[first] == 0) ++first;
  if (first < split) {
    CBigInteger::RequireDigits(integralZeros + (split - first));
    integral.reserve(integralZeros + (split - first));
    integral.assign(integralZeros, 0);
    for (std::size_t k = split; k > first;) integral.push_back(digits[--k]);
  }

  // Rationalise: trailing zero fraction digits carry nothing. Then keep at most m_maxDivider
  // fraction digits, cutting off the rest.
  CBigInteger::Digits fraction;
  int divider = 0;
  std::size_t last = count;
  while (last > split && digits[last - 1] == 0) --last;
  if (last > split) {
    const std::size_t maxDigits = static_cast<std::size_t>(m_maxDivider);
    const std::size_t fractionLength = fractionZeros + (last - split);
    if (fractionLength > maxDigits) {
      divider = m_maxDivider;
      last = fractionZeros >= maxDigits ? split : split + (maxDigits - fractionZeros);
    } else {
      divider = static_cast<int>(fractionLength);
    }
    fraction.reserve(last - split);
    for (std::size_t k = last; k > split;) fraction.push_back(digits[--k]);
    CBigInteger::Clean(fraction);
  }

  const int sign = negative ? -1 : 1;
  m_integral = CBigInteger(sign, std::move(integral));
  m_fractional = CBigInteger(sign, std::move(fraction));
  m_divider = divider;
}

std::size_t CDecimal::StorageDigits() const {
  return m_integral.m_digits.capacity() + m_fractional.m_digits.capacity();
}

std::string CDecimal::ToString() const {
  if (m_fractional.IsZero()) return m_integral.ToString();
  const CBigInteger::Digits& whole = m_integral.m_digits;
  const CBigInteger::Digits& fraction = m_fractional.m_digits;
  const std::size_t width = std::max(static_cast<std::size_t>(m_divider), fraction.size());
  std::string text;
  text.reserve(3 + whole.size() + width);
  if (m_integral.m_sign < 0) text.push_back('-');
  if (whole.empty()) text.push_back('0');
  for (auto it = whole.rbegin(); it != whole.rend(); ++it) text.push_back('0' + *it);
  text.push_back('.');
  text.append(width - fraction.size(), '0');
  for (auto it = fraction.rbegin(); it != fraction.rend(); ++it) text.push_back('0' + *it);
  return text;
}

std::string CDecimal::ToString(int places) const {
  CheckPlaces(places, "number of decimal places");
  const CBigInteger::Digits& whole = m_integral.m_digits;
  const CBigInteger::Digits& fraction = m_fractional.m_digits;
  const std::size_t width = static_cast<std::size_t>(m_divider);
  // The fraction digit at `index` (0 = the first after the point), zero beyond the divider.
  auto fractionDigit = [&](std::size_t index) -> char {
    if (index >= width) return 0;
    const std::size_t low = width - 1 - index;
    return low < fraction.size() ? fraction[low] : 0;
  };

  // Adding 5 in place places + 1 and cutting after `places` digits (half away from zero) comes
  // down to: keep the integral digits and `places` fraction digits, and add one unit in the last
  // kept place when the first dropped digit is 5 or more. When the fraction is shorter than
  // `places`, the kept digits are filled with zeros on the right.
  const std::size_t count = static_cast<std::size_t>(places);
  std::string digits;
  digits.reserve(2 + whole.size() + count);
  if (whole.empty()) digits.push_back('0');
  for (auto it = whole.rbegin(); it != whole.rend(); ++it) digits.push_back('0' + *it);
  std::size_t integralLength = digits.size();
  for (std::size_t k = 0; k < count; ++k) digits.push_back('0' + fractionDigit(k));
  if (fractionDigit(count) >= 5) {
    std::size_t k = digits.size();
    while (k > 0 && digits[k - 1] == '9') digits[--k] = '0';
    if (k > 0) {
      ++digits[k - 1];
    } else {
      digits.insert(digits.begin(), '1');
      ++integralLength;
    }
  }

  std::string text;
  text.reserve(digits.size() + 2);
  if (m_integral.m_sign < 0) text.push_back('-');
  text.append(digits, 0, integralLength);
  text.push_back('.');
  text.append(digits, integralLength, std::string::npos);
  return text;
}

double CDecimal::ToDouble() const {
  if (m_integral > CBigInteger::MAX_DOUBLE || m_integral < CBigInteger::MIN_DOUBLE) {
    throw COvOverFlowException("The Decimal value if to large to fit into a Double");
  }
  const std::string text = ToString();
  double value = 0;
  std::from_chars(text.data(), text.data() + text.size(), value);
  return value;
}

std::int32_t CDecimal::ToLong() const {
  std::int64_t value = 0;
  if (!m_integral.FitsInt64(std::numeric_limits<std::int32_t>::min(),
                            std::numeric_limits<std::int32_t>::max(), value)) {
    throw COvOverFlowException("The Decimal value if to large to fit into a LONG");
  }
  return static_cast<std::int32_t>(value);
}

std::int64_t CDecimal::ToLongLong() const {
  std::int64_t value = 0;
  if (!m_integral.FitsInt64(std::numeric_limits<std::int64_t>::min(),
                            std::numeric_limits<std::int64_t>::max(), value)) {
    throw COvOverFlowException("The Decimal value if to large to fit into a LONGLONG");
  }
  return value;
}

CBigInteger CDecimal::ToBigInteger() const { return m_integral; }

void CDecimal::Negate() {
  m_integral.Negate();
  m_fractional.Negate();
}

CDecimal CDecimal::GetNegative() const {
  CDecimal copy(*this);
  copy.Negate();
  return copy;
}

bool CDecimal::IsNegative() const { return m_integral.IsNegative() || m_fractional.IsNegative(); }

CBigInteger CDecimal::Scaled(int divider) const {
  CBigInteger scaled;
  if (m_integral.IsZero() && m_fractional.IsZero()) return scaled;
  scaled.m_sign = IsNegative() ? -1 : 1;
  CBigInteger::Digits& v = scaled.m_digits;
  const std::size_t own = static_cast<std::size_t>(m_divider);
  const std::size_t target = std::max(own, static_cast<std::size_t>(divider));
  v.reserve(target + m_integral.m_digits.size());
  v.assign(target - own, 0);
  v.insert(v.end(), m_fractional.m_digits.begin(), m_fractional.m_digits.end());
  v.resize(target, 0);
  v.insert(v.end(), m_integral.m_digits.begin(), m_integral.m_digits.end());
  scaled.Normalise();
  return scaled;
}

CDecimal CDecimal::FromScaled(const CBigInteger& scaled, int divider) {
  CDecimal result;
  const CBigInteger::Digits& v = scaled.m_digits;
  const std::size_t cut = std::min(v.size(), static_cast<std::size_t>(divider));
  result.m_fractional.m_digits.assign(v.begin(), v.begin() + cut);
  CBigInteger::Clean(result.m_fractional.m_digits);
  result.m_integral.m_digits.assign(v.begin() + cut, v.end());
  // Both parts carry the value's sign, also a zero integral part (-0.5).
  result.m_integral.m_sign = scaled.m_sign;
  result.m_fractional.m_sign = scaled.m_sign;
  result.m_divider = divider;
  result.LimitFraction();
  return result;
}

int CDecimal::Normalize(CDecimal& a, CDecimal& b) {
  const int divider = std::max(a.m_divider, b.m_divider);
  a.ChangeFractionalDivider(divider);
  b.ChangeFractionalDivider(divider);
  return divider;
}

void CDecimal::ChangeFractionalDivider(int divider) {
  if (divider < 0) divider = 0;
  CBigInteger::Digits& v = m_fractional.m_digits;
  if (divider > m_divider) {
    CBigInteger::ShiftLeft(v, static_cast<std::size_t>(divider - m_divider));
  } else if (divider < m_divider) {
    const std::size_t drop = static_cast<std::size_t>(m_divider - divider);
    v.erase(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(std::min(drop, v.size())));
    CBigInteger::Clean(v);
  }
  m_divider = divider;
}

void CDecimal::Rationalise() {
  CBigInteger::Digits& v = m_fractional.m_digits;
  if (v.empty()) {
    m_divider = 0;
    return;
  }
  std::size_t zeros = 0;
  while (zeros < v.size() && v[zeros] == 0) ++zeros;
  v.erase(v.begin(), v.begin() + static_cast<std::ptrdiff_t>(zeros));
  m_divider -= static_cast<int>(std::min<std::size_t>(zeros, static_cast<std::size_t>(m_divider)));
}

void CDecimal::LimitFraction() {
  Rationalise();
  if (m_divider > m_maxDivider) ChangeFractionalDivider(m_maxDivider);
}

int CDecimal::CompareTo(const CDecimal& other) const {
  // Values of different signs (or a zero) compare without scaling: bounds such as 0 are common.
  const auto sign = [](const CDecimal& d) {
    if (d.m_integral.IsZero() && d.m_fractional.IsZero()) return 0;
    return d.IsNegative() ? -1 : 1;
  };
  const int mine = sign(*this);
  const int theirs = sign(other);
  if (mine != theirs) return mine < theirs ? -1 : 1;
  if (mine == 0) return 0;
  CDecimal a(*this);
  CDecimal b(other);
  const int divider = Normalize(a, b);
  return a.Scaled(divider).CompareTo(b.Scaled(divider));
}

bool CDecimal::operator==(const CDecimal& other) const { return CompareTo(other) == 0; }
bool CDecimal::operator!=(const CDecimal& other) const { return CompareTo(other) != 0; }
bool CDecimal::operator<(const CDecimal& other) const { return CompareTo(other) < 0; }
bool CDecimal::operator<=(const CDecimal& other) const { return CompareTo(other) <= 0; }
bool CDecimal::operator>(const CDecimal& other) const { return CompareTo(other) > 0; }
bool CDecimal::operator>=(const CDecimal& other) const { return CompareTo(other) >= 0; }

CDecimal CDecimal::operator+(const CDecimal& other) const {
  const int divider = std::max(m_divider, other.m_divider);
  return FromScaled(Scaled(divider) + other.Scaled(divider), divider);
}

CDecimal CDecimal::operator-(const CDecimal& other) const {
  const int divider = std::max(m_divider, other.m_divider);
  return FromScaled(Scaled(divider) - other.Scaled(divider), divider);
}

CDecimal CDecimal::operator*(const CDecimal& other) const {
  return FromScaled(Scaled(m_divider) * other.Scaled(other.m_divider), m_divider + other.m_divider);
}

CDecimal CDecimal::operator/(const CDecimal& other) const {
  const int divider = std::max(m_divider, other.m_divider);
  // (a * 10^d * 10^m) / (b * 10^d) is the quotient with m fraction digits, truncated.
  CBigInteger dividend = Scaled(divider);
  CBigInteger::ShiftLeft(dividend.m_digits, static_cast<std::size_t>(m_maxDivider));
  return FromScaled(dividend / other.Scaled(divider), m_maxDivider);
}

CDecimal& CDecimal::operator+=(const CDecimal& other) { return *this = *this + other; }
CDecimal& CDecimal::operator-=(const CDecimal& other) { return *this = *this - other; }
CDecimal& CDecimal::operator*=(const CDecimal& other) { return *this = *this * other; }
CDecimal& CDecimal::operator/=(const CDecimal& other) { return *this = *this / other; }

CDecimal& CDecimal::operator++() { return *this = *this + CDecimal(1); }

CDecimal CDecimal::operator++(int) {
  CDecimal old(*this);
  ++*this;
  return old;
}

CDecimal& CDecimal::operator--() { return *this = *this - CDecimal(1); }

CDecimal CDecimal::operator--(int) {
  CDecimal old(*this);
  --*this;
  return old;
}

}  // namespace OvXmlLib6
