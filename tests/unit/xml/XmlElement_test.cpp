// The building interface that readers use on elements (protected, reached here through member
// pointers taken in a derived class): children appended and removed, text appended in pieces of
// every size, attributes added before and after the list was handed out as a vector.
#include "OvXmlLib6/xml/XmlDocument.h"

#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;

namespace {

struct Build : CXmlElement {
  static CXmlElement* NewChild(CXmlElement* e) { return (e->*(&Build::CreateNewChildElement))(); }
  static CXmlElement* RemoveLast(CXmlElement* e) {
    return (e->*(&Build::RemoveLastChildElement))();
  }
  static void Name(CXmlElement* e, const std::string& ns, const std::string& local) {
    (e->*(&Build::SetNamespace))(ns);
    (e->*(&Build::SetElementName))(local);
  }
  static void Text(CXmlElement* e, const char* text, int length) {
    void (CXmlElement::*append)(const char*, int) = &Build::AppendText;
    (e->*append)(text, length);
  }
  static void Attribute(CXmlElement* e, const std::string& local, const std::string& value) {
    (e->*(&Build::AddAttribute))(local, value, "urn:a");
  }
};

std::vector<std::string> Names(const CXmlElement* parent) {
  std::vector<std::string> names;
  for (const CXmlElement* c = parent->GetFirstElement(); c; c = c->GetNextSiblingElement()) {
    names.push_back(c->GetLocalName());
  }
  return names;
}

}  // namespace

TEST(CXmlElement, ChildrenAreAppendedAndRemovedAtTheEnd) {
  CXmlDocument doc;
  doc.LoadXml("<r><parsed/></r>");
  CXmlElement* root = doc.GetDocumentElement();
  for (const char* name : {"a", "b", "c"}) Build::Name(Build::NewChild(root), "urn:x", name);
  EXPECT_EQ(Names(root), (std::vector<std::string>{"parsed", "a", "b", "c"}));
  EXPECT_EQ(root->GetFirstElement()->GetNextSiblingElement()->GetNamespaceURI(), "urn:x");
  EXPECT_EQ(root->GetFirstElement()->GetNextSiblingElement()->GetDocument(), &doc);

  CXmlElement* removed = Build::RemoveLast(root);
  EXPECT_EQ(removed->GetLocalName(), "c");
  EXPECT_EQ(removed->GetNextSiblingElement(), nullptr);
  EXPECT_EQ(Names(root), (std::vector<std::string>{"parsed", "a", "b"}));
  Build::Name(Build::NewChild(root), "", "d");  // appending after a removal keeps the chain
  EXPECT_EQ(Names(root), (std::vector<std::string>{"parsed", "a", "b", "d"}));
  for (int i = 0; i < 4; ++i) ASSERT_NE(Build::RemoveLast(root), nullptr);
  EXPECT_EQ(Build::RemoveLast(root), nullptr);
  EXPECT_EQ(root->GetFirstElement(), nullptr);
  // Removed elements stay owned by the document, which releases them with everything else.
}

TEST(CXmlElement, TextGrowsThroughEveryStorageForm) {
  CXmlDocument doc;
  doc.LoadXml("<r>ab</r>");
  CXmlElement* root = doc.GetDocumentElement();
  std::string expected = "ab";
  // Short text in the slot, then a record that doubles, then a string once it was read.
  for (int round = 0; round < 3; ++round) {
    for (int i = 0; i < 300; ++i) {
      const std::string piece(static_cast<std::size_t>(i % 11), static_cast<char>('a' + i % 26));
      Build::Text(root, piece.c_str(), static_cast<int>(piece.size()));
      expected += piece;
      if (i % 97 == 0) {
        ASSERT_EQ(root->GetText(), expected);
      }
    }
  }
  Build::Text(root, "x\0y", 3);  // stops at a NUL byte
  EXPECT_EQ(root->GetText(), expected + "x");

  CXmlElement* child = Build::NewChild(root);
  EXPECT_EQ(child->GetText(), "");
  Build::Text(child, "1234567", 7);
  EXPECT_EQ(child->GetText(), "1234567");
}

TEST(CXmlElement, AttributesAddedBeforeAndAfterTheListIsRead) {
  CXmlDocument doc;
  doc.LoadXml("<r first=\"0\"/>");
  CXmlElement* root = doc.GetDocumentElement();
  for (int i = 1; i <= 9; ++i) Build::Attribute(root, "n" + std::to_string(i), std::to_string(i));
  ASSERT_EQ(root->GetAttributes().size(), 10u);
  Build::Attribute(root, "late", "a value longer than the slot holds");
  const auto& attributes = root->GetAttributes();
  ASSERT_EQ(attributes.size(), 11u);
  EXPECT_EQ(attributes[0]->GetLocalName(), "first");
  EXPECT_EQ(attributes[5]->GetValue(), "5");
  EXPECT_EQ(attributes[5]->GetNamespaceURI(), "urn:a");
  EXPECT_EQ(root->GetAttribute("late", "urn:a"), "a value longer than the slot holds");
  EXPECT_EQ(root->GetAttribute("late", ""), "");
}
