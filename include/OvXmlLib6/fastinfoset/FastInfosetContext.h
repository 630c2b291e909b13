// CFastInfosetContext: the options of one Fast Infoset read or write, reached through the
// serialization context's GetFIContext(): how each primitive item type is encoded, which values
// are added to the vocabulary, and the vocabulary itself.
#ifndef OVXMLLIB6_FASTINFOSET_FASTINFOSETCONTEXT_H
#define OVXMLLIB6_FASTINFOSET_FASTINFOSETCONTEXT_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/fastinfoset/Vocabulary.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CFastInfosetContext {
 public:
  // How values of one item type are written: the kind (an FIEncodingKind) and the number of the
  // restricted alphabet or encoding algorithm. Kind 0 writes a plain character string.
  struct EncodedCharacterString {
    std::uint32_t kind = FIEncodingKind_None;
    std::uint32_t index = 0;

    bool operator==(const EncodedCharacterString& other) const {
      return kind == other.kind && index == other.index;
    }
    bool operator!=(const EncodedCharacterString& other) const { return !(*this == other); }
  };

  // The encoding table has one entry per item type number, 0 to 28.
  static constexpr int EncodingTableSize = 29;

  // Every item type plain, add lengths 6, no generated or external vocabulary.
  CFastInfosetContext();

  std::uint8_t GetDefaultStringEncoding() const { return m_defaultStringEncoding; }
  void SetDefaultStringEncoding(std::uint8_t encoding) { m_defaultStringEncoding = encoding; }

  // The encoding of an item type. An item type outside the table throws
  // COvInvalidParamException "Index Out of range [%d]".
  EncodedCharacterString GetEncoding(int itemType) const;
  void SetEncoding(int itemType, const EncodedCharacterString& encoding);

  // Gives the numeric, binary, boolean and date-time item types their usual encodings: integers
  // by width to the short, int and long algorithms (unsigned types to the next wider signed
  // algorithm, and unsigned 64-bit to long), reals to float and double, the binary types to
  // hexadecimal and base64, dates, times and durations to the date-and-time alphabet, and
  // decimal and integer to the numeric alphabet. char and string stay plain.
  void SetSuggestedValues();

  // The longest attribute value, and the longest character chunk, that is added to the
  // vocabulary.
  std::uint32_t GetAttributeMaxAddLength() const { return m_attributeMaxAddLength; }
  void SetAttributeMaxAddLength(std::uint32_t length) { m_attributeMaxAddLength = length; }
  std::uint32_t GetElementMaxAddLength() const { return m_elementMaxAddLength; }
  void SetElementMaxAddLength(std::uint32_t length) { m_elementMaxAddLength = length; }

  bool GetUseGeneratedVocabulary() const { return m_useGeneratedVocabulary; }
  void SetUseGeneratedVocabulary(bool use) { m_useGeneratedVocabulary = use; }

  CFIVocabulary* GetVocabulary() { return &m_vocabulary; }
  const CFIVocabulary* GetVocabulary() const { return &m_vocabulary; }

  std::string GetExternalVocabularyURI() const { return m_externalVocabularyURI; }
  // A null URI clears it.
  void SetExternalVocabularyURI(const char* uri);

 private:
  std::uint8_t m_defaultStringEncoding;
  EncodedCharacterString m_encodings[EncodingTableSize];
  std::uint32_t m_attributeMaxAddLength;
  std::uint32_t m_elementMaxAddLength;
  bool m_useGeneratedVocabulary;
  CFIVocabulary m_vocabulary;
  std::string m_externalVocabularyURI;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_FASTINFOSET_FASTINFOSETCONTEXT_H
