// Hostile and broken input: every case ends in an exception with a clear message (or a valid
// tree), never a crash, a hang or a leak. Each runs well under a second with sanitizers.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/Compression.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "unit/xml/StreamTestSupport.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;
using test::Packed;
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
  // Invalid UTF-8 in a UTF-8 document is refused by the parser.
  EXPECT_EQ(StreamError("<a>\xC3\x28</a>"), "not well-formed (invalid token) at line 1");
  EXPECT_EQ(StreamError("<a>\xED\xA0\x80</a>"), "not well-formed (invalid token) at line 1");
  EXPECT_EQ(StreamError(std::string("<a>\0</a>", 8)), "not well-formed (invalid token) at line 1");
}

TEST(CXmlDocumentBadInput, EntityExpansionIsStopped) {
  std::string bomb = "<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY e0 \"hahahahahahahaha\">";
  for (int i = 1; i < 12; ++i) {
    const std::string e = "&e" + std::to_string(i - 1) + ";";
    std::string ten;
    for (int k = 0; k < 10; ++k) ten += e;
    bomb += "<!ENTITY e" + std::to_string(i) + " \"" + ten + "\">";
  }
  bomb += "]><b>&e11;</b>";
  const std::string message = StreamError(bomb);
  EXPECT_NE(message.find("amplification"), std::string::npos) << message;
  EXPECT_NE(message.find(" at line 1"), std::string::npos) << message;

  // External entities are never fetched: the reference is skipped.
  EXPECT_EQ(StreamError("<!DOCTYPE a [<!ENTITY x SYSTEM \"/etc/passwd\">]><a>&x;</a>"),
            "no exception");
}

TEST(CXmlDocumentBadInput, CompressedInputThatIsBrokenOrTooLarge) {
  const std::string xml = "<r><v>1</v></r>";
  std::string gz = Packed(xml + std::string(200, ' '), 1);
  // Cut short or corrupted: not inflated, so the bytes reach the parser and fail there; the
  // message says what the likely cause is, with the parser's message inside.
  const std::string cause =
      "The input starts like gzip or zlib data, but the compressed data is truncated or corrupt; "
      "read as text instead, it fails";
  std::string corrupt = gz;
  corrupt[corrupt.size() / 2] ^= 0x5A;
  for (const std::string& broken : {gz.substr(0, gz.size() / 2), corrupt}) {
    CXmlDocument doc;
    try {
      doc.LoadXmlStream(UBytes(broken), static_cast<std::uint32_t>(broken.size()));
      ADD_FAILURE() << "no exception";
    } catch (const COvException& e) {
      EXPECT_EQ(e.GetMessage(), cause);
      ASSERT_NE(e.GetInnerException(), nullptr);
      EXPECT_NE(e.GetInnerException()->GetMessage().find("at line 1"), std::string::npos);
    }
  }

  // A stream that inflates past the process-wide limit stops with the codec's message (a
  // well-formed one: the parser refuses anything else on its first bytes).
  const std::string bomb = Packed("<a>" + std::string(4 << 20, ' ') + "</a>", 2);
  SetMaxInflatedSize(1 << 20);
  const std::string message = StreamError(bomb);
  SetMaxInflatedSize(0);
  EXPECT_NE(message.find("limit of 1048576 bytes"), std::string::npos) << message;
}

TEST(CXmlDocumentBadInput, DeepNestingWholeOrCutShortIsReleasedWithoutRecursion) {
  const int depth = 100000;
  std::string xml = test::NestedElements(depth);
  xml.insert(static_cast<std::size_t>(depth) * 3, "x");
  CXmlDocument doc;
  doc.LoadXmlStream(UBytes(xml), static_cast<std::uint32_t>(xml.size()));
  int levels = 0;
  const CXmlElement* e = doc.GetDocumentElement();
  for (; e->GetFirstElement() != nullptr; e = e->GetFirstElement()) ++levels;
  EXPECT_EQ(levels, depth - 1);
  EXPECT_EQ(e->GetText(), "x");
  // Reloading releases the whole chain.
  doc.LoadXml("<small/>");
  EXPECT_EQ(doc.GetDocumentElement()->GetFirstElement(), nullptr);

  // Cut short, the partial tree is kept and released the same way.
  EXPECT_EQ(StreamError(xml.substr(0, xml.size() - 12)), "no element found at line 1");
}

// Expat's own handling of attributes grows faster than linearly (about 2 s for a million on
// its own); 50,000 keep the test fast and still pass the name tables' limit three times over.
TEST(CXmlDocumentBadInput, ManyAttributesOnOneElement) {
  const int count = 50000;
  std::string xml = "<r";
  xml.reserve(count * 10);
  char name[16];
  for (int i = 0; i < count; ++i) {
    xml += " a";
    int n = i, k = 0;
    do {
      name[k++] = static_cast<char>('a' + n % 26);
      n /= 26;
    } while (n != 0);
    xml.append(name, k);
    xml += "='1'";
  }
  xml += "/>";
  CXmlDocument doc;
  doc.LoadXmlStream(UBytes(xml), static_cast<std::uint32_t>(xml.size()));
  const auto& attributes = doc.GetDocumentElement()->GetAttributes();
  ASSERT_EQ(attributes.size(), static_cast<std::size_t>(count));
  EXPECT_EQ(attributes.back()->GetValue(), "1");
}
