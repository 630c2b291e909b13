#include "types/DateCalc.h"

#include "OvXmlLib6/types/DateTimeSpan.h"

namespace OvXmlLib6 {
namespace detail {

namespace {

constexpr int kDaysInMonth[12] = {31, 29, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
constexpr int kDaysBeforeMonth[12] = {0, 31, 59, 90, 120, 151, 181, 212, 243, 273, 304, 334};
// The leap rule repeats every 400 years, and 400 years hold exactly this many days.
constexpr std::int64_t kDaysPer400Years = 146097;

// A 64-bit count as a signed value; callers pass counts well below 2^63.
std::int64_t Signed(std::uint64_t value) { return static_cast<std::int64_t>(value); }

}  // namespace

unsigned FieldsOfKind(CDateTime::DTType type) {
  switch (type) {
    case CDateTime::dateTime:
      return kHasYear | kHasMonth | kHasDay | kHasTime;
    case CDateTime::date:
      return kHasYear | kHasMonth | kHasDay;
    case CDateTime::gYearMonth:
      return kHasYear | kHasMonth;
    case CDateTime::gYear:
      return kHasYear;
    case CDateTime::time:
      return kHasTime;
    case CDateTime::gDay:
      return kHasDay;
    case CDateTime::gMonth:
      return kHasMonth;
    case CDateTime::gMonthDay:
      return kHasMonth | kHasDay;
    default:
      return 0;
  }
}

int DaysInMonthTable(std::int64_t month) {
  return month >= 1 && month <= 12 ? kDaysInMonth[month - 1] : 0;
}

int DaysBeforeMonth(std::int64_t month) {
  return month >= 1 && month <= 12 ? kDaysBeforeMonth[month - 1] : 0;
}

int MaxDayInMonth(std::int64_t year, std::int64_t month) {
  if (month == 2 && !IsLeapYear(year)) return 28;
  return DaysInMonthTable(month);
}

std::int64_t FloorDiv(std::int64_t a, std::int64_t b) {
  const std::int64_t q = a / b;
  return (a % b != 0 && (a < 0) != (b < 0)) ? q - 1 : q;
}

std::int64_t FloorMod(std::int64_t a, std::int64_t b) { return a - FloorDiv(a, b) * b; }

void AddSpan(DateFields& fields, unsigned fieldBits, const CDateTimeSpan& span, bool subtract) {
  const std::int64_t sign = span.IsNegative() != subtract ? -1 : 1;

  // Months first, carrying into the year. A kind with a year but no month counts from January,
  // so twelve months still make a year.
  if ((fieldBits & (kHasYear | kHasMonth)) != 0) {
    const std::int64_t month = (fieldBits & kHasMonth) != 0 ? fields.month : 1;
    const std::int64_t m = month + sign * span.GetMonths();
    if ((fieldBits & kHasMonth) != 0) fields.month = FloorMod(m - 1, 12) + 1;
    if ((fieldBits & kHasYear) != 0) fields.year += sign * span.GetYears() + FloorDiv(m - 1, 12);
  }

  // The time of day from the nanoseconds up, each field keeping its floor-modulo and carrying the
  // floor-quotient. The 64-bit minute and second counts are split by 60 before they are added, so
  // every sum stays far inside the signed 64-bit range.
  std::int64_t t = fields.nanoSecond + sign * span.GetNanoSeconds();
  const std::int64_t nano = FloorMod(t, 1000);
  std::int64_t carry = FloorDiv(t, 1000);
  t = fields.microSecond + sign * span.GetMicroSeconds() + carry;
  const std::int64_t micro = FloorMod(t, 1000);
  carry = FloorDiv(t, 1000);
  t = fields.milliSecond + sign * span.GetMilliSeconds() + carry;
  const std::int64_t milli = FloorMod(t, 1000);
  carry = FloorDiv(t, 1000);
  const std::uint64_t spanSeconds = span.GetSeconds();
  t = fields.second + sign * Signed(spanSeconds % 60) + carry;
  const std::int64_t second = FloorMod(t, 60);
  carry = FloorDiv(t, 60);
  const std::uint64_t spanMinutes = span.GetMinutes();
  const std::uint64_t minutesOfSeconds = spanSeconds / 60;
  t = fields.minute + sign * Signed(spanMinutes % 60 + minutesOfSeconds % 60) + carry;
  const std::int64_t minute = FloorMod(t, 60);
  carry = FloorDiv(t, 60) + sign * Signed(spanMinutes / 60 + minutesOfSeconds / 60);
  t = fields.hour + sign * static_cast<std::int64_t>(span.GetHours()) + carry;
  const std::int64_t hour = FloorMod(t, 24);
  const std::int64_t days = FloorDiv(t, 24) + sign * static_cast<std::int64_t>(span.GetDays());
  if ((fieldBits & kHasTime) != 0) {
    fields.nanoSecond = nano;
    fields.microSecond = micro;
    fields.milliSecond = milli;
    fields.second = second;
    fields.minute = minute;
    fields.hour = hour;
  }

  if ((fieldBits & kHasDay) == 0) return;  // a time of day wraps around; gYear has no days
  if ((fieldBits & kHasMonth) == 0) {
    // gDay recurs every month; with no month to step through, it wraps at 31.
    if (days != 0) fields.day = FloorMod(fields.day - 1 + days, 31) + 1;
    return;
  }
  // The day is first brought into its (new) month, as the XML Schema method does (31 January
  // plus one month is the end of February), then the days are added one month at a time. Whole
  // 400-year cycles are taken first so that the loop runs at most a few thousand times.
  std::int64_t year = fields.year;
  std::int64_t month = fields.month;
  const int startMax = MaxDayInMonth(year, month);
  std::int64_t day = fields.day > startMax ? startMax : (fields.day < 1 ? 1 : fields.day);
  day += days;
  const std::int64_t cycles = day / kDaysPer400Years;
  day -= cycles * kDaysPer400Years;
  year += cycles * 400;
  for (;;) {
    if (day < 1) {
      if (--month < 1) {
        month = 12;
        --year;
      }
      day += MaxDayInMonth(year, month);
    } else if (day > MaxDayInMonth(year, month)) {
      day -= MaxDayInMonth(year, month);
      if (++month > 12) {
        month = 1;
        ++year;
      }
    } else {
      break;
    }
  }
  fields.day = day;
  fields.month = month;
  if ((fieldBits & kHasYear) != 0) fields.year = year;
}

void ShiftToUtc(DateFields& fields, unsigned fieldBits, std::int64_t offsetMinutes) {
  if (offsetMinutes == 0) return;
  const std::int64_t magnitude = offsetMinutes < 0 ? -offsetMinutes : offsetMinutes;
  const CDateTimeSpan offset(static_cast<std::uint32_t>(magnitude / 60),
                             static_cast<std::uint64_t>(magnitude % 60), 0);
  AddSpan(fields, fieldBits, offset, offsetMinutes > 0);
}

char* WriteDigitsSlow(char* out, std::uint64_t value, int width) {
  int digits = 1;
  for (std::uint64_t rest = value / 10; rest != 0; rest /= 10) ++digits;
  for (int i = digits; i < width; ++i) *out++ = '0';
  char* const end = out + digits;
  char* p = end;
  // Two digits per division while the value is large.
  while (value >= 100) {
    const unsigned pair = static_cast<unsigned>(value % 100);
    value /= 100;
    *--p = static_cast<char>('0' + pair % 10);
    *--p = static_cast<char>('0' + pair / 10);
  }
  if (value >= 10) {
    *--p = static_cast<char>('0' + value % 10);
    value /= 10;
  }
  *--p = static_cast<char>('0' + value);
  return end;
}

char* WriteFraction(char* out, unsigned milli, unsigned micro, unsigned nano) {
  if (milli == 0 && micro == 0 && nano == 0) return out;
  *out++ = '.';
  char* lastGroup = out;
  out = WriteDigits(out, milli, 3);
  if (micro != 0 || nano != 0) {
    lastGroup = out;
    out = WriteDigits(out, micro, 3);
    if (nano != 0) {
      lastGroup = out;
      out = WriteDigits(out, nano, 3);
    }
  }
  // The last group printed is non-zero, so dropping its trailing zeros leaves a digit.
  while (out > lastGroup && out[-1] == '0') --out;
  return out;
}

}  // namespace detail
}  // namespace OvXmlLib6
