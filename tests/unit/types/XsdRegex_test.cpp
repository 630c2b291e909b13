#include "types/XsdRegex.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using OvXmlLib6::detail::CXsdRegex;
using OvXmlLib6::test::MessageOf;

namespace {

bool Match(const char* pattern, const std::string& text) {
  return CXsdRegex(pattern).Matches(text);
}

std::string CompileError(const char* pattern) {
  return MessageOf([&] { CXsdRegex regex(pattern); });
}

}  // namespace

// Each pattern with texts it must match whole and texts it must not.
TEST(CXsdRegex, MatchesWholeTextsAsTheSchemaDialectSays) {
  const struct {
    const char* pattern;
    std::vector<std::string> matched, refused;
  } cases[] = {
      // Anchored at both ends; ^ and $ are literals.
      {"abc", {"abc"}, {"xabc", "abcx"}},
      {"b", {}, {"abc"}},
      {"^a$", {"^a$"}, {"a"}},
      {"", {""}, {"a"}},
      {"a|bc|", {"", "bc"}, {}},
      // Quantifiers and groups.
      {"[0-9]{3}-[0-9]{4}", {"555-1234"}, {"55-1234"}},
      {"a{2,}", {"aaaaa"}, {"a"}},
      {"(ab){1,3}c?", {"ababab"}, {"abababab"}},
      {"a{0}b", {"b"}, {}},
      {"(a*)*b", {"aaab"}, {}},
      {"(a|b)+", {"abba"}, {}},
      {"x(|y)z", {"xz"}, {}},
      // Classes, subtraction and escapes; \d takes every decimal digit (ARABIC-INDIC THREE).
      {"[a-z-[aeiou]]+", {"bcd"}, {"bad"}},
      {"[^a-z-[0-9]]", {"A"}, {"5"}},
      {"[-a]", {"-"}, {}},
      {"[a-]", {"-"}, {}},
      {"[\\]\\[\\-]{3}", {"][-"}, {}},
      {"\\d+\\.\\d*", {"12.5"}, {}},
      {"\\d", {"\xD9\xA3"}, {}},
      {"\\s\\S", {"\tx"}, {}},
      {"\\s", {}, {"\v"}},
      {"\\w+", {"caf\xC3\xA9"}, {}},
      {"\\w", {}, {"!"}},
      {"\\W", {" "}, {}},
      {"\\i\\c*", {"_x-1.y"}, {"1x"}},
      {"\\I", {"1"}, {}},
      {"\\p{Lu}\\p{Ll}+", {"\xC3\x89t\xC3\xA9"}, {}},
      {"\\p{Lu}", {}, {"a"}},
      {"\\P{L}", {"1"}, {}},
      {"\\p{IsGreek}+", {"\xCE\xB1\xCE\xB2"}, {}},
      {"\\p{Sc}", {"\xE2\x82\xAC"}, {}},
      {"\\n\\r\\t\\|\\.\\?\\*\\+\\(\\)\\{\\}\\^", {"\n\r\t|.?*+(){}^"}, {}},
      // A dot is one code point, never a line end. Invalid UTF-8 in the text matches only as
      // replacements: one per byte of a cut or an overlong sequence.
      {".", {"\xF0\x9F\x98\x80", "\xFF"}, {"\n"}},
      {"..", {"\xE2\x82"}, {"\xC3\xA9"}},
      {"...", {"\xE0\x80\x80"}, {}},
      {"[a-z]", {}, {"\xC3"}},
  };
  for (const auto& c : cases) {
    for (const std::string& text : c.matched) EXPECT_TRUE(Match(c.pattern, text)) << c.pattern;
    for (const std::string& text : c.refused) EXPECT_FALSE(Match(c.pattern, text)) << c.pattern;
  }
}

TEST(CXsdRegex, BadPatternsAreRefused) {
  EXPECT_EQ(CompileError("a**"), "Invalid pattern [a**]: unexpected metacharacter at offset 2");
  for (const char* bad :
       {"(a", "a)", "[a", "[]", "a{2,1}", "a{99999}", "\\q", "\\p{Xx}", "\\p{IsNoSuchBlock}",
        "[z-a]", "[a-\\d]", "{", "]", "a|*", "[a-c-x]", "\xC3"}) {
    EXPECT_NE(CompileError(bad), "no exception") << bad;
  }
  EXPECT_NE(CompileError(std::string(300, '(').c_str()), "no exception");
  EXPECT_EQ(CompileError("(a{1000}){1000}"),
            "Invalid pattern [(a{1000}){1000}]: pattern too large");
}

// No backtracking: a pattern that is exponential for a backtracking engine, and very long input,
// both finish quickly and without deep recursion.
TEST(CXsdRegex, LinearOnHostileInput) {
  const std::string as(30, 'a');
  EXPECT_FALSE(Match("(a|a)*(a*)*b", as));
  const std::string longText(1 << 17, 'x');
  EXPECT_TRUE(Match("(x|y)*", longText));
  EXPECT_FALSE(Match("(x|y)*z", longText));
  EXPECT_TRUE(Match(".*", longText));
}

// ASCII text runs on an automaton built from the program when the pattern is small; the program
// takes over for larger patterns, for patterns with too many states and for text beyond ASCII,
// also after an ASCII start.
TEST(CXsdRegex, AutomatonAndProgramAgree) {
  const std::string letters(130, 'q');
  EXPECT_TRUE(Match("[a-z]{130}", letters));
  EXPECT_FALSE(Match("[a-z]{130}", letters.substr(1)));
  // The tenth character from the end is an a: one state for each of 2^10 endings.
  const char* tenthFromEnd = "(a|b)*a(a|b){9}";
  EXPECT_TRUE(Match(tenthFromEnd, "bba" + std::string(9, 'b')));
  EXPECT_FALSE(Match(tenthFromEnd, "abb" + std::string(9, 'b')));
  EXPECT_TRUE(Match("[a-z]+\\p{Ll}", "abc\xC3\xA9"));
  EXPECT_FALSE(Match("[a-z]+", "abc\xC3\xA9"));
  EXPECT_TRUE(Match("\\d{3}-[A-Z]{2}", std::string("123-AB")));
  EXPECT_FALSE(Match("\\d{3}-[A-Z]{2}", std::string("123-AB\0", 7)));
  EXPECT_FALSE(Match("\\d{3}-[A-Z]{2}", "123-A"));
}
