// Interoperability with an independent Fast Infoset codec (the Java one Debian packages as
// libfastinfoset-java), on a corpus of documents made here:
//   (a) corpus XML -> Java FI -> our reader;
//   (b) corpus XML -> our writer (CElement tree, and `ovxml convert --to fi`) -> Java FI reader ->
//       XML -> our reader;
//   (c) documents the Java serializer writes with its typed calls -> our reader, against the
//       values the Java side prints for them.
// Every document is compared in a canonical form of our XML reader's tree: element names with
// their namespace URI, attributes as a sorted set, the element's text.
//
//   interop_driver WORKDIR FiPeer.java [OVXML_TOOL]
//
// The Java side runs once, for all files. The test is skipped (exit status 77) when java or the
// codec's jar (OVXML_FASTINFOSET_JAR, default /usr/share/java/FastInfoset.jar) is missing. The
// files of a run stay in WORKDIR for inspection.
#include "../unit/TestSupport.h"
#include "OvXmlLib6/fastinfoset/FastInfosetWriter.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "po.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <random>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <utility>
#include <vector>

using namespace OvXmlLib6;
using test::Canonical;
using test::ReadFile;

namespace {

// ---- The corpus ----

std::string Escape(const std::string& text) {
  std::string out;
  for (char c : text) {
    switch (c) {
      case '<':
        out += "&lt;";
        break;
      case '>':
        out += "&gt;";
        break;
      case '&':
        out += "&amp;";
        break;
      case '"':
        out += "&quot;";
        break;
      case '\t':
        out += "&#9;";
        break;
      case '\n':
        out += "&#10;";
        break;
      case '\r':
        out += "&#13;";
        break;
      default:
        out += c;
    }
  }
  return out;
}

struct Document {
  std::string name;
  std::string xml;
  std::string options;  // for the Java side's writer: "utf16", "index-long"

  Document(std::string n, std::string x, std::string o = "")
      : name(std::move(n)), xml(std::move(x)), options(std::move(o)) {}
};

const char* const kDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

Document Namespaces() {
  return {"namespaces",
          std::string(kDeclaration) +
              "<r xmlns=\"urn:default\" xmlns:p=\"urn:p\" xmlns:q=\"urn:q\" p:a=\"1\" q:a=\"2\" "
              "a=\"3\">"
              "<p:x q:b=\"\" xmlns:p=\"urn:p2\"><p:y/></p:x>"
              "<x xmlns=\"urn:other\"><y xmlns=\"\"><z/></y><w/></x>"
              "<same xmlns:d=\"urn:default\"><d:same/></same>"
              "<q:x xmlns:q=\"urn:p\">re-bound</q:x>"
              "<a:b xmlns:a=\"http://example.com/a/very/long/namespace/uri/that/goes/on/and/on\">"
              "<a:b a:b=\"a\"/></a:b>"
              "<é xmlns:ü=\"urn:ü\" ü:ß=\"ö\">non-ASCII names</é>"
              "</r>\n"};
}

Document Attributes() {
  std::string r = std::string(kDeclaration) + "<r";
  for (int i = 0; i < 40; ++i)
    r += " a" + std::to_string(i) + "=\"v" + std::to_string(i % 7) + "\"";
  r += ">";
  const char* values[] = {"",
                          " leading and trailing ",
                          "<&>\"'",
                          "tab\there\nnewline\rreturn",
                          "é ü ß 中文 日本語",
                          "astral \xF0\x9F\x98\x80 \xF0\x9D\x84\x9E",
                          "exactly 32 characters long text!",
                          "thirty-three characters long text"};
  for (const char* v : values) r += "<e v=\"" + Escape(v) + "\"/>";
  // Each long value twice: the second can come from the table.
  for (int length :
       {63, 64, 65, 255, 256, 257, 1000, 70000, 63, 64, 65, 255, 256, 257, 1000, 70000}) {
    std::string v;
    for (int i = 0; i < length; ++i) v += static_cast<char>('a' + i % 26);
    r += "<long n=\"" + std::to_string(length) + "\" v=\"" + v + "\"/>";
  }
  return {"attributes", r + "</r>\n"};
}

Document Text() {
  std::string r = std::string(kDeclaration) + "<r>";
  const char* texts[] = {"x",
                         "   ",
                         "\n\t\n",
                         " leading and trailing ",
                         "&lt;&amp;&gt;&quot;&apos;",
                         "carriage&#13;return&#13;&#10;",
                         "é ü ß 中文 日本語 ﻿",
                         "astral \xF0\x9F\x98\x80\xF0\x9D\x84\x9E\xF4\x8F\xBF\xBD end"};
  for (const char* t : texts) r += std::string("<t>") + t + "</t>";
  for (int length :
       {7, 8, 9, 64, 65, 264, 265, 1000, 100000, 7, 8, 9, 64, 65, 264, 265, 1000, 100000}) {
    std::string t;
    for (int i = 0; i < length; ++i) t += static_cast<char>('A' + i % 26);
    r += "<long>" + t + "</long>";
  }
  r += "<mixed>one<b>two</b>three<b/>four<c>five<d>six</d>seven</c>eight</mixed>";
  r += "<empty/><empty></empty>";
  r += "\n  <indented>\n    <child>value</child>\n  </indented>\n";
  return {"text", r + "</r>\n"};
}

Document CommentsAndInstructions() {
  return {"comments_pis",
          std::string(kDeclaration) +
              "<!-- before the root --><?first data?>\n"
              "<r><!----><?empty?><?target some data ?>text<!-- é \xF0\x9F\x98\x80 -->more"
              "<![CDATA[<cdata> & ]]]]><![CDATA[> stays]]>"
              "<c><![CDATA[]]></c><c>a<![CDATA[b]]>c</c>"
              "<c><![CDATA[line\nbreak\tand tab]]></c>"
              "</r>\n<!-- after the root --><?last?>\n"};
}

// Few names and values, each repeated many times: everything after the first use is an index.
Document Repeats() {
  std::string r = std::string(kDeclaration) + "<r xmlns:n=\"urn:n\">";
  for (int i = 0; i < 2000; ++i) {
    r += "<item id=\"" + std::to_string(i % 5) + "\" n:kind=\"k" + std::to_string(i % 3) +
         "\"><n:name>name" + std::to_string(i % 4) + "</n:name><value>" + std::to_string(i % 6) +
         "</value></item>";
  }
  return {"repeats", r + "</r>\n"};
}

// `count` distinct element names, attribute names, attribute values, text chunks, prefixes and
// namespaces: past 64, 2,080 and 8,256 every table index takes its longer forms.
Document Distinct(int count, int namespaces, bool utf16) {
  std::string r = std::string(kDeclaration) + "<r";
  for (int n = 0; n < namespaces; ++n) {
    r += " xmlns:p" + std::to_string(n) + "=\"urn:ns:" + std::to_string(n) + "\"";
  }
  r += ">";
  for (int i = 0; i < count; ++i) {
    const std::string id = std::to_string(i);
    const std::string prefix = namespaces > 0 ? "p" + std::to_string(i % namespaces) + ":" : "";
    r += "<" + prefix + "e" + id + " a" + id + "=\"v" + id + "\" " + prefix + "b=\"w" + id +
         "\">t" + id + "</" + prefix + "e" + id + ">";
  }
  // The same names and values again, now all from the tables.
  for (int i = 0; i < count; i += 7) {
    const std::string id = std::to_string(i);
    r += "<e" + id + " a" + id + "=\"v" + id + "\">t" + id + "</e" + id + ">";
  }
  return {"distinct_" + std::to_string(count) + (utf16 ? "_utf16" : ""), r + "</r>\n",
          utf16 ? "utf16" : ""};
}

Document Deep() {
  std::string r = std::string(kDeclaration);
  for (int i = 0; i < 300; ++i)
    r += "<d" + std::to_string(i % 3) + " level=\"" + std::to_string(i) + "\">";
  r += "bottom";
  for (int i = 299; i >= 0; --i) r += "</d" + std::to_string(i % 3) + ">";
  return {"deep", r + "\n"};
}

// A few megabytes of records: repeated names, values drawn from a small and a large set, text
// of varied length, namespaces, some non-ASCII.
Document Large() {
  std::mt19937 random(20261124);
  const char* words[] = {"alpha", "beta", "gamma", "delta", "épsilon", "ζήτα", "\xF0\x9F\x90\x8D",
                         "&amp;", "omega"};
  std::string r = std::string(kDeclaration) +
                  "<orders xmlns=\"urn:orders\" xmlns:x=\"urn:extra\" generated=\"yes\">\n";
  for (int i = 0; i < 8000; ++i) {
    r += "  <order id=\"" + std::to_string(i) + "\" status=\"s" + std::to_string(random() % 4) +
         "\" x:code=\"c" + std::to_string(random() % 5000) + "\">\n";
    r += "    <customer>customer " + std::to_string(random() % 800) + "</customer>\n";
    const unsigned lines = 1 + random() % 4;
    for (unsigned l = 0; l < lines; ++l) {
      r += "    <line qty=\"" + std::to_string(random() % 20) + "\"><x:sku>SKU-" +
           std::to_string(random() % 3000) + "</x:sku><note>";
      const unsigned length = random() % 12;
      for (unsigned w = 0; w < length; ++w) r += std::string(w ? " " : "") + words[random() % 9];
      r += "</note></line>\n";
    }
    r += "  </order>\n";
  }
  return {"large", r + "</orders>\n"};
}

std::vector<Document> Corpus() {
  std::vector<Document> corpus{Namespaces(),
                               Attributes(),
                               Text(),
                               CommentsAndInstructions(),
                               Repeats(),
                               Distinct(100, 0, false),
                               Distinct(3000, 100, false),
                               Distinct(9000, 70, false),
                               Deep(),
                               Large()};
  // The same documents as the Java side writes them in other ways: with UTF-16 literals, and with
  // long values and text entered in its tables.
  for (Document d : {Namespaces(), Text(), Attributes()}) {
    d.name += "_utf16";
    d.options = "utf16";
    corpus.push_back(d);
  }
  corpus.push_back(Distinct(3000, 100, true));
  for (Document d : {Text(), Attributes(), Large()}) {
    d.name += "_index_long";
    d.options = "index-long";
    corpus.push_back(d);
  }
  return corpus;
}

// ---- Our writer's settings ----

// An XML declaration goes before the header (the call's), every value and chunk is entered in the
// tables, and an initial vocabulary holds some of the names and values.
CXmlSerializationContext TunedContext() {
  CXmlSerializationContext context;
  CFastInfosetContext& fi = context.GetFIContext();
  fi.SetAttributeMaxAddLength(100000);
  fi.SetElementMaxAddLength(100000);
  CFIVocabulary& vocabulary = *fi.GetVocabulary();
  vocabulary.AddPrefixName("n");
  vocabulary.AddNamespaceName("urn:n");
  vocabulary.AddLocalName("item");
  vocabulary.AddAttributeValue("k1");
  vocabulary.AddElementValue("name1");
  // No element or attribute names: the Java side misreads such entries (see README.md).
  return context;
}

// Values of the typed item kinds, each as element text and as an attribute value, which our
// writer sends as algorithms and alphabets under the usual encodings. Elements are named by the
// value's kind ("float" for r4, so that its values are compared as floats).
struct TypedValue {
  int itemType;
  const char* name;
  const char* text;
};
const TypedValue kTypedValues[] = {
    {ItemType_i1, "i1", "-128"},
    {ItemType_i2, "i2", "1 -2 32767"},
    {ItemType_i4, "i4", "-2147483648"},
    {ItemType_i8, "i8", "9223372036854775807"},
    {ItemType_ui2, "ui2", "65535"},
    {ItemType_ui4, "ui4", "4294967295"},
    {ItemType_ui8, "ui8", "18446744073709551615"},
    {ItemType_boolean, "boolean", "true false true"},
    {ItemType_r4, "float", "1.5 0.1 -2 3.40282347e+38 1.17549435e-38"},
    {ItemType_r8, "double", "0.1 1e+21 0.30000000000000004 -INF"},
    {ItemType_hexBinary, "hex", "0AFF"},
    {ItemType_base64Binary, "base64", "3q2+"},
    {ItemType_date, "date", "2026-11-20"},
    {ItemType_datetime, "datetime", "2026-11-20T09:30:00Z"},
    {ItemType_time, "time", "12:30:00"},
    {ItemType_decimal, "decimal", "-12.50"},
    {ItemType_integer, "integer", "123456789012345678901234567890"},
};

// Writes the typed values with our writer; returns the same document as XML text.
std::string WriteTypedValues(const std::string& path) {
  CXmlSerializationContext context;
  context.GetFIContext().SetSuggestedValues();
  CBinaryStream stream;
  CFastInfosetWriter writer(&stream, context, FInfoDecl_None);
  writer.Open();
  writer.WriteStartElement("values", "");
  std::string xml = "<values>";
  for (int round = 0; round < 2; ++round) {  // the second time from the tables, where it can
    for (const TypedValue& v : kTypedValues) {
      writer.WriteStartElement(v.name, "");
      writer.WriteAttribute("v", "", v.text, v.itemType);
      writer.WriteText(v.text, v.itemType);
      writer.WriteEndElement();
      xml += std::string("<") + v.name + " v=\"" + v.text + "\">" + v.text + "</" + v.name + ">";
    }
  }
  writer.WriteEndElement();
  writer.Close();
  const CBinaryData& data = stream.GetData();
  std::ofstream(path, std::ios::binary)
      .write(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
  return xml + "</values>";
}

// ---- Canonical form ----

// The canonical lines of the file as our reader sees it (XML or Fast Infoset alike).
std::vector<std::string> CanonicalOf(const std::string& path) {
  CXmlDocument document;
  document.Load(path.c_str());
  std::vector<std::string> lines;
  Canonical(document.GetDocumentElement(), 0, lines);
  return lines;
}

// The comments and processing instructions of an XML text, in order, the XML declaration left
// out: the tree does not keep them, a streaming conversion does.
std::vector<std::string> CommentsAndInstructions(const std::string& xml) {
  std::vector<std::string> items;
  for (std::size_t at = xml.find('<'); at != std::string::npos; at = xml.find('<', at + 1)) {
    const bool comment = xml.compare(at, 4, "<!--") == 0;
    if (!comment && (xml.compare(at, 2, "<?") != 0 || xml.compare(at, 6, "<?xml ") == 0)) continue;
    const std::size_t end = xml.find(comment ? "-->" : "?>", at);
    if (end == std::string::npos) break;
    items.push_back(xml.substr(at, end + (comment ? 3 : 2) - at));
    at = end;
  }
  return items;
}

// Numbers printed by two codecs may differ in form (1.0E10, 1E10, INF, Infinity) but not in
// value: a float element's values are compared as floats, every other number as a double.
bool SameNumber(const std::string& x, const std::string& y, bool single) {
  char* endX = nullptr;
  char* endY = nullptr;
  const double a = single ? std::strtof(x.c_str(), &endX) : std::strtod(x.c_str(), &endX);
  const double b = single ? std::strtof(y.c_str(), &endY) : std::strtod(y.c_str(), &endY);
  if (x.empty() || y.empty() || *endX != '\0' || *endY != '\0') return false;
  return (std::isnan(a) && std::isnan(b)) || (a == b && std::signbit(a) == std::signbit(b));
}

std::vector<std::string> Words(const std::string& text) {
  std::vector<std::string> words;
  std::size_t start = 0;
  while (start <= text.size()) {
    const std::size_t end = std::min(text.find(' ', start), text.size());
    words.push_back(text.substr(start, end - start));
    start = end + 1;
  }
  return words;
}

// Equal lines, or lines that differ only in the form of the numbers they hold.
bool SameLine(const std::string& x, const std::string& y, bool byValue, int* formDiffers) {
  if (x == y) return true;
  const std::size_t head = x.find(" = ");
  if (!byValue || head == std::string::npos || x.compare(0, head + 3, y, 0, head + 3) != 0)
    return false;
  const std::vector<std::string> a = Words(x.substr(head + 3));
  const std::vector<std::string> b = Words(y.substr(head + 3));
  if (a.size() != b.size()) return false;
  const bool single = x.compare(2, 8, "{}float ") == 0;
  for (std::size_t i = 0; i < a.size(); ++i) {
    if (a[i] != b[i] && !SameNumber(a[i], b[i], single)) return false;
  }
  ++*formDiffers;
  return true;
}

// "" when the two canonical forms are equal, else where they first differ.
std::string Compare(const std::vector<std::string>& expected,
                    const std::vector<std::string>& actual, bool byValue = false,
                    int* formDiffers = nullptr) {
  int ignored = 0;
  const std::size_t n = std::min(expected.size(), actual.size());
  for (std::size_t i = 0; i < n; ++i) {
    if (!SameLine(expected[i], actual[i], byValue, formDiffers ? formDiffers : &ignored)) {
      const auto cut = [](const std::string& s) {
        return s.size() > 300 ? s.substr(0, 300) + "..." : s;
      };
      return "line " + std::to_string(i + 1) + ":\n      expected: " + cut(expected[i]) +
             "\n      actual:   " + cut(actual[i]);
    }
  }
  if (expected.size() != actual.size()) {
    return std::to_string(expected.size()) + " lines expected, " + std::to_string(actual.size()) +
           " read";
  }
  return "";
}

// ---- Running things ----

bool Exists(const std::string& path) {
  struct stat info;
  return stat(path.c_str(), &info) == 0;
}

std::string Quote(const std::string& s) { return "'" + s + "'"; }

// The exit status of a shell command, -1 when it did not exit normally.
int Run(const std::string& command) {
  const int raw = std::system(command.c_str());
  return raw != -1 && WIFEXITED(raw) ? WEXITSTATUS(raw) : -1;
}

struct Tally {
  int passed = 0;
  int failed = 0;
  int skipped = 0;

  void Check(const std::string& what, const std::string& difference) {
    if (difference.empty()) {
      ++passed;
    } else {
      ++failed;
      std::printf("FAIL %s: %s\n", what.c_str(), difference.c_str());
    }
  }
};

// Runs `action`; a library exception becomes its full message.
template <class F>
std::string Attempt(F&& action) {
  try {
    return std::forward<F>(action)();
  } catch (const COvException& e) {
    return "exception: " + e.GetFullMessage();
  }
}

}  // namespace

int main(int argc, char** argv) {
  if (argc < 3) {
    std::fprintf(stderr, "usage: interop_driver WORKDIR FiPeer.java [OVXML_TOOL]\n");
    return 2;
  }
  const std::string work = argv[1];
  const std::string harness = argv[2];
  const std::string tool = argc > 3 ? argv[3] : "";
  const char* jarVariable = std::getenv("OVXML_FASTINFOSET_JAR");
  const std::string jar = jarVariable != nullptr ? jarVariable : "/usr/share/java/FastInfoset.jar";
  if (Run("command -v java >/dev/null 2>&1") != 0) {
    std::printf("SKIP: no java on the PATH (scripts/deps.sh installs it)\n");
    return 77;
  }
  if (!Exists(jar)) {
    std::printf(
        "SKIP: no Fast Infoset codec at %s (scripts/deps.sh installs libfastinfoset-java)\n",
        jar.c_str());
    return 77;
  }
  if (Run("rm -rf " + Quote(work) + " && mkdir -p " + Quote(work)) != 0) {
    std::printf("FAIL: cannot make the work directory %s\n", work.c_str());
    return 1;
  }

  Tally tally;
  const std::vector<Document> corpus = Corpus();
  std::vector<std::vector<std::string>> expected(corpus.size());
  std::string jobs;
  // Our writer with its defaults, and tuned.
  const CXmlSerializationContext tuned = TunedContext();
  struct Variant {
    const char* suffix;
    FInfoDecl declaration;
    const CXmlSerializationContext* context;
  };
  const Variant variants[] = {
      {"ours", FInfoDecl_None, &CXmlSerializationContext::GetDefaultContext()},
      {"ours_tuned", FInfoDecl_Version10StandaloneYes, &tuned}};
  for (std::size_t i = 0; i < corpus.size(); ++i) {
    const Document& d = corpus[i];
    const std::string base = work + "/" + d.name;
    std::ofstream(base + ".xml", std::ios::binary) << d.xml;
    const std::string read = Attempt([&] {
      expected[i] = CanonicalOf(base + ".xml");
      return std::string();
    });
    tally.Check(d.name + ": our reading of the XML", read);
    jobs += "xml2fi " + base + ".xml " + base + ".java.fi " + d.options + "\n";
    if (!d.options.empty()) continue;  // variants of the Java side's writing only

    for (const Variant& v : variants) {
      const std::string fi = base + "." + v.suffix + ".fi";
      const std::string written = Attempt([&] {
        CSmartPtr<CElement> root = new CElement("document");
        root->FromXmlFile((base + ".xml").c_str());
        root->ToFastInfosetFile(fi.c_str(), v.declaration, *v.context);
        return std::string();
      });
      tally.Check(d.name + ": our writer (CElement, " + v.suffix + ")", written);
      if (written.empty()) jobs += "fi2xml " + fi + " " + base + "." + v.suffix + ".java.xml\n";
    }
    if (!tool.empty()) {
      const std::string command = Quote(tool) + " convert --to fi " + Quote(base + ".xml") + " " +
                                  Quote(base + ".tool.fi") + " 2>" + Quote(base + ".tool.log");
      const int status = Run(command);
      tally.Check(d.name + ": ovxml convert --to fi",
                  status == 0 ? ""
                              : "exit status " + std::to_string(status) + ": " +
                                    ReadFile(base + ".tool.log"));
      if (status == 0) jobs += "fi2xml " + base + ".tool.fi " + base + ".tool.java.xml\n";
    }
  }
  // Generated classes with the usual typed encodings: integers, decimals, dates and booleans go
  // out as algorithms and alphabets. Expected: the same object written as XML.
  const std::string order = work + "/purchase_order";
  std::vector<std::string> orderExpected;
  CXmlSerializationContext typedContext;
  typedContext.GetFIContext().SetSuggestedValues();
  tally.Check("purchase_order: our writer (generated classes, typed)", Attempt([&] {
                CSmartPtr<po::CPurchaseOrder> object = new po::CPurchaseOrder();
                object->FromXmlFile(OVXML_PO_SAMPLE);
                object->ToXmlFile((order + ".ours.xml").c_str(), true, false);
                object->ToFastInfosetFile((order + ".ours.fi").c_str(), FInfoDecl_None,
                                          typedContext);
                orderExpected = CanonicalOf(order + ".ours.xml");
                return std::string();
              }));
  jobs += "fi2xml " + order + ".ours.fi " + order + ".ours.java.xml\n";
  const std::string values = work + "/typed_values";
  tally.Check("typed_values: our writer (CFastInfosetWriter, typed)", Attempt([&] {
                std::ofstream(values + ".xml", std::ios::binary)
                    << WriteTypedValues(values + ".ours.fi");
                return std::string();
              }));
  jobs += "fi2xml " + values + ".ours.fi " + values + ".ours.java.xml\n";
  const std::string typed = work + "/typed";
  jobs += "typed " + typed + "\n";
  for (int k = 1; k <= 2; ++k) {
    jobs +=
        "fi2xml " + typed + std::to_string(k) + ".fi " + typed + std::to_string(k) + ".java.xml\n";
  }
  std::ofstream(work + "/jobs.txt") << jobs;

  // One JVM for every job; its failures are listed and show again below as missing files.
  const std::string log = work + "/java.log";
  const int javaStatus = Run("java -cp " + Quote(jar) + " " + Quote(harness) + " " +
                             Quote(work + "/jobs.txt") + " >" + Quote(log) + " 2>&1");
  if (javaStatus != 0)
    std::printf("the Java side reported (exit status %d):\n%s", javaStatus, ReadFile(log).c_str());

  for (std::size_t i = 0; i < corpus.size(); ++i) {
    const std::string base = work + "/" + corpus[i].name;
    const auto against = [&](const std::string& path) {
      return Attempt([&] {
        return Exists(path) ? Compare(expected[i], CanonicalOf(path))
                            : "the Java side wrote no " + path;
      });
    };
    tally.Check(corpus[i].name + ": (a) Java FI -> our reader", against(base + ".java.fi"));
    if (!corpus[i].options.empty()) continue;
    for (const Variant& v : variants) {
      if (Exists(base + "." + v.suffix + ".fi")) {
        tally.Check(corpus[i].name + ": (b) our writer (" + v.suffix + ") -> Java reader",
                    against(base + "." + v.suffix + ".java.xml"));
      }
    }
    if (Exists(base + ".tool.fi")) {
      tally.Check(corpus[i].name + ": (b) ovxml convert -> Java reader",
                  against(base + ".tool.java.xml"));
      tally.Check(corpus[i].name + ": (b) ovxml convert -> Java reader, comments and PIs",
                  Compare(CommentsAndInstructions(corpus[i].xml),
                          CommentsAndInstructions(ReadFile(base + ".tool.java.xml"))));
    }
  }
  int formDiffers = 0;
  tally.Check("typed_values: (b) our typed writer -> Java reader", Attempt([&] {
                const std::string path = values + ".ours.java.xml";
                if (!Exists(path)) return "the Java side wrote no " + path;
                return Compare(CanonicalOf(values + ".xml"), CanonicalOf(path), true, &formDiffers);
              }));
  tally.Check("purchase_order: (b) our typed writer -> Java reader", Attempt([&] {
                const std::string path = order + ".ours.java.xml";
                if (!Exists(path)) return "the Java side wrote no " + path;
                return Compare(orderExpected, CanonicalOf(path), true, &formDiffers);
              }));
  for (int k = 1; k <= 2; ++k) {
    const std::string stem = typed + std::to_string(k);
    tally.Check("typed" + std::to_string(k) + ": (c) Java typed FI -> our reader", Attempt([&] {
                  if (!Exists(stem + ".java.xml"))
                    return "the Java side wrote no " + stem + ".java.xml";
                  return Compare(CanonicalOf(stem + ".java.xml"), CanonicalOf(stem + ".fi"), true,
                                 &formDiffers);
                }));
  }
  if (formDiffers > 0) {
    std::printf(
        "note: %d typed values are printed in another form than Java's, with the same value\n",
        formDiffers);
  }
  if (tool.empty()) {
    ++tally.skipped;
    std::printf("SKIP direction (b) through ovxml convert --to fi: the tools are not built\n");
  }
  std::printf("interop: %d passed, %d failed, %d skipped\n", tally.passed, tally.failed,
              tally.skipped);
  return tally.failed == 0 ? 0 : 1;
}
