// Calendar arithmetic and digit helpers shared by CDateTime and CDateTimeSpan. Field arithmetic
// runs on 64-bit copies of the fields, so no duration, however long, can overflow a narrow field
// or a signed computation; the callers decide what a result outside the field ranges means.
#ifndef OVXMLLIB6_SRC_TYPES_DATECALC_H
#define OVXMLLIB6_SRC_TYPES_DATECALC_H

#include "OvXmlLib6/types/DateTime.h"
#include "types/CharClass.h"

#include <cstdint>

namespace OvXmlLib6 {
namespace detail {

// The fields a kind of date has.
enum DateFieldBits : unsigned {
  kHasYear = 1,
  kHasMonth = 2,
  kHasDay = 4,
  kHasTime = 8,
};

// Sets of kinds, as bits (1 << kind), for the checked getters and the validation.
constexpr unsigned KindBit(CDateTime::DTType type) { return 1u << static_cast<unsigned>(type); }
constexpr unsigned kYearKinds = KindBit(CDateTime::dateTime) | KindBit(CDateTime::date) |
                                KindBit(CDateTime::gYearMonth) | KindBit(CDateTime::gYear);
constexpr unsigned kMonthKinds = KindBit(CDateTime::dateTime) | KindBit(CDateTime::date) |
                                 KindBit(CDateTime::gYearMonth) | KindBit(CDateTime::gMonthDay) |
                                 KindBit(CDateTime::gMonth);
constexpr unsigned kDayKinds = KindBit(CDateTime::dateTime) | KindBit(CDateTime::date) |
                               KindBit(CDateTime::gDay) | KindBit(CDateTime::gMonthDay);
constexpr unsigned kTimeKinds = KindBit(CDateTime::dateTime) | KindBit(CDateTime::time);
constexpr unsigned kCalendarKinds = KindBit(CDateTime::dateTime) | KindBit(CDateTime::date);

// Whether `type` is one of `kinds`; numbers above 8 belong to no set.
inline bool IsKindIn(CDateTime::DTType type, unsigned kinds) {
  const unsigned number = static_cast<unsigned>(type);
  return number <= 8 && (kinds & (1u << number)) != 0;
}

// The DateFieldBits of a kind.
unsigned FieldsOfKind(CDateTime::DTType type);

// Leap year by the C remainder on the signed year: -4 and -400 are leap years.
inline bool IsLeapYear(std::int64_t year) {
  return year % 4 == 0 && (year % 100 != 0 || year % 400 == 0);
}
// The fixed table (February 29); 0 for a month outside 1..12.
int DaysInMonthTable(std::int64_t month);
// The days before the month (0, 31, 59, ...); 0 for a month outside 1..12.
int DaysBeforeMonth(std::int64_t month);
// The length of a month of a year: February is 28 unless the year is leap.
int MaxDayInMonth(std::int64_t year, std::int64_t month);

std::int64_t FloorDiv(std::int64_t a, std::int64_t b);
std::int64_t FloorMod(std::int64_t a, std::int64_t b);

// The fields of a CDateTime, widened.
struct DateFields {
  std::int64_t year;
  std::int64_t month;
  std::int64_t day;
  std::int64_t hour;
  std::int64_t minute;
  std::int64_t second;
  std::int64_t milliSecond;
  std::int64_t microSecond;
  std::int64_t nanoSecond;
};

// Adds a duration (negated when `subtract`) by the XML Schema method, extended to three fraction
// fields, to the fields that `fieldBits` names; the other fields are left as they are.
void AddSpan(DateFields& fields, unsigned fieldBits, const CDateTimeSpan& span, bool subtract);

// Moves fields that carry an offset of `offsetMinutes` (east of UTC positive) to UTC.
void ShiftToUtc(DateFields& fields, unsigned fieldBits, std::int64_t offsetMinutes);

// What CDateTime's own operations share with each other and with CDateTimeSpan's comparison.
struct CDateTimeAccess {
  // The fields, widened.
  static DateFields Fields(const CDateTime& value);
  // The fields moved to UTC when the value has an offset (GetNormalized, without its year limit).
  static DateFields UtcFields(const CDateTime& value);
  // The validation, in its order and with its messages, on widened fields: run before widened
  // fields are stored, so that nothing is narrowed into a wrong value.
  static void ValidateFields(CDateTime::DTType type, const DateFields& fields);
  // Replaces the value by `type` and `fields` (which must fit), with no zone.
  static void Store(CDateTime& value, CDateTime::DTType type, const DateFields& fields);
  // The order relation on (normalised) fields; `zoneA`, `zoneB` say which side carries a zone.
  static CDateTime::DTCompareResult Compare(CDateTime::DTType typeA, const DateFields& a,
                                            bool zoneA, CDateTime::DTType typeB,
                                            const DateFields& b, bool zoneB);
};

// The year range of the kinds that have a year (0 excluded).
constexpr int kMaxYear = 9999;
constexpr int kMinYear = -9999;
// COvInvalidValueException "Invalid Year [%d] (%d <= year <= %d && year != 0)", with the bounds in
// the library's own crossed order (9999, then -9999).
[[noreturn]] void ThrowYearRange(std::int64_t year);
// COvInvalidStateException "Failed to <getter>. Invalid Date Type: <kind>." unless `type` is one
// of `kinds`.
void RequireKind(CDateTime::DTType type, unsigned kinds, const char* getter);

// The kind's word ("dateTime", ...); "" for a number above 8.
const char* TypeName(CDateTime::DTType type);

// Writes `value` in decimal, zero-filled to at least `width` digits; returns the end.
char* WriteDigitsSlow(char* out, std::uint64_t value, int width);
// The same, with the printer's common cases (two to four digits that fit the width) inline.
inline char* WriteDigits(char* out, std::uint64_t value, int width) {
  const unsigned v = static_cast<unsigned>(value);
  if (width <= 1 && value < 10) {
    out[0] = static_cast<char>('0' + v);
    return out + 1;
  }
  if (width <= 2 && value < 100) {
    out[0] = static_cast<char>('0' + v / 10);
    out[1] = static_cast<char>('0' + v % 10);
    return out + 2;
  }
  if (width == 3 && value < 1000) {
    out[0] = static_cast<char>('0' + v / 100);
    out[1] = static_cast<char>('0' + v / 10 % 10);
    out[2] = static_cast<char>('0' + v % 10);
    return out + 3;
  }
  if (width == 4 && value < 10000) {
    out[0] = static_cast<char>('0' + v / 1000);
    out[1] = static_cast<char>('0' + v / 100 % 10);
    out[2] = static_cast<char>('0' + v / 10 % 10);
    out[3] = static_cast<char>('0' + v % 10);
    return out + 4;
  }
  return WriteDigitsSlow(out, value, width);
}
// Writes "." and the fraction groups that are needed, trailing zeros of the last one dropped;
// nothing when all three are zero. At most 1 + 3 * 5 characters.
char* WriteFraction(char* out, unsigned milli, unsigned micro, unsigned nano);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_DATECALC_H
