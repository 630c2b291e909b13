// Broken input ends in an exception with expat's message and line; a deep tree goes without
// recursion. (Hostile input has its own table, in HostileInput_test.cpp.)
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "unit/xml/StreamTestSupport.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;
using test::UBytes;

namespace {

std::string StreamError(const std::string& input) {
  CXmlDocument doc;
  return MessageOf(
      [&] { doc.LoadXmlStream(UBytes(input), static_cast<std::uint32_t>(input.size())); });
}

}  // namespace

TEST(CXmlDocumentBadInput, MalformedTextReportsExpatMessageAndLine) {
  EXPECT_EQ(StreamError("<a>\n<b>\n</a>"), "mismatched tag at line 3");
  EXPECT_EQ(StreamError("<a>text"), "no element found at line 1");
  EXPECT_EQ(StreamError("<a></a><b/>"), "junk after document element at line 1");
  EXPECT_EQ(StreamError("<a x='1' x='2'/>"), "duplicate attribute at line 1");
  EXPECT_EQ(StreamError("<p:a/>"), "unbound prefix at line 1");
  EXPECT_EQ(StreamError(" \r\n\t "), "no element found at line 2");
}

TEST(CXmlDocumentBadInput, DeepTreeIsReleasedWithoutRecursionOnReload) {
  const int depth = 100000;
  std::string xml = test::NestedElements(depth);
  CXmlDocument doc;
  doc.LoadXmlStream(UBytes(xml), static_cast<std::uint32_t>(xml.size()));
  // Reloading releases the whole chain.
  doc.LoadXml("<small/>");
  EXPECT_EQ(doc.GetDocumentElement()->GetFirstElement(), nullptr);
}
