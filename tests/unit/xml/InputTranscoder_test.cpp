// Documents in encodings the parser does not know itself, converted to UTF-8 before parsing.
#include "xml/InputTranscoder.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "port/CodePage.h"

#include <gtest/gtest.h>
#include <string>

namespace OvXmlLib6 {
namespace {

struct LegacyCase {
  const char* encoding;
  const char* text;  // UTF-8, representable in the encoding
};

const LegacyCase kLegacyCases[] = {
    {"windows-1252", "Caf\xC3\xA9 \xE2\x82\xAC 5 \xE2\x80\x94 \xC5\x93uvre"},
    {"ISO-8859-15", "Caf\xC3\xA9 \xE2\x82\xAC 5, \xC5\x93uvre"},
    {"Shift_JIS", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE3\x83\x86\xE3\x82\xAD"},
    {"EUC-JP", "\xE6\x97\xA5\xE6\x9C\xAC\xE8\xAA\x9E\xE3\x81\xAE\xE3\x83\x86\xE3\x82\xAD"},
    {"GB18030", "\xE4\xB8\xAD\xE6\x96\x87 \xC3\xA9 \xF0\x9F\x98\x80"},
    {"KOI8-R", "\xD0\xA0\xD1\x83\xD1\x81\xD1\x81\xD0\xBA\xD0\xB8\xD0\xB9"},
};

std::string Document(const char* encoding, const char* text) {
  return std::string("<?xml version=\"1.0\" encoding=\"") + encoding + "\"?>\n<t a=\"" + text +
         "\">" + text + "</t>";
}

std::string Encode(const std::string& utf8, const char* encoding) {
  port::CCodePageConverter converter(encoding, "UTF-8");
  std::string out;
  converter.Convert(utf8, out);
  return out;
}

// Converts in pieces of `step` bytes, as a file or stream reader hands them over.
std::string Transcode(detail::CInputTranscoder& transcoder, const std::string& bytes,
                      std::size_t step) {
  std::string all;
  std::string piece;
  const auto* data = reinterpret_cast<const unsigned char*>(bytes.data());
  for (std::size_t at = 0; at < bytes.size(); at += step) {
    const std::size_t length = std::min(step, bytes.size() - at);
    transcoder.Convert(data + at, length, at + length == bytes.size(), piece);
    all += piece;
  }
  return all;
}

// Each document reads as its UTF-8 original, converted in any pieces (a character may be cut
// between two) and through the document reader.
TEST(InputTranscoder, LegacyEncodingsReadAsTheirUtf8Original) {
  for (const LegacyCase& c : kLegacyCases) {
    SCOPED_TRACE(c.encoding);
    const std::string original = Document(c.encoding, c.text);
    const std::string bytes = Encode(original, c.encoding);
    ASSERT_NE(bytes, original);
    for (std::size_t step : {std::size_t{1}, std::size_t{3}}) {
      detail::CInputTranscoder transcoder;
      ASSERT_TRUE(transcoder.Inspect(reinterpret_cast<const unsigned char*>(bytes.data()),
                                     bytes.size(), true));
      ASSERT_TRUE(transcoder.IsActive());
      EXPECT_EQ(Transcode(transcoder, bytes, step), original);
    }
    CXmlDocument document;
    document.LoadXmlStream(reinterpret_cast<const unsigned char*>(bytes.data()),
                           static_cast<std::uint32_t>(bytes.size()));
    const CXmlElement* root = document.GetDocumentElement();
    EXPECT_EQ(root->GetText(), c.text);
    ASSERT_EQ(root->GetAttributes().size(), 1u);
    EXPECT_EQ(root->GetAttributes()[0]->GetValue(), c.text);
  }
  CXmlDocument document;
  try {
    document.LoadXml("<?xml version='1.0' encoding='x-no-such-charset'?><t/>");
    ADD_FAILURE() << "an unknown encoding was accepted";
  } catch (const COvException& e) {
    EXPECT_EQ(e.GetMessage(),
              "unknown encoding 'x-no-such-charset' (not known to iconv either) at line 1");
  }
}

TEST(InputTranscoder, OnlyDeclaredForeignEncodingsAreConverted) {
  struct Case {
    std::string start;
    bool final;
    bool decided;
    bool active;
  };
  const Case cases[] = {
      {"<?xml version='1.0'?><a/>", true, true, false},
      {"<?xml version='1.0' encoding='utf-8'?><a/>", true, true, false},
      {"<?xml version='1.0' encoding = \"ISO-8859-1\"?>", true, true, false},
      {"<?xml version='1.0' encoding='KOI8-R'?>", false, true, true},
      {"<?xml version='1.0' encoding='no-such-charset'?>", true, true, false},
      {"<?xml version='1.0' enc", false, false, false},  // the declaration is cut: more needed
      {"<?xm", false, false, false},
      {"<?xm", true, true, false},
      {"<?xml-stylesheet href='a'?><a/>", true, true, false},
      {"<a encoding='KOI8-R'/>", false, true, false},
      {"\xEF\xBB\xBF<?xml version='1.0'?>", false, true, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.start);
    detail::CInputTranscoder transcoder;
    EXPECT_EQ(transcoder.Inspect(reinterpret_cast<const unsigned char*>(c.start.data()),
                                 c.start.size(), c.final),
              c.decided);
    EXPECT_EQ(transcoder.IsActive(), c.active);
  }
}

TEST(InputTranscoder, InvalidAndCutSequencesNameTheEncodingAndOffset) {
  const std::string head = "<?xml version='1.0' encoding='Shift_JIS'?><t>";
  const struct {
    std::string bytes;
    const char* message;
  } cases[] = {
      {head + "\x82\xA0\x82\xFF</t>",
       "Invalid byte sequence for the encoding Shift_JIS at byte "
       "offset 47"},
      {head + "\x82",
       "Invalid byte sequence for the encoding Shift_JIS: a character is cut at "
       "byte offset 45, the end of the document"},
  };
  for (const auto& c : cases) {
    for (std::size_t step : {std::size_t{1}, c.bytes.size()}) {
      detail::CInputTranscoder fresh;
      fresh.Inspect(reinterpret_cast<const unsigned char*>(c.bytes.data()), c.bytes.size(), true);
      try {
        Transcode(fresh, c.bytes, step);
        ADD_FAILURE() << "no error for step " << step;
      } catch (const COvException& e) {
        EXPECT_EQ(e.GetMessage(), c.message);
      }
    }
  }
}

}  // namespace
}  // namespace OvXmlLib6
