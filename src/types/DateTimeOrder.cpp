// CDateTime: the XML Schema order relation and the duration arithmetic. Both work on widened
// copies of the fields (see DateCalc.h), so neither can overflow a field or loop for long.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "types/DateCalc.h"

namespace OvXmlLib6 {

using detail::CDateTimeAccess;
using detail::DateFields;

namespace {

// The widest offset a zone can have, used for values compared against a zoned value.
constexpr std::int64_t kMaxZoneMinutes = 14 * 60;

CDateTime::DTCompareResult Mirror(CDateTime::DTCompareResult result) {
  if (result == CDateTime::DTCompare_Less) return CDateTime::DTCompare_Greater;
  if (result == CDateTime::DTCompare_Greater) return CDateTime::DTCompare_Less;
  return result;
}

// Compares two widened fields; Equal when they are equal.
CDateTime::DTCompareResult Order(std::int64_t a, std::int64_t b) {
  if (a < b) return CDateTime::DTCompare_Less;
  if (a > b) return CDateTime::DTCompare_Greater;
  return CDateTime::DTCompare_Equal;
}

// Field comparison. Each field is read as its checked getter would read it, so a kind that lacks
// a field fails with that getter's message once the comparison gets that far.
CDateTime::DTCompareResult CompareFields(CDateTime::DTType typeA, const DateFields& a,
                                         CDateTime::DTType typeB, const DateFields& b) {
  detail::RequireKind(typeA, detail::kYearKinds, "GetYear");
  detail::RequireKind(typeB, detail::kYearKinds, "GetYear");
  if ((a.year < 0 && b.year > 0) || (a.year > 0 && b.year < 0)) {
    return CDateTime::DTCompare_Indeterminate;
  }
  CDateTime::DTCompareResult result = Order(a.year, b.year);
  if (result != CDateTime::DTCompare_Equal) return result;
  detail::RequireKind(typeA, detail::kMonthKinds, "GetMonth");
  detail::RequireKind(typeB, detail::kMonthKinds, "GetMonth");
  if ((result = Order(a.month, b.month)) != CDateTime::DTCompare_Equal) return result;
  detail::RequireKind(typeA, detail::kDayKinds, "GetDay");
  detail::RequireKind(typeB, detail::kDayKinds, "GetDay");
  if ((result = Order(a.day, b.day)) != CDateTime::DTCompare_Equal) return result;
  detail::RequireKind(typeA, detail::kTimeKinds, "GetHour");
  detail::RequireKind(typeB, detail::kTimeKinds, "GetHour");
  if ((result = Order(a.hour, b.hour)) != CDateTime::DTCompare_Equal) return result;
  detail::RequireKind(typeA, detail::kTimeKinds, "GetMinute");
  detail::RequireKind(typeB, detail::kTimeKinds, "GetMinute");
  if ((result = Order(a.minute, b.minute)) != CDateTime::DTCompare_Equal) return result;
  // The seconds with their fraction, in whole nanoseconds: the order of GetRealSecond, exactly.
  auto realSecond = [](const DateFields& f) {
    return ((f.second * 1000 + f.milliSecond) * 1000 + f.microSecond) * 1000 + f.nanoSecond;
  };
  return Order(realSecond(a), realSecond(b));
}

// `zoneless` against a value that carries a zone: the zoneless one is taken at +14:00 (its
// earliest instant) and at -14:00 (its latest); only when both agree is the order determinate.
CDateTime::DTCompareResult CompareZoneless(CDateTime::DTType typeZ, const DateFields& zoneless,
                                           CDateTime::DTType typeP, const DateFields& zoned) {
  const unsigned bits = detail::FieldsOfKind(typeZ);
  DateFields earliest = zoneless;
  detail::ShiftToUtc(earliest, bits, kMaxZoneMinutes);
  DateFields latest = zoneless;
  detail::ShiftToUtc(latest, bits, -kMaxZoneMinutes);
  const CDateTime::DTCompareResult first = CompareFields(typeZ, earliest, typeP, zoned);
  const CDateTime::DTCompareResult second = CompareFields(typeZ, latest, typeP, zoned);
  if (first == second &&
      (first == CDateTime::DTCompare_Less || first == CDateTime::DTCompare_Greater)) {
    return first;
  }
  return CDateTime::DTCompare_Indeterminate;
}

}  // namespace

namespace detail {

DateFields CDateTimeAccess::UtcFields(const CDateTime& v) {
  DateFields fields = Fields(v);
  if (v.m_hasOffset) {
    // The sign of an offset is carried by its hour alone (-00:30 reads as +00:30).
    const std::int64_t offset =
        v.m_zoneHour * 60 + (v.m_zoneHour < 0 ? -v.m_zoneMinute : v.m_zoneMinute);
    ShiftToUtc(fields, FieldsOfKind(v.m_type), offset);
  }
  return fields;
}

CDateTime::DTCompareResult CDateTimeAccess::Compare(CDateTime::DTType typeA, const DateFields& a,
                                                    bool zoneA, CDateTime::DTType typeB,
                                                    const DateFields& b, bool zoneB) {
  if (zoneA == zoneB) return CompareFields(typeA, a, typeB, b);
  if (!zoneA) return CompareZoneless(typeA, a, typeB, b);
  // Computed from the zoneless side and mirrored, so that a.CompareTo(b) is always the mirror
  // of b.CompareTo(a).
  return Mirror(CompareZoneless(typeB, b, typeA, a));
}

}  // namespace detail

// ---- order ----

CDateTime::DTCompareResult CDateTime::CompareTo(const CDateTime& other) const {
  return CDateTimeAccess::Compare(m_type, CDateTimeAccess::UtcFields(*this), m_zoneInUse,
                                  other.m_type, CDateTimeAccess::UtcFields(other),
                                  other.m_zoneInUse);
}

bool CDateTime::operator==(const CDateTime& other) const {
  return CompareTo(other) == DTCompare_Equal;
}

bool CDateTime::operator!=(const CDateTime& other) const {
  return CompareTo(other) != DTCompare_Equal;
}

bool CDateTime::operator<(const CDateTime& other) const {
  return CompareTo(other) == DTCompare_Less;
}

bool CDateTime::operator<=(const CDateTime& other) const {
  const DTCompareResult result = CompareTo(other);
  return result == DTCompare_Less || result == DTCompare_Equal;
}

bool CDateTime::operator>(const CDateTime& other) const {
  return CompareTo(other) == DTCompare_Greater;
}

bool CDateTime::operator>=(const CDateTime& other) const {
  const DTCompareResult result = CompareTo(other);
  return result == DTCompare_Greater || result == DTCompare_Equal;
}

CDateTime CDateTime::GetNormalized() const {
  CDateTime result(*this);
  if (m_hasOffset) {
    const int minutes = m_zoneHour * 60 + (m_zoneHour < 0 ? -m_zoneMinute : m_zoneMinute);
    const int magnitude = minutes < 0 ? -minutes : minutes;
    result.AddDateTimeSpan(CDateTimeSpan(static_cast<std::uint32_t>(magnitude / 60),
                                         static_cast<std::uint64_t>(magnitude % 60), 0),
                           minutes > 0);
    result.m_zoneHour = 0;
    result.m_zoneMinute = 0;
  }
  return result;
}

// ---- arithmetic ----

void CDateTime::AddDateTimeSpan(const CDateTimeSpan& span, bool subtract) {
  const unsigned bits = detail::FieldsOfKind(m_type);
  DateFields fields = CDateTimeAccess::Fields(*this);
  detail::AddSpan(fields, bits, span, subtract);
  // The arithmetic has no year limit of its own; a result outside the lexical range is refused
  // rather than wrapped. Year 0 is reached when a date of year 1 goes back (years before 1 are
  // not shifted over it), and is refused too: it would print as a value that does not parse.
  if ((bits & detail::kHasYear) != 0 &&
      (fields.year > detail::kMaxYear || fields.year < detail::kMinYear || fields.year == 0)) {
    detail::ThrowYearRange(fields.year);
  }
  m_year = static_cast<std::int16_t>(fields.year);
  m_month = static_cast<std::uint8_t>(fields.month);
  m_day = static_cast<std::uint8_t>(fields.day);
  m_hour = static_cast<std::uint8_t>(fields.hour);
  m_minute = static_cast<std::uint8_t>(fields.minute);
  m_second = static_cast<std::uint8_t>(fields.second);
  m_milliSecond = static_cast<std::uint16_t>(fields.milliSecond);
  m_microSecond = static_cast<std::uint16_t>(fields.microSecond);
  m_nanoSecond = static_cast<std::uint16_t>(fields.nanoSecond);
  m_status = 0;
}

CDateTime CDateTime::operator+(const CDateTimeSpan& span) const {
  CDateTime result(*this);
  result.AddDateTimeSpan(span, false);
  return result;
}

CDateTime CDateTime::operator-(const CDateTimeSpan& span) const {
  CDateTime result(*this);
  result.AddDateTimeSpan(span, true);
  return result;
}

CDateTime& CDateTime::operator+=(const CDateTimeSpan& span) {
  AddDateTimeSpan(span, false);
  return *this;
}

CDateTime& CDateTime::operator-=(const CDateTimeSpan& span) {
  AddDateTimeSpan(span, true);
  return *this;
}

CDateTimeSpan CDateTime::operator-(const CDateTime& /*other*/) const { return CDateTimeSpan(); }

}  // namespace OvXmlLib6
