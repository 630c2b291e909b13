// CDecimal: the value of the XML Schema decimal type, an exact decimal number.
//
// The value is integral + fractional / 10^divider, where both parts are CBigInteger values with
// the sign of the value and the divider is the number of fraction digits the fractional part
// stands for. At most GetMaxDecimalPlaces() fraction digits are kept (30 unless changed); digits
// beyond are cut off (truncation toward zero), both when parsing and after arithmetic.
//
// Parse errors are COvInvalidValueException; the narrowing conversions throw
// COvOverFlowException; a zero divisor throws COvInvalidValueException
// "ERROR: Overflow in operator/.".
#ifndef OVXMLLIB6_TYPES_DECIMAL_H
#define OVXMLLIB6_TYPES_DECIMAL_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/types/BigInteger.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

namespace detail {
struct CDecimalAccess;
}

class OVXML_API CDecimal {
 public:
  // Zero.
  CDecimal();
  CDecimal(int value);
  CDecimal(long value);
  CDecimal(long long value);
  // The double printed with 13 fixed decimals and read back: 0.1 becomes exactly 0.1, and
  // anything beyond the 13th decimal is dropped. An infinity or NaN is refused by the parser.
  CDecimal(double value);
  // Reads the decimal lexical form, also with an exponent (see Parse).
  CDecimal(const char* text);
  CDecimal(const CBigInteger& value);
  CDecimal(const CDecimal& other);
  CDecimal(CDecimal&& other) noexcept;
  CDecimal& operator=(const CDecimal& other);
  CDecimal& operator=(CDecimal&& other) noexcept;
  virtual ~CDecimal();

  // The process-wide number of fraction digits kept, 30 by default. Meant to be set once at
  // start-up: there is no lock. SetMaxDecimalPlaces accepts 0 to 100000 and throws
  // COvInvalidParamException otherwise.
  static int GetMaxDecimalPlaces();
  static void SetMaxDecimalPlaces(int places);

  // The exact value: the integer alone when there is no fraction, else the integral part, a
  // point and the fraction zero-filled to the divider ("-0.05", "1000.5").
  std::string ToString() const;
  // The value rounded half away from zero to `places` fraction digits, always with a point:
  // 1.005 gives "1.01", 2.5 with 0 places gives "3.". Throws COvInvalidParamException for a
  // count below 0 or above 100000.
  std::string ToString(int places) const;

  // These throw COvOverFlowException "The Decimal value if to large to fit into a Double",
  // "... a LONG" or "... a LONGLONG" when the integral part lies outside the target range;
  // the integer forms drop the fraction (truncation toward zero).
  double ToDouble() const;
  std::int32_t ToLong() const;
  std::int64_t ToLongLong() const;
  // The integral part.
  CBigInteger ToBigInteger() const;

  void Negate();
  CDecimal GetNegative() const;

  bool operator==(const CDecimal& other) const;
  bool operator!=(const CDecimal& other) const;
  bool operator<(const CDecimal& other) const;
  bool operator<=(const CDecimal& other) const;
  bool operator>(const CDecimal& other) const;
  bool operator>=(const CDecimal& other) const;

  // Exact, apart from the limit on fraction digits.
  CDecimal operator+(const CDecimal& other) const;
  CDecimal operator-(const CDecimal& other) const;
  CDecimal operator*(const CDecimal& other) const;
  // Carried to GetMaxDecimalPlaces() fraction digits and truncated there.
  CDecimal operator/(const CDecimal& other) const;
  CDecimal& operator+=(const CDecimal& other);
  CDecimal& operator-=(const CDecimal& other);
  CDecimal& operator*=(const CDecimal& other);
  CDecimal& operator/=(const CDecimal& other);
  CDecimal& operator++();
  CDecimal operator++(int);
  CDecimal& operator--();
  CDecimal operator--(int);

 private:
  friend struct detail::CDecimalAccess;

  CDecimal(const CBigInteger& integral, const CBigInteger& fractional, int divider);
  // The digits the storage of both parts has room for.
  std::size_t StorageDigits() const;

  // One pass from the left: an integral section where digits collect, "+" and "-" set the sign
  // wherever they stand (the last wins) and whitespace is skipped; after "." fraction digits
  // (whitespace skipped); after "e"/"E" signs, then exponent digits (whitespace skipped). Any
  // other character throws "The string representing a Decimal, contained an invalid char at
  // position %d [%s]".
  void Parse(const char* text);
  // Brings both values to the larger divider and returns it.
  static int Normalize(CDecimal& a, CDecimal& b);
  // Re-expresses the fraction with `divider` digits; fewer digits truncate.
  void ChangeFractionalDivider(int divider);
  // Drops trailing zero fraction digits; a zero fraction gets the divider 0.
  void Rationalise();
  // Rationalise, then cut the fraction to the maximum number of places.
  void LimitFraction();

  bool IsNegative() const;
  // -1, 0 or 1 by value.
  int CompareTo(const CDecimal& other) const;
  // The value times 10^divider as one integer; divider >= m_divider.
  CBigInteger Scaled(int divider) const;
  // The value scaled / 10^divider, limited to the maximum number of places.
  static CDecimal FromScaled(const CBigInteger& scaled, int divider);

  CBigInteger m_integral;
  CBigInteger m_fractional;
  int m_divider;

  static int m_maxDivider;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_DECIMAL_H
