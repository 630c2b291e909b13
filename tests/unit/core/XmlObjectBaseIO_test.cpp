// The entry points of CXmlObjectBase, driven through a small bound class: round trips through
// text, bytes in each encoding and compression, and files; the context each overload binds with;
// misuse and hostile depth.
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "unit/TestSupport.h"
#include "unit/core/TestNode.h"

#include <cstdio>
#include <fstream>
#include <gtest/gtest.h>
#include <string>
#include <unistd.h>

using namespace OvXmlLib6;
using OvXmlLib6::testing_support::CTestNode;
using OvXmlLib6::testing_support::DiffTrees;
using test::ExpectThrowMessage;

namespace {

// Namespaces, attributes in and out of namespaces, mixed text, escapes and non-ASCII text.
const char kDocument[] =
    "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
    "<o:order xmlns:o=\"urn:orders\" xmlns:x=\"urn:extra\" id=\"42\" x:flag=\"yes &amp; no\">"
    "<o:line qty=\"3\">Caf\xC3\xA9 cr\xC3\xA8me \xE2\x82\xAC 5 &lt;each&gt;</o:line>"
    "<note xmlns=\"\">mixed <b>bold</b> text</note>"
    "<x:empty/>"
    "</o:order>";

CSmartPtr<CTestNode> Parse(const char* xml) {
  CSmartPtr<CTestNode> node = new CTestNode();
  node->FromXml(xml);
  return node;
}

TEST(CXmlObjectBaseIO, ToXmlHeaderAndFormatting) {
  CSmartPtr<CTestNode> node = Parse("<a><b>t</b></a>");
  EXPECT_EQ(node->ToXml(false, false), "<a><b>t</b></a>");
  const std::string withHeader = node->ToXml();
  EXPECT_EQ(withHeader.rfind("<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n", 0), 0u) << withHeader;
  EXPECT_NE(node->ToXml(false, true, EOLType_CRLF).find("\r\n"), std::string::npos);
  EXPECT_EQ(node->ToXml(false, true, EOLType_LF).find('\r'), std::string::npos);
}

TEST(CXmlObjectBaseIO, RoundTripsThroughTextAndEveryStreamForm) {
  CSmartPtr<CTestNode> original = Parse(kDocument);
  ASSERT_EQ(original->m_children.size(), 3u);
  EXPECT_EQ(original->m_children[1]->m_text, "mixed  text");

  CSmartPtr<CTestNode> fromText = Parse(original->ToXml(true, false).c_str());
  EXPECT_EQ(DiffTrees(*original, *fromText), "");

  CSmartPtr<CTestNode> wide = new CTestNode();
  wide->FromXml(L"<a xmlns='urn:w'>\u00e9\u20ac</a>");
  EXPECT_EQ(wide->m_text, "\xC3\xA9\xE2\x82\xAC");
  EXPECT_EQ(wide->m_ns, "urn:w");

  const struct {
    XmlEncoding encoding;
    CompressionType compression;
  } forms[] = {{XmlEncoding_UTF8, CompressionType_None},
               {XmlEncoding_UTF16, CompressionType_None},
               {XmlEncoding_UTF16NoDeclaration, CompressionType_None},
               {XmlEncoding_UTF8, CompressionType_GZip},
               {XmlEncoding_UTF8, CompressionType_ZLib},
               {XmlEncoding_UTF16, CompressionType_GZip}};
  for (const auto& form : forms) {
    SCOPED_TRACE(testing::Message()
                 << "encoding " << form.encoding << " compression " << form.compression);
    const CBinaryData bytes =
        original->ToXmlStream(true, false, form.encoding, EOLType_LF,
                              CXmlSerializationContext::GetDefaultContext(), form.compression);
    const unsigned char* p = bytes.GetData();
    ASSERT_GE(bytes.GetLength(), 2u);
    if (form.compression == CompressionType_GZip) {
      EXPECT_TRUE(p[0] == 0x1F && p[1] == 0x8B);
    } else if (form.compression == CompressionType_ZLib) {
      EXPECT_EQ(p[0] & 0x0F, 8);
    } else if (form.encoding != XmlEncoding_UTF8) {
      EXPECT_TRUE(p[0] == 0xFF && p[1] == 0xFE);
    }
    CSmartPtr<CTestNode> back = new CTestNode();
    back->FromXmlStream(bytes);
    EXPECT_EQ(DiffTrees(*original, *back), "");
  }
}

TEST(CXmlObjectBaseIO, FilesInEveryMode) {
  CSmartPtr<CTestNode> original = Parse(kDocument);
  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_objectbase_io.xml";
  for (bool async : {false, true}) {
    AsyncToXmlFile(async);
    for (CompressionType c : {CompressionType_None, CompressionType_GZip}) {
      for (XmlEncoding e : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
        SCOPED_TRACE(testing::Message() << async << " " << c << " " << e);
        std::remove(path.c_str());
        original->ToXmlFile(path.c_str(), true, false, e, EOLType_CRLF,
                            CXmlSerializationContext::GetDefaultContext(), c);
        CSmartPtr<CTestNode> back = new CTestNode();
        back->FromXmlFile(path.c_str());
        EXPECT_EQ(DiffTrees(*original, *back), "");
        if (c == CompressionType_None && e == XmlEncoding_UTF8) {
          EXPECT_EQ(test::ReadFile(path), original->ToXml(true, false, EOLType_CRLF));
        }
      }
    }
  }
  AsyncToXmlFile(false);

  std::remove(path.c_str());
  ExpectThrowMessage(
      [&] {
        original->ToXmlFile(path.c_str(), true, true, XmlEncoding_UTF8, EOLType_LF,
                            CXmlSerializationContext::GetDefaultContext(), CompressionType_ZLib);
      },
      "ZLIB Compression only available for To Stream methods.");
  EXPECT_FALSE(std::ifstream(path).good());
  std::remove(path.c_str());

  const std::string bad = ::testing::TempDir() + "no/such/dir/out.xml";
  try {
    original->ToXmlFile(bad.c_str());
    ADD_FAILURE() << "writing into a missing directory succeeded";
  } catch (const COvException& e) {
    EXPECT_NE(e.GetMessage().find("Failed to write data to the file ["), std::string::npos)
        << e.GetMessage();
  }
  CSmartPtr<CTestNode> target = new CTestNode();
  EXPECT_THROW(target->FromXmlFile(bad.c_str()), COvException);
}

TEST(CXmlObjectBaseIO, EachOverloadBindsWithItsContext) {
  const char* xml = "<a><unknown/></a>";
  CXmlSerializationContext lenient;
  lenient.SetIgnoreUnknownElements(true);
  CSmartPtr<CTestNode> node = new CTestNode();
  // The 8-bit text overload binds with the default context, whatever it is given.
  EXPECT_THROW(node->FromXml(xml, lenient), COvValidationException);
  node->FromXml(L"<a><unknown/></a>", lenient);
  EXPECT_TRUE(node->m_children[0]->m_sawIgnoreUnknown);
  node->FromXmlStream(reinterpret_cast<const unsigned char*>(xml), 17, lenient);
  EXPECT_EQ(node->m_children.size(), 1u);

  const std::string path = ::testing::TempDir() + std::to_string(getpid()) + "_objectbase_ctx.xml";
  { std::ofstream(path) << xml; }
  node->FromXmlFile(path.c_str(), lenient);
  EXPECT_TRUE(node->m_children[0]->m_sawIgnoreUnknown);
  EXPECT_THROW(node->FromXmlFile(path.c_str()), COvValidationException);
  std::remove(path.c_str());

  CXmlDocument doc(lenient);
  doc.LoadXml("<wrapper><a><unknown/></a></wrapper>");
  node->FromXmlElement(doc.GetDocumentElement(), lenient);
  EXPECT_EQ(node->Name(), "a");
}

TEST(CXmlObjectBaseIO, MisuseGetsClearErrors) {
  CSmartPtr<CTestNode> node = Parse("<a/>");
  EXPECT_EQ(test::MessageOf([&] { node->FromXml(""); }), "XML String is empty!");
  EXPECT_EQ(test::MessageOf([&] { node->FromXml(static_cast<const char*>(nullptr)); }),
            "XML String is empty!");
  EXPECT_EQ(test::MessageOf([&] { node->FromXmlStream(nullptr, 0); }), "XML Stream is empty!");
  EXPECT_EQ(test::MessageOf([&] { node->FromXmlStream(CBinaryData()); }), "XML Stream is empty!");
  EXPECT_THROW(node->FromXml("<a><b></a>"), COvException);
  EXPECT_THROW(node->FromXml(static_cast<const wchar_t*>(nullptr)), COvException);
  EXPECT_THROW(node->FromXmlElement(static_cast<const CXmlElement*>(nullptr)),
               COvInvalidParamException);
  EXPECT_THROW(node->FromXmlElement(static_cast<const CElement*>(nullptr)),
               COvInvalidParamException);
  CXmlDocument leaf;
  leaf.LoadXml("<leaf/>");
  EXPECT_THROW(node->FromXmlElement(leaf.GetDocumentElement()), COvValidationException);
  EXPECT_THROW(node->ToXmlFile(nullptr), COvInvalidParamException);
  EXPECT_THROW(node->FromXmlFile(nullptr), COvInvalidParamException);
  EXPECT_EQ(test::MessageOf([&] { node->ToXml(false, true, static_cast<EOLType>(7)); }),
            "Invalid EOL type.");
  EXPECT_THROW(node->ToFastInfosetFile(nullptr), COvInvalidParamException);
  EXPECT_EQ(test::MessageOf([&] {
              node->ToFastInfosetFile("x.finf", FInfoDecl_None,
                                      CXmlSerializationContext::GetDefaultContext(),
                                      CompressionType_ZLib);
            }),
            "ZLIB Compression only available for To Stream methods.");
}

TEST(CXmlObjectBaseIO, NestingLimitAppliesToReadingAndWriting) {
  // The limit is a process-wide setting and applies to writing as well.
  SetMaxNestingDepth(3);
  CSmartPtr<CTestNode> deep = new CTestNode("a");
  deep->Add("b")->Add("c")->Add("d");
  EXPECT_THROW(deep->ToXml(), COvException);
  CSmartPtr<CTestNode> three = Parse("<a><b><c/></b></a>");
  EXPECT_EQ(three->ToXml(false, false), "<a><b><c/></b></a>");
  SetMaxNestingDepth(kDefaultMaxNestingDepth);
  EXPECT_EQ(deep->ToXml(false, false), "<a><b><c><d/></c></b></a>");
}

}  // namespace
