// CInputTranscoder: reads documents in the encodings expat does not know itself. Expat reads
// UTF-8, UTF-16, ISO-8859-1 and US-ASCII; a document whose XML declaration names any other
// encoding that iconv knows (windows-1252, ISO-8859-15, Shift_JIS, EUC-JP, GB18030, KOI8-R, ...)
// is converted to UTF-8 piece by piece before the parser sees it, and the parser is told to take
// it as UTF-8. Conversion rather than expat's own unknown-encoding hook, because that hook only
// takes encodings whose first byte tells a character's length, which GB18030 and the stateful
// ISO-2022 encodings are not.
#ifndef OVXMLLIB6_SRC_XML_INPUTTRANSCODER_H
#define OVXMLLIB6_SRC_XML_INPUTTRANSCODER_H

#include "port/CodePage.h"

#include <cstddef>
#include <memory>
#include <string>

namespace OvXmlLib6 {
namespace detail {

class CInputTranscoder {
 public:
  // Looks for the XML declaration at the start of the input and the encoding it names. Returns
  // false when the declaration is not complete in the bytes given (fewer than 1 KiB and not
  // `final`): the caller calls again with more of the start. Once it returns true the decision
  // stands: IsActive tells whether the input has to be converted.
  bool Inspect(const unsigned char* data, std::size_t length, bool final);
  bool IsActive() const { return m_decoder != nullptr; }
  // The encoding the declaration names (empty without one).
  const std::string& GetDeclaredEncoding() const { return m_declared; }

  // Appends the UTF-8 of the next piece of input to `out` (cleared first). Throws COvException
  // "Invalid byte sequence for the encoding <name> at byte offset <n>" (or "... truncated at
  // the end of the document").
  void Convert(const unsigned char* data, std::size_t length, bool final, std::string& out);

  // True for the encodings the parser reads without conversion.
  static bool IsNative(const std::string& name);

 private:
  std::string m_declared;
  std::unique_ptr<port::CCharsetDecoder> m_decoder;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_INPUTTRANSCODER_H
