// CBigInteger and CDecimal. The input is two number texts separated by '|', then two bytes that
// make a power of ten (bounded). What parses must print a form that parses to an equal value,
// and the arithmetic must keep its identities: (a + b) - b == a, a - b == -(b - a), the order
// agrees with the sign of the difference, q * b + r == a with |r| < |b| for the integer
// quotient, and a * 10^n / 10^n == a.
#include "FuzzSupport.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/Decimal.h"

using namespace OvXmlLib6;

namespace {

// `text` without the zeros that end its fraction (and without a point left bare).
std::string WithoutTrailingZeros(std::string text) {
  if (text.find('.') == std::string::npos) return text;
  while (text.back() == '0') text.pop_back();
  if (text.back() == '.') text.pop_back();
  return text;
}

// The printed form of a value parses to an equal value that prints the same (a quotient cut to
// its places may print a zero at the end of its fraction, which the value read back does not).
template <typename T>
void CheckText(const T& value) {
  const std::string printed = value.ToString();
  T again;
  fuzz::MustSucceed("a printed number parses again", printed, [&] { again = T(printed.c_str()); });
  fuzz::Require(again == value && (again.ToString() == printed ||
                                   again.ToString() == WithoutTrailingZeros(printed)),
                "a printed number parses to the same value", printed, again.ToString());
}

// The identities of + - and the order, for both types. Results too long throw and are skipped.
template <typename T>
void CheckSum(const T& a, const T& b) {
  const T zero;
  fuzz::Attempt([&] {
    const T sum = a + b;
    CheckText(sum);
    fuzz::Require(sum - b == a, "(a + b) - b == a", a.ToString(), (sum - b).ToString());
    const T difference = a - b;
    fuzz::Require(difference == zero - (b - a), "a - b == -(b - a)", difference.ToString(),
                  (b - a).ToString());
    fuzz::Require((a < b) == (difference < zero) && (a == b) == (difference == zero) &&
                      (a > b) == (difference > zero),
                  "the order agrees with the difference", a.ToString(), b.ToString());
  });
}

void CheckIntegers(const CBigInteger& a, const CBigInteger& b, unsigned exponent) {
  CheckText(a);
  CheckSum(a, b);
  fuzz::Attempt([&] {
    const CBigInteger product = a * b;
    CheckText(product);
    if (b != CBigInteger()) {
      fuzz::Require(product / b == a, "(a * b) / b == a", a.ToString(), (product / b).ToString());
    }
  });
  if (b != CBigInteger()) {
    fuzz::Attempt([&] {
      const CBigInteger quotient = a / b;
      const CBigInteger remainder = a % b;
      fuzz::Require(quotient * b + remainder == a, "q * b + r == a", a.ToString(),
                    (quotient * b + remainder).ToString());
      fuzz::Require(remainder.GetAbs() < b.GetAbs(), "|r| < |b|", remainder.ToString(),
                    b.ToString());
    });
  }
  fuzz::Attempt([&] {
    const CBigInteger power = CBigInteger::Pow10(exponent);
    fuzz::Require((a * power) / power == a, "a * 10^n / 10^n == a", a.ToString(),
                  std::to_string(exponent));
  });
  fuzz::Attempt([&] {
    if (!(a < CBigInteger())) {
      const CBigInteger root = a.SquareRoot();
      fuzz::Require(root * root <= a && (root + 1) * (root + 1) > a, "the square root brackets a",
                    a.ToString(), root.ToString());
    }
  });
}

void CheckDecimals(const CDecimal& a, const CDecimal& b) {
  CheckText(a);
  CheckSum(a, b);
  fuzz::Attempt([&] {
    const CDecimal product = a * b;
    CheckText(product);
  });
  fuzz::Attempt([&] {
    const CDecimal quotient = a / b;
    CheckText(quotient);
    fuzz::Attempt([&] { (void)quotient.ToString(2); });
  });
  fuzz::Attempt([&] { (void)a.ToBigInteger(); });
  fuzz::Attempt([&] { (void)a.ToDouble(); });
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::CInput input(data, size);
  const unsigned exponent = (input.Byte() | (input.Byte() << 8u)) % 2048u;
  const std::string first = input.TextUntil('|');
  const std::string second = input.Rest();

  CBigInteger a;
  CBigInteger b;
  if (fuzz::Attempt([&] { a = CBigInteger(first.c_str()); }) &&
      fuzz::Attempt([&] { b = CBigInteger(second.c_str()); })) {
    CheckIntegers(a, b, exponent);
  }
  CDecimal x;
  CDecimal y;
  if (fuzz::Attempt([&] { x = CDecimal(first.c_str()); }) &&
      fuzz::Attempt([&] { y = CDecimal(second.c_str()); })) {
    CheckDecimals(x, y);
  }
  return 0;
}
