#include "OvXmlLib6/metadata/TypedCollections.h"

#include "CollectionTestSupport.h"
#include "OvXmlLib6/metadata/DateTimeCollections.h"
#include "unit/TestSupport.h"

#include <algorithm>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;
using namespace ovxml_test;

TEST(Ci4Col, FacetsRefuseValuesRead) {
  CSmartPtr<Ci4Col> col = new Ci4Col("value", "", 0, -1, nullptr, -1, -1, "0", "10");
  col->Add(10);
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

TEST(CstringCol, AListenerMayEmptyTheCollectionDuringAnInsertion) {
  // The value added is a stored one, which the listener removes on the add event: the insertion
  // goes on with its own copy, against the count left.
  CSmartPtr<CstringCol> col = new CstringCol("s", "", 0, -1);
  col->Add(std::string(100, 'a'));  // long enough to live on the heap
  struct CClearer : IEventSink {
    CstringCol* col = nullptr;
    void OnEvent(CXmlObjectBase*, MsgType type, void*) override {
      if (type == MsgType_CollectionAdd) col->Clear();
    }
  } clearer;
  clearer.col = col;
  col->AddEventListener(&clearer);
  col->AddAt(0, *col->begin());
  EXPECT_EQ(std::vector<std::string>(col->begin(), col->end()),
            std::vector<std::string>{std::string(100, 'a')});
  EXPECT_EQ(MessageOf([&] { col->Add(*col->begin()); }), "Index out of range");  // 1 > 0
  EXPECT_EQ(col->GetCount(), 0);
  col->RemoveEventListener(&clearer);
}

TEST(CbooleanCol, IteratesOverItsValuesAtRandom) {
  CSmartPtr<CbooleanCol> col = new CbooleanCol("b", "", 0, -1);
  for (bool value : {true, false, true}) col->Add(value);
  EXPECT_EQ(std::vector<bool>(col->begin(), col->end()), (std::vector<bool>{true, false, true}));
  EXPECT_EQ(col->end() - col->begin(), 3);
  EXPECT_FALSE(col->begin()[1]);
  EXPECT_EQ(std::count(col->begin(), col->end(), true), 2);
  auto last = col->end();
  EXPECT_TRUE(*--last);
  EXPECT_TRUE(col->begin() < last && last + 1 == col->end());
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
