// Several threads read and write documents of their own at once, through every entry point and
// with the process-wide default context, and get what one thread alone gets. (The ThreadSanitizer
// stage of the CI runs the tests whose names mention threads.)
#include "OvXmlLib6.h"
#include "po.h"
#include "unit/TestSupport.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>
#include <thread>
#include <unistd.h>
#include <vector>

using namespace OvXmlLib6;

namespace {

// A document of its own for each seed: names, text, attributes and a namespace that differ.
std::string DocumentFor(int seed) {
  const std::string n = std::to_string(seed);
  std::string xml = "<?xml version=\"1.0\"?>\n<list xmlns=\"urn:t" + n + "\" seed=\"" + n + "\">";
  for (int i = 0; i < 20 + seed % 7; ++i) {
    xml += "<item n=\"" + std::to_string(i) + "\">v" + n + "-" + std::to_string(i * seed) +
           " \xC3\xA9</item>";
  }
  return xml + "</list>";
}

// The tree of a document as text.
std::string Dump(const CXmlElement* e) {
  std::string out = "{" + e->GetNamespaceURI() + "}" + e->GetLocalName() + "[";
  for (const CXmlAttribute* a : e->GetAttributes()) out += a->GetLocalName() + "=" + a->GetValue();
  out += "]" + e->GetText() + "(";
  for (const CXmlElement* c = e->GetFirstElement(); c != nullptr; c = c->GetNextSiblingElement())
    out += Dump(c);
  return out + ")";
}

std::string DumpStream(const CBinaryData& bytes) {
  CXmlDocument doc;
  doc.LoadXmlStream(bytes.GetData(), bytes.GetLength());
  return Dump(doc.GetDocumentElement());
}

// Everything one seed goes through: the document as a tree from text, UTF-16, gzip, zlib, Fast
// Infoset and files; as a wildcard element written back in each form; and the purchase order's
// generated classes changed and written. Returns what each step gave.
std::string RunSeed(int seed, const std::string& directory, const std::string& sample) {
  const std::string xml = DocumentFor(seed);
  std::string out;
  CXmlDocument doc;
  doc.LoadXml(xml.c_str());
  out += Dump(doc.GetDocumentElement()) + "\n";

  CSmartPtr<CElement> element = new CElement("list");
  element->FromXml(xml.c_str());
  const CBinaryData utf16 = element->ToXmlStream(true, false, XmlEncoding_UTF16, EOLType_LF);
  const CBinaryData gzip =
      element->ToXmlStream(true, false, XmlEncoding_UTF8, EOLType_LF,
                           CXmlSerializationContext::GetDefaultContext(), CompressionType_GZip);
  const CBinaryData zlib =
      element->ToXmlStream(true, true, XmlEncoding_UTF8, EOLType_CRLF,
                           CXmlSerializationContext::GetDefaultContext(), CompressionType_ZLib);
  const CBinaryData fastInfoset = element->ToFastInfosetStream();
  for (const CBinaryData* bytes : {&utf16, &gzip, &zlib, &fastInfoset}) {
    out += DumpStream(*bytes) + "\n";
  }
  std::u16string wide;
  for (std::size_t i = 2; i + 1 < utf16.GetLength(); i += 2) {
    wide += static_cast<char16_t>(utf16.GetData()[i] | utf16.GetData()[i + 1] << 8);
  }
  doc.LoadXml(wide.c_str());
  out += Dump(doc.GetDocumentElement()) + "\n";

  const std::string path = directory + "/doc" + std::to_string(seed);
  element->ToXmlFile(path.c_str(), true, false, XmlEncoding_UTF8, EOLType_LF,
                     CXmlSerializationContext::GetDefaultContext(), CompressionType_GZip);
  doc.Load(path.c_str());
  out += Dump(doc.GetDocumentElement()) + "\n";
  element->ToFastInfosetFile(path.c_str());
  CSmartPtr<CElement> fromFile = new CElement("list");
  fromFile->FromXmlFile(path.c_str());
  out += fromFile->ToXml(false, false, EOLType_LF) + "\n";
  std::remove(path.c_str());

  CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
  order->FromXml(sample.c_str());
  order->GetItems()->GetItem()->Item(0)->SetQuantity(1 + seed % 90);
  const CBinaryData packed = order->ToFastInfosetStream(
      FInfoDecl_None, CXmlSerializationContext::GetDefaultContext(), CompressionType_GZip);
  CSmartPtr<po::CPurchaseOrder> back = new po::CPurchaseOrder();
  back->FromXmlStream(packed);
  out += back->ToXml();
  return out;
}

}  // namespace

TEST(ThreadedEntryPoints, ThreadsReadingAndWritingAtOnceAgreeWithOneThread) {
  char directory[] = "/tmp/ovxml_threads_XXXXXX";
  ASSERT_NE(::mkdtemp(directory), nullptr);
  const std::string sample = test::ReadFile(OVXML_PO_SAMPLE);
  constexpr int kThreads = 6;
  constexpr int kSeeds = 24;
  std::vector<std::string> expected(kSeeds);
  for (int seed = 0; seed < kSeeds; ++seed) expected[seed] = RunSeed(seed, directory, sample);

  std::vector<std::string> got(kSeeds);
  std::vector<std::string> failures(kThreads);
  std::vector<std::thread> threads;
  for (int t = 0; t < kThreads; ++t) {
    threads.emplace_back([&, t] {
      try {
        for (int seed = t; seed < kSeeds; seed += kThreads)
          got[seed] = RunSeed(seed, directory, sample);
      } catch (const COvException& e) {
        failures[t] = e.GetFullMessage();
      }
    });
  }
  for (std::thread& thread : threads) thread.join();
  ::rmdir(directory);
  for (int t = 0; t < kThreads; ++t) EXPECT_EQ(failures[t], "") << "thread " << t;
  for (int seed = 0; seed < kSeeds; ++seed) EXPECT_EQ(got[seed], expected[seed]) << seed;
  // Seeds differ, so agreement is not between identical copies.
  EXPECT_NE(expected[1], expected[2]);
}
