// Runs the built ovxml tool on real documents and compares its output with the input: node by
// node (names, namespaces, attributes and text of every element), or byte by byte where the
// document's order of text, elements, comments and processing instructions is at stake.
#include "../unit/TestSupport.h"
#include "OvXmlLib6/xml/XmlDocument.h"

#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <sys/resource.h>
#include <sys/wait.h>
#include <tuple>
#include <unistd.h>

using namespace OvXmlLib6;
using test::ReadFile;

namespace {

const std::string kTool = OVXML_TOOL_PATH;
const std::string kSample = std::string(OVXML_EXAMPLES_DIR) + "/sample.xml";

// ctest runs each test in its own process, in parallel: the process id keeps their files apart.
std::string Temp(const std::string& name) {
  return ::testing::TempDir() + "ovxml_tool_" + std::to_string(getpid()) + "_" + name;
}

void WriteFile(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

struct ToolRun {
  int status;
  std::string err;
};

// Runs the tool with a shell command line of arguments; standard error is captured.
ToolRun Tool(const std::string& arguments) {
  const std::string errPath = Temp("stderr.txt");
  const std::string command = "'" + kTool + "' " + arguments + " 2>'" + errPath + "'";
  const int raw = std::system(command.c_str());
  ToolRun run{WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(errPath)};
  std::remove(errPath.c_str());
  return run;
}

std::string Trim(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r\n");
  if (first == std::string::npos) return "";
  return text.substr(first, text.find_last_not_of(" \t\r\n") + 1 - first);
}

// The first difference between two trees, or "" when they are equal. With `layout` the text of
// elements with children is compared without the whitespace at its ends, which --format adds.
std::string Diff(const CXmlElement* a, const CXmlElement* b, bool layout,
                 const std::string& path = "") {
  const std::string here = path + "/" + a->GetLocalName();
  if (a->GetLocalName() != b->GetLocalName() || a->GetNamespaceURI() != b->GetNamespaceURI())
    return here + ": name differs from {" + b->GetNamespaceURI() + "}" + b->GetLocalName();
  const bool trim = layout && a->GetFirstElement() != nullptr;
  if (trim ? Trim(a->GetText()) != Trim(b->GetText()) : a->GetText() != b->GetText())
    return here + ": text [" + a->GetText() + "] vs [" + b->GetText() + "]";
  const auto& x = a->GetAttributes();
  const auto& y = b->GetAttributes();
  if (x.size() != y.size()) return here + ": attribute count";
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (x[i]->GetLocalName() != y[i]->GetLocalName() ||
        x[i]->GetNamespaceURI() != y[i]->GetNamespaceURI() || x[i]->GetValue() != y[i]->GetValue())
      return here + ": attribute " + x[i]->GetLocalName();
  }
  const CXmlElement* ca = a->GetFirstElement();
  const CXmlElement* cb = b->GetFirstElement();
  for (; ca != nullptr && cb != nullptr;
       ca = ca->GetNextSiblingElement(), cb = cb->GetNextSiblingElement()) {
    std::string d = Diff(ca, cb, layout, here);
    if (!d.empty()) return d;
  }
  if (ca != nullptr || cb != nullptr) return here + ": child count";
  return "";
}

std::string DiffFiles(const std::string& expected, const std::string& actual, bool layout = false) {
  CXmlDocument a;
  CXmlDocument b;
  a.Load(expected.c_str());
  b.Load(actual.c_str());
  return Diff(a.GetDocumentElement(), b.GetDocumentElement(), layout);
}

TEST(OvxmlTool, ConvertsTheSampleInEveryOutputForm) {
  const std::string out = Temp("out.xml");
  const struct {
    const char* options;
    bool layout;
  } forms[] = {
      {"", false},        {"--to xml --utf16", false},   {"--gzip", false},
      {"--zlib", false},  {"--crlf --no-header", false}, {"--format", true},
      {"--to fi", false}, {"--to fi --gzip", false},     {"--format --crlf --utf16 --gzip", true}};
  for (const auto& form : forms) {
    SCOPED_TRACE(form.options);
    std::remove(out.c_str());
    const ToolRun run =
        Tool(std::string("convert ") + form.options + " '" + kSample + "' '" + out + "'");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_NE(run.err.find("elements"), std::string::npos) << run.err;
    EXPECT_EQ(DiffFiles(kSample, out, form.layout), "");
  }
  // Plain output keeps the document's own whitespace and adds none: converting it again gives
  // the same bytes.
  ASSERT_EQ(Tool("convert '" + kSample + "' '" + out + "'").status, 0);
  const std::string again = Temp("again.xml");
  ASSERT_EQ(Tool("convert '" + out + "' '" + again + "'").status, 0);
  EXPECT_EQ(ReadFile(out), ReadFile(again));
  const std::string text = ReadFile(out);
  EXPECT_EQ(text.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<", 0), 0u) << text;
  // The prefix that an xsi:type value names stays declared, with its namespace.
  EXPECT_NE(text.find("xmlns:addr=\"urn:example:address\""), std::string::npos) << text;
  std::remove(out.c_str());
  std::remove(again.c_str());
}

TEST(OvxmlTool, RecognisesTheInputFromItsContent) {
  // UTF-16, gzip and zlib inputs, made by the tool itself under misleading names, and a
  // Latin-1 document, all read back to the sample's tree through standard input and output.
  const std::string utf16 = Temp("a.gz");
  const std::string gz = Temp("b.txt");
  const std::string zl = Temp("c.xml");
  ASSERT_EQ(Tool("convert --utf16 '" + kSample + "' '" + utf16 + "'").status, 0);
  ASSERT_EQ(Tool("convert --gzip --utf16 '" + kSample + "' '" + gz + "'").status, 0);
  ASSERT_EQ(Tool("convert --zlib '" + kSample + "' '" + zl + "'").status, 0);
  const std::string out = Temp("back.xml");
  for (const std::string& in : {utf16, gz, zl}) {
    SCOPED_TRACE(in);
    const ToolRun run = Tool("convert - - < '" + in + "' > '" + out + "'");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(DiffFiles(kSample, out), "");
    std::remove(in.c_str());
  }
  const std::string latin1 = Temp("latin1.xml");
  WriteFile(latin1, "<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'>caf\xE9</a>");
  ASSERT_EQ(Tool("convert '" + latin1 + "' '" + out + "'").status, 0);
  EXPECT_NE(ReadFile(out).find("<a b=\"\xC3\xA9\">caf\xC3\xA9</a>"), std::string::npos)
      << ReadFile(out);
  std::remove(latin1.c_str());
  std::remove(out.c_str());
}

TEST(OvxmlTool, KeepsTheDocumentThroughEveryForm) {
  // Mixed content, comments and processing instructions in and around the document element, and
  // namespace declarations with their prefixes, through compressed and UTF-16 forms and back.
  const std::string xml =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<?style href=\"a.css\"?>\n<!-- top -->\n"
      "<p:doc xmlns:p=\"urn:p\" xmlns=\"urn:d\"><para>Hello <b>big</b> world<!--c--><?pi x?>"
      "</para><q:x xmlns:q=\"urn:q\" q:a=\"1\"><plain xmlns=\"\"/></q:x></p:doc>\n<!-- end -->\n";
  const std::string in = Temp("mixed.xml");
  const std::string mid = Temp("mixed.mid");
  const std::string out = Temp("mixed.out");
  WriteFile(in, xml);
  for (const char* form :
       {"", "--gzip", "--zlib --utf16", "--utf16 --gzip", "--to fi", "--to=fi --zlib"}) {
    SCOPED_TRACE(form);
    ASSERT_EQ(Tool(std::string("convert ") + form + " '" + in + "' '" + mid + "'").status, 0);
    const ToolRun run = Tool("convert - - < '" + mid + "' > '" + out + "'");
    ASSERT_EQ(run.status, 0) << run.err;
    EXPECT_EQ(ReadFile(out), xml);
  }
  std::remove(in.c_str());
  std::remove(mid.c_str());
  std::remove(out.c_str());
}

TEST(OvxmlTool, FailuresAreReportedWithAStatus) {
  const std::string out = Temp("fail.xml");
  const std::string bad = Temp("bad.xml");
  const std::string fi = Temp("fi.bin");
  const std::string text = Temp("text.txt");
  const std::string cut = Temp("cut.gz");
  WriteFile(bad, "<a><b></a>");
  WriteFile(fi, std::string("\xE0\x00\x00\x01\x00", 5));
  WriteFile(text, "just some text\n");
  ASSERT_EQ(Tool("convert --gzip '" + kSample + "' '" + cut + "'").status, 0);
  WriteFile(cut, ReadFile(cut).substr(0, 300));
  // Usage errors exit with 2, failed conversions with 1; the message says which.
  const struct {
    std::string arguments;
    int status;
    std::string error;
  } cases[] = {
      {"--help", 0, ""},
      {"convert --version", 0, ""},
      {"", 2, "Usage: ovxml convert"},
      {"convert --bogus a b", 2, "unknown option '--bogus'; try 'ovxml --help'"},
      {"convert -x a b", 2, "unknown option '-x'"},
      {"convert a b --to", 2, "--to needs a value"},
      {"transmogrify a b", 2, "unknown command 'transmogrify'"},
      {"convert '" + ::testing::TempDir() + "' '" + out + "'", 1, "is a directory, not a document"},
      {"convert --gzip --zlib a b", 2, ""},
      {"convert onlyone", 2, ""},
      {"convert --to fi --utf16 '" + kSample + "' '" + out + "'", 2, "for XML text output"},
      {"convert --to yaml '" + kSample + "' '" + out + "'", 2, "unknown output kind 'yaml'"},
      {"convert '" + Temp("missing.xml") + "' '" + out + "'", 1, "ovxml: error: cannot open"},
      {"convert '" + bad + "' '" + out + "'", 1, "ovxml: " + bad + ":1:9: mismatched tag\n"},
      {"convert - '" + out + "' < '" + text + "'", 1,
       "ovxml: (standard input):1:1: syntax error\n"},
      {"convert '" + cut + "' '" + out + "'", 1,
       "ovxml: " + cut +
           ": Failed to inflate the compressed input: it ends before the compressed stream does"},
      // The start of the sample inflates to more than 100 bytes: refused before the cut shows.
      {"convert --max-inflated=100 '" + cut + "' '" + out + "'", 1,
       "beyond the limit of 100 bytes (raise it with --max-inflated)"},
      {"convert --max-inflated=1X a b", 2, "--max-inflated needs a size such as 2G, not '1X'"},
      {"convert '" + fi + "' '" + out + "'", 1, "Failed to parse FastInfoset."},
      {"convert '" + kSample + "' '" + Temp("no/such/dir/out.xml") + "'", 1, "cannot create"},
  };
  for (const auto& c : cases) {
    const ToolRun run = Tool(c.arguments);
    EXPECT_EQ(run.status, c.status) << c.arguments;
    EXPECT_NE(run.err.find(c.error), std::string::npos) << run.err;
  }
  EXPECT_FALSE(std::ifstream(out).good()) << "a failed conversion left an output file";
  // GNU conventions: --opt=value, options after the files, -- before a file named like an
  // option, and --quiet without the summary line.
  const std::string dashed = Temp("-dashed.fi");
  const ToolRun quiet = Tool("convert '" + kSample + "' -- --to=fi -q '" + dashed + "'");
  EXPECT_EQ(quiet.status, 2) << quiet.err;  // after --, "--to=fi" is a file name
  const ToolRun run = Tool("convert '" + kSample + "' --to=fi -q -- '" + dashed + "'");
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.err, "");
  EXPECT_EQ(ReadFile(dashed).substr(0, 4), std::string("\xE0\x00\x00\x01", 4));
  EXPECT_EQ(Tool("--version > '" + dashed + "'").status, 0);
  EXPECT_EQ(ReadFile(dashed), "ovxml (OvXmlLib6) 6.0.0\n");
  std::remove(dashed.c_str());
  for (const std::string& name : {bad, fi, text, cut}) std::remove(name.c_str());
}

TEST(OvxmlTool, DeepDocumentIsHandled) {
  // 100,000 levels: read, written and released without recursion.
  const std::string xml = test::NestedElements(100000);
  const std::string in = Temp("deep.xml");
  const std::string out = Temp("deep_out.xml");
  WriteFile(in, xml);
  const ToolRun run = Tool("convert --no-header '" + in + "' '" + out + "'");
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(ReadFile(out).size(), xml.size() - 3);  // the innermost element is written <e/>
  std::remove(in.c_str());
  std::remove(out.c_str());
}

// The peak resident memory of the tool converting `in`, in KiB.
long PeakMemory(const char* to, const std::string& in, const std::string& out) {
  const pid_t child = fork();
  if (child == 0) {
    const int null = open("/dev/null", O_WRONLY);
    dup2(null, STDERR_FILENO);
    execl(kTool.c_str(), kTool.c_str(), "convert", "--gzip", "--to", to, in.c_str(), out.c_str(),
          static_cast<char*>(nullptr));
    _exit(127);
  }
  int status = 0;
  struct rusage usage {};
  EXPECT_EQ(wait4(child, &status, 0, &usage), child);
  EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << in;
  return usage.ru_maxrss;
}

TEST(OvxmlTool, ConvertsInConstantMemory) {
  // A document of about 50 MB takes hardly more memory than one of a few bytes.
  const std::string small = Temp("small.xml");
  const std::string big = Temp("big.xml");
  const std::string out = Temp("big.out");
  WriteFile(small, "<a/>");
  {
    std::ofstream file(big, std::ios::binary);
    file << "<list xmlns:p=\"urn:p\">\n";
    // Every value and text differs, as a Fast Infoset vocabulary would index them.
    std::string line;
    for (std::size_t i = 0, written = 0; written < 50u * 1024 * 1024; ++i, written += line.size()) {
      const std::string n = std::to_string(i);
      line = "  <p:item id=\"" + n + "\">text " + n + " &amp; <b>" + n + "</b><!--c--></p:item>\n";
      file << line;
    }
    file << "</list>\n";
  }
  // XML to XML and to Fast Infoset, and that back to XML.
  const std::string fi = Temp("big.fi.gz");
  const long base = PeakMemory("xml", small, out);
  for (const auto& [to, in, result] :
       {std::make_tuple("xml", big, out), std::make_tuple("fi", big, fi),
        std::make_tuple("xml", fi, out)}) {
    const long peak = PeakMemory(to, in, result);
    EXPECT_LT(peak - base, 4 * 1024)
        << "KiB: " << base << " for a tiny document, " << peak << " for " << in << " to " << to;
  }
  for (const std::string& name : {small, big, out, fi}) std::remove(name.c_str());
}

}  // namespace
