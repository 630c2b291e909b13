// The tree the parser adapter builds: names and namespaces, text, attributes, declarations,
// the element-completed callback and the string loaders.
#include "OvXmlLib6/xml/XmlDocument.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/xml/CharEncoding.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;

namespace {

std::vector<const CXmlElement*> Children(const CXmlElement* parent) {
  std::vector<const CXmlElement*> children;
  for (const CXmlElement* e = parent->GetFirstElement(); e; e = e->GetNextSiblingElement()) {
    children.push_back(e);
  }
  return children;
}

std::string LoadError(CXmlDocument& doc, const char* xml) {
  return test::MessageOf([&] { doc.LoadXml(xml); });
}

}  // namespace

TEST(CXmlDocument, NamesCarryNamespaceUriAndLocalNameOnly) {
  CXmlDocument doc;
  doc.LoadXml(
      "<?xml version=\"1.0\"?><p:root xmlns:p=\"urn:a\" xmlns=\"urn:d\">"
      "<child/><q:x xmlns:q=\"urn:q\"/><p:y xmlns=\"\"><plain/></p:y></p:root>");
  const CXmlElement* root = doc.GetDocumentElement();
  ASSERT_NE(root, nullptr);
  EXPECT_EQ(root->GetLocalName(), "root");
  EXPECT_EQ(root->GetNamespaceURI(), "urn:a");
  EXPECT_EQ(root->GetDocument(), &doc);
  // Declarations are consumed by the parser and never appear as attributes.
  EXPECT_TRUE(root->GetAttributes().empty());
  const auto kids = Children(root);
  ASSERT_EQ(kids.size(), 3u);
  EXPECT_EQ(kids[0]->GetNamespaceURI(), "urn:d");
  EXPECT_EQ(kids[0]->GetLocalName(), "child");
  EXPECT_EQ(kids[1]->GetNamespaceURI(), "urn:q");
  EXPECT_EQ(kids[2]->GetLocalName(), "y");
  const auto grandchildren = Children(kids[2]);
  ASSERT_EQ(grandchildren.size(), 1u);
  EXPECT_EQ(grandchildren[0]->GetNamespaceURI(), "");
  EXPECT_EQ(grandchildren[0]->GetLocalName(), "plain");
  EXPECT_EQ(grandchildren[0]->GetNextSiblingElement(), nullptr);
}

TEST(CXmlDocument, ReadersAppendTextWithoutCarriageReturns) {
  // The protected building call of readers, reached through a derived class.
  struct Reader : CXmlDocument {
    static void Append(CXmlElement* e, const char* text, std::uint32_t length) {
      AppendTextExcludingCR(e, text, length);
    }
    static void Append(CXmlElement* e, const char* text) { AppendTextExcludingCR(e, text); }
  };
  const struct {
    const char* text;
    std::uint32_t length;
    const char* expected;
  } cases[] = {
      {"a\rb\r\nc", 6, "ab\nc"},
      {"\r\r\r", 3, ""},
      {"ab\r", 3, "ab"},
      {"x\ry\0z", 5, "xy"},
      {"abcdef", 3, "abc"},
      {"", 0, ""},
      {"a long run of text\r", 19, "a long run of text"},
  };
  for (const auto& c : cases) {
    CXmlDocument doc;
    doc.LoadXml("<r/>");
    CXmlElement* root = doc.GetDocumentElement();
    Reader::Append(root, c.text, c.length);
    EXPECT_EQ(root->GetText(), c.expected) << c.text;
  }
  CXmlDocument doc;
  doc.LoadXml("<r/>");
  Reader::Append(doc.GetDocumentElement(), "1\r2");
  Reader::Append(doc.GetDocumentElement(), nullptr);
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "12");
}

TEST(CXmlDocument, TextIsMergedAcrossChildrenWithCarriageReturnsRemoved) {
  CXmlDocument doc;
  doc.LoadXml("<r>a<c>inner</c>b\r\n<c/>&#13;c&#xD;d</r>");
  const CXmlElement* root = doc.GetDocumentElement();
  // Expat turns the line end CR LF into LF; the character references to U+000D are dropped.
  EXPECT_EQ(root->GetText(), "ab\ncd");
  EXPECT_EQ(root->GetFirstElement()->GetText(), "inner");
  EXPECT_EQ(Children(root).size(), 2u);

  // Long text arriving in many pieces (one per line, entity references split them) is complete.
  std::string xml = "<r>";
  std::string expected;
  for (int i = 0; i < 2000; ++i) {
    xml += "line &amp; " + std::to_string(i) + "\n";
    expected += "line & " + std::to_string(i) + "\n";
  }
  doc.LoadXml((xml + "</r>").c_str());
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), expected);
}

TEST(CXmlDocument, CdataMarkersFollowTheContext) {
  const char* xml = "<r>x<![CDATA[<]]>z</r>";
  CXmlDocument stripping;  // the default context strips
  stripping.LoadXml(xml);
  EXPECT_EQ(stripping.GetDocumentElement()->GetText(), "x<z");

  CXmlSerializationContext context;
  context.SetStripCDATA(false);
  CXmlDocument keeping(context);
  keeping.LoadXml(xml);
  EXPECT_EQ(keeping.GetDocumentElement()->GetText(), "x<![CDATA[<]]>z");
}

TEST(CXmlDocument, AttributesKeepOrderAndNamespaces) {
  CXmlDocument doc;
  doc.LoadXml(
      "<r xmlns:a=\"urn:a\" xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\" "
      "id=\"7\" a:id=\"8\" xsi:type=\"a:T\" xsi:nil=\"true\" xsi:schemaLocation=\"u l\" "
      "v=\"x&#13;&#10;y\"/>");
  const CXmlElement* root = doc.GetDocumentElement();
  const auto& attributes = root->GetAttributes();
  ASSERT_EQ(attributes.size(), 6u);
  EXPECT_EQ(attributes[0]->GetLocalName(), "id");
  EXPECT_EQ(attributes[0]->GetNamespaceURI(), "");
  EXPECT_EQ(attributes[1]->GetNamespaceURI(), "urn:a");
  EXPECT_EQ(root->GetAttribute("id", ""), "7");
  EXPECT_EQ(root->GetAttribute("id", "urn:a"), "8");
  EXPECT_EQ(root->GetAttribute("id", "urn:other"), "");
  EXPECT_EQ(root->GetAttribute("v", ""), "x\r\ny");  // values keep character references

  std::vector<bool> isNamespace;
  for (const CXmlAttribute* a : attributes) isNamespace.push_back(a->IsNamespaceAttribute());
  // xsi:type and xsi:schemaLocation count, xsi:nil deliberately does not.
  EXPECT_EQ(isNamespace, (std::vector<bool>{false, false, true, false, true, false}));
  EXPECT_EQ(doc.LookupNamespaceFromAlias("a"), "urn:a");
}

TEST(CXmlDocument, PrefixMapIsFlatForTheWholeDocument) {
  CXmlDocument doc;
  doc.LoadXml(
      "<r xmlns=\"urn:default\"><s xmlns:p=\"urn:first\"/><t xmlns:p=\"urn:second\"/>"
      "<u xmlns:q=\"urn:q\"/></r>");
  EXPECT_EQ(doc.LookupNamespaceFromAlias("p"), "urn:second");  // declared on closed siblings
  EXPECT_EQ(doc.LookupNamespaceFromAlias("q"), "urn:q");
  EXPECT_EQ(doc.LookupNamespaceFromAlias(""), "urn:default");
  EXPECT_EQ(doc.LookupNamespaceFromAlias("undeclared"), "");
  EXPECT_EQ(doc.LookupNamespaceFromAlias(nullptr), "urn:default");

  // An undeclaration of the default namespace is recorded like any declaration.
  doc.LoadXml("<r xmlns=\"urn:default\"><s xmlns=\"\"/></r>");
  EXPECT_EQ(doc.LookupNamespaceFromAlias(""), "");
}

TEST(CXmlDocument, SchemaTypeDtdParsesWithoutNamespaces) {
  CXmlSerializationContext context;
  context.SetSchemaType(SchemaType_DTD);
  CXmlDocument doc(context);
  doc.LoadXml("<p:r xmlns:p=\"urn:a\" xmlns=\"urn:d\"><c p:at=\"1\"/></p:r>");
  const CXmlElement* root = doc.GetDocumentElement();
  EXPECT_EQ(root->GetLocalName(), "p:r");
  EXPECT_EQ(root->GetNamespaceURI(), "");
  // Declarations arrive as ordinary attributes with no namespace.
  ASSERT_EQ(root->GetAttributes().size(), 2u);
  EXPECT_EQ(root->GetAttributes()[0]->GetLocalName(), "xmlns:p");
  EXPECT_EQ(root->GetAttributes()[1]->GetLocalName(), "xmlns");
  EXPECT_EQ(root->GetFirstElement()->GetAttribute("p:at", ""), "1");
  EXPECT_EQ(doc.LookupNamespaceFromAlias("p"), "");
}

TEST(CXmlDocument, CommentsAndProcessingInstructionsAreDropped) {
  CXmlDocument doc;
  doc.LoadXml("<!DOCTYPE r><?pi x?><r>a<!-- c -->b<?pi y?></r><!-- tail -->");
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "ab");
  EXPECT_EQ(doc.GetDocumentElement()->GetFirstElement(), nullptr);
}

TEST(CXmlDocument, NonAsciiTextFollowsTheInternalEncoding) {
  const char* xml = "<r a=\"\xC3\xA9\">gr\xC3\xBC\xC3\x9F &#x20AC;</r>";  // é, grüß €
  CXmlDocument doc;
  doc.LoadXml(xml);
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "gr\xC3\xBC\xC3\x9F \xE2\x82\xAC");

  SetLocalCharEncoding(28591);  // ISO-8859-1: the euro sign has no place there
  doc.LoadXml(xml);
  SetLocalCharEncoding(0);
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "gr\xFC\xDF ?");
  EXPECT_EQ(doc.GetDocumentElement()->GetAttribute("a", ""), "\xE9");

  // ISO-8859-1 input declared as such reaches UTF-8 internal strings converted.
  doc.LoadXml("<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?><r>\xE9</r>");
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "\xC3\xA9");
}

TEST(CXmlDocument, WideStringsAreParsedAsUtf16) {
  CXmlDocument doc;
  doc.LoadXml(L"<r a=\"\u00e9\">\u20ac\U0001F600</r>");
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "\xE2\x82\xAC\xF0\x9F\x98\x80");
  doc.LoadXml(u"<s>\u00e9</s>");
  EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), "s");
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "\xC3\xA9");
}

TEST(CXmlDocument, EmptyInputsFailWithTheirMessages) {
  CXmlDocument doc;
  EXPECT_EQ(LoadError(doc, ""), "XML String is empty!");
  EXPECT_EQ(LoadError(doc, nullptr), "XML String is empty!");
  EXPECT_EQ(LoadError(doc, "  \n\t "), "no element found at line 2");
  // An empty wide string still carries the byte-order mark, so the parser reports it.
  test::ExpectThrowMessage([&] { doc.LoadXml(L""); }, "no element found at line 1");
  test::ExpectThrowMessage(
      [&] { doc.LoadXmlStream(reinterpret_cast<const unsigned char*>("x"), 0); },
      "XML Stream is empty!");
}

TEST(CXmlDocument, ReloadingReplacesTheTree) {
  CXmlDocument doc;
  doc.LoadXml("<first xmlns:p=\"urn:p\"><a/></first>");
  doc.LoadXml("<second/>");
  EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), "second");
  EXPECT_EQ(doc.GetDocumentElement()->GetFirstElement(), nullptr);
  EXPECT_EQ(doc.LookupNamespaceFromAlias("p"), "");
  // The next input may be text held by the tree it replaces.
  doc.LoadXml(
      "<outer>&lt;inner&gt;&amp;lt;innermost-element-of-three/&amp;gt;&lt;/inner&gt;</outer>");
  doc.LoadXml(doc.GetDocumentElement()->GetText().c_str());
  EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), "inner");
  const std::string& text = doc.GetDocumentElement()->GetText();
  doc.LoadXmlStream(reinterpret_cast<const unsigned char*>(text.data()),
                    static_cast<std::uint32_t>(text.size()));
  EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), "innermost-element-of-three");
  // After a failed load the partial tree stays until the next load.
  EXPECT_NE(LoadError(doc, "<third><open></third>"), "no exception");
  ASSERT_NE(doc.GetDocumentElement(), nullptr);
  EXPECT_EQ(doc.GetDocumentElement()->GetLocalName(), "third");
}

namespace {
int g_completed = 0;
bool DropRecords(CXmlElement* element) {
  ++g_completed;
  return element->GetLocalName() == "record";
}
bool ThrowOnSecond(CXmlElement* element) {
  if (element->GetText() == "2") throw COvInvalidValueException("callback refused 2");
  return false;
}
}  // namespace

TEST(CXmlDocument, CallbackConsumesElementsAsTheyComplete) {
  g_completed = 0;
  CXmlDocument doc(&DropRecords);
  doc.LoadXml("<root><record><f>1</f></record><keep/><record/><record><f/></record></root>");
  EXPECT_EQ(g_completed, 7);  // every element, the document element included
  const auto kids = Children(doc.GetDocumentElement());
  ASSERT_EQ(kids.size(), 1u);
  EXPECT_EQ(kids[0]->GetLocalName(), "keep");

  // Returning true for the document element does not take the root away.
  CXmlDocument all([](CXmlElement*) { return true; });
  all.LoadXml("<root><a/><b/></root>");
  ASSERT_NE(all.GetDocumentElement(), nullptr);
  EXPECT_EQ(all.GetDocumentElement()->GetFirstElement(), nullptr);

  // An exception from the callback comes out of the load unchanged.
  CXmlDocument throwing(&ThrowOnSecond);
  test::ExpectThrowMessage<COvInvalidValueException>(
      [&] { throwing.LoadXml("<r><v>1</v><v>2</v><v>3</v></r>"); }, "callback refused 2");
}

TEST(CXmlDocument, AsciiOnlyKeepsParserBytes) {
  ASCIIOnly(true);
  CXmlDocument doc;
  doc.LoadXml("<r>\xC3\xA9&#13;x</r>");
  ASCIIOnly(false);
  EXPECT_EQ(doc.GetDocumentElement()->GetText(), "\xC3\xA9x");
}
