// Conversion of the library's internal 8-bit strings to and from the parser's and the writers'
// Unicode forms, following the process-wide code page and ASCIIOnly switch.
#ifndef OVXMLLIB6_SRC_XML_CHARENCODING_H
#define OVXMLLIB6_SRC_XML_CHARENCODING_H

#include "port/CodePage.h"

#include <memory>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// One per document or stream: it takes the switches as they are when it is made and opens its
// converters on first use, so one thread uses it at a time and conversions do not reopen them.
class CTextEncoder {
 public:
  CTextEncoder();

  // True when internal strings are UTF-8 (or ASCIIOnly is on): UTF-8 passes through unchanged.
  bool IsInternalUtf8() const { return m_passThrough || m_utf8; }

  // Parser output (UTF-8) to the internal code page, appended to `out`. Invalid UTF-8 bytes are
  // taken one by one as the code points of the same value. With ASCIIOnly nothing is changed.
  void FromUtf8(std::string_view in, std::string& out);

  // Internal text to UTF-8 or UTF-16LE bytes, appended to `out`. Bytes of UTF-8 internal text
  // that are not well-formed are taken as the code points of the same value. With ASCIIOnly,
  // UTF-8 output is the internal text unchanged.
  void ToUtf8(std::string_view in, std::string& out);
  void ToUtf16LE(std::string_view in, std::string& out);

 private:
  bool m_passThrough;
  bool m_utf8;
  unsigned m_codePage;
  std::unique_ptr<port::CCodePageConverter> m_fromUtf8;
  std::unique_ptr<port::CCodePageConverter> m_toUtf8;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_CHARENCODING_H
