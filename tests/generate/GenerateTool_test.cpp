// `ovxml generate` run as a program: bad schemas fail with the file, line and construct and
// leave no output behind; the output is the same bytes from one run to the next; the
// dependency file names every schema read.
#include "unit/TestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <dirent.h>
#include <fstream>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace {

using OvXmlLib6::test::ReadFile;

struct CRun {
  int status;
  std::string errors;
};

// A scratch directory of its own for each test, removed at the end.
class GenerateTool : public ::testing::Test {
 protected:
  void SetUp() override {
    char pattern[] = "/tmp/ovxml_generate_XXXXXX";
    ASSERT_NE(mkdtemp(pattern), nullptr);
    m_dir = pattern;
  }
  void TearDown() override { std::system(("rm -rf '" + m_dir + "'").c_str()); }

  std::string Write(const std::string& name, const std::string& text) const {
    const std::string path = m_dir + "/" + name;
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }

  CRun Run(const std::string& arguments) const {
    const std::string errors = m_dir + "/errors.txt";
    const std::string command =
        std::string(OVXML_TOOL_PATH) + " generate " + arguments + " 2>'" + errors + "'";
    const int raw = std::system(command.c_str());
    return {WIFEXITED(raw) ? WEXITSTATUS(raw) : -1, ReadFile(errors)};
  }

  static std::vector<std::string> Files(const std::string& directory) {
    std::vector<std::string> names;
    DIR* dir = opendir(directory.c_str());
    if (dir == nullptr) return names;
    while (dirent* entry = readdir(dir)) {
      if (entry->d_name[0] != '.') names.push_back(entry->d_name);
    }
    closedir(dir);
    std::sort(names.begin(), names.end());
    return names;
  }

  std::string m_dir;
};

std::string Schema(const std::string& body, const std::string& extra = "") {
  return "<?xml version=\"1.0\"?>\n"
         "<xs:schema xmlns:xs=\"http://www.w3.org/2001/XMLSchema\" xmlns=\"urn:t\"\n"
         "           targetNamespace=\"urn:t\"" +
         extra + ">\n" + body + "</xs:schema>\n";
}

// Each bad schema names its file and the line of the construct, says what is wrong, and leaves
// no output directory behind.
TEST_F(GenerateTool, BadSchemasFailWithFileLineAndConstruct) {
  struct Case {
    const char* what;
    std::map<std::string, std::string> files;  // the first is named on the command line
    const char* location;                      // FILE:LINE of the message
    const char* message;
  };
  const std::string element = "  <xs:element name=\"e\" type=\"T\"/>\n";
  const Case cases[] = {
      {"not well-formed", {{"a.xsd", Schema("  <oops>\n")}}, "a.xsd:5:", "not well-formed XML"},
      {"not a schema",
       {{"a.xsd", "<?xml version=\"1.0\"?>\n<root/>"}},
       "a.xsd:2:",
       "not an XML Schema document"},
      {"undefined type",
       {{"a.xsd", Schema(element)}},
       "a.xsd:4:",
       "undefined type 'T' (<xs:element name=\"e\" type=\"T\">)"},
      {"undefined group",
       {{"a.xsd", Schema("  <xs:complexType name=\"T\">\n    <xs:group ref=\"G\"/>\n"
                         "  </xs:complexType>\n")}},
       "a.xsd:5:",
       "undefined group 'G'"},
      {"duplicate names",
       {{"a.xsd", Schema("  <xs:complexType name=\"T\"/>\n  <xs:simpleType name=\"T\">\n"
                         "    <xs:restriction base=\"xs:int\"/>\n  </xs:simpleType>\n")}},
       "a.xsd:5:",
       "duplicate name 'T': declared before at"},
      {"a type derived from itself",
       {{"a.xsd", Schema("  <xs:complexType name=\"T\"><xs:complexContent>\n"
                         "    <xs:extension base=\"T\"/></xs:complexContent></xs:complexType>\n")}},
       "a.xsd:4:",
       "the type is derived from itself"},
      {"an undeclared prefix",
       {{"a.xsd", Schema("  <xs:element name=\"e\" type=\"q:T\"/>\n")}},
       "a.xsd:4:",
       "the prefix 'q' is not declared"},
      {"a restriction of what its base does not have",
       {{"a.xsd", Schema("  <xs:complexType name=\"B\"/>\n  <xs:complexType name=\"T\">\n"
                         "    <xs:complexContent>\n      <xs:restriction base=\"B\">\n"
                         "        <xs:sequence><xs:element name=\"z\" type=\"xs:int\"/>"
                         "</xs:sequence>\n      </xs:restriction>\n"
                         "    </xs:complexContent>\n  </xs:complexType>\n")}},
       "a.xsd:7:",
       "the restriction declares 'z' that its base does not have (<xs:restriction base=\"B\">)"},
      {"an element twice in an all group",
       {{"a.xsd", Schema("  <xs:complexType name=\"T\"><xs:all>\n"
                         "    <xs:element name=\"a\" type=\"xs:int\"/>\n"
                         "    <xs:element name=\"a\" type=\"xs:int\"/>\n"
                         "  </xs:all></xs:complexType>\n")}},
       "a.xsd:6:",
       "the element 'a' appears twice in an all group"},
      {"a substitution group member of another type",
       {{"a.xsd",
         Schema("  <xs:element name=\"h\" type=\"xs:int\"/>\n"
                "  <xs:element name=\"m\" substitutionGroup=\"h\" type=\"xs:string\"/>\n")}},
       "a.xsd:5:",
       "the type of 'm' does not derive from the type of its substitution group head 'h'"},
      {"a substitution group member of a type that extends another",
       {{"a.xsd", Schema("  <xs:element name=\"h\" type=\"H\"/>\n  <xs:complexType name=\"H\"/>\n"
                         "  <xs:complexType name=\"B\"/>\n  <xs:complexType name=\"M\">\n"
                         "    <xs:complexContent><xs:extension base=\"B\"/></xs:complexContent>\n"
                         "  </xs:complexType>\n"
                         "  <xs:element name=\"m\" substitutionGroup=\"h\" type=\"M\"/>\n")}},
       "a.xsd:10:",
       "the type of 'm' does not derive from the type of its substitution group head 'h'"},
      {"an undeclared substitution group head",
       {{"a.xsd", Schema("  <xs:element name=\"m\" substitutionGroup=\"zz\"/>\n")}},
       "a.xsd:4:",
       "undefined substitution group head 'zz' (<xs:element name=\"m\" substitutionGroup=\"zz\">)"},
      {"a cycle of substitution groups",
       {{"a.xsd", Schema("  <xs:element name=\"a\" substitutionGroup=\"b\"/>\n"
                         "  <xs:element name=\"b\" substitutionGroup=\"c\"/>\n"
                         "  <xs:element name=\"c\" substitutionGroup=\"a\"/>\n")}},
       "a.xsd:4:",
       "the substitution groups of 'a' lead back to it"},
      {"a required abstract element that nothing stands for",
       {{"a.xsd", Schema("  <xs:element name=\"h\" abstract=\"true\"/>\n"
                         "  <xs:complexType name=\"T\"><xs:sequence>\n"
                         "    <xs:element ref=\"h\"/>\n  </xs:sequence></xs:complexType>\n")}},
       "a.xsd:6:",
       "the abstract element 'h' has no substitution group member to stand for it"},
      {"a substitution group head in an all group",
       {{"a.xsd", Schema("  <xs:element name=\"h\"/>\n"
                         "  <xs:element name=\"m\" substitutionGroup=\"h\"/>\n"
                         "  <xs:complexType name=\"T\"><xs:all>\n"
                         "    <xs:element ref=\"h\"/>\n  </xs:all></xs:complexType>\n")}},
       "a.xsd:7:",
       "the head of a substitution group in an all group cannot be mapped"},
      {"a redefinition",
       {{"a.xsd", Schema("  <xs:redefine schemaLocation=\"b.xsd\"/>\n")}},
       "a.xsd:4:",
       "redefinition of components cannot be mapped"},
      {"a simpleContent restriction",
       {{"a.xsd", Schema("  <xs:complexType name=\"T\"><xs:simpleContent>\n"
                         "    <xs:restriction base=\"xs:int\"/>\n"
                         "  </xs:simpleContent></xs:complexType>\n")}},
       "a.xsd:4:",
       "simpleContent other than an extension cannot be mapped"},
      {"an occurrence count that is not one",
       {{"a.xsd", Schema("  <xs:group name=\"G\"><xs:sequence>\n"
                         "    <xs:element name=\"a\" type=\"xs:int\" maxOccurs=\"99999999999\"/>\n"
                         "  </xs:sequence></xs:group>\n")}},
       "a.xsd:5:",
       "invalid maxOccurs '99999999999'"},
      {"an unknown facet",
       {{"a.xsd", Schema("  <xs:simpleType name=\"S\">\n    <xs:restriction base=\"xs:int\">\n"
                         "      <xs:colour value=\"red\"/>\n    </xs:restriction>\n"
                         "  </xs:simpleType>\n")}},
       "a.xsd:6:",
       "unknown facet"},
      {"an include that is not a local file",
       {{"a.xsd", Schema("  <xs:include schemaLocation=\"http://example.com/b.xsd\"/>\n")}},
       "a.xsd:4:",
       "the schema location 'http://example.com/b.xsd' is not a local file"},
      {"a missing include",
       {{"a.xsd", Schema("  <xs:include schemaLocation=\"missing.xsd\"/>\n")}},
       "a.xsd:4:",
       "cannot read the schema file"},
      {"an error in an included file",
       {{"a.xsd", Schema("  <xs:include schemaLocation=\"b.xsd\"/>\n")},
        {"b.xsd", Schema("\n\n" + element)}},
       "b.xsd:6:",
       "undefined type 'T'"},
  };
  for (const Case& c : cases) {
    std::string first;
    for (const auto& file : c.files) {
      const std::string path = Write(file.first, file.second);
      if (first.empty() || file.first == "a.xsd") first = path;
    }
    std::system(("rm -rf '" + m_dir + "/out'").c_str());
    const CRun run = Run("-o '" + m_dir + "/out' '" + first + "'");
    EXPECT_EQ(run.status, 1) << c.what;
    EXPECT_EQ(run.errors.rfind("ovxml: ", 0), 0u) << c.what << ": " << run.errors;
    EXPECT_NE(run.errors.find(std::string("/") + c.location + " " + c.message), std::string::npos)
        << c.what << ": " << run.errors;
    struct stat info;
    EXPECT_NE(stat((m_dir + "/out").c_str(), &info), 0) << c.what << ": output left behind";
  }
}

// Include and import cycles end; each included or imported file is read once, and the
// dependency file names them all.
TEST_F(GenerateTool, CyclesEndAndTheDependencyFileNamesEverySchemaRead) {
  const std::string source = OVXML_GENERATE_SOURCE_DIR "/schemas/";
  const CRun run = Run("--namespace t --depfile '" + m_dir + "/deps.d' -o '" + m_dir + "/out' '" +
                       source + "library.xsd'");
  ASSERT_EQ(run.status, 0) << run.errors;
  EXPECT_EQ(Files(m_dir + "/out"),
            (std::vector<std::string>{"library.cpp", "library.h", "libraryFactory.cpp",
                                      "libraryFactory.h"}));
  const std::string deps = ReadFile(m_dir + "/deps.d");
  EXPECT_LT(deps.find(m_dir + "/out/library.h "), deps.find(':')) << deps;
  for (const char* schema : {"library.xsd", "common.xsd", "people.xsd"}) {
    EXPECT_NE(deps.find("/schemas/" + std::string(schema)), std::string::npos) << deps;
  }
}

// The same command gives the same bytes, and the options name what they say.
TEST_F(GenerateTool, OutputIsDeterministicAndFollowsTheOptions) {
  const std::string schemas = std::string("'") + OVXML_GENERATE_SOURCE_DIR +
                              "/schemas/library.xsd' '" + OVXML_PO_SCHEMA + "'";
  const std::string options = "--namespace a::b --class-prefix X --class-suffix Type --name Both ";
  ASSERT_EQ(Run(options + "-o '" + m_dir + "/one' " + schemas).status, 0);
  ASSERT_EQ(Run(options + "-o '" + m_dir + "/two' " + schemas).status, 0);
  const std::vector<std::string> files = Files(m_dir + "/one");
  EXPECT_EQ(files, (std::vector<std::string>{"BothFactory.cpp", "BothFactory.h", "library.cpp",
                                             "library.h", "po.cpp", "po.h"}));
  for (const std::string& file : files) {
    EXPECT_EQ(ReadFile(m_dir + "/one/" + file), ReadFile(m_dir + "/two/" + file)) << file;
  }
  const std::string header = ReadFile(m_dir + "/one/po.h");
  EXPECT_NE(header.find("namespace a::b {"), std::string::npos);
  EXPECT_NE(header.find("class XPurchaseOrderTypeType : public OvXmlLib6::CXmlGeneratedClass"),
            std::string::npos);

  // Usage errors: exit status 2.
  EXPECT_EQ(Run(schemas).status, 2);
  EXPECT_EQ(Run("--bogus -o x " + schemas).status, 2);
  EXPECT_EQ(Run("--namespace 1x -o x " + schemas).status, 2);
}

}  // namespace
