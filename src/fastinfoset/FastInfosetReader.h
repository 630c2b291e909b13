// CFastInfosetReader: reads a Fast Infoset (binary XML) document into the tree of a CXmlDocument,
// through the same element, attribute and text calls the expat adapter uses.
//
// Nothing in the input is trusted: every length and index is checked against the bytes left and
// the tables before use, tables stop growing at 2^20 entries, and elements are read by a loop
// over an explicit stack (never by recursion), with a bounded depth. Every failure throws
// COvException "Failed to parse FastInfoset. <what> at byte offset <n>".
#ifndef OVXMLLIB6_SRC_FASTINFOSET_FASTINFOSETREADER_H
#define OVXMLLIB6_SRC_FASTINFOSET_FASTINFOSETREADER_H

#include "OvXmlLib6/xml/XmlDocument.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace OvXmlLib6 {

namespace detail {
class CTreeStore;
struct CXmlName;
}  // namespace detail

class CFastInfosetReader {
 public:
  // The offset of the identification octets E0 00 00 01 when `data` is a Fast Infoset document
  // (they start it, or follow one of the `finf` XML declarations), or -1.
  static long FindHeader(const unsigned char* data, std::size_t length);

  CFastInfosetReader(CXmlDocument* document, const unsigned char* data, std::size_t length);
  CFastInfosetReader(const CFastInfosetReader&) = delete;
  CFastInfosetReader& operator=(const CFastInfosetReader&) = delete;
  // Moves the text of the elements still open (after a failure) into them.
  ~CFastInfosetReader();

  // Reads the document whose identification octets are at `start`.
  void Read(std::size_t start);

 private:
  enum StringTable {
    Prefix,
    NamespaceName,
    LocalName,
    OtherNCName,
    OtherURI,
    AttributeValue,
    CharacterChunk,
    OtherString,
    StringTableCount
  };
  // An entry of the element or attribute name table.
  struct QName {
    std::uint32_t prefix;  // 0: none
    std::uint32_t namespaceName;
    std::uint32_t localName;
    const detail::CXmlName* name;
  };

  [[noreturn]] void Fail(const char* what) const;
  [[noreturn]] void FailAt(const char* what, std::size_t offset) const;
  std::uint8_t Octet();
  // The next `count` octets; fails when fewer remain.
  const unsigned char* Take(std::uint64_t count);

  std::uint64_t LengthOnBit2(std::uint8_t first);
  std::uint64_t LengthOnBit5(std::uint8_t first);
  std::uint64_t LengthOnBit7(std::uint8_t first);
  std::uint32_t IntegerOnBit2(std::uint8_t first);
  std::uint32_t IntegerOnBit3(std::uint8_t first);
  std::uint32_t IntegerOnBit4(std::uint8_t first);
  std::uint32_t Count();
  // A non-empty octet string with its length on bit 2 (additional data, URIs of the header).
  std::pair<const unsigned char*, std::size_t> OctetString();

  const std::string& Entry(StringTable table, std::uint32_t index, std::size_t offset) const;
  void AddTo(StringTable table, const std::string& text);
  // An identifying string or index: the entry's text (in the internal encoding).
  std::uint32_t IdentifyingIndex(StringTable table);
  // A non-identifying string or index starting on bit 1, into `out`.
  void NonIdentifying(StringTable table, std::string& out);
  // The literal part of a non-identifying string starting on bit 1 whose first octet was
  // `first`: its text into `out`; returns the add-to-table bit.
  bool NonIdentifyingLiteral(std::uint8_t first, std::string& out);
  // A character chunk whose first octet was `first`; `cdata` tells whether it came from the
  // CDATA algorithm.
  void CharacterChunkText(std::uint8_t first, std::string& out, bool& cdata);
  // Decodes a payload of `length` octets: UTF-8 (0), UTF-16 (1), or with a restricted alphabet
  // or encoding algorithm (`table` 2 or 3, `id` its wire id).
  void DecodePayload(int kind, std::uint32_t id, std::uint64_t length, std::string& out);
  void Utf8Text(const unsigned char* p, std::size_t length, std::size_t offset, std::string& out);

  void ReadHeader();
  void ReadInitialVocabulary();
  void SeedExternalVocabulary(const std::string& uri, std::size_t offset);
  void ReadBody();
  // Reads an element whose first octet was `first`; returns true when its attribute list ended
  // the element too.
  bool ReadElementStart(std::uint8_t first);
  std::uint32_t QNameLiteral(std::uint8_t flags, bool element);
  void SkipProcessingInstruction();
  void SkipDocumentTypeDeclaration(std::uint8_t first, bool& documentEnded);

  CXmlDocument* m_document;
  detail::CTreeStore* m_store;
  const unsigned char* m_data;
  std::size_t m_length;
  std::size_t m_pos;
  bool m_keepCDATA;
  std::vector<std::string> m_tables[StringTableCount];
  std::vector<QName> m_elementNames;
  std::vector<QName> m_attributeNames;
  std::vector<std::string> m_alphabets;  // UTF-8
  std::string m_scratch;
  std::vector<std::pair<const detail::CXmlName*, std::string>> m_attributes;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_FASTINFOSET_FASTINFOSETREADER_H
