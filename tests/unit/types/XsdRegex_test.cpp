#include "types/XsdRegex.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <chrono>
#include <gtest/gtest.h>
#include <string>

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

TEST(CXsdRegex, AnchoredAtBothEndsWithLiteralCaretAndDollar) {
  EXPECT_TRUE(Match("abc", "abc"));
  EXPECT_FALSE(Match("abc", "xabc"));
  EXPECT_FALSE(Match("abc", "abcx"));
  EXPECT_FALSE(Match("b", "abc"));
  EXPECT_TRUE(Match("^a$", "^a$"));  // no anchors in XML Schema
  EXPECT_FALSE(Match("^a$", "a"));
  EXPECT_TRUE(Match("", ""));
  EXPECT_FALSE(Match("", "a"));
  EXPECT_TRUE(Match("a|bc|", ""));
  EXPECT_TRUE(Match("a|bc|", "bc"));
}

TEST(CXsdRegex, QuantifiersAndGroups) {
  EXPECT_TRUE(Match("[0-9]{3}-[0-9]{4}", "555-1234"));
  EXPECT_FALSE(Match("[0-9]{3}-[0-9]{4}", "55-1234"));
  EXPECT_TRUE(Match("a{2,}", "aaaaa"));
  EXPECT_FALSE(Match("a{2,}", "a"));
  EXPECT_TRUE(Match("(ab){1,3}c?", "ababab"));
  EXPECT_FALSE(Match("(ab){1,3}c?", "abababab"));
  EXPECT_TRUE(Match("a{0}b", "b"));
  EXPECT_TRUE(Match("(a*)*b", "aaab"));
  EXPECT_TRUE(Match("(a|b)+", "abba"));
  EXPECT_TRUE(Match("x(|y)z", "xz"));
}

TEST(CXsdRegex, ClassesEscapesAndSubtraction) {
  EXPECT_TRUE(Match("[a-z-[aeiou]]+", "bcd"));
  EXPECT_FALSE(Match("[a-z-[aeiou]]+", "bad"));
  EXPECT_TRUE(Match("[^a-z-[0-9]]", "A"));
  EXPECT_FALSE(Match("[^a-z-[0-9]]", "5"));
  EXPECT_TRUE(Match("[-a]", "-"));
  EXPECT_TRUE(Match("[a-]", "-"));
  EXPECT_TRUE(Match("[\\]\\[\\-]{3}", "][-"));
  EXPECT_TRUE(Match("\\d+\\.\\d*", "12.5"));
  EXPECT_TRUE(Match("\\d", "\xD9\xA3"));  // ARABIC-INDIC DIGIT THREE is a decimal digit
  EXPECT_TRUE(Match("\\s\\S", "\tx"));
  EXPECT_FALSE(Match("\\s", "\v"));
  EXPECT_TRUE(Match("\\w+", "caf\xC3\xA9"));
  EXPECT_FALSE(Match("\\w", "!"));
  EXPECT_TRUE(Match("\\W", " "));
  EXPECT_TRUE(Match("\\i\\c*", "_x-1.y"));
  EXPECT_FALSE(Match("\\i\\c*", "1x"));
  EXPECT_TRUE(Match("\\I", "1"));
  EXPECT_TRUE(Match("\\p{Lu}\\p{Ll}+", "\xC3\x89t\xC3\xA9"));
  EXPECT_FALSE(Match("\\p{Lu}", "a"));
  EXPECT_TRUE(Match("\\P{L}", "1"));
  EXPECT_TRUE(Match("\\p{IsGreek}+", "\xCE\xB1\xCE\xB2"));
  EXPECT_TRUE(Match("\\p{Sc}", "\xE2\x82\xAC"));
  EXPECT_TRUE(Match(".", "\xF0\x9F\x98\x80"));  // one code point, four bytes
  EXPECT_FALSE(Match(".", "\n"));
  EXPECT_FALSE(Match("..", "\xC3\xA9"));
  EXPECT_TRUE(Match("\\n\\r\\t\\|\\.\\?\\*\\+\\(\\)\\{\\}\\^", "\n\r\t|.?*+(){}^"));
}

TEST(CXsdRegex, InvalidUtf8InTextMatchesOnlyAsReplacement) {
  EXPECT_FALSE(Match("[a-z]", "\xC3"));
  EXPECT_TRUE(Match(".", "\xFF"));
  EXPECT_TRUE(Match("..", "\xE2\x82"));       // a cut sequence is one replacement per byte
  EXPECT_TRUE(Match("...", "\xE0\x80\x80"));  // an overlong form is three bad bytes
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
