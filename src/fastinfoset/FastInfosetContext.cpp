#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"

#include "OvXmlLib6/core/Exceptions.h"

namespace OvXmlLib6 {

namespace {

// The item type numbers that SetSuggestedValues gives an encoding.
enum : int {
  kHexBinary = 1,
  kBase64Binary = 2,
  kI1 = 3,
  kI2 = 4,
  kI4 = 5,
  kI8 = 6,
  kUi1 = 7,
  kUi2 = 8,
  kUi4 = 9,
  kUi8 = 10,
  kR4 = 11,
  kR8 = 12,
  kDuration = 13,  // the date and time types run from duration ...
  kTime = 21,      // ... to time
  kBoolean = 24,
  kDecimal = 25,
  kInteger = 26
};

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
  m_encodings[kHexBinary] = algorithm(FIAlgorithm_Hexadecimal);
  m_encodings[kBase64Binary] = algorithm(FIAlgorithm_Base64);
  m_encodings[kI1] = m_encodings[kI2] = m_encodings[kUi1] = algorithm(FIAlgorithm_Short);
  m_encodings[kI4] = m_encodings[kUi2] = algorithm(FIAlgorithm_Int);
  // Unsigned 64-bit values go to the signed long algorithm as well, like the others of their
  // width; the octets are the value's two's complement bits.
  m_encodings[kI8] = m_encodings[kUi4] = m_encodings[kUi8] = algorithm(FIAlgorithm_Long);
  m_encodings[kR4] = algorithm(FIAlgorithm_Float);
  m_encodings[kR8] = algorithm(FIAlgorithm_Double);
  for (int type = kDuration; type <= kTime; ++type) {
    m_encodings[type] = alphabet(FIRestrictedAlphabet_DateAndTime);
  }
  m_encodings[kBoolean] = algorithm(FIAlgorithm_Boolean);
  m_encodings[kDecimal] = m_encodings[kInteger] = alphabet(FIRestrictedAlphabet_Numeric);
}

void CFastInfosetContext::SetExternalVocabularyURI(const char* uri) {
  m_externalVocabularyURI = uri == nullptr ? "" : uri;
}

}  // namespace OvXmlLib6
