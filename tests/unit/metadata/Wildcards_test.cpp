#include "CollectionTestSupport.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/metadata/Element.h"
#include "unit/TestSupport.h"

#include <cstdio>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>
#include <vector>

using namespace OvXmlLib6;
using test::ExpectThrowMessage;
using namespace ovxml_test;

namespace {

std::string Names(const CElementCol& children) {
  std::string names;
  for (CElement* child : children) names += child->GetName() + ";";
  return names;
}

}  // namespace

TEST(CElement, ConstructionChecksNamesAndNamespaces) {
  ExpectThrowMessage<COvInvalidNamespaceException>(
      [&] { CSmartPtr<CElement> e = new CElement("a", "##any"); }, "Invalid Namespace [##any]");
  EXPECT_EQ(MessageOf([] { CSmartPtr<CElement> e = new CElement(nullptr); }),
            "Element Name must have a value");
  EXPECT_EQ(MessageOf([] { CSmartPtr<CElement> e = new CElement("a", "", nullptr, ""); }),
            "Namespace Restriction must have a value");
  EXPECT_EQ(MessageOf([] { CSmartPtr<CElement> e = new CElement("a", "", "##any", nullptr); }),
            "Target Namespace must have a value");
  EXPECT_EQ(
      MessageOf([] { CSmartPtr<CElement> e = new CElement("a", "urn:t", "##other", "urn:t"); }),
      "Invalid namespace [urn:t]. The namespace must be one of [##other] where the target "
      "namespace is [urn:t]");
  CSmartPtr<CElement> owner = new CElement("o", "urn:o");
  CSmartPtr<CElement> owned = new CElement(owner, "x");
  EXPECT_EQ(owned->GetNamespace(), "urn:o");
}

TEST(CElement, ReadsAndWritesAWholeDocument) {
  CSmartPtr<CElement> root = new CElement("root");
  root->FromXml(
      "<o:order xmlns:o='urn:o' id='7' o:state='open'>"
      "<o:line n='1'>pen</o:line><o:line n='2'/><note xmlns=''>hi<b>!</b></note></o:order>");
  EXPECT_EQ(root->GetName(), "order");
  EXPECT_EQ(root->GetNamespace(), "urn:o");
  ASSERT_EQ(root->GetAttributes()->GetCount(), 2);
  CSmartPtr<CAttribute> state = root->GetAttributes()->Item(1);
  EXPECT_EQ(state->GetName(), "state");
  EXPECT_EQ(state->GetNamespace(), "urn:o");
  EXPECT_EQ(state->GetValue(), "open");
  EXPECT_EQ(Names(*root->GetChildElements()), "line;line;note;");
  EXPECT_EQ(root->GetChildElements()->Item(0)->GetText(), "pen");

  const std::string xml = root->ToXml(false, false, EOLType_LF);
  EXPECT_EQ(xml,
            "<AA:order xmlns:AA=\"urn:o\" id=\"7\" AA:state=\"open\"><AA:line n=\"1\">pen</AA:line>"
            "<AA:line n=\"2\"/><note>hi<b>!</b></note></AA:order>");

  // A copy of a parsed tree takes everything, without namespace checks.
  CSmartPtr<CElement> copy = new CElement("copy", "", "##local", "");
  {
    CXmlDocument document;
    document.LoadXml("<o:order xmlns:o='urn:o' id='7'><o:line>pen</o:line><x><y/></x></o:order>");
    copy->CopyXmlElement(document.GetDocumentElement());
  }
  EXPECT_EQ(copy->ToXml(false, false, EOLType_LF),
            "<AA:order xmlns:AA=\"urn:o\" id=\"7\"><AA:line>pen</AA:line><x><y/></x></AA:order>");
  EXPECT_EQ(copy->GetChildElements()->Item(1)->GetNamespaceRestriction(), "##local");

  // Reading again replaces the content in place.
  root->FromXml("<x a='1'><y/></x>");
  EXPECT_EQ(root->GetAttributes()->GetCount(), 1);
  EXPECT_EQ(Names(*root->GetChildElements()), "y;");
}

TEST(CElement, RestrictionsDecideWhatIsTaken) {
  // "##other" with a target namespace T: elements of another namespace and unqualified ones are
  // taken, an element in T is left unread.
  CSmartPtr<CElementCol> any = new CElementCol("AnyElement", "##other", "urn:t", 0, -1);
  EXPECT_EQ(CAccess::Read(any, "<r xmlns:t='urn:t'><a xmlns='urn:x'/><b/><t:c/><d/></r>"), "c");
  EXPECT_EQ(Names(*any), "a;b;");

  CSmartPtr<CElement> single = new CElement("AnyElement", "", "##other", "urn:t");
  EXPECT_EQ(CAccess::Read(single, "<r xmlns:t='urn:t'><t:c/></r>"), "c");  // nothing taken
  EXPECT_EQ(single->GetName(), "AnyElement");

  // Content that the element's collections refuse fails the read.
  ExpectThrowMessage<COvValidationException>(
      [&] { CAccess::Read(single, "<r xmlns:t='urn:t'><a><t:inner/></a></r>"); },
      "Invalid Element [inner] found in element [a]");
  ExpectThrowMessage<COvInvalidNamespaceException>(
      [&] { CAccess::Read(single, "<r xmlns:t='urn:t'><a t:bad='1'/></r>"); },
      "Invalid Attribute [bad]. The attributes namespace is Inappropriate.");
}

TEST(CElementCol, AddingByNameNeedsANamespaceToGive) {
  CSmartPtr<CElementCol> target = new CElementCol("e", "##targetNamespace", "urn:t", 0, -1);
  target->Add("a");
  EXPECT_EQ(target->Item(0)->GetNamespace(), "urn:t");
  CSmartPtr<CElementCol> literal = new CElementCol("e", "urn:x", "urn:t", 0, -1);
  literal->Add("b");
  EXPECT_EQ(literal->Item(0)->GetNamespace(), "urn:x");

  CSmartPtr<CElementCol> open = new CElementCol("e", "##any", "urn:t", 0, -1);
  ExpectThrowMessage<COvInvalidStateException>([&] { open->Add("c"); },
                                               "A Namespace has not been set for this Collection");
  open->Add("c", "urn:c");
  CSmartPtr<CElement> first = new CElement("first");
  open->AddAfter(nullptr, first);
  open->AddBefore(nullptr, new CElement("last"));
  open->AddBefore(first, new CElement("zeroth"));
  EXPECT_EQ(Names(*open), "zeroth;first;c;last;");
  EXPECT_EQ(MessageOf([&] { target->Add("x", "urn:other"); }),
            "Invalid namespace [urn:other]. The namespace must be one of [##targetNamespace] "
            "where the target namespace is [urn:t]");
  EXPECT_EQ(target->GetCount(), 1);
}

TEST(CAttributeCol, AddsCheckTheRestrictionAndKeepOrder) {
  CSmartPtr<CAttributeCol> attributes = new CAttributeCol("any", "##local", "urn:t");
  attributes->Add("name");
  attributes->Add("v", "second");
  attributes->Add("", "v3", "third");
  EXPECT_EQ(MessageOf([&] { attributes->Add("urn:x", "v", "n"); }),
            "Invalid namespace [urn:x]. The namespace must be one of [##local] where the target "
            "namespace is [urn:t]");
  std::vector<std::string> seen;
  for (CAttribute* a : *attributes) seen.push_back(a->GetName() + "=" + a->GetValue());
  EXPECT_EQ(seen, (std::vector<std::string>{"name=", "second=v", "third=v3"}));

  CSmartPtr<CAttribute> lone = new CAttribute("", "1", "x");
  EXPECT_EQ(MessageOf([&] { CAccess::Read(lone, "<r><a/></r>"); }),
            "This should be done by the collection");
}

TEST(CXmlSerializationContext, AdditionalRootAttributesAreSharedByCopiesAndWritten) {
  CXmlSerializationContext context;
  EXPECT_EQ(static_cast<const CXmlSerializationContext&>(context).GetAdditionalRootAttributes(),
            nullptr);
  CSmartPtr<CAttributeCol> extra = context.GetAdditionalRootAttributes();
  EXPECT_EQ(context.GetAdditionalRootAttributes(), extra);
  extra->Add("urn:x", "1", "flag");
  CXmlSerializationContext copy(context);
  EXPECT_EQ(copy.GetAdditionalRootAttributes(), extra);

  copy.GetNamespaceAliases().Add("x", "urn:x");
  copy.GetProcessingInstructions().push_back("<?pi data?>");
  CSmartPtr<CElement> root = new CElement("root");
  root->GetChildElements()->Add(new CElement("child"));
  const std::string xml = root->ToXml(false, false, EOLType_LF, copy);
  EXPECT_NE(xml.find("<?pi data?>"), std::string::npos) << xml;
  EXPECT_NE(xml.find("<root xmlns:x=\"urn:x\" x:flag=\"1\"><child/></root>"), std::string::npos)
      << xml;
}

namespace {

// Every attribute of the tree through the collections, element by element.
std::string AttributeDump(CElement* element) {
  std::string dump = element->GetName() + "[";
  for (CAttribute* attribute : *element->GetAttributes()) {
    dump +=
        attribute->GetNamespace() + ":" + attribute->GetName() + "=" + attribute->GetValue() + ";";
  }
  dump += "]";
  for (CElement* child : *element->GetChildElements()) dump += AttributeDump(child);
  return dump;
}

// The outcome of a read: the error message, or the element written back and its attributes.
std::string Outcome(CElement* element, const std::function<void()>& read) {
  try {
    read();
  } catch (const COvException& e) {
    return "error: " + e.GetMessage();
  }
  const std::string xml = element->ToXml(false, false, EOLType_LF);
  return xml + " " + AttributeDump(element);
}

}  // namespace

TEST(CElement, ReadingWhileParsingMatchesReadingTheFinishedTree) {
  // The entry points read a CElement during the parse; FromXmlElement reads a finished tree.
  // Both must take the same elements and fail with the same first error.
  struct Case {
    const char* restriction;
    const char* xml;
  };
  const Case cases[] = {
      {"##any", "<a xmlns='urn:a' x='1'>t<b>u</b>v<c y='2'/></a>"},
      {"##other", "<a xmlns:t='urn:t'><b/><t:c/></a>"},                   // child refused
      {"##other", "<t:a xmlns:t='urn:t'><b/></t:a>"},                     // root left unread
      {"##other", "<a xmlns:t='urn:t' t:x='1'><t:b/></a>"},               // root attribute first
      {"##other", "<a xmlns:t='urn:t'><b t:x='1'><t:c/></b><t:d/></a>"},  // earlier attribute
      {"##other", "<a xmlns:t='urn:t'><b><c><t:d/></c></b><e t:x='1'/></a>"},  // deep child first
      {"##local", "<a><b xmlns='urn:x'/></a>"},
  };
  for (const Case& c : cases) {
    CSmartPtr<CElement> streamed = new CElement("s", "", c.restriction, "urn:t");
    CSmartPtr<CElement> fromTree = new CElement("s", "", c.restriction, "urn:t");
    const std::string wrapped = std::string("<w>") + c.xml + "</w>";
    CXmlDocument document;
    document.LoadXml(wrapped.c_str());
    // Read twice: the second read replaces what the first left, which nobody has looked at.
    EXPECT_EQ(Outcome(streamed,
                      [&] {
                        streamed->FromXml(c.xml);
                        streamed->FromXml(c.xml);
                      }),
              Outcome(fromTree, [&] { fromTree->FromXmlElement(document.GetDocumentElement()); }))
        << c.xml;
  }
}

TEST(CElement, AFailedReadLeavesTheElementAsItWas) {
  CSmartPtr<CElement> element = new CElement("s", "", "##other", "urn:t");
  element->FromXml("<a k='v'><b>text</b></a>");
  const std::string before = element->ToXml(false, false, EOLType_LF);
  CRecorder recorder;
  element->GetChildElements()->AddEventListener(&recorder);

  // A refused child: the error comes once the document has been parsed.
  ExpectThrowMessage<COvValidationException>(
      [&] { element->FromXml("<x xmlns:t='urn:t'><y/><t:z/></x>"); },
      "Invalid Element [z] found in element [x]");
  // A document that is not well-formed reports that, even after a refused element.
  const std::string message = MessageOf([&] { element->FromXml("<x xmlns:t='urn:t'><t:z/><y>"); });
  EXPECT_NE(message.find("at line 1"), std::string::npos) << message;
  // Read from a finished tree, the same refusal leaves it alone too.
  CXmlDocument document;
  document.LoadXml("<w><x xmlns:t='urn:t'><y/><t:z/></x></w>");
  ExpectThrowMessage<COvValidationException>(
      [&] { element->FromXmlElement(document.GetDocumentElement()); },
      "Invalid Element [z] found in element [x]");
  EXPECT_EQ(element->ToXml(false, false, EOLType_LF), before);
  EXPECT_TRUE(recorder.events.empty());

  // A successful read replaces the content, with the collection's events.
  element->FromXml("<x><y/></x>");
  EXPECT_EQ(element->ToXml(false, false, EOLType_LF), "<x><y/></x>");
  EXPECT_EQ(recorder.events, (std::vector<std::string>{"remove -1", "removeComplete -1", "change",
                                                       "add", "addComplete", "change"}));
  element->GetChildElements()->RemoveEventListener(&recorder);
}

TEST(CElement, DerivedClassesReadFromTheFinishedTree) {
  // A class derived from CElement may override FromXml_Int, so it is read through it.
  class CCounting : public CElement {
   public:
    CCounting() : CElement("counting") {}
    int reads = 0;

   protected:
    CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                             const CXmlSerializationContext& context, bool flag) override {
      ++reads;
      return CElement::FromXml_Int(parent, current, context, flag);
    }
  };
  CSmartPtr<CCounting> counting = new CCounting();
  counting->FromXml("<a><b/></a>");
  EXPECT_EQ(counting->reads, 1);
  EXPECT_EQ(counting->ToXml(false, false, EOLType_LF), "<a><b/></a>");
}

TEST(CElement, RoundTripsThroughEveryEntryPoint) {
  CSmartPtr<CElement> original = new CElement("any");
  original->FromXml(
      "<o:order xmlns:o='urn:orders' xmlns:x='urn:extra' id='42' x:flag='yes &amp; no'>"
      "<o:line qty='3'>Caf\xC3\xA9 \xE2\x82\xAC 5 &lt;each&gt;</o:line>"
      "<note xmlns=''>mixed <b>bold</b> text</note><x:empty/></o:order>");
  const std::string expected = original->ToXml(true, false, EOLType_LF);
  const auto check = [&](CElement* back, const char* how) {
    EXPECT_EQ(back->ToXml(true, false, EOLType_LF), expected) << how;
  };

  CSmartPtr<CElement> back = new CElement("any");
  back->FromXml(expected.c_str());
  check(back, "narrow text");
  back->FromXml(L"<wide a='1'><b/></wide>");
  EXPECT_EQ(back->ToXml(false, false, EOLType_LF), "<wide a=\"1\"><b/></wide>");
  for (CompressionType c : {CompressionType_None, CompressionType_GZip, CompressionType_ZLib}) {
    for (XmlEncoding e : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
      back = new CElement("any");
      back->FromXmlStream(original->ToXmlStream(true, false, e, EOLType_LF,
                                                CXmlSerializationContext::GetDefaultContext(), c));
      check(back, "stream");
    }
  }
  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_element_io.xml";
  for (bool async : {false, true}) {
    original->ToXmlFile(path.c_str(), true, false, XmlEncoding_UTF16);
    AsyncFromXmlFile(async);
    back = new CElement("any");
    back->FromXmlFile(path.c_str());
    AsyncFromXmlFile(false);
    check(back, async ? "async file" : "file");
  }
  std::remove(path.c_str());
}
