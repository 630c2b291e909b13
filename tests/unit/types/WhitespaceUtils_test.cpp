#include "OvXmlLib6/types/WhitespaceUtils.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::ExpectThrowMessage;
using WS = CWhitespaceUtils;

TEST(CWhitespaceUtils, RulesOnMixedWhitespace) {
  const std::string mixed = "  a \t\n b  ";
  EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule_None, mixed), mixed);
  EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule_Preserve, "a\r\nb\r"), "a\nb");
  EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule_Replace, "a\r\nb"), "a b");
  EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule_Replace, " a\tb\n"), " a b ");
  EXPECT_EQ(WS::ApplyRule(WS::WhitespaceRule_Collapse, mixed), "a b");
  // A CR neither ends nor starts a run: the letters join.
  EXPECT_EQ(WS::Collapse("a\rb"), "ab");
  EXPECT_EQ(WS::Collapse("a \r b"), "a b");
  EXPECT_EQ(WS::Collapse(" \t\r\n "), "");
  EXPECT_EQ(WS::Collapse(""), "");
  // Only the four XML whitespace bytes count.
  EXPECT_EQ(WS::Collapse("\va\f"), "\va\f");
  // Text that needs no change comes back unchanged, multi-byte UTF-8 included.
  EXPECT_EQ(WS::Collapse("d\xC3\xA9j\xC3\xA0 vu"), "d\xC3\xA9j\xC3\xA0 vu");
}

TEST(CWhitespaceUtils, PreserveOverloadsAndUnknownRule) {
  EXPECT_EQ(WS::Preserve("x\ry"), "xy");
  EXPECT_EQ(WS::Preserve("a\rbcd", 3), "ab");
  EXPECT_EQ(WS::Preserve("abc", 0), "");
  EXPECT_EQ(WS::Preserve("abc", -4), "");
  EXPECT_TRUE(WS::IsWhiteSpace('\r'));
  EXPECT_FALSE(WS::IsWhiteSpace('\v'));
  ExpectThrowMessage([&] { WS::ApplyRule(static_cast<WS::WhitespaceRule>(4), "x"); },
                     "Unknown WhitespaceRule");
}
