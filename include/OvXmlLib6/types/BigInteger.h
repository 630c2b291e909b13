// CBigInteger: the value of the XML Schema integer family when a value may exceed 64 bits.
//
// A sign and a magnitude held as decimal digits, one digit (0..9, not a character code) per
// element, least significant first. Arithmetic is schoolbook decimal: simple, exact, and printable
// without any base conversion. Zero is held with the sign +1 after any arithmetic; a parsed "-0"
// keeps -1 (it still prints as "0" and compares equal to zero).
//
// No value has more than GetMaxDigits() digits (100,000 unless changed), read or computed:
// reading a longer one, or an operation whose result would be longer (checked before the work,
// so a hostile operand costs no time), throws COvOverFlowException. Every other failure is a
// COvInvalidValueException; an operation that throws leaves its operands unchanged.
#ifndef OVXMLLIB6_TYPES_BIGINTEGER_H
#define OVXMLLIB6_TYPES_BIGINTEGER_H

#include "OvXmlLib6/core/Export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace OvXmlLib6 {

class CDecimal;

class OVXML_API CBigInteger {
 public:
  // The limits of the 32-bit and 64-bit signed integers and the integral part of +/-DBL_MAX.
  static const CBigInteger MAX_LONG;
  static const CBigInteger MIN_LONG;
  static const CBigInteger MAX_LONGLONG;
  static const CBigInteger MIN_LONGLONG;
  static const CBigInteger MAX_DOUBLE;
  static const CBigInteger MIN_DOUBLE;

  // The most digits a value may have, process-wide, 100,000 by default: enough for any
  // document value, and small enough that the schoolbook multiplication and division of the
  // largest values take seconds, not hours. Meant to be set once at start-up: there is no lock.
  // 0 restores the default. CDecimal values obey it too (integral and fraction digits count
  // together), so raise it with CDecimal::SetMaxDecimalPlaces when that goes near it.
  static std::size_t GetMaxDigits();
  static void SetMaxDigits(std::size_t digits);

  // Zero.
  CBigInteger();
  CBigInteger(int value);
  CBigInteger(long value);
  CBigInteger(long long value);
  // The integral part of the double, sign kept. Throws for an infinity or NaN.
  explicit CBigInteger(double value);
  // Runs Parse.
  CBigInteger(const char* text);
  // The decimal's integral part, sign kept.
  explicit CBigInteger(const CDecimal& value);
  CBigInteger(const CBigInteger& other);
  CBigInteger(CBigInteger&& other) noexcept;
  CBigInteger& operator=(const CBigInteger& other);
  CBigInteger& operator=(CBigInteger&& other) noexcept;
  virtual ~CBigInteger();

  // Reads the text leniently. Text with any character other than digits, "+", "-", space, tab,
  // CR and LF is read as a CDecimal and the value becomes its integral part (the decimal
  // parser's errors apply). Otherwise spaces are trimmed, a leading "-" makes the value negative,
  // and the digits are taken from the right up to the first non-digit: "12 34" gives 34, "+5"
  // gives 5, "--5" gives -5. A null or empty text gives zero.
  void Parse(const char* text);
  // "-" for a negative value, then the digits; zero prints "0" whatever its sign.
  std::string ToString() const;

  void Abs();
  void Negate();
  CBigInteger GetAbs() const;
  CBigInteger GetNegative() const;
  CBigInteger operator-() const;

  bool operator==(const CBigInteger& other) const;
  bool operator!=(const CBigInteger& other) const;
  bool operator<(const CBigInteger& other) const;
  bool operator<=(const CBigInteger& other) const;
  bool operator>(const CBigInteger& other) const;
  bool operator>=(const CBigInteger& other) const;

  CBigInteger operator+(const CBigInteger& other) const;
  CBigInteger operator-(const CBigInteger& other) const;
  CBigInteger operator*(const CBigInteger& other) const;
  // Truncates toward zero. A zero divisor throws "ERROR: Overflow in operator/.".
  CBigInteger operator/(const CBigInteger& other) const;
  // The remainder of the truncating division; it takes the dividend's sign (-7 % 2 is -1).
  // A zero divisor throws "ERROR: Overflow in operator%.".
  CBigInteger operator%(const CBigInteger& other) const;
  CBigInteger& operator+=(const CBigInteger& other);
  CBigInteger& operator-=(const CBigInteger& other);
  CBigInteger& operator*=(const CBigInteger& other);
  // A zero divisor throws "ERROR: Overflow in operator /.".
  CBigInteger& operator/=(const CBigInteger& other);
  // A zero divisor throws "ERROR: Overflow in operator%=.".
  CBigInteger& operator%=(const CBigInteger& other);

  // The floor of the square root. A negative value throws
  // "ERROR: Negative Number in function SquareRoot().".
  CBigInteger SquareRoot() const;
  // 10 to the n.
  static CBigInteger Pow10(unsigned n);

  // Narrowing; outside the target range they throw "ERROR: Value out of bound of int." and
  // "ERROR: Value out of bound of LONGLONG.". Explicit, so that mixed expressions such as
  // `value + 1` or `value == 0` stay unambiguous: write static_cast<long long>(value).
  explicit operator int() const;
  explicit operator long long() const;

 protected:
  using Digits = std::vector<char>;

  // Takes the digits as they are (least significant first) and cleans them.
  CBigInteger(int sign, Digits digits);

  // The number of digits; 1 for an empty vector.
  static std::size_t Position(const Digits& v);
  // Drops the most significant zero digits; zero becomes the empty vector.
  static void Clean(Digits& v);
  // Compares two clean magnitudes: -1, 0 or 1.
  static int Compare(const Digits& a, const Digits& b);
  // Multiplies by 10^n by inserting n zero digits at the low end (nothing for zero).
  static void ShiftLeft(Digits& v, std::size_t n);
  // The digits of [begin, end) read from the right up to the first non-digit.
  static void Build(Digits& v, const char* begin, const char* end);
  static void Build(Digits& v, unsigned int value);
  static void BuildDWORDLONG(Digits& v, std::uint64_t value);
  // The magnitude of the double's integral part; the double must be finite.
  static void BuildDouble(Digits& v, double value);
  static Digits Add(const Digits& a, const Digits& b);
  // larger - smaller; the caller guarantees larger >= smaller.
  static Digits Subtract(const Digits& larger, const Digits& smaller);
  static Digits Multiply(const Digits& a, const Digits& b);
  // Long division of magnitudes; the divisor must not be zero.
  static void Divide(const Digits& dividend, const Digits& divisor, Digits& quotient,
                     Digits& remainder);
  // Sets v to 10^n.
  static void Pow10(Digits& v, std::size_t n);
  // Throws COvOverFlowException when a value of `count` digits would pass GetMaxDigits().
  static void RequireDigits(std::size_t count);

 private:
  friend class CDecimal;

  bool IsZero() const { return m_digits.empty(); }
  bool IsNegative() const { return m_sign < 0 && !m_digits.empty(); }
  // Cleans the digits and gives zero the sign +1, as every arithmetic result is held.
  void Normalise();
  // -1, 0 or 1 by value; a negative zero equals zero.
  int CompareTo(const CBigInteger& other) const;
  // this + sign * other.
  CBigInteger AddSigned(const CBigInteger& other, int otherSign) const;
  // Truncating division into either or both outputs; the divisor is not zero.
  void DivideBy(const CBigInteger& divisor, CBigInteger* quotient, CBigInteger* remainder) const;
  // The value as a 64-bit integer when it lies within [low, high].
  bool FitsInt64(std::int64_t low, std::int64_t high, std::int64_t& out) const;

  int m_sign;
  Digits m_digits;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_BIGINTEGER_H
