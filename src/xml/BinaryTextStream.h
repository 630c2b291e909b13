// CBinaryTextStream: the memory stream behind ToXmlStream. The writer flushes its stream every few
// kilobytes; at each flush this stream converts the text buffered so far to the output encoding
// and appends the bytes to a binary stream. The text is converted while it is still in the cache
// and the output is built in one pass, where collecting all the text first and converting it at
// the end would copy the whole document twice more.
#ifndef OVXMLLIB6_SRC_XML_BINARYTEXTSTREAM_H
#define OVXMLLIB6_SRC_XML_BINARYTEXTSTREAM_H

#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/TextStream.h"

#include <string>

namespace OvXmlLib6 {
namespace detail {

class CBinaryTextStream : public CTextStream {
 public:
  // The bytes go to `out`, which is not owned and must outlive the stream.
  CBinaryTextStream(XmlEncoding encoding, CBinaryStream& out);
  ~CBinaryTextStream() override;

  // Converts the buffered text to `out`, but for the bytes of a character that may go on in the
  // text appended next. With an unknown encoding the text stays buffered, so that the failure
  // comes from Finish, after everything has been written.
  void FlushBuffer() override;
  // Converts the rest.
  void Finish() override;

 private:
  void Convert(bool final);

  CBinaryStream& m_out;
  std::string m_converted;  // reused for every flush
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_BINARYTEXTSTREAM_H
