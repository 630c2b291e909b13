// CStreamConverter: converts a document between XML text and Fast Infoset as it is read, in
// bounded memory whatever its size. The reader's events go straight to the output writer: text,
// child elements, comments and processing instructions keep their order, and namespace
// declarations stay on the elements that made them. The `ovxml convert` tool is a front end to it.
#ifndef OVXMLLIB6_SRC_XML_STREAMCONVERTER_H
#define OVXMLLIB6_SRC_XML_STREAMCONVERTER_H

#include "OvXmlLib6/core/Enums.h"
#include "xml/ByteSource.h"
#include "xml/XmlEvents.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <functional>
#include <string>

namespace OvXmlLib6 {
namespace detail {

// Output taken piece by piece. Failures throw the library's exceptions.
class IByteSink {
 public:
  virtual ~IByteSink() = default;
  virtual void Write(const unsigned char* data, std::size_t length) = 0;
  // After the last Write: pushes out what is held back.
  virtual void Finish() {}
};

// A C stream read in blocks (a file or standard input); `name` is what messages call it.
class CStdioSource : public IByteSource {
 public:
  CStdioSource(std::FILE* file, std::string name) : m_file(file), m_name(std::move(name)) {}
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override;

 private:
  std::FILE* m_file;
  std::string m_name;
};

// A C stream written to (a file or standard output); Finish flushes it. The stream stays open.
class CStdioSink : public IByteSink {
 public:
  CStdioSink(std::FILE* file, std::string name) : m_file(file), m_name(std::move(name)) {}
  void Write(const unsigned char* data, std::size_t length) override;
  void Finish() override;

 private:
  [[noreturn]] void Fail();

  std::FILE* m_file;
  std::string m_name;
};

struct CConvertOptions {
  bool fastInfoset = false;  // write Fast Infoset instead of XML text
  CompressionType compression = CompressionType_None;
  // XML text only:
  bool utf16 = false;   // UTF-16LE with a byte-order mark instead of UTF-8
  bool format = false;  // indented, with whitespace-only text between markup replaced
  bool crlf = false;
  bool header = true;  // the XML declaration
};

struct CConvertCounts {
  std::uint64_t elements = 0;
  std::uint64_t attributes = 0;
  std::uint64_t bytesIn = 0;  // as read, before any inflation
  std::uint64_t bytesOut = 0;
  bool fastInfosetInput = false;
};

class CStreamConverter {
 public:
  explicit CStreamConverter(const CConvertOptions& options) : m_options(options) {}

  // Called with the number of input bytes consumed so far, after each block read.
  void SetProgress(std::function<void(std::uint64_t)> progress) {
    m_progress = std::move(progress);
  }

  // Reads the whole input, recognising from its content XML text in any encoding the parser
  // knows or Fast Infoset, either optionally gzip- or zlib-compressed, and writes the document
  // to `output`. Failures throw COvException saying what failed and where.
  CConvertCounts Convert(IByteSource& input, IByteSink& output);
  // After Convert threw on XML text: where the parser stopped (line 0 when the failure was not
  // the parser's, e.g. of the compressed data or of Fast Infoset input).
  const CParseFailure& GetFailure() const { return m_failure; }

 private:
  CConvertOptions m_options;
  CParseFailure m_failure;
  std::function<void(std::uint64_t)> m_progress;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_STREAMCONVERTER_H
