// CBufferAppend: the inline append of the text writers. Most of what a writer appends is a name
// or a short value, copied into the block being filled without a call; the rest goes to the
// buffer's out-of-line path.
#ifndef OVXMLLIB6_SRC_XML_BUFFERAPPEND_H
#define OVXMLLIB6_SRC_XML_BUFFERAPPEND_H

#include "OvXmlLib6/xml/StringBuffer.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "core/Bytes.h"

#include <cstddef>

namespace OvXmlLib6 {
namespace detail {

class CBufferAppend {
 public:
  static void Append(CStringBuffer& buffer, const char* text, std::size_t length) {
    if (length <= static_cast<std::size_t>(buffer.m_end - buffer.m_pos)) {
      CopyBytes(buffer.m_pos, text, length);
      buffer.m_pos += length;
    } else {
      buffer.AppendSlow(text, length);
    }
  }
  static void Append(CTextStream& stream, const char* text, std::size_t length) {
    Append(stream.m_buffer, text, length);
  }
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_BUFFERAPPEND_H
