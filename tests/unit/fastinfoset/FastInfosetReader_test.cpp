#include "fastinfoset/FastInfosetReader.h"

#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "unit/TestSupport.h"
#include "unit/xml/EventRecorder.h"
#include "unit/xml/StreamTestSupport.h"
#include "xml/ByteSource.h"
#include "xml/XmlEvents.h"

#include <algorithm>
#include <cstring>
#include <deque>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <utility>
#include <vector>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

// Octets written as hex pairs; spaces and '|' separate them.
std::string Hex(const char* text) {
  std::string bytes;
  int high = -1;
  for (const char* p = text; *p != '\0'; ++p) {
    const char c = *p;
    if (c == ' ' || c == '|') continue;
    const int v = c <= '9' ? c - '0' : (c & ~0x20) - 'A' + 10;
    if (high < 0) {
      high = v;
    } else {
      bytes.push_back(static_cast<char>(high << 4 | v));
      high = -1;
    }
  }
  return bytes;
}

// The tree as text: {namespace}name, attributes, text and children, element by element.
std::string Dump(const CXmlElement* element) {
  std::string out;
  std::vector<std::pair<const CXmlElement*, bool>> stack{{element, false}};
  while (!stack.empty()) {
    auto [e, closing] = stack.back();
    stack.pop_back();
    if (closing) {
      out += ")";
      continue;
    }
    out += "{" + e->GetNamespaceURI() + "}" + e->GetLocalName() + "[";
    for (const CXmlAttribute* a : e->GetAttributes()) {
      out += "{" + a->GetNamespaceURI() + "}" + a->GetLocalName() + "=" + a->GetValue() + ";";
    }
    out += "]'" + e->GetText() + "'(";
    stack.push_back({e, true});
    std::vector<const CXmlElement*> children;
    for (const CXmlElement* c = e->GetFirstElement(); c != nullptr;
         c = c->GetNextSiblingElement()) {
      children.push_back(c);
    }
    for (auto it = children.rbegin(); it != children.rend(); ++it) stack.push_back({*it, false});
  }
  return out;
}

std::string Load(const std::string& bytes, const CXmlSerializationContext& context =
                                               CXmlSerializationContext::GetDefaultContext()) {
  CXmlDocument document(context);
  const std::unique_ptr<char[]> copy = test::ExactCopy(bytes);
  document.LoadXmlStream(reinterpret_cast<const unsigned char*>(copy.get()),
                         static_cast<std::uint32_t>(bytes.size()));
  return Dump(document.GetDocumentElement());
}

// The events of a document read in memory (piece 0) or from a source in pieces of that size.
std::string Events(
    const std::string& bytes, std::size_t piece = 0,
    const CXmlSerializationContext& context = CXmlSerializationContext::GetDefaultContext()) {
  test::CEventRecorder recorder;
  CFastInfosetReader reader(recorder, context);
  if (piece == 0) {
    const std::unique_ptr<char[]> copy = test::ExactCopy(bytes);
    const auto* data = reinterpret_cast<const unsigned char*>(copy.get());
    const long start = CFastInfosetReader::FindHeader(data, bytes.size());
    if (start < 0) return "not Fast Infoset";
    reader.Read(data, bytes.size(), static_cast<std::size_t>(start));
  } else {
    test::CPieceSource source(bytes, piece);
    reader.Read(source);
  }
  return recorder.log;
}

// The message of reading the document into a tree, after checking that reading it from a source
// in pieces of one and of five bytes fails with the same.
std::string FailureOf(const std::string& bytes) {
  const std::string message = MessageOf([&] { Load(bytes); });
  for (std::size_t piece : {1, 5}) {
    EXPECT_EQ(MessageOf([&] { Events(bytes, piece); }), message) << "in pieces of " << piece;
  }
  return message;
}

// Example A, as the reference encoder writes it.
const char kExampleA[] =
    "E0 00 00 01 00 E2 40 63 78 CF 00 70 04 75 72 6E 3A 70 CD 04 75 72 6E 3A 64 F0 3F 81 81"
    "04 6F 72 64 65 72 78 01 69 64 40 37 7B 80 80 03 6C 61 6E 67 41 65 6E F0 E1 01 67 6F"
    "42 6E 6F 77 7D 82 03 69 74 65 6D 78 02 71 74 79 40 32 F0 91 61 62 F0 41 02 82 F0 A0 F0"
    "3D 82 03 6E 6F 74 65 8C 26 00 78 3C 79 F0 3F 81 81 00 65 FF F0";

TEST(FastInfosetReader, ReadsRealEncoderOutputAsTheSameTreeAsItsXml) {
  CXmlSerializationContext keepCDATA;
  keepCDATA.SetStripCDATA(false);
  struct Case {
    std::string octets;
    const char* xml;
  };
  const Case cases[] = {
      {Hex(kExampleA),
       "<!--c--><p:order xmlns:p='urn:p' xmlns='urn:d' id='7' xml:lang='en'><?go now?>"
       "<item qty='2'>ab</item><item qty='2'>ab</item><note><![CDATA[x<y]]></note><p:e/>"
       "</p:order>"},
      // Every header component, behind the XML declaration.
      {"<?xml version='1.0' encoding='finf' standalone='yes'?>" +
           Hex("E0 00 00 01 07 04 55 54 46 2D 38 01 42 31 2E 30 3C 00 72 FF"),
       "<r/>"},
      {Hex("E0 00 00 01 00 | 7C 00 72 | 78 00 6B | 51 00 E9 | F0 | 96 01 00 68 00 E9 | FF"),
       "<r k='\xC3\xA9'>h\xC3\xA9</r>"},
      {Hex("E0 00 00 01 00 7C 00 72 | 78 00 69 30 33 00 00 01 02 | 78 00 62 30 50 38 |"
           "78 00 6E 60 01 3C 25 | 78 00 74 60 12 12 B3 0F | 78 00 65 FF | FF | F0"),
       "<r i='258' b='true' n='3.25' t='12:30' e=''/>"},
      {Hex("E0 00 00 01 00 3C 00 61 E2 FF E1 00 74 FF 7C 00 62 78 00 78 FF FF 91 20 20 FF"),
       "<a><!----><?t?><b x=''/>  </a>"},
      {Hex("E0 00 00 01 00 E1 00 61 FF 3C 00 72 F0 E2 40 78 F0"), "<?a?><r/><!--x-->"},
      {Hex("E0 00 00 01 00 38 CD 04 75 72 6E 3A 78 F0 3D 81 00 61 38 CC F0 3C 00 62 FF F0"),
       "<a xmlns='urn:x'><b xmlns=''/></a>"},
      // Typed chunks: shorts, a boolean list, a double, two UUIDs and a numeric-alphabet value.
      {Hex("E0 00 00 01 00 3C 00 72 3C 00 61 8C 0A 01 00 01 FF FE F0 3C 00 62 8C 14 1A F0"
           "3C 00 64 8C 1E 05 C0 00 00 00 00 00 00 00 F0 3C 00 75 8C 22 1D"
           "01 23 45 67 89 AB CD EF FE DC BA 98 76 54 32 10 00 00 00 00 00 00 00 00 FF FF FF FF"
           "FF FF FF FF F0 3C 00 6E 98 02 01 A1 2C 5D 3F FF F0"),
       "<r><a>1 -2</a><b>true false true</b><d>-2</d>"
       "<u>01234567-89ab-cdef-fedc-ba9876543210 00000000-0000-0000-ffff-ffffffffffff</u>"
       "<n>-12.5e3</n></r>"},
  };
  for (const Case& c : cases) {
    // A source that hands out the document in small pieces gives the same events.
    const std::string events = Events(c.octets);
    for (std::size_t piece : {1, 3}) EXPECT_EQ(Events(c.octets, piece), events) << c.xml;
    const CXmlSerializationContext* contexts[] = {&CXmlSerializationContext::GetDefaultContext(),
                                                  &keepCDATA};
    for (const CXmlSerializationContext* context : contexts) {
      CXmlDocument xml(*context);
      xml.LoadXml(c.xml);
      EXPECT_EQ(Load(c.octets, *context), Dump(xml.GetDocumentElement())) << c.xml;
    }
  }
}

TEST(FastInfosetReader, ReadsEveryIndexForm) {
  // Root r, then children c2..c2100 (element names 2..2100), each with the chunk v-<k> (chunk
  // k - 1); then elements and chunks by their medium and large indexes.
  std::string bytes = Hex("E0 00 00 01 00 3C 00 72");
  for (int k = 2; k <= 2100; ++k) {
    const std::string name = "c" + std::to_string(k);
    const std::string value = "v-" + std::to_string(k);
    bytes += '\x3C';
    bytes += static_cast<char>(name.size() - 1);
    bytes += name;
    bytes += static_cast<char>(0x92);
    bytes += static_cast<char>(value.size() - 3);
    bytes += value + '\xF0';
  }
  bytes += Hex("20 09 B0 01 F0 28 00 0B B4 00 05 FF F0");
  const std::string tree = Load(bytes);
  const std::string tail = "{}c2100[]'v-2100'(){}c42[]'v-19'(){}c2092[]'v-1047'())";
  ASSERT_GT(tree.size(), tail.size());
  EXPECT_EQ(tree.substr(tree.size() - tail.size()), tail);
}

TEST(FastInfosetReader, ReadsExternalVocabularyOfTheContext) {
  CXmlSerializationContext context;
  context.GetFIContext().SetExternalVocabularyURI("urn:v");
  context.GetFIContext().GetVocabulary()->AddElement("", "", "root");
  const std::string bytes = Hex("E0 00 00 01 | 20 | 10 00 | 04 75 72 6E 3A 76 | 00 | FF");
  EXPECT_EQ(Load(bytes, context), "{}root[]''()");
  EXPECT_EQ(MessageOf([&] { Load(bytes); }),
            "Failed to parse FastInfoset. Unknown external vocabulary at byte offset 7");
}

// <p>Hello <b>big</b> world</p>
const char kMixed[] =
    "E0 00 00 01 00 3C 00 70 82 03 48 65 6C 6C 6F 20 3C 00 62 82 00 62 69 67 F0"
    "82 03 20 77 6F 72 6C 64 FF";
// <!--a--><?t d?><p><!--i--><?t?>x</p><?t u?><!--z-->, the second and third target by index.
const char kAround[] =
    "E0 00 00 01 00 E2 00 61 E1 00 74 00 64 3C 00 70 E2 00 69 E1 80 FF 80 78 F0"
    "E1 80 00 75 E2 00 7A F0";

TEST(FastInfosetReader, DeliversEveryItemAsEventsInDocumentOrder) {
  struct Case {
    const char* octets;
    const char* events;
  };
  const Case cases[] = {
      {kMixed, "<p#1>'Hello '<b#2>'big'</>' world'</>"},
      {kAround, "<!--a--><?t d?><p#1><!--i--><?t ?>'x'</><?t u?><!--z-->"},
      // Declarations come before their element; a name read again by index is the same record.
      {kExampleA,
       "<!--c-->ns(p=urn:p)ns(=urn:d)<p:order{urn:p}#1 id#2='7' xml:lang{http://www.w3.org/XML/"
       "1998/namespace}#3='en'><?go now?><item{urn:d}#4 qty#5='2'>'ab'</><item{urn:d}#4 qty#5="
       "'2'>'ab'</><note{urn:d}#6>[['x<y']]</><p:e{urn:p}#7></></>"},
  };
  for (const Case& c : cases) {
    const std::string bytes = Hex(c.octets);
    for (std::size_t piece : {0, 1, 7}) {
      EXPECT_EQ(Events(bytes, piece), c.events) << c.octets << " in pieces of " << piece;
    }
  }
}

TEST(FastInfosetReader, SourceWindowGrowsOnlyWithWhatTheSourceDelivers) {
  // A 200,000-octet chunk, longer than the window, read in pieces of 4 KiB.
  const std::string text(200000, 'a');
  std::string bytes = Hex("E0 00 00 01 00 3C 00 70 83 00 03 0C 3D") + text + Hex("FF");
  {
    test::CEventRecorder recorder;
    CFastInfosetReader reader(recorder, CXmlSerializationContext::GetDefaultContext());
    test::CPieceSource source(bytes, 4096);
    reader.Read(source);
    EXPECT_EQ(recorder.log, "<p#1>'" + text + "'</>");
  }
  // Lengths that the source does not back: 4 GiB and 1 MiB claimed, 100 and 100,000 octets
  // delivered. The room offered to the source shows the window: it doubles only once filled.
  struct Case {
    const char* head;
    std::size_t delivered;
    std::size_t largestRoom;
    const char* message;
  };
  const Case cases[] = {
      {"83 FF FF FF FF", 100, 64 * 1024, "Length beyond the end of data at byte offset 13"},
      {"83 00 0F FE FD", 100000, 64 * 1024, "Length beyond the end of data at byte offset 13"},
  };
  for (const Case& c : cases) {
    const std::string claimed =
        Hex("E0 00 00 01 00 3C 00 70") + Hex(c.head) + std::string(c.delivered, 'a');
    test::CEventRecorder recorder;
    CFastInfosetReader reader(recorder, CXmlSerializationContext::GetDefaultContext());
    test::CPieceSource source(claimed, 4096);
    EXPECT_EQ(MessageOf([&] { reader.Read(source); }),
              std::string("Failed to parse FastInfoset. ") + c.message);
    EXPECT_LE(source.largestCapacity, c.largestRoom) << c.head;
  }
  EXPECT_EQ(MessageOf([] { Events("<r/>", 1); }),
            "Failed to parse FastInfoset. No Fast Infoset header at byte offset 0");
}

TEST(FastInfosetReader, EveryTruncationFailsInMemoryAndFromASource) {
  for (const char* octets : {kExampleA, kMixed, kAround}) {
    const std::string bytes = Hex(octets);
    for (std::size_t n = 4; n < bytes.size(); ++n) {
      const std::string message = FailureOf(bytes.substr(0, n));
      EXPECT_EQ(message.rfind("Failed to parse FastInfoset. ", 0), 0u) << n << ": " << message;
    }
  }
}

TEST(FastInfosetReader, RejectsBadInputWithWhatAndWhere) {
  const auto body = [](const char* octets) { return Hex("E0 00 00 01 00") + Hex(octets); };
  // 2^20 local names in the initial vocabulary, then local-name literals that the full table
  // cannot take: they serve where they stand, and the qualified names made of them are entered
  // in their own tables (the child is named by index).
  std::string fullTable = Hex("E0 00 00 01 20 00 80 8F FF 7F");
  for (int i = 0; i < (1 << 20); ++i) fullTable += Hex("00 61");
  EXPECT_EQ(Events(fullTable + Hex("7C 00 62 78 00 63 00 76 F0 00 FF F0")),
            "<b#1 c#2='v'><b#1></></>");
  std::string manyAttributes = body("7C 00 72");
  for (char name = 'a'; name <= 'q'; ++name) {
    manyAttributes += Hex("78 00") + name + Hex("00 76");
  }
  manyAttributes += Hex("00 00 76 F0 F0");
  struct Case {
    std::string octets;
    const char* message;
  };
  const Case cases[] = {
      {body("7C 00 72 78 00 6B 85 F0 F0"), "Index out of the vocabulary table at byte offset 11"},
      {body("3C 00 72 A3 F0 F0"), "Index out of the vocabulary table at byte offset 8"},
      {body("3C 00 72 B9 F0"), "Invalid index at byte offset 8"},
      {body("3C 60 FF FF FF FF 72"), "Length beyond the end of data at byte offset 11"},
      {body("3C 50 72"), "Invalid length at byte offset 6"},
      {body("3C 00 FF F0"), "Invalid UTF-8 string at byte offset 7"},
      {body("3C 01 C3 28 F0"), "Invalid UTF-8 string at byte offset 7"},
      // Characters XML does not allow cannot be written back as XML: refused wherever they come.
      {body("3C 00 01 F0"), "Character not allowed in XML at byte offset 7"},
      {body("3C 00 72 80 14 F0 F0"), "Character not allowed in XML at byte offset 9"},
      {body("3C 00 72 82 00 EF BF BF F0 F0"), "Character not allowed in XML at byte offset 10"},
      {body("3C 00 72 85 00 00 F0 F0"), "Character not allowed in XML at byte offset 9"},
      // Nor can names that are not XML names: a digit first, a space, a non-name letter.
      {body("3C 00 31 F0"), "Invalid name at byte offset 7"},
      {body("3C 02 61 20 62 F0"), "Invalid name at byte offset 7"},
      {body("3C 02 61 C3 97 F0"), "Invalid name at byte offset 7"},
      {body("3D 00 7C 00 72 F0"), "Namespace name holding \"|\" at byte offset 7"},
      // Nor two attributes of one name (the second named by index), among few or many.
      {body("7C 00 72 78 00 61 00 76 00 00 76 F0 F0"), "Duplicate attribute at byte offset 5"},
      {manyAttributes, "Duplicate attribute at byte offset 5"},
      // Nor what XML namespaces reserve: an attribute named xmlns, the prefix xmlns, the prefix
      // xml declared for another namespace.
      {body("7C 00 72 78 04 78 6D 6C 6E 73 00 76 F0 F0 F0"),
       "Reserved prefix or namespace at byte offset 8"},
      {body("3F 04 78 6D 6C 6E 73 00 75 00 72 F0"),
       "Reserved prefix or namespace at byte offset 5"},
      {body("38 CF 02 78 6D 6C 00 75 3C 00 72 F0 F0"),
       "Reserved prefix or namespace at byte offset 5"},
      {body("3C 00 72 84 00 F0 F0"), "Odd length of a UTF-16 string at byte offset 9"},
      {body("3C 00 72 85 DC 00 00 41 F0 F0"), "Invalid UTF-16 string at byte offset 9"},
      {body("3C 00 72 8C 28 00 F0 F0"), "Unknown encoding algorithm at byte offset 10"},
      {body("3C 00 72 8C 0D 00 01 F0 F0"),
       "Invalid value for INT byte encoding. at byte offset 10"},
      {body("3C 00 72 88 0C 00 F0 F0"), "Unknown restricted alphabet at byte offset 10"},
      {body("3C 00 72 88 01 FF 0F F0 F0"), "Invalid restricted alphabet data at byte offset 10"},
      {body("3E 80 00 72 F0"), "Prefix without a namespace name at byte offset 5"},
      {body("3C 00 72 F0 3C 00 73 F0 F0"), "Second document element at byte offset 9"},
      {body("3C 00 72 FF 00"), "Data after the end of the document at byte offset 9"},
      {body("91 61 62 F0"), "Invalid item at byte offset 5"},
      {body("F0"), "No document element at byte offset 6"},
      {body("38 C8 F0"), "Invalid namespace declaration at byte offset 6"},
      {body("7C 00 72 80 F0"), "Invalid attribute at byte offset 8"},
      // Only a header.
      {Hex("E0 00 00 01"), "Unexpected end of data at byte offset 4"},
      {body(""), "Unexpected end of data at byte offset 5"},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(FailureOf(c.octets), std::string("Failed to parse FastInfoset. ") + c.message)
        << c.message;
  }
}

// A wildcard element as text: name, namespace, attributes, text and children.
std::string Dump(const CElement& element) {
  std::string out = "{" + element.GetNamespace() + "}" + element.GetName() + "[";
  for (const CSmartPtr<CAttribute>& a : *element.GetAttributes()) {
    out += a->GetName() + "=" + a->GetValue() + ";";
  }
  out += "]'" + element.GetText() + "'(";
  for (const CSmartPtr<CElement>& child : *element.GetChildElements()) out += Dump(*child);
  return out + ")";
}

TEST(FastInfosetReader, EveryEntryPointTakingBytesOrFilesReadsIt) {
  test::CFailingFileSystem files;
  // Each document as Fast Infoset and as the XML it stands for; the large one crosses the
  // reader's window.
  const std::string large(300000, 'x');
  struct Input {
    std::string octets;
    std::string xml;
  };
  const Input documents[] = {
      {Hex(kExampleA),
       "<p:order xmlns:p='urn:p' xmlns='urn:d' id='7' xml:lang='en'><item qty='2'>ab</item>"
       "<item qty='2'>ab</item><note>x&lt;y</note><p:e/></p:order>"},
      {"<?xml encoding='finf'?>" + Hex(kMixed), "<p>Hello <b>big</b> world</p>"},
      {Hex("E0 00 00 01 00 3C 00 72 83 00 04 92 DD") + large + Hex("FF"), "<r>" + large + "</r>"},
  };
  const auto bytes = [](const std::string& s) {
    return reinterpret_cast<const unsigned char*>(s.data());
  };
  const auto size = [](const std::string& s) { return static_cast<std::uint32_t>(s.size()); };
  const auto file = [&files](const std::string& content) {
    files.Put("in.bin", content);
    return "in.bin";
  };
  struct EntryPoint {
    const char* name;
    bool async;
    std::function<std::string(const std::string&)> read;
  };
  const EntryPoint entryPoints[] = {
      {"LoadXmlStream", false,
       [&](const std::string& input) {
         CXmlDocument document;
         document.LoadXmlStream(bytes(input), size(input));
         return Dump(document.GetDocumentElement());
       }},
      {"Load", false,
       [&](const std::string& input) {
         CXmlDocument document;
         document.Load(file(input));
         return Dump(document.GetDocumentElement());
       }},
      {"Load, asynchronous", true,
       [&](const std::string& input) {
         CXmlDocument document;
         document.Load(file(input));
         return Dump(document.GetDocumentElement());
       }},
      {"FromXmlStream", false,
       [&](const std::string& input) {
         CSmartPtr<CElement> root = new CElement("root");
         root->FromXmlStream(bytes(input), size(input));
         return Dump(*root);
       }},
      {"FromXmlStream of binary data", false,
       [&](const std::string& input) {
         CSmartPtr<CElement> root = new CElement("root");
         CBinaryData data;
         data.SetBuffer(bytes(input), size(input));
         root->FromXmlStream(data);
         return Dump(*root);
       }},
      {"FromXmlFile", false,
       [&](const std::string& input) {
         CSmartPtr<CElement> root = new CElement("root");
         root->FromXmlFile(file(input));
         return Dump(*root);
       }},
      {"FromXmlFile, asynchronous", true,
       [&](const std::string& input) {
         CSmartPtr<CElement> root = new CElement("root");
         root->FromXmlFile(file(input));
         return Dump(*root);
       }},
  };
  for (const EntryPoint& entry : entryPoints) {
    AsyncFromXmlFile(entry.async);
    for (const Input& document : documents) {
      const std::string expected = entry.read(document.xml);
      if (entry.async) {
        // The asynchronous mode parses text only: it neither inflates nor detects Fast Infoset.
        EXPECT_NE(MessageOf([&] { entry.read(document.octets); }), "no exception") << entry.name;
        continue;
      }
      EXPECT_EQ(entry.read(document.octets), expected) << entry.name;
      for (int type : {1, 2}) {
        EXPECT_EQ(entry.read(test::Packed(document.octets, type)), expected)
            << entry.name << ", compressed " << type;
      }
    }
  }
  AsyncFromXmlFile(false);
}

}  // namespace
