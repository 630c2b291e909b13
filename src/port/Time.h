// The platform's calendar and clock, behind plain functions so that the value types stay free of
// OS headers. Calendar arithmetic is on the proleptic Gregorian calendar with astronomical year
// numbering (there is a year 0, and -4 is a leap year), which is what the C library's 64-bit
// calendar functions compute for years before 1.
#ifndef OVXMLLIB6_SRC_PORT_TIME_H
#define OVXMLLIB6_SRC_PORT_TIME_H

#include "OvXmlLib6/types/SystemTime.h"

#include <cstdint>

namespace OvXmlLib6 {
namespace port {

// A broken-down time. dayOfWeek is 0 for Sunday .. 6 for Saturday.
struct CCivilTime {
  std::int64_t year;
  int month;
  int day;
  int hour;
  int minute;
  int second;
  int milliSecond;
  int dayOfWeek;
};

// Days from 1970-01-01 to the given date (negative before it). Exact for |year| < 10^12.
std::int64_t DaysFromCivil(std::int64_t year, int month, int day);

// Seconds since 1970-01-01T00:00:00 UTC of a calendar time read as UTC: the equivalent of
// timegm() without its limits on the year. Exact for |year| < 10^9.
std::int64_t UtcSecondsFromCivil(std::int64_t year, int month, int day, int hour, int minute,
                                 int second);

// The UTC calendar time of a count of seconds since 1970-01-01T00:00:00 UTC: the equivalent of
// gmtime_r(), defined for every 64-bit count (the year always fits). milliSecond is 0.
CCivilTime CivilFromUtcSeconds(std::int64_t seconds);

// The calendar time of a FILETIME (100 ns ticks since 1601-01-01 UTC), as FileTimeToSystemTime
// does: false, with `out` untouched, for a count above the signed 64-bit range.
bool FileTimeToSystemTime(const FILETIME& fileTime, SYSTEMTIME& out);

// The current local time of the system clock, with milliseconds.
CCivilTime LocalNow();

}  // namespace port
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_PORT_TIME_H
