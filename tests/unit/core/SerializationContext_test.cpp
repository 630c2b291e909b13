#include "OvXmlLib6/core/SerializationContext.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::ExpectThrowMessage;

namespace {

const char kFirstLine[] =
    "The parser can only ignore additional elements, or ignore the fact that some required ones "
    "are missing, you can not ignore both\n";

}  // namespace

TEST(CXmlSerializationContext, IgnoreUnknownAndIgnoreMissingExcludeEachOther) {
  CXmlSerializationContext context;
  context.SetIgnoreMissingMandatoryElements(true);
  ExpectThrowMessage<COvInvalidStateException>(
      [&] { context.SetIgnoreUnknownElements(true); },
      std::string(kFirstLine) +
          "Set IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements to "
          "true");
  EXPECT_FALSE(context.GetIgnoreUnknownElements());
  EXPECT_TRUE(context.GetIgnoreMissingMandatoryElements());
  // Clearing never throws, and afterwards the other flag can be set.
  context.SetIgnoreUnknownElements(false);
  context.SetIgnoreMissingMandatoryElements(false);
  context.SetIgnoreUnknownElements(true);
  EXPECT_TRUE(context.GetIgnoreUnknownElements());
  ExpectThrowMessage<COvInvalidStateException>(
      [&] { context.SetIgnoreMissingMandatoryElements(true); },
      std::string(kFirstLine) +
          "Set IgnoreUnknownElements to false before setting IgnoreMissingMandatoryElements to "
          "true");
  EXPECT_FALSE(context.GetIgnoreMissingMandatoryElements());
}

TEST(CXmlSerializationContext, SchemaTypeDtdImpliesIgnoreNamespaces) {
  CXmlSerializationContext context;
  context.SetSchemaType(static_cast<SchemaType>(1));
  EXPECT_FALSE(context.GetIgnoreNamespaces());
  context.SetSchemaType(static_cast<SchemaType>(2));
  EXPECT_TRUE(context.GetIgnoreNamespaces());
  context.SetSchemaType(SchemaType_XSD);
  context.SetIgnoreNamespaces(true);
  EXPECT_TRUE(context.GetIgnoreNamespaces());
}

TEST(CXmlSerializationContext, CopiesEveryOptionByValue) {
  CXmlSerializationContext source;
  source.SetDefaultNamespaceURI("urn:default");
  source.GetNamespaceAliases().Add("a", "urn:a");
  source.GetProcessingInstructions().push_back("<?pi x?>");
  source.SetInLineSchema("<xs:schema/>");
  source.SetIgnoreInvalidCollectionCounts(true);
  source.SetIgnoreMissingChoice(true);
  source.SetIgnoreUnknownElements(true);
  source.SetIgnoreUnknownAttributes(true);
  source.SetIgnoreNamespaces(true);
  source.SetSchemaType(SchemaType_XDR);
  source.SetNoOptionalAttributeDefaultOutput(true);
  source.SetStripCDATA(false);
  source.GetFIContext().SetElementMaxAddLength(9);
  source.GetFIContext().GetVocabulary()->AddLocalName("root");

  CXmlSerializationContext copy(source);
  CXmlSerializationContext assigned;
  assigned.SetIgnoreMissingMandatoryElements(true);
  assigned = source;
  for (const CXmlSerializationContext* c : {&copy, &assigned}) {
    EXPECT_EQ(c->GetDefaultNamespaceURI(), "urn:default");
    EXPECT_EQ(c->GetNamespaceAliases().GetNamespaceFromAlias("a"), "urn:a");
    EXPECT_EQ(c->GetProcessingInstructions().size(), 1u);
    EXPECT_EQ(c->GetInLineSchema(), "<xs:schema/>");
    EXPECT_TRUE(c->GetIgnoreInvalidCollectionCounts());
    EXPECT_TRUE(c->GetIgnoreMissingChoice());
    EXPECT_FALSE(c->GetIgnoreMissingMandatoryElements());
    EXPECT_TRUE(c->GetIgnoreUnknownElements());
    EXPECT_TRUE(c->GetIgnoreUnknownAttributes());
    EXPECT_TRUE(c->GetIgnoreNamespaces());
    EXPECT_EQ(c->GetSchemaType(), SchemaType_XDR);
    EXPECT_TRUE(c->GetNoOptionalAttributeDefaultOutput());
    EXPECT_FALSE(c->GetStripCDATA());
    EXPECT_EQ(c->GetFIContext().GetElementMaxAddLength(), 9u);
    std::uint32_t index = 0;
    EXPECT_TRUE(c->GetFIContext().GetVocabulary()->FindLocalNameIndex("root", index));
  }
  // The alias map is copied by value.
  copy.GetNamespaceAliases().Add("b", "urn:b");
  EXPECT_FALSE(source.GetNamespaceAliases().DoesNamespaceExist("urn:b"));
}

TEST(CXmlSerializationContext, DefaultContextIsOneMutableInstance) {
  CXmlSerializationContext& first = CXmlSerializationContext::GetDefaultContext();
  first.SetStripCDATA(false);
  EXPECT_FALSE(CXmlSerializationContext::GetDefaultContext().GetStripCDATA());
  first.SetStripCDATA(true);
}

TEST(CNamespaceAliasMap, OrdersByNamespaceBytesNotByInsertion) {
  CNamespaceAliasMap map;
  map.Add("z", "urn:b");
  map.Add("y", "urn:a");
  map.Add("x", "URN:c");         // upper case sorts before lower case
  map.Add("w", "urn:\xC3\xA9");  // bytes above 0x7F sort last
  ASSERT_EQ(map.GetNamespaceCount(), 4);
  EXPECT_EQ(map.GetNamespaceAt(0), "URN:c");
  EXPECT_EQ(map.GetNamespaceAt(1), "urn:a");
  EXPECT_EQ(map.GetNamespaceAt(2), "urn:b");
  EXPECT_EQ(map.GetNamespaceAt(-5), "URN:c");
  EXPECT_EQ(map.GetNamespaceAt(3), "urn:\xC3\xA9");
  EXPECT_EQ(map.GetNamespaceAt(4), "");
  EXPECT_EQ(CNamespaceAliasMap().GetNamespaceAt(0), "");
  std::string order;
  for (const auto& entry : map) order += entry.second;
  EXPECT_EQ(order, "xyzw");
}

// One alias a namespace: adding another replaces it. An alias may name several namespaces; the
// first in map order is found. Asking the alias of an unknown namespace adds an empty entry.
TEST(CNamespaceAliasMap, AddReplacesAliasesAndLookupsFollowMapOrder) {
  CNamespaceAliasMap map;
  map.Add("a", "urn:x");
  map.Add("b", "urn:x");
  EXPECT_EQ(map.GetNamespaceCount(), 1);
  EXPECT_EQ(map.GetAliasFromNamespace("urn:x"), "b");
  EXPECT_FALSE(map.DoesAliasExist("a"));
  map.RemoveNamespace("urn:x");
  map.RemoveNamespace("urn:absent");
  EXPECT_FALSE(map.DoesNamespaceExist("urn:x"));
  EXPECT_EQ(map.GetNamespaceCount(), 0);

  map.Add("p", "urn:2");
  map.Add("p", "urn:1");
  EXPECT_EQ(map.GetNamespaceFromAlias("p"), "urn:1");
  ExpectThrowMessage([&] { map.GetNamespaceFromAlias("q"); }, "Namespace alias [q] not found");

  EXPECT_EQ(map.GetAliasFromNamespace("urn:unknown"), "");
  EXPECT_EQ(map.GetNamespaceCount(), 3);
  EXPECT_TRUE(map.DoesNamespaceExist("urn:unknown"));
  EXPECT_TRUE(map.DoesAliasExist(""));
}
