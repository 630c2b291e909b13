// The platform's broken-down time record and file-time record, with the Windows field names and
// meanings, for the conversions of CDateTime. Plain structs with no behaviour of their own.
#ifndef OVXMLLIB6_TYPES_SYSTEMTIME_H
#define OVXMLLIB6_TYPES_SYSTEMTIME_H

#include <cstdint>

namespace OvXmlLib6 {

// A calendar date and time of day, as the platform's time functions fill it.
struct SYSTEMTIME {
  std::uint16_t wYear;          // 1601..30827 for a time that came from a FILETIME
  std::uint16_t wMonth;         // 1..12
  std::uint16_t wDayOfWeek;     // 0 = Sunday .. 6 = Saturday
  std::uint16_t wDay;           // 1..31
  std::uint16_t wHour;          // 0..23
  std::uint16_t wMinute;        // 0..59
  std::uint16_t wSecond;        // 0..59
  std::uint16_t wMilliseconds;  // 0..999
};

// A 64-bit count of 100-nanosecond ticks since 1601-01-01T00:00:00 UTC, split in two halves.
struct FILETIME {
  std::uint32_t dwLowDateTime;
  std::uint32_t dwHighDateTime;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_SYSTEMTIME_H
