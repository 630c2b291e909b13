// The descriptors on their own: the wildcards' namespace rule (every token of a restriction
// counts) and the wildcards built on it, the namespace a new wildcard element gets, element
// matching, and the checks that only some descriptors may make.
#include "OvXmlLib6/metadata/ElementInfo.h"

#include "OvXmlLib6/metadata/AttributeInfo.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/types/Variant.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "unit/TestSupport.h"
#include "unit/metadata/CollectionTestSupport.h"

#include <gtest/gtest.h>
#include <string>

namespace {

using namespace OvXmlLib6;
using namespace OvXmlLib6Data;
using test::ChainOf;

std::string Refusal(const char* ns, const char* restriction, const char* targetNamespace) {
  return FormatString(
      "Namespace: Invalid namespace [%s]. The namespace must be one of [%s] where the target "
      "namespace is [%s]",
      ns, restriction, targetNamespace);
}

TEST(CAttributeInfoTestNamespace, EveryTokenOfTheRestrictionCounts) {
  struct Case {
    const char* ns;
    const char* restriction;
    const char* targetNamespace;
    bool admitted;
  };
  const Case cases[] = {
      {"urn:x", "##any", "urn:t", true},
      {"", "##any", "", true},
      {"urn:x", "##other", "urn:t", true},
      {"", "##other", "urn:t", true},
      {"urn:t", "##other", "urn:t", false},
      {"", "##other", "", false},
      {"", "##local", "urn:t", true},
      {"urn:t", "##local", "urn:t", false},
      {"urn:t", "##targetNamespace", "urn:t", true},
      {"urn:x", "##targetNamespace", "urn:t", false},
      {"", "##local ##targetNamespace", "urn:t", true},
      {"urn:t", "##local ##targetNamespace", "urn:t", true},
      {"urn:x", "##local ##targetNamespace", "urn:t", false},
      {"urn:t", "##targetNamespace ##local", "urn:t", true},
      {"urn:t", "urn:x ##targetNamespace", "urn:t", true},
      {"urn:x", "urn:x", "urn:t", true},
      {"", "urn:x", "urn:t", false},
      // A plain URI must equal the whole restriction: of a list of URIs none matches.
      {"urn:a", "urn:a urn:b", "urn:t", false},
      {"urn:b", "urn:a urn:b", "urn:t", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string(c.ns) + " in [" + c.restriction + "] of " + c.targetNamespace);
    EXPECT_EQ(
        ChainOf([&] { CAttributeInfo::TestNamespace(c.ns, c.restriction, c.targetNamespace); }),
        c.admitted ? "no exception" : Refusal(c.ns, c.restriction, c.targetNamespace));
  }
}

TEST(CAttributeInfoTestNamespace, WildcardsTakeEveryTokenOfTheirRestriction) {
  const char* both = "##local ##targetNamespace";
  EXPECT_EQ(ChainOf([&] { CSmartPtr<CElement> e = new CElement("n", "urn:t", both, "urn:t"); }),
            "no exception");
  EXPECT_EQ(ChainOf([&] { CSmartPtr<CElement> e = new CElement("n", "", both, "urn:t"); }),
            "no exception");
  EXPECT_EQ(ChainOf([&] { CSmartPtr<CElement> e = new CElement("n", "urn:x", both, "urn:t"); }),
            Refusal("urn:x", both, "urn:t"));

  // A collection of such elements reads unqualified and target-namespace elements and stops at
  // the first other one.
  CSmartPtr<CElementCol> elements = new CElementCol("e", both, "urn:t", 0, -1);
  EXPECT_EQ(ovxml_test::CAccess::Read(elements,
                                      "<r xmlns:t='urn:t' xmlns:x='urn:x'><a/><t:b/><x:c/>"
                                      "<d/></r>"),
            "c");
  ASSERT_EQ(elements->GetCount(), 2);
  EXPECT_EQ(elements->Item(1)->GetNamespace(), "urn:t");

  CSmartPtr<CAttributeCol> attributes = new CAttributeCol("a", both, "urn:t");
  EXPECT_EQ(
      ChainOf([&] { ovxml_test::CAccess::Read(attributes, "<r xmlns:t='urn:t' a='1' t:b='2'/>"); }),
      "no exception");
  EXPECT_EQ(attributes->GetCount(), 2);
  EXPECT_NE(ChainOf([&] { ovxml_test::CAccess::Read(attributes, "<r xmlns:x='urn:x' x:c='3'/>"); }),
            "no exception");
}

TEST(CElementInfoGetAnyDefaultNamespace, TheFirstTokenDecides) {
  struct Case {
    const char* restriction;
    const char* targetNamespace;
    const char* expected;
  };
  const Case cases[] = {
      {"##any", "urn:t", "urn:t"},
      {"##other", "", "DefaultNamespace"},
      {"##other", "urn:t", ""},
      {"##local", "urn:t", ""},
      {"##targetNamespace", "urn:t", "urn:o"},
      {"##local ##targetNamespace", "urn:t", ""},
      {"##targetNamespace ##local", "urn:t", "urn:o"},
      {"##any ##local", "urn:t", "urn:t"},
      {"##other ##any", "", "DefaultNamespace"},
      {"urn:a urn:b", "urn:t", ""},
      {"urn:a", "urn:t", ""},
      {"", "urn:t", ""},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(std::string("[") + c.restriction + "] of " + c.targetNamespace);
    EXPECT_EQ(CElementInfo::GetAnyDefaultNamespace(c.restriction, c.targetNamespace, "urn:o"),
              c.expected);
  }
}

TEST(CElementInfo, MatchesElementsByNameAndNamespaceUnlessNamespacesAreIgnored) {
  CXmlDocument document;
  document.LoadXml("<r xmlns:t='urn:t' xmlns:x='urn:x'><t:n/><x:n/><t:m/><n/></r>");
  CXmlElement* tn = document.GetDocumentElement()->GetFirstElement();
  CXmlElement* xn = tn->GetNextSiblingElement();
  CXmlElement* tm = xn->GetNextSiblingElement();
  CXmlElement* n = tm->GetNextSiblingElement();
  const CElementInfoSeqPrimCol descriptor("n", "urn:t", 0);
  CXmlSerializationContext strict;
  CXmlSerializationContext loose;
  loose.SetIgnoreNamespaces(true);
  CXmlSerializationContext dtd;
  dtd.SetSchemaType(SchemaType_DTD);
  for (const CXmlSerializationContext* context : {&strict, &loose, &dtd}) {
    const bool ignoring = context != &strict;
    EXPECT_TRUE(descriptor.IsThisElement(*context, tn));
    EXPECT_EQ(descriptor.IsThisElement(*context, xn), ignoring);
    EXPECT_EQ(descriptor.IsThisElement(*context, n), ignoring);
    EXPECT_FALSE(descriptor.IsThisElement(*context, tm));
    EXPECT_FALSE(descriptor.IsThisElement(*context, nullptr));
  }
}

TEST(CElementInfo, ChecksOnlyWhatItMayCheck) {
  OvVariant nine;
  nine.SetI4(9);
  const CElementInfoSeqPrimCol collection("c", "", 0);
  EXPECT_EQ(ChainOf([&] { collection.CheckRestriction(nine); }),
            "Exception: Cannot CheckRestriction for type: i4");
  const CElementInfoSeqPrimMnd ranged(
      "r", "", 0, ItemType_i4, nullptr, CWhitespaceUtils::WhitespaceRule_Collapse,
      CPrimitiveRestrictions(nullptr, -1, -1, "1", "5", nullptr, nullptr, -1));
  EXPECT_EQ(ChainOf([&] { ranged.CheckRestriction(nine); }), "Exception: Invalid Value for r [9]");

  // Only the all group's reading validates its members at the end.
  const CXmlSerializationContext context;
  const CElementInfoChoicePrimCol branch("b", "", 0);
  for (const CElementInfo* d :
       {static_cast<const CElementInfo*>(&ranged), static_cast<const CElementInfo*>(&collection),
        static_cast<const CElementInfo*>(&branch)}) {
    EXPECT_EQ(ChainOf([&] { d->Validate(context, nullptr, false, true); }),
              "Exception: Not implemented, should never be called");
  }
  const CElementInfoAllPrimMnd member("m", "", 0, ItemType_i4, nullptr,
                                      CWhitespaceUtils::WhitespaceRule_Collapse,
                                      CPrimitiveRestrictions());
  EXPECT_TRUE(member.Validate(context, nullptr, true, true));
  EXPECT_FALSE(member.Validate(context, nullptr, false, false));
  EXPECT_EQ(ChainOf([&] { member.Validate(context, nullptr, false, true); }),
            "Validation: Failed to find the mandatory element [m]");
}

}  // namespace
