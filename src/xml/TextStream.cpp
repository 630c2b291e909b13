#include "OvXmlLib6/xml/TextStream.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/Support.h"
#include "port/File.h"
#include "xml/CharEncoding.h"
#include "xml/Unicode.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && (defined(__GNUC__) || defined(__clang__))
#include <emmintrin.h>
#endif

namespace OvXmlLib6 {

namespace {

// The length of the ASCII run at the start of `text`, tested 32 bytes at a time where SSE2 is
// available and a word at a time otherwise.
std::size_t AsciiRun(const char* text, std::size_t length) {
  std::size_t i = 0;
#if defined(__SSE2__) && (defined(__GNUC__) || defined(__clang__))
  for (; i + 32 <= length; i += 32) {
    const __m128i a = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i));
    const __m128i b = _mm_loadu_si128(reinterpret_cast<const __m128i*>(text + i + 16));
    if (_mm_movemask_epi8(_mm_or_si128(a, b)) != 0) break;
  }
#endif
  constexpr std::uint64_t kHighBits = 0x8080808080808080ull;
  for (; i + 8 <= length; i += 8) {
    std::uint64_t word;
    std::memcpy(&word, text + i, 8);
    if ((word & kHighBits) != 0) break;
  }
  while (i < length && static_cast<unsigned char>(text[i]) < 0x80) ++i;
  return i;
}

// UTF-8 internal text to UTF-8 output. ASCII runs are copied as they are; only the stretches
// between them go through the encoder, which repairs bytes that are not well-formed UTF-8. A
// stretch never splits a sequence, since no byte of a multi-byte sequence is ASCII.
void Utf8ToUtf8Fast(detail::CTextEncoder& encoder, const char* text, std::size_t length,
                    std::string& out) {
  out.reserve(out.size() + length);
  std::size_t pos = 0;
  while (pos < length) {
    const std::size_t ascii = AsciiRun(text + pos, length - pos);
    out.append(text + pos, ascii);
    pos += ascii;
    std::size_t end = pos;
    while (end < length && static_cast<unsigned char>(text[end]) >= 0x80) ++end;
    if (end != pos) encoder.ToUtf8(std::string_view(text + pos, end - pos), out);
    pos = end;
  }
}

// UTF-8 internal text to UTF-16LE. Runs of ASCII, the bulk of XML, are widened in a tight loop
// into storage sized up front; other sequences go through the shared decoder, which takes bytes
// that are not well-formed UTF-8 as the code points of the same value.
void Utf8ToUtf16LEFast(const char* text, std::size_t length, std::string& out) {
  const std::size_t start = out.size();
  out.resize(start + 2 * length);  // UTF-16 never needs more than two bytes per UTF-8 byte
  char* dst = &out[start];
  const std::string_view in(text, length);
  std::size_t pos = 0;
  while (pos < length) {
    // Widen a whole ASCII run in a loop simple enough to vectorise.
    const std::size_t ascii = AsciiRun(text + pos, length - pos);
    for (std::size_t i = 0; i < ascii; ++i) {
      dst[2 * i] = text[pos + i];
      dst[2 * i + 1] = '\0';
    }
    dst += 2 * ascii;
    pos += ascii;
    if (pos == length) break;
    const unsigned char b = static_cast<unsigned char>(text[pos]);
    long cp = detail::DecodeUtf8(in, pos);
    if (cp < 0) {
      cp = b;
      ++pos;
    }
    if (cp < 0x10000) {
      dst[0] = static_cast<char>(cp & 0xFF);
      dst[1] = static_cast<char>(cp >> 8);
      dst += 2;
    } else {
      const long v = cp - 0x10000;
      const long high = 0xD800 | (v >> 10);
      const long low = 0xDC00 | (v & 0x3FF);
      dst[0] = static_cast<char>(high & 0xFF);
      dst[1] = static_cast<char>(high >> 8);
      dst[2] = static_cast<char>(low & 0xFF);
      dst[3] = static_cast<char>(low >> 8);
      dst += 4;
    }
  }
  out.resize(static_cast<std::size_t>(dst - out.data()));
}

[[noreturn]] void ThrowFileError(const std::string& fileName, int error) {
  throw COvException(FormatString("Failed to write data to the file [%s] error [0x%08X]",
                                  fileName.c_str(), static_cast<unsigned>(error)));
}

}  // namespace

// ---------------------------------------------------------------------------------------------
// CTextStream

CTextStream::CTextStream(XmlEncoding encoding) : CTextStream(encoding, "CTextStream") {}

CTextStream::CTextStream(XmlEncoding encoding, const char* className)
    : CInstanceMonitor(className), m_encoding(encoding) {}

CTextStream::~CTextStream() = default;

void CTextStream::Begin() {
  m_buffer.Clear();
  m_carry.clear();
}

void CTextStream::Finish() {}

void CTextStream::FlushBuffer() {}

std::string CTextStream::GetEncodedText() {
  std::string out;
  EncodeBuffered(out);
  return out;
}

void CTextStream::EncodeBuffered(std::string& out) {
  const std::size_t blocks = m_buffer.GetBlockCount();
  if (blocks <= 1) {
    const std::string_view text = blocks == 0 ? std::string_view() : m_buffer.GetBlock(0);
    Encode(text.data(), text.size(), out);
    return;
  }
  out.reserve(out.size() + (m_encoding == XmlEncoding_UTF8 ? 1 : 2) * m_buffer.GetLength());
  m_carry.clear();
  for (std::size_t i = 0; i < blocks; ++i) EncodeBlock(m_buffer.GetBlock(i), out);
  Encode(m_carry.data(), m_carry.size(), out);
}

void CTextStream::ConvertAndClear(std::string& out, bool final) {
  for (std::size_t i = 0, blocks = m_buffer.GetBlockCount(); i < blocks; ++i) {
    EncodeBlock(m_buffer.GetBlock(i), out);
  }
  m_buffer.Clear();
  if (final) {
    Encode(m_carry.data(), m_carry.size(), out);
    m_carry.clear();
  }
}

void CTextStream::EncodeBlock(std::string_view block, std::string& out) {
  // Each block is cut before its last lead byte, which goes on with the next block. No UTF-8
  // sequence, and no decoding of a malformed one, reaches across a lead or ASCII byte, so the
  // result equals converting the merged text, without the copy.
  const auto isContinuation = [](char c) { return (static_cast<unsigned char>(c) & 0xC0) == 0x80; };
  std::size_t first = 0;
  while (first < block.size() && isContinuation(block[first])) ++first;
  m_carry.append(block.data(), first);
  if (first == block.size()) return;
  if (!m_carry.empty()) {
    Encode(m_carry.data(), m_carry.size(), out);
    m_carry.clear();
  }
  std::size_t last = block.size() - 1;
  while (last > first && isContinuation(block[last])) --last;
  Encode(block.data() + first, last - first, out);
  m_carry.assign(block.data() + last, block.size() - last);
}

bool CTextStream::IsKnownEncoding() const {
  return m_encoding == XmlEncoding_UTF8 || m_encoding == XmlEncoding_UTF16 ||
         m_encoding == XmlEncoding_UTF16NoDeclaration;
}

void CTextStream::Encode(const char* text, std::size_t length, std::string& out) {
  if (!IsKnownEncoding()) {
    throw COvException(std::string("Unknown Encoding, select UTF-8 (contact ") +
                       detail::kSupportAddress + " for support)");
  }
  if (!m_encoder) m_encoder.reset(new detail::CTextEncoder());
  if (m_encoding == XmlEncoding_UTF8) {
    if (m_encoder->IsInternalUtf8()) {
      Utf8ToUtf8Fast(*m_encoder, text, length, out);
    } else {
      m_encoder->ToUtf8(std::string_view(text, length), out);
    }
  } else if (m_encoder->IsInternalUtf8()) {
    Utf8ToUtf16LEFast(text, length, out);
  } else {
    m_encoder->ToUtf16LE(std::string_view(text, length), out);
  }
}

// ---------------------------------------------------------------------------------------------
// CFileTextStream

CFileTextStream::CFileTextStream(const char* fileName, XmlEncoding encoding)
    : CTextStream(encoding, "CFileTextStream"),
      m_fileName(fileName != nullptr ? fileName : ""),
      m_state(kNotStarted),
      m_error(0) {}

// A file still open (after an exception, say) is closed by its own destructor.
CFileTextStream::~CFileTextStream() = default;

void CFileTextStream::Begin() {
  m_buffer.Clear();
  m_file.reset();
  OpenFile();
}

void CFileTextStream::OpenFile() {
  m_state = kFailed;
  m_file.reset();
  m_error = port::IFileSystem::Current().Create(m_fileName.c_str(), m_file);
  if (m_error == 0 &&
      (m_encoding == XmlEncoding_UTF16 || m_encoding == XmlEncoding_UTF16NoDeclaration)) {
    static const unsigned char kByteOrderMark[2] = {0xFF, 0xFE};
    m_error = m_file->Write(kByteOrderMark, sizeof kByteOrderMark);
  }
  if (m_error != 0) {
    m_file.reset();
    ThrowFileError(m_fileName, m_error);
  }
  m_state = kOpen;
}

void CFileTextStream::EnsureOpen() {
  switch (m_state) {
    case kNotStarted:
      OpenFile();
      break;
    case kOpen:
      break;
    case kFinished:
      throw COvInvalidStateException(FormatString(
          "The file [%s] has been finished; call Begin to write it anew", m_fileName.c_str()));
    case kFailed:
      // Do not create the file anew over the part already written.
      ThrowFileError(m_fileName, m_error);
  }
}

void CFileTextStream::WriteBuffered() {
  const std::size_t length = m_buffer.GetLength();
  if (length == 0) return;
  m_converted.clear();
  EncodeBuffered(m_converted);
  const int error = m_file->Write(m_converted.data(), m_converted.size());
  if (error != 0) FailWrite(error);
  m_buffer.Clear();
}

void CFileTextStream::FailWrite(int error) {
  m_file->Close();
  m_file.reset();
  m_state = kFailed;
  m_error = error;
  throw COvException(FormatString("Failed to write data to the file. Error [0x%08X]",
                                  static_cast<unsigned>(error)));
}

void CFileTextStream::FlushBuffer() {
  EnsureOpen();
  WriteBuffered();
}

void CFileTextStream::Finish() {
  if (m_state == kFinished) return;
  EnsureOpen();
  WriteBuffered();
  const int error = m_file->Close();
  if (error != 0) FailWrite(error);
  m_file.reset();
  m_state = kFinished;
}

}  // namespace OvXmlLib6
