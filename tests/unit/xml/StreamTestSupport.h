// Helpers for the stream, writer and reader tests: bytes of strings, zlib's own deflation and
// inflation, and a memory file system, installed as the library's current one for the
// life of a scope, that fails chosen calls with chosen errors.
#ifndef OVXMLLIB6_TESTS_UNIT_XML_STREAMTESTSUPPORT_H
#define OVXMLLIB6_TESTS_UNIT_XML_STREAMTESTSUPPORT_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "port/File.h"
#include "unit/TestSupport.h"
#include "xml/Compression.h"

#include <zlib.h>

#include <algorithm>
#include <cstdint>
#include <functional>
#include <gtest/gtest.h>
#include <memory>
#include <string>

namespace OvXmlLib6 {
namespace test {

// The bytes of `s` as the library's byte-block parameters take them.
inline const unsigned char* UBytes(const std::string& s) {
  return reinterpret_cast<const unsigned char*>(s.data());
}

// A document in memory, handed out at most `step` bytes a read; notes the largest room a reader
// offered.
class CPieceSource : public detail::IByteSource {
 public:
  CPieceSource(std::string bytes, std::size_t step) : m_bytes(std::move(bytes)), m_step(step) {}
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override {
    largestCapacity = std::max(largestCapacity, capacity);
    const std::size_t n = std::min({capacity, m_step, m_bytes.size() - m_at});
    m_bytes.copy(reinterpret_cast<char*>(buffer), n, m_at);
    m_at += n;
    return n;
  }
  std::size_t largestCapacity = 0;

 private:
  std::string m_bytes;
  std::size_t m_step;
  std::size_t m_at = 0;
};

// `text` deflated by zlib into a gzip (type 1) or zlib (type 2) stream, whatever its size (the
// library's own deflation refuses output that would not shrink).
inline std::string Packed(const std::string& text, int type) {
  z_stream zs{};
  EXPECT_EQ(deflateInit2(&zs, Z_BEST_SPEED, Z_DEFLATED, type == 1 ? 31 : 15, 8, Z_DEFAULT_STRATEGY),
            Z_OK);
  std::string out(deflateBound(&zs, static_cast<uLong>(text.size())), '\0');
  zs.next_in = reinterpret_cast<Bytef*>(const_cast<char*>(text.data()));
  zs.avail_in = static_cast<uInt>(text.size());
  zs.next_out = reinterpret_cast<Bytef*>(&out[0]);
  zs.avail_out = static_cast<uInt>(out.size());
  EXPECT_EQ(deflate(&zs, Z_FINISH), Z_STREAM_END);
  out.resize(zs.total_out);
  deflateEnd(&zs);
  return out;
}

// Inflates gzip or zlib data (detected from the header) of at most `capacity` bytes.
inline std::string Inflate(const CBinaryData& data, std::size_t capacity) {
  z_stream zs{};
  EXPECT_EQ(inflateInit2(&zs, 15 + 32), Z_OK);
  std::string out(capacity, '\0');
  zs.next_in = const_cast<Bytef*>(data.GetData());
  zs.avail_in = data.GetLength();
  zs.next_out = reinterpret_cast<Bytef*>(&out[0]);
  zs.avail_out = static_cast<uInt>(out.size());
  EXPECT_EQ(inflate(&zs, Z_FINISH), Z_STREAM_END);
  out.resize(zs.total_out);
  inflateEnd(&zs);
  return out;
}

class CFailingFileSystem : public port::IFileSystem {
 public:
  // Errors to return: from Create, from the write that would pass `writeLimit` bytes in total,
  // from Close, from a file's size query, and from a read at or after `failReadsFrom`. 0 means
  // the call goes through. `reportExtraSize` makes files come up short of their announced size.
  int createError = 0;
  int writeError = 0;
  std::size_t writeLimit = 0;
  int closeError = 0;
  int sizeError = 0;
  int readError = 0;
  std::uint64_t failReadsFrom = 0;
  std::uint64_t reportExtraSize = 0;
  int writeCalls = 0;

  CFailingFileSystem() : m_memory(port::NewMemoryFileSystem()) { SetCurrent(this); }
  ~CFailingFileSystem() override { SetCurrent(nullptr); }

  int OpenRead(const char* path, std::unique_ptr<port::IReadFile>& file) override {
    std::unique_ptr<port::IReadFile> inner;
    const int error = m_memory->OpenRead(path, inner);
    if (error == 0) file.reset(new Reader(*this, std::move(inner)));
    return error;
  }

  int Create(const char* path, std::unique_ptr<port::IWriteFile>& file) override {
    if (createError != 0) return createError;
    std::unique_ptr<port::IWriteFile> inner;
    const int error = m_memory->Create(path, inner);
    if (error == 0) file.reset(new Writer(*this, std::move(inner)));
    return error;
  }

  // Stores a file, past the failures.
  void Put(const std::string& path, const std::string& content) {
    std::unique_ptr<port::IWriteFile> file;
    ASSERT_EQ(m_memory->Create(path.c_str(), file), 0);
    ASSERT_EQ(file->Write(content.data(), content.size()), 0);
    file->Close();
  }

  // The file's content, or "<missing>".
  std::string Content(const char* path) {
    std::unique_ptr<port::IReadFile> file;
    if (m_memory->OpenRead(path, file) != 0) return "<missing>";
    std::uint64_t size = 0;
    file->Size(size);
    std::string content(static_cast<std::size_t>(size), '\0');
    std::size_t got = 0;
    if (size != 0) file->Read(&content[0], content.size(), got);
    content.resize(got);
    return content;
  }

 private:
  class Reader : public port::IReadFile {
   public:
    Reader(CFailingFileSystem& fs, std::unique_ptr<port::IReadFile> inner)
        : m_fs(fs), m_inner(std::move(inner)) {}
    int Size(std::uint64_t& size) override {
      if (m_fs.sizeError != 0) return m_fs.sizeError;
      const int error = m_inner->Size(size);
      size += m_fs.reportExtraSize;
      return error;
    }
    int Read(void* buffer, std::size_t n, std::size_t& got) override {
      if (m_fs.readError != 0 && m_position >= m_fs.failReadsFrom) return m_fs.readError;
      const int error = m_inner->Read(buffer, n, got);
      m_position += got;
      return error;
    }

   private:
    CFailingFileSystem& m_fs;
    std::unique_ptr<port::IReadFile> m_inner;
    std::uint64_t m_position = 0;
  };

  class Writer : public port::IWriteFile {
   public:
    Writer(CFailingFileSystem& fs, std::unique_ptr<port::IWriteFile> inner)
        : m_fs(fs), m_inner(std::move(inner)) {}
    int Write(const void* data, std::size_t n) override {
      ++m_fs.writeCalls;
      if (m_fs.writeError != 0 && m_written + n > m_fs.writeLimit) return m_fs.writeError;
      m_written += n;
      return m_inner->Write(data, n);
    }
    int Close() override {
      const int error = m_inner->Close();
      return m_fs.closeError != 0 ? m_fs.closeError : error;
    }

   private:
    CFailingFileSystem& m_fs;
    std::unique_ptr<port::IWriteFile> m_inner;
    std::size_t m_written = 0;
  };

  std::unique_ptr<port::IFileSystem> m_memory;
};

}  // namespace test
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TESTS_UNIT_XML_STREAMTESTSUPPORT_H
