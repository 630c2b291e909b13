#include "xml/Compression.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/Compression.h"

#include <zlib.h>

#include <algorithm>
#include <limits>
#include <memory>
#include <new>

namespace OvXmlLib6 {

namespace {
constexpr std::uint64_t kDefaultMaxInflated = std::uint64_t{1} << 30;
std::uint64_t g_maxInflated = kDefaultMaxInflated;

constexpr std::size_t kInflateChunk = 65536;
constexpr uInt kMaxZlibStep = std::numeric_limits<uInt>::max();

[[noreturn]] void ThrowCompressFailed(int zlibResult) {
  throw COvException(FormatString("Failed to compress data. [Error Code: %d]", zlibResult));
}
}  // namespace

void SetMaxInflatedSize(std::uint64_t bytes) {
  g_maxInflated = bytes == 0 ? kDefaultMaxInflated : bytes;
}

std::uint64_t GetMaxInflatedSize() { return g_maxInflated; }

namespace detail {

bool LooksCompressed(const unsigned char* data, std::size_t length) {
  if (length < 2) return false;
  if (data[0] == 0x1F && data[1] == 0x8B) return true;  // gzip magic
  // zlib: deflate method, window <= 32 KiB, header check bits.
  return (data[0] & 0x0F) == 8 && (data[0] >> 4) <= 7 && ((data[0] << 8) | data[1]) % 31 == 0;
}

CBinaryData Deflate(const unsigned char* data, std::size_t length, int compressionType) {
  z_stream zs{};
  const int windowBits = compressionType == 1 ? 31 : 15;  // 31: gzip wrapper
  int result = deflateInit2(&zs, 1, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
  if (result != Z_OK) ThrowCompressFailed(result);
  std::unique_ptr<z_stream, int (*)(z_streamp)> guard(&zs, &deflateEnd);
  if (length > kMaxZlibStep) ThrowCompressFailed(Z_BUF_ERROR);
  // The output gets the input's size: data that does not shrink cannot be compressed.
  std::unique_ptr<unsigned char[]> output(new unsigned char[length + 1]);
  zs.next_in = const_cast<Bytef*>(data);
  zs.avail_in = static_cast<uInt>(length);
  zs.next_out = output.get();
  zs.avail_out = static_cast<uInt>(length);
  result = deflate(&zs, Z_NO_FLUSH);
  if (result == Z_OK) result = deflate(&zs, Z_FINISH);
  if (result != Z_STREAM_END) ThrowCompressFailed(result);
  return CBinaryData(output.get(), static_cast<std::uint32_t>(zs.total_out), false);
}

// A z_stream with its end function, so that it is released however its owner ends.
struct CZlibStream {
  z_stream zs{};
  int (*end)(z_streamp) = nullptr;
  ~CZlibStream() {
    if (end != nullptr) end(&zs);
  }
};

CInflatingSource::CInflatingSource(IByteSource& input, std::uint64_t limit)
    : m_input(input),
      m_zlib(new CZlibStream()),
      m_in(new unsigned char[kInflateChunk]),
      m_limit(limit) {
  if (inflateInit2(&m_zlib->zs, 15 + 32) != Z_OK) throw std::bad_alloc();  // 15 + 32: either
  m_zlib->end = &inflateEnd;
}

CInflatingSource::~CInflatingSource() = default;

bool CInflatingSource::Refill() {
  z_stream& zs = m_zlib->zs;
  if (zs.avail_in != 0) return true;
  if (m_inputEnded) return false;
  const std::size_t got = m_input.Read(m_in.get(), kInflateChunk);
  if (got == 0) {
    m_inputEnded = true;
    return false;
  }
  zs.next_in = m_in.get();
  zs.avail_in = static_cast<uInt>(got);
  m_consumed += got;
  return true;
}

std::size_t CInflatingSource::Read(unsigned char* buffer, std::size_t capacity) {
  z_stream& zs = m_zlib->zs;
  zs.next_out = buffer;
  zs.avail_out = static_cast<uInt>(std::min<std::size_t>(capacity, kMaxZlibStep));
  const uInt room = zs.avail_out;
  while (zs.avail_out == room) {
    if (m_streamEnded) {
      // Another gzip member may follow; anything else after the end is refused.
      if (!Refill()) return 0;
      if (zs.next_in[0] != 0x1F) {
        m_broken = true;
        throw COvException(FormatString(
            "Failed to inflate the compressed input: data follows the end of the compressed "
            "stream (at byte %llu)",
            static_cast<unsigned long long>(m_consumed - zs.avail_in)));
      }
      inflateReset(&zs);
      m_streamEnded = false;
    }
    const bool more = Refill();
    const int result = inflate(&zs, Z_NO_FLUSH);
    if (result == Z_STREAM_END) {
      m_streamEnded = true;
    } else if (result == Z_BUF_ERROR && !more) {
      m_broken = true;
      throw COvException(
          "Failed to inflate the compressed input: it ends before the compressed stream does");
    } else if (result != Z_OK && result != Z_BUF_ERROR) {
      m_broken = true;
      throw COvException(FormatString("Failed to inflate the compressed input: %s (near byte %llu)",
                                      zs.msg != nullptr ? zs.msg : "corrupt data",
                                      static_cast<unsigned long long>(m_consumed - zs.avail_in)));
    }
    m_produced += room - zs.avail_out;
    if (m_limit != 0 && m_produced > m_limit) {
      throw COvException(FormatString(
          "Failed to inflate the compressed input: it expands beyond the limit of %llu bytes",
          static_cast<unsigned long long>(m_limit)));
    }
  }
  return room - zs.avail_out;
}

CDeflater::CDeflater(int compressionType) : m_zlib(new CZlibStream()) {
  const int windowBits = compressionType == 1 ? 31 : 15;  // 31: gzip wrapper
  const int result = deflateInit2(&m_zlib->zs, 1, Z_DEFLATED, windowBits, 8, Z_DEFAULT_STRATEGY);
  if (result != Z_OK) ThrowCompressFailed(result);
  m_zlib->end = &deflateEnd;
}

CDeflater::~CDeflater() = default;

void CDeflater::Write(const unsigned char* data, std::size_t length, bool finish,
                      std::string& out) {
  z_stream& zs = m_zlib->zs;
  unsigned char chunk[16384];
  for (;;) {
    const std::size_t step = std::min<std::size_t>(length, kMaxZlibStep);
    zs.next_in = const_cast<Bytef*>(data);
    zs.avail_in = static_cast<uInt>(step);
    const bool last = finish && step == length;
    int result;
    do {
      zs.next_out = chunk;
      zs.avail_out = sizeof chunk;
      result = deflate(&zs, last ? Z_FINISH : Z_NO_FLUSH);
      if (result == Z_STREAM_ERROR) ThrowCompressFailed(result);
      out.append(reinterpret_cast<const char*>(chunk), sizeof chunk - zs.avail_out);
    } while (zs.avail_out == 0 || (last && result != Z_STREAM_END));
    data += step;
    length -= step;
    if (length == 0) return;
  }
}

}  // namespace detail
}  // namespace OvXmlLib6
