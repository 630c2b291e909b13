// CDateTime: construction, setters, getters, validation and the platform conversions. The
// lexical forms are in DateTimeText.cpp, the order and the duration arithmetic in
// DateTimeOrder.cpp.
#include "OvXmlLib6/types/DateTime.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "port/Time.h"
#include "types/DateCalc.h"

namespace OvXmlLib6 {

using detail::CDateTimeAccess;
using detail::DateFields;
using detail::IsKindIn;
using detail::TypeName;

namespace {

using detail::kMaxYear;
using detail::kMinYear;

long long L(std::int64_t value) { return static_cast<long long>(value); }

[[noreturn]] void ThrowValue(const std::string& message) {
  throw COvInvalidValueException(message);
}

// The first time field out of its range (or present in a kind without time), with its message.
[[noreturn]] void ThrowTimeFieldError(bool hasTime, const DateFields& f, const char* name) {
  struct TimeField {
    std::int64_t value;
    std::int64_t max;
    const char* rangeFormat;
    const char* kindFormat;
  };
  const TimeField timeFields[] = {
      {f.hour, 23, "Invalid Hour [%lld] (0 <= hour <= 23)", "Invalid Hour [%lld] for type %s"},
      {f.minute, 59, "Invalid Minute [%lld] (0 <= minute <= 59)",
       "Invalid Minute [%lld] for type %s"},
      {f.second, 59, "Invalid Second [%lld] (0 <= second <= 59)",
       "Invalid Second [%lld] for type %s"},
      {f.milliSecond, 999, "Invalid Milli-Second [%lld] (0 <= milli <= 999)",
       "Invalid Milli-Second [%lld] for type %s"},
      {f.microSecond, 999, "Invalid Micro-Second [%lld] (0 <= micro <= 999)",
       "Invalid Micro-Second [%lld] for type %s"},
      {f.nanoSecond, 999, "Invalid Nano-Second [%lld] (0 <= nano <= 999)",
       "Invalid Nano-Second [%lld] for type %s"},
  };
  for (const TimeField& field : timeFields) {
    if (hasTime && field.value > field.max) {
      ThrowValue(FormatString(field.rangeFormat, L(field.value)));
    }
    if (!hasTime && field.value != 0) {
      ThrowValue(FormatString(field.kindFormat, L(field.value), name));
    }
  }
  ThrowValue("Invalid time");  // not reached: the caller found a field in error
}

}  // namespace

namespace detail {

void ThrowYearRange(std::int64_t year) {
  ThrowValue(FormatString("Invalid Year [%lld] (%d <= year <= %d && year != 0)", L(year), kMaxYear,
                          kMinYear));
}

void RequireKind(CDateTime::DTType type, unsigned kinds, const char* getter) {
  if (!IsKindIn(type, kinds)) {
    throw COvInvalidStateException(
        FormatString("Failed to %s. Invalid Date Type: %s.", getter, TypeName(type)));
  }
}

const char* TypeName(CDateTime::DTType type) {
  static const char* const kNames[9] = {"yearZero", "dateTime", "date",   "gYearMonth", "gYear",
                                        "time",     "gDay",     "gMonth", "gMonthDay"};
  const unsigned number = static_cast<unsigned>(type);
  return number <= 8 ? kNames[number] : "";
}

DateFields CDateTimeAccess::Fields(const CDateTime& v) {
  return DateFields{v.m_year,   v.m_month,       v.m_day,         v.m_hour,      v.m_minute,
                    v.m_second, v.m_milliSecond, v.m_microSecond, v.m_nanoSecond};
}

void CDateTimeAccess::ValidateFields(CDateTime::DTType type, const DateFields& f) {
  if (type == CDateTime::yearZero) ThrowValue("Invalid Year Zero");
  const char* name = TypeName(type);

  if (IsKindIn(type, kMonthKinds)) {
    if (f.month < 1 || f.month > 12) {
      ThrowValue(FormatString("Invalid Month [%lld] (1 <= month <= 12)", L(f.month)));
    }
  } else if (f.month != 0) {
    ThrowValue(FormatString("Invalid Month [%lld] for type %s", L(f.month), name));
  }

  if (IsKindIn(type, kYearKinds)) {
    if (f.year == 0 || f.year > kMaxYear || f.year < kMinYear) detail::ThrowYearRange(f.year);
  } else if (f.year != 0) {
    ThrowValue(FormatString("Invalid Year [%lld] for type %s", L(f.year), name));
  }

  if (IsKindIn(type, kCalendarKinds)) {
    if (f.day < 1 || f.day > MaxDayInMonth(f.year, f.month)) {
      // The missing closing parenthesis is the library's own text.
      ThrowValue(FormatString("Invalid Day [%lld] (1 <= day <= days in month", L(f.day)));
    }
  } else if (type == CDateTime::gMonthDay) {
    if (f.day < 1 || f.day > DaysInMonthTable(f.month)) {
      ThrowValue(FormatString("Invalid Day [%lld] (1 <= day <= days in month)", L(f.day)));
    }
  } else if (type == CDateTime::gDay) {
    // The upper test is made on the month, which a gDay does not have (0): only day >= 1 is
    // enforced, a leniency kept on purpose.
    if (f.day < 1 || f.month > 31) {
      ThrowValue(FormatString("Invalid Day [%lld] (1 <= day <= 31)", L(f.day)));
    }
  } else if (f.day != 0) {
    ThrowValue(FormatString("Invalid Day [%lld] for type %s", L(f.day), name));
  }

  const bool hasTime = IsKindIn(type, kTimeKinds);
  if (hasTime ? (f.hour > 23 || f.minute > 59 || f.second > 59 || f.milliSecond > 999 ||
                 f.microSecond > 999 || f.nanoSecond > 999)
              : (f.hour != 0 || f.minute != 0 || f.second != 0 || f.milliSecond != 0 ||
                 f.microSecond != 0 || f.nanoSecond != 0)) {
    ThrowTimeFieldError(hasTime, f, name);
  }
}

void CDateTimeAccess::Store(CDateTime& v, CDateTime::DTType type, const DateFields& f) {
  v.m_type = type;
  v.m_status = 0;
  v.m_year = static_cast<std::int16_t>(f.year);
  v.m_month = static_cast<std::uint8_t>(f.month);
  v.m_day = static_cast<std::uint8_t>(f.day);
  v.m_hour = static_cast<std::uint8_t>(f.hour);
  v.m_minute = static_cast<std::uint8_t>(f.minute);
  v.m_second = static_cast<std::uint8_t>(f.second);
  v.m_milliSecond = static_cast<std::uint16_t>(f.milliSecond);
  v.m_microSecond = static_cast<std::uint16_t>(f.microSecond);
  v.m_nanoSecond = static_cast<std::uint16_t>(f.nanoSecond);
  v.m_zoneInUse = false;
  v.m_hasOffset = false;
  v.m_zoneHour = 0;
  v.m_zoneMinute = 0;
}

}  // namespace detail

// ---- construction ----

CDateTime::CDateTime() : CDateTime(yearZero) {}

CDateTime::CDateTime(DTType type)
    : m_type(type),
      m_status(0),
      m_year(0),
      m_month(0),
      m_day(0),
      m_hour(0),
      m_minute(0),
      m_second(0),
      m_milliSecond(0),
      m_microSecond(0),
      m_nanoSecond(0),
      m_zoneInUse(false),
      m_hasOffset(false),
      m_zoneHour(0),
      m_zoneMinute(0) {}

CDateTime::CDateTime(const char* text) : CDateTime() { ParseXSDDateTime(text); }

CDateTime::CDateTime(short year, unsigned char month, unsigned char day) : CDateTime() {
  SetDate(year, month, day);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second)
    : CDateTime() {
  SetDateTime(year, month, day, hour, minute, second);
}

CDateTime::CDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                     unsigned char minute, unsigned char second, unsigned short milliSecond,
                     unsigned short microSecond, unsigned short nanoSecond)
    : CDateTime() {
  SetDateTime(year, month, day, hour, minute, second, milliSecond, microSecond, nanoSecond);
}

CDateTime::CDateTime(const SYSTEMTIME& systemTime) : CDateTime() { SetFromSystemTime(systemTime); }

CDateTime::CDateTime(const FILETIME& fileTime) : CDateTime() { *this = fileTime; }

CDateTime::CDateTime(std::int64_t seconds) : CDateTime() { SetFromSeconds(seconds); }

CDateTime::CDateTime(const CDateTime& other) = default;

CDateTime::~CDateTime() = default;

CDateTime& CDateTime::operator=(const CDateTime& other) = default;

CDateTime& CDateTime::operator=(std::int64_t seconds) {
  SetFromSeconds(seconds);
  return *this;
}

CDateTime& CDateTime::operator=(const SYSTEMTIME& systemTime) {
  SetFromSystemTime(systemTime);
  return *this;
}

CDateTime& CDateTime::operator=(const FILETIME& fileTime) {
  SYSTEMTIME systemTime{};
  if (!port::FileTimeToSystemTime(fileTime, systemTime)) {
    ThrowValue("Failed to convert FILETIME to SYSTEMTIME");
  }
  SetFromSystemTime(systemTime);
  return *this;
}

void CDateTime::SetFromSystemTime(const SYSTEMTIME& st) {
  // The day of week is ignored. The 16-bit fields are checked before they are narrowed.
  const DateFields fields{st.wYear,   st.wMonth,        st.wDay, st.wHour, st.wMinute,
                          st.wSecond, st.wMilliseconds, 0,       0};
  CDateTimeAccess::ValidateFields(dateTime, fields);
  CDateTimeAccess::Store(*this, dateTime, fields);
}

void CDateTime::SetFromSeconds(std::int64_t seconds) {
  const port::CCivilTime civil = port::CivilFromUtcSeconds(seconds);
  const DateFields fields{civil.year,   civil.month, civil.day, civil.hour, civil.minute,
                          civil.second, 0,           0,         0};
  CDateTimeAccess::ValidateFields(dateTime, fields);
  CDateTimeAccess::Store(*this, dateTime, fields);
}

void CDateTime::Clear() { *this = CDateTime(yearZero); }

// ---- setters ----

void CDateTime::SetDateTime(DTType type, short year, unsigned char month, unsigned char day,
                            unsigned char hour, unsigned char minute, unsigned char second,
                            unsigned short milliSecond, unsigned short microSecond,
                            unsigned short nanoSecond) {
  if (m_type != yearZero && m_type != type) {
    throw COvInvalidStateException(
        FormatString("Failed to copy CDateTime. Invalid Date Type: %s, expected: %s.",
                     TypeName(type), TypeName(m_type)));
  }
  CDateTimeAccess::Store(
      *this, type,
      DateFields{year, month, day, hour, minute, second, milliSecond, microSecond, nanoSecond});
  Validate();
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second) {
  SetDateTime(dateTime, year, month, day, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetDateTime(short year, unsigned char month, unsigned char day, unsigned char hour,
                            unsigned char minute, unsigned char second, unsigned short milliSecond,
                            unsigned short microSecond, unsigned short nanoSecond) {
  SetDateTime(dateTime, year, month, day, hour, minute, second, milliSecond, microSecond,
              nanoSecond);
}

void CDateTime::SetDate(short year, unsigned char month, unsigned char day) {
  SetDateTime(date, year, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second) {
  SetDateTime(time, 0, 0, 0, hour, minute, second, 0, 0, 0);
}

void CDateTime::SetTime(unsigned char hour, unsigned char minute, unsigned char second,
                        unsigned short milliSecond, unsigned short microSecond,
                        unsigned short nanoSecond) {
  SetDateTime(time, 0, 0, 0, hour, minute, second, milliSecond, microSecond, nanoSecond);
}

void CDateTime::SetFracTime(unsigned short milliSecond, unsigned short microSecond,
                            unsigned short nanoSecond) {
  SetDateTime(time, 0, 0, 0, 0, 0, 0, milliSecond, microSecond, nanoSecond);
}

void CDateTime::SetGYear(short year) { SetDateTime(gYear, year, 0, 0, 0, 0, 0, 0, 0, 0); }

void CDateTime::SetGYearMonth(short year, unsigned char month) {
  SetDateTime(gYearMonth, year, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonth(unsigned char month) {
  SetDateTime(gMonth, 0, month, 0, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGMonthDay(unsigned char month, unsigned char day) {
  SetDateTime(gMonthDay, 0, month, day, 0, 0, 0, 0, 0, 0);
}

void CDateTime::SetGDay(unsigned char day) { SetDateTime(gDay, 0, 0, day, 0, 0, 0, 0, 0, 0); }

void CDateTime::SetDateTime(const CDateTime& source, DTType type) {
  const DTType from = source.m_type;
  if (static_cast<unsigned>(from) > 8) {
    ThrowValue(FormatString("Unknown date type %d.", static_cast<int>(from)));
  }
  if (static_cast<unsigned>(type) > 8) {
    ThrowValue(FormatString("Unknown date type %d.", static_cast<int>(type)));
  }
  bool allowed = from == type || type == yearZero || from == dateTime;
  if (from == date) {
    allowed = allowed || type == gYear || type == gYearMonth || type == gMonth ||
              type == gMonthDay || type == gDay;
  } else if (from == gYearMonth) {
    allowed = allowed || type == gYear || type == gMonth;
  } else if (from == gMonthDay) {
    allowed = allowed || type == gMonth || type == gDay;
  }
  if (!allowed) {
    ThrowValue(FormatString(
        "Attempting to set a CDateTime of type %s using an XmlDateTime of type %s. The source "
        "CDateTime does not contian enough data to allow the conversion.",
        TypeName(type), TypeName(from)));
  }
  const unsigned bits = detail::FieldsOfKind(type);
  DateFields fields = CDateTimeAccess::Fields(source);
  if ((bits & detail::kHasYear) == 0) fields.year = 0;
  if ((bits & detail::kHasMonth) == 0) fields.month = 0;
  if ((bits & detail::kHasDay) == 0) fields.day = 0;
  if ((bits & detail::kHasTime) == 0) {
    fields.hour = fields.minute = fields.second = 0;
    fields.milliSecond = fields.microSecond = fields.nanoSecond = 0;
  }
  // `source` may be this very object: take its zone before the store clears it.
  const bool zoneInUse = source.m_zoneInUse;
  const bool hasOffset = source.m_hasOffset;
  const std::int16_t zoneHour = source.m_zoneHour;
  const std::uint8_t zoneMinute = source.m_zoneMinute;
  CDateTimeAccess::Store(*this, type, fields);
  m_zoneInUse = zoneInUse;
  m_hasOffset = hasOffset;
  m_zoneHour = zoneHour;
  m_zoneMinute = zoneMinute;
}

// ---- zone ----

void CDateTime::SetUTC() {
  m_status = 0;
  m_zoneInUse = true;
  m_hasOffset = false;
  m_zoneHour = 0;
  m_zoneMinute = 0;
}

void CDateTime::SetTimeZone(short hour, unsigned char minute) {
  if (hour < -23 || hour > 23 || minute > 59) {
    ThrowValue(FormatString("Invalid TimeZone [%d:%d]", hour, minute));
  }
  m_status = 0;
  m_zoneInUse = true;
  m_hasOffset = true;
  m_zoneHour = hour;
  m_zoneMinute = minute;
}

bool CDateTime::IsUTC() const { return m_zoneInUse; }

bool CDateTime::HasTimeZone() const { return m_hasOffset; }

short CDateTime::GetZoneHour() const {
  if (!m_hasOffset) throw COvInvalidStateException("TimeZone is not been used");
  return m_zoneHour;
}

unsigned char CDateTime::GetZoneMinute() const {
  if (!m_hasOffset) throw COvInvalidStateException("TimeZone is not been used");
  return m_zoneMinute;
}

// ---- getters ----

void CDateTime::RequireKind(unsigned kinds, const char* getter) const {
  detail::RequireKind(m_type, kinds, getter);
}

short CDateTime::GetYear() const {
  RequireKind(detail::kYearKinds, "GetYear");
  return m_year;
}

unsigned char CDateTime::GetMonth() const {
  RequireKind(detail::kMonthKinds, "GetMonth");
  return m_month;
}

unsigned char CDateTime::GetDay() const {
  RequireKind(detail::kDayKinds, "GetDay");
  return m_day;
}

unsigned char CDateTime::GetHour() const {
  RequireKind(detail::kTimeKinds, "GetHour");
  return m_hour;
}

unsigned char CDateTime::GetMinute() const {
  RequireKind(detail::kTimeKinds, "GetMinute");
  return m_minute;
}

unsigned char CDateTime::GetSecond() const {
  RequireKind(detail::kTimeKinds, "GetSecond");
  return m_second;
}

unsigned short CDateTime::GetMilliSecond() const {
  RequireKind(detail::kTimeKinds, "GetMilliSecond");
  return m_milliSecond;
}

unsigned short CDateTime::GetMicroSecond() const {
  RequireKind(detail::kTimeKinds, "GetMicroSecond");
  return m_microSecond;
}

unsigned short CDateTime::GetNanoSecond() const {
  RequireKind(detail::kTimeKinds, "GetNanoSecond");
  return m_nanoSecond;
}

double CDateTime::GetRealSecond() const {
  RequireKind(detail::kTimeKinds, "GetRealSecond");
  return m_second + m_milliSecond / 1e3 + m_microSecond / 1e6 + m_nanoSecond / 1e9;
}

unsigned short CDateTime::GetDayOfYear() const {
  RequireKind(detail::kCalendarKinds, "GetDayOfYear");
  // The leap day is counted for January and February rather than from March on; this is the
  // library's defined result and GetDayOfWeek builds on it.
  const int leap = detail::IsLeapYear(m_year) && m_month <= 2 ? 1 : 0;
  return static_cast<unsigned short>(detail::DaysBeforeMonth(m_month) + m_day + leap);
}

unsigned char CDateTime::GetDayOfWeek() const {
  RequireKind(detail::kCalendarKinds, "GetDayOfWeek");
  const int y = m_year;
  const int d = GetDayOfYear() + 365 * y - (y % 400) + (y % 4);
  // A negative year gives a negative remainder, which wraps in the unsigned result.
  return static_cast<unsigned char>(d % 7);
}

CDateTime::DTType CDateTime::GetType() const { return m_type; }

std::string CDateTime::GetTypeAsString() const { return TypeName(m_type); }

std::string CDateTime::GetTypeAsString(DTType type) { return TypeName(type); }

void CDateTime::Validate() const {
  CDateTimeAccess::ValidateFields(m_type, CDateTimeAccess::Fields(*this));
}

// ---- platform ----

std::int64_t CDateTime::GetTime() const {
  if (!IsKindIn(m_type, detail::kCalendarKinds)) {
    throw COvInvalidStateException(FormatString(
        "Failed to GetTime, Date Status must be dateTime or date. Invalid Date Type: %s.",
        TypeName(m_type)));
  }
  // A date counts from midnight; its time fields are zero.
  return port::UtcSecondsFromCivil(m_year, m_month, m_day, m_hour, m_minute, m_second);
}

SYSTEMTIME CDateTime::GetAsSystemTime() const {
  if (m_type != dateTime) {
    throw COvInvalidStateException(FormatString(
        "Failed to GetAsSystemTime, Date Status must be dateTime. Invalid Date Type: %s.",
        TypeName(m_type)));
  }
  SYSTEMTIME out{};
  // The record's year is unsigned: a year before 1 comes out wrapped, as a WORD would hold it.
  out.wYear = static_cast<std::uint16_t>(m_year);
  out.wMonth = m_month;
  out.wDayOfWeek = static_cast<std::uint16_t>(port::CivilFromUtcSeconds(GetTime()).dayOfWeek);
  out.wDay = m_day;
  out.wHour = m_hour;
  out.wMinute = m_minute;
  out.wSecond = m_second;
  out.wMilliseconds = m_milliSecond;
  return out;
}

CDateTime CDateTime::GetTickCount() {
  const port::CCivilTime now = port::LocalNow();
  const DateFields fields{now.year,   now.month,       now.day, now.hour, now.minute,
                          now.second, now.milliSecond, 0,       0};
  CDateTimeAccess::ValidateFields(dateTime, fields);
  CDateTime result;
  CDateTimeAccess::Store(result, dateTime, fields);
  return result;
}

}  // namespace OvXmlLib6
