#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;
using C = CConversions;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;
constexpr auto kPreserve = CWhitespaceUtils::WhitespaceRule_Preserve;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

}  // namespace

TEST(CConversions, Booleans) {
  EXPECT_TRUE(C::booleanFromString("TRUE", kNone));
  EXPECT_TRUE(C::booleanFromString(" tRuE ", kCollapse));
  EXPECT_FALSE(C::booleanFromString("False", kNone));
  EXPECT_TRUE(C::booleanFromString("1", kNone));
  EXPECT_FALSE(C::booleanFromString("0", kNone));
  for (const char* bad : {"yes", "", "01", " true", "truex"}) {
    EXPECT_EQ(MessageOf<COvInvalidValueException>([bad] { C::booleanFromString(bad, kNone); }),
              std::string("A Boolean Value read from an XML document was invalid [") + bad +
                  "]. Valid values are 'true', 'false', '1', or '0'");
  }
  EXPECT_EQ(C::booleanToString(true), "true");
  EXPECT_EQ(C::booleanToString(false), "false");
}

TEST(CConversions, CharsAndStrings) {
  EXPECT_EQ(C::charFromString("x", kNone), 'x');
  EXPECT_EQ(C::charFromString(" x ", kCollapse), 'x');
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::charFromString("", kNone); }),
            "The value [] can not be a char as it is either empty of greater than 1 char long");
  EXPECT_EQ(MessageOf<COvInvalidValueException>([] { C::charFromString("ab", kNone); }),
            "The value [ab] can not be a char as it is either empty of greater than 1 char long");
  EXPECT_EQ(C::charToString('q'), "q");
  EXPECT_EQ(C::charToString('\0'), "");
  EXPECT_EQ(C::stringFromString("a\r\n b", kPreserve), "a\n b");
  EXPECT_EQ(C::stringToString("<&>"), "<&>");
}

TEST(CConversions, BinaryAndCalendarParts) {
  EXPECT_EQ(C::hexBinaryToString(C::hexBinaryFromString(" 0aff ", kCollapse)), "0AFF");
  EXPECT_THROW(C::hexBinaryFromString("0g", kNone), COvException);
  EXPECT_EQ(C::base64BinaryToString(C::base64BinaryFromString("SGVs\nbG8=", kNone)), "SGVsbG8=");
  EXPECT_EQ(C::yearToString(5), "5");
  EXPECT_EQ(C::yearToString(2024), "2024");
  EXPECT_EQ(C::monthToString(3), "--03");
  EXPECT_EQ(C::dayToString(7), "---07");
  EXPECT_EQ(C::dayToString(31), "---31");
}
