// Hostile input, one row per attack: each ends in one of the library's exceptions, with a message
// that says what failed and where, or in a correct result; never a crash, a hang or a leak (the
// sanitizer builds run the table too). Where memory is the point, the peak resident size that the
// attack adds is bounded as well. Large inputs are made once per test binary.
#include "OvXmlLib6.h"
#include "OvXmlLib6/xml/Compression.h"
#include "po.h"
#include "unit/TestSupport.h"
#include "unit/core/TestSchema.h"
#include "unit/xml/StreamTestSupport.h"
#include "xml/ByteSource.h"
#include "xml/StreamConverter.h"

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <ctime>
#include <fstream>
#include <functional>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace OvXmlLib6;
using test::UBytes;

namespace {

// ---- Outcomes ------------------------------------------------------------------------------

// "ok: <result>", or "<Class>: <message>" of the exception, followed by " <- <Class>: <message>"
// of the innermost one when there is a chain.
std::string Outcome(const std::function<std::string()>& run) {
  try {
    return "ok: " + run();
  } catch (const COvException& e) {
    std::string out = test::ClassOf(e) + ": " + e.GetMessage();
    const COvException* inner = &e;
    while (inner->GetInnerException() != nullptr) inner = inner->GetInnerException();
    if (inner != &e) out += " <- " + test::ClassOf(*inner) + ": " + inner->GetMessage();
    return out;
  }
}

// True when `text` matches `pattern`, in which '*' stands for any run of characters.
bool Matches(const char* text, const char* pattern) {
  const char* star = nullptr;
  const char* resume = nullptr;
  while (*text != '\0') {
    if (*pattern == '*') {
      star = pattern++;
      resume = text;
    } else if (*pattern == *text) {
      ++pattern;
      ++text;
    } else if (star != nullptr) {
      pattern = star + 1;
      text = ++resume;
    } else {
      return false;
    }
  }
  while (*pattern == '*') ++pattern;
  return *pattern == '\0';
}

// ---- Memory --------------------------------------------------------------------------------

long StatusKiB(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  const std::size_t n = std::strlen(field);
  while (std::getline(status, line)) {
    if (line.compare(0, n, field) == 0 && line[n] == ':') return std::atol(line.c_str() + n + 1);
  }
  return -1;
}

// Restarts the peak resident size from the current one; false where the system does not let it.
bool ResetPeak() {
  std::ofstream clear("/proc/self/clear_refs");
  clear << "5";
  clear.flush();
  return clear.good() && StatusKiB("VmHWM") >= 0;
}

// ---- Inputs --------------------------------------------------------------------------------

constexpr int kDeep = 100000;

const std::string& DeepText() {
  static const std::string text = test::NestedElements(kDeep);
  return text;
}

// The depth of the first-child chain of a tree.
std::string Depth(const CXmlElement* e) {
  int depth = 1;
  for (; e->GetFirstElement() != nullptr; e = e->GetFirstElement()) ++depth;
  return std::to_string(depth);
}

std::string Depth(CElement* e) {
  int depth = 1;
  while (e->GetChildElements()->GetCount() != 0) {
    e = e->GetChildElements()->Item(0);
    ++depth;
  }
  return std::to_string(depth);
}

// A document's root: the start of its name and text, and its depth.
std::string Describe(const CXmlDocument& doc) {
  const CXmlElement* root = doc.GetDocumentElement();
  return root->GetLocalName().substr(0, 16) + " depth " + Depth(root) + " text '" +
         root->GetText().substr(0, 16) + "'";
}

// Loads a byte block into a fresh document and describes it.
std::string LoadStream(const std::string& bytes) {
  CXmlDocument doc;
  doc.LoadXmlStream(UBytes(bytes), static_cast<std::uint32_t>(bytes.size()));
  return Describe(doc);
}

// The same through a file in a temporary directory.
std::string LoadFile(const std::string& bytes) {
  char path[] = "/tmp/ovxml_hostile_XXXXXX";
  const int fd = ::mkstemp(path);
  if (fd < 0) return "no temporary file";
  const bool written = ::write(fd, bytes.data(), bytes.size()) == ssize_t(bytes.size());
  ::close(fd);
  struct Remove {
    const char* path;
    ~Remove() { std::remove(path); }
  } remove{path};
  if (!written) return "temporary file not written";
  CXmlDocument doc;
  doc.Load(path);
  return Describe(doc);
}

// A byte sink for the converter that keeps only the size of what it is given and its start.
class CCountingSink : public detail::IByteSink {
 public:
  void Write(const unsigned char* data, std::size_t length) override {
    if (head.size() < 64) head.append(reinterpret_cast<const char*>(data), length);
    size += length;
  }
  std::string head;
  std::size_t size = 0;
};

std::string Convert(const std::string& bytes, bool toFastInfoset) {
  detail::CMemorySource source(UBytes(bytes), bytes.size());
  CCountingSink sink;
  detail::CConvertOptions options;
  options.header = false;
  options.fastInfoset = toFastInfoset;
  detail::CStreamConverter(options).Convert(source, sink);
  return std::to_string(sink.size) + " bytes: " + sink.head.substr(0, 16);
}

// The deep document as Fast Infoset.
const std::string& DeepFastInfoset() {
  static const std::string bytes = [] {
    CSmartPtr<CElement> root = new CElement("e");
    root->FromXml(DeepText().c_str());
    const CBinaryData data = root->ToFastInfosetStream();
    return test::Bytes(data);
  }();
  return bytes;
}

// A gzip stream that inflates to 1 GiB: "<a>" and spaces, as 1,024 members of 1 MiB (each about
// a kilobyte compressed, a megabyte in all), so that it is made at once.
const std::string& GzipBomb() {
  static const std::string bytes = [] {
    const std::string member = test::Packed(std::string(1 << 20, ' '), 1);
    std::string bomb = test::Packed("<a>", 1);
    bomb.reserve(member.size() * 1024 + 64);
    for (int i = 0; i < 1024; ++i) bomb += member;
    return bomb;
  }();
  return bytes;
}

// A file with a distinctive content, for the external entities that must never read it.
const std::string& SecretFile() {
  static const std::string path = [] {
    char name[] = "/tmp/ovxml_hostile_secret_XXXXXX";
    const int fd = ::mkstemp(name);
    const char content[] = "SECRET-CONTENT";
    if (fd >= 0) {
      EXPECT_EQ(::write(fd, content, sizeof content - 1), ssize_t(sizeof content - 1));
      ::close(fd);
    }
    return std::string(name);
  }();
  return path;
}

const std::string& TenMillionDigits() {
  static const std::string digits(10000000, '7');
  return digits;
}

// A billion laughs: ten entities, each ten times the one before.
std::string BillionLaughs() {
  std::string xml = "<?xml version=\"1.0\"?><!DOCTYPE b [<!ENTITY e0 \"hahahahahahahaha\">";
  for (int i = 1; i < 12; ++i) {
    const std::string e = "&e" + std::to_string(i - 1) + ";";
    std::string ten;
    for (int k = 0; k < 10; ++k) ten += e;
    xml += "<!ENTITY e" + std::to_string(i) + " \"" + ten + "\">";
  }
  return xml + "]><b>&e11;</b>";
}

// One entity of 50 KB referenced 50,000 times: 2.5 GB from a document of 300 KB.
std::string QuadraticBlowUp() {
  std::string xml = "<!DOCTYPE b [<!ENTITY big \"" + std::string(50000, 'x') + "\">]><b>";
  for (int i = 0; i < 50000; ++i) xml += "&big;";
  return xml + "</b>";
}

// An element with a million attributes.
const std::string& MillionAttributes() {
  static const std::string xml = [] {
    std::string text = "<r";
    text.reserve(12000000);
    char name[16];
    for (int i = 0; i < 1000000; ++i) {
      text += " a";
      int n = i, k = 0;
      do {
        name[k++] = static_cast<char>('a' + n % 26);
        n /= 26;
      } while (n != 0);
      text.append(name, static_cast<std::size_t>(k));
      text += "='1'";
    }
    return text + "/>";
  }();
  return xml;
}

std::string AttributeCount(const std::string& xml) {
  CXmlDocument doc;
  doc.LoadXmlStream(UBytes(xml), static_cast<std::uint32_t>(xml.size()));
  const auto& attributes = doc.GetDocumentElement()->GetAttributes();
  return std::to_string(attributes.size()) + " attributes, last " +
         attributes.back()->GetLocalName() + "=" + attributes.back()->GetValue();
}

const std::string& LongNameDocument() {
  static const std::string xml = [] {
    const std::string name(10000000, 'n');
    return "<" + name + "/>";
  }();
  return xml;
}

// Restores a process-wide limit when it goes.
struct RestoreLimits {
  ~RestoreLimits() {
    SetMaxInflatedSize(0);
    SetMaxNestingDepth(kDefaultMaxNestingDepth);
    CBigInteger::SetMaxDigits(0);
  }
};

// ---- The table -----------------------------------------------------------------------------

struct Attack {
  const char* name;
  std::function<std::string()> run;  // the result as text when nothing is thrown
  const char* expected;              // the outcome; '*' stands for any run of characters
  long maxGrowthMiB;                 // the peak resident size it may add; 0: not measured
};

const Attack kAttacks[] = {
    // Entities.
    {"billion laughs", [] { return LoadStream(BillionLaughs()); },
     "Exception: limit on input amplification factor (from DTD and entities) breached at line 1",
     64},
    {"quadratic blow-up", [] { return LoadStream(QuadraticBlowUp()); },
     "Exception: limit on input amplification factor (from DTD and entities) breached at line 1",
     64},
    {"external general entity, never read",
     [] {
       return LoadStream("<!DOCTYPE a [<!ENTITY x SYSTEM \"" + SecretFile() + "\">]><a>&x;</a>");
     },
     "ok: a depth 1 text ''", 0},
    {"external general entity, never read (converter)",
     [] {
       const std::string out =
           Convert("<!DOCTYPE a [<!ENTITY x SYSTEM \"" + SecretFile() + "\">]><a>&x;</a>", false);
       return out;
     },
     "ok: 4 bytes: <a/>", 0},
    {"external parameter entity and DTD, never read",
     [] {
       return LoadStream("<!DOCTYPE a SYSTEM \"" + SecretFile() + "\" [<!ENTITY % p SYSTEM \"" +
                         SecretFile() + "\"> %p;]><a>&undeclared;</a>");
     },
     "ok: a depth 1 text ''", 0},

    // 100,000 levels, through every entry point.
    {"deep text, document", [] { return LoadStream(DeepText()); }, "ok: e depth 100000 text ''", 0},
    {"deep text, document from a file", [] { return LoadFile(DeepText()); },
     "ok: e depth 100000 text ''", 0},
    {"deep text, gzip", [] { return LoadStream(test::Packed(DeepText(), 1)); },
     "ok: e depth 100000 text ''", 0},
    {"deep text, cut short",
     [] { return LoadStream(DeepText().substr(0, DeepText().size() - 12)); },
     "Exception: no element found at line 1", 0},
    {"deep text, wildcard element",
     [] {
       CSmartPtr<CElement> root = new CElement("e");
       root->FromXml(DeepText().c_str());
       return Depth(root.get());
     },
     "ok: 100000", 0},
    {"deep text, generated class",
     [] {
       CSmartPtr<test_schema::CNode> node = new test_schema::CNode();
       node->FromXml(
           ("<node xmlns='urn:t'>" + test::NestedElements(kDeep - 1, "node") + "</node>").c_str());
       return std::string("read");
     },
     "Validation: Failed to process the element [node] <- Exception: Element nesting is deeper "
     "than * levels at element [node]*",
     0},
    {"deep text, purchase order",
     [] {
       CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
       order->FromXml(
           ("<purchaseOrder xmlns='http://www.example.com/PO1'>" + DeepText() + "</purchaseOrder>")
               .c_str());
       return std::string("read");
     },
     "*", 0},
    {"deep Fast Infoset, document", [] { return LoadStream(DeepFastInfoset()); },
     "ok: e depth 100000 text ''", 0},
    {"deep Fast Infoset, wildcard element",
     [] {
       CSmartPtr<CElement> root = new CElement("e");
       root->FromXmlStream(UBytes(DeepFastInfoset()),
                           static_cast<std::uint32_t>(DeepFastInfoset().size()));
       return Depth(root.get());
     },
     "ok: 100000", 0},
    {"deep text, converter to Fast Infoset", [] { return Convert(DeepText(), true); },
     "ok: 150008 bytes: *", 0},
    {"deep Fast Infoset, converter to text", [] { return Convert(DeepFastInfoset(), false); },
     "ok: 699997 bytes: <e><e><e><e><e>*", 0},
    {"deep tree, written",
     [] {
       CSmartPtr<CElement> root = new CElement("e");
       root->FromXml(DeepText().c_str());
       return std::to_string(root->ToXml(false, false, EOLType_LF).size()) + " bytes";
     },
     "*", 0},
    {"deep generated objects, written",
     [] {
       CSmartPtr<test_schema::CNode> root = new test_schema::CNode();
       test_schema::CNode* at = root.get();
       for (int i = 0; i < kDeep; ++i) {
         at->child = new test_schema::CNode("node");
         at = at->child.get();
       }
       return root->ToXml();
     },
     "Validation: Failed to convert the element [node] to XML <- Exception: Element nesting is "
     "deeper than * levels at element [node]*",
     0},

    // Width.
    {"a million attributes", [] { return AttributeCount(MillionAttributes()); },
     "ok: 1000000 attributes, last anhxec=1", 0},
    {"a 10 MB name", [] { return LoadStream(LongNameDocument()); },
     "ok: nnnnnnnnnnnnnnnn depth 1 text ''", 0},

    // Compression.
    {"gzip bomb under a lowered limit",
     [] {
       SetMaxInflatedSize(16 << 20);
       return LoadStream(GzipBomb());
     },
     "Exception: Failed to inflate the compressed input: it expands beyond the limit of 16777216 "
     "bytes",
     96},
    {"gzip bomb from a file",
     [] {
       SetMaxInflatedSize(16 << 20);
       return LoadFile(GzipBomb());
     },
     "Exception: Failed to inflate the compressed input: it expands beyond the limit of 16777216 "
     "bytes",
     96},
    {"truncated gzip",
     [] {
       const std::string packed = test::Packed(DeepText(), 1);
       return LoadStream(packed.substr(0, packed.size() / 2));
     },
     "Exception: The input starts like gzip or zlib data, but the compressed data is truncated or "
     "corrupt; read as text instead, it fails <- Exception: * at line 1",
     0},
    {"corrupt gzip",
     [] {
       std::string packed = test::Packed(DeepText(), 1);
       packed[packed.size() / 2] ^= 0x5A;
       return LoadStream(packed);
     },
     "Exception: The input starts like gzip or zlib data, but the compressed data is truncated or "
     "corrupt; read as text instead, it fails <- Exception: * at line 1",
     0},
    {"truncated zlib from a file",
     [] {
       const std::string packed = test::Packed(DeepText(), 2);
       return LoadFile(packed.substr(0, packed.size() - 100));
     },
     "Exception: The input starts like gzip or zlib data, but the compressed data is truncated or "
     "corrupt; read as text instead, it fails <- Exception: * at line 1",
     0},

    // Encodings.
    {"invalid UTF-8", [] { return LoadStream("<a>\xC3\x28</a>"); },
     "Exception: not well-formed (invalid token) at line 1", 0},
    {"overlong UTF-8", [] { return LoadStream("<a>\xC0\xAF</a>"); },
     "Exception: not well-formed (invalid token) at line 1", 0},
    {"surrogate in UTF-8", [] { return LoadStream("<a>\xED\xA0\x80</a>"); },
     "Exception: not well-formed (invalid token) at line 1", 0},
    {"NUL byte", [] { return LoadStream(std::string("<a>\0</a>", 8)); },
     "Exception: not well-formed (invalid token) at line 1", 0},
    // UTF-16 with an unpaired surrogate, high (D800 before 'x') or low (DC00), little- and
    // big-endian: expat alone would take the first as a pair.
    {"unpaired high surrogate in UTF-16",
     [] { return LoadStream(std::string("\xFF\xFE<\0a\0>\0\x00\xD8x\0<\0/\0a\0>\0", 20)); },
     "Exception: Invalid byte sequence for the encoding UTF-16 at byte offset 8", 0},
    {"unpaired high surrogate in UTF-16 (converter)",
     [] { return Convert(std::string("<\0a\0>\0\x00\xD8x\0<\0/\0a\0>\0", 18), false); },
     "Exception: Invalid byte sequence for the encoding UTF-16 at byte offset 6", 0},
    {"unpaired low surrogate in big-endian UTF-16",
     [] { return LoadStream(std::string("\0<\0a\0>\xDC\x00\0<\0/\0a\0>", 16)); },
     "Exception: Invalid byte sequence for the encoding UTF-16 at byte offset 6", 0},
    {"surrogate pair in UTF-16",
     [] { return LoadStream(std::string("\xFF\xFE<\0a\0>\0\x3D\xD8\x00\xDE<\0/\0a\0>\0", 20)); },
     "ok: a depth 1 text '\xF0\x9F\x98\x80'", 0},
    // Strings the program hands over are never refused: an unpaired surrogate in a wide string
    // becomes U+FFFD, and bytes of internal text that are not well-formed UTF-8 are written as
    // the ISO-8859-1 characters of the same value, in UTF-8, UTF-16 and Fast Infoset alike, so
    // that the output is always well-formed and reads back.
    {"lone surrogate in a wide string",
     [] {
       CXmlDocument doc;
       const char16_t text[] = {u'<', u'a', u'>', 0xDC00, u'<', u'/', u'a', u'>', 0};
       doc.LoadXml(text);
       return doc.GetDocumentElement()->GetText();
     },
     "ok: \xEF\xBF\xBD", 0},
    {"invalid UTF-8 handed to the writer",
     [] {
       CSmartPtr<CElement> root = new CElement("a");
       root->SetText("\xC3\x28\xC0\xAF\xED\xA0\x80");
       std::string out;
       for (XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
         const CBinaryData bytes = root->ToXmlStream(false, false, encoding, EOLType_LF);
         CSmartPtr<CElement> back = new CElement("a");
         back->FromXmlStream(bytes);
         out += back->GetText() + " ";
       }
       CSmartPtr<CElement> back = new CElement("a");
       back->FromXmlStream(root->ToFastInfosetStream());
       return out + back->GetText();
     },
     "ok: \xC3\x83(\xC3\x80\xC2\xAF\xC3\xAD\xC2\xA0\xC2\x80 "
     "\xC3\x83(\xC3\x80\xC2\xAF\xC3\xAD\xC2\xA0\xC2\x80 "
     "\xC3\x83(\xC3\x80\xC2\xAF\xC3\xAD\xC2\xA0\xC2\x80",
     0},

    {"control characters handed to the writer",
     [] {
       CSmartPtr<CElement> root = new CElement("a");
       root->SetText("x\ty\x1Fz");
       return root->ToXml(false, false, EOLType_LF);
     },
     "Exception: The control character [0x1F] cannot be written: XML 1.0 does not allow it", 0},
    {"control characters handed to the Fast Infoset writer, at every offset",
     [] {
       std::string refused;
       for (std::size_t at = 0; at < 20; ++at) {
         std::string text = "abcdefghijklmnopq\tr\n";
         text[at] = '\x1F';
         CSmartPtr<CElement> root = new CElement("a");
         root->SetText(text.c_str());
         refused += test::MessageOf([&] { root->ToFastInfosetStream(); }) ==
                            "The control character [0x1F] cannot be written: XML 1.0 does not "
                            "allow it"
                        ? "x"
                        : "-";
       }
       CSmartPtr<CElement> root = new CElement("a");
       root->SetText("abcdefghijklmnopq\tr\n");
       CSmartPtr<CElement> back = new CElement("a");
       back->FromXmlStream(root->ToFastInfosetStream());
       return refused + " " + std::to_string(back->GetText().size());
     },
     "ok: xxxxxxxxxxxxxxxxxxxx 20", 0},

    // A name handed to a writer is never written as markup: the writers refuse what is not an
    // XML name (as the UTF-8 parser reads names: U+00B5 is a letter to expat in UTF-16 and
    // Latin-1 documents only) and write names beyond ASCII that are names.
    {"names that are not XML names handed to the writers",
     [] {
       std::string outcome;
       for (const char* name : {"a><b", "1a", "a b", "p:a", "la\xC2\xB5g", "\xC3\xA9t\xC3\xA9"}) {
         for (int attribute = 0; attribute < 2; ++attribute) {
           CSmartPtr<CElement> root = new CElement(attribute != 0 ? "a" : name);
           if (attribute != 0) root->GetAttributes()->Add("v", name);
           const std::string xml = test::MessageOf([&] { root->ToXml(false, false, EOLType_LF); });
           const std::string fi = test::MessageOf([&] { root->ToFastInfosetStream(); });
           outcome += xml != fi ? "?" : xml == "no exception" ? "w" : "r";
         }
       }
       CSmartPtr<CElement> root = new CElement("\xC3\xA9t\xC3\xA9");
       root->GetAttributes()->Add("v", "\xC3\xA9t\xC3\xA9");
       CSmartPtr<CElement> back = new CElement("x");
       back->FromXmlStream(root->ToFastInfosetStream());
       CSmartPtr<CElement> spaced = new CElement("a b");
       return outcome + " " + back->ToXml(false, false, EOLType_LF) + " " +
              test::MessageOf<COvInvalidParamException>(
                  [&] { spaced->ToXml(false, false, EOLType_LF); });
     },
     "ok: rrrrrrrrrrww <\xC3\xA9t\xC3\xA9 \xC3\xA9t\xC3\xA9=\"v\"/> The element name 'a b' cannot "
     "be "
     "written: it is not an XML name",
     0},

    // Fast Infoset that lies.
    {"Fast Infoset length of 4 GiB",
     [] {
       return LoadStream(std::string("\xE0\0\0\x01\0\x3C\0\x70\x83\xFF\xFF\xFF\xFF", 13) +
                         std::string(100, 'a'));
     },
     "Exception: Failed to parse FastInfoset. Length beyond the end of data at byte offset 13", 16},
    {"Fast Infoset index beyond its table",
     [] { return LoadStream(std::string("\xE0\0\0\x01\0\x01\xF0", 7)); },
     "Exception: Failed to parse FastInfoset. Index out of the vocabulary table at byte offset 5",
     0},
    {"Fast Infoset table of more than 2^20 entries",
     [] { return LoadStream(std::string("\xE0\0\0\x01\x20\0\x80\x8F\xFF\x80", 10)); },
     "Exception: Failed to parse FastInfoset. Invalid count at byte offset 9", 16},
    {"Fast Infoset nested without end",
     [] {
       return LoadStream(std::string("\xE0\0\0\x01\0\x3C\0\x65", 8) + std::string(kDeep, '\0'));
     },
     "Exception: Failed to parse FastInfoset. Elements nested too deeply at byte offset 100007", 0},

    // Numbers.
    {"integer of ten million digits",
     [] { return CBigInteger(TenMillionDigits().c_str()).ToString().substr(0, 8); },
     "Overflow: *CBigInteger::SetMaxDigits*", 16},
    {"decimal of ten million digits",
     [] { return CDecimal(TenMillionDigits().c_str()).ToString().substr(0, 8); },
     "Overflow: *CBigInteger::SetMaxDigits*", 16},
    {"decimal of ten million fraction digits",
     [] { return CDecimal(("0." + TenMillionDigits()).c_str()).ToString().substr(0, 8); },
     "ok: 0.777777", 32},
    {"power of ten of four billion digits",
     [] { return CBigInteger::Pow10(4000000000u).ToString().substr(0, 8); },
     "Overflow: *CBigInteger::SetMaxDigits*", 16},
    {"product past the digit limit",
     [] {
       const CBigInteger big = CBigInteger::Pow10(60000);
       return (big * big).ToString().substr(0, 8);
     },
     "Overflow: *CBigInteger::SetMaxDigits*", 16},

    // Patterns: nested quantifiers on long input stay linear.
    {"nested quantifiers",
     [] {
       const std::string input = std::string(100000, 'a') + "!";
       std::string failures;
       for (const char* pattern : {"(a*)*b", "(a+)+", "(a|aa)*c", "((a?){20}a{20})*"}) {
         const CPrimitiveRestrictions r(pattern, -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
         try {
           r.CheckString("v", input, ItemType_string);
         } catch (const COvException& e) {
           if (e.GetMessage().rfind("Invalid Value for v [aaaa", 0) == 0) failures += "x";
         }
       }
       return failures;
     },
     "ok: xxxx", 0},

    // Text that points into the tree it replaces.
    {"LoadXml with the document's own text",
     [] {
       CXmlDocument doc;
       doc.LoadXml("<a>&lt;b&gt;inner&lt;/b&gt;</a>");
       doc.LoadXml(doc.GetDocumentElement()->GetText().c_str());
       return doc.GetDocumentElement()->GetLocalName() + "=" + doc.GetDocumentElement()->GetText();
     },
     "ok: b=inner", 0},
    {"LoadXmlStream with the document's own text",
     [] {
       CXmlDocument doc;
       doc.LoadXml("<a v='&lt;c&gt;attribute&lt;/c&gt;'/>");
       const std::string& value = doc.GetDocumentElement()->GetAttributes().front()->GetValue();
       doc.LoadXmlStream(UBytes(value), static_cast<std::uint32_t>(value.size()));
       return doc.GetDocumentElement()->GetLocalName() + "=" + doc.GetDocumentElement()->GetText();
     },
     "ok: c=attribute", 0},

    // Copies of tree nodes: a tree node's copy shares its compact text and attributes, which
    // the first read turns into strings; reading the copy first or the original first gives
    // both the same. A wildcard element's copy is its own: changing it, or releasing the tree,
    // leaves the other as it was.
    {"copies of tree nodes, read in both orders",
     [] {
       CXmlDocument doc;
       doc.LoadXml("<a x='1'>t<b y='2'>u</b></a>");
       const CXmlElement* a = doc.GetDocumentElement();
       const CXmlElement* b = a->GetFirstElement();
       const CXmlElement copyA(*a);
       std::string out =
           copyA.GetText() + copyA.GetAttribute("x", "") + a->GetText() + a->GetAttribute("x", "");
       (void)b->GetText();
       const CXmlElement copyB(*b);
       out +=
           copyB.GetText() + copyB.GetAttribute("y", "") + b->GetText() + b->GetAttribute("y", "");
       CSmartPtr<CElement> element = new CElement("a");
       element->CopyXmlElement(a);
       element->SetText("changed");
       element->GetChildElements()->Add(new CElement("added"));
       out += " " + a->GetText() + " " + Depth(a);
       CSmartPtr<CElement> second = new CElement("a");
       second->CopyXmlElement(a);
       doc.LoadXml("<z/>");
       return out + " " + element->ToXml(false, false, EOLType_LF) + " " +
              second->ToXml(false, false, EOLType_LF);
     },
     "ok: t1t1u2u2 t 2 *changed*<added/>* *>t<*u</*", 0},
};

}  // namespace

TEST(HostileInput, EveryAttackEndsInAnExceptionOrACorrectResult) {
  // The large inputs, made once, before any peak is measured.
  for (const std::string* input : {&DeepText(), &DeepFastInfoset(), &GzipBomb(), &SecretFile(),
                                   &TenMillionDigits(), &MillionAttributes(), &LongNameDocument()})
    ASSERT_FALSE(input->empty());
  const bool measured = ResetPeak();
  for (const Attack& attack : kAttacks) {
    RestoreLimits restore;
    // Inputs are made before the peak restarts, so that only the attack counts.
    ResetPeak();
    const long before = StatusKiB("VmRSS");
    const std::clock_t start = std::clock();
    const std::string outcome = Outcome(attack.run);
    const double seconds = double(std::clock() - start) / CLOCKS_PER_SEC;
    EXPECT_TRUE(Matches(outcome.c_str(), attack.expected))
        << attack.name << "\n  got:      " << outcome.substr(0, 400)
        << "\n  expected: " << attack.expected;
    // Only a guard against hangs (a super-linear attack takes hours), in processor time so that
    // a loaded machine does not trip it: the slowest row, a million attributes, takes a few
    // seconds under the sanitizers.
    EXPECT_LT(seconds, 30.0) << attack.name;
    if (measured && attack.maxGrowthMiB != 0) {
      const long growthMiB = (StatusKiB("VmHWM") - before) / 1024;
      EXPECT_LE(growthMiB, attack.maxGrowthMiB) << attack.name;
    }
  }
  std::remove(SecretFile().c_str());
}
