// The building interface that readers use on elements (protected, reached here through member
// pointers taken in a derived class): children appended and removed, text appended in pieces of
// every size, attributes added before and after the list was handed out as a vector. And shallow
// copies of elements and attributes, read in every order with their originals.
#include "OvXmlLib6/xml/XmlDocument.h"

#include <algorithm>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <type_traits>
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

// Assigning over a node in a tree would overwrite its links; copies are for reading.
static_assert(std::is_copy_constructible_v<CXmlElement> && !std::is_copy_assignable_v<CXmlElement>);
static_assert(std::is_copy_constructible_v<CXmlAttribute> &&
              !std::is_copy_assignable_v<CXmlAttribute>);

TEST(CXmlElement, ShallowCopiesAndOriginalsReadTheSameInAnyOrder) {
  // Text and values in each storage form: held in a record, in the slot itself, and empty.
  struct Case {
    const char* xml;
    std::string text;
    std::string first;   // value of attribute x
    std::string second;  // value of attribute y
  };
  const Case cases[] = {
      {"<a x='a value longer than a slot' y='also long enough'>hello world text<b>x</b></a>",
       "hello world text", "a value longer than a slot", "also long enough"},
      {"<a x='s' y=''>hi<b/></a>", "hi", "s", ""},
      {"<a><b/></a>", "", "", ""},
  };
  for (const Case& c : cases) {
    const bool hasAttributes = !c.first.empty();
    using Read = std::function<void(const CXmlElement&)>;
    const std::vector<Read> reads = {
        [&](const CXmlElement& e) { EXPECT_EQ(e.GetText(), c.text) << c.xml; },
        [&](const CXmlElement& e) {
          const auto& attributes = e.GetAttributes();
          ASSERT_EQ(attributes.size(), hasAttributes ? 2u : 0u) << c.xml;
          if (!hasAttributes) return;
          // A copy of an attribute, read before its original.
          const CXmlAttribute copy(*attributes[1]);
          EXPECT_EQ(copy.GetValue(), c.second) << c.xml;
          EXPECT_EQ(copy.GetLocalName(), "y");
          EXPECT_EQ(attributes[0]->GetValue(), c.first) << c.xml;
          EXPECT_EQ(attributes[1]->GetValue(), c.second) << c.xml;
        },
        [&](const CXmlElement& e) { EXPECT_EQ(e.GetAttribute("x", ""), c.first) << c.xml; },
        [&](const CXmlElement& e) {
          ASSERT_NE(e.GetFirstElement(), nullptr);
          EXPECT_EQ(e.GetFirstElement()->GetLocalName(), "b");
          EXPECT_EQ(e.GetLocalName(), "a");
        },
    };
    // The copies are taken after the first `before` reads on the original (so from an original
    // whose text or attributes are partly read already); then every read runs on every node, in
    // every order of the reads and of the nodes.
    std::vector<std::size_t> readOrder = {0, 1, 2, 3};
    do {
      const int nodeOrders[6][3] = {{0, 1, 2}, {0, 2, 1}, {1, 0, 2},
                                    {1, 2, 0}, {2, 0, 1}, {2, 1, 0}};
      for (const auto& nodeOrder : nodeOrders) {
        for (std::size_t before = 0; before <= reads.size(); ++before) {
          CXmlDocument doc;
          doc.LoadXml(c.xml);
          const CXmlElement* original = doc.GetDocumentElement();
          for (std::size_t i = 0; i < before; ++i) reads[readOrder[i]](*original);
          const CXmlElement copy(*original);
          const CXmlElement copyOfCopy(copy);
          const CXmlElement* nodes[] = {original, &copy, &copyOfCopy};
          for (std::size_t read : readOrder) {
            for (int node : nodeOrder) reads[read](*nodes[node]);
          }
        }
      }
    } while (std::next_permutation(readOrder.begin(), readOrder.end()));
  }
}
