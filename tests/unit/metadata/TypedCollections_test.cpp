#include "OvXmlLib6/metadata/TypedCollections.h"

#include "CollectionTestSupport.h"
#include "OvXmlLib6/metadata/DateTimeCollections.h"
#include "OvXmlLib6/types/Conversions.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;
using test::ExpectThrowMessage;
using namespace ovxml_test;

TEST(Ci4Col, AddAtRemoveAndItemWithEventsCarryingTheRealIndex) {
  CSmartPtr<Ci4Col> col = new Ci4Col("value", "", 0, -1);
  CRecorder recorder;
  col->AddEventListener(&recorder);
  col->Add(3);
  col->AddAt(0, 1);
  col->AddAt(1, 2);
  col->AddAt(3, 4);  // count: appends
  EXPECT_EQ(std::vector<std::int32_t>(col->begin(), col->end()),
            (std::vector<std::int32_t>{1, 2, 3, 4}));
  EXPECT_EQ(col->Item(2), 3);

  recorder.events.clear();
  col->Remove(2);
  EXPECT_EQ(recorder.events, (std::vector<std::string>{"remove 2", "removeComplete 2", "change"}));

  // The add event has gone out before the index is refused.
  recorder.events.clear();
  EXPECT_EQ(MessageOf([&] { col->AddAt(5, 9); }), "Index out of range");
  EXPECT_EQ(recorder.events, (std::vector<std::string>{"add"}));
  EXPECT_EQ(col->GetCount(), 3);
  EXPECT_EQ(MessageOf([&] { col->Item(3); }), "Index 3 is out of range, use 0 - 2");
  recorder.events.clear();
  EXPECT_EQ(MessageOf([&] { col->Remove(-1); }), "Index -1 is out of range, use 0 - 2");
  EXPECT_EQ(recorder.events, (std::vector<std::string>{"remove -1"}));

  recorder.events.clear();
  col->Clear();
  EXPECT_EQ(col->GetCount(), 0);
  EXPECT_EQ(recorder.events.size(), 9u);  // three removals of index 0, three events each
  EXPECT_EQ(recorder.events[3], "remove 0");
  col->RemoveEventListener(&recorder);

  Ci4Col onStack("value", "", 0, -1);  // the defaults make the short form complete
  EXPECT_EQ(MessageOf([&] { onStack.Item(0); }), "Index 0 is out of range, use 0 - -1");
}

TEST(Ci4Col, FacetsRefuseValuesAddedOrRead) {
  CSmartPtr<Ci4Col> col = new Ci4Col("value", "", 0, -1, nullptr, -1, -1, "0", "10");
  col->Add(10);
  EXPECT_EQ(MessageOf([&] { col->Add(11); }), "Invalid Value for value [11]");
  EXPECT_EQ(MessageOf([&] { col->AddAt(0, -1); }), "Invalid Value for value [-1]");
  EXPECT_EQ(MessageOf([&] { CAccess::Read(col, "<r><value> 5 </value><value>12</value></r>"); }),
            "Invalid Value for value [12]");
  EXPECT_EQ(std::vector<std::int32_t>(col->begin(), col->end()),
            (std::vector<std::int32_t>{10, 5}));
}

TEST(Ci4Col, WritesOneElementPerValueAndChecksTheCount) {
  CSmartPtr<Ci4Col> col = new Ci4Col("v", "urn:a", 2, 3);
  col->Add(1);
  CXmlSerializationContext context;
  EXPECT_EQ(MessageOf([&] { CAccess::Write(col, context); }),
            "The Minimum number of [v] elements allowed in this collection is 2");
  context.SetIgnoreInvalidCollectionCounts(true);
  EXPECT_EQ(CAccess::Write(col, context), "<AA:v xmlns:AA=\"urn:a\">1</AA:v>");
  col->Add(2);
  col->Add(3);
  EXPECT_EQ(CAccess::Write(col),
            "<AA:v xmlns:AA=\"urn:a\">1</AA:v><AA:v xmlns:AA=\"urn:a\">2</AA:v>"
            "<AA:v xmlns:AA=\"urn:a\">3</AA:v>");
  col->Add(4);
  EXPECT_EQ(MessageOf([&] { CAccess::Write(col); }),
            "The Maximum number of [v] elements allowed in this collection is 3");
}

TEST(Ci4Col, ReadingStopsAtTheFirstElementOfAnotherNameOrNamespace) {
  CSmartPtr<Ci4Col> col = new Ci4Col("v", "urn:a", 0, -1);
  EXPECT_EQ(CAccess::Read(col, "<r xmlns:a='urn:a'><a:v>1</a:v><a:v>2</a:v><v>3</v></r>"), "v");
  EXPECT_EQ(col->GetCount(), 2);
  CXmlSerializationContext ignoring;
  ignoring.SetIgnoreNamespaces(true);
  col->Clear();
  EXPECT_EQ(CAccess::Read(col, "<r xmlns:a='urn:a'><a:v>1</a:v><v>3</v><w/></r>", ignoring), "w");
  EXPECT_EQ(col->GetCount(), 2);
}

TEST(CTypedCollections, EveryTypeRoundTripsItsText) {
  // One value per type, read from text and written back.
  auto roundTrip = [](CXmlObjectBase* col, const char* text) {
    const std::string xml = std::string("<r><v>") + text + "</v></r>";
    CAccess::Read(col, xml.c_str());
    return CAccess::Write(col);
  };
  auto check = [&](CXmlObjectBase* col, const char* text) {
    CSmartPtr<CXmlObjectBase> hold(col);
    EXPECT_EQ(roundTrip(col, text), std::string("<v>") + text + "</v>") << text;
  };
  check(new ChexBinaryCol("v", "", 0, -1), "0AFF");
  check(new Cbase64BinaryCol("v", "", 0, -1), "AAEC");
  check(new Ci1Col("v", "", 0, -1), "-128");
  check(new Ci2Col("v", "", 0, -1), "-32768");
  check(new Ci8Col("v", "", 0, -1), "-9223372036854775808");
  check(new Cui1Col("v", "", 0, -1), "255");
  check(new Cui2Col("v", "", 0, -1), "65535");
  check(new Cui4Col("v", "", 0, -1), "4294967295");
  check(new Cui8Col("v", "", 0, -1), "18446744073709551615");
  check(new Cr8Col("v", "", 0, -1), "INF");
  check(new CdurationCol("v", "", 0, -1), "P1Y2M");
  check(new CyearCol("v", "", 0, -1), "2024");
  check(new CmonthCol("v", "", 0, -1), "--05");
  check(new CdayCol("v", "", 0, -1), "---09");
  check(new CbooleanCol("v", "", 0, -1), "true");
  check(new CdecimalCol("v", "", 0, -1), "-12.5");
  check(new CintegerCol("v", "", 0, -1), "123456789012345678901234567890");
  check(new CdateCol("v", "", 0, -1), "2024-02-29");
  check(new CdatetimeCol("v", "", 0, -1), "2024-02-29T10:20:30Z");
  check(new CtimeCol("v", "", 0, -1), "10:20:30");
  check(new CmonthDayCol("v", "", 0, -1), "--02-29");
  check(new CyearMonthCol("v", "", 0, -1), "2024-02");
  // Strings keep their blanks by default; other types collapse them.
  check(new CstringCol("v", "", 0, -1), " two  words ");
  CSmartPtr<Cr4Col> real = new Cr4Col("v", "", 0, -1);
  CAccess::Read(real, "<r><v>\n 1.5 \n</v></r>");
  EXPECT_EQ(real->Item(0), 1.5f);
}

TEST(CdateCol, RefusesDatesOfAnotherKind) {
  CSmartPtr<CdateCol> dates = new CdateCol("d", "", 0, -1);
  CRecorder recorder;
  dates->AddEventListener(&recorder);
  const CDateTime dateTime = CConversions::datetimeFromString(
      "2024-01-02T03:04:05", CWhitespaceUtils::WhitespaceRule_Collapse);
  ExpectThrowMessage<COvInvalidParamException>(
      [&] { dates->Add(dateTime); }, "Dates added to this collection must be of type dt_date");
  EXPECT_TRUE(recorder.events.empty());  // refused before any event
  dates->RemoveEventListener(&recorder);

  const CDateTime date =
      CConversions::dateFromString("2024-01-02", CWhitespaceUtils::WhitespaceRule_Collapse);
  EXPECT_EQ(
      MessageOf([&] { CSmartPtr<CdatetimeCol>(new CdatetimeCol("d", "", 0, -1))->Add(date); }),
      "Dates added to this collection must be of type dt_dateTime");
  EXPECT_EQ(MessageOf([&] { CSmartPtr<CtimeCol>(new CtimeCol("d", "", 0, -1))->Add(date); }),
            "Dates added to this collection must be of type dt_time");
  EXPECT_EQ(
      MessageOf([&] { CSmartPtr<CmonthDayCol>(new CmonthDayCol("d", "", 0, -1))->Add(date); }),
      "Dates added to this collection must be of type dt_gMonthDay");
  EXPECT_EQ(
      MessageOf([&] { CSmartPtr<CyearMonthCol>(new CyearMonthCol("d", "", 0, -1))->Add(date); }),
      "Dates added to this collection must be of type dt_gYearMonth");

  // Date facets are checked too, on adding and on reading.
  CSmartPtr<CdateCol> bounded =
      new CdateCol("d", "", 0, -1, nullptr, -1, -1, nullptr, "2024-01-01");
  EXPECT_EQ(MessageOf([&] { bounded->Add(date); }), "Invalid Value for d [2024-01-02]");
  dates->Add(date);
  dates->AddAt(0, date);
  EXPECT_EQ(MessageOf([&] { dates->AddAt(3, date); }), "Index out of range");
  EXPECT_EQ(dates->GetCount(), 2);
}

TEST(CstringCol, CopiesKeepTheValuesAndLimits) {
  CstringCol original("s", "urn:s", 1, 4, nullptr, -1, 3);
  original.Add("abc");
  EXPECT_EQ(MessageOf([&] { original.Add("abcd"); }), "Invalid Value for s [abcd]");
  CstringCol copy(original);
  copy.Add("x");
  EXPECT_EQ(std::vector<std::string>(copy.begin(), copy.end()),
            (std::vector<std::string>{"abc", "x"}));
  EXPECT_EQ(original.GetCount(), 1);
  EXPECT_EQ(copy.GetMaxOccurs(), 4);
  EXPECT_EQ(copy.GetNamespace(), "urn:s");
  EXPECT_EQ(MessageOf([&] { copy.Add("long"); }), "Invalid Value for s [long]");
}
