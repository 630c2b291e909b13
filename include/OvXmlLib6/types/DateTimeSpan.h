// CDateTimeSpan: one XML Schema duration. A sign and separate counts of years, months, days,
// hours, minutes, seconds and fractions down to nanoseconds; the counts are never carried into
// each other (90 minutes stay 90 minutes). It parses and prints the lexical form and compares by
// the XML Schema order relation; the arithmetic with dates is on CDateTime.
#ifndef OVXMLLIB6_TYPES_DATETIMESPAN_H
#define OVXMLLIB6_TYPES_DATETIMESPAN_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/types/DateTime.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CDateTimeSpan {
 public:
  // Every constructor and SetDateTimeSpan makes the value positive.
  CDateTimeSpan();
  CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                std::uint64_t minutes, std::uint64_t seconds);
  CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days, std::uint32_t hours,
                std::uint64_t minutes, std::uint64_t seconds, std::uint16_t milliSeconds,
                std::uint16_t microSeconds, std::uint16_t nanoSeconds);
  CDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds);
  CDateTimeSpan(const CDateTimeSpan& other);
  virtual ~CDateTimeSpan();

  CDateTimeSpan& operator=(const CDateTimeSpan& other);

  void SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days,
                       std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds);
  void SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days,
                       std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds,
                       std::uint16_t milliSeconds, std::uint16_t microSeconds,
                       std::uint16_t nanoSeconds);
  void SetDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds);

  // Plain field access: no checks, the sign untouched.
  std::uint16_t GetYears() const { return m_years; }
  std::uint32_t GetMonths() const { return m_months; }
  std::uint32_t GetDays() const { return m_days; }
  std::uint32_t GetHours() const { return m_hours; }
  std::uint64_t GetMinutes() const { return m_minutes; }
  std::uint64_t GetSeconds() const { return m_seconds; }
  std::uint16_t GetMilliSeconds() const { return m_milliSeconds; }
  std::uint16_t GetMicroSeconds() const { return m_microSeconds; }
  std::uint16_t GetNanoSeconds() const { return m_nanoSeconds; }
  void SetYears(std::uint16_t years) { m_years = years; }
  void SetMonths(std::uint32_t months) { m_months = months; }
  void SetDays(std::uint32_t days) { m_days = days; }
  void SetHours(std::uint32_t hours) { m_hours = hours; }
  void SetMinutes(std::uint64_t minutes) { m_minutes = minutes; }
  void SetSeconds(std::uint64_t seconds) { m_seconds = seconds; }
  void SetMilliSeconds(std::uint16_t milliSeconds) { m_milliSeconds = milliSeconds; }
  void SetMicroSeconds(std::uint16_t microSeconds) { m_microSeconds = microSeconds; }
  void SetNanoSeconds(std::uint16_t nanoSeconds) { m_nanoSeconds = nanoSeconds; }

  bool IsNegative() const { return m_negative; }
  // Flips the sign.
  void Negate() { m_negative = !m_negative; }
  // A copy with the sign set: a negative duration stays negative.
  CDateTimeSpan GetAsNegative() const;

  // [-]P[nY][nM][nD][T[nH][nM][n[.fffffffff]S]]. Each of the seventh to ninth fraction digits
  // replaces the nanoseconds with its own value, so only the last of them is kept.
  void ParseXSDDuration(const char* text);
  // The lexical form; a duration with every count zero prints as "P" (or "-P").
  std::string ToString() const;

  // The XML Schema order relation: both durations are added to four reference dateTimes
  // (1696-09-01, 1697-02-01, 1903-03-01, 1903-07-01 at 00:00:00Z) and the results compared; any
  // disagreement or indeterminate result makes the whole comparison indeterminate.
  CDateTime::DTCompareResult CompareTo(const CDateTimeSpan& other) const;
  bool operator==(const CDateTimeSpan& other) const;
  bool operator!=(const CDateTimeSpan& other) const;
  bool operator<(const CDateTimeSpan& other) const;
  bool operator>(const CDateTimeSpan& other) const;

 private:
  std::uint16_t m_years;
  std::uint32_t m_months;
  std::uint32_t m_days;
  std::uint32_t m_hours;
  std::uint64_t m_minutes;
  std::uint64_t m_seconds;
  std::uint16_t m_milliSeconds;
  std::uint16_t m_microSeconds;
  std::uint16_t m_nanoSeconds;
  bool m_negative;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_DATETIMESPAN_H
