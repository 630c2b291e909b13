#include "xml/InputTranscoder.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <algorithm>
#include <cctype>
#include <cstring>

namespace OvXmlLib6 {
namespace detail {

namespace {

// The declaration must be complete within this many bytes to be looked at.
constexpr std::size_t kDeclarationWindow = 1024;

bool IsSpace(unsigned char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

std::string Upper(std::string text) {
  for (char& c : text) c = static_cast<char>(std::toupper(static_cast<unsigned char>(c)));
  return text;
}

// The value of the encoding pseudo-attribute of the declaration text between "<?xml" and "?>",
// or empty.
std::string EncodingOf(const char* begin, const char* end) {
  static const char kName[] = "encoding";
  const char* p = std::search(begin, end, kName, kName + sizeof kName - 1);
  if (p == end) return std::string();
  p += sizeof kName - 1;
  while (p != end && IsSpace(static_cast<unsigned char>(*p))) ++p;
  if (p == end || *p != '=') return std::string();
  ++p;
  while (p != end && IsSpace(static_cast<unsigned char>(*p))) ++p;
  if (p == end || (*p != '"' && *p != '\'')) return std::string();
  const char quote = *p++;
  const char* valueEnd = std::find(p, end, quote);
  if (valueEnd == end) return std::string();
  return std::string(p, valueEnd);
}

}  // namespace

bool CInputTranscoder::IsNative(const std::string& name) {
  const std::string upper = Upper(name);
  return upper.empty() || upper == "UTF-8" || upper == "UTF-16" || upper == "UTF-16LE" ||
         upper == "UTF-16BE" || upper == "ISO-8859-1" || upper == "US-ASCII";
}

bool CInputTranscoder::Inspect(const unsigned char* data, std::size_t length, bool final) {
  static const char kStart[] = "<?xml";
  const std::size_t window = std::min(length, kDeclarationWindow);
  const char* text = reinterpret_cast<const char*>(data);
  // Byte-order marks and UTF-16 without one are the parser's own business.
  if (window == 0) return final;  // (data may be null then)
  const std::size_t prefix = std::min(window, sizeof kStart - 1);
  if (std::memcmp(text, kStart, prefix) != 0) return true;
  if (window <= sizeof kStart - 1) return final;
  if (!IsSpace(data[5])) return true;
  const char* end = text + window;
  static const char kEnd[] = "?>";
  const char* close = std::search(text, end, kEnd, kEnd + 2);
  if (close == end) return final || length >= kDeclarationWindow;
  m_declared = EncodingOf(text + 5, close);
  if (IsNative(m_declared)) return true;
  std::unique_ptr<port::CCharsetDecoder> decoder(new port::CCharsetDecoder(m_declared.c_str()));
  // An encoding iconv does not know either is left to the parser, which reports it.
  if (decoder->IsOpen()) m_decoder = std::move(decoder);
  return true;
}

void CInputTranscoder::Convert(const unsigned char* data, std::size_t length, bool final,
                               std::string& out) {
  out.clear();
  unsigned long long offset = 0;
  switch (m_decoder->Decode(data, length, final, out, offset)) {
    case port::CCharsetDecoder::Ok:
      return;
    case port::CCharsetDecoder::InvalidSequence:
      throw COvException(
          FormatString("Invalid byte sequence for the encoding %s at byte offset %llu",
                       m_declared.c_str(), offset));
    case port::CCharsetDecoder::TruncatedAtEnd:
      throw COvException(FormatString(
          "Invalid byte sequence for the encoding %s: a character is cut at byte offset %llu, "
          "the end of the document",
          m_declared.c_str(), offset));
  }
}

}  // namespace detail
}  // namespace OvXmlLib6
