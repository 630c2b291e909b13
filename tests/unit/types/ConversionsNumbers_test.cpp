// The number conversions' own cases: whitespace rules, the narrow and unsigned types, the range
// ends, and printing. The texts that the conversions and the Fast Infoset encodings read alike
// are in NumberText_test.cpp.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"
#include "unit/TestSupport.h"

#include <cfloat>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <limits>
#include <random>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;
using C = CConversions;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

}  // namespace

TEST(CConversions, Int32AndNarrowIntegers) {
  EXPECT_EQ(C::i4FromString("", kNone), 0);
  EXPECT_EQ(C::i4FromString(" 12 ", kCollapse), 12);
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::i4FromString(" 12 ", kNone); }),
            "The value [ 12 ] can not be converted to a i4");
  EXPECT_EQ(C::i4FromString("2147483647", kNone), 2147483647);
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::i4FromString("-2147483649", kNone); }),
            "The value [-2147483649] is to large to fit in a i4");
  EXPECT_EQ(C::i1FromString("-128", kNone), -128);
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::i1FromString(" -129", kCollapse); }),
            "The value [ -129] is to large to fit in a i1");  // the text before the rule
  EXPECT_EQ(C::i1ToString(-5), "-5");
  EXPECT_EQ(C::i2ToString(-32768), "-32768");
  EXPECT_EQ(C::i4ToString(std::numeric_limits<std::int32_t>::min()), "-2147483648");
}

TEST(CConversions, UnsignedAnd64BitIntegers) {
  EXPECT_EQ(C::ui4FromString("-1", kNone), 4294967295u);
  EXPECT_EQ(C::ui4FromString("4294967295", kNone), 4294967295u);
  EXPECT_EQ(C::ui4FromString("-4294967295", kNone), 1u);
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::ui4FromString("4294967296", kNone); }),
            "The value [4294967296] is to large to fit in a ui4");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::ui1FromString("-1", kNone); }),
            "The value [-1] is to large to fit in a ui1");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::ui2FromString("65536", kNone); }),
            "The value [65536] is to large to fit in a ui2");
  EXPECT_EQ(C::ui2FromString("65535", kNone), 65535);

  EXPECT_EQ(C::i8FromString("9223372036854775807", kNone),
            std::numeric_limits<std::int64_t>::max());
  EXPECT_EQ(C::ui8FromString("18446744073709551615", kNone), 18446744073709551615ull);
  EXPECT_EQ(C::ui8FromString("-1", kNone), 18446744073709551615ull);
  EXPECT_EQ(
      MessageOf<COvInvalidValueException>([] { C::ui8FromString("18446744073709551616", kNone); }),
      "The value [18446744073709551616] is to large to fit in a ui8");
  EXPECT_EQ(C::i8ToString(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
  EXPECT_EQ(C::ui8ToString(18446744073709551615ull), "18446744073709551615");
  EXPECT_EQ(C::ui1ToString(255), "255");
}

TEST(CConversions, RealsParse) {
  EXPECT_TRUE(std::isnan(C::r8FromString("", kNone)));
  EXPECT_TRUE(std::isnan(C::r4FromString(" NaN ", kCollapse)));
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::r4FromString(" NaN ", kNone); }),
            "The value [ NaN ] can not be converted to a r4");
  EXPECT_EQ(C::r8FromString(" +1.5e3", kNone), 1500.0);
  EXPECT_EQ(C::r8FromString("0.1", kNone), 0.1);
  EXPECT_EQ(C::r8FromString("0.000001e-400", kNone), 0.0);
  // Just above FLT_MAX rounds down to it; from half an ulp above it, to infinity.
  EXPECT_EQ(C::r4FromString("3.4028235677973362e38", kNone), FLT_MAX);
  EXPECT_EQ(C::r4FromString("-3.4028235677973366e38", kNone), -HUGE_VALF);
}

TEST(CConversions, RealsPrint) {
  EXPECT_EQ(C::r8ToString(-HUGE_VAL, nullptr), "-INF");
  EXPECT_EQ(C::r8ToString(HUGE_VAL, nullptr), "INF");
  EXPECT_EQ(C::r4ToString(std::nanf(""), nullptr), "NaN");
  EXPECT_EQ(C::r4ToString(0.1f, nullptr), "0.1");
  EXPECT_EQ(C::r8ToString(0.1, nullptr), "0.1");
  EXPECT_EQ(C::r8ToString(1e21, nullptr), "1e+21");
  EXPECT_EQ(C::r8ToString(100.0, nullptr), "100");
  EXPECT_EQ(C::r8ToString(2.5, "%.3f"), "2.500");
  EXPECT_EQ(C::r4ToString(2.5f, "[%e]"), "[2.500000e+00]");
  // The fixed buffers cut long output instead of overflowing.
  EXPECT_EQ(C::r8ToString(1e300, "%f").size(), 47u);
  EXPECT_EQ(C::r4ToString(3e38f, "%f").size(), 31u);
  // Formats that would read a missing argument are refused.
  EXPECT_THROW(C::r8ToString(1.0, "%s"), COvInvalidParamException);
  EXPECT_THROW(C::r8ToString(1.0, "%*f"), COvInvalidParamException);
  EXPECT_THROW(C::r8ToString(1.0, "%f %f"), COvInvalidParamException);
  EXPECT_THROW(C::r8ToString(1.0, "%"), COvInvalidParamException);
}

// The default forms must be exactly what printf's "%.16g" and "%.7g" give, over values of every
// magnitude and random bit patterns.
TEST(CConversions, RealDefaultFormsMatchPrintf) {
  std::mt19937_64 rng(7);
  char expected[64];
  int checked = 0;
  for (int i = 0; i < 200000; ++i) {
    double d;
    if (i % 2 == 0) {
      const std::uint64_t bits = rng();
      std::memcpy(&d, &bits, sizeof d);
      if (!std::isfinite(d)) continue;
    } else {
      d = std::ldexp(static_cast<double>(rng() % 100000000) / 1e3,
                     static_cast<int>(rng() % 200) - 100);
    }
    std::snprintf(expected, sizeof expected, "%.16g", d);
    ASSERT_EQ(C::r8ToString(d, nullptr), expected) << d;
    const float f = static_cast<float>(d);
    if (std::isfinite(f)) {
      std::snprintf(expected, sizeof expected, "%.7g", static_cast<double>(f));
      ASSERT_EQ(C::r4ToString(f, nullptr), expected) << f;
    }
    ++checked;
  }
  EXPECT_GT(checked, 150000);
}

TEST(CConversions, RealRoundTripThroughText) {
  for (double d : {0.0, -0.0, 1.0 / 3, 123456789.125, 1e-300, -2.2250738585072014e-308}) {
    const double back = C::r8FromString(C::r8ToString(d, "%.17g"), kNone);
    EXPECT_EQ(back, d);
  }
}

TEST(CConversions, DecimalsAndBigIntegers) {
  EXPECT_EQ(C::decimalToString(C::decimalFromString(" 1.5E-2 ", kCollapse), nullptr), "0.015");
  EXPECT_EQ(C::decimalToString(C::decimalFromString("-1.005", kNone), "2"), "-1.01");
  EXPECT_EQ(C::decimalToString(C::decimalFromString("2.5", kNone), "0"), "3.");
  // The format is read as atoi reads it: leading blanks, digits up to the first other byte.
  EXPECT_EQ(C::decimalToString(C::decimalFromString("1.23456", kNone), " 3xyz"), "1.235");
  EXPECT_EQ(C::decimalToString(C::decimalFromString("1.5", kNone), "abc"), "2.");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::decimalFromString("12a", kNone); }),
            "The string representing a Decimal, contained an invalid char at position 2 [12a]");
  EXPECT_EQ(C::integerToString(C::integerFromString("99999999999999999999999", kCollapse)),
            "99999999999999999999999");
  EXPECT_EQ(C::integerToString(C::integerFromString(" -007 ", kCollapse)), "-7");
  // A huge place count is refused by the decimal, not turned into a huge allocation.
  EXPECT_THROW(C::decimalToString(C::decimalFromString("1", kNone), "99999999999999"),
               COvException);
}
