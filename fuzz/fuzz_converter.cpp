// The streaming converter: the first byte picks the output options and the size of the blocks
// the input arrives in, the rest is the document. A document that converts to XML text must
// convert to Fast Infoset too, and that Fast Infoset must convert back to the same XML text.
// Whatever the converter writes must convert again.
#include "FuzzSupport.h"
#include "xml/StreamConverter.h"

#include <algorithm>
#include <vector>

using namespace OvXmlLib6;
using namespace OvXmlLib6::detail;

namespace {

class CMemorySource : public IByteSource {
 public:
  CMemorySource(const std::uint8_t* data, std::size_t size, std::size_t block)
      : m_data(data), m_size(size), m_block(block) {}
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override {
    const std::size_t count = std::min({capacity, m_size, m_block});
    std::copy(m_data, m_data + count, buffer);
    m_data += count;
    m_size -= count;
    return count;
  }

 private:
  const std::uint8_t* m_data;
  std::size_t m_size;
  std::size_t m_block;
};

class CMemorySink : public IByteSink {
 public:
  void Write(const unsigned char* data, std::size_t length) override {
    bytes.append(reinterpret_cast<const char*>(data), length);
  }
  std::string bytes;
};

std::string Convert(const std::string& input, const CConvertOptions& options, std::size_t block) {
  CMemorySource source(reinterpret_cast<const std::uint8_t*>(input.data()), input.size(), block);
  CMemorySink sink;
  CStreamConverter(options).Convert(source, sink);
  return sink.bytes;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::CInput input(data, size);
  const std::uint8_t choice = input.Byte();
  const std::size_t block = choice & 0x80 ? 1 + (choice & 0x0F) : 65536;
  CConvertOptions options;
  options.compression = static_cast<CompressionType>((choice >> 4) % 3);
  options.utf16 = (choice & 1) != 0;
  options.format = (choice & 2) != 0;
  options.crlf = (choice & 4) != 0;
  options.header = (choice & 8) != 0;
  const std::string document = input.Rest();

  std::string xml;
  if (!fuzz::Attempt([&] { xml = Convert(document, options, block); })) {
    return 0;
  }
  CConvertOptions plain;
  std::string plainXml;
  fuzz::MustSucceed("the converter's XML output converts again", xml,
                    [&] { plainXml = Convert(xml, plain, block); });

  CConvertOptions binary = options;
  binary.fastInfoset = true;
  std::string fastInfoset;
  fuzz::MustSucceed("a document that converts to XML converts to Fast Infoset", document,
                    [&] { fastInfoset = Convert(document, binary, block); });
  std::string fromFastInfoset;
  fuzz::MustSucceed("the converter's Fast Infoset output converts to XML", document,
                    [&] { fromFastInfoset = Convert(fastInfoset, plain, block); });
  std::string direct;
  fuzz::MustSucceed("the document converts to plain XML", document,
                    [&] { direct = Convert(document, plain, block); });
  fuzz::Require(fromFastInfoset == direct, "XML through Fast Infoset equals XML direct", direct,
                fromFastInfoset);
  return 0;
}
