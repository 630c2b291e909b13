#include "OvXmlLib6/types/PrimitiveRestrictions.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/Decimal.h"
#include "OvXmlLib6/types/Variant.h"
#include "types/DecimalText.h"
#include "unit/TestSupport.h"

#include <cmath>
#include <cstdint>
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

CPrimitiveRestrictions Pattern(const char* pattern) {
  return CPrimitiveRestrictions(pattern, -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
}

// What a check of a value named "v" gives: "ok", or the message of the exception.
template <class F>
std::string Outcome(F&& check) {
  const std::string message = MessageOf(check);
  return message == "no exception" ? "ok" : message;
}
std::string Signed(const CPrimitiveRestrictions& r, std::int64_t v, ItemType type = ItemType_i4) {
  return Outcome([&] { r.CheckSigned("v", v, type); });
}
std::string Unsigned(const CPrimitiveRestrictions& r, std::uint64_t v, ItemType type) {
  return Outcome([&] { r.CheckUnsigned("v", v, type); });
}
std::string Real(const CPrimitiveRestrictions& r, double v, ItemType type = ItemType_r8) {
  return Outcome([&] { r.CheckReal("v", v, type); });
}
std::string Text(const CPrimitiveRestrictions& r, const char* v, ItemType type = ItemType_string) {
  return Outcome([&] { r.CheckString("v", v, type); });
}
std::string Invalid(const std::string& value) { return "Invalid Value for v [" + value + "]"; }

const char kNoRegex[] =
    "Regular Expressions not supported as library was built with _NO_REGEX flag set.";

bool BuiltWithoutRegex() { return Text(Pattern("a"), "a") == kNoRegex; }

// The check of a variant's value, which must give the same outcome when it is handed the text a
// writer made for the value, as writers do.
std::string CheckedAsWritten(const CPrimitiveRestrictions& r, const OvVariant& value) {
  const std::string outcome = Outcome([&] { r.Check("v", value); });
  EXPECT_EQ(Outcome([&] { r.Check("v", value, value.ToString()); }), outcome) << value.ToString();
  return outcome;
}

}  // namespace

TEST(CPrimitiveRestrictions, AbsentFacetsAndAccessors) {
  const CPrimitiveRestrictions none;
  EXPECT_FALSE(none.HasFacets());
  EXPECT_EQ(Signed(none, -5), "ok");
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
  EXPECT_EQ(MessageOf([&] { r.CheckSigned("age", 101, ItemType_i4); }),
            "Invalid Value for age [101]");
  EXPECT_EQ(Signed(r, 100), "ok");
  EXPECT_EQ(Signed(r, -10, ItemType_i1), "ok");
  // 9 against "100" would pass and 200 fail as text; by value both are decided correctly.
  EXPECT_EQ(Signed(r, 9), "ok");
  EXPECT_EQ(Signed(r, -11, ItemType_i8), Invalid("-11"));
  const CPrimitiveRestrictions ex = Range(nullptr, nullptr, "0", "18446744073709551615");
  EXPECT_EQ(Unsigned(ex, 0, ItemType_ui8), Invalid("0"));
  EXPECT_EQ(Unsigned(ex, 18446744073709551615ull, ItemType_ui8), Invalid("18446744073709551615"));
  EXPECT_EQ(Unsigned(ex, 18446744073709551614ull, ItemType_ui8), "ok");
  // Bounds of month and day in their own lexical forms; messages show the number.
  const CPrimitiveRestrictions month = Range("--03", "--06", nullptr, nullptr);
  EXPECT_EQ(Unsigned(month, 4, ItemType_month), "ok");
  EXPECT_EQ(Unsigned(month, 7, ItemType_month), Invalid("7"));
  // A bound that is no number of the type fails every value.
  EXPECT_EQ(Signed(Range("abc", nullptr, nullptr, nullptr), 1), Invalid("1"));
}

TEST(CPrimitiveRestrictions, RealBoundsAndMessages) {
  const CPrimitiveRestrictions r = Range("0", nullptr, nullptr, "1.5");
  EXPECT_EQ(Real(r, 1.25), "ok");
  EXPECT_EQ(Real(r, 1.5), Invalid("1.500000"));
  EXPECT_EQ(Real(r, -0.5, ItemType_r4), Invalid("-0.500000"));
  EXPECT_EQ(Real(r, std::nan("")), Invalid("nan"));
  // An r4 bound is narrowed to float like the value, so 0.1f equals the bound "0.1".
  EXPECT_EQ(Real(Range(nullptr, "0.1", nullptr, nullptr), 0.1f, ItemType_r4), "ok");
}

TEST(CPrimitiveRestrictions, DigitsAndEnumerations) {
  CPrimitiveRestrictions r(nullptr, -1, -1, nullptr, nullptr, nullptr, nullptr, 3);
  EXPECT_EQ(Signed(r, -999), "ok");
  EXPECT_EQ(Signed(r, 1000), Invalid("1000"));

  CPrimitiveRestrictions e;
  e.AddEnumeration("01");
  e.AddEnumeration(" 7 ");
  EXPECT_EQ(Signed(e, 1, ItemType_i2), "ok");  // by value
  EXPECT_EQ(Unsigned(e, 7, ItemType_ui1), "ok");
  EXPECT_EQ(Signed(e, 2, ItemType_i2), Invalid("2"));

  CPrimitiveRestrictions words;
  words.AddEnumeration("red");
  words.AddEnumeration("green");
  EXPECT_EQ(Text(words, "green"), "ok");
  EXPECT_EQ(Text(words, "Green"), Invalid("Green"));

  CPrimitiveRestrictions flags;
  flags.AddEnumeration("true");
  EXPECT_EQ(Outcome([&] { flags.CheckBoolean("v", true); }), "ok");
  EXPECT_EQ(Outcome([&] { flags.CheckBoolean("v", false); }), Invalid("false"));

  CPrimitiveRestrictions bytes;
  bytes.AddEnumeration("0aff");
  CBinaryData d;
  d.SetAsHexString("0AFF");
  EXPECT_EQ(Outcome([&] { bytes.CheckBinary("v", d, ItemType_hexBinary); }), "ok");
}

TEST(CPrimitiveRestrictions, LengthsInCharactersAndBytes) {
  CPrimitiveRestrictions r(nullptr, 2, 3, nullptr, nullptr, nullptr, nullptr, -1);
  EXPECT_EQ(Text(r, "\xC3\xA9t\xC3\xA9"), "ok");
  EXPECT_EQ(Text(r, "a"), Invalid("a"));
  EXPECT_EQ(Text(r, "abcd"), Invalid("abcd"));
  CBinaryData data;
  data.SetAsHexString("C3A9C3A9");  // 4 bytes, 2 characters
  EXPECT_EQ(Outcome([&] { r.CheckBinary("v", data, ItemType_hexBinary); }), Invalid("C3A9C3A9"));
  CPrimitiveRestrictions exact;
  exact.SetLength(1);
  EXPECT_EQ(Text(exact, "x", ItemType_char), "ok");
  // Lengths do not apply to numbers.
  EXPECT_EQ(Signed(exact, 12345), "ok");
}

TEST(CPrimitiveRestrictions, PatternsOnLexicalForms) {
  const CPrimitiveRestrictions zip = Pattern("\\d{5}(-\\d{4})?");
  if (BuiltWithoutRegex()) {
    EXPECT_EQ(Text(zip, "12345"), kNoRegex);
    EXPECT_EQ(Signed(zip, 12345), kNoRegex);
    return;
  }
  EXPECT_EQ(Text(zip, "12345-6789"), "ok");
  EXPECT_EQ(Text(zip, "x12345"), Invalid("x12345"));
  EXPECT_EQ(Signed(zip, 1234), Invalid("1234"));
  EXPECT_EQ(Unsigned(Pattern("--0[1-6]"), 5, ItemType_month), "ok");
  EXPECT_EQ(Text(Pattern("("), "x"), "Invalid pattern [(]: unexpected end of pattern at offset 1");
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
        const bool right = Text(copy, "abc12") == "ok" && Text(original, "1abc") == Invalid("1abc");
        if (!noRegex && !right) ++failures[t];
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
  const auto decimal = [&](const char* v) {
    OvVariant value;
    value.SetDecimal(CDecimal(v));
    return CheckedAsWritten(r, value);
  };
  EXPECT_EQ(decimal("-1.50"), "ok");
  EXPECT_EQ(decimal("-1.51"), Invalid("-1.51"));
  EXPECT_EQ(decimal("1.125"), Invalid("1.125"));
  EXPECT_EQ(decimal("1234.5"), "ok");
  EXPECT_EQ(decimal("12345.67"), Invalid("12345.67"));  // seven digits in all
  const CPrimitiveRestrictions big = Range(nullptr, "12.5", "-100000000000000000000", nullptr);
  const auto integer = [&](const char* v) {
    OvVariant value;
    value.SetInteger(CBigInteger(v));
    return CheckedAsWritten(big, value);
  };
  EXPECT_EQ(integer("12"), "ok");
  EXPECT_EQ(integer("13"), Invalid("13"));
  EXPECT_EQ(integer("-100000000000000000000"), Invalid("-100000000000000000000"));
  EXPECT_EQ(integer("-99999999999999999999"), "ok");
}

// Every date kind is ordered by value, zones included; a pair whose order is indeterminate
// fails the bound.
TEST(CPrimitiveRestrictions, DateKindsByValue) {
  const auto check = [](const char* minInclusive, const char* maxExclusive, const char* value,
                        ItemType type) {
    const CPrimitiveRestrictions r = Range(minInclusive, nullptr, nullptr, maxExclusive);
    const auto rule = CWhitespaceUtils::WhitespaceRule_None;
    const CDateTime parsed = type == ItemType_datetime ? CDateTime(value)
                             : type == ItemType_time   ? CConversions::timeFromString(value, rule)
                                                       : CConversions::dateFromString(value, rule);
    return Outcome([&] { r.CheckDateTime("v", parsed, type); });
  };
  EXPECT_EQ(check("2000-01-01", "2001-01-01", "2000-12-31", ItemType_date), "ok");
  EXPECT_EQ(check("2000-01-01", "2001-01-01", "2001-01-01", ItemType_date), Invalid("2001-01-01"));
  EXPECT_EQ(check("-0044-03-15", nullptr, "-0045-01-01", ItemType_date), Invalid("-0045-01-01"));
  EXPECT_EQ(check("09:00:00", "17:00:00", "16:59:59.999", ItemType_time), "ok");
  EXPECT_EQ(check("09:00:00Z", nullptr, "10:00:00+02:00", ItemType_time),
            Invalid("10:00:00+02:00"));  // 08:00 UTC
  EXPECT_EQ(check("--02-01", "--03-01", "--02-29", ItemType_monthDay), "ok");
  EXPECT_EQ(check("2004-05", nullptr, "2004-04", ItemType_yearMonth), Invalid("2004-04"));
  // A zoneless value within 14 hours of a zoned bound cannot be ordered.
  EXPECT_EQ(check("2000-01-01T12:00:00Z", nullptr, "2000-01-01T20:00:00", ItemType_datetime),
            Invalid("2000-01-01T20:00:00"));
  EXPECT_EQ(check("2000-01-01T12:00:00Z", nullptr, "2000-01-02T03:00:00", ItemType_datetime), "ok");
  // A time that cannot be printed (midnight) is still ordered; only its message needs the text.
  EXPECT_EQ(check("00:00:00.001", nullptr, "00:00:00", ItemType_time), "Date Not Set");
  EXPECT_EQ(check("00:00:00", nullptr, "00:00:00", ItemType_time), "ok");

  CPrimitiveRestrictions years;
  years.AddEnumeration("2000");
  years.AddEnumeration("2004Z");
  const CDateTime zoned =
      CConversions::dateFromString("2004Z", CWhitespaceUtils::WhitespaceRule_None);
  EXPECT_EQ(Outcome([&] { years.CheckDateTime("v", zoned, ItemType_date); }), "ok");
}
