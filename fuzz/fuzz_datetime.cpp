// Dates, times and durations. The first byte picks a kind, the text up to the first '|' is a
// value of it and the rest a duration. A value that parses prints a form that parses to a value
// printing the same form; a date or time that parses is moved by the duration both ways, compared
// with the original, and the results print and parse again as values of their kind.
#include "FuzzSupport.h"
#include "OvXmlLib6/types/Conversions.h"

#include <functional>
#include <vector>

using namespace OvXmlLib6;
using C = CConversions;
using Rule = CWhitespaceUtils::WhitespaceRule;

namespace {

struct CKind {
  std::function<CDateTime(const std::string&, Rule)> parse;
  std::function<std::string(const CDateTime&)> print;
};

const std::vector<CKind>& Kinds() {
  static const std::vector<CKind> kinds = {
      {C::datetimeFromString, C::datetimeToString},
      {C::dateFromString, C::dateToString},
      {C::timeFromString, C::timeToString},
      {C::yearMonthFromString, C::yearMonthToString},
      {C::monthDayFromString, C::monthDayToString},
      {[](const std::string& s, Rule) { return CDateTime(s.c_str()); },
       [](const CDateTime& d) { return d.ToString(); }},
  };
  return kinds;
}

// Prints `value`; the printed form parses again (as `kind`) and prints the same.
void CheckPrints(const CKind& kind, const CDateTime& value) {
  std::string printed;
  if (!fuzz::Attempt([&] { printed = kind.print(value); })) {
    return;
  }
  std::string again;
  fuzz::MustSucceed("a printed date or time parses again", printed,
                    [&] { again = kind.print(kind.parse(printed, Rule::WhitespaceRule_None)); });
  fuzz::Require(again == printed, "a printed date or time prints the same after a second parse",
                printed, again);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::CInput input(data, size);
  const std::uint8_t choice = input.Byte();
  const Rule rule = static_cast<Rule>(choice % 4);
  const CKind& kind = Kinds()[(choice / 4) % Kinds().size()];
  const std::string text = input.TextUntil('|');
  const std::string spanText = input.Rest();

  CDateTimeSpan span;
  const bool spanOk = fuzz::Attempt([&] { span = C::durationFromString(spanText, rule); });
  const std::string spanPrinted = spanOk ? C::durationToString(span) : std::string();
  if (spanOk && !fuzz::IsZeroDurationText(spanPrinted)) {
    const std::string& printed = spanPrinted;
    std::string again;
    fuzz::MustSucceed("a printed duration parses again", printed,
                      [&] { again = C::durationToString(C::durationFromString(printed, rule)); });
    fuzz::Require(again == printed, "a printed duration prints the same after a second parse",
                  printed, again);
    fuzz::Attempt([&] { (void)span.CompareTo(span.GetAsNegative()); });
  }

  CDateTime value;
  if (!fuzz::Attempt([&] { value = kind.parse(text, rule); })) {
    return 0;
  }
  CheckPrints(kind, value);
  fuzz::Attempt([&] { (void)value.GetNormalized(); });
  fuzz::Attempt([&] { (void)value.GetDayOfWeek(); });
  if (!spanOk) {
    return 0;
  }
  CDateTime later;
  CDateTime earlier;
  if (fuzz::Attempt([&] { later = value + span; })) {
    CheckPrints(kind, later);
    fuzz::Attempt([&] { (void)(later - value); });
    fuzz::Attempt([&] { (void)later.CompareTo(value); });
  }
  if (fuzz::Attempt([&] { earlier = value - span; })) {
    CheckPrints(kind, earlier);
    fuzz::Attempt([&] { (void)(value - earlier); });
  }
  return 0;
}
