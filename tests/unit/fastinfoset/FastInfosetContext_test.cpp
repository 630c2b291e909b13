#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <cstdint>
#include <gtest/gtest.h>

using namespace OvXmlLib6;

using Encoding = CFastInfosetContext::EncodedCharacterString;

TEST(CFastInfosetContext, FreshContextHasTheDefaults) {
  const CFastInfosetContext context;
  EXPECT_EQ(context.GetDefaultStringEncoding(), 0);
  for (int type = 0; type < CFastInfosetContext::EncodingTableSize; ++type) {
    EXPECT_EQ(context.GetEncoding(type), (Encoding{0, 0})) << type;
  }
  EXPECT_EQ(context.GetAttributeMaxAddLength(), 6u);
  EXPECT_EQ(context.GetElementMaxAddLength(), 6u);
  EXPECT_FALSE(context.GetUseGeneratedVocabulary());
  EXPECT_EQ(context.GetExternalVocabularyURI(), "");
  std::uint32_t index = 0;
  EXPECT_TRUE(context.GetVocabulary()->FindPrefixNameIndex("xml", index));
}

TEST(CFastInfosetContext, SuggestedValuesFillTheEncodingTable) {
  CFastInfosetContext context;
  context.SetSuggestedValues();
  const Encoding plain{0, 0};
  const Encoding numeric{1, 1};
  const Encoding dateTime{1, 2};
  const auto algorithm = [](std::uint32_t n) { return Encoding{2, n}; };
  const Encoding expected[CFastInfosetContext::EncodingTableSize] = {
      plain,         // 0 no value
      algorithm(1),  // 1 hexBinary
      algorithm(2),  // 2 base64Binary
      algorithm(3),  // 3 i1
      algorithm(3),  // 4 i2
      algorithm(4),  // 5 i4
      algorithm(5),  // 6 i8
      algorithm(3),  // 7 ui1
      algorithm(4),  // 8 ui2
      algorithm(5),  // 9 ui4
      algorithm(5),  // 10 ui8
      algorithm(7),  // 11 r4
      algorithm(8),  // 12 r8
      dateTime,      // 13 duration
      dateTime,      // 14 yearMonth
      dateTime,      // 15 monthDay
      dateTime,      // 16 year
      dateTime,      // 17 month
      dateTime,      // 18 day
      dateTime,      // 19 date
      dateTime,      // 20 datetime
      dateTime,      // 21 time
      plain,         // 22 char
      plain,         // 23 string
      algorithm(6),  // 24 boolean
      numeric,       // 25 decimal
      numeric,       // 26 integer
      plain,         // 27
      plain};        // 28
  for (int type = 0; type < CFastInfosetContext::EncodingTableSize; ++type) {
    const Encoding actual = context.GetEncoding(type);
    EXPECT_EQ(actual.kind, expected[type].kind) << "item type " << type;
    EXPECT_EQ(actual.index, expected[type].index) << "item type " << type;
  }
}

TEST(CFastInfosetContext, EncodingIndexOutsideTheTableThrows) {
  CFastInfosetContext context;
  context.SetEncoding(28, Encoding{2, 9});
  EXPECT_EQ(context.GetEncoding(28), (Encoding{2, 9}));
  for (int bad : {-1, 29}) {
    try {
      context.GetEncoding(bad);
      FAIL() << "expected COvInvalidParamException";
    } catch (const COvInvalidParamException& e) {
      EXPECT_EQ(e.GetMessage(), "Index Out of range [" + std::to_string(bad) + "]");
    }
    EXPECT_THROW(context.SetEncoding(bad, Encoding{}), COvInvalidParamException);
  }
}

TEST(CFastInfosetContext, CopyIsMemberwise) {
  CFastInfosetContext source;
  source.SetDefaultStringEncoding(1);
  source.SetEncoding(23, Encoding{2, 10});
  source.SetAttributeMaxAddLength(32);
  source.SetElementMaxAddLength(0);
  source.SetUseGeneratedVocabulary(true);
  source.SetExternalVocabularyURI("urn:v");
  source.GetVocabulary()->AddLocalName("root");
  CFastInfosetContext copy;
  copy = source;
  source.GetVocabulary()->AddLocalName("later");
  EXPECT_EQ(copy.GetDefaultStringEncoding(), 1);
  EXPECT_EQ(copy.GetEncoding(23), (Encoding{2, 10}));
  EXPECT_EQ(copy.GetAttributeMaxAddLength(), 32u);
  EXPECT_EQ(copy.GetElementMaxAddLength(), 0u);
  EXPECT_TRUE(copy.GetUseGeneratedVocabulary());
  EXPECT_EQ(copy.GetExternalVocabularyURI(), "urn:v");
  EXPECT_EQ(copy.GetVocabulary()->GetLocalNamesTable().size(), 1u);
  copy.SetExternalVocabularyURI(nullptr);
  EXPECT_EQ(copy.GetExternalVocabularyURI(), "");
}
