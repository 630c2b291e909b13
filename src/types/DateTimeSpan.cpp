#include "OvXmlLib6/types/DateTimeSpan.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "types/DateCalc.h"

#include <cstring>

namespace OvXmlLib6 {

using detail::IsDigit;

CDateTimeSpan::CDateTimeSpan() : CDateTimeSpan(0, 0, 0, 0, 0, 0, 0, 0, 0) {}

CDateTimeSpan::CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days,
                             std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds)
    : CDateTimeSpan(years, months, days, hours, minutes, seconds, 0, 0, 0) {}

CDateTimeSpan::CDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days,
                             std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds,
                             std::uint16_t milliSeconds, std::uint16_t microSeconds,
                             std::uint16_t nanoSeconds)
    : m_years(years),
      m_months(months),
      m_days(days),
      m_hours(hours),
      m_minutes(minutes),
      m_seconds(seconds),
      m_milliSeconds(milliSeconds),
      m_microSeconds(microSeconds),
      m_nanoSeconds(nanoSeconds),
      m_negative(false) {}

CDateTimeSpan::CDateTimeSpan(std::uint32_t hours, std::uint64_t minutes, std::uint64_t seconds)
    : CDateTimeSpan(0, 0, 0, hours, minutes, seconds, 0, 0, 0) {}

CDateTimeSpan::CDateTimeSpan(const CDateTimeSpan& other) = default;

CDateTimeSpan::~CDateTimeSpan() = default;

CDateTimeSpan& CDateTimeSpan::operator=(const CDateTimeSpan& other) = default;

void CDateTimeSpan::SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days,
                                    std::uint32_t hours, std::uint64_t minutes,
                                    std::uint64_t seconds) {
  *this = CDateTimeSpan(years, months, days, hours, minutes, seconds);
}

void CDateTimeSpan::SetDateTimeSpan(std::uint16_t years, std::uint32_t months, std::uint32_t days,
                                    std::uint32_t hours, std::uint64_t minutes,
                                    std::uint64_t seconds, std::uint16_t milliSeconds,
                                    std::uint16_t microSeconds, std::uint16_t nanoSeconds) {
  *this = CDateTimeSpan(years, months, days, hours, minutes, seconds, milliSeconds, microSeconds,
                        nanoSeconds);
}

void CDateTimeSpan::SetDateTimeSpan(std::uint32_t hours, std::uint64_t minutes,
                                    std::uint64_t seconds) {
  *this = CDateTimeSpan(hours, minutes, seconds);
}

CDateTimeSpan CDateTimeSpan::GetAsNegative() const {
  CDateTimeSpan result(*this);
  result.m_negative = true;
  return result;
}

void CDateTimeSpan::ParseXSDDuration(const char* text) {
  *this = CDateTimeSpan();
  if (text == nullptr) throw COvInvalidValueException("Invalid XSD Duration (Null String)");
  if (text[0] == '\0') throw COvInvalidValueException("Invalid XSD Duration (Empty String)");
  auto formError = [text]() {
    throw COvInvalidValueException(FormatString(
        "Invalid XSD Duration [%s] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]", text));
  };

  const char* p = text;
  if (*p == '-') {
    m_negative = true;
    ++p;
  }
  if (*p != 'P') formError();
  ++p;

  // Where the designators stand; each one decides which may follow it.
  enum State {
    kStart,
    kAfterYears,
    kAfterMonths,
    kAfterDays,
    kAfterT,
    kAfterHours,
    kAfterMinutes,
    kAfterSeconds
  };
  State state = kStart;
  while (*p != '\0') {
    // The count wraps at 32 bits, as an unchecked unsigned accumulation does.
    std::uint32_t n = 0;
    for (; IsDigit(*p); ++p) n = n * 10 + static_cast<std::uint32_t>(*p - '0');
    const char designator = *p;
    if (designator == '\0') formError();  // digits with no designator
    ++p;
    switch (designator) {
      case 'Y':  // accepted in any state, even after T: a leniency kept on purpose
        m_years = static_cast<std::uint16_t>(n);
        state = kAfterYears;
        break;
      case 'M':
        if (state == kStart || state == kAfterYears) {
          m_months = n;
          state = kAfterMonths;
        } else if (state == kAfterT || state == kAfterHours) {
          m_minutes = n;
          state = kAfterMinutes;
        } else {
          formError();
        }
        break;
      case 'D':
        if (state != kStart && state != kAfterYears && state != kAfterMonths) formError();
        m_days = n;
        state = kAfterDays;
        break;
      case 'T':
        if (state > kAfterDays) formError();
        state = kAfterT;
        break;
      case 'H':
        if (state != kAfterT) formError();
        m_hours = n;
        state = kAfterHours;
        break;
      case 'S':
      case '.':
        if (state != kAfterT && state != kAfterHours && state != kAfterMinutes) formError();
        m_seconds = n;
        state = kAfterSeconds;
        if (designator == '.') {
          // Digits 1-3 build the milliseconds and 4-6 the microseconds by weight; each of digits
          // 7-9 replaces the nanoseconds with its own value (the library's defined result).
          static const std::uint16_t kWeight[3] = {100, 10, 1};
          int count = 0;
          for (; IsDigit(*p); ++p, ++count) {
            const std::uint16_t digit = static_cast<std::uint16_t>(*p - '0');
            if (count == 9) {
              throw COvInvalidValueException(
                  FormatString("Invalid XSD Duration [%s] Fraction part too long", text));
            }
            if (count < 3) {
              m_milliSeconds = static_cast<std::uint16_t>(m_milliSeconds + digit * kWeight[count]);
            } else if (count < 6) {
              m_microSeconds =
                  static_cast<std::uint16_t>(m_microSeconds + digit * kWeight[count - 3]);
            } else {
              m_nanoSeconds = digit;
            }
          }
          if (p[0] != 'S' || p[1] != '\0') formError();
          ++p;
        }
        break;
      default:
        formError();
    }
  }
  if (state == kStart || state == kAfterT) formError();
}

std::string CDateTimeSpan::ToString() const {
  // "-P", three 10-digit counts, two 20-digit counts, a fraction and the designators fit.
  char buffer[128];
  char* p = buffer;
  if (m_negative) *p++ = '-';
  *p++ = 'P';
  if (m_years != 0) {
    p = detail::WriteDigits(p, m_years, 1);
    *p++ = 'Y';
  }
  if (m_months != 0) {
    p = detail::WriteDigits(p, m_months, 1);
    *p++ = 'M';
  }
  if (m_days != 0) {
    p = detail::WriteDigits(p, m_days, 1);
    *p++ = 'D';
  }
  const bool hasFraction = m_milliSeconds != 0 || m_microSeconds != 0 || m_nanoSeconds != 0;
  if (m_hours != 0 || m_minutes != 0 || m_seconds != 0 || hasFraction) {
    *p++ = 'T';
    if (m_hours != 0) {
      p = detail::WriteDigits(p, m_hours, 1);
      *p++ = 'H';
    }
    if (m_minutes != 0) {
      p = detail::WriteDigits(p, m_minutes, 1);
      *p++ = 'M';
    }
    if (m_seconds != 0 || hasFraction) {
      p = detail::WriteDigits(p, m_seconds, 1);
      p = detail::WriteFraction(p, m_milliSeconds, m_microSeconds, m_nanoSeconds);
      *p++ = 'S';
    }
  }
  return std::string(buffer, static_cast<std::size_t>(p - buffer));
}

CDateTime::DTCompareResult CDateTimeSpan::CompareTo(const CDateTimeSpan& other) const {
  // The reference instants of the XML Schema order relation, as dateTimes at midnight UTC so that
  // equal calendar days go on to compare their times.
  static const detail::DateFields kReferences[4] = {
      {1696, 9, 1, 0, 0, 0, 0, 0, 0},
      {1697, 2, 1, 0, 0, 0, 0, 0, 0},
      {1903, 3, 1, 0, 0, 0, 0, 0, 0},
      {1903, 7, 1, 0, 0, 0, 0, 0, 0},
  };
  // The sums are made on widened fields (CDateTime's own arithmetic, without the year limit of
  // its operator+), so that durations of any length compare instead of failing.
  const unsigned bits = detail::FieldsOfKind(CDateTime::dateTime);
  CDateTime::DTCompareResult common = CDateTime::DTCompare_Equal;
  for (int i = 0; i < 4; ++i) {
    detail::DateFields a = kReferences[i];
    detail::DateFields b = kReferences[i];
    detail::AddSpan(a, bits, *this, false);
    detail::AddSpan(b, bits, other, false);
    const CDateTime::DTCompareResult result = detail::CDateTimeAccess::Compare(
        CDateTime::dateTime, a, true, CDateTime::dateTime, b, true);
    if (result == CDateTime::DTCompare_Indeterminate || (i > 0 && result != common)) {
      return CDateTime::DTCompare_Indeterminate;
    }
    common = result;
  }
  return common;
}

bool CDateTimeSpan::operator==(const CDateTimeSpan& other) const {
  return CompareTo(other) == CDateTime::DTCompare_Equal;
}

bool CDateTimeSpan::operator!=(const CDateTimeSpan& other) const {
  return CompareTo(other) != CDateTime::DTCompare_Equal;
}

bool CDateTimeSpan::operator<(const CDateTimeSpan& other) const {
  return CompareTo(other) == CDateTime::DTCompare_Less;
}

bool CDateTimeSpan::operator>(const CDateTimeSpan& other) const {
  return CompareTo(other) == CDateTime::DTCompare_Greater;
}

}  // namespace OvXmlLib6
