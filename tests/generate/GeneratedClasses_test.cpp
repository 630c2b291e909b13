// The classes generated at build time from the test schemas: documents read
// into them and written back, as XML and through Fast Infoset, keep their content; values reach
// the typed accessors; invalid documents and values fail with the engine's messages.
#include "library/common.h"
#include "library/library.h"
#include "library/people.h"
#include "unit/TestSupport.h"
#include "zoo/birds.h"
#include "zoo/zoo.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using namespace OvXmlLib6;

// The canonical form of a document: blank text left out (bound objects keep no layout) and
// xsi:type values without their prefix, since the prefix a writer picks is its own (reading
// the written document back checks that it names the right type).
std::string CanonicalOf(const std::string& xml) {
  CXmlDocument document;
  document.LoadXml(xml.c_str());
  std::vector<std::string> lines;
  test::Canonical(document.GetDocumentElement(), 0, lines, false);
  const std::string marker = "{http://www.w3.org/2001/XMLSchema-instance}type = ";
  std::string out;
  for (std::string& line : lines) {
    const std::size_t at = line.find(marker);
    const std::size_t colon = line.find(':', at);
    if (at != std::string::npos && colon != std::string::npos) {
      line.erase(at + marker.size(), colon + 1 - at - marker.size());
    }
    out += line + "\n";
  }
  return out;
}

// Reads the document into a new T, writes it back as XML and through Fast Infoset (plain and
// with typed encodings), and expects the same content each way; returns the object. Attributes
// equal to their defaults are left out on writing, as the documents leave them out. `expected`
// is the document as written when it differs from the input (an all group is written in schema
// order).
template <class T>
CSmartPtr<T> ExpectRoundTrip(const std::string& xml, std::string expected = std::string()) {
  if (expected.empty()) expected = xml;
  CSmartPtr<T> object = new T();
  CXmlSerializationContext plain;
  plain.SetNoOptionalAttributeDefaultOutput(true);
  CXmlSerializationContext typed;
  typed.SetNoOptionalAttributeDefaultOutput(true);
  typed.GetFIContext().SetSuggestedValues();
  try {
    object->FromXml(xml.c_str());
    const std::string written = object->ToXml(false, false, EOLType_LF, plain);
    EXPECT_EQ(CanonicalOf(written), CanonicalOf(expected));
    for (const CXmlSerializationContext* context : {&plain, &typed}) {
      const CBinaryData fi = object->ToFastInfosetStream(FInfoDecl_None, *context);
      CSmartPtr<T> again = new T();
      again->FromXmlStream(fi, *context);
      EXPECT_EQ(again->ToXml(false, false, EOLType_LF, plain), written);
    }
  } catch (const COvException& e) {
    ADD_FAILURE() << e.GetFullMessage();
  }
  return object;
}

// A document that must fail, read into a new object and written back, and the failure's
// message (or a part of it).
struct CFailure {
  const char* what;
  std::string xml;
  const char* message;
};

template <class T>
void ExpectFailures(const std::vector<CFailure>& cases) {
  for (const CFailure& c : cases) {
    CSmartPtr<T> object = new T();
    std::string message = "no exception";
    try {
      object->FromXml(c.xml.c_str());
      object->ToXml();
    } catch (const COvException& e) {
      message = e.GetFullMessage();
    }
    EXPECT_NE(message.find(c.message), std::string::npos) << c.what << ": " << message;
  }
}

std::string Library() { return test::ReadFile(OVXML_GENERATE_SOURCE_DIR "/instances/library.xml"); }

TEST(GeneratedClasses, LibraryRoundTripsAndReachesEveryKindOfMember) {
  const CSmartPtr<lib::CLibrary> library = ExpectRoundTrip<lib::CLibrary>(Library());
  // Built-in types in an all group.
  const lib::CInfo& info = *library->GetInfo();
  EXPECT_EQ(info.GetName(), "City  Library");
  EXPECT_EQ(info.GetCode(), "LIB");
  EXPECT_TRUE(info.GetOpen());
  EXPECT_EQ(info.GetMembers(), 4000000000u);
  EXPECT_EQ(info.GetVisitors(), -9000000000LL);
  EXPECT_EQ(info.GetFloors(), -2);
  EXPECT_EQ(info.GetClosedMonth(), 8);
  EXPECT_EQ(test::Bytes(info.GetLogo()), std::string("\x0A\x1B\x2C"));
  EXPECT_FALSE(lib::CInfo().IsOpenSet());
  // A referenced element of another namespace, of a restricted type chosen by xsi:type; and
  // attributes with defaults and fixed values.
  EXPECT_NE(dynamic_cast<const lib::CAnonymous*>(library->GetEditor().get()), nullptr);
  EXPECT_EQ(library->GetEditor()->GetName(), "anonymous");
  EXPECT_EQ(library->GetCheckedBy(), "ann");
  EXPECT_EQ(library->GetAnyAttributes()->GetCount(), 1);
  // Repeated classes, a choice with a collection branch and a sequence branch.
  ASSERT_EQ(library->GetBook()->GetCount(), 2);
  const CSmartPtr<lib::CBook> first = library->GetBook()->Item(1);
  EXPECT_EQ(first->GetGenre(), lib::ProseGenre_fiction);
  EXPECT_TRUE(first->GetLoanable());
  EXPECT_EQ(first->GetLang(), "en");
  EXPECT_EQ(first->GetShelf(), 2);
  ASSERT_EQ(first->GetBookChoice()->GetAuthor()->GetCount(), 2);
  EXPECT_FALSE(first->GetBookChoice()->GetAuthor()->Item(0)->GetLiving());
  EXPECT_EQ(first->GetBookChoice()->GetAuthor()->Item(0)->GetPseudonym()->Item(0), "A Lady");
  EXPECT_EQ(first->GetPrice()->GetValue().ToString(), "4.5");
  EXPECT_EQ(first->GetPrice()->GetCurrency(), "GBP");
  EXPECT_EQ(first->GetPrice()->GetDiscount(), 10);
  EXPECT_EQ(first->GetCopies()->GetCopy()->Item(1)->GetState(), lib::CopyState_damaged);
  EXPECT_EQ(first->GetCopies()->GetCopy()->Item(0)->GetState(), lib::CopyState_ok);
  const CSmartPtr<lib::CBook> second = library->GetBook()->Item(0);
  EXPECT_EQ(second->GetGenre(), lib::ProseGenre_NonFiction);
  EXPECT_FALSE(second->GetLoanable());
  EXPECT_EQ(second->GetBookChoice()->GetAuthor()->GetCount(), 0);
  // xsi:type picks the extension of a type that is used on its own too.
  const auto* editor = dynamic_cast<const lib::CAuthor*>(
      second->GetBookChoice()->GetBookChoiceSequence()->GetEditedBy().get());
  ASSERT_NE(editor, nullptr);
  EXPECT_EQ(editor->GetPseudonym()->Item(0), "E.");
  EXPECT_EQ(second->GetBookChoice()->GetBookChoiceSequence()->GetVolume(), 2);
  // Repeated simple values, enumerated ones as their texts.
  EXPECT_EQ(library->GetShelf()->GetCount(), 2);
  EXPECT_EQ(library->GetGenre()->Item(0), "poetry");
  // A repeated abstract type, chosen by xsi:type; an extension that holds a choice.
  ASSERT_EQ(library->GetExhibit()->GetCount(), 2);
  EXPECT_NE(dynamic_cast<const lib::CCircle*>(library->GetExhibit()->Item(1).get()), nullptr);
  const auto* square = dynamic_cast<const lib::CSquare*>(library->GetExhibit()->Item(0).get());
  ASSERT_NE(square, nullptr);
  EXPECT_TRUE(square->GetRotated());
  EXPECT_EQ(square->GetSquareChoice()->GetSelectedElement(), "diagonal");
  // A group reference with a nested optional choice; mixed content; anyType; wildcards.
  EXPECT_EQ(library->GetOpening()->GetOpeningChoice()->GetSelectedElement(), "closedFor");
  EXPECT_EQ(library->GetNote()->GetText(), "Open  except holidays.");
  ASSERT_EQ(library->GetEvents()->GetEventsChoice()->GetCount(), 3);
  EXPECT_EQ(library->GetEvents()->GetEventsChoice()->Item(1)->GetReading(), "Odes");
  ASSERT_EQ(library->GetClosures()->GetClosuresSequence()->GetCount(), 2);
  EXPECT_EQ(
      CConversions::dateToString(library->GetClosures()->GetClosuresSequence()->Item(1)->GetFrom()),
      "2026-12-31");
  EXPECT_EQ(library->GetExtra()->GetChildElements()->GetCount(), 1);
  EXPECT_EQ(library->GetAny()->GetCount(), 2);
}

TEST(GeneratedClasses, BuiltFromTheAccessorsTheLibraryWritesAndReadsBack) {
  CSmartPtr<lib::CLibrary> library = new lib::CLibrary();
  library->GetInfo()->SetName("Branch");
  library->GetInfo()->SetCode("BR1");
  CSmartPtr<lib::CBook> book = library->GetBook()->Add();
  book->SetIsbn("0123456789");
  book->SetTitle("T");
  book->SetGenre(lib::ProseGenre_NonFiction);
  book->GetCopies()->GetCopy()->Add()->SetBarcode(CBigInteger(7));
  CSmartPtr<lib::CAuthor> author = new lib::CAuthor();
  author->SetId("x1");
  author->SetName("N");
  book->GetBookChoice()->GetAuthor()->Add(author);
  CSmartPtr<lib::CCircle> circle = new lib::CCircle();
  circle->SetLabel("Globe");
  circle->SetRadius(0.5);
  library->GetExhibit()->Add(circle);
  CXmlSerializationContext noDefaults;
  noDefaults.SetNoOptionalAttributeDefaultOutput(true);
  const std::string xml = library->ToXml(false, false, EOLType_LF, noDefaults);
  EXPECT_NE(xml.find(":book genre=\"non-fiction\""), std::string::npos) << xml;
  EXPECT_NE(xml.find(":exhibit"), std::string::npos) << xml;
  EXPECT_NE(xml.find(":author id=\"x1\">"), std::string::npos) << xml;  // no xsi:type
  const CSmartPtr<lib::CLibrary> again = ExpectRoundTrip<lib::CLibrary>(xml);
  EXPECT_NE(dynamic_cast<const lib::CCircle*>(again->GetExhibit()->Item(0).get()), nullptr);
  EXPECT_EQ(again->GetVersion(), "1.0");  // the fixed value, never set
}

TEST(GeneratedClasses, AllGroupReadsInAnyOrder) {
  std::string xml = Library();
  const std::size_t code = xml.find("    <code>LIB</code>\n");
  xml.erase(code, 22);
  xml.insert(xml.find("    <homepage>"), "    <code>LIB</code>\n");
  CSmartPtr<lib::CLibrary> library = new lib::CLibrary();
  library->FromXml(xml.c_str());
  EXPECT_EQ(library->GetInfo()->GetCode(), "LIB");
}

// Invalid documents and values fail with the engine's messages, naming the path to the fault.
TEST(GeneratedClasses, InvalidDocumentsAndValuesFail) {
  const std::string library = Library();
  const auto replaced = [&](const std::string& from, const std::string& to) {
    std::string xml = library;
    xml.replace(xml.find(from), from.size(), to);
    return xml;
  };
  const std::vector<CFailure> cases = {
      {"a missing required element", replaced("<title>Pride and Prejudice</title>", ""),
       "Failed to find a required element [title]"},
      {"an element its restricted type leaves out",
       replaced("<p:name>anonymous</p:name>", "<p:name>anonymous</p:name><p:born>1970</p:born>"),
       "The unexpected element [born] remains un processed"},
      {"a value its restricted type does not allow",
       replaced("<p:name>anonymous</p:name>", "<p:name>Eve</p:name>"), "Eve"},
      {"a missing required attribute", replaced("<copy barcode=\"3\"/>", "<copy/>"),
       "Failed to find the required Attribute [barcode]"},
      {"a text that is not of the enumeration", replaced("genre=\"fiction\"", "genre=\"drama\""),
       "The value [drama] is not one of the enumeration [ProseGenre]"},
      {"an xsi:type that names no extension", replaced("xsi:type=\"Square\"", "xsi:type=\"Cube\""),
       "Failed to find a suitable substitution element for [exhibit]"},
      {"an unknown attribute", replaced("shelf=\"2\"", "shelf=\"2\" colour=\"red\""), "colour"},
      {"a value out of its range",
       replaced("<published>1813</published>", "<published>1200</published>"), "1200"},
      {"a pattern broken", replaced("<isbn>0123456789</isbn>", "<isbn>12345</isbn>"), "12345"},
  };
  ExpectFailures<lib::CLibrary>(cases);

  // Values set through the accessors are checked when written.
  CSmartPtr<lib::CLibrary> object = new lib::CLibrary();
  object->FromXml(library.c_str());
  object->GetInfo()->SetCode("TOO LONG");
  EXPECT_NE(test::MessageOf([&] { object->ToXml(); }), "no exception");
  object->FromXml(library.c_str());
  object->GetBook()->Item(1)->GetPrice()->SetValue(CDecimal("7.25"));  // fractionDigits 1
  EXPECT_NE(test::MessageOf([&] { object->ToXml(); }), "no exception");
  CSmartPtr<lib::CSquareChoice> choice = new lib::CSquareChoice();
  choice->SetSide(2);
  EXPECT_EQ(test::MessageOf<COvInvalidStateException>([&] { choice->SetDiagonal(1.0); }),
            "The Property side is already set. Only one element within this class bay be set at "
            "a time");
}

std::string Zoo() { return test::ReadFile(OVXML_GENERATE_SOURCE_DIR "/instances/zoo.xml"); }

TEST(GeneratedClasses, SubstitutionGroupMembersStandForTheirHeads) {
  const CSmartPtr<zoo::CZoo> zoo = ExpectRoundTrip<zoo::CZoo>(Zoo());
  EXPECT_EQ(zoo->GetKeeper(), "Ann");
  // A head that stands for itself too, and one of its members.
  ASSERT_TRUE(zoo->IsNoteChoiceSet());
  EXPECT_EQ(zoo->GetNoteChoice()->GetSelectedElement(), "sign");
  EXPECT_EQ(zoo->GetNoteChoice()->GetSign(), "Do not feed");
  // A repeated abstract head: members of members, of another namespace, in any order.
  const auto& animals = *zoo->GetAnimalChoice();
  ASSERT_EQ(animals.GetCount(), 5);
  EXPECT_EQ(animals.Item(0)->GetMammal()->GetName(), "Rex");
  EXPECT_FALSE(animals.Item(0)->GetMammal()->IsLegsSet());
  EXPECT_EQ(animals.Item(1)->GetPenguin()->GetWingspan().ToString(), "0.5");
  EXPECT_EQ(animals.Item(2)->GetCat()->GetLegs(), 3);
  EXPECT_TRUE(animals.Item(3)->GetReptile()->GetVenomous());
  EXPECT_EQ(animals.Item(4)->GetBird()->GetName(), "Polly");
  EXPECT_EQ(zoo->GetCapacity(), 250);
  EXPECT_EQ(zoo->GetMotto(), "Wild at heart");
  // A type whose content holds elements of its extension.
  const auto* vet = dynamic_cast<const zoo::CVet*>(zoo->GetStaffChoice()->GetVet().get());
  ASSERT_NE(vet, nullptr);
  EXPECT_EQ(vet->GetLicence(), "V-1");
  ASSERT_EQ(vet->GetStaffChoice()->GetCount(), 2);
  EXPECT_EQ(vet->GetStaffChoice()->Item(0)->GetStaff()->GetName(), "Tim");
  EXPECT_EQ(vet->GetStaffChoice()->Item(1)->GetVet()->GetLicence(), "V-2");
  // A reference in a choice is branches of that choice.
  ASSERT_EQ(zoo->GetEnclosure()->GetCount(), 2);
  EXPECT_EQ(zoo->GetEnclosure()->Item(0)->GetCat()->GetName(), "Felix");
  EXPECT_EQ(zoo->GetEnclosure()->Item(1)->GetSelectedElement(), "vacant");

  // Built through the accessors, a member is written under its own name.
  CSmartPtr<zoo::CZoo> built = new zoo::CZoo();
  built->SetKeeper("Bo");
  CSmartPtr<zoo::CMammal> cat = new zoo::CMammal();
  cat->SetName("Kit");
  built->GetAnimalChoice()->Add()->SetCat(cat);
  const std::string xml = built->ToXml(false, false);
  EXPECT_NE(xml.find(":cat>"), std::string::npos) << xml;
  ExpectRoundTrip<zoo::CZoo>(xml);
}

// A document whose document element is a member of a substitution group: the factory makes
// the member's class from the element's name.
TEST(GeneratedClasses, FactoryMakesTheClassOfADocumentElement) {
  const std::string xml = test::ReadFile(OVXML_GENERATE_SOURCE_DIR "/instances/penguin.xml");
  CXmlDocument document;
  document.LoadXml(xml.c_str());
  const CXmlElement* root = document.GetDocumentElement();
  const CSmartPtr<CXmlObjectBase> made =
      zoo::CZooFactory::CreateForElement(root->GetLocalName(), root->GetNamespaceURI());
  auto* penguin = dynamic_cast<zoo::CPenguin*>(made.get());
  ASSERT_NE(penguin, nullptr);
  penguin->FromXml(xml.c_str());
  EXPECT_EQ(penguin->GetName(), "Pingu");
  EXPECT_EQ(CanonicalOf(penguin->ToXml()), CanonicalOf(xml));
  EXPECT_NE(
      dynamic_cast<zoo::CCat*>(zoo::CZooFactory::CreateForElement("cat", "urn:test:zoo").get()),
      nullptr);
  EXPECT_EQ(zoo::CZooFactory::CreateForElement("animal", "urn:test:zoo"), nullptr);  // abstract
  EXPECT_EQ(zoo::CZooFactory::CreateForElement("cat", "urn:test:birds"), nullptr);
}

// An empty element takes its default or fixed value; a document outside the schema fails with
// the engine's messages: elements that may not stand for a head, xsi:nil (not represented) on a
// member that cannot read as empty, a fixed value contradicted (checked when written).
TEST(GeneratedClasses, ZooEmptyElementsAndDocumentsOutsideTheSchema) {
  const std::string zoo = Zoo();
  const auto replaced = [&](std::string xml, const std::string& from, const std::string& to) {
    for (std::size_t at = 0; (at = xml.find(from, at)) != std::string::npos; at += to.size()) {
      xml.replace(at, from.size(), to);
    }
    return xml;
  };
  const std::string nil =
      " xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" xsi:nil=\"true\"";
  std::string empty = replaced(zoo, "<capacity>250</capacity>", "<capacity/>");
  empty = replaced(empty, "<status>open</status>", "<status/>");
  empty = replaced(empty, "<legs>3</legs>", "<legs></legs>");
  empty = replaced(empty, "<keeper>Ann</keeper>", "<keeper" + nil + "/>");
  std::string filled = replaced(zoo, "<capacity>250</capacity>", "<capacity>100</capacity>");
  filled = replaced(filled, "<legs>3</legs>", "<legs>4</legs>");
  filled = replaced(filled, "<keeper>Ann</keeper>", "<keeper/>");
  const CSmartPtr<zoo::CZoo> read = ExpectRoundTrip<zoo::CZoo>(empty, filled);
  EXPECT_EQ(read->GetCapacity(), 100);
  EXPECT_EQ(read->GetStatus(), "open");
  EXPECT_EQ(read->GetAnimalChoice()->Item(2)->GetCat()->GetLegs(), 4);
  EXPECT_EQ(read->GetKeeper(), "");

  const std::vector<CFailure> cases = {
      {"an abstract head", replaced(zoo, "mammal>", "animal>"),
       "The Minimum number of [ZooAnimalChoice] elements allowed in this collection is 1"},
      {"an abstract member",
       replaced(replaced(zoo, "reptile", "unicorn"), " venomous=\"true\"", ""),
       "The unexpected element [unicorn] remains un processed"},
      {"a member of another namespace", replaced(zoo, "b:bird>", "bird>"),
       "The unexpected element [bird] remains un processed"},
      {"a member of a head that blocks substitution", replaced(zoo, "motto>", "slogan>"),
       "The unexpected element [slogan] remains un processed"},
      {"two members for one head", replaced(zoo, "<sign>", "<note>a</note><sign>"),
       "The Minimum number of [ZooAnimalChoice] elements allowed in this collection is 1"},
      {"xsi:nil on a number", replaced(zoo, "<budget>1000.5</budget>", "<budget" + nil + "/>"),
       "The element [budget] is empty: xsi:nil is not represented"},
      {"xsi:nil on a class", replaced(zoo, "<mammal>", "<mammal" + nil + ">"),
       "Unexpected Attribute [nil] found."},
      {"a fixed value contradicted", replaced(zoo, "<status>open", "<status>closed"),
       "Invalid Value for status [closed]"},
  };
  ExpectFailures<zoo::CZoo>(cases);
}

TEST(GeneratedClasses, CleanUpFreesTheTablesAndTheyComeBack) {
  lib::CLibraryFactory::CleanUp();
  ExpectRoundTrip<lib::CLibrary>(Library());
  lib::CLibraryFactory::CleanUp();
}

}  // namespace
