#include "xml/BinaryTextStream.h"

namespace OvXmlLib6 {
namespace detail {

CBinaryTextStream::CBinaryTextStream(XmlEncoding encoding, CBinaryStream& out)
    : CTextStream(encoding, "CBinaryTextStream"), m_out(out) {}

CBinaryTextStream::~CBinaryTextStream() = default;

void CBinaryTextStream::FlushBuffer() {
  if (IsKnownEncoding()) Convert(false);
}

void CBinaryTextStream::Finish() { Convert(true); }

void CBinaryTextStream::Convert(bool final) {
  m_converted.clear();
  ConvertAndClear(m_converted, final);
  if (!m_converted.empty()) m_out.Append(m_converted);
}

}  // namespace detail
}  // namespace OvXmlLib6
