#include "OvXmlLib6/types/Variant.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"
#include "OvXmlLib6/types/PrimitiveRestrictions.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <utility>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

}  // namespace

TEST(OvVariant, EmptyVariantAndUnknownTypes) {
  OvVariant v;
  EXPECT_FALSE(v.IsValid());
  EXPECT_EQ(v.GetTypeAsEnum(), ItemType_None);
  EXPECT_EQ(MessageOf([&] { v.GetType(); }), "Invalid Type 0");
  EXPECT_EQ(MessageOf([&] { v.ToString(nullptr); }), "Invalid Type 0 to convert to string");
  EXPECT_EQ(MessageOf([&] { v.FromString("12", static_cast<ItemType>(27), kCollapse); }),
            "Invalid Type 27 to convert to string");
  EXPECT_EQ(MessageOf([&] { v.FromString("12", static_cast<ItemType>(0), kCollapse); }),
            "Invalid Type 0 to convert to string");
  // Getters of objects on an empty variant give empty values, never a stray pointer.
  EXPECT_EQ(v.GetString(), "");
  EXPECT_EQ(v.GetDecimal().ToString(), "0");
}

// Every type through FromString, GetType and ToString: the text comes back in the type's form.
TEST(OvVariant, EveryTypeParsesAndPrints) {
  const struct {
    ItemType type;
    const char* word;
    const char* text;
    const char* printed;
  } cases[] = {
      {ItemType_hexBinary, "hexBinary", "0aff", "0AFF"},
      {ItemType_base64Binary, "base64Binary", "SGVsbG8=", "SGVsbG8="},
      {ItemType_i1, "i1", "-128", "-128"},
      {ItemType_i2, "i2", "+300", "300"},
      {ItemType_i4, "i4", " 5 ", "5"},
      {ItemType_i8, "i8", "-9223372036854775808", "-9223372036854775808"},
      {ItemType_ui1, "ui1", "255", "255"},
      {ItemType_ui2, "ui2", "65535", "65535"},
      {ItemType_ui4, "ui4", "-1", "4294967295"},
      {ItemType_ui8, "ui8", "18446744073709551615", "18446744073709551615"},
      {ItemType_r4, "r4", "0.1", "0.1"},
      {ItemType_r8, "r8", "-INF", "-INF"},
      {ItemType_duration, "duration", "PT90M", "PT90M"},
      {ItemType_yearMonth, "yearMonth", "2004-05Z", "2004-05Z"},
      {ItemType_monthDay, "monthDay", "--12-25", "--12-25"},
      {ItemType_year, "year", "0005", "5"},
      {ItemType_month, "month", "--03", "--03"},
      {ItemType_day, "day", "---07", "---07"},
      {ItemType_date, "date", "2004-02-29", "2004-02-29"},
      {ItemType_datetime, "datetime", "2004-02-29T12:00:00.123456789Z",
       "2004-02-29T12:00:00.123456789Z"},
      {ItemType_time, "time", "23:59:59-05:00", "23:59:59-05:00"},
      {ItemType_char, "char", "x", "x"},
      {ItemType_string, "string", " a  b ", "a b"},
      {ItemType_boolean, "boolean", "TRUE", "true"},
      {ItemType_decimal, "decimal", "1e3", "1000"},
      {ItemType_integer, "integer", "123456789012345678901234567890",
       "123456789012345678901234567890"},
  };
  for (const auto& c : cases) {
    OvVariant v;
    v.FromString(c.text, c.type, kCollapse);
    EXPECT_EQ(v.GetTypeAsEnum(), c.type);
    EXPECT_EQ(v.GetType(), c.word);
    EXPECT_EQ(v.ToString(nullptr), c.printed) << c.word;
    // Copies are deep and print the same.
    const OvVariant copy = v;
    v.SetInvalid();
    EXPECT_EQ(copy.ToString(), c.printed) << c.word;
  }
}

TEST(OvVariant, SettersGettersFormatsAndFailedParse) {
  OvVariant v;
  v.SetI4(5);
  EXPECT_EQ(v.ToString(nullptr), "5");
  EXPECT_EQ(v.GetTypeAsEnum(), 5);
  v.SetR8(2.5);
  EXPECT_EQ(v.ToString("%.2f"), "2.50");
  v.SetDecimal(CDecimal("1.005"));
  EXPECT_EQ(v.ToString("2"), "1.01");
  v.SetI4(1);
  EXPECT_EQ(v.ToString("%.2f"), "1");  // the format is for r4, r8 and decimal only
  // A failed parse leaves the previous value.
  v.SetString("keep");
  EXPECT_THROW(v.FromString("abc", ItemType_i4, kCollapse), COvInvalidValueException);
  EXPECT_EQ(v.GetTypeAsEnum(), ItemType_string);
  EXPECT_EQ(v.GetString(), "keep");
  // Setting a value from the variant's own object is safe.
  v.SetString(v.GetString() + "!");
  EXPECT_EQ(v.GetString(), "keep!");
  v.SetDateTime(CDateTime(2000, 1, 2, 3, 4, 5));
  EXPECT_EQ(v.GetDate().ToString(), "2000-01-02T03:04:05");  // no tag check on getters
  // Clear frees the value and leaves nothing to read.
  v.Clear();
  EXPECT_FALSE(v.IsValid());
  EXPECT_EQ(v.GetDateTime().GetType(), CDateTime::yearZero);
}

TEST(OvVariant, CopyAssignAndMove) {
  OvVariant a;
  a.SetInteger(CBigInteger("-99999999999999999999"));
  OvVariant b;
  b.SetString("old");
  b = a;
  a.SetI8(1);
  EXPECT_EQ(b.ToString(), "-99999999999999999999");
  const OvVariant& same = b;
  b = same;  // self-assignment keeps the value
  EXPECT_EQ(b.ToString(), "-99999999999999999999");
  OvVariant c(std::move(b));
  EXPECT_FALSE(b.IsValid());
  EXPECT_EQ(c.GetInteger().ToString(), "-99999999999999999999");
  OvVariant d;
  d = std::move(c);
  EXPECT_EQ(d.GetTypeAsEnum(), ItemType_integer);
  EXPECT_FALSE(c.IsValid());
}

// Strings, decimals and dates that variants free are filled again by the next variant set on
// the thread: no value may show through in another, also when one is set from the other, when
// values are set and freed in turn, and for variants that outlive their thread's kept values.
TEST(OvVariant, ValuesFreedAndSetAgainStayApart) {
  const std::string longText(300, 'x');  // more than is kept for reuse
  OvVariant a;
  a.SetString("a longer text than the next one, beyond the small-string size");
  a.Clear();
  a.SetString("short");
  EXPECT_EQ(a.GetString(), "short");
  OvVariant b;
  b.SetString(a.GetString());  // set from a value the thread may keep
  a.SetString(std::string(longText));
  a.SetString(a.GetString());  // from itself
  EXPECT_EQ(a.GetString(), longText);
  EXPECT_EQ(b.GetString(), "short");
  a.SetDecimal(CDecimal("-123456789012345678901234567890.125"));
  a.SetDecimal(CDecimal("7.5"));
  b.SetDecimal(CDecimal("0.05"));
  b.Clear();
  b.SetDecimal(CDecimal("12"));
  EXPECT_EQ(a.ToString(), "7.5");
  EXPECT_EQ(b.ToString(), "12");
  a.SetDateTime(CConversions::datetimeFromString("2026-11-25T01:02:03Z", kCollapse));
  a.SetDate(CConversions::dateFromString("2026-12-24", kCollapse));
  const OvVariant copy(a);
  a.Clear();
  EXPECT_EQ(copy.ToString(), "2026-12-24");
  static OvVariant outlivesThread;
  std::thread([] {
    OvVariant local;
    local.SetString("freed on the thread");
    local.Clear();
    outlivesThread.SetString("kept after the thread");
  }).join();
  // Freed at exit, after the main thread's kept values.
  EXPECT_EQ(outlivesThread.GetString(), "kept after the thread");
}

TEST(OvVariant, RestrictionCheckDispatchesOnTheTag) {
  CPrimitiveRestrictions r(nullptr, -1, -1, "2000-01-01", nullptr, nullptr, nullptr, -1);
  OvVariant v;
  v.FromString("1999-12-31", ItemType_date, kCollapse);
  EXPECT_EQ(MessageOf([&] { r.Check("when", v); }), "Invalid Value for when [1999-12-31]");
  v.FromString("2000-01-01", ItemType_date, kCollapse);
  EXPECT_EQ(MessageOf([&] { r.Check("when", v); }), "no exception");
  v.SetInvalid();
  EXPECT_EQ(MessageOf([&] { r.Check("when", v); }), "no exception");

  const CPrimitiveRestrictions d(nullptr, -1, -1, nullptr, nullptr, nullptr, "PT2H", -1);
  v.FromString("PT119M", ItemType_duration, kCollapse);
  EXPECT_EQ(MessageOf([&] { d.Check("span", v); }), "no exception");
  v.FromString("PT2H", ItemType_duration, kCollapse);
  EXPECT_EQ(MessageOf([&] { d.Check("span", v); }), "Invalid Value for span [PT2H]");
  v.FromString("P1M", ItemType_duration, kCollapse);  // 28 to 31 days: not below two hours
  EXPECT_EQ(MessageOf([&] { d.Check("span", v); }), "Invalid Value for span [P1M]");

  const CPrimitiveRestrictions small(nullptr, -1, -1, nullptr, "10", nullptr, nullptr, -1);
  v.SetUI2(11);
  EXPECT_EQ(MessageOf([&] { small.Check("n", v); }), "Invalid Value for n [11]");
  v.SetR4(10.5f);
  EXPECT_EQ(MessageOf([&] { small.Check("n", v); }), "Invalid Value for n [10.500000]");
}
