#include "OvXmlLib6/types/PrimitiveRestrictions.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/Decimal.h"
#include "types/DecimalText.h"
#include "unit/TestSupport.h"

#include <cmath>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <vector>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

CPrimitiveRestrictions Range(const char* minIn, const char* maxIn, const char* minEx,
                             const char* maxEx) {
  return CPrimitiveRestrictions(nullptr, -1, -1, minIn, maxIn, minEx, maxEx, -1);
}

const char kNoRegex[] =
    "Regular Expressions not supported as library was built with _NO_REGEX flag set.";

bool BuiltWithoutRegex() {
  const CPrimitiveRestrictions r("a", -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
  return MessageOf([&] { r.CheckString("e", "a", ItemType_string); }) == kNoRegex;
}

}  // namespace

TEST(CPrimitiveRestrictions, AbsentFacetsAndAccessors) {
  const CPrimitiveRestrictions none;
  EXPECT_FALSE(none.HasFacets());
  EXPECT_EQ(MessageOf([&] { none.CheckSigned("e", -5, ItemType_i4); }), "no exception");
  const CPrimitiveRestrictions empty("", -1, -7, "", nullptr, "", nullptr, -2);
  EXPECT_FALSE(empty.HasFacets());
  CPrimitiveRestrictions r;
  r.AddEnumeration(nullptr);
  EXPECT_FALSE(r.HasFacets());
  r.SetLength(3);
  EXPECT_TRUE(r.HasFacets());
  EXPECT_EQ(r.GetLength(), 3);
  r.SetLength(-1);
  EXPECT_FALSE(r.HasFacets());
}

TEST(CPrimitiveRestrictions, IntegerBoundsByValue) {
  const CPrimitiveRestrictions r = Range("-10", "100", nullptr, nullptr);
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("age", 100, ItemType_i4); }), "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("age", -10, ItemType_i1); }), "no exception");
  // 9 against "100" would pass and 200 fail as text; by value both are decided correctly.
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("age", 9, ItemType_i4); }), "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("age", 101, ItemType_i4); }),
            "Invalid Value for age [101]");
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("age", -11, ItemType_i8); }),
            "Invalid Value for age [-11]");
  const CPrimitiveRestrictions ex = Range(nullptr, nullptr, "0", "18446744073709551615");
  EXPECT_EQ(MessageOf([&] { ex.CheckUnsigned("n", 0, ItemType_ui8); }), "Invalid Value for n [0]");
  EXPECT_EQ(MessageOf([&] { ex.CheckUnsigned("n", 18446744073709551615ull, ItemType_ui8); }),
            "Invalid Value for n [18446744073709551615]");
  EXPECT_EQ(MessageOf([&] { ex.CheckUnsigned("n", 18446744073709551614ull, ItemType_ui8); }),
            "no exception");
  // Bounds of month and day in their own lexical forms; messages show the number.
  const CPrimitiveRestrictions month = Range("--03", "--06", nullptr, nullptr);
  EXPECT_EQ(MessageOf([&] { month.CheckUnsigned("m", 4, ItemType_month); }), "no exception");
  EXPECT_EQ(MessageOf([&] { month.CheckUnsigned("m", 7, ItemType_month); }),
            "Invalid Value for m [7]");
  // A bound that is no number of the type fails every value.
  const CPrimitiveRestrictions bad = Range("abc", nullptr, nullptr, nullptr);
  EXPECT_EQ(MessageOf([&] { bad.CheckSigned("x", 1, ItemType_i4); }), "Invalid Value for x [1]");
}

TEST(CPrimitiveRestrictions, RealBoundsAndMessages) {
  const CPrimitiveRestrictions r = Range("0", nullptr, nullptr, "1.5");
  EXPECT_EQ(MessageOf([&] { r.CheckReal("v", 1.25, ItemType_r8); }), "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckReal("v", 1.5, ItemType_r8); }),
            "Invalid Value for v [1.500000]");
  EXPECT_EQ(MessageOf([&] { r.CheckReal("v", -0.5, ItemType_r4); }),
            "Invalid Value for v [-0.500000]");
  EXPECT_EQ(MessageOf([&] { r.CheckReal("v", std::nan(""), ItemType_r8); }),
            "Invalid Value for v [nan]");
  // An r4 bound is narrowed to float like the value, so 0.1f equals the bound "0.1".
  const CPrimitiveRestrictions f = Range(nullptr, "0.1", nullptr, nullptr);
  EXPECT_EQ(MessageOf([&] { f.CheckReal("v", 0.1f, ItemType_r4); }), "no exception");
}

TEST(CPrimitiveRestrictions, DigitsAndEnumerations) {
  CPrimitiveRestrictions r(nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, 3);
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("d", -999, ItemType_i4); }), "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("d", 1000, ItemType_i4); }),
            "Invalid Value for d [1000]");

  CPrimitiveRestrictions e;
  e.AddEnumeration("01");
  e.AddEnumeration(" 7 ");
  EXPECT_EQ(MessageOf([&] { e.CheckSigned("k", 1, ItemType_i2); }), "no exception");  // by value
  EXPECT_EQ(MessageOf([&] { e.CheckUnsigned("k", 7, ItemType_ui1); }), "no exception");
  EXPECT_EQ(MessageOf([&] { e.CheckSigned("k", 2, ItemType_i2); }), "Invalid Value for k [2]");

  CPrimitiveRestrictions words;
  words.AddEnumeration("red");
  words.AddEnumeration("green");
  EXPECT_EQ(MessageOf([&] { words.CheckString("c", "green", ItemType_string); }), "no exception");
  EXPECT_EQ(MessageOf([&] { words.CheckString("c", "Green", ItemType_string); }),
            "Invalid Value for c [Green]");

  CPrimitiveRestrictions flags;
  flags.AddEnumeration("true");
  EXPECT_EQ(MessageOf([&] { flags.CheckBoolean("f", true); }), "no exception");
  EXPECT_EQ(MessageOf([&] { flags.CheckBoolean("f", false); }), "Invalid Value for f [false]");

  CPrimitiveRestrictions bytes;
  bytes.AddEnumeration("0aff");
  EXPECT_EQ(MessageOf([&] {
              CBinaryData d;
              d.SetAsHexString("0AFF");
              bytes.CheckBinary("b", d, ItemType_hexBinary);
            }),
            "no exception");
}

TEST(CPrimitiveRestrictions, LengthsInCharactersAndBytes) {
  CPrimitiveRestrictions r(nullptr, 2, 3, nullptr, nullptr, nullptr, nullptr, -1);
  EXPECT_EQ(MessageOf([&] { r.CheckString("s", "\xC3\xA9t\xC3\xA9", ItemType_string); }),
            "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckString("s", "a", ItemType_string); }),
            "Invalid Value for s [a]");
  EXPECT_EQ(MessageOf([&] { r.CheckString("s", "abcd", ItemType_string); }),
            "Invalid Value for s [abcd]");
  CBinaryData data;
  data.SetAsHexString("C3A9C3A9");  // 4 bytes, 2 characters
  EXPECT_EQ(MessageOf([&] { r.CheckBinary("b", data, ItemType_hexBinary); }),
            "Invalid Value for b [C3A9C3A9]");
  CPrimitiveRestrictions exact;
  exact.SetLength(1);
  EXPECT_EQ(MessageOf([&] { exact.CheckString("c", "x", ItemType_char); }), "no exception");
  // Lengths do not apply to numbers.
  EXPECT_EQ(MessageOf([&] { exact.CheckSigned("n", 12345, ItemType_i4); }), "no exception");
}

TEST(CPrimitiveRestrictions, PatternsOnLexicalForms) {
  const CPrimitiveRestrictions zip("\\d{5}(-\\d{4})?", -1, -1, nullptr, nullptr, nullptr, nullptr,
                                   -1);
  if (BuiltWithoutRegex()) {
    EXPECT_EQ(MessageOf([&] { zip.CheckString("zip", "12345", ItemType_string); }), kNoRegex);
    EXPECT_EQ(MessageOf([&] { zip.CheckSigned("zip", 12345, ItemType_i4); }), kNoRegex);
    return;
  }
  EXPECT_EQ(MessageOf([&] { zip.CheckString("zip", "12345-6789", ItemType_string); }),
            "no exception");
  EXPECT_EQ(MessageOf([&] { zip.CheckString("zip", "x12345", ItemType_string); }),
            "Invalid Value for zip [x12345]");
  EXPECT_EQ(MessageOf([&] { zip.CheckSigned("zip", 1234, ItemType_i4); }),
            "Invalid Value for zip [1234]");
  const CPrimitiveRestrictions month("--0[1-6]", -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
  EXPECT_EQ(MessageOf([&] { month.CheckUnsigned("m", 5, ItemType_month); }), "no exception");
  const CPrimitiveRestrictions bad("(", -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
  EXPECT_EQ(MessageOf([&] { bad.CheckString("s", "x", ItemType_string); }),
            "Invalid pattern [(]: unexpected end of pattern at offset 1");
}

// Copies share the compiled pattern; checks of one restriction run on several threads at once.
TEST(CPrimitiveRestrictions, ThreadsShareOneRestriction) {
  const CPrimitiveRestrictions original("[a-z]+\\d*", 1, 20, nullptr, nullptr, nullptr, nullptr,
                                        -1);
  const CPrimitiveRestrictions copy = original;
  const bool noRegex = BuiltWithoutRegex();
  std::vector<std::thread> threads;
  std::vector<int> failures(4, 0);
  for (int t = 0; t < 4; ++t) {
    threads.emplace_back([&, t] {
      for (int i = 0; i < 500; ++i) {
        const std::string ok = MessageOf([&] { copy.CheckString("s", "abc12", ItemType_string); });
        const std::string bad =
            MessageOf([&] { original.CheckString("s", "1abc", ItemType_string); });
        if (!noRegex && (ok != "no exception" || bad != "Invalid Value for s [1abc]"))
          ++failures[t];
      }
    });
  }
  for (auto& thread : threads) thread.join();
  EXPECT_EQ(failures, std::vector<int>(4, 0));
}

TEST(DecimalText, ExactOrderAndDigitCounts) {
  using detail::CompareDecimalText;
  using detail::Order;
  EXPECT_EQ(CompareDecimalText("100", "99"), Order::kGreater);
  EXPECT_EQ(CompareDecimalText("-0", "0.000"), Order::kEqual);
  EXPECT_EQ(CompareDecimalText("12345678901234567890123", "12345678901234567890122.9"),
            Order::kGreater);
  EXPECT_EQ(CompareDecimalText("-1.5", "-1.25"), Order::kLess);
  EXPECT_EQ(CompareDecimalText("1e3", "999.9"), Order::kGreater);
  EXPECT_EQ(CompareDecimalText("0.001", "1E-3"), Order::kEqual);
  EXPECT_EQ(CompareDecimalText("+7", "007.0"), Order::kEqual);
  for (const char* bad : {"", "-", ".", "1e", " 1", "1x", "1.2.3"}) {
    EXPECT_EQ(CompareDecimalText(bad, "1"), Order::kIncomparable) << bad;
  }
  int total = 0, fraction = 0;
  detail::CountDecimalDigits("0.0050", total, fraction);
  EXPECT_EQ(total, 3);
  EXPECT_EQ(fraction, 3);
  detail::CountDecimalDigits("-00120.0", total, fraction);
  EXPECT_EQ(total, 3);
  EXPECT_EQ(fraction, 0);
}

TEST(CPrimitiveRestrictions, DecimalAndBigIntegerFacets) {
  CPrimitiveRestrictions r(nullptr, -1, -1, "-1.5", "99999999999999999999.25", nullptr, nullptr, 6);
  r.SetFractionDigits(2);
  EXPECT_EQ(MessageOf([&] { r.CheckDecimal("d", CDecimal("-1.50")); }), "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckDecimal("d", CDecimal("-1.51")); }),
            "Invalid Value for d [-1.51]");
  EXPECT_EQ(MessageOf([&] { r.CheckDecimal("d", CDecimal("1.125")); }),
            "Invalid Value for d [1.125]");
  EXPECT_EQ(MessageOf([&] { r.CheckDecimal("d", CDecimal("1234.5")); }), "no exception");
  EXPECT_EQ(MessageOf([&] { r.CheckDecimal("d", CDecimal("12345.67")); }),
            "Invalid Value for d [12345.67]");  // seven digits in all
  const CPrimitiveRestrictions big(nullptr, -1, -1, nullptr, "12.5", "-100000000000000000000",
                                   nullptr, -1);
  EXPECT_EQ(MessageOf([&] { big.CheckInteger("i", CBigInteger("12")); }), "no exception");
  EXPECT_EQ(MessageOf([&] { big.CheckInteger("i", CBigInteger("13")); }),
            "Invalid Value for i [13]");
  EXPECT_EQ(MessageOf([&] { big.CheckInteger("i", CBigInteger("-100000000000000000000")); }),
            "Invalid Value for i [-100000000000000000000]");
  EXPECT_EQ(MessageOf([&] { big.CheckInteger("i", CBigInteger("-99999999999999999999")); }),
            "no exception");
}

// Every date kind is ordered by value, zones included; a pair whose order is indeterminate
// fails the bound.
TEST(CPrimitiveRestrictions, DateKindsByValue) {
  const auto check = [](const char* minInclusive, const char* maxExclusive, const char* value,
                        ItemType type) {
    const CPrimitiveRestrictions r(nullptr, -1, -1, minInclusive, nullptr, nullptr, maxExclusive,
                                   -1);
    const CDateTime parsed =
        type == ItemType_datetime ? CDateTime(value)
        : type == ItemType_time
            ? CConversions::timeFromString(value, CWhitespaceUtils::WhitespaceRule_None)
            : CConversions::dateFromString(value, CWhitespaceUtils::WhitespaceRule_None);
    return MessageOf([&] { r.CheckDateTime("t", parsed, type); });
  };
  EXPECT_EQ(check("2000-01-01", "2001-01-01", "2000-12-31", ItemType_date), "no exception");
  EXPECT_EQ(check("2000-01-01", "2001-01-01", "2001-01-01", ItemType_date),
            "Invalid Value for t [2001-01-01]");
  EXPECT_EQ(check("-0044-03-15", nullptr, "-0045-01-01", ItemType_date),
            "Invalid Value for t [-0045-01-01]");
  EXPECT_EQ(check("09:00:00", "17:00:00", "16:59:59.999", ItemType_time), "no exception");
  EXPECT_EQ(check("09:00:00Z", nullptr, "10:00:00+02:00", ItemType_time),
            "Invalid Value for t [10:00:00+02:00]");  // 08:00 UTC
  EXPECT_EQ(check("--02-01", "--03-01", "--02-29", ItemType_monthDay), "no exception");
  EXPECT_EQ(check("2004-05", nullptr, "2004-04", ItemType_yearMonth),
            "Invalid Value for t [2004-04]");
  // A zoneless value within 14 hours of a zoned bound cannot be ordered.
  EXPECT_EQ(check("2000-01-01T12:00:00Z", nullptr, "2000-01-01T20:00:00", ItemType_datetime),
            "Invalid Value for t [2000-01-01T20:00:00]");
  EXPECT_EQ(check("2000-01-01T12:00:00Z", nullptr, "2000-01-02T03:00:00", ItemType_datetime),
            "no exception");
  // A time that cannot be printed (midnight) is still ordered; only its message needs the text.
  EXPECT_EQ(check("00:00:00.001", nullptr, "00:00:00", ItemType_time), "Date Not Set");
  EXPECT_EQ(check("00:00:00", nullptr, "00:00:00", ItemType_time), "no exception");

  CPrimitiveRestrictions years;
  years.AddEnumeration("2000");
  years.AddEnumeration("2004Z");
  EXPECT_EQ(MessageOf([&] {
              years.CheckDateTime(
                  "y", CConversions::dateFromString("2004Z", CWhitespaceUtils::WhitespaceRule_None),
                  ItemType_date);
            }),
            "no exception");
}
