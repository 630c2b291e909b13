// Loading files (whole and asynchronous), byte blocks and compressed input, and the messages of
// every file failure, through an in-memory file system that can fail on demand.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "port/File.h"
#include "unit/xml/StreamTestSupport.h"

#include <cerrno>
#include <gtest/gtest.h>
#include <memory>
#include <string>

using namespace OvXmlLib6;

namespace {

class CXmlDocumentLoad : public ::testing::Test {
 protected:
  void TearDown() override { AsyncFromXmlFile(false); }
  static std::string LoadError(const char* path) {
    return test::MessageOf([&] { CXmlDocument().Load(path); });
  }
  test::CFailingFileSystem m_fs;
};

// A document of `records` elements of about 40 bytes each, so sizes can straddle chunks.
std::string Records(int records) {
  std::string xml = "<?xml version=\"1.0\"?>\n<list>";
  for (int i = 0; i < records; ++i)
    xml += "<record n=\"" + std::to_string(i) + "\">text</record>\n";
  return xml + "</list>";
}

int CountChildren(const CXmlDocument& doc) {
  int n = 0;
  for (const CXmlElement* e = doc.GetDocumentElement()->GetFirstElement(); e;
       e = e->GetNextSiblingElement()) {
    ++n;
  }
  return n;
}

}  // namespace

TEST_F(CXmlDocumentLoad, FilesInBothModesAcrossChunkBoundaries) {
  // Sizes around the 128 KiB chunk: several chunks, and a file that ends exactly on a chunk.
  const std::string big = Records(9000);
  std::string exact = Records(3200);
  exact.insert(exact.size() - 7, 262144 - exact.size(), ' ');
  ASSERT_EQ(exact.size(), 262144u);
  m_fs.Put("big.xml", big);
  m_fs.Put("exact.xml", exact);
  m_fs.Put("small.xml", "<r><a/></r>");
  for (bool async : {false, true}) {
    AsyncFromXmlFile(async);
    CXmlDocument doc;
    doc.Load("big.xml");
    EXPECT_EQ(CountChildren(doc), 9000) << async;
    EXPECT_EQ(doc.GetDocumentElement()->GetFirstElement()->GetAttribute("n", ""), "0");
    doc.Load("exact.xml");
    EXPECT_EQ(CountChildren(doc), 3200) << async;
    doc.Load("small.xml");
    EXPECT_EQ(CountChildren(doc), 1) << async;
  }
}

TEST_F(CXmlDocumentLoad, CompressedInputIsInflatedExceptInAsyncMode) {
  const std::string xml = Records(500);
  for (int type : {1, 2}) {
    const std::string packed = test::Packed(xml, type);
    CXmlDocument doc;
    doc.LoadXmlStream(test::UBytes(packed), static_cast<std::uint32_t>(packed.size()));
    EXPECT_EQ(CountChildren(doc), 500) << type;

    m_fs.Put("packed.xml", packed);
    doc.Load("packed.xml");
    EXPECT_EQ(CountChildren(doc), 500) << type;
  }
  // The asynchronous mode reads XML text only.
  AsyncFromXmlFile(true);
  EXPECT_EQ(LoadError("packed.xml"), "not well-formed (invalid token) at line 1");
}

TEST_F(CXmlDocumentLoad, FileFailuresCarryNameAndErrorCode) {
  EXPECT_EQ(LoadError("missing.xml"), "Failed to open the file [missing.xml] Error [0x00000002]");
  EXPECT_EQ(LoadError(nullptr), "Failed to open the file [] Error [0x00000002]");

  m_fs.Put("empty.xml", "");
  m_fs.Put("doc.xml", Records(9000));
  // An empty file reaches the parser in the whole-file mode; the asynchronous mode refuses it
  // with the end-of-file code.
  EXPECT_EQ(LoadError("empty.xml"), "no element found at line 1");
  AsyncFromXmlFile(true);
  EXPECT_EQ(LoadError("empty.xml"),
            "Failed to read the contents of the file [empty.xml] Error [0x00000026]");

  m_fs.readError = EIO;
  m_fs.failReadsFrom = 131072;  // the first chunk reads, a later one fails
  EXPECT_EQ(LoadError("doc.xml"), "Failed to read the contents of the file. Error [0x00000005]");
  AsyncFromXmlFile(false);
  m_fs.failReadsFrom = 0;
  EXPECT_EQ(LoadError("doc.xml"),
            "Failed to read the contents of the file [doc.xml] Error [0x00000005]");
  m_fs.readError = 0;

  m_fs.reportExtraSize = 10;  // the file ends before its announced size
  EXPECT_EQ(LoadError("doc.xml"),
            "Failed to read the contents of the file [doc.xml] Error [0x00000026]");
  m_fs.reportExtraSize = 0;

  m_fs.sizeError = EACCES;
  EXPECT_EQ(LoadError("doc.xml"),
            "Failed to get the size of the file [doc.xml] Error [0x0000000d]");
}

TEST_F(CXmlDocumentLoad, UnreadableRealFile) {
  port::IFileSystem::SetCurrent(nullptr);
  // A directory is refused when it is opened.
  EXPECT_EQ(LoadError("/"), "Failed to open the file [/] Error [0x00000015]");
}
