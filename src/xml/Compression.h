// gzip and zlib around XML text or Fast Infoset: inflation of input with automatic format
// detection, and deflation of collected output, whole or piece by piece.
#ifndef OVXMLLIB6_SRC_XML_COMPRESSION_H
#define OVXMLLIB6_SRC_XML_COMPRESSION_H

#include "OvXmlLib6/types/BinaryData.h"
#include "xml/ByteSource.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace OvXmlLib6 {
namespace detail {

// True when the bytes start like a gzip member or a zlib stream (a cheap test before inflating).
bool LooksCompressed(const unsigned char* data, std::size_t length);

// Compresses `data` at level 1 into an array of the input's size, as gzip (type 1) or zlib
// (type 2). Output that does not fit, that is, data that does not shrink, fails like any other
// zlib error with "Failed to compress data. [Error Code: %d]".
CBinaryData Deflate(const unsigned char* data, std::size_t length, int compressionType);

struct CZlibStream;

// Inflates gzip or zlib input (detected from the header) taken piece by piece from another
// source, in bounded memory. Concatenated gzip members are read one after the other. Corrupt
// input and input that ends inside the compressed stream fail with COvException
// "Failed to inflate the compressed input: ...". With a limit, output that grows past it fails as
// soon as it does with "... it expands beyond the limit of <n> bytes".
class CInflatingSource : public IByteSource {
 public:
  // `input` must outlive this source. `limit` is the most it may produce in all; 0: no limit.
  explicit CInflatingSource(IByteSource& input, std::uint64_t limit = 0);
  ~CInflatingSource() override;

  std::size_t Read(unsigned char* buffer, std::size_t capacity) override;
  // True once Read failed because the compressed data is truncated or corrupt (not because of
  // the limit or of the input's own failure).
  bool IsBroken() const { return m_broken; }

 private:
  // Refills the input buffer when it is empty; false at the end of the input.
  bool Refill();

  IByteSource& m_input;
  std::unique_ptr<CZlibStream> m_zlib;
  std::unique_ptr<unsigned char[]> m_in;
  bool m_inputEnded = false;
  bool m_streamEnded = false;
  bool m_broken = false;
  std::uint64_t m_consumed = 0;  // compressed bytes handed to zlib, for messages
  std::uint64_t m_produced = 0;
  std::uint64_t m_limit;
};

// Compresses output piece by piece at level 1, as gzip (type 1) or zlib (type 2).
class CDeflater {
 public:
  explicit CDeflater(int compressionType);
  ~CDeflater();
  CDeflater(const CDeflater&) = delete;
  CDeflater& operator=(const CDeflater&) = delete;

  // Compresses `length` bytes and appends what zlib produced to `out`; with `finish` the stream
  // ends (no more calls). Failures throw "Failed to compress data. [Error Code: %d]".
  void Write(const unsigned char* data, std::size_t length, bool finish, std::string& out);

 private:
  std::unique_ptr<CZlibStream> m_zlib;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_COMPRESSION_H
