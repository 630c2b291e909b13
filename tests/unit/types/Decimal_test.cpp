#include "OvXmlLib6/types/Decimal.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>
#include <utility>
#include <vector>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

std::string Str(const CDecimal& v) { return v.ToString(); }

std::string InvalidChar(int position, const std::string& text) {
  return "The string representing a Decimal, contained an invalid char at position " +
         std::to_string(position) + " [" + text + "]";
}

// Restores the process-wide number of places when a test ends.
struct PlacesGuard {
  int saved = CDecimal::GetMaxDecimalPlaces();
  ~PlacesGuard() { CDecimal::SetMaxDecimalPlaces(saved); }
};

}  // namespace

TEST(CDecimal, ParsesLexicalForms) {
  EXPECT_EQ(Str("1e3"), "1000");
  EXPECT_EQ(Str("1.5E-2"), "0.015");
  EXPECT_EQ(Str("1 000.5"), "1000.5");
  EXPECT_EQ(Str("-0.05"), "-0.05");
  EXPECT_EQ(Str("0012.3400"), "12.34");
  EXPECT_EQ(Str(".5"), "0.5");
  EXPECT_EQ(Str("7."), "7");
  EXPECT_EQ(Str(""), "0");
  EXPECT_EQ(Str("-0"), "0");
  EXPECT_EQ(Str("-0.000"), "0");
  EXPECT_EQ(Str("1. 2 3\n"), "1.23");
  EXPECT_EQ(Str("123.456e2"), "12345.6");
  EXPECT_EQ(Str("123.456e-5"), "0.00123456");
  EXPECT_EQ(Str("1e 2"), "100");
  EXPECT_EQ(Str("5E+-2"), "0.05");
  EXPECT_EQ(Str("2e"), "2");
  // A sign anywhere in the integral section counts; the last one wins.
  EXPECT_EQ(Str("5-"), "-5");
  EXPECT_EQ(Str("-+3"), "3");
  EXPECT_EQ(Str("+-3.25"), "-3.25");
}

TEST(CDecimal, RejectsInvalidCharsWithTheirPosition) {
  const std::pair<const char*, int> refused[] = {
      {"12a", 2}, {"1.2.3", 3}, {"1.5-", 3}, {"1e5-", 3}, {"1e2.5", 3}, {"0x10", 1}, {"1\v", 1}};
  for (const auto& r : refused) {
    EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { CDecimal{r.first}; }),
              InvalidChar(r.second, r.first));
  }
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { CDecimal("1e100001"); }),
            "The string representing a Decimal, contained an exponent out of range at position 7 "
            "[1e100001]");
  // Large negative exponents within the limit are cheap: every digit falls off.
  EXPECT_EQ(Str("1e-100000"), "0");
  EXPECT_EQ(Str("1e1000").size(), 1001u);
}

TEST(CDecimal, KeepsAtMostTheMaximumPlaces) {
  PlacesGuard guard;
  EXPECT_EQ(CDecimal::GetMaxDecimalPlaces(), 30);
  const std::string forty = "0." + std::string(39, '1') + "9";
  EXPECT_EQ(Str(forty.c_str()), "0." + std::string(30, '1'));
  // Cut after rationalising: the trailing zeros of the cut fraction stay.
  EXPECT_EQ(Str(("1." + std::string(30, '0') + "1").c_str()), "1");
  EXPECT_EQ(Str(("1.1" + std::string(30, '0') + "7").c_str()), "1.1" + std::string(29, '0'));
  EXPECT_EQ(Str("1e-31"), "0");
  EXPECT_EQ(Str(CDecimal(1) / CDecimal(3)), "0." + std::string(30, '3'));

  CDecimal::SetMaxDecimalPlaces(2);
  EXPECT_EQ(Str("-3.14159"), "-3.14");
  EXPECT_EQ(Str(CDecimal("0.25") * CDecimal("0.5")), "0.12");
  EXPECT_EQ(Str(CDecimal(2) / CDecimal(3)), "0.66");
  CDecimal::SetMaxDecimalPlaces(0);
  EXPECT_EQ(Str(CDecimal(7) / CDecimal(2)), "3");
  EXPECT_EQ(MessageOf<COvInvalidParamException>([] { CDecimal::SetMaxDecimalPlaces(-1); }),
            "Invalid maximum number of decimal places [-1] (0 <= places <= 100000)");
  EXPECT_EQ(CDecimal::GetMaxDecimalPlaces(), 0);
}

TEST(CDecimal, PrintsRoundedHalfAwayFromZero) {
  EXPECT_EQ(CDecimal("1.005").ToString(2), "1.01");
  EXPECT_EQ(CDecimal("-1.005").ToString(2), "-1.01");
  EXPECT_EQ(CDecimal("1.004").ToString(2), "1.00");
  EXPECT_EQ(CDecimal("2.5").ToString(0), "3.");
  EXPECT_EQ(CDecimal("-2.5").ToString(0), "-3.");
  EXPECT_EQ(CDecimal("-0.4").ToString(0), "-0.");
  EXPECT_EQ(CDecimal("0.9995").ToString(3), "1.000");
  EXPECT_EQ(CDecimal("99.96").ToString(1), "100.0");
  EXPECT_EQ(CDecimal("1.5").ToString(3), "1.500");
  EXPECT_EQ(CDecimal(12).ToString(2), "12.00");
  EXPECT_EQ(CDecimal("0.05").ToString(1), "0.1");
  EXPECT_EQ(MessageOf<COvInvalidParamException>([] { CDecimal(1).ToString(-1); }),
            "Invalid number of decimal places [-1] (0 <= places <= 100000)");
}

TEST(CDecimal, ConvertsFromDoubleThroughThirteenDecimals) {
  EXPECT_EQ(Str(0.1), "0.1");
  EXPECT_EQ(Str(-2.5), "-2.5");
  EXPECT_EQ(Str(1.0 / 3), "0.3333333333333");
  EXPECT_EQ(Str(1e-14), "0");
  EXPECT_EQ(Str(1e20), "100000000000000000000");
  EXPECT_EQ(CDecimal(std::numeric_limits<double>::max()).ToBigInteger(), CBigInteger::MAX_DOUBLE);
  EXPECT_EQ(MessageOf<COvInvalidValueException>(
                [] { (void)CDecimal(std::numeric_limits<double>::infinity()); }),
            InvalidChar(0, "inf\n"));
}

TEST(CDecimal, NarrowsOrOverflows) {
  EXPECT_EQ(CDecimal("-2147483648.9").ToLong(), std::numeric_limits<std::int32_t>::min());
  EXPECT_EQ(CDecimal("2147483647.9").ToLong(), std::numeric_limits<std::int32_t>::max());
  EXPECT_EQ(MessageOf<COvOverFlowException>([] { CDecimal("2147483648").ToLong(); }),
            "The Decimal value if to large to fit into a LONG");
  EXPECT_EQ(CDecimal("-9223372036854775808").ToLongLong(),
            std::numeric_limits<std::int64_t>::min());
  EXPECT_EQ(CDecimal("-12.99").ToLongLong(), -12);
  EXPECT_EQ(MessageOf<COvOverFlowException>([] { CDecimal("9223372036854775808").ToLongLong(); }),
            "The Decimal value if to large to fit into a LONGLONG");
  EXPECT_EQ(CDecimal("-1.25").ToDouble(), -1.25);
  EXPECT_EQ(CDecimal("0.1").ToDouble(), 0.1);
  EXPECT_EQ(CDecimal(CBigInteger::MAX_DOUBLE).ToDouble(), std::numeric_limits<double>::max());
  EXPECT_EQ(
      MessageOf<COvOverFlowException>([] { CDecimal(CBigInteger::MIN_DOUBLE - 1).ToDouble(); }),
      "The Decimal value if to large to fit into a Double");
  EXPECT_EQ(Str(CDecimal("-12.7").ToBigInteger()), "-12");
}

TEST(CDecimal, ComputesExactly) {
  EXPECT_EQ(CDecimal("0.1") + CDecimal("0.2"), CDecimal("0.3"));
  EXPECT_EQ(Str(CDecimal("0.5") - CDecimal(1)), "-0.5");
  EXPECT_EQ(Str(CDecimal("-1.01") + CDecimal(1)), "-0.01");
  EXPECT_EQ(Str(CDecimal("0.99") + CDecimal("0.01")), "1");
  EXPECT_EQ(Str(CDecimal("-0.5") + CDecimal("0.5")), "0");
  EXPECT_EQ(Str(CDecimal("1.25") * CDecimal(-4)), "-5");
  EXPECT_EQ(Str(CDecimal("-0.5") * CDecimal("-0.5")), "0.25");
  EXPECT_EQ(Str(CDecimal(-7) / CDecimal(2)), "-3.5");
  EXPECT_EQ(Str(CDecimal("1.5") / CDecimal("0.25")), "6");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { CDecimal(1) / CDecimal("0.000"); }),
            "ERROR: Overflow in operator/.");
  CDecimal d("0.5");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([&] { d /= CDecimal(); }),
            "ERROR: Overflow in operator/.");
  EXPECT_EQ(Str(d++), "0.5");
  EXPECT_EQ(Str(d), "1.5");
  EXPECT_EQ(Str(--d), "0.5");
  EXPECT_EQ(Str(--d), "-0.5");
  d *= CDecimal(10);
  d -= CDecimal("0.125");
  EXPECT_EQ(Str(d), "-5.125");
  EXPECT_EQ(Str(d.GetNegative()), "5.125");

  // Against scaled 64-bit arithmetic on values with up to 4 fraction digits.
  std::mt19937_64 rng(9);
  for (int n = 0; n < 1000; ++n) {
    const long long a = static_cast<long long>(rng() % 2000000000) - 1000000000;
    const long long b = static_cast<long long>(rng() % 2000000) - 1000000;
    const CDecimal x = CDecimal(a) / CDecimal(10000);
    const CDecimal y = CDecimal(b) / CDecimal(100);
    ASSERT_EQ(x + y, CDecimal(a + b * 100) / CDecimal(10000)) << a << ' ' << b;
    ASSERT_EQ(x - y, CDecimal(a - b * 100) / CDecimal(10000)) << a << ' ' << b;
    ASSERT_EQ(x * y, CDecimal(a * b) / CDecimal(1000000)) << a << ' ' << b;
    ASSERT_EQ(x < y, a < b * 100) << a << ' ' << b;
    ASSERT_EQ(CDecimal(x.ToString().c_str()), x);
    ASSERT_EQ(x.ToDouble(), static_cast<double>(a) / 10000) << a;
  }
}

TEST(CDecimal, ComparesByValue) {
  EXPECT_EQ(CDecimal("1.10"), CDecimal("1.1"));
  EXPECT_EQ(CDecimal("-0"), CDecimal(0));
  EXPECT_LT(CDecimal("1.5"), CDecimal("1.50001"));
  EXPECT_LT(CDecimal("-0.5"), CDecimal(0));
  EXPECT_LT(CDecimal("-1.5"), CDecimal("-1.25"));
  EXPECT_GT(CDecimal("10"), CDecimal("9.999"));
  EXPECT_EQ(CDecimal(CBigInteger("123")), CDecimal(123));
}

// Random and truncated texts: every outcome is a value or COvInvalidValueException, and a value
// prints to text that reads back as the same value. Run under the sanitizers, this also checks
// that no text reads or writes out of bounds.
TEST(CDecimal, FuzzedTextsGiveValuesOrInvalidValueErrors) {
  std::vector<std::string> inputs =
      test::MutatedTexts({"-12 345.678e-3", "+1.5E+2", "0.000000000000000000000000000000001e31",
                          "99999999999999999999.99999999999999999999", "1e99999", ""},
                         "0123456789+-.eE \t\r\nx,", 3000, 1, 12);
  // Long texts take the heap path of the parser.
  std::mt19937 rng(1);
  std::string longText;
  for (int n = 0; n < 500; ++n) longText += "0123456789.e"[rng() % 12];
  for (std::size_t n = 100; n <= longText.size(); n += 37) inputs.push_back(longText.substr(0, n));
  for (const std::string& text : inputs) {
    const auto exact = test::ExactCopy(text);
    try {
      const CDecimal value(exact.get());
      ASSERT_EQ(CDecimal(value.ToString().c_str()), value) << text;
      (void)value.ToString(3);
    } catch (const COvInvalidValueException&) {
    } catch (const COvOverFlowException&) {  // past the digit limit, as "11e99999" is
    }
    try {
      const CBigInteger value(exact.get());
      ASSERT_EQ(CBigInteger(value.ToString().c_str()), value) << text;
    } catch (const COvInvalidValueException&) {
    } catch (const COvOverFlowException&) {
    }
  }
}
