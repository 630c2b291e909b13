// CDateTime's lexical forms: the parsers of xsd:dateTime, the date-like kinds and xsd:time, and
// the printer. Both work on the characters directly (no C library scanning, no locale), read
// nothing past the terminating zero, and allocate nothing but the result and error messages.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/DateTime.h"
#include "types/DateCalc.h"

#include <cstring>

namespace OvXmlLib6 {

using detail::IsDigit;

namespace {

[[noreturn]] void ThrowValue(const std::string& message) {
  throw COvInvalidValueException(message);
}

// The value of two digits at `p`, or -1 when either is not a digit. The first character is tested
// before the second is read, so a terminating zero stops the read.
int TwoDigits(const char* p) {
  if (!IsDigit(p[0]) || !IsDigit(p[1])) return -1;
  return (p[0] - '0') * 10 + (p[1] - '0');
}

}  // namespace

void CDateTime::ParseXSDDate(const char* text) {
  Clear();
  if (text == nullptr) ThrowValue("Invalid Date (Null String)");
  SetXSDDate(text, std::strlen(text));
  Validate();
}

void CDateTime::ParseXSDTime(const char* text) {
  Clear();
  if (text == nullptr) ThrowValue("Invalid Time (Null String)");
  SetXSDTime(text);
  m_type = time;
  Validate();
}

void CDateTime::ParseXSDDateTime(const char* text) {
  Clear();
  if (text == nullptr) ThrowValue("Invalid DateTime (Null String)");
  const char* t = std::strchr(text, 'T');
  if (t == nullptr) ThrowValue(FormatString("Invalid XSD DateTime [%s]", text));
  // The part before the first "T" is read as any date-like value, which must turn out a date.
  SetXSDDate(text, static_cast<std::size_t>(t - text));
  Validate();
  if (m_type != date) {
    ThrowValue(FormatString("Invalid XSD DateTime [%s] expected CCYY-MM-DDThh:mm:ss[.ff]", text));
  }
  SetXSDTime(t + 1);
  m_type = dateTime;
  Validate();
}

// Reads `length` characters (no terminating zero needed): the kind comes from the shape alone.
void CDateTime::SetXSDDate(const char* s, std::size_t length) {
  if (length == 0) ThrowValue("Invalid Date (Empty String)");
  if (std::memchr(s, 'T', length) != nullptr) ThrowValue("Invalid Date ('T' not allowed)");
  auto shapeError = [s, length]() {
    ThrowValue(FormatString("Invalid XSD Date [%s] expected CCYY-MM-DD[Z|[+|-]hh:mm]",
                            std::string(s, length).c_str()));
  };

  // Zone: a final "Z", or else the last six characters when there is a ":" anywhere.
  const bool hasColon = std::memchr(s, ':', length) != nullptr;
  std::size_t body = length;
  if (s[length - 1] == 'Z') {
    if (hasColon) ThrowValue("Invalid Date (Bad Zone value)");
    body = length - 1;
  } else if (hasColon) {
    if (length < 6) shapeError();
    body = length - 6;
  }

  // Only characters of the body are examined here; TwoDigits never reads past it because each
  // shape is matched on its exact length first.
  DTType type = yearZero;
  int year = 0;
  int month = 0;
  int day = 0;
  if (body >= 2 && s[0] == '-' && s[1] == '-') {
    if (body == 4) {  // --MM
      type = gMonth;
      month = TwoDigits(s + 2);
    } else if (body == 6 && s[4] == '-' && s[5] == '-') {  // --MM--, the older gMonth form
      type = gMonth;
      month = TwoDigits(s + 2);
    } else if (body == 7 && s[4] == '-') {  // --MM-DD
      type = gMonthDay;
      month = TwoDigits(s + 2);
      day = TwoDigits(s + 5);
    } else if (body == 5 && s[2] == '-') {  // ---DD
      type = gDay;
      day = TwoDigits(s + 3);
    } else {
      shapeError();
    }
  } else {
    const bool negative = body >= 1 && s[0] == '-';
    const char* p = negative ? s + 1 : s;
    const std::size_t rest = negative ? body - 1 : body;
    const int high = rest >= 4 ? TwoDigits(p) : -1;
    const int low = rest >= 4 ? TwoDigits(p + 2) : -1;
    if (high < 0 || low < 0) shapeError();
    year = high * 100 + low;
    if (negative) year = -year;
    if (rest == 4) {  // CCYY
      type = gYear;
    } else if (rest == 7 && p[4] == '-') {  // CCYY-MM
      type = gYearMonth;
      month = TwoDigits(p + 5);
    } else if (rest == 10 && p[4] == '-' && p[7] == '-') {  // CCYY-MM-DD
      type = date;
      month = TwoDigits(p + 5);
      day = TwoDigits(p + 8);
    } else {
      shapeError();
    }
  }
  if (month < 0 || day < 0) shapeError();

  m_type = type;
  m_status = 0;
  m_year = static_cast<std::int16_t>(year);
  m_month = static_cast<std::uint8_t>(month);
  m_day = static_cast<std::uint8_t>(day);
  if (body != length) SetZone(s + body, length - body);
}

// Reads hh:mm:ss[.fffffffff] and hands what follows to the zone parser.
void CDateTime::SetXSDTime(const char* s) {
  if (s[0] == '\0') ThrowValue("Invalid XSD Time (Empty String)");
  const int hour = TwoDigits(s);
  const int minute = hour >= 0 && s[2] == ':' ? TwoDigits(s + 3) : -1;
  const int second = minute >= 0 && s[5] == ':' ? TwoDigits(s + 6) : -1;
  if (second < 0 || hour >= 24 || minute >= 60 || second >= 60) {
    ThrowValue(FormatString("Invalid XSD Time [%s] expected hh:mm:ss[.ff]", s));
  }
  m_hour = static_cast<std::uint8_t>(hour);
  m_minute = static_cast<std::uint8_t>(minute);
  m_second = static_cast<std::uint8_t>(second);
  m_milliSecond = 0;
  m_microSecond = 0;
  m_nanoSecond = 0;

  const char* p = s + 8;
  if (*p == '.') {
    ++p;
    // Digits 1-3 are the milliseconds, 4-6 the microseconds, 7-9 the nanoseconds.
    static const std::uint16_t kWeight[3] = {100, 10, 1};
    std::uint16_t* const groups[3] = {&m_milliSecond, &m_microSecond, &m_nanoSecond};
    int count = 0;
    for (; IsDigit(*p); ++p, ++count) {
      if (count == 9) ThrowValue(FormatString("Invalid XSD Time [%s] Fraction part too long", s));
      *groups[count / 3] += static_cast<std::uint16_t>((*p - '0') * kWeight[count % 3]);
    }
  }
  SetZone(p, std::strlen(p));
}

// "Z", or [+|-]hh:mm. Text that starts with anything else is ignored.
void CDateTime::SetZone(const char* z, std::size_t length) {
  if (length == 0) return;
  if (z[0] == 'Z') {
    SetUTC();
    return;
  }
  if (z[0] != '+' && z[0] != '-') return;
  int hour = length == 6 && z[3] == ':' ? TwoDigits(z + 1) : -1;
  const int minute = hour >= 0 ? TwoDigits(z + 4) : -1;
  if (minute < 0) {
    ThrowValue(FormatString("Invalid XSD Time Zone [%s]", std::string(z, length).c_str()));
  }
  if (hour == 24) hour = 0;  // +24:30 reads as +00:30
  // The sign goes to the hour only, so -00:30 loses it.
  if (z[0] == '-') hour = -hour;
  SetTimeZone(static_cast<short>(hour), static_cast<unsigned char>(minute));
}

std::string CDateTime::ToString() const { return ToString("s"); }

std::string CDateTime::ToString(const char* format) const {
  if (m_type == yearZero ||
      (m_year == 0 && m_month == 0 && m_day == 0 && m_hour == 0 && m_minute == 0 && m_second == 0 &&
       m_milliSecond == 0 && m_microSecond == 0 && m_nanoSecond == 0)) {
    ThrowValue("Date Not Set");
  }
  if (format == nullptr || format[0] == '\0' || std::strcmp(format, "G") == 0) {
    return std::string();
  }
  if (std::strcmp(format, "s") != 0) return std::string("Unknown Format: ") + format;

  // Fields are printed zero-filled to their width but never cut, so even the fields of a value
  // whose parse failed half-way fit: at most 52 characters.
  char buffer[80];
  char* p = buffer;
  auto year = [&p, this]() {
    int value = m_year;
    if (value < 0) {
      *p++ = '-';
      value = -value;
    }
    p = detail::WriteDigits(p, static_cast<std::uint64_t>(value), 4);
  };
  auto two = [&p](unsigned value) { p = detail::WriteDigits(p, value, 2); };
  auto timeOfDay = [&p, &two, this]() {
    two(m_hour);
    *p++ = ':';
    two(m_minute);
    *p++ = ':';
    two(m_second);
    p = detail::WriteFraction(p, m_milliSecond, m_microSecond, m_nanoSecond);
  };
  switch (m_type) {
    case dateTime:
    case date:
      year();
      *p++ = '-';
      two(m_month);
      *p++ = '-';
      two(m_day);
      if (m_type == dateTime) {
        *p++ = 'T';
        timeOfDay();
      }
      break;
    case gYearMonth:
      year();
      *p++ = '-';
      two(m_month);
      break;
    case gYear:
      year();
      break;
    case time:
      timeOfDay();
      break;
    case gDay:
      *p++ = '-';
      *p++ = '-';
      *p++ = '-';
      two(m_day);
      break;
    case gMonth:
      *p++ = '-';
      *p++ = '-';
      two(m_month);
      break;
    case gMonthDay:
      *p++ = '-';
      *p++ = '-';
      two(m_month);
      *p++ = '-';
      two(m_day);
      break;
    default:
      break;
  }
  if (m_zoneInUse) {
    if (!m_hasOffset) {
      *p++ = 'Z';
    } else {
      int hour = m_zoneHour;
      *p++ = hour < 0 ? '-' : '+';
      if (hour < 0) hour = -hour;
      two(static_cast<unsigned>(hour));
      *p++ = ':';
      two(m_zoneMinute);
    }
  }
  return std::string(buffer, static_cast<std::size_t>(p - buffer));
}

}  // namespace OvXmlLib6
