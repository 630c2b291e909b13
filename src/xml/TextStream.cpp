#include "OvXmlLib6/xml/TextStream.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/Support.h"
#include "port/File.h"
#include "xml/CharEncoding.h"
#include "xml/Unicode.h"

namespace OvXmlLib6 {

namespace {

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
    const unsigned char b = static_cast<unsigned char>(text[pos]);
    if (b < 0x80) {
      dst[0] = static_cast<char>(b);
      dst[1] = '\0';
      dst += 2;
      ++pos;
      continue;
    }
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

void CTextStream::Begin() { m_buffer.Clear(); }

void CTextStream::Finish() {}

void CTextStream::FlushBuffer() {}

std::string CTextStream::GetEncodedText() {
  std::string out;
  const std::size_t length = m_buffer.GetLength();
  Encode(m_buffer.GetText(), length, out);
  return out;
}

void CTextStream::Encode(const char* text, std::size_t length, std::string& out) {
  if (m_encoding != UTF8 && m_encoding != UTF16 && m_encoding != UTF16NoEncodingDecl) {
    throw COvException(std::string("Unknown Encoding, select UTF-8 (contact ") +
                       detail::kSupportAddress + " for support)");
  }
  if (!m_encoder) m_encoder.reset(new detail::CTextEncoder());
  if (m_encoding == UTF8) {
    m_encoder->ToUtf8(std::string_view(text, length), out);
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
  CreateFile();
}

void CFileTextStream::CreateFile() {
  m_state = kFailed;
  m_file.reset();
  m_error = port::IFileSystem::Current().Create(m_fileName.c_str(), m_file);
  if (m_error == 0 && (m_encoding == UTF16 || m_encoding == UTF16NoEncodingDecl)) {
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
      CreateFile();
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
  Encode(m_buffer.GetText(), length, m_converted);
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
