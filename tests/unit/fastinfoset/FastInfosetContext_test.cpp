#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <cstdint>
#include <gtest/gtest.h>
#include <map>

using namespace OvXmlLib6;
using test::ExpectThrowMessage;

using Encoding = CFastInfosetContext::EncodedCharacterString;

TEST(CFastInfosetContext, SuggestedValuesFillTheEncodingTable) {
  CFastInfosetContext context;
  std::uint32_t index = 0;  // a fresh context holds a fresh vocabulary
  EXPECT_TRUE(context.GetVocabulary()->FindPrefixNameIndex("xml", index));
  context.SetSuggestedValues();
  // Item type -> {kind, index}; every type not listed stays plain {0, 0}.
  const std::map<int, Encoding> expected = {
      {1, {2, 1}},  {2, {2, 2}},  {3, {2, 3}},  {4, {2, 3}},  {5, {2, 4}},  {6, {2, 5}},
      {7, {2, 3}},  {8, {2, 4}},  {9, {2, 5}},  {10, {2, 5}}, {11, {2, 7}}, {12, {2, 8}},
      {13, {1, 2}}, {14, {1, 2}}, {15, {1, 2}}, {16, {1, 2}}, {17, {1, 2}}, {18, {1, 2}},
      {19, {1, 2}}, {20, {1, 2}}, {21, {1, 2}}, {24, {2, 6}}, {25, {1, 1}}, {26, {1, 1}}};
  for (int type = 0; type < CFastInfosetContext::EncodingTableSize; ++type) {
    const auto found = expected.find(type);
    const Encoding want = found == expected.end() ? Encoding{0, 0} : found->second;
    const Encoding actual = context.GetEncoding(type);
    EXPECT_EQ(actual.kind, want.kind) << "item type " << type;
    EXPECT_EQ(actual.index, want.index) << "item type " << type;
  }
}

TEST(CFastInfosetContext, EncodingIndexOutsideTheTableThrows) {
  CFastInfosetContext context;
  context.SetEncoding(28, Encoding{2, 9});
  EXPECT_EQ(context.GetEncoding(28), (Encoding{2, 9}));
  for (int bad : {-1, 29}) {
    ExpectThrowMessage<COvInvalidParamException>(
        [&] { context.GetEncoding(bad); }, "Index Out of range [" + std::to_string(bad) + "]");
    EXPECT_THROW(context.SetEncoding(bad, Encoding{}), COvInvalidParamException);
  }
}
