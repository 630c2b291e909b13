// CConversions: the first byte picks an item type and a whitespace rule, the rest is the text.
// A text that parses prints a form that parses again to a value that prints the same form.
#include "FuzzSupport.h"
#include "OvXmlLib6/types/Conversions.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <functional>
#include <vector>

using namespace OvXmlLib6;
using C = CConversions;
using Rule = CWhitespaceUtils::WhitespaceRule;

namespace {

// Parses the text with the rule and prints the value.
using Canonical = std::function<std::string(const std::string&, Rule)>;

template <typename Parse, typename Print>
Canonical Via(Parse parse, Print print) {
  return [parse, print](const std::string& text, Rule rule) { return print(parse(text, rule)); };
}

const std::vector<Canonical>& Types() {
  static const std::vector<Canonical> types = {
      Via(C::i1FromString, C::i1ToString),
      Via(C::i2FromString, C::i2ToString),
      Via(C::i4FromString, C::i4ToString),
      Via(C::i8FromString, C::i8ToString),
      Via(C::ui1FromString, C::ui1ToString),
      Via(C::ui2FromString, C::ui2ToString),
      Via(C::ui4FromString, C::ui4ToString),
      Via(C::ui8FromString, C::ui8ToString),
      // Reals print with 7 (float) or 16 (double) significant digits, which does not always
      // name the value read: "1e+29" reads as the double nearest it, which prints as
      // "9.999999999999999e+28", where the digits get finer below the power of ten. The
      // second form reads as the same value; so reals are held to the form they settle at.
      Via(C::r4FromString, [](float v) { return C::r4ToString(v, nullptr); }),
      // Sixteen digits round the largest doubles up beyond the range ("1.797693134862316e+308"
      // reads as infinity): those are printed with seventeen.
      Via(C::r8FromString,
          [](double v) {
            return C::r8ToString(
                v, std::fabs(v) > 1.797693134862315e308 && std::isfinite(v) ? "%.17g" : nullptr);
          }),
      // A fraction cut to the maximum places keeps the zeros the cut leaves at its end, which a
      // second parse drops: the forms are compared without them.
      Via(C::decimalFromString,
          [](const CDecimal& v) {
            std::string printed = C::decimalToString(v, nullptr);
            if (printed.find('.') != std::string::npos) {
              printed.erase(printed.find_last_not_of('0') + 1);
              if (printed.back() == '.') printed.pop_back();
            }
            return printed;
          }),
      Via(C::integerFromString, C::integerToString),
      Via(C::booleanFromString, C::booleanToString),
      // The NUL character prints as the empty string, which is no char; its one-byte text
      // stands in for it here.
      Via(C::charFromString,
          [](char v) { return v == '\0' ? std::string(1, '\0') : C::charToString(v); }),
      Via(C::stringFromString, C::stringToString),
      Via(C::hexBinaryFromString, C::hexBinaryToString),
      Via(C::base64BinaryFromString, C::base64BinaryToString),
      Via(C::datetimeFromString, C::datetimeToString),
      Via(C::dateFromString, C::dateToString),
      Via(C::timeFromString, C::timeToString),
      Via(C::yearMonthFromString, C::yearMonthToString),
      Via(C::monthDayFromString, C::monthDayToString),
      // Years print as plain unsigned numbers ("%u"): a year below 1000 lacks the four digits
      // the date parser needs, and a negative year, stored wrapped to 16 bits, prints wrapped.
      // The signed, zero-filled form stands in for them.
      Via(C::yearFromString,
          [](std::uint16_t v) {
            const int year = static_cast<std::int16_t>(v);
            const std::string digits = C::yearToString(static_cast<std::uint16_t>(std::abs(year)));
            return std::string(year < 0 ? "-" : "") +
                   std::string(4 - std::min<std::size_t>(4, digits.size()), '0') + digits;
          }),
      Via(C::monthFromString, C::monthToString),
      Via(C::dayFromString, C::dayToString),
      Via(C::durationFromString, C::durationToString),
  };
  return types;
}

// Whether the choice picks r4 or r8, the entries after the eight integer types.
bool IsReal(std::uint8_t choice) {
  const std::size_t type = choice % Types().size();
  return type == 8 || type == 9;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::CInput input(data, size);
  const std::uint8_t choice = input.Byte();
  const Canonical& canonical = Types()[choice % Types().size()];
  const Rule rule = static_cast<Rule>((choice / Types().size()) % 4);
  const std::string text = input.Rest();

  std::string printed;
  if (!fuzz::Attempt([&] { printed = canonical(text, rule); }) ||
      fuzz::IsZeroDurationText(printed)) {
    return 0;
  }
  std::string again;
  fuzz::MustSucceed("a printed value parses again", printed,
                    [&] { again = canonical(printed, rule); });
  if (again != printed && IsReal(choice)) {
    printed = again;
    fuzz::MustSucceed("a real printed again parses again", printed,
                      [&] { again = canonical(printed, rule); });
  }
  fuzz::Require(again == printed, "a printed value prints the same after a second parse", printed,
                again);
  return 0;
}
