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
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

}  // namespace

TEST(CConversions, DateKindsRoundTrip) {
  EXPECT_EQ(C::datetimeToString(C::datetimeFromString(" 2001-10-26T21:32:52.5+05:30 ", kCollapse)),
            "2001-10-26T21:32:52.5+05:30");
  EXPECT_EQ(C::dateToString(C::dateFromString("-0044-03-15", kNone)), "-0044-03-15");
  EXPECT_EQ(C::timeToString(C::timeFromString("12:00:00.500Z", kNone)), "12:00:00.5Z");
  EXPECT_EQ(C::yearMonthToString(C::yearMonthFromString("2004-05", kNone)), "2004-05");
  EXPECT_EQ(C::monthDayToString(C::monthDayFromString("--02-29", kNone)), "--02-29");
  // The kind comes from the text: a date parser given a year-month returns a gYearMonth.
  EXPECT_EQ(C::dateFromString("2004-05", kNone).GetType(), CDateTime::gYearMonth);
  EXPECT_EQ(C::datetimeFromString("2004-05-06T07:08:09", kNone).GetType(), CDateTime::dateTime);
  EXPECT_EQ(MessageOf([] { C::dateFromString("2003-02-29", kNone); }),
            "Invalid Day [29] (1 <= day <= days in month");
  EXPECT_EQ(MessageOf([] { C::datetimeFromString("2004-05-06", kNone); }),
            "Invalid XSD DateTime [2004-05-06]");
  // Trailing whitespace is not part of any date form.
  EXPECT_THROW(C::dateFromString("2004-05-06 ", kNone), COvInvalidValueException);
}

TEST(CConversions, CalendarPartsAndDurations) {
  EXPECT_EQ(C::yearFromString("2024", kNone), 2024);
  EXPECT_EQ(C::monthFromString("--03", kNone), 3);
  EXPECT_EQ(C::dayFromString(" ---07 ", kCollapse), 7);
  EXPECT_EQ(C::yearToString(C::yearFromString("0005", kNone)), "5");
  // A text of another kind fails in the getter.
  EXPECT_THROW(C::monthFromString("2024", kNone), COvInvalidStateException);
  EXPECT_THROW(C::dayFromString("--03", kNone), COvInvalidStateException);

  EXPECT_EQ(C::durationToString(C::durationFromString("-P1Y2M3DT4H5M6.5S", kNone)),
            "-P1Y2M3DT4H5M6.5S");
  EXPECT_EQ(C::durationToString(C::durationFromString("PT0S", kNone)), "P");
  EXPECT_EQ(MessageOf([] { C::durationFromString("P1H", kNone); }),
            "Invalid XSD Duration [P1H] expected [-]P[nY][nM][nD][T[nH][nM][nS.ff]]");
  EXPECT_EQ(MessageOf([] { C::durationFromString("", kNone); }),
            "Invalid XSD Duration (Empty String)");
}
