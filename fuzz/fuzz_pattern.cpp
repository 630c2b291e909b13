// XML Schema patterns: the text up to the first NUL byte is a pattern (hostile too), the rest a
// subject matched against it as a string value. Compilation and matching must end in time and
// either accept, refuse the value, or refuse the pattern, all through the library's exceptions;
// the automaton that matches ASCII text must agree with the program it is built from.
#include "FuzzSupport.h"
#include "OvXmlLib6/types/PrimitiveRestrictions.h"
#include "types/XsdRegex.h"

using namespace OvXmlLib6;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::CInput input(data, size);
  const std::string pattern = input.TextUntil('\0');
  const std::string subject = input.Rest();
  const CPrimitiveRestrictions restrictions(pattern.c_str(), -1, -1, nullptr, nullptr, nullptr,
                                            nullptr, -1);
  fuzz::Attempt([&] { restrictions.CheckString("value", subject, ItemType_string); });
  // The pattern against itself, which often matches.
  fuzz::Attempt([&] { restrictions.CheckString("value", pattern, ItemType_string); });
  // ASCII text runs on an automaton built from the program: both must agree.
  fuzz::Attempt([&] {
    const detail::CXsdRegex regex(pattern);
    for (const std::string* text : {&subject, &pattern}) {
      fuzz::Require(regex.Matches(*text) == regex.MatchesByProgram(*text),
                    "the automaton and the program agree", pattern, *text);
    }
  });
  return 0;
}
