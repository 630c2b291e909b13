#include "port/Time.h"

#include <ctime>
#include <limits>

namespace OvXmlLib6 {
namespace port {

namespace {

constexpr std::int64_t kSecondsPerDay = 86400;
constexpr std::int64_t kDaysPer400Years = 146097;
// Days from 0000-03-01 to 1970-01-01: the epoch of the era arithmetic below.
constexpr std::int64_t kEpochShift = 719468;
// Seconds from 1601-01-01 to 1970-01-01, and FILETIME ticks per second.
constexpr std::int64_t kFileTimeEpochSeconds = 11644473600;
constexpr std::uint64_t kTicksPerSecond = 10000000;

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
  const std::int64_t q = a / b;
  return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

// 0 = Sunday: 1970-01-01 was a Thursday.
int WeekdayOfDays(std::int64_t days) {
  return static_cast<int>(days - 7 * FloorDiv(days + 4, 7) + 4);
}

}  // namespace

// Counts in eras of 400 years that start on 1 March, so the leap day is the last day of a year
// and the month lengths from March on follow the fixed pattern (153 days per five months).
std::int64_t DaysFromCivil(std::int64_t year, int month, int day) {
  const std::int64_t y = month <= 2 ? year - 1 : year;
  const std::int64_t era = FloorDiv(y, 400);
  const std::int64_t yearOfEra = y - era * 400;
  const std::int64_t dayOfYear = (153 * (month > 2 ? month - 3 : month + 9) + 2) / 5 + day - 1;
  const std::int64_t dayOfEra = yearOfEra * 365 + yearOfEra / 4 - yearOfEra / 100 + dayOfYear;
  return era * kDaysPer400Years + dayOfEra - kEpochShift;
}

std::int64_t UtcSecondsFromCivil(std::int64_t year, int month, int day, int hour, int minute,
                                 int second) {
  return DaysFromCivil(year, month, day) * kSecondsPerDay + hour * 3600 + minute * 60 + second;
}

CCivilTime CivilFromUtcSeconds(std::int64_t seconds) {
  const std::int64_t days = FloorDiv(seconds, kSecondsPerDay);
  const std::int64_t secondOfDay = seconds - days * kSecondsPerDay;
  const std::int64_t shifted = days + kEpochShift;
  const std::int64_t era = FloorDiv(shifted, kDaysPer400Years);
  const std::int64_t dayOfEra = shifted - era * kDaysPer400Years;
  const std::int64_t yearOfEra =
      (dayOfEra - dayOfEra / 1460 + dayOfEra / 36524 - dayOfEra / 146096) / 365;
  const std::int64_t dayOfYear = dayOfEra - (365 * yearOfEra + yearOfEra / 4 - yearOfEra / 100);
  const std::int64_t monthIndex = (5 * dayOfYear + 2) / 153;
  CCivilTime out{};
  out.day = static_cast<int>(dayOfYear - (153 * monthIndex + 2) / 5 + 1);
  out.month = static_cast<int>(monthIndex < 10 ? monthIndex + 3 : monthIndex - 9);
  out.year = yearOfEra + era * 400 + (out.month <= 2 ? 1 : 0);
  out.hour = static_cast<int>(secondOfDay / 3600);
  out.minute = static_cast<int>(secondOfDay / 60 % 60);
  out.second = static_cast<int>(secondOfDay % 60);
  out.milliSecond = 0;
  out.dayOfWeek = WeekdayOfDays(days);
  return out;
}

bool FileTimeToSystemTime(const FILETIME& fileTime, SYSTEMTIME& out) {
  const std::uint64_t ticks =
      (static_cast<std::uint64_t>(fileTime.dwHighDateTime) << 32) | fileTime.dwLowDateTime;
  if (ticks > static_cast<std::uint64_t>(std::numeric_limits<std::int64_t>::max())) return false;
  const std::int64_t seconds =
      static_cast<std::int64_t>(ticks / kTicksPerSecond) - kFileTimeEpochSeconds;
  const CCivilTime civil = CivilFromUtcSeconds(seconds);
  // 2^63 ticks end in the year 30828, so every field fits its 16-bit slot.
  out.wYear = static_cast<std::uint16_t>(civil.year);
  out.wMonth = static_cast<std::uint16_t>(civil.month);
  out.wDayOfWeek = static_cast<std::uint16_t>(civil.dayOfWeek);
  out.wDay = static_cast<std::uint16_t>(civil.day);
  out.wHour = static_cast<std::uint16_t>(civil.hour);
  out.wMinute = static_cast<std::uint16_t>(civil.minute);
  out.wSecond = static_cast<std::uint16_t>(civil.second);
  out.wMilliseconds = static_cast<std::uint16_t>(ticks % kTicksPerSecond / 10000);
  return true;
}

CCivilTime LocalNow() {
  struct timespec now {};
  clock_gettime(CLOCK_REALTIME, &now);
  struct tm local {};
  const time_t seconds = now.tv_sec;
  CCivilTime out{};
  if (localtime_r(&seconds, &local) == nullptr) {
    // Only a clock beyond the range of the broken-down year fails; fall back to UTC.
    out = CivilFromUtcSeconds(static_cast<std::int64_t>(seconds));
  } else {
    out.year = static_cast<std::int64_t>(local.tm_year) + 1900;
    out.month = local.tm_mon + 1;
    out.day = local.tm_mday;
    out.hour = local.tm_hour;
    out.minute = local.tm_min;
    // A leap second shows as :60; the date types have no leap second.
    out.second = local.tm_sec > 59 ? 59 : local.tm_sec;
    out.dayOfWeek = local.tm_wday;
  }
  out.milliSecond = static_cast<int>(now.tv_nsec / 1000000);
  return out;
}

}  // namespace port
}  // namespace OvXmlLib6
