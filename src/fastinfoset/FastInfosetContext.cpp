#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/ItemType.h"

namespace OvXmlLib6 {

namespace {

// The default add lengths of attribute values and character chunks.
const std::uint32_t kDefaultMaxAddLength = 6;

void CheckItemType(int itemType) {
  if (itemType < 0 || itemType >= CFastInfosetContext::EncodingTableSize) {
    throw COvInvalidParamException(FormatString("Index Out of range [%d]", itemType));
  }
}

}  // namespace

CFastInfosetContext::CFastInfosetContext()
    : m_defaultStringEncoding(0),
      m_attributeMaxAddLength(kDefaultMaxAddLength),
      m_elementMaxAddLength(kDefaultMaxAddLength),
      m_useGeneratedVocabulary(false) {}

CFastInfosetContext::EncodedCharacterString CFastInfosetContext::GetEncoding(int itemType) const {
  CheckItemType(itemType);
  return m_encodings[itemType];
}

void CFastInfosetContext::SetEncoding(int itemType, const EncodedCharacterString& encoding) {
  CheckItemType(itemType);
  m_encodings[itemType] = encoding;
}

void CFastInfosetContext::SetSuggestedValues() {
  const auto algorithm = [](FIAlgorithm number) {
    return EncodedCharacterString{FIEncodingKind_Algorithm, number};
  };
  const auto alphabet = [](FIRestrictedAlphabet number) {
    return EncodedCharacterString{FIEncodingKind_RestrictedAlphabet, number};
  };
  m_encodings[ItemType_hexBinary] = algorithm(FIAlgorithm_Hexadecimal);
  m_encodings[ItemType_base64Binary] = algorithm(FIAlgorithm_Base64);
  m_encodings[ItemType_i1] = m_encodings[ItemType_i2] = m_encodings[ItemType_ui1] =
      algorithm(FIAlgorithm_Short);
  m_encodings[ItemType_i4] = m_encodings[ItemType_ui2] = algorithm(FIAlgorithm_Int);
  // Unsigned 64-bit values go to the signed long algorithm as well, like the others of their
  // width; the octets are the value's two's complement bits.
  m_encodings[ItemType_i8] = m_encodings[ItemType_ui4] = m_encodings[ItemType_ui8] =
      algorithm(FIAlgorithm_Long);
  m_encodings[ItemType_r4] = algorithm(FIAlgorithm_Float);
  m_encodings[ItemType_r8] = algorithm(FIAlgorithm_Double);
  for (int type = ItemType_duration; type <= ItemType_time; ++type) {
    m_encodings[type] = alphabet(FIRestrictedAlphabet_DateAndTime);
  }
  m_encodings[ItemType_boolean] = algorithm(FIAlgorithm_Boolean);
  m_encodings[ItemType_decimal] = m_encodings[ItemType_integer] =
      alphabet(FIRestrictedAlphabet_Numeric);
}

void CFastInfosetContext::SetExternalVocabularyURI(const char* uri) {
  m_externalVocabularyURI = uri == nullptr ? "" : uri;
}

}  // namespace OvXmlLib6
