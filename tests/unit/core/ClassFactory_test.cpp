// CClassfactoryBase reads an element's xsi:type into a local type name and its namespace.
#include "OvXmlLib6/core/ClassFactory.h"

#include "OvXmlLib6/xml/XmlDocument.h"

#include <gtest/gtest.h>

using namespace OvXmlLib6;

namespace {

struct CFactory : CClassfactoryBase {
  using CClassfactoryBase::GetElementType;
  using CClassfactoryBase::GetElementTypeNamespaceUri;
};

TEST(CClassfactoryBase, ReadsTheInstanceTypeAttribute) {
  CXmlDocument doc;
  doc.LoadXml(
      "<r xmlns='urn:own' xmlns:xsi='http://www.w3.org/2001/XMLSchema-instance' "
      "xmlns:t='urn:types'>"
      "<a xsi:type='t:Car'/><b xsi:type='Bike'/><c xsi:type='u:Boat'/><d type='t:Nope'/>"
      "</r>");
  CXmlElement* a = doc.GetDocumentElement()->GetFirstElement();
  CXmlElement* b = a->GetNextSiblingElement();
  CXmlElement* c = b->GetNextSiblingElement();
  CXmlElement* d = c->GetNextSiblingElement();
  EXPECT_EQ(CFactory::GetElementType(a), "Car");
  EXPECT_EQ(CFactory::GetElementTypeNamespaceUri(a), "urn:types");
  EXPECT_EQ(CFactory::GetElementType(b), "Bike");
  EXPECT_EQ(CFactory::GetElementTypeNamespaceUri(b), "urn:own");
  EXPECT_EQ(CFactory::GetElementType(c), "Boat");  // unbound prefix: the element's namespace
  EXPECT_EQ(CFactory::GetElementTypeNamespaceUri(c), "urn:own");
  EXPECT_EQ(CFactory::GetElementType(d), "");  // "type" outside the instance namespace
  EXPECT_EQ(CFactory::GetElementTypeNamespaceUri(d), "urn:own");
  EXPECT_EQ(CFactory::GetElementType(nullptr), "");
}

}  // namespace
