#include "xml/StreamConverter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/xml/StreamTestSupport.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;

namespace {

class CMemorySink : public detail::IByteSink {
 public:
  void Write(const unsigned char* data, std::size_t length) override {
    bytes.append(reinterpret_cast<const char*>(data), length);
  }
  void Finish() override { ++finished; }
  std::string bytes;
  int finished = 0;
};

detail::CConvertOptions Plain() {
  detail::CConvertOptions options;
  options.header = false;
  return options;
}

std::string Convert(const std::string& input, const detail::CConvertOptions& options = Plain(),
                    std::size_t step = 1 << 16) {
  test::CPieceSource source(input, step);
  CMemorySink sink;
  detail::CStreamConverter converter(options);
  const detail::CConvertCounts counts = converter.Convert(source, sink);
  EXPECT_EQ(counts.bytesIn, input.size());
  EXPECT_EQ(counts.bytesOut, sink.bytes.size());
  EXPECT_EQ(sink.finished, 1);
  return sink.bytes;
}

}  // namespace

TEST(StreamConverter, KeepsTheDocumentInOrder) {
  detail::CConvertOptions formatted = Plain();
  formatted.format = true;
  const struct {
    const char* input;
    const char* output;
    detail::CConvertOptions options;
  } cases[] = {
      // Mixed content, comments and processing instructions in and around the document element.
      {"<p>Hello <b>big</b> world</p>", "<p>Hello <b>big</b> world</p>", Plain()},
      {"<?a x?>\n<!--c-->\n<r><!-- in --><?b?>t<!---->u</r>\n<!--after-->",
       "<?a x?>\n<!--c-->\n<r><!-- in --><?b?>t<!---->u</r>\n<!--after-->\n", Plain()},
      // Declarations stay where they were, with their prefixes.
      {"<p:r xmlns:p='urn:p' xmlns='urn:d' p:a='1' b='2'><c xmlns=''><p:d/></c><e/></p:r>",
       "<p:r xmlns:p=\"urn:p\" xmlns=\"urn:d\" p:a=\"1\" b=\"2\"><c xmlns=\"\"><p:d/></c><e/>"
       "</p:r>",
       Plain()},
      {"<a><x:b xmlns:x='urn:x' x:c='1'/><d xmlns:y='urn:x' y:e='2'/></a>",
       "<a><x:b xmlns:x=\"urn:x\" x:c=\"1\"/><d xmlns:y=\"urn:x\" y:e=\"2\"/></a>", Plain()},
      // CDATA sections and comments as they were; text that only looks like markup, and a
      // carriage return from a character reference, still escaped.
      {"<a><![CDATA[<&>]]>&lt;![CDATA[x]]&gt;<!--a<b&c-->&#13;&#10;</a>",
       "<a><![CDATA[<&>]]>&lt;![CDATA[x]]&gt;<!--a<b&c-->&#13;\n</a>", Plain()},
      // Tabs and line ends in attribute values stay as they were read.
      {"<a v='1&#9;2&#10;3&#13;4\n5'/>", "<a v=\"1&#9;2&#10;3&#13;4 5\"/>", Plain()},
      // Formatting replaces whitespace between markup, keeps an element's only text and leaves
      // mixed content as it is.
      {"<a>\n  <b> </b>\n  <c>x <i>y</i> z</c>\n  <!--k-->\n</a>",
       "<a>\n\t<b> </b>\n\t<c>x <i>y</i> z</c>\n<!--k-->\n</a>\n", formatted},
  };
  detail::CConvertOptions fi = Plain();
  fi.fastInfoset = true;
  for (const auto& c : cases) {
    // Read whole and one byte at a time.
    for (std::size_t step : {std::size_t{1} << 16, std::size_t{1}}) {
      EXPECT_EQ(Convert(c.input, c.options, step), c.output) << c.input;
    }
    // Through Fast Infoset and back, the document is the same.
    if (!c.options.format) {
      const std::string binary = Convert(c.input, fi);
      EXPECT_EQ(binary.substr(0, 4), std::string("\xE0\0\0\x01", 4));
      EXPECT_EQ(Convert(binary, Plain(), 5), c.output) << c.input;
    }
  }
  // UTF-16 output has a byte-order mark and the declaration names it.
  detail::CConvertOptions utf16;
  utf16.utf16 = true;
  const std::string wide = Convert("<a>\xC3\xA9</a>", utf16);
  EXPECT_EQ(wide.substr(0, 4), std::string("\xFF\xFE<\0", 4));
  EXPECT_EQ(Convert(wide), "<a>\xC3\xA9</a>");
  EXPECT_NE(Convert(wide, utf16).find(std::string("U\0T\0F\0-\0\x31\0\x36\0", 12)),
            std::string::npos);
}

TEST(StreamConverter, CompressesAndInflatesPieceByPiece) {
  // Large enough for many deflate and inflate blocks.
  std::string xml = "<list>";
  for (int i = 0; i < 20000; ++i) xml += "<item n=\"" + std::to_string(i) + "\">text</item>";
  xml += "</list>";
  for (CompressionType type : {CompressionType_GZip, CompressionType_ZLib}) {
    detail::CConvertOptions packed = Plain();
    packed.compression = type;
    const std::string compressed = Convert(xml, packed);
    EXPECT_LT(compressed.size(), xml.size() / 4);
    EXPECT_EQ(compressed.substr(0, 2), type == CompressionType_GZip ? "\x1F\x8B" : "\x78\x01");
    EXPECT_EQ(Convert(compressed, Plain(), 7), xml);
    // Cut short or damaged, it fails and says so.
    EXPECT_EQ(test::MessageOf([&] { Convert(compressed.substr(0, compressed.size() - 5)); }),
              "Failed to inflate the compressed input: it ends before the compressed stream does");
    std::string damaged = compressed;
    damaged[damaged.size() / 2] ^= 0x55;
    // zlib or, when the damage inflates to other text first, the parser notices.
    EXPECT_NE(test::MessageOf([&] { Convert(damaged); }), "no exception");
  }
  // Concatenated gzip members are one input; anything else after the end is refused.
  const auto gzip = [](const std::string& text) {
    std::string packed;
    detail::CDeflater(1).Write(test::UBytes(text), text.size(), true, packed);
    return packed;
  };
  const std::string part1 = gzip("<a>x");
  const std::string part2 = gzip("y</a>");
  EXPECT_EQ(Convert(part1 + part2), "<a>xy</a>");
  EXPECT_NE(test::MessageOf([&] { Convert(part1 + "junk"); }).find("data follows the end"),
            std::string::npos);
}

TEST(StreamConverter, ReadsFastInfosetFromItsContent) {
  // Fast Infoset input, plain or compressed, is recognised from its identification.
  const std::string pis("\xE0\x00\x00\x01\x00\xE1\x00\x61\xFF\x3C\x00\x72\xF0\xE2\x40\x78\xF0", 17);
  const std::string namespaces(
      "\xE0\x00\x00\x01\x00\x38\xCD\x04urn:x\xF0\x3D\x81\x00\x61\x38\xCC\xF0\x3C\x00\x62\xFF\xF0",
      26);
  std::string packed;
  detail::CDeflater(2).Write(test::UBytes(namespaces), namespaces.size(), true, packed);
  EXPECT_EQ(Convert(pis, Plain(), 3), "<?a?>\n<r/>\n<!--x-->\n");
  EXPECT_EQ(Convert(packed), "<a xmlns=\"urn:x\"><b xmlns=\"\"/></a>");
  EXPECT_EQ(test::MessageOf([&] { Convert(pis.substr(0, 11)); }),
            "Failed to parse FastInfoset. Length beyond the end of data at byte offset 11");
}

TEST(StreamConverter, BadInputFailsWithItsReason) {
  const struct {
    std::string input;
    const char* message;
  } cases[] = {
      {"", "The input is empty"},
      {"not xml", "syntax error at line 1"},
      {"<a>\n<b></a>", "mismatched tag at line 2"},
      {"<a/><b/>", "junk after document element at line 1"},
      {"<a>", "no element found at line 1"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(test::MessageOf([&] { Convert(c.input); }), c.message) << c.input;
  }
}
