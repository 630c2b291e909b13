// Dates, times, the calendar parts gYear, gMonth and gDay, and durations.
#include "OvXmlLib6/types/Conversions.h"
#include "types/WhitespaceView.h"

#include <charconv>
#include <string_view>

namespace OvXmlLib6 {

namespace {

// A value of `kind` parsed from s under the rule with the CDateTime parser for that kind.
CDateTime ParseDate(const std::string& s, CWhitespaceUtils::WhitespaceRule rule,
                    CDateTime::DTType kind) {
  std::string scratch;
  // The view spans a whole string, so its data is NUL-terminated.
  const char* text = detail::ApplyRuleView(rule, s, scratch).data();
  CDateTime value(kind);
  switch (kind) {
    case CDateTime::dateTime:
      value.ParseXSDDateTime(text);
      break;
    case CDateTime::time:
      value.ParseXSDTime(text);
      break;
    default:
      value.ParseXSDDate(text);
      break;
  }
  return value;
}

// `prefix` followed by value, at least `width` digits with leading zeros.
std::string PrefixedNumber(const char* prefix, unsigned value, std::size_t width) {
  char digits[12];
  const auto result = std::to_chars(digits, digits + sizeof digits, value);
  const std::size_t count = static_cast<std::size_t>(result.ptr - digits);
  std::string text(prefix);
  if (count < width) text.append(width - count, '0');
  text.append(digits, count);
  return text;
}

}  // namespace

CDateTime CConversions::datetimeFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::dateTime);
}

std::string CConversions::datetimeToString(const CDateTime& value) { return value.ToString("s"); }

CDateTime CConversions::dateFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::date);
}

std::string CConversions::dateToString(const CDateTime& value) { return value.ToString("s"); }

CDateTime CConversions::timeFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::time);
}

std::string CConversions::timeToString(const CDateTime& value) { return value.ToString("s"); }

CDateTime CConversions::yearMonthFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::gYearMonth);
}

std::string CConversions::yearMonthToString(const CDateTime& value) { return value.ToString("s"); }

CDateTime CConversions::monthDayFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::gMonthDay);
}

std::string CConversions::monthDayToString(const CDateTime& value) { return value.ToString("s"); }

std::uint16_t CConversions::yearFromString(const std::string& s, WhitespaceRule rule) {
  // A negative year wraps as the unsigned 16-bit field it is stored in.
  return static_cast<std::uint16_t>(ParseDate(s, rule, CDateTime::gYear).GetYear());
}

std::string CConversions::yearToString(std::uint16_t value) { return PrefixedNumber("", value, 1); }

std::uint8_t CConversions::monthFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::gMonth).GetMonth();
}

std::string CConversions::monthToString(std::uint8_t value) {
  return PrefixedNumber("--", value, 2);
}

std::uint8_t CConversions::dayFromString(const std::string& s, WhitespaceRule rule) {
  return ParseDate(s, rule, CDateTime::gDay).GetDay();
}

std::string CConversions::dayToString(std::uint8_t value) {
  return PrefixedNumber("---", value, 2);
}

CDateTimeSpan CConversions::durationFromString(const std::string& s, WhitespaceRule rule) {
  std::string scratch;
  CDateTimeSpan span;
  span.ParseXSDDuration(detail::ApplyRuleView(rule, s, scratch).data());
  return span;
}

std::string CConversions::durationToString(const CDateTimeSpan& value) { return value.ToString(); }

}  // namespace OvXmlLib6
