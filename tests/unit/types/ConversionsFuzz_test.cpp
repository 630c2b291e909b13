// Random and truncated texts through every ...FromString: each call must give a value or throw
// one of the library's exceptions, nothing else. Under the sanitizer build this also proves that
// no parser reads outside its text, overflows a signed integer or shifts out of range.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"

#include <functional>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <vector>

using namespace OvXmlLib6;
using C = CConversions;
using Rule = CWhitespaceUtils::WhitespaceRule;

namespace {

using Parser = std::function<void(const std::string&, Rule)>;

std::vector<std::pair<const char*, Parser>> Parsers() {
  return {
      {"i1", [](const std::string& s, Rule r) { C::i1FromString(s, r); }},
      {"i2", [](const std::string& s, Rule r) { C::i2FromString(s, r); }},
      {"i4", [](const std::string& s, Rule r) { C::i4FromString(s, r); }},
      {"i8", [](const std::string& s, Rule r) { C::i8FromString(s, r); }},
      {"ui1", [](const std::string& s, Rule r) { C::ui1FromString(s, r); }},
      {"ui2", [](const std::string& s, Rule r) { C::ui2FromString(s, r); }},
      {"ui4", [](const std::string& s, Rule r) { C::ui4FromString(s, r); }},
      {"ui8", [](const std::string& s, Rule r) { C::ui8FromString(s, r); }},
      {"r4", [](const std::string& s, Rule r) { C::r4FromString(s, r); }},
      {"r8", [](const std::string& s, Rule r) { C::r8FromString(s, r); }},
      {"boolean", [](const std::string& s, Rule r) { C::booleanFromString(s, r); }},
      {"char", [](const std::string& s, Rule r) { C::charFromString(s, r); }},
      {"string", [](const std::string& s, Rule r) { C::stringFromString(s, r); }},
      {"hexBinary", [](const std::string& s, Rule r) { C::hexBinaryFromString(s, r); }},
      {"base64Binary", [](const std::string& s, Rule r) { C::base64BinaryFromString(s, r); }},
      {"datetime", [](const std::string& s, Rule r) { C::datetimeFromString(s, r); }},
      {"date", [](const std::string& s, Rule r) { C::dateFromString(s, r); }},
      {"time", [](const std::string& s, Rule r) { C::timeFromString(s, r); }},
      {"yearMonth", [](const std::string& s, Rule r) { C::yearMonthFromString(s, r); }},
      {"monthDay", [](const std::string& s, Rule r) { C::monthDayFromString(s, r); }},
      {"year", [](const std::string& s, Rule r) { C::yearFromString(s, r); }},
      {"month", [](const std::string& s, Rule r) { C::monthFromString(s, r); }},
      {"day", [](const std::string& s, Rule r) { C::dayFromString(s, r); }},
      {"duration", [](const std::string& s, Rule r) { C::durationFromString(s, r); }},
      {"decimal", [](const std::string& s, Rule r) { C::decimalFromString(s, r); }},
      {"integer", [](const std::string& s, Rule r) { C::integerFromString(s, r); }},
  };
}

// Valid texts of every family, to be cut and mutated.
const std::vector<std::string> kSeeds = {"0",
                                         "-2147483648",
                                         "18446744073709551615",
                                         "  +12 ",
                                         "1.5e-3",
                                         "-INF",
                                         "NaN",
                                         "1.#QNAN",
                                         "true",
                                         "0AFF",
                                         "SGVsbG8=",
                                         "x",
                                         "2004-02-29",
                                         "--02-29",
                                         "---45",
                                         "2001-10-26T21:32:52.123456789+05:30",
                                         "12:00:00Z",
                                         "-P1Y2M3DT4H5M6.5S",
                                         "PT1.123456789S",
                                         "-12345678901234567890.0987654321",
                                         "1 000.5",
                                         "1e3",
                                         "12 34",
                                         "--5",
                                         "9999-12-31T23:59:59Z"};

const char kAlphabet[] = "0123456789+-.eEZTP:YMDHS# \t\r\n\x7f\xc3\xa9\xff\0";

}  // namespace

TEST(CConversionsFuzz, RandomAndTruncatedTextsGiveValueOrLibraryException) {
  std::mt19937 rng(12345);
  std::vector<std::string> inputs;
  for (const std::string& seed : kSeeds) {
    for (std::size_t n = 0; n <= seed.size(); ++n) inputs.push_back(seed.substr(0, n));
  }
  for (int i = 0; i < 3000; ++i) {
    std::string text = kSeeds[rng() % kSeeds.size()];
    const int edits = 1 + static_cast<int>(rng() % 4);
    for (int e = 0; e < edits; ++e) {
      const char c = kAlphabet[rng() % (sizeof kAlphabet - 1)];
      const std::size_t at = text.empty() ? 0 : rng() % (text.size() + 1);
      switch (rng() % 3) {
        case 0:
          text.insert(at, 1, c);
          break;
        case 1:
          if (at < text.size()) text[at] = c;
          break;
        default:
          if (at < text.size()) text.erase(at, 1);
          break;
      }
    }
    inputs.push_back(text);
  }
  for (int i = 0; i < 500; ++i) {
    std::string noise(rng() % 40, '\0');
    for (char& c : noise) c = static_cast<char>(rng());
    inputs.push_back(noise);
  }
  inputs.push_back(std::string(5000, '9'));
  inputs.push_back("0." + std::string(5000, '0') + "1e5000");

  std::size_t values = 0, errors = 0;
  for (const auto& parser : Parsers()) {
    for (const std::string& text : inputs) {
      for (Rule rule :
           {CWhitespaceUtils::WhitespaceRule_None, CWhitespaceUtils::WhitespaceRule_Collapse}) {
        try {
          parser.second(text, rule);
          ++values;
        } catch (const COvException&) {
          ++errors;
        }
      }
    }
  }
  // Both outcomes occur; anything else (a crash, another exception) fails the test.
  EXPECT_GT(values, 0u);
  EXPECT_GT(errors, 0u);
}
