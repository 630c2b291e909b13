#include "xml/Compression.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/Compression.h"

#include <zlib.h>

#include <limits>
#include <memory>

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

bool TryInflate(const unsigned char* data, std::size_t length, CBinaryData& out) {
  z_stream zs{};
  if (inflateInit2(&zs, 15 + 32) != Z_OK) return false;  // 15 + 32: detect zlib or gzip
  std::unique_ptr<z_stream, int (*)(z_streamp)> guard(&zs, &inflateEnd);
  out.Clear();
  std::unique_ptr<unsigned char[]> chunk(new unsigned char[kInflateChunk]);
  std::size_t consumed = 0;
  std::uint64_t produced = 0;
  int result = Z_OK;
  while (result == Z_OK) {
    if (zs.avail_in == 0 && consumed < length) {
      const std::size_t step = std::min<std::size_t>(length - consumed, kMaxZlibStep);
      zs.next_in = const_cast<Bytef*>(data + consumed);
      zs.avail_in = static_cast<uInt>(step);
      consumed += step;
    }
    zs.next_out = chunk.get();
    zs.avail_out = static_cast<uInt>(kInflateChunk);
    result = inflate(&zs, Z_NO_FLUSH);  // Z_BUF_ERROR once a cut-short stream runs dry
    const std::size_t got = kInflateChunk - zs.avail_out;
    if (result != Z_OK && result != Z_STREAM_END) break;
    produced += got;
    if (produced > g_maxInflated || produced > std::numeric_limits<std::uint32_t>::max()) {
      throw COvException(FormatString(
          "Failed to inflate the compressed input: it expands beyond the limit of %llu bytes",
          static_cast<unsigned long long>(
              std::min<std::uint64_t>(g_maxInflated, std::numeric_limits<std::uint32_t>::max()))));
    }
    out.Append(chunk.get(), static_cast<std::uint32_t>(got));
  }
  return result == Z_STREAM_END;
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

}  // namespace detail
}  // namespace OvXmlLib6
