#include "port/CodePage.h"

#include <iconv.h>

#include <cerrno>

namespace OvXmlLib6 {
namespace port {

namespace {
const iconv_t kInvalid = reinterpret_cast<iconv_t>(-1);
}

const char* CodePageCharset(unsigned codePage) {
  switch (codePage) {
    case 65001:
      return "UTF-8";
    case 1250:
      return "WINDOWS-1250";
    case 1251:
      return "WINDOWS-1251";
    case 1252:
      return "WINDOWS-1252";
    case 28591:
      return "ISO-8859-1";
    case 28605:
      return "ISO-8859-15";
    case 20127:
      return "ASCII";
    default:
      return nullptr;
  }
}

CCodePageConverter::CCodePageConverter(const char* to, const char* from)
    : m_handle(::iconv_open(to, from)) {}

CCodePageConverter::~CCodePageConverter() {
  if (IsOpen()) ::iconv_close(static_cast<iconv_t>(m_handle));
}

bool CCodePageConverter::IsOpen() const { return static_cast<iconv_t>(m_handle) != kInvalid; }

void CCodePageConverter::Convert(std::string_view in, std::string& out, char replacement) {
  if (!IsOpen()) return;
  auto handle = static_cast<iconv_t>(m_handle);
  ::iconv(handle, nullptr, nullptr, nullptr, nullptr);  // reset the shift state
  char* src = const_cast<char*>(in.data());
  std::size_t srcLeft = in.size();
  char buffer[4096];
  while (srcLeft > 0) {
    char* dst = buffer;
    std::size_t dstLeft = sizeof buffer;
    const std::size_t r = ::iconv(handle, &src, &srcLeft, &dst, &dstLeft);
    out.append(buffer, static_cast<std::size_t>(dst - buffer));
    if (r != static_cast<std::size_t>(-1)) continue;
    if (errno == E2BIG) continue;
    // EILSEQ (invalid or unrepresentable) or EINVAL (truncated sequence): replace one input
    // character and go on. A UTF-8 lead byte's continuation bytes are skipped with it.
    out += replacement;
    std::size_t skip = 1;
    while (skip < srcLeft && (static_cast<unsigned char>(src[skip]) & 0xC0) == 0x80) ++skip;
    src += skip;
    srcLeft -= skip;
  }
}

CCharsetDecoder::CCharsetDecoder(const char* charset) : m_handle(::iconv_open("UTF-8", charset)) {}

CCharsetDecoder::~CCharsetDecoder() {
  if (IsOpen()) ::iconv_close(static_cast<iconv_t>(m_handle));
}

bool CCharsetDecoder::IsOpen() const { return static_cast<iconv_t>(m_handle) != kInvalid; }

CCharsetDecoder::Result CCharsetDecoder::Decode(const unsigned char* data, std::size_t length,
                                                bool final, std::string& out,
                                                unsigned long long& offset) {
  auto handle = static_cast<iconv_t>(m_handle);
  // The carried bytes go first, joined with the piece's start.
  std::string joined;
  if (!m_carry.empty()) {
    joined.swap(m_carry);
    joined.append(reinterpret_cast<const char*>(data), length);
    data = reinterpret_cast<const unsigned char*>(joined.data());
    length = joined.size();
  }
  char* src = const_cast<char*>(reinterpret_cast<const char*>(data));
  std::size_t srcLeft = length;
  char buffer[8192];
  while (srcLeft > 0) {
    char* dst = buffer;
    std::size_t dstLeft = sizeof buffer;
    const std::size_t r = ::iconv(handle, &src, &srcLeft, &dst, &dstLeft);
    out.append(buffer, static_cast<std::size_t>(dst - buffer));
    if (r != static_cast<std::size_t>(-1) || errno == E2BIG) continue;
    const unsigned long long at =
        m_consumed + static_cast<unsigned long long>(src - reinterpret_cast<const char*>(data));
    if (errno == EINVAL && !final) {
      // A character cut by the end of the piece: keep its bytes for the next one.
      m_consumed = at;
      m_carry.assign(src, srcLeft);
      return Ok;
    }
    offset = at;
    return errno == EINVAL ? TruncatedAtEnd : InvalidSequence;
  }
  m_consumed += length;
  if (final) {
    // Stateful encodings may have to return to their initial state.
    char* dst = buffer;
    std::size_t dstLeft = sizeof buffer;
    ::iconv(handle, nullptr, nullptr, &dst, &dstLeft);
    out.append(buffer, static_cast<std::size_t>(dst - buffer));
  }
  return Ok;
}

}  // namespace port
}  // namespace OvXmlLib6
