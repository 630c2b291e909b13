#include "OvXmlLib6/fastinfoset/FastInfosetBinaryData.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "fastinfoset/EncodingAlgorithms.h"

#include <limits>

namespace OvXmlLib6 {

CFastInfosetBinaryData::CFastInfosetBinaryData() = default;

CFastInfosetBinaryData::CFastInfosetBinaryData(unsigned char* bytes, std::uint32_t length,
                                               bool adopt)
    : CBinaryData(bytes, length, adopt) {}

CFastInfosetBinaryData::CFastInfosetBinaryData(const char* text) : CBinaryData(text) {}

CFastInfosetBinaryData::CFastInfosetBinaryData(const CBinaryData& other) : CBinaryData(other) {}

CFastInfosetBinaryData::CFastInfosetBinaryData(const CFastInfosetBinaryData& other)
    : CBinaryData(other) {}

CFastInfosetBinaryData& CFastInfosetBinaryData::operator=(const CFastInfosetBinaryData& other) {
  CBinaryData::operator=(other);
  return *this;
}

CFastInfosetBinaryData::~CFastInfosetBinaryData() = default;

void CFastInfosetBinaryData::SetAsEncodedString(std::uint32_t algorithm, const std::string& text) {
  std::string octets;
  detail::EncodeAlgorithm(algorithm, text, octets);
  if (octets.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw COvInvalidParamException(
        FormatString("Binary data of %zu bytes exceeds the maximum length of %u bytes",
                     octets.size(), std::numeric_limits<std::uint32_t>::max()));
  }
  SetBuffer(reinterpret_cast<const unsigned char*>(octets.data()),
            static_cast<std::uint32_t>(octets.size()));
}

std::string CFastInfosetBinaryData::GetAsString(std::uint32_t algorithm) const {
  const unsigned char* data = GetData();
  const unsigned char* limit = data == nullptr ? nullptr : data + GetLength();
  // UUIDs as the hexadecimal digits that SetAsEncodedString reads.
  return algorithm == FIAlgorithm_UUID ? detail::DecodeUuidDigits(data, limit)
                                       : detail::DecodeAlgorithm(algorithm, data, limit);
}

}  // namespace OvXmlLib6
