#include "OvXmlLib6/types/DateTimeSpan.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <random>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

CDateTimeSpan Span(const char* text) {
  CDateTimeSpan span;
  span.ParseXSDDuration(text);
  return span;
}

std::string ParseMessage(const char* text) {
  return MessageOf<COvInvalidValueException>([&] { Span(text); });
}

bool SameFields(const CDateTimeSpan& a, const CDateTimeSpan& b) {
  return a.GetYears() == b.GetYears() && a.GetMonths() == b.GetMonths() &&
         a.GetDays() == b.GetDays() && a.GetHours() == b.GetHours() &&
         a.GetMinutes() == b.GetMinutes() && a.GetSeconds() == b.GetSeconds() &&
         a.GetMilliSeconds() == b.GetMilliSeconds() && a.GetMicroSeconds() == b.GetMicroSeconds() &&
         a.GetNanoSeconds() == b.GetNanoSeconds() && a.IsNegative() == b.IsNegative();
}

}  // namespace

TEST(CDateTimeSpan, ParsesEveryFieldAndPrintsItBack) {
  const CDateTimeSpan all = Span("-P1Y2M3DT4H5M6.5S");
  EXPECT_TRUE(all.IsNegative());
  EXPECT_EQ(all.GetYears(), 1);
  EXPECT_EQ(all.GetMonths(), 2u);
  EXPECT_EQ(all.GetDays(), 3u);
  EXPECT_EQ(all.GetHours(), 4u);
  EXPECT_EQ(all.GetMinutes(), 5u);
  EXPECT_EQ(all.GetSeconds(), 6u);
  EXPECT_EQ(all.GetMilliSeconds(), 500);
  EXPECT_EQ(all.ToString(), "-P1Y2M3DT4H5M6.5S");

  const char* canonical[] = {"P1Y",
                             "P2M",
                             "P3D",
                             "PT4H",
                             "PT90M",
                             "PT0.5S",
                             "PT0.000001S",
                             "P1DT1S",
                             "PT4294967295H",
                             "PT4294967295M",
                             "P65535Y4294967295M4294967295D"};
  for (const char* text : canonical) EXPECT_EQ(Span(text).ToString(), text);

  // A zero duration prints as a bare "P", which the parser itself refuses.
  EXPECT_EQ(Span("PT0S").ToString(), "P");
  EXPECT_EQ(Span("-PT0S").ToString(), "-P");
  EXPECT_EQ(Span("P0Y0M0DT0H0M0.000S").ToString(), "P");
  EXPECT_EQ(Span("PT1.S").ToString(), "PT1S");
  EXPECT_EQ(Span("PT1Y").GetYears(), 1);  // a year after T is accepted
  EXPECT_EQ(Span("PT1S2Y").ToString(), "P2YT1S");
  EXPECT_EQ(Span("P1D").GetDays(), 1u);

  // The seventh to ninth digits each replace the nanoseconds: the last one is kept.
  const CDateTimeSpan fraction = Span("PT1.123456789S");
  EXPECT_EQ(fraction.GetMilliSeconds(), 123);
  EXPECT_EQ(fraction.GetMicroSeconds(), 456);
  EXPECT_EQ(fraction.GetNanoSeconds(), 9);
  EXPECT_EQ(fraction.ToString(), "PT1.123456009S");
  // Counts are read into 32 bits (years kept at 16) and wrap unchecked, also for the 64-bit
  // minutes and seconds.
  EXPECT_EQ(Span("P4294967296D").GetDays(), 0u);
  EXPECT_EQ(Span("P65537Y").GetYears(), 1);
  EXPECT_EQ(Span("PT4294967297M").GetMinutes(), 1u);
}

TEST(CDateTimeSpan, RefusesBadTextWithItsMessages) {
  EXPECT_EQ(ParseMessage(nullptr), "Invalid XSD Duration (Null String)");
  EXPECT_EQ(ParseMessage(""), "Invalid XSD Duration (Empty String)");
  const char* refused[] = {"P",       "PT",     "P1",    "P1H",    "PT1D",   "-",      "1Y",
                           "+P1Y",    "P-1Y",   "P1DT",  "PT1M2M", "P1S",    "PT1H2H", "PT1.5",
                           "PT1.5SX", "PT1S2S", "P1Y T", "PT1.5M", "P1DT1D", "xP"};
  for (const char* text : refused) {
    EXPECT_EQ(ParseMessage(text), std::string("Invalid XSD Duration [") + text +
                                      "] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]");
  }
  EXPECT_EQ(ParseMessage("PT1.1234567891S"),
            "Invalid XSD Duration [PT1.1234567891S] Fraction part too long");

  // A failed parse starts from a cleared value.
  CDateTimeSpan span(1, 2, 3, 4, 5, 6);
  span.Negate();
  EXPECT_THROW(span.ParseXSDDuration("P1H"), COvInvalidValueException);
  EXPECT_FALSE(span.IsNegative());
  EXPECT_EQ(span.GetDays(), 0u);
}

TEST(CDateTimeSpan, SignAndSetters) {
  CDateTimeSpan span(1, 2, 3);
  EXPECT_EQ(span.ToString(), "PT1H2M3S");
  const CDateTimeSpan negative = span.GetAsNegative();
  EXPECT_TRUE(negative.IsNegative());
  EXPECT_TRUE(negative.GetAsNegative().IsNegative());  // does not flip back
  span.Negate();
  EXPECT_TRUE(span.IsNegative());
  span.Negate();
  EXPECT_FALSE(span.IsNegative());

  span.Negate();
  span.SetNanoSeconds(7);  // plain stores keep the sign
  EXPECT_EQ(span.ToString(), "-PT1H2M3.000000007S");
  span.SetDateTimeSpan(1, 0, 0, 0, 0, 0, 0, 0, 0);  // setters make the value positive
  EXPECT_EQ(span.ToString(), "P1Y");
  span.SetDateTimeSpan(0, 0, 0);
  span.SetMilliSeconds(10);
  EXPECT_EQ(span.ToString(), "PT0.01S");
}

// Every count the parser can read (32-bit, years 16-bit) prints and parses back unchanged.
TEST(CDateTimeSpan, RoundTripsThroughText) {
  std::mt19937_64 rng(5);
  for (int i = 0; i < 5000; ++i) {
    auto pick = [&rng](std::uint64_t limit) { return rng() % 3 == 0 ? 0 : rng() % limit; };
    CDateTimeSpan span(
        static_cast<std::uint16_t>(pick(65536)), static_cast<std::uint32_t>(pick(1ULL << 32)),
        static_cast<std::uint32_t>(pick(1ULL << 32)), static_cast<std::uint32_t>(pick(1ULL << 32)),
        pick(1ULL << 32), pick(1ULL << 32), static_cast<std::uint16_t>(pick(1000)),
        static_cast<std::uint16_t>(pick(1000)),
        static_cast<std::uint16_t>(pick(10)));  // one nanosecond digit survives
    if (rng() % 2 == 0) span.Negate();
    const std::string text = span.ToString();
    if (text == "P" || text == "-P") continue;  // a zero duration prints as a bare P
    const CDateTimeSpan back = Span(text.c_str());
    ASSERT_TRUE(SameFields(span, back)) << text;
    ASSERT_EQ(back.ToString(), text);
  }
}

TEST(CDateTimeSpan, ComparesAtTheReferenceDates) {
  using R = CDateTime::DTCompareResult;
  struct Case {
    const char* a;
    const char* b;
    R expected;
  };
  const Case cases[] = {
      {"P1M", "P32D", CDateTime::DTCompare_Less},
      {"P1M", "P27D", CDateTime::DTCompare_Greater},
      {"P1M", "P30D", CDateTime::DTCompare_Indeterminate},
      {"P1Y", "P365D", CDateTime::DTCompare_Indeterminate},
      {"P1Y", "P12M", CDateTime::DTCompare_Equal},
      {"P1D", "PT24H", CDateTime::DTCompare_Equal},
      {"PT1H", "PT3600S", CDateTime::DTCompare_Equal},
      {"PT1S", "PT1.000000001S", CDateTime::DTCompare_Less},
      {"-P1D", "PT0S", CDateTime::DTCompare_Less},
      {"-PT1H", "-PT2H", CDateTime::DTCompare_Greater},
      {"P65535Y", "P65534Y", CDateTime::DTCompare_Greater},
      {"PT4294967295S", "PT4294967294S", CDateTime::DTCompare_Greater},
  };
  for (const Case& c : cases) {
    const CDateTimeSpan a = Span(c.a);
    const CDateTimeSpan b = Span(c.b);
    EXPECT_EQ(a.CompareTo(b), c.expected) << c.a << " vs " << c.b;
    EXPECT_EQ(b.CompareTo(a),
              test::Mirrored(c.expected, CDateTime::DTCompare_Less, CDateTime::DTCompare_Greater))
        << c.b << " vs " << c.a;
  }
  // The longest durations compare too: the sums are not limited to four-digit years.
  const CDateTimeSpan longest(65535, UINT32_MAX, UINT32_MAX, UINT32_MAX, UINT64_MAX, UINT64_MAX);
  CDateTimeSpan shorter(longest);
  shorter.SetSeconds(UINT64_MAX - 1);
  EXPECT_EQ(longest.CompareTo(shorter), CDateTime::DTCompare_Greater);
  EXPECT_EQ(longest.GetAsNegative().CompareTo(shorter.GetAsNegative()), CDateTime::DTCompare_Less);
  EXPECT_TRUE(Span("PT60M") == Span("PT1H"));
  EXPECT_TRUE(Span("P1M") != Span("P30D"));
  EXPECT_FALSE(Span("P1M") < Span("P30D") || Span("P1M") > Span("P30D"));
  EXPECT_TRUE(Span("P1M") < Span("P32D"));
  EXPECT_TRUE(Span("P32D") > Span("P1M"));
}

// Random and truncated text under the sanitizers: a value or the library's exception, never a
// read past the terminating zero, and what parses prints back to text that parses the same.
TEST(CDateTimeSpan, FuzzedTextYieldsValuesOrExceptions) {
  const auto inputs = test::MutatedTexts(
      {"-P1Y2M3DT4H5M6.123456789S", "PT4294967296H", "P1DT0.5S", "PT99999999999999999999M"},
      "0123456789-PYMDTHS.", 20000, 99, 3);
  int parsed = 0;
  for (const std::string& text : inputs) {
    CDateTimeSpan span;
    try {
      span.ParseXSDDuration(test::ExactCopy(text).get());
    } catch (const COvInvalidValueException&) {
      continue;
    }
    ++parsed;
    const std::string printed = span.ToString();
    if (printed == "P" || printed == "-P") continue;  // a zero duration prints as a bare P
    EXPECT_EQ(Span(printed.c_str()).ToString(), printed) << text;
    span.CompareTo(Span("P1M"));
  }
  EXPECT_GT(parsed, 1000);
}
