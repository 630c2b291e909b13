#include "OvXmlLib6/fastinfoset/Vocabulary.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;

namespace {

std::vector<std::string> Entries(const CFIStringTable& table) {
  return std::vector<std::string>(table.begin(), table.end());
}

}  // namespace

TEST(CFIVocabulary, NewVocabularyHoldsTheBuiltInEntries) {
  const CFIVocabulary vocabulary;
  std::uint32_t index = 0;
  EXPECT_TRUE(vocabulary.FindPrefixNameIndex("xml", index));
  EXPECT_EQ(index, 1u);
  index = 0;
  EXPECT_TRUE(
      vocabulary.FindNamespaceNameIndex("http:////www.w3.org//XML//1998//namespace", index));
  EXPECT_EQ(index, 1u);
  EXPECT_FALSE(vocabulary.FindNamespaceNameIndex("http://www.w3.org/XML/1998/namespace", index));
  EXPECT_EQ(Entries(vocabulary.GetPrefixNamesTable()), std::vector<std::string>{"xml"});
  EXPECT_EQ(Entries(vocabulary.GetNamespaceNamesTable()),
            std::vector<std::string>{"http:////www.w3.org//XML//1998//namespace"});
  EXPECT_EQ(vocabulary.GetRestrictedAlphabets(),
            (std::vector<std::string>{"0123456789-+.e ", "0123456789-:TZ "}));
}

// A value added twice keeps its first index, and later ones stay aligned with their table
// positions, so that a reader's table agrees.
TEST(CFIVocabulary, StringIndexesFollowInsertionOrderPerTable) {
  CFIVocabulary vocabulary;
  vocabulary.AddPrefixName("p");
  vocabulary.AddNamespaceName("urn:a");
  vocabulary.AddLocalName("first");
  vocabulary.AddLocalName("first");
  vocabulary.AddLocalName("second");
  vocabulary.AddAttributeValue("v");
  vocabulary.AddElementValue("text");
  vocabulary.AddElementValue("v");
  std::uint32_t index = 0;
  EXPECT_TRUE(vocabulary.FindPrefixNameIndex("p", index));
  EXPECT_EQ(index, 2u);
  EXPECT_TRUE(vocabulary.FindNamespaceNameIndex("urn:a", index));
  EXPECT_EQ(index, 2u);
  EXPECT_TRUE(vocabulary.FindLocalNameIndex("first", index));
  EXPECT_EQ(index, 1u);
  EXPECT_TRUE(vocabulary.FindLocalNameIndex("second", index));
  EXPECT_EQ(index, 3u);
  EXPECT_EQ(*vocabulary.GetLocalNamesTable().GetAt(3), "second");
  EXPECT_TRUE(vocabulary.FindAttributeValueIndex("v", index));
  EXPECT_EQ(index, 1u);
  EXPECT_TRUE(vocabulary.FindElementValueIndex("v", index));
  EXPECT_EQ(index, 2u);
  EXPECT_FALSE(vocabulary.FindAttributeValueIndex("text", index));
  EXPECT_EQ(*vocabulary.GetCharacterChunksTable().GetAt(1), "text");
  EXPECT_EQ(vocabulary.GetCharacterChunksTable().GetAt(0), nullptr);
  EXPECT_EQ(vocabulary.GetCharacterChunksTable().GetAt(3), nullptr);
}

TEST(CFIVocabulary, QualifiedNamesAddTheirMissingPartsFirst) {
  CFIVocabulary vocabulary;
  vocabulary.AddLocalName("known");
  vocabulary.AddElement("p", "urn:e", "root");
  vocabulary.AddElement("", "", "known");
  vocabulary.AddAttribute("xml", "http:////www.w3.org//XML//1998//namespace", "lang");
  vocabulary.AddAttribute("", "", "root");

  EXPECT_EQ(Entries(vocabulary.GetPrefixNamesTable()), (std::vector<std::string>{"xml", "p"}));
  EXPECT_EQ(Entries(vocabulary.GetLocalNamesTable()),
            (std::vector<std::string>{"known", "root", "lang"}));
  const std::vector<CQNameParts> elements(vocabulary.GetElementNamesTable().begin(),
                                          vocabulary.GetElementNamesTable().end());
  EXPECT_EQ(elements, (std::vector<CQNameParts>{CQNameParts(2, 2, 2), CQNameParts(0, 0, 1)}));
  const std::vector<CQNameParts> attributes(vocabulary.GetAttributeNamesTable().begin(),
                                            vocabulary.GetAttributeNamesTable().end());
  EXPECT_EQ(attributes, (std::vector<CQNameParts>{CQNameParts(1, 1, 3), CQNameParts(0, 0, 2)}));

  std::uint32_t index = 0;
  EXPECT_TRUE(vocabulary.FindElementIndex("", "", "known", index));
  EXPECT_EQ(index, 2u);
  EXPECT_TRUE(vocabulary.FindAttributeIndex("", "", "root", index));
  EXPECT_EQ(index, 2u);
  // Element and attribute names are separate tables, and every part counts.
  EXPECT_FALSE(vocabulary.FindAttributeIndex("", "", "known", index));
  EXPECT_FALSE(vocabulary.FindElementIndex("", "urn:e", "root", index));
  EXPECT_FALSE(vocabulary.FindElementIndex("p", "", "urn:eroot", index));
}

TEST(CFIVocabulary, MapStopsIndexingAtTwoToTheTwenty) {
  CFIVocabulary vocabulary;
  // The prefix table starts with "xml", so entry 2^20 is the last one that gets an index.
  for (std::uint32_t i = 1; i < CFIVocabulary::MaxIndexedEntries; ++i) {
    vocabulary.AddPrefixName(std::to_string(i));
  }
  vocabulary.AddPrefixName("over");
  std::uint32_t index = 0;
  EXPECT_TRUE(
      vocabulary.FindPrefixNameIndex(std::to_string(CFIVocabulary::MaxIndexedEntries - 1), index));
  EXPECT_EQ(index, CFIVocabulary::MaxIndexedEntries);
  EXPECT_FALSE(vocabulary.FindPrefixNameIndex("over", index));
  EXPECT_EQ(vocabulary.GetPrefixNamesTable().size(), CFIVocabulary::MaxIndexedEntries + 1);
}
