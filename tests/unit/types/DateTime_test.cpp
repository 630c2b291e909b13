#include "OvXmlLib6/types/DateTime.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "unit/TestSupport.h"

#include <cstdint>
#include <cstring>
#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

CDateTime Date(const char* text) {
  CDateTime value;
  value.ParseXSDDate(text);
  return value;
}

CDateTime Time(const char* text) {
  CDateTime value;
  value.ParseXSDTime(text);
  return value;
}

const CDateTime::DTCompareResult kEq = CDateTime::DTCompare_Equal;
const CDateTime::DTCompareResult kLt = CDateTime::DTCompare_Less;
const CDateTime::DTCompareResult kGt = CDateTime::DTCompare_Greater;
const CDateTime::DTCompareResult kIn = CDateTime::DTCompare_Indeterminate;

}  // namespace

TEST(CDateTime, ParsesEveryKindAndPrintsItBack) {
  struct Case {
    const char* text;
    CDateTime::DTType type;
  };
  const Case dates[] = {
      {"2004-02-29", CDateTime::date},         {"2004", CDateTime::gYear},
      {"2004-05", CDateTime::gYearMonth},      {"--05", CDateTime::gMonth},
      {"--02-29", CDateTime::gMonthDay},       {"---15", CDateTime::gDay},
      {"-0044-03-15", CDateTime::date},        {"2004-05-06Z", CDateTime::date},
      {"--05-17-05:30", CDateTime::gMonthDay},
  };
  for (const Case& c : dates) {
    const CDateTime value = Date(c.text);
    EXPECT_EQ(value.GetType(), c.type) << c.text;
    EXPECT_EQ(value.ToString(), c.text);
  }
  EXPECT_EQ(Date("-0044-03-15").GetYear(), -44);
  // The older gMonth form reads as a gMonth and prints in the current one.
  EXPECT_EQ(Date("--05--").ToString(), "--05");

  const char* dateTimes[] = {"2001-10-26T21:32:52", "2001-10-26T21:32:52.123456789+02:00",
                             "-9999-12-31T23:59:59.000000001Z", "2001-10-26T00:00:00.00004-13:45"};
  for (const char* text : dateTimes) EXPECT_EQ(CDateTime(text).ToString(), text);

  const CDateTime full("2001-10-26T21:32:52.123456789+02:00");
  EXPECT_EQ(full.GetType(), CDateTime::dateTime);
  EXPECT_EQ(full.GetMilliSecond(), 123);
  EXPECT_EQ(full.GetMicroSecond(), 456);
  EXPECT_EQ(full.GetNanoSecond(), 789);
  EXPECT_DOUBLE_EQ(full.GetRealSecond(), 52.123456789);
  EXPECT_TRUE(full.IsUTC());
  EXPECT_TRUE(full.HasTimeZone());
  EXPECT_EQ(full.GetZoneHour(), 2);

  EXPECT_EQ(Time("12:00:00.500").ToString(), "12:00:00.5");
  EXPECT_EQ(Time("12:00:00.123456789").GetNanoSecond(), 789);
}

TEST(CDateTime, KeepsTheLenientReadings) {
  EXPECT_EQ(Date("---45").GetDay(), 45);  // only the lower bound of a gDay is checked
  EXPECT_EQ(Time("12:00:00+24:30").ToString(), "12:00:00+00:30");
  EXPECT_EQ(Time("12:00:00-00:30").ToString(), "12:00:00+00:30");
  EXPECT_EQ(Time("12:00:00.").ToString(), "12:00:00");
  EXPECT_EQ(Time("12:00:00 trailing").ToString(), "12:00:00");
  EXPECT_EQ(Time("12:00:00Zjunk").ToString(), "12:00:00Z");
  // The kind comes from the text, whatever the value was built as.
  CDateTime value(CDateTime::gYear);
  value.ParseXSDDate("2004-05");
  EXPECT_EQ(value.GetType(), CDateTime::gYearMonth);
}

TEST(CDateTime, RefusesBadTextWithItsMessages) {
  struct Case {
    int parser;  // 0 date, 1 time, 2 dateTime
    const char* text;
    const char* message;
  };
  const Case cases[] = {
      {0, nullptr, "Invalid Date (Null String)"},
      {0, "", "Invalid Date (Empty String)"},
      {0, "2004-01-01T", "Invalid Date ('T' not allowed)"},
      {0, "2004-01-01+01:00Z", "Invalid Date (Bad Zone value)"},
      {0, "2004-1-01", "Invalid XSD Date [2004-1-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
      {0, "12004-01-01", "Invalid XSD Date [12004-01-01] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
      {0, "--1x", "Invalid XSD Date [--1x] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
      {0, "1:00", "Invalid XSD Date [1:00] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
      {0, "Z", "Invalid XSD Date [Z] expected CCYY-MM-DD[Z|[+|-]hh:mm]"},
      {0, "2003-02-29", "Invalid Day [29] (1 <= day <= days in month"},
      {0, "1900-02-29", "Invalid Day [29] (1 <= day <= days in month"},
      {0, "--02-30", "Invalid Day [30] (1 <= day <= days in month)"},
      {0, "---00", "Invalid Day [0] (1 <= day <= 31)"},
      {0, "0000-01-01", "Invalid Year [0] (9999 <= year <= -9999 && year != 0)"},
      {0, "2004-13", "Invalid Month [13] (1 <= month <= 12)"},
      {0, "--00", "Invalid Month [0] (1 <= month <= 12)"},
      {0, "2004-01-01+1:000", "Invalid XSD Time Zone [+1:000]"},
      {0, "2004-01-01+25:00", "Invalid TimeZone [25:0]"},
      {1, nullptr, "Invalid Time (Null String)"},
      {1, "", "Invalid XSD Time (Empty String)"},
      {1, "24:00:00", "Invalid XSD Time [24:00:00] expected hh:mm:ss[.ff]"},
      {1, "12:60:00", "Invalid XSD Time [12:60:00] expected hh:mm:ss[.ff]"},
      {1, "12:00", "Invalid XSD Time [12:00] expected hh:mm:ss[.ff]"},
      {1, "12:00:00.1234567891", "Invalid XSD Time [12:00:00.1234567891] Fraction part too long"},
      {1, "12:00:00+01", "Invalid XSD Time Zone [+01]"},
      {1, "12:00:00-12:60", "Invalid TimeZone [-12:60]"},
      {2, nullptr, "Invalid DateTime (Null String)"},
      {2, "2001-10-26", "Invalid XSD DateTime [2001-10-26]"},
      {2, "2001-10T21:32:52",
       "Invalid XSD DateTime [2001-10T21:32:52] expected CCYY-MM-DDThh:mm:ss[.ff]"},
      {2, "2001-10-26T21:32:52.1234567891",
       "Invalid XSD Time [21:32:52.1234567891] Fraction part too long"},
      {2, "2001-10-26T25:00:00", "Invalid XSD Time [25:00:00] expected hh:mm:ss[.ff]"},
      {2, "2001-02-29T00:00:00", "Invalid Day [29] (1 <= day <= days in month"},
      {2, "T00:00:00", "Invalid Date (Empty String)"},
  };
  for (const Case& c : cases) {
    CDateTime value;
    const std::string message = MessageOf([&] {
      if (c.parser == 0) value.ParseXSDDate(c.text);
      if (c.parser == 1) value.ParseXSDTime(c.text);
      if (c.parser == 2) value.ParseXSDDateTime(c.text);
    });
    EXPECT_EQ(message, c.message) << (c.text ? c.text : "(null)");
  }
  EXPECT_THROW(Date("2003-02-29"), COvInvalidValueException);
}

// Each setter and getter refuses what its kind cannot hold, naming the field or the kind.
TEST(CDateTime, SettersAndGettersRefuseWithTheirMessages) {
  const CDateTime time = Time("10:20:30.5");
  const struct {
    std::function<void()> action;
    const char* message;
  } cases[] = {
      {[] { CDateTime().ToString(); }, "Date Not Set"},
      {[] { Time("00:00:00").ToString(); }, "Date Not Set"},
      {[] { CDateTime(CDateTime::gDay).ToString(); }, "Date Not Set"},
      {[] { CDateTime(10000, 1, 1); }, "Invalid Year [10000] (9999 <= year <= -9999 && year != 0)"},
      {[] { CDateTime().SetTime(24, 0, 0); }, "Invalid Hour [24] (0 <= hour <= 23)"},
      {[] { CDateTime().SetTime(0, 60, 0); }, "Invalid Minute [60] (0 <= minute <= 59)"},
      {[] { CDateTime().SetTime(0, 0, 60); }, "Invalid Second [60] (0 <= second <= 59)"},
      {[] { CDateTime().SetFracTime(1000, 0, 0); },
       "Invalid Milli-Second [1000] (0 <= milli <= 999)"},
      {[] { CDateTime().SetFracTime(0, 1000, 0); },
       "Invalid Micro-Second [1000] (0 <= micro <= 999)"},
      {[] { CDateTime(2000, 1, 1, 0, 0, 0, 0, 0, 1000); },
       "Invalid Nano-Second [1000] (0 <= nano <= 999)"},
      {[] { CDateTime().SetGMonth(0); }, "Invalid Month [0] (1 <= month <= 12)"},
      {[&] { time.GetYear(); }, "Failed to GetYear. Invalid Date Type: time."},
      {[] { Date("---05").GetMonth(); }, "Failed to GetMonth. Invalid Date Type: gDay."},
      {[] { Date("2004").GetDay(); }, "Failed to GetDay. Invalid Date Type: gYear."},
      {[] { Date("2004-01-01").GetNanoSecond(); },
       "Failed to GetNanoSecond. Invalid Date Type: date."},
      {[&] { time.GetDayOfWeek(); }, "Failed to GetDayOfWeek. Invalid Date Type: time."},
      {[&] { time.GetZoneHour(); }, "TimeZone is not been used"},
      {[] { Time("10:00:00Z").GetZoneMinute(); }, "TimeZone is not been used"},
      {[] { Time("10:00:00").SetTimeZone(24, 0); }, "Invalid TimeZone [24:0]"},
      {[] { Time("10:00:00").SetTimeZone(-24, 0); }, "Invalid TimeZone [-24:0]"},
  };
  for (const auto& c : cases) EXPECT_EQ(MessageOf(c.action), c.message);
  EXPECT_THROW(time.GetYear(), COvInvalidStateException);
  EXPECT_EQ(time.GetHour(), 10);
  EXPECT_DOUBLE_EQ(time.GetRealSecond(), 30.5);

  const CDateTime value("2001-10-26T21:32:52");
  EXPECT_EQ(value.ToString(nullptr), "");
  EXPECT_EQ(value.ToString(""), "");
  EXPECT_EQ(value.ToString("G"), "");
  EXPECT_EQ(value.ToString("yyyy"), "Unknown Format: yyyy");
  CDateTime fraction;
  fraction.SetTime(1, 2, 3, 0, 40, 0);
  EXPECT_EQ(fraction.ToString(), "01:02:03.00004");
  fraction = CDateTime();
  fraction.SetFracTime(0, 0, 100);
  EXPECT_EQ(fraction.ToString(), "00:00:00.0000001");
}

TEST(CDateTime, SettersKeepTheirKindAndZone) {
  CDateTime value;
  value.SetDate(2004, 2, 29);
  EXPECT_EQ(value.ToString(), "2004-02-29");
  EXPECT_FALSE(value.IsUTC());
  EXPECT_EQ(MessageOf<COvInvalidStateException>([&] { value.SetTime(1, 2, 3); }),
            "Failed to copy CDateTime. Invalid Date Type: time, expected: date.");
  value.SetUTC();
  value.SetDate(2004, 3, 1);  // same kind: allowed, and the zone is cleared
  EXPECT_EQ(value.ToString(), "2004-03-01");

  CDateTime gMonthDay;
  gMonthDay.SetGMonthDay(2, 29);
  gMonthDay.SetGMonthDay(12, 31);
  EXPECT_EQ(gMonthDay.ToString(), "--12-31");
  CDateTime gYearMonth;
  gYearMonth.SetGYearMonth(-1, 12);
  EXPECT_EQ(gYearMonth.ToString(), "-0001-12");

  CDateTime zoned = Time("10:00:00");
  zoned.SetTimeZone(-23, 59);
  EXPECT_EQ(zoned.ToString(), "10:00:00-23:59");
  zoned.SetUTC();
  EXPECT_FALSE(zoned.HasTimeZone());
  EXPECT_EQ(zoned.ToString(), "10:00:00Z");

  EXPECT_EQ(CDateTime::GetTypeAsString(CDateTime::gMonthDay), "gMonthDay");
  EXPECT_EQ(CDateTime(CDateTime::dt_yearZero).GetTypeAsString(), "yearZero");
  EXPECT_EQ(CDateTime::GetTypeAsString(static_cast<CDateTime::DTType>(9)), "");
  EXPECT_EQ(CDateTime::GetTypeAsString(static_cast<CDateTime::DTType>(1000)), "");
}

TEST(CDateTime, ConvertsBetweenKinds) {
  const CDateTime source("2004-05-06T07:08:09.5+01:00");
  CDateTime target;
  target.SetDateTime(source, CDateTime::gMonthDay);
  EXPECT_EQ(target.ToString(), "--05-06+01:00");
  target.SetDateTime(target, CDateTime::gDay);
  EXPECT_EQ(target.ToString(), "---06+01:00");
  target.SetDateTime(source, CDateTime::time);
  EXPECT_EQ(target.ToString(), "07:08:09.5+01:00");

  EXPECT_EQ(MessageOf([&] { target.SetDateTime(Date("2004"), CDateTime::date); }),
            "Attempting to set a CDateTime of type date using an XmlDateTime of type gYear. The "
            "source CDateTime does not contian enough data to allow the conversion.");
  EXPECT_EQ(MessageOf([&] { target.SetDateTime(Date("2004-05"), CDateTime::gDay); }),
            "Attempting to set a CDateTime of type gDay using an XmlDateTime of type "
            "gYearMonth. The source CDateTime does not contian enough data to allow the "
            "conversion.");
  const CDateTime unknown(static_cast<CDateTime::DTType>(12));
  EXPECT_EQ(MessageOf([&] { target.SetDateTime(unknown, CDateTime::date); }),
            "Unknown date type 12.");
}

TEST(CDateTime, DayOfYearAndWeekFollowTheirFormulas) {
  EXPECT_EQ(Date("2000-03-01").GetDayOfYear(), 60);
  EXPECT_EQ(Date("2000-01-01").GetDayOfYear(), 2);  // leap day counted in January
  EXPECT_EQ(Date("2001-12-31").GetDayOfYear(), 365);
  // (doy + 365*y - y%400 + y%4) % 7
  EXPECT_EQ(Date("2000-01-01").GetDayOfWeek(), (2 + 365 * 2000 - 0 + 0) % 7);
  EXPECT_EQ(Date("2003-07-04").GetDayOfWeek(), (185 + 365 * 2003 - 3 + 3) % 7);
  EXPECT_EQ(Date("-0003-01-01").GetDayOfWeek(), static_cast<unsigned char>((1 - 1095 + 3 - 3) % 7));
}

// Each pair compared from both sides. A zoneless value within 14 hours of a zoned one cannot be
// ordered; an offset zone is normalised before that window applies.
TEST(CDateTime, ComparesByTheSchemaOrder) {
  const char* const zoned = "2000-01-15T12:00:00Z";
  const struct {
    const char* a;
    const char* b;
    CDateTime::DTCompareResult expected;  // a.CompareTo(b)
  } cases[] = {
      {"2000-01-01T12:00:00", "2000-01-01T12:00:00", kEq},
      {"2000-01-01T12:00:00", "2000-01-01T12:00:00.000000001", kLt},
      {"2000-01-01T12:00:00+05:00", "2000-01-01T07:00:00Z", kEq},
      {"2000-01-01T01:00:00+05:00", "1999-12-31T21:00:00Z", kLt},
      {"2000-01-01T12:00:00-05:30", "2000-01-01T17:30:00Z", kEq},
      {"-0001-01-01T00:00:00", "0001-01-01T00:00:00", kIn},  // years of opposite sign
      {"2000-01-14T21:59:59", zoned, kLt},
      {"2000-01-14T22:00:00", zoned, kIn},
      {"2000-01-15T12:00:00", zoned, kIn},
      {"2000-01-16T02:00:00", zoned, kIn},
      {"2000-01-16T02:00:00.000000001", zoned, kGt},
      {"2000-01-20T00:00:00", zoned, kGt},
      {"2000-01-14T23:59:59", "2000-01-15T12:00:00-02:00", kLt},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(CDateTime(c.a).CompareTo(CDateTime(c.b)), c.expected) << c.a << " vs " << c.b;
    EXPECT_EQ(CDateTime(c.b).CompareTo(CDateTime(c.a)), test::Mirrored(c.expected, kLt, kGt))
        << c.b << " vs " << c.a;
  }
  // Dates compare until they need a time field.
  EXPECT_EQ(Date("2000-01-01").CompareTo(Date("2000-01-02")), kLt);
  EXPECT_EQ(MessageOf([] { Date("2000-01-01").CompareTo(Date("2000-01-01")); }),
            "Failed to GetHour. Invalid Date Type: date.");
  EXPECT_EQ(MessageOf([] { Time("10:00:00").CompareTo(Time("11:00:00")); }),
            "Failed to GetYear. Invalid Date Type: time.");

  // The operators of an indeterminate pair: only != holds.
  const CDateTime inside("2000-01-15T12:00:00");
  const CDateTime zonedValue(zoned);
  EXPECT_FALSE(inside == zonedValue);
  EXPECT_FALSE(inside < zonedValue || inside <= zonedValue || inside > zonedValue ||
               inside >= zonedValue);
  EXPECT_TRUE(inside != zonedValue);

  // Antisymmetry on random pairs, with and without zones.
  std::mt19937 rng(7);
  auto random = [&rng]() {
    CDateTime value(static_cast<short>(1999 + rng() % 3), 1 + rng() % 12, 1 + rng() % 28,
                    rng() % 24, rng() % 60, rng() % 60);
    if (rng() % 3 == 0) value.SetUTC();
    if (rng() % 3 == 0) value.SetTimeZone(static_cast<short>(rng() % 47) - 23, rng() % 60);
    return value;
  };
  for (int i = 0; i < 2000; ++i) {
    const CDateTime a = random();
    const CDateTime b = random();
    EXPECT_EQ(b.CompareTo(a), test::Mirrored(a.CompareTo(b), kLt, kGt));
  }
}

TEST(CDateTime, AddsDurations) {
  auto plus = [](const char* when, const char* span) {
    CDateTimeSpan s;
    s.ParseXSDDuration(span);
    return (CDateTime(when) + s).ToString();
  };
  EXPECT_EQ(plus("2000-01-31T10:00:00", "P1M"), "2000-02-29T10:00:00");  // clamped to the month
  EXPECT_EQ(plus("2000-12-31T23:59:59.999999999Z", "PT0.000000001S"), "2001-01-01T00:00:00Z");
  EXPECT_EQ(plus("2000-03-01T00:30:00+05:00", "-PT1H"), "2000-02-29T23:30:00+05:00");
  EXPECT_EQ(plus("2000-01-01T00:00:00", "-P1Y2M3DT4H5M6.007S"), "1998-10-28T19:54:53.993");
  EXPECT_EQ(plus("2000-01-01T00:00:00", "PT100000H"), "2011-05-29T16:00:00");
  EXPECT_EQ(plus("2000-01-01T00:00:00", "P2921939D"), "9999-12-31T00:00:00");

  // Long durations neither loop nor wrap: the year range refuses them.
  CDateTimeSpan huge(0, 0, 0, 0, 0, UINT64_MAX);
  EXPECT_EQ(MessageOf([&] { CDateTime("2000-01-01T00:00:00") + huge; }).substr(0, 14),
            "Invalid Year [");
  huge = CDateTimeSpan(0, UINT32_MAX, UINT32_MAX, UINT32_MAX, UINT64_MAX, UINT64_MAX);
  EXPECT_THROW(CDateTime("2000-01-01T00:00:00") - huge, COvInvalidValueException);
  // Nor do they reach year 0, which would print as a date that does not parse.
  const std::pair<const char*, const char*> toYearZero[] = {{"0024-02-20T00:00:00", "-P24Y"},
                                                            {"0001-01-01T00:00:00", "-PT1S"},
                                                            {"-0001-12-31T00:00:00", "P1D"}};
  for (const auto& step : toYearZero) {
    EXPECT_EQ(MessageOf([&] { plus(step.first, step.second); }),
              "Invalid Year [0] (9999 <= year <= -9999 && year != 0)")
        << step.first << step.second;
  }
  EXPECT_EQ(MessageOf([] { CDateTime("0001-01-01T01:00:00+05:00").GetNormalized(); }),
            "Invalid Year [0] (9999 <= year <= -9999 && year != 0)");

  CDateTime value("2000-01-01T00:00:00");
  value += CDateTimeSpan(24, 0, 0);
  value -= CDateTimeSpan(0, 30, 0);
  EXPECT_EQ(value.ToString(), "2000-01-01T23:30:00");
  // Subtracting two dates gives a zero duration.
  const CDateTimeSpan difference = CDateTime("2001-01-01T00:00:00") - value;
  EXPECT_EQ(difference.ToString(), "P");
  EXPECT_FALSE(difference.IsNegative());

  const CDateTime normalized = CDateTime("2000-01-01T01:00:00+05:00").GetNormalized();
  EXPECT_EQ(normalized.ToString(), "1999-12-31T20:00:00+00:00");
  EXPECT_EQ(CDateTime("2000-01-01T01:00:00Z").GetNormalized().ToString(), "2000-01-01T01:00:00Z");

  // Day arithmetic agrees with the seconds count over many random steps.
  std::mt19937 rng(11);
  CDateTime walker("1970-01-01T00:00:00");
  std::int64_t days = 0;
  for (int i = 0; i < 500; ++i) {
    const std::uint32_t step = rng() % 4000;
    const bool back = rng() % 2 == 0 && days > -700000 + 4000;
    walker = back ? walker - CDateTimeSpan(0, 0, step, 0, 0, 0)
                  : walker + CDateTimeSpan(0, 0, step, 0, 0, 0);
    days += back ? -static_cast<std::int64_t>(step) : step;
    ASSERT_EQ(walker.GetTime(), days * 86400) << walker.ToString();
  }
}

TEST(CDateTime, ConvertsToAndFromThePlatformRecords) {
  EXPECT_EQ(CDateTime("1970-01-01T00:00:00").GetTime(), 0);
  EXPECT_EQ(CDateTime("2000-03-01T00:00:01.9+05:00").GetTime(), 951868801);
  EXPECT_EQ(Date("1969-12-31").GetTime(), -86400);
  EXPECT_EQ(MessageOf([] { Date("2004").GetTime(); }),
            "Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: gYear.");
  EXPECT_EQ(CDateTime(std::int64_t{951868801}).ToString(), "2000-03-01T00:00:01");
  EXPECT_EQ(CDateTime(std::int64_t{-62135596800}).ToString(), "0001-01-01T00:00:00");
  EXPECT_EQ(MessageOf([] { CDateTime(std::int64_t{INT64_MAX}); }),
            "Invalid Year [292277026596] (9999 <= year <= -9999 && year != 0)");

  CDateTime fromFile;
  fromFile = FILETIME{0, 0};
  EXPECT_EQ(fromFile.ToString(), "1601-01-01T00:00:00");
  // 2000-03-01T00:00:01.234 in 100 ns ticks since 1601.
  const std::uint64_t ticks = (951868801ULL + 11644473600ULL) * 10000000ULL + 2345678;
  const CDateTime fileTime(
      FILETIME{static_cast<std::uint32_t>(ticks), static_cast<std::uint32_t>(ticks >> 32)});
  EXPECT_EQ(fileTime.ToString(), "2000-03-01T00:00:01.234");
  EXPECT_EQ(MessageOf([] {
              CDateTime(FILETIME{0, 0x80000000u});
            }),
            "Failed to convert FILETIME to SYSTEMTIME");
  EXPECT_EQ(MessageOf([] {
              CDateTime(FILETIME{0xFFFFFFFFu, 0x7FFFFFFFu});
            }),
            "Invalid Year [30828] (9999 <= year <= -9999 && year != 0)");

  SYSTEMTIME st{2004, 2, 0, 29, 23, 59, 58, 999};
  CDateTime fromSystem(CDateTime::date);
  fromSystem = st;  // assignment replaces the kind
  EXPECT_EQ(fromSystem.ToString(), "2004-02-29T23:59:58.999");
  const SYSTEMTIME back = fromSystem.GetAsSystemTime();
  EXPECT_EQ(back.wDayOfWeek, 0);  // a Sunday
  EXPECT_EQ(std::memcmp(&back, &st, sizeof st), 0);
  EXPECT_EQ(MessageOf([] { Date("2004-01-01").GetAsSystemTime(); }),
            "Failed to GetAsSystemTime, Date Status must be dateTime. Invalid Date Type: date.");
  st.wMonth = 300;
  EXPECT_EQ(MessageOf([&] { CDateTime{st}; }), "Invalid Month [300] (1 <= month <= 12)");
  st = SYSTEMTIME{40000, 1, 0, 1, 0, 0, 0, 0};
  EXPECT_EQ(MessageOf([&] { CDateTime{st}; }),
            "Invalid Year [40000] (9999 <= year <= -9999 && year != 0)");

  // The calendar itself is checked against the C library in the port's tests.

  const CDateTime now = CDateTime::GetTickCount();
  EXPECT_EQ(now.GetType(), CDateTime::dateTime);
  EXPECT_FALSE(now.IsUTC());
  EXPECT_GE(now.GetYear(), 2020);
}

// Random and truncated text goes to every parser under the sanitizers: each call either yields a
// value or one of the library's exceptions, and whatever parses prints and re-parses unchanged.
TEST(CDateTime, FuzzedTextYieldsValuesOrExceptions) {
  const auto inputs =
      test::MutatedTexts({"2001-10-26T21:32:52.123456789+02:00", "-0044-03-15Z", "--02-29-05:00",
                          "---45", "12:00:00.5Z", "2004-05", "--05--", "0001-01-01T00:00:00Z"},
                         "0123456789-:.TZ+ Pz", 20000, 2024);
  const auto parse = [](int parser, CDateTime& value, const char* text) {
    if (parser == 0) value.ParseXSDDate(text);
    if (parser == 1) value.ParseXSDTime(text);
    if (parser == 2) value.ParseXSDDateTime(text);
  };
  const CDateTime reference("2000-01-01T00:00:00");
  int parsed = 0;
  for (const std::string& input : inputs) {
    const auto exact = test::ExactCopy(input);
    for (int parser = 0; parser < 3; ++parser) {
      CDateTime value;
      if (MessageOf([&] { parse(parser, value, exact.get()); }) != "no exception") continue;
      ++parsed;
      std::string printed;
      const std::string error = MessageOf([&] { printed = value.ToString(); });
      if (error != "no exception") {
        EXPECT_EQ(error, "Date Not Set") << input;
        continue;
      }
      CDateTime again;
      parse(parser, again, printed.c_str());
      EXPECT_EQ(again.ToString(), printed) << input;
      try {
        value.CompareTo(reference);
        (value + CDateTimeSpan(0, 0, 1, 25, 61, 61)).ToString();
      } catch (const COvException&) {
      }
    }
  }
  EXPECT_GT(parsed, 1000);
}
