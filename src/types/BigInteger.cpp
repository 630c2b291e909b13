#include "OvXmlLib6/types/BigInteger.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Decimal.h"
#include "types/CharClass.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <cstring>
#include <limits>
#include <utility>

namespace OvXmlLib6 {

namespace {

constexpr std::size_t kDefaultMaxDigits = 100000;
std::size_t g_maxDigits = kDefaultMaxDigits;

using detail::IsDigit;

// The characters the plain integer reader accepts; any other sends the text to the decimal
// reader.
bool IsIntegerChar(char c) {
  return IsDigit(c) || c == '-' || c == '+' || c == ' ' || c == '\n' || c == '\r' || c == '\t';
}

// a -= b for clean magnitudes with a >= b; a is cleaned afterwards.
void SubtractInPlace(std::vector<char>& a, const std::vector<char>& b) {
  int borrow = 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    int d = a[i] - borrow - (i < b.size() ? b[i] : 0);
    borrow = d < 0 ? 1 : 0;
    a[i] = static_cast<char>(d + 10 * borrow);
    if (i >= b.size() && borrow == 0) break;
  }
  while (!a.empty() && a.back() == 0) a.pop_back();
}

std::uint64_t Magnitude(long long value) {
  // Unsigned negation keeps LLONG_MIN defined.
  return value < 0 ? 0 - static_cast<std::uint64_t>(value) : static_cast<std::uint64_t>(value);
}

// Products and quotients are computed on limbs of nine decimal digits (least significant
// first), so that their cost is that of schoolbook arithmetic on a ninth of the digits, not on
// every digit: at the digit limit a product or quotient takes milliseconds, not minutes.
using Limbs = std::vector<std::uint32_t>;
constexpr std::uint64_t kLimbBase = 1000000000;

Limbs ToLimbs(const std::vector<char>& digits) {
  Limbs limbs((digits.size() + 8) / 9);
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    const std::size_t low = i * 9;
    std::uint32_t value = 0;
    for (std::size_t k = std::min(low + 9, digits.size()); k-- > low;) {
      value = value * 10 + static_cast<std::uint32_t>(digits[k]);
    }
    limbs[i] = value;
  }
  return limbs;
}

// The digits of `limbs`, without leading zeros.
void FromLimbs(const Limbs& limbs, std::vector<char>& digits) {
  digits.assign(limbs.size() * 9, 0);
  for (std::size_t i = 0; i < limbs.size(); ++i) {
    std::uint32_t value = limbs[i];
    for (std::size_t k = 0; k < 9 && value != 0; ++k, value /= 10) {
      digits[i * 9 + k] = static_cast<char>(value % 10);
    }
  }
  while (!digits.empty() && digits.back() == 0) digits.pop_back();
}

void TrimLimbs(Limbs& limbs) {
  while (!limbs.empty() && limbs.back() == 0) limbs.pop_back();
}

// a * b for trimmed, non-empty limb vectors.
Limbs MultiplyLimbs(const Limbs& a, const Limbs& b) {
  Limbs product(a.size() + b.size(), 0);
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] == 0) continue;
    std::uint64_t carry = 0;
    for (std::size_t j = 0; j < b.size(); ++j) {
      // At most (B-1)^2 + 2(B-1) < B^2: no overflow of 64 bits.
      const std::uint64_t t = product[i + j] + static_cast<std::uint64_t>(a[i]) * b[j] + carry;
      product[i + j] = static_cast<std::uint32_t>(t % kLimbBase);
      carry = t / kLimbBase;
    }
    product[i + b.size()] = static_cast<std::uint32_t>(carry);
  }
  TrimLimbs(product);
  return product;
}

// v * factor for factor < B; the result may have one limb more.
Limbs MultiplyLimbs(const Limbs& v, std::uint32_t factor) {
  Limbs product(v.size() + 1, 0);
  std::uint64_t carry = 0;
  for (std::size_t i = 0; i < v.size(); ++i) {
    const std::uint64_t t = static_cast<std::uint64_t>(v[i]) * factor + carry;
    product[i] = static_cast<std::uint32_t>(t % kLimbBase);
    carry = t / kLimbBase;
  }
  product[v.size()] = static_cast<std::uint32_t>(carry);
  return product;
}

// v / divisor for 0 < divisor < B, in place; returns the remainder.
std::uint32_t DivideLimbs(Limbs& v, std::uint32_t divisor) {
  std::uint64_t remainder = 0;
  for (std::size_t i = v.size(); i-- > 0;) {
    const std::uint64_t t = remainder * kLimbBase + v[i];
    v[i] = static_cast<std::uint32_t>(t / divisor);
    remainder = t % divisor;
  }
  TrimLimbs(v);
  return static_cast<std::uint32_t>(remainder);
}

// u / v and u % v for trimmed limb vectors with u >= v > 0 and v of at least two limbs: long
// division with quotient limbs estimated from the leading limbs (Knuth's algorithm D).
void DivideLimbs(const Limbs& dividend, const Limbs& divisor, Limbs& quotient, Limbs& remainder) {
  const std::size_t n = divisor.size();
  const std::size_t m = dividend.size() - n;
  // Scaled so that the divisor's leading limb is at least B / 2, which keeps each estimate at
  // most two above the true quotient limb.
  const auto scale = static_cast<std::uint32_t>(kLimbBase / (divisor[n - 1] + std::uint64_t{1}));
  Limbs u = MultiplyLimbs(dividend, scale);
  Limbs v = MultiplyLimbs(divisor, scale);
  v.pop_back();  // the scaled divisor has n limbs
  const std::uint64_t top = v[n - 1];
  const std::uint64_t next = v[n - 2];
  quotient.assign(m + 1, 0);
  for (std::size_t j = m + 1; j-- > 0;) {
    const std::uint64_t head = static_cast<std::uint64_t>(u[j + n]) * kLimbBase + u[j + n - 1];
    std::uint64_t estimate = head / top;
    std::uint64_t rest = head % top;
    while (estimate >= kLimbBase || estimate * next > rest * kLimbBase + u[j + n - 2]) {
      --estimate;
      rest += top;
      if (rest >= kLimbBase) break;
    }
    // u[j .. j+n] -= estimate * v
    std::uint64_t carry = 0;
    std::int64_t borrow = 0;
    for (std::size_t i = 0; i < n; ++i) {
      const std::uint64_t p = estimate * v[i] + carry;
      carry = p / kLimbBase;
      std::int64_t t =
          static_cast<std::int64_t>(u[i + j]) - static_cast<std::int64_t>(p % kLimbBase) - borrow;
      borrow = t < 0 ? 1 : 0;
      u[i + j] = static_cast<std::uint32_t>(t + borrow * static_cast<std::int64_t>(kLimbBase));
    }
    std::int64_t high =
        static_cast<std::int64_t>(u[j + n]) - static_cast<std::int64_t>(carry) - borrow;
    if (high < 0) {
      // The estimate was one too large: add the divisor back once.
      --estimate;
      std::uint64_t sum = 0;
      for (std::size_t i = 0; i < n; ++i) {
        sum += static_cast<std::uint64_t>(u[i + j]) + v[i];
        u[i + j] = static_cast<std::uint32_t>(sum % kLimbBase);
        sum /= kLimbBase;
      }
      high += static_cast<std::int64_t>(sum);
    }
    u[j + n] = static_cast<std::uint32_t>(high);
    quotient[j] = static_cast<std::uint32_t>(estimate);
  }
  TrimLimbs(quotient);
  u.resize(n);
  TrimLimbs(u);
  DivideLimbs(u, scale);
  remainder = std::move(u);
}

}  // namespace

// Built in this order at start-up; they only build digit vectors, so nothing else must exist
// first.
const CBigInteger CBigInteger::MAX_LONG(std::numeric_limits<std::int32_t>::max());
const CBigInteger CBigInteger::MIN_LONG(std::numeric_limits<std::int32_t>::min());
const CBigInteger CBigInteger::MAX_LONGLONG(std::numeric_limits<long long>::max());
const CBigInteger CBigInteger::MIN_LONGLONG(std::numeric_limits<long long>::min());
const CBigInteger CBigInteger::MAX_DOUBLE(std::numeric_limits<double>::max());
const CBigInteger CBigInteger::MIN_DOUBLE(-std::numeric_limits<double>::max());

CBigInteger::CBigInteger() : m_sign(1) {}

CBigInteger::CBigInteger(int value) : CBigInteger(static_cast<long long>(value)) {}

CBigInteger::CBigInteger(long value) : CBigInteger(static_cast<long long>(value)) {}

CBigInteger::CBigInteger(long long value) : m_sign(value < 0 ? -1 : 1) {
  BuildDWORDLONG(m_digits, Magnitude(value));
}

CBigInteger::CBigInteger(double value) : m_sign(std::signbit(value) ? -1 : 1) {
  if (!std::isfinite(value)) {
    throw COvInvalidValueException("ERROR: The double value is not a finite number.");
  }
  BuildDouble(m_digits, value);
  if (m_digits.empty()) m_sign = 1;
}

CBigInteger::CBigInteger(const char* text) : m_sign(1) { Parse(text); }

CBigInteger::CBigInteger(const CDecimal& value) : CBigInteger(value.ToBigInteger()) {}

CBigInteger::CBigInteger(const CBigInteger& other) = default;

CBigInteger::CBigInteger(CBigInteger&& other) noexcept
    : m_sign(other.m_sign), m_digits(std::move(other.m_digits)) {
  other.m_sign = 1;
  other.m_digits.clear();
}

CBigInteger& CBigInteger::operator=(const CBigInteger& other) = default;

CBigInteger& CBigInteger::operator=(CBigInteger&& other) noexcept {
  if (this != &other) {
    m_sign = other.m_sign;
    m_digits = std::move(other.m_digits);
    other.m_sign = 1;
    other.m_digits.clear();
  }
  return *this;
}

CBigInteger::~CBigInteger() = default;

std::size_t CBigInteger::GetMaxDigits() { return g_maxDigits; }

void CBigInteger::RequireDigits(std::size_t count) {
  if (count > g_maxDigits) {
    throw COvOverFlowException(FormatString(
        "The number has %zu digits, more than the limit of %zu (CBigInteger::SetMaxDigits)", count,
        g_maxDigits));
  }
}

void CBigInteger::SetMaxDigits(std::size_t digits) {
  g_maxDigits = digits == 0 ? kDefaultMaxDigits : digits;
}

CBigInteger::CBigInteger(int sign, Digits digits)
    : m_sign(sign < 0 ? -1 : 1), m_digits(std::move(digits)) {
  Clean(m_digits);
}

void CBigInteger::Parse(const char* text) {
  if (text == nullptr) text = "";
  const std::size_t length = std::strlen(text);
  for (std::size_t i = 0; i < length; ++i) {
    if (!IsIntegerChar(text[i])) {
      // Points, exponents and anything else: the decimal reader decides, and its errors apply.
      *this = CDecimal(text).ToBigInteger();
      return;
    }
  }
  const char* begin = text;
  const char* end = text + length;
  while (begin < end && *begin == ' ') ++begin;
  while (end > begin && end[-1] == ' ') --end;
  int sign = 1;
  if (begin < end && *begin == '-') {
    sign = -1;
    ++begin;
  }
  Digits digits;
  Build(digits, begin, end);
  m_sign = sign;
  m_digits = std::move(digits);
}

std::string CBigInteger::ToString() const {
  if (m_digits.empty()) return "0";
  const bool negative = m_sign < 0;
  std::string text(m_digits.size() + (negative ? 1 : 0), '-');
  char* out = text.data() + (negative ? 1 : 0);
  for (auto it = m_digits.rbegin(); it != m_digits.rend(); ++it)
    *out++ = static_cast<char>('0' + *it);
  return text;
}

void CBigInteger::Abs() { m_sign = 1; }

void CBigInteger::Negate() { m_sign = -m_sign; }

CBigInteger CBigInteger::GetAbs() const {
  CBigInteger copy(*this);
  copy.Abs();
  return copy;
}

CBigInteger CBigInteger::GetNegative() const {
  CBigInteger copy(*this);
  copy.Negate();
  return copy;
}

CBigInteger CBigInteger::operator-() const { return GetNegative(); }

int CBigInteger::CompareTo(const CBigInteger& other) const {
  const bool negative = IsNegative();
  if (negative != other.IsNegative()) return negative ? -1 : 1;
  const int magnitude = Compare(m_digits, other.m_digits);
  return negative ? -magnitude : magnitude;
}

bool CBigInteger::operator==(const CBigInteger& other) const { return CompareTo(other) == 0; }
bool CBigInteger::operator!=(const CBigInteger& other) const { return CompareTo(other) != 0; }
bool CBigInteger::operator<(const CBigInteger& other) const { return CompareTo(other) < 0; }
bool CBigInteger::operator<=(const CBigInteger& other) const { return CompareTo(other) <= 0; }
bool CBigInteger::operator>(const CBigInteger& other) const { return CompareTo(other) > 0; }
bool CBigInteger::operator>=(const CBigInteger& other) const { return CompareTo(other) >= 0; }

void CBigInteger::Normalise() {
  Clean(m_digits);
  if (m_digits.empty()) m_sign = 1;
}

CBigInteger CBigInteger::AddSigned(const CBigInteger& other, int otherSign) const {
  const int sign = m_sign;
  otherSign = otherSign * other.m_sign;
  CBigInteger result;
  if (sign == otherSign) {
    result.m_sign = sign;
    result.m_digits = Add(m_digits, other.m_digits);
  } else {
    const int order = Compare(m_digits, other.m_digits);
    if (order > 0) {
      result.m_sign = sign;
      result.m_digits = Subtract(m_digits, other.m_digits);
    } else if (order < 0) {
      result.m_sign = otherSign;
      result.m_digits = Subtract(other.m_digits, m_digits);
    }
  }
  result.Normalise();
  return result;
}

CBigInteger CBigInteger::operator+(const CBigInteger& other) const { return AddSigned(other, 1); }

CBigInteger CBigInteger::operator-(const CBigInteger& other) const { return AddSigned(other, -1); }

CBigInteger CBigInteger::operator*(const CBigInteger& other) const {
  if (IsZero() || other.IsZero()) return CBigInteger();
  CBigInteger result(m_sign == other.m_sign ? 1 : -1, Multiply(m_digits, other.m_digits));
  result.Normalise();
  return result;
}

void CBigInteger::DivideBy(const CBigInteger& divisor, CBigInteger* quotient,
                           CBigInteger* remainder) const {
  Digits q;
  Digits r;
  if (Compare(m_digits, divisor.m_digits) < 0) {
    r = m_digits;
  } else {
    Divide(m_digits, divisor.m_digits, q, r);
  }
  // Assigned last: either output may be this object or the divisor.
  const int quotientSign = m_sign == divisor.m_sign ? 1 : -1;
  const int remainderSign = m_sign;
  if (quotient != nullptr) {
    quotient->m_sign = quotientSign;
    quotient->m_digits = std::move(q);
    quotient->Normalise();
  }
  if (remainder != nullptr) {
    remainder->m_sign = remainderSign;
    remainder->m_digits = std::move(r);
    remainder->Normalise();
  }
}

CBigInteger CBigInteger::operator/(const CBigInteger& other) const {
  if (other.IsZero()) throw COvInvalidValueException("ERROR: Overflow in operator/.");
  CBigInteger quotient;
  DivideBy(other, &quotient, nullptr);
  return quotient;
}

CBigInteger CBigInteger::operator%(const CBigInteger& other) const {
  if (other.IsZero()) throw COvInvalidValueException("ERROR: Overflow in operator%.");
  CBigInteger remainder;
  DivideBy(other, nullptr, &remainder);
  return remainder;
}

CBigInteger& CBigInteger::operator+=(const CBigInteger& other) { return *this = *this + other; }

CBigInteger& CBigInteger::operator-=(const CBigInteger& other) { return *this = *this - other; }

CBigInteger& CBigInteger::operator*=(const CBigInteger& other) { return *this = *this * other; }

CBigInteger& CBigInteger::operator/=(const CBigInteger& other) {
  if (other.IsZero()) throw COvInvalidValueException("ERROR: Overflow in operator /=.");
  CBigInteger quotient;
  DivideBy(other, &quotient, nullptr);
  return *this = std::move(quotient);
}

CBigInteger& CBigInteger::operator%=(const CBigInteger& other) {
  if (other.IsZero()) throw COvInvalidValueException("ERROR: Overflow in operator%=.");
  CBigInteger remainder;
  DivideBy(other, nullptr, &remainder);
  return *this = std::move(remainder);
}

CBigInteger CBigInteger::SquareRoot() const {
  if (IsNegative()) {
    throw COvInvalidValueException("ERROR: Negative Number in function SquareRoot().");
  }
  if (IsZero()) return CBigInteger();
  const CBigInteger n = GetAbs();
  const std::size_t digits = m_digits.size();
  CBigInteger x;
  if (digits <= 32) {
    // The estimate 10^k, where k is how often the value can be divided by 100 and stay at least
    // 100: a value of P digits allows (P - 1) / 2 such steps. The estimate is at most the root.
    x = Pow10(static_cast<unsigned>((digits - 1) / 2));
  } else {
    // The root of the value without its last 2k digits, times 10^k, is at most the root and
    // right in about its first P/4 digits; each Newton step below doubles that, so a few full
    // divisions suffice where a start from a power of ten takes one per bit of precision.
    const std::size_t k = digits / 4;
    x = CBigInteger(1,
                    Digits(m_digits.begin() + static_cast<std::ptrdiff_t>(2 * k), m_digits.end()))
            .SquareRoot();
    ShiftLeft(x.m_digits, k);
  }
  // One Newton step from anywhere lands on or above the floor of the root (the integer form of
  // the mean inequality); from there the steps decrease strictly until they reach it.
  x = (x + n / x) / CBigInteger(2);
  for (;;) {
    CBigInteger next = (x + n / x) / CBigInteger(2);
    if (next >= x) break;
    x = std::move(next);
  }
  return x;
}

CBigInteger CBigInteger::Pow10(unsigned n) {
  CBigInteger result;
  Pow10(result.m_digits, n);
  return result;
}

bool CBigInteger::FitsInt64(std::int64_t low, std::int64_t high, std::int64_t& out) const {
  // 19 digits always fit the unsigned accumulator; more never fit a 64-bit integer.
  if (m_digits.size() > 19) return false;
  std::uint64_t magnitude = 0;
  for (auto it = m_digits.rbegin(); it != m_digits.rend(); ++it) {
    magnitude = magnitude * 10 + static_cast<std::uint64_t>(*it);
  }
  if (IsNegative()) {
    if (magnitude > Magnitude(low)) return false;
    // -(magnitude - 1) - 1 reaches INT64_MIN without overflow.
    out = magnitude == 0 ? 0 : -static_cast<std::int64_t>(magnitude - 1) - 1;
    return true;
  }
  if (magnitude > static_cast<std::uint64_t>(high)) return false;
  out = static_cast<std::int64_t>(magnitude);
  return true;
}

// The range checks below test against the values of MIN_LONG/MAX_LONG and
// MIN_LONGLONG/MAX_LONGLONG directly, so that they also hold before those objects are built
// (a conversion run by another file's start-up code).
CBigInteger::operator int() const {
  std::int64_t value = 0;
  if (!FitsInt64(std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max(),
                 value)) {
    throw COvInvalidValueException("ERROR: Value out of bound of int.");
  }
  return static_cast<int>(value);
}

CBigInteger::operator long long() const {
  std::int64_t value = 0;
  if (!FitsInt64(std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max(),
                 value)) {
    throw COvInvalidValueException("ERROR: Value out of bound of LONGLONG.");
  }
  return value;
}

// ---- digit-vector helpers ----

std::size_t CBigInteger::Position(const Digits& v) { return v.empty() ? 1 : v.size(); }

void CBigInteger::Clean(Digits& v) {
  while (!v.empty() && v.back() == 0) v.pop_back();
}

int CBigInteger::Compare(const Digits& a, const Digits& b) {
  if (a.size() != b.size()) return a.size() < b.size() ? -1 : 1;
  for (std::size_t i = a.size(); i-- > 0;) {
    if (a[i] != b[i]) return a[i] < b[i] ? -1 : 1;
  }
  return 0;
}

void CBigInteger::ShiftLeft(Digits& v, std::size_t n) {
  if (v.empty() || n == 0) return;
  RequireDigits(n > g_maxDigits ? n : v.size() + n);
  v.insert(v.begin(), n, 0);
}

void CBigInteger::Build(Digits& v, const char* begin, const char* end) {
  const char* first = end;
  while (first > begin && IsDigit(first[-1])) --first;
  // Leading zeros do not count.
  while (first < end && *first == '0') ++first;
  RequireDigits(static_cast<std::size_t>(end - first));
  v.clear();
  v.reserve(static_cast<std::size_t>(end - first));
  for (const char* p = end; p > first;) v.push_back(static_cast<char>(*--p - '0'));
  Clean(v);
}

void CBigInteger::Build(Digits& v, unsigned int value) { BuildDWORDLONG(v, value); }

void CBigInteger::BuildDWORDLONG(Digits& v, std::uint64_t value) {
  v.clear();
  while (value != 0) {
    v.push_back(static_cast<char>(value % 10));
    value /= 10;
  }
}

void CBigInteger::BuildDouble(Digits& v, double value) {
  v.clear();
  // DBL_MAX has 309 integral digits; printing the truncated magnitude in fixed notation with no
  // fraction gives exactly the integral digits.
  char buffer[400];
  const auto result = std::to_chars(buffer, buffer + sizeof buffer, std::trunc(std::fabs(value)),
                                    std::chars_format::fixed, 0);
  if (result.ec != std::errc()) return;
  Build(v, buffer, result.ptr);
}

CBigInteger::Digits CBigInteger::Add(const Digits& a, const Digits& b) {
  const Digits& longer = a.size() >= b.size() ? a : b;
  const Digits& shorter = a.size() >= b.size() ? b : a;
  Digits sum;
  sum.reserve(longer.size() + 1);
  int carry = 0;
  for (std::size_t i = 0; i < longer.size(); ++i) {
    const int d = longer[i] + (i < shorter.size() ? shorter[i] : 0) + carry;
    carry = d >= 10 ? 1 : 0;
    sum.push_back(static_cast<char>(d - 10 * carry));
  }
  if (carry != 0) sum.push_back(1);
  Clean(sum);
  RequireDigits(sum.size());
  return sum;
}

CBigInteger::Digits CBigInteger::Subtract(const Digits& larger, const Digits& smaller) {
  Digits difference(larger);
  SubtractInPlace(difference, smaller);
  return difference;
}

CBigInteger::Digits CBigInteger::Multiply(const Digits& a, const Digits& b) {
  Digits product;
  if (a.empty() || b.empty()) return product;
  // The product has a.size() + b.size() - 1 digits or one more.
  RequireDigits(a.size() + b.size() - 1);
  FromLimbs(MultiplyLimbs(ToLimbs(a), ToLimbs(b)), product);
  RequireDigits(product.size());
  return product;
}

void CBigInteger::Divide(const Digits& dividend, const Digits& divisor, Digits& quotient,
                         Digits& remainder) {
  quotient.clear();
  remainder.clear();
  if (divisor.empty()) return;
  if (Compare(dividend, divisor) < 0) {
    remainder = dividend;
    return;
  }
  Limbs u = ToLimbs(dividend);
  const Limbs v = ToLimbs(divisor);
  Limbs q;
  Limbs r;
  if (v.size() == 1) {
    r.assign(1, DivideLimbs(u, v[0]));
    TrimLimbs(r);
    q = std::move(u);
  } else {
    DivideLimbs(u, v, q, r);
  }
  FromLimbs(q, quotient);
  FromLimbs(r, remainder);
}

void CBigInteger::Pow10(Digits& v, std::size_t n) {
  RequireDigits(n + 1);
  v.assign(n + 1, 0);
  v[n] = 1;
}

}  // namespace OvXmlLib6
