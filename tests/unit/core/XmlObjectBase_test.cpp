// Reference counting, the choice and property checks, the namespace rule and element-name matching
// of CXmlObjectBase.
#include "OvXmlLib6/core/XmlObjectBase.h"

#include "OvXmlLib6/xml/XmlDocument.h"
#include "unit/TestSupport.h"
#include "unit/core/TestNode.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using OvXmlLib6::testing_support::CTestNode;
using test::MessageOf;

namespace {

// A new object and a copy start at 0; the release that brings the count back to 0 deletes.
TEST(CXmlObjectBase, ReferenceCountDeletesAtZeroAndIsNotCopied) {
  bool deleted = false;
  CTestNode* node = new CTestNode("a", "", &deleted);
  EXPECT_EQ(node->AddRef(), 1);
  EXPECT_EQ(node->AddRef(), 2);
  EXPECT_EQ(node->Release(), 1);
  EXPECT_FALSE(deleted);

  CSmartPtr<CTestNode> copy = new CTestNode(*node);
  EXPECT_EQ(copy->Name(), "a");
  EXPECT_EQ(copy->AddRef(), 2);  // started at 0, then held once
  copy->Release();
  CSmartPtr<CTestNode> assigned = new CTestNode("b");
  *assigned = *node;
  EXPECT_EQ(assigned->Name(), "a");
  EXPECT_EQ(assigned->AddRef(), 2);  // still its own count of 1, plus one
  assigned->Release();

  EXPECT_EQ(node->Release(), 0);
  EXPECT_TRUE(deleted);
}

TEST(CXmlObjectBase, ChoiceSelectElement) {
  CSmartPtr<CTestNode> node = new CTestNode("c");
  CSmartPtr<CTestNode> value = new CTestNode("v");
  std::string selected;
  node->Choice_SelectElement("a", nullptr, selected);  // empty selection takes the name
  EXPECT_EQ(selected, "a");
  node->Choice_SelectElement("b", nullptr, selected);  // null for another branch: no change
  EXPECT_EQ(selected, "a");
  EXPECT_EQ(MessageOf<COvInvalidStateException>(
                [&] { node->Choice_SelectElement("b", value, selected); }),
            "The Property [a] is already set. Only one element within this class bay be set at a "
            "time");
  EXPECT_EQ(selected, "a");
  node->Choice_SelectElement("a", value, selected);
  EXPECT_EQ(selected, "a");
  node->Choice_SelectElement("a", nullptr, selected);  // the selected branch set to null clears
  EXPECT_EQ(selected, "");
}

TEST(CXmlObjectBase, ChoiceCollectionChangedAndSetElementValid) {
  CSmartPtr<CTestNode> node = new CTestNode("c");
  std::string selected;
  node->Choice_CollectionChanged("a", 0, selected);
  EXPECT_EQ(selected, "");
  node->Choice_CollectionChanged("a", 2, selected);
  EXPECT_EQ(selected, "a");
  node->Choice_CollectionChanged("b", 0, selected);
  EXPECT_EQ(selected, "a");
  EXPECT_THROW(node->Choice_CollectionChanged("b", 1, selected), COvInvalidStateException);
  node->Choice_CollectionChanged("a", 0, selected);
  EXPECT_EQ(selected, "");

  selected = "x";
  node->Choice_SetElementValid(true, "x", selected);
  EXPECT_EQ(selected, "x");
  EXPECT_EQ(MessageOf<COvInvalidStateException>(
                [&] { node->Choice_SetElementValid(true, "y", selected); }),
            "The Property x is already set. Only one element within this class bay be set at a "
            "time");
  node->Choice_SetElementValid(false, "y", selected);  // clears whatever was selected
  EXPECT_EQ(selected, "");
  EXPECT_THROW(node->Choice_SetElementValid(true, "y", selected), COvInvalidStateException);
}

TEST(CXmlObjectBase, PropertyChecks) {
  CSmartPtr<CTestNode> node = new CTestNode("owner");
  CSmartPtr<CTestNode> value = new CTestNode("item");
  EXPECT_EQ(
      MessageOf<COvInvalidParamException>([&] { node->Throw_IfPropertyIsNull(nullptr, "Header"); }),
      "The Property [Header] is mandatory, it may node be NULL");
  node->Throw_IfPropertyIsNull(value, "Header");
  node->Throw_IfElementNameDiffers(nullptr, "item");
  node->Throw_IfElementNameDiffers(value, "item");
  EXPECT_EQ(MessageOf<COvInvalidParamException>(
                [&] { node->Throw_IfElementNameDiffers(value, "other"); }),
            "This property requrires an element with the name other the element being set has the "
            "element name item");
}

TEST(CXmlObjectBase, NamespaceRestrictions) {
  CSmartPtr<CTestNode> n = new CTestNode("x");
  EXPECT_TRUE(n->IsNamespaceValid("", "##local", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:a", "##local", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:t", "##other", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("", "##other", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("urn:a", "##other", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("urn:t", "##targetNamespace", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:a", "##targetNamespace", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("urn:anything", "##any", ""));
  EXPECT_TRUE(n->IsNamespaceValid("urn:a", "urn:a", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("", "urn:a", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:b", "urn:a", "urn:t"));
  // Only the first of several tokens is examined as written; the check must end (false) for a
  // namespace that neither it nor the empty later tokens admit.
  EXPECT_TRUE(n->IsNamespaceValid("urn:t", "##targetNamespace ##local", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:b", "urn:a urn:b", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("urn:a urn:b", "urn:a urn:b", "urn:t"));
  EXPECT_TRUE(n->IsNamespaceValid("", "##targetNamespace ##local", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:b", "  ", "urn:t"));
  EXPECT_FALSE(n->IsNamespaceValid("urn:b", "", "urn:t"));
  EXPECT_EQ(MessageOf<COvInvalidNamespaceException>(
                [&] { n->TestNamespace("urn:b", "##local", "urn:t"); }),
            "Invalid namespace [urn:b]. The namespace must be one of [##local] where the target "
            "namespace is [urn:t]");
}

TEST(CXmlObjectBase, ElementNameMatching) {
  CXmlSerializationContext context;
  CXmlDocument doc(context);
  doc.LoadXml("<a:e xmlns:a='urn:a'/>");
  const CXmlElement* e = doc.GetDocumentElement();
  CSmartPtr<CTestNode> n = new CTestNode("x");
  EXPECT_TRUE(n->DoesElementNameMatch(context, e, "e", "urn:a"));
  EXPECT_FALSE(n->DoesElementNameMatch(context, e, "e", "urn:b"));
  EXPECT_FALSE(n->DoesElementNameMatch(context, e, "f", "urn:a"));
  EXPECT_FALSE(n->DoesElementNameMatch(context, nullptr, "e", "urn:a"));
  context.SetIgnoreNamespaces(true);
  EXPECT_TRUE(n->DoesElementNameMatch(context, e, "e", "urn:b"));
  CXmlSerializationContext dtd;
  dtd.SetSchemaType(SchemaType_DTD);
  EXPECT_TRUE(n->DoesElementNameMatch(dtd, e, "e", "urn:b"));
}

}  // namespace
