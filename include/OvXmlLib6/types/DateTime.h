// CDateTime: one value of the XML Schema date and time types (dateTime, date, time, gYear,
// gYearMonth, gMonth, gMonthDay, gDay) with fractions of a second down to nanoseconds and an
// optional time zone. It parses and prints the lexical forms, checks the field ranges of its kind,
// compares by the XML Schema order relation (which may be indeterminate when only one side has a
// zone), adds and subtracts durations (CDateTimeSpan) and converts to and from the platform's time
// records.
//
// Every failure is a COvInvalidValueException (lexical and range errors) or a
// COvInvalidStateException (a getter the kind lacks, a setter that would change the kind). A value
// whose parse or setter failed holds partly filled fields until it is parsed or set again.
#ifndef OVXMLLIB6_TYPES_DATETIME_H
#define OVXMLLIB6_TYPES_DATETIME_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/types/SystemTime.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class CDateTimeSpan;
namespace detail {
struct CDateTimeAccess;
}

class OVXML_API CDateTime {
 public:
  // The kind of value. GetTypeAsString gives the enumerator's name; the dt_ names are aliases.
  enum DTType : int {
    yearZero = 0,  // no kind set yet
    dateTime = 1,
    date = 2,
    gYearMonth = 3,
    gYear = 4,
    time = 5,
    gDay = 6,
    gMonth = 7,
    gMonthDay = 8,
    dt_yearZero = yearZero,
    dt_dateTime = dateTime,
    dt_date = date,
    dt_gYearMonth = gYearMonth,
    dt_gYear = gYear,
    dt_time = time,
    dt_gDay = gDay,
    dt_gMonth = gMonth,
    dt_gMonthDay = gMonthDay
  };

  // The outcome of comparing two dates or two durations.
  enum DTCompareResult : int {
    DTCompare_Equal = 0,
    DTCompare_Less = 1,
    DTCompare_Greater = 2,
    DTCompare_Indeterminate = 3
  };

  // Kind yearZero, every field zero.
  CDateTime();
  // The given kind with every field zero, not validated.
  CDateTime(DTType type);
  // Parses an xsd:dateTime (ParseXSDDateTime).
  CDateTime(const char* text);
  // A date.
  CDateTime(short year, unsigned char month, unsigned char day);
  // A dateTime.
  CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
            unsigned char minute, unsigned char second);
  CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
            unsigned char minute, unsigned char second, unsigned short milliSecond,
            unsigned short microSecond, unsigned short nanoSecond);
  // A dateTime from the platform records or from seconds since 1970-01-01T00:00:00 UTC.
  CDateTime(const SYSTEMTIME& systemTime);
  CDateTime(const FILETIME& fileTime);
  CDateTime(std::int64_t seconds);
  CDateTime(const CDateTime& other);
  virtual ~CDateTime();

  CDateTime& operator=(const CDateTime& other);
  // These replace the value, whatever its kind, with a dateTime.
  CDateTime& operator=(std::int64_t seconds);
  CDateTime& operator=(const SYSTEMTIME& systemTime);
  CDateTime& operator=(const FILETIME& fileTime);

  // Setters: each sets its kind, zeroes the fields the kind lacks, clears the zone and validates.
  // A value that already holds another kind (other than yearZero) refuses the change with
  // COvInvalidStateException.
  void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                   unsigned char minute, unsigned char second);
  void SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                   unsigned char minute, unsigned char second, unsigned short milliSecond,
                   unsigned short microSecond, unsigned short nanoSecond);
  void SetDate(short year, unsigned char month, unsigned char day);
  void SetTime(unsigned char hour, unsigned char minute, unsigned char second);
  void SetTime(unsigned char hour, unsigned char minute, unsigned char second,
               unsigned short milliSecond, unsigned short microSecond, unsigned short nanoSecond);
  // A time at 00:00:00 with the given fraction.
  void SetFracTime(unsigned short milliSecond, unsigned short microSecond,
                   unsigned short nanoSecond);
  void SetGYear(short year);
  void SetGYearMonth(short year, unsigned char month);
  void SetGMonth(unsigned char month);
  void SetGMonthDay(unsigned char month, unsigned char day);
  void SetGDay(unsigned char day);
  // Becomes `source` converted to `type`, keeping the fields `type` has and the zone. Allowed when
  // the kinds are equal, the target is yearZero, or the source holds every field of the target.
  void SetDateTime(const CDateTime& source, DTType type);

  // Zone. SetUTC gives "Z"; SetTimeZone an explicit offset (-23..23 hours, 0..59 minutes).
  void SetUTC();
  void SetTimeZone(short hour, unsigned char minute);
  // True when the value carries a zone, "Z" or an offset.
  bool IsUTC() const;
  // True when the value carries an explicit offset.
  bool HasTimeZone() const;
  short GetZoneHour() const;
  unsigned char GetZoneMinute() const;

  // Field getters; each throws COvInvalidStateException for a kind without the field.
  short GetYear() const;
  unsigned char GetMonth() const;
  unsigned char GetDay() const;
  unsigned char GetHour() const;
  unsigned char GetMinute() const;
  unsigned char GetSecond() const;
  unsigned short GetMilliSecond() const;
  unsigned short GetMicroSecond() const;
  unsigned short GetNanoSecond() const;
  // Seconds with the fraction: second + milli/1e3 + micro/1e6 + nano/1e9.
  double GetRealSecond() const;
  // Days before the month plus the day, plus one in a leap year for January and February.
  unsigned short GetDayOfYear() const;
  // (day of year + 365*y - y%400 + y%4) % 7, with C remainders on the signed year.
  unsigned char GetDayOfWeek() const;

  DTType GetType() const;
  std::string GetTypeAsString() const;
  // The enumerator's name of `type`; empty for a number above 8.
  static std::string GetTypeAsString(DTType type);

  // Lexical forms. ParseXSDDate takes the kind from the text (date, gYear, gYearMonth, gMonth,
  // gMonthDay or gDay).
  void ParseXSDDateTime(const char* text);
  void ParseXSDDate(const char* text);
  void ParseXSDTime(const char* text);
  // ToString("s").
  std::string ToString() const;
  // "s" gives the lexical form of the value's kind; null, "" and "G" give ""; any other format
  // gives "Unknown Format: " and the format. Throws "Date Not Set" for an unset value.
  std::string ToString(const char* format) const;

  // The XML Schema order relation. Values with an offset are first moved to UTC; when only one
  // side has a zone the other is tried at +14:00 and -14:00 and the result may be indeterminate.
  DTCompareResult CompareTo(const CDateTime& other) const;
  bool operator==(const CDateTime& other) const;
  bool operator!=(const CDateTime& other) const;
  bool operator<(const CDateTime& other) const;
  bool operator<=(const CDateTime& other) const;
  bool operator>(const CDateTime& other) const;
  bool operator>=(const CDateTime& other) const;
  // A copy moved to UTC (zone +00:00) when the value has an offset; otherwise an unchanged copy.
  CDateTime GetNormalized() const;

  // Duration arithmetic. The zone is kept.
  CDateTime operator+(const CDateTimeSpan& span) const;
  CDateTime operator-(const CDateTimeSpan& span) const;
  CDateTime& operator+=(const CDateTimeSpan& span);
  CDateTime& operator-=(const CDateTimeSpan& span);
  // Always a zero, positive duration: the difference of two dates is not computed.
  CDateTimeSpan operator-(const CDateTime& other) const;

  // Seconds since 1970-01-01T00:00:00 UTC of a dateTime or date taken as UTC (fraction and zone
  // ignored).
  std::int64_t GetTime() const;
  // A dateTime as the platform record; the day of week is that of the calendar.
  SYSTEMTIME GetAsSystemTime() const;
  // The current local time as a dateTime with milliseconds and no zone.
  static CDateTime GetTickCount();

 private:
  // The one setter behind all public ones: kind check, store, validate.
  void SetDateTime(DTType type, short year, unsigned char month, unsigned char day,
                   unsigned char hour, unsigned char minute, unsigned char second,
                   unsigned short milliSecond, unsigned short microSecond,
                   unsigned short nanoSecond);
  void SetFromSystemTime(const SYSTEMTIME& systemTime);
  void SetFromSeconds(std::int64_t seconds);
  void Clear();
  void Validate() const;
  void SetXSDDate(const char* text, std::size_t length);
  void SetXSDTime(const char* text);
  void SetZone(const char* text, std::size_t length);
  // Adds the span (subtracts it when `subtract`); the zone is kept.
  void AddDateTimeSpan(const CDateTimeSpan& span, bool subtract);
  void RequireKind(unsigned kinds, const char* getter) const;

  // Calendar arithmetic and comparison, which work on widened copies of the fields.
  friend struct detail::CDateTimeAccess;

  DTType m_type;
  std::uint8_t m_status;
  std::int16_t m_year;
  std::uint8_t m_month;
  std::uint8_t m_day;
  std::uint8_t m_hour;
  std::uint8_t m_minute;
  std::uint8_t m_second;
  std::uint16_t m_milliSecond;
  std::uint16_t m_microSecond;
  std::uint16_t m_nanoSecond;
  bool m_zoneInUse;
  bool m_hasOffset;
  std::int16_t m_zoneHour;
  std::uint8_t m_zoneMinute;
};

}  // namespace OvXmlLib6

// CDateTime's arithmetic returns and takes durations; bring in their definition for callers.
#include "OvXmlLib6/types/DateTimeSpan.h"

#endif  // OVXMLLIB6_TYPES_DATETIME_H
