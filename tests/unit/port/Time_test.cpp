#include "port/Time.h"

#include <ctime>
#include <gtest/gtest.h>
#include <random>

using namespace OvXmlLib6;

// The calendar arithmetic against the C library's own gmtime_r/timegm, over ±5000 years.
TEST(PortTime, CalendarMatchesTheCLibrary) {
  std::mt19937_64 rng(17);
  for (int i = 0; i < 20000; ++i) {
    const std::int64_t seconds =
        static_cast<std::int64_t>(rng() % 316000000000ULL) - 158000000000LL;
    const port::CCivilTime civil = port::CivilFromUtcSeconds(seconds);
    const time_t t = static_cast<time_t>(seconds);
    struct tm expected {};
    ASSERT_NE(gmtime_r(&t, &expected), nullptr);
    ASSERT_EQ(civil.year, expected.tm_year + 1900LL) << seconds;
    ASSERT_EQ(civil.month, expected.tm_mon + 1) << seconds;
    ASSERT_EQ(civil.day, expected.tm_mday) << seconds;
    ASSERT_EQ(civil.hour * 3600 + civil.minute * 60 + civil.second,
              expected.tm_hour * 3600 + expected.tm_min * 60 + expected.tm_sec);
    ASSERT_EQ(civil.dayOfWeek, expected.tm_wday) << seconds;
    ASSERT_EQ(port::UtcSecondsFromCivil(civil.year, civil.month, civil.day, civil.hour,
                                        civil.minute, civil.second),
              static_cast<std::int64_t>(timegm(&expected)));
  }
}

TEST(PortTime, FileTimeConvertsLikeTheWindowsCall) {
  SYSTEMTIME st{};
  ASSERT_TRUE(port::FileTimeToSystemTime(FILETIME{0, 0}, st));
  EXPECT_EQ(st.wYear, 1601);
  EXPECT_EQ(st.wDayOfWeek, 1);  // a Monday
  ASSERT_TRUE(port::FileTimeToSystemTime(FILETIME{0xFFFFFFFFu, 0x7FFFFFFFu}, st));
  EXPECT_EQ(st.wYear, 30828);
  EXPECT_EQ(st.wMonth, 9);
  EXPECT_EQ(st.wDay, 14);
  const SYSTEMTIME before = st;
  EXPECT_FALSE(port::FileTimeToSystemTime(FILETIME{0, 0x80000000u}, st));
  EXPECT_EQ(st.wYear, before.wYear);
}
