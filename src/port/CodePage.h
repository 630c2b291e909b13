// Conversion between UTF-8 and the Windows code pages the library accepts for its internal
// strings, through the C library's iconv. One converter opens its iconv descriptor once and is
// used by one thread at a time.
#ifndef OVXMLLIB6_SRC_PORT_CODEPAGE_H
#define OVXMLLIB6_SRC_PORT_CODEPAGE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace port {

// The character set name of a Windows code page (65001 UTF-8, 1252, 28591, 1250, 1251, 28605,
// 20127), or null for one that is not supported.
const char* CodePageCharset(unsigned codePage);

class CCodePageConverter {
 public:
  // Converts from `from` to `to` (character set names as CodePageCharset returns).
  CCodePageConverter(const char* to, const char* from);
  CCodePageConverter(const CCodePageConverter&) = delete;
  CCodePageConverter& operator=(const CCodePageConverter&) = delete;
  ~CCodePageConverter();

  // False when the platform cannot convert between the two character sets.
  bool IsOpen() const;
  // Appends the converted text to `out`. A character the target cannot represent, or an
  // invalid sequence in the input, becomes `replacement` and conversion goes on.
  void Convert(std::string_view in, std::string& out, char replacement = '?');

 private:
  void* m_handle;
};

// Decodes a document's bytes in a character set iconv knows into UTF-8, piece by piece: a
// character split between two pieces is held back until the next one. Unlike the code-page
// converter it never replaces anything: an invalid sequence is an error.
class CCharsetDecoder {
 public:
  enum Result { Ok, InvalidSequence, TruncatedAtEnd };

  explicit CCharsetDecoder(const char* charset);
  CCharsetDecoder(const CCharsetDecoder&) = delete;
  CCharsetDecoder& operator=(const CCharsetDecoder&) = delete;
  ~CCharsetDecoder();

  // False when iconv does not know the character set.
  bool IsOpen() const;
  // Appends the UTF-8 of the piece to `out`; with `final` the input ends with the piece. On
  // InvalidSequence, `offset` is the offset of the bad bytes from the start of the input.
  Result Decode(const unsigned char* data, std::size_t length, bool final, std::string& out,
                unsigned long long& offset);

 private:
  void* m_handle;
  std::string m_carry;                // the start of a character that the last piece cut
  unsigned long long m_consumed = 0;  // input bytes decoded before m_carry
};

}  // namespace port
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_PORT_CODEPAGE_H
