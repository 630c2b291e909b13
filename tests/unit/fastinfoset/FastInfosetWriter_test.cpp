// The Fast Infoset writer: documents of the reference encoder reproduced octet for octet, index
// reuse and the add limits, typed values, the declarations, comments and processing
// instructions, blocks handed to the stream, failures, and wildcard trees read back as they were
// written.
#include "OvXmlLib6/fastinfoset/FastInfosetWriter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/types/ItemType.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "unit/TestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <vector>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

const char kXml[] = "http://www.w3.org/XML/1998/namespace";

// The octets as upper-case hex pairs separated by spaces.
std::string Hex(const std::string& bytes) {
  static const char kDigits[] = "0123456789ABCDEF";
  std::string text;
  for (unsigned char c : bytes) {
    if (!text.empty()) text += ' ';
    text += kDigits[c >> 4];
    text += kDigits[c & 15];
  }
  return text;
}

// Writes a document with `write` and returns its octets.
std::string Write(const std::function<void(CFastInfosetWriter&)>& write,
                  const CXmlSerializationContext& context = CXmlSerializationContext(),
                  FInfoDecl declaration = FInfoDecl_None) {
  CBinaryStream stream;
  CFastInfosetWriter writer(&stream, context, declaration);
  writer.Open();
  write(writer);
  writer.Close();
  return test::Bytes(stream.GetData());
}

// The document read back by the library's reader, written out as XML text.
std::string ReadBack(const std::string& bytes,
                     const CXmlSerializationContext& context = CXmlSerializationContext()) {
  CSmartPtr<CElement> element = new CElement("x");
  element->FromXmlStream(reinterpret_cast<const unsigned char*>(bytes.data()),
                         static_cast<std::uint32_t>(bytes.size()), context);
  return element->ToXml(false, false);
}

// The XML text read into a wildcard tree and written out again.
std::string ViaXml(const std::string& xml) {
  CSmartPtr<CElement> element = new CElement("x");
  element->FromXml(xml.c_str());
  return element->ToXml(false, false);
}

void Leaf(CFastInfosetWriter& w, const char* name, const char* ns, const char* text) {
  w.WriteStartElement(name, ns);
  w.WriteText(text);
  w.WriteEndElement();
}

TEST(FastInfosetWriter, ReproducesTheReferenceEncodersOctets) {
  CXmlSerializationContext typed;
  typed.GetFIContext().SetSuggestedValues();
  struct Case {
    const char* name;
    std::function<void(CFastInfosetWriter&)> write;
    const CXmlSerializationContext* context;
    const char* octets;
  };
  const CXmlSerializationContext plain;
  const std::vector<Case> cases = {
      // Worked example A: names, values and chunks by index the second time, xml:lang through
      // the predefined entries, a CDATA section with the cdata algorithm. The reference encoder
      // declares in document order; this writer declares the prefixes, then the default
      // namespace, which is the same order here.
      {"example A",
       [](CFastInfosetWriter& w) {
         w.WriteComment("c");
         w.AddNamespace("p", "urn:p");
         w.SetDefaultNamespace("urn:d");
         w.WriteStartElement("order", "urn:p");
         w.WriteAttribute("id", "", "7");
         w.WriteAttribute("lang", kXml, "en");
         w.WriteProcessingInstruction("go", "now");
         for (int i = 0; i < 2; ++i) {
           w.WriteStartElement("item", "urn:d");
           w.WriteAttribute("qty", "", "2");
           w.WriteText("ab");
           w.WriteEndElement();
         }
         Leaf(w, "note", "urn:d", "<![CDATA[x<y]]>");
         w.WriteStartElement("e", "urn:p");
         w.WriteEndElement();
         w.WriteEndElement();
       },
       &plain,
       "E0 00 00 01 00 E2 40 63 78 CF 00 70 04 75 72 6E 3A 70 CD 04 75 72 6E 3A 64 F0 3F 81 81 04 "
       "6F 72 64 65 72 78 01 69 64 40 37 7B 80 80 03 6C 61 6E 67 41 65 6E F0 E1 01 67 6F 42 6E 6F "
       "77 7D 82 03 69 74 65 6D 78 02 71 74 79 40 32 F0 91 61 62 F0 41 02 82 F0 A0 F0 3D 82 03 6E "
       "6F 74 65 8C 26 00 78 3C 79 F0 3F 81 81 00 65 FF F0"},
      // Typed attribute values: int and boolean algorithms, numeric and date-time alphabets,
      // and the empty value.
      {"typed attributes",
       [](CFastInfosetWriter& w) {
         w.WriteStartElement("r", "");
         w.WriteAttribute("i", "", "258", ItemType_i4);
         w.WriteAttribute("b", "", "true", ItemType_boolean);
         w.WriteAttribute("n", "", "3.25", ItemType_decimal);
         w.WriteAttribute("t", "", "12:30", ItemType_time);
         w.WriteAttribute("e", "", "", ItemType_string);
         w.WriteEndElement();
       },
       &typed,
       "E0 00 00 01 00 7C 00 72 78 00 69 30 33 00 00 01 02 78 00 62 30 50 38 78 00 6E 60 01 3C 25 "
       "78 00 74 60 12 12 B3 0F 78 00 65 FF FF F0"},
      // Typed chunks, as the algorithm examples give them.
      {"typed chunks",
       [](CFastInfosetWriter& w) {
         w.WriteStartElement("r", "");
         const std::pair<int, const char*> values[] = {
             {ItemType_i4, "1000"}, {ItemType_i2, "1 -2"},
             {ItemType_i8, "-1"},   {ItemType_boolean, "true false true"},
             {ItemType_r4, "1.5"},  {ItemType_base64Binary, "3q2+"}};
         char name[] = "a";
         for (const auto& value : values) {
           w.WriteStartElement(name, "");
           w.WriteText(value.second, value.first);
           w.WriteEndElement();
           ++name[0];
         }
         w.WriteEndElement();
       },
       &typed,
       "E0 00 00 01 00 3C 00 72 3C 00 61 8C 0E 01 00 00 03 E8 F0 3C 00 62 8C 0A 01 00 01 FF FE F0 "
       "3C 00 63 8C 12 05 FF FF FF FF FF FF FF FF F0 3C 00 64 8C 14 1A F0 3C 00 65 8C 1A 01 3F C0 "
       "00 00 F0 3C 00 66 8C 06 00 DE AD BE FF F0"},
      {"empty comment, PI without data, empty value, whitespace chunk",
       [](CFastInfosetWriter& w) {
         w.WriteStartElement("a", "");
         w.WriteComment("");
         w.WriteProcessingInstruction("t", "");
         w.WriteStartElement("b", "");
         w.WriteAttribute("x", "", "");
         w.WriteEndElement();
         w.WriteText("  ");
         w.WriteEndElement();
       },
       &plain, "E0 00 00 01 00 3C 00 61 E2 FF E1 00 74 FF 7C 00 62 78 00 78 FF FF 91 20 20 FF"},
      {"document-level items around the root; a PI given as raw block",
       [](CFastInfosetWriter& w) {
         w.WriteRawBlock("<?a?>");
         w.WriteStartElement("r", "");
         w.WriteEndElement();
         w.WriteComment("x");
       },
       &plain, "E0 00 00 01 00 E1 00 61 FF 3C 00 72 F0 E2 40 78 F0"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::string octets;
    EXPECT_EQ(MessageOf([&] { octets = Write(c.write, *c.context); }), "no exception");
    EXPECT_EQ(Hex(octets), c.octets);
  }
}

// A stream that takes each block out as it comes, as a converter writing to a pipe would.
class CBlockStream : public CBinaryStream {
 public:
  void FlushBuffer() override {
    if (GetLength() == 0) return;
    blocks.push_back(test::Bytes(GetData()));
    m_data.Clear();
  }
  std::vector<std::string> blocks;
};

// Names, values and chunks come back by index, each form of index by its size; long values
// stay literal under the add limits; the bytes are handed over in blocks; the reader gets the
// same document back.
TEST(FastInfosetWriter, ReusesIndexesOfEveryWidthWithinTheAddLimits) {
  const auto many = [](int count) {
    return [count](CFastInfosetWriter& w) {
      w.WriteStartElement("r", "urn:r");
      for (int i = 0; i < count; ++i) {
        const std::string n = std::to_string(i);
        w.WriteStartElement(("e" + std::to_string(i % 2200)).c_str(), "urn:r");
        w.WriteAttribute(("a" + std::to_string(i % 70)).c_str(), "", ("v" + n).c_str());
        w.WriteText(("t" + std::to_string(i % 1100)).c_str());
        w.WriteEndElement();
      }
      w.WriteEndElement();
    };
  };
  std::string xml = "<r xmlns=\"urn:r\">";
  for (int i = 0; i < 9000; ++i) {
    xml += "<e" + std::to_string(i % 2200) + " a" + std::to_string(i % 70) + "=\"v" +
           std::to_string(i) + "\">t" + std::to_string(i % 1100) + "</e" +
           std::to_string(i % 2200) + ">";
  }
  xml += "</r>";
  CXmlSerializationContext context;
  const std::string octets = Write(many(9000), context);
  const std::string expected = ViaXml(xml);
  EXPECT_TRUE(ReadBack(octets) == expected);
  // Through the entry point, compressed: the reader inflates it.
  CSmartPtr<CElement> tree = new CElement("x");
  tree->FromXml(xml.c_str());
  EXPECT_TRUE(ReadBack(test::Bytes(tree->ToFastInfosetStream(FInfoDecl_None, context,
                                                             CompressionType_GZip))) == expected);

  // The same document once more, in blocks: the same octets, handed over as they fill.
  CBlockStream blocks;
  {
    CFastInfosetWriter writer(&blocks, context);
    writer.Open();
    many(9000)(writer);
    writer.Close();
  }
  std::string joined;
  for (const std::string& block : blocks.blocks) joined += block;
  EXPECT_EQ(joined, octets);
  ASSERT_GT(blocks.blocks.size(), 1u);
  EXPECT_GE(blocks.blocks[0].size(), CFastInfosetWriter::kBlockSize);
  EXPECT_LT(blocks.blocks[0].size(), CFastInfosetWriter::kBlockSize + 64);

  // Values longer than the add limits are never added: each repetition is a literal again.
  const auto repeated = [](CFastInfosetWriter& w) {
    w.WriteStartElement("r", "");
    for (int i = 0; i < 2; ++i) {
      w.WriteStartElement("e", "");
      w.WriteAttribute("a", "", "abc");
      w.WriteText("xyz");
      w.WriteEndElement();
    }
    w.WriteEndElement();
  };
  EXPECT_EQ(Hex(Write(repeated)),
            "E0 00 00 01 00 3C 00 72 7C 00 65 78 00 61 42 61 62 63 F0 92 00 78 79 7A F0 "
            "41 00 80 F0 A0 FF F0");
  CXmlSerializationContext limited;
  limited.GetFIContext().SetAttributeMaxAddLength(2);
  limited.GetFIContext().SetElementMaxAddLength(2);
  EXPECT_EQ(Hex(Write(repeated, limited)),
            "E0 00 00 01 00 3C 00 72 7C 00 65 78 00 61 02 61 62 63 F0 82 00 78 79 7A F0 "
            "41 00 02 61 62 63 F0 82 00 78 79 7A FF F0");
}

// A value that does not survive its type's algorithm unchanged is written as text; what does
// survive reads back as the same text.
TEST(FastInfosetWriter, TypedValuesReadBackAsTheirTextOrStayText) {
  CXmlSerializationContext context;
  context.GetFIContext().SetSuggestedValues();
  struct Case {
    int type;
    const char* text;
    bool encoded;
  };
  const Case cases[] = {
      {ItemType_i4, "-2147483648", true},
      {ItemType_i4, "+5", false},
      {ItemType_i4, "x1", false},
      {ItemType_i2, "-32768", true},
      {ItemType_i2, "32768", false},
      {ItemType_i4, "-0", false},
      {ItemType_i4, "007", false},
      {ItemType_i4, "1 2", true},
      {ItemType_boolean, "true", true},
      {ItemType_i2, "40000", false},
      {ItemType_ui8, "18446744073709551615", false},
      {ItemType_i8, "-9223372036854775808", true},
      {ItemType_boolean, "1", false},
      {ItemType_boolean, "false", true},
      {ItemType_r8, "0.1", true},
      {ItemType_r8, "1.0", false},
      {ItemType_r4, "3.4028235e+38", false},
      {ItemType_hexBinary, "0AFF", true},
      {ItemType_hexBinary, "0aff", false},
      {ItemType_date, "2026-11-20", true},
      {ItemType_date, "2026-11-20+01:00", false},
      {ItemType_duration, "P1D", false},
      {ItemType_decimal, "-12.50", true},
      {ItemType_string, "12", false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.text);
    const std::string octets = Write(
        [&](CFastInfosetWriter& w) {
          w.WriteStartElement("r", "");
          w.WriteAttribute("a", "", c.text, c.type);
          w.WriteText(c.text, c.type);
          w.WriteEndElement();
        },
        context);
    EXPECT_EQ(ReadBack(octets), "<r a=\"" + std::string(c.text) + "\">" + c.text + "</r>");
    // The attribute value's first octet: 0x30 (algorithm) or 0x20/0x60 (alphabet) when encoded.
    const unsigned char first = static_cast<unsigned char>(octets[11]);
    EXPECT_EQ((first & 0x20) != 0, c.encoded) << Hex(octets);
  }
}

TEST(FastInfosetWriter, StartsWithTheChosenDeclaration) {
  const char* const declarations[] = {"",
                                      "<?xml encoding='finf'?>",
                                      "<?xml version='1.0' encoding='finf'?>",
                                      "<?xml version='1.1' encoding='finf'?>",
                                      "<?xml encoding='finf' standalone='no'?>",
                                      "<?xml encoding='finf' standalone='yes'?>",
                                      "<?xml version='1.0' encoding='finf' standalone='no'?>",
                                      "<?xml version='1.1' encoding='finf' standalone='no'?>",
                                      "<?xml version='1.0' encoding='finf' standalone='yes'?>",
                                      "<?xml version='1.1' encoding='finf' standalone='yes'?>"};
  const auto root = [](CFastInfosetWriter& w) {
    w.WriteStartElement("r", "");
    w.WriteEndElement();
  };
  for (int i = 0; i < 10; ++i) {
    SCOPED_TRACE(i);
    const std::string octets = Write(root, CXmlSerializationContext(), static_cast<FInfoDecl>(i));
    EXPECT_EQ(octets, std::string(declarations[i]) + std::string("\xE0\0\0\1\0\x3C\0\x72\xFF", 9));
    EXPECT_EQ(ReadBack(octets), "<r/>");
  }
  EXPECT_EQ(MessageOf([&] { Write(root, CXmlSerializationContext(), static_cast<FInfoDecl>(10)); }),
            "Failed to write FastInfoset. Unknown XML declaration choice [10].");
}

TEST(FastInfosetWriter, FailsWithWhatCannotBeWritten) {
  const std::vector<std::pair<std::function<void(CFastInfosetWriter&)>, const char*>> cases = {
      {[](CFastInfosetWriter& w) {
         w.WriteStartElement("r", "");
         w.WriteRawLine("<xs:schema/>");
       },
       "Raw XML text (such as an in-line schema) cannot be carried in a Fast Infoset document."},
      {[](CFastInfosetWriter& w) { w.WriteRawBlock("<r/>"); },
       "Raw text cannot be carried in a Fast Infoset document; only processing instructions "
       "(<?target data?>) can."},
      {[](CFastInfosetWriter& w) { w.WriteStartElement("r", ""); },
       "An Element has not been closed."},
      {[](CFastInfosetWriter& w) { w.WriteComment("only"); }, "The document has no element."},
      {[](CFastInfosetWriter& w) {
         w.WriteStartElement("r", "");
         Leaf(w, "c", "", "");
         w.WriteAttribute("a", "", "1");
       },
       "Attributes must be added before elements"},
      {[](CFastInfosetWriter& w) { w.WriteText("t"); }, "Text must be inside an element."},
      {[](CFastInfosetWriter& w) { w.WriteAttribute("a", "", "1"); },
       "Cannot write the attribute: no element is open to take it."},
      {[](CFastInfosetWriter& w) { w.WriteEndElement(); },
       "Cannot end an element: no element is open."},
      {[](CFastInfosetWriter& w) {
         Leaf(w, "r", "", "");
         w.WriteStartElement("s", "");
       },
       "A second document element cannot be written."},
      {[](CFastInfosetWriter& w) { w.WriteStartElement("", "urn:x"); },
       "An element's local name must not be empty."},
      {[](CFastInfosetWriter& w) { w.WriteProcessingInstruction("a b", ""); },
       "Invalid processing instruction target."},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.second);
    EXPECT_EQ(MessageOf([&] { Write(c.first); }),
              std::string("Failed to write FastInfoset. ") + c.second);
  }
}

// Wildcard trees through ToFastInfosetStream read back as the same tree that their XML gives,
// with the context's vocabulary inline or named as external, and its processing instructions.
TEST(FastInfosetWriter, WildcardTreesReadBackAsTheirXmlDoes) {
  const std::string documents[] = {
      "<p:order xmlns:p=\"urn:p\" xmlns=\"urn:d\" id=\"7\" xml:lang=\"en\"><item q=\"2\">ab</item>"
      "<item q=\"2\">ab</item><p:e/><x:f xmlns:x=\"urn:x\" x:a=\"1\" p:b=\"\u00e9\">"
      "\u00e9\U0001F600 &amp; &lt;</x:f><g xmlns=\"\">plain</g></p:order>",
      "<r><a xmlns:y=\"urn:y\" y:k=\"v\"><b y:k=\"w\"/></a><c xmlns:z=\"urn:z\" z:k=\"v\"/></r>",
  };
  CXmlSerializationContext inline_;
  inline_.GetFIContext().GetVocabulary()->AddElement("p", "urn:p", "order");
  inline_.GetFIContext().GetVocabulary()->AddAttributeValue("ab");
  CXmlSerializationContext external = inline_;
  external.GetFIContext().SetExternalVocabularyURI("urn:vocabulary");
  CXmlSerializationContext withPi;
  withPi.GetProcessingInstructions().push_back("<?keep going on?>");
  for (const std::string& document : documents) {
    for (const CXmlSerializationContext* context :
         {&CXmlSerializationContext::GetDefaultContext(), &inline_, &external, &withPi}) {
      SCOPED_TRACE(document);
      EXPECT_EQ(MessageOf([&] {
                  CSmartPtr<CElement> tree = new CElement("x");
                  tree->FromXml(document.c_str());
                  const std::string expected =
                      ViaXml(tree->ToXml(false, false, EOLType_LF, *context));
                  const CBinaryData octets = tree->ToFastInfosetStream(FInfoDecl_None, *context);
                  EXPECT_EQ(ReadBack(test::Bytes(octets), *context), expected);
                }),
                "no exception");
    }
  }
}

}  // namespace
