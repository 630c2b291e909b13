#include "OvXmlLib6/types/BigInteger.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Decimal.h"
#include "unit/TestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

std::string Str(const CBigInteger& v) { return v.ToString(); }

std::string RandomDigits(std::mt19937& rng, std::size_t length) {
  std::string text(1, static_cast<char>('1' + rng() % 9));
  while (text.size() < length) text += static_cast<char>('0' + rng() % 10);
  return text;
}

// Runs of nines and zeros: quotient digits whose first estimate is too large, and borrows that
// run through a whole operand.
std::string RandomRuns(std::mt19937& rng, std::size_t length) {
  std::string text;
  while (text.size() < length) text.append(1 + rng() % 30, text.empty() || rng() % 2 ? '9' : '0');
  return text;
}

// Exact decimal text of a 128-bit integer, as the reference for the arithmetic.
std::string Str128(__int128 v) {
  if (v == 0) return "0";
  const bool negative = v < 0;
  unsigned __int128 m = negative ? -static_cast<unsigned __int128>(v) : v;
  std::string text;
  while (m != 0) {
    text.insert(text.begin(), static_cast<char>('0' + static_cast<int>(m % 10)));
    m /= 10;
  }
  return negative ? "-" + text : text;
}

}  // namespace

TEST(CBigInteger, ParsesLeniently) {
  EXPECT_EQ(Str("007"), "7");
  EXPECT_EQ(Str("+5"), "5");
  EXPECT_EQ(Str("-0"), "0");
  EXPECT_EQ(Str("  -12  "), "-12");
  EXPECT_EQ(Str("\t7"), "7");
  // Only the digits right of an inner separator count.
  EXPECT_EQ(Str("12 34"), "34");
  EXPECT_EQ(Str("--5"), "-5");
  EXPECT_EQ(Str("5-"), "0");
  EXPECT_EQ(Str(""), "0");
  EXPECT_EQ(Str(static_cast<const char*>(nullptr)), "0");
  // Any other character hands the text to the decimal reader.
  EXPECT_EQ(Str("12.7"), "12");
  EXPECT_EQ(Str("-12.7"), "-12");
  EXPECT_EQ(Str("1e3"), "1000");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { CBigInteger("1x"); }),
            "The string representing a Decimal, contained an invalid char at position 1 [1x]");

  const std::string big = "-" + std::string(300, '7');
  EXPECT_EQ(Str(big.c_str()), big);
  // A parsed minus zero keeps its sign but equals zero.
  EXPECT_EQ(CBigInteger("-0"), CBigInteger(0));
  EXPECT_FALSE(CBigInteger("-0") < CBigInteger(0));
}

TEST(CBigInteger, ConstructsFromMachineValues) {
  EXPECT_EQ(Str(std::numeric_limits<long long>::min()), "-9223372036854775808");
  EXPECT_EQ(Str(CBigInteger(-3.9)), "-3");
  EXPECT_EQ(Str(CBigInteger(-0.5)), "0");
  EXPECT_EQ(Str(CBigInteger(1e20)), "100000000000000000000");
  EXPECT_EQ(Str(CBigInteger::MAX_LONG), "2147483647");
  EXPECT_EQ(Str(CBigInteger::MIN_LONG), "-2147483648");
  EXPECT_EQ(Str(CBigInteger::MAX_DOUBLE).size(), 309u);
  EXPECT_EQ(Str(CBigInteger::MAX_DOUBLE).substr(0, 10), "1797693134");
  EXPECT_EQ(CBigInteger::MIN_DOUBLE, -CBigInteger::MAX_DOUBLE);
  EXPECT_THROW((void)CBigInteger(std::numeric_limits<double>::infinity()),
               COvInvalidValueException);
  EXPECT_THROW((void)CBigInteger(std::numeric_limits<double>::quiet_NaN()),
               COvInvalidValueException);
  EXPECT_EQ(Str(CBigInteger::Pow10(0)), "1");
  EXPECT_EQ(Str(CBigInteger::Pow10(25)), "1" + std::string(25, '0'));
}

TEST(CBigInteger, ComparesBySignThenMagnitude) {
  const CBigInteger values[] = {"-1000", "-999", "-1", "0", "1", "999", "1000"};
  for (std::size_t i = 0; i < 7; ++i) {
    for (std::size_t j = 0; j < 7; ++j) {
      EXPECT_EQ(values[i] < values[j], i < j) << i << ' ' << j;
      EXPECT_EQ(values[i] == values[j], i == j) << i << ' ' << j;
      EXPECT_EQ(values[i] >= values[j], i >= j) << i << ' ' << j;
    }
  }
}

TEST(CBigInteger, CarriesAcrossLongOperands) {
  EXPECT_EQ(Str(CBigInteger("99999999999999999999") + 1), "100000000000000000000");
  const CBigInteger nines(std::string(300, '9').c_str());
  const CBigInteger power = CBigInteger::Pow10(300);
  EXPECT_EQ(nines + 1, power);
  EXPECT_EQ(power - 1, nines);
  EXPECT_EQ(Str(CBigInteger(1) - power), "-" + std::string(300, '9'));
  EXPECT_EQ(Str(nines - nines), "0");
  // (10^200 - 1)^2 = 10^400 - 2 * 10^200 + 1.
  const CBigInteger x = CBigInteger::Pow10(200) - 1;
  EXPECT_EQ(Str(x * x), std::string(199, '9') + "8" + std::string(199, '0') + "1");
  EXPECT_EQ(x * x / x, x);
  EXPECT_EQ(Str(x * x % x), "0");
  EXPECT_EQ(Str(CBigInteger(0) * x), "0");
  EXPECT_EQ(Str(-x * 0), "0");
}

TEST(CBigInteger, MatchesMachineArithmetic) {
  std::mt19937_64 rng(3);
  for (int n = 0; n < 2000; ++n) {
    // Magnitudes of 1 to 18 digits, both signs, so that every result fits 128 bits.
    const long long a = static_cast<long long>(rng() % 1000000000000000000ULL) >> (rng() % 60);
    long long b = static_cast<long long>(rng() % 1000000000000000000ULL) >> (rng() % 60);
    const long long sa = rng() % 2 ? -a : a;
    const long long sb = rng() % 2 ? -b : b;
    const CBigInteger x(sa), y(sb);
    ASSERT_EQ(Str(x + y), Str128(static_cast<__int128>(sa) + sb)) << sa << ' ' << sb;
    ASSERT_EQ(Str(x - y), Str128(static_cast<__int128>(sa) - sb)) << sa << ' ' << sb;
    ASSERT_EQ(Str(x * y), Str128(static_cast<__int128>(sa) * sb)) << sa << ' ' << sb;
    ASSERT_EQ(x < y, sa < sb);
    if (sb != 0) {
      ASSERT_EQ(Str(x / y), Str128(sa / sb)) << sa << ' ' << sb;
      ASSERT_EQ(Str(x % y), Str128(sa % sb)) << sa << ' ' << sb;
    }
    ASSERT_EQ(static_cast<long long>(x), sa);
  }
}

TEST(CBigInteger, DividesLongOperandsExactly) {
  std::mt19937 rng(11);
  for (int n = 0; n < 400; ++n) {
    const auto digits = n % 2 ? RandomRuns : RandomDigits;
    const CBigInteger a(digits(rng, 50 + rng() % 350).c_str());
    CBigInteger b(digits(rng, 1 + rng() % 200).c_str());
    if (rng() % 2) b.Negate();
    const CBigInteger q = a / b;
    const CBigInteger r = a % b;
    ASSERT_EQ(q * b + r, a);
    ASSERT_LT(r.GetAbs(), b.GetAbs());
    ASSERT_FALSE(r < 0);
    ASSERT_EQ(-a / b, -q);
    ASSERT_EQ(-a % b, -r);
    CBigInteger c = a;
    c /= b;
    ASSERT_EQ(c, q);
    c = a;
    c %= b;
    ASSERT_EQ(c, r);
  }
  EXPECT_EQ(Str(CBigInteger(-7) / 2), "-3");
  EXPECT_EQ(Str(CBigInteger(-7) % 2), "-1");
  EXPECT_EQ(Str(CBigInteger(7) % -2), "1");
  EXPECT_EQ(Str(CBigInteger(3) / 5), "0");
  EXPECT_EQ(Str(CBigInteger(-3) % 5), "-3");
}

TEST(CBigInteger, DivisionByZeroNamesTheOperator) {
  CBigInteger a(5);
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { a / 0; }), "ERROR: Overflow in operator/.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { a % CBigInteger("-0"); }),
            "ERROR: Overflow in operator%.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { a /= 0; }),
            "ERROR: Overflow in operator /=.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { a %= 0; }), "ERROR: Overflow in operator%=.");
  EXPECT_EQ(Str(a), "5");
}

TEST(CBigInteger, SquareRootIsTheFloor) {
  EXPECT_EQ(Str(CBigInteger(99).SquareRoot()), "9");
  EXPECT_EQ(Str(CBigInteger(100).SquareRoot()), "10");
  for (int n = 0; n < 300; ++n) {
    const CBigInteger r = CBigInteger(n).SquareRoot();
    ASSERT_TRUE(r * r <= n && (r + 1) * (r + 1) > n) << n;
  }
  std::mt19937 rng(5);
  for (int n = 0; n < 20; ++n) {
    const CBigInteger v(RandomDigits(rng, 1 + rng() % 300).c_str());
    const CBigInteger r = v.SquareRoot();
    ASSERT_TRUE(r * r <= v && (r + 1) * (r + 1) > v) << v.ToString();
    ASSERT_EQ((v * v).SquareRoot(), v);
    ASSERT_EQ((v * v - 1).SquareRoot(), v - 1);
  }
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { CBigInteger(-1).SquareRoot(); }),
            "ERROR: Negative Number in function SquareRoot().");
}

TEST(CBigInteger, NarrowsWithinBounds) {
  EXPECT_EQ(static_cast<long long>(CBigInteger("9223372036854775807")),
            std::numeric_limits<long long>::max());
  EXPECT_EQ(static_cast<long long>(CBigInteger("-9223372036854775808")),
            std::numeric_limits<long long>::min());
  for (const CBigInteger& outside : {CBigInteger("9223372036854775808"),
                                     CBigInteger("-9223372036854775809"), CBigInteger::Pow10(40)}) {
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { (void)static_cast<long long>(outside); }),
              "ERROR: Value out of bound of LONGLONG.");
  }
  EXPECT_EQ(static_cast<int>(CBigInteger("-2147483648")), std::numeric_limits<int>::min());
  EXPECT_EQ(static_cast<int>(CBigInteger("2147483647")), std::numeric_limits<int>::max());
  EXPECT_EQ(MessageOf<COvInvalidValueException>(
                [] { (void)static_cast<int>(CBigInteger("2147483648")); }),
            "ERROR: Value out of bound of int.");
  EXPECT_EQ(static_cast<int>(CBigInteger("-0")), 0);
}

// Absurd sizes are refused before any work: reading, multiplying, adding, shifting and powers of
// ten whose result would pass the digit limit throw COvOverFlowException, decimals too. Most
// checks run under a lowered limit (ten-million-digit texts are in the hostile-input table).
TEST(CBigInteger, DigitLimitRefusesAbsurdValuesBeforeTheWork) {
  const auto overflows = [](const std::function<void()>& operation) {
    try {
      operation();
      return false;
    } catch (const COvOverFlowException& e) {
      return e.GetMessage().find("CBigInteger::SetMaxDigits") != std::string::npos;
    } catch (const COvException& e) {
      ADD_FAILURE() << e.GetMessage();
      return false;
    }
  };
  ASSERT_EQ(CBigInteger::GetMaxDigits(), 100000u);
  EXPECT_FALSE(overflows([&] { CDecimal value("1e99999"); }));  // 100,000 digits

  CBigInteger::SetMaxDigits(20);
  const CBigInteger big("99999999999999999999");  // 20 digits
  EXPECT_EQ(CBigInteger("000099999999999999999999").ToString(), big.ToString());
  EXPECT_TRUE(overflows([&] { CBigInteger value("199999999999999999999"); }));
  EXPECT_TRUE(overflows([&] { CDecimal value("1e20"); }));
  EXPECT_FALSE(overflows([&] { CDecimal value("1e19"); }));
  EXPECT_TRUE(overflows([&] { CBigInteger::Pow10(20); }));
  EXPECT_TRUE(overflows([&] { (void)(big * big); }));
  EXPECT_TRUE(overflows([&] { (void)(big + CBigInteger(1)); }));
  EXPECT_TRUE(overflows([&] { (void)(big * CBigInteger(2)); }));
  EXPECT_FALSE(overflows([&] { (void)(big * CBigInteger(1)); }));
  EXPECT_EQ((big / CBigInteger(3)).ToString(), "33333333333333333333");  // multiples may pass
  EXPECT_EQ((big / big).ToString(), "1");
  CBigInteger::SetMaxDigits(0);  // back to the default
  EXPECT_EQ(CBigInteger::GetMaxDigits(), 100000u);
}
