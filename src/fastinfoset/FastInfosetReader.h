// CFastInfosetReader: reads a Fast Infoset (binary XML) document and delivers its items, in
// document order, as events to an IXmlEventHandler: namespace declarations, elements with their
// attributes, character chunks (those of the CDATA algorithm between OnStartCdata and OnEndCdata),
// comments and processing instructions. CXmlDocument builds its tree from them (CTreeBuilder);
// the converter writes them out as they come.
//
// The input is either a whole document in memory, read in place, or a byte source, read through a
// window of 64 KiB that is refilled as the reader advances: only an item longer than the window
// makes it grow, step by step as the source delivers the item's bytes, never by the length the
// item claims. Views passed to the handler point into the input, the vocabulary tables or the
// reader's scratch buffers, and are valid during the call only.
//
// Nothing in the input is trusted: every length and index is checked against the bytes left and
// the tables before use, tables stop growing at 2^20 entries, and elements are read by a loop
// (never by recursion), with a bounded depth. Every failure throws COvException
// "Failed to parse FastInfoset. <what> at byte offset <n>". Exceptions of the handler pass through.
#ifndef OVXMLLIB6_SRC_FASTINFOSET_FASTINFOSETREADER_H
#define OVXMLLIB6_SRC_FASTINFOSET_FASTINFOSETREADER_H

#include "xml/ByteSource.h"
#include "xml/CharEncoding.h"
#include "xml/XmlEvents.h"

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace OvXmlLib6 {

class CXmlSerializationContext;

class CFastInfosetReader {
 public:
  // The offset of the identification octets E0 00 00 01 when `data` is a Fast Infoset document
  // (they start it, or follow one of the `finf` XML declarations), or -1.
  static long FindHeader(const unsigned char* data, std::size_t length);

  // The context gives the external vocabulary, the restricted alphabets; both must outlive the
  // reader. Text reaches the handler in the library's internal encoding as it is now.
  CFastInfosetReader(detail::IXmlEventHandler& handler, const CXmlSerializationContext& context);
  CFastInfosetReader(const CFastInfosetReader&) = delete;
  CFastInfosetReader& operator=(const CFastInfosetReader&) = delete;

  // A whole document in memory, whose identification octets are at `start`.
  void Read(const unsigned char* data, std::size_t length, std::size_t start);
  // A document from a source, which may start with one of the XML declarations.
  void Read(detail::IByteSource& source);

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
  // An entry of the element or attribute name table, with the record the handler sees.
  struct QName {
    std::uint32_t prefix;  // 0: none
    std::uint32_t namespaceName;
    std::uint32_t localName;
    const detail::CXmlEventName* name;
  };
  // An attribute read, its value in m_attributeText.
  struct PendingAttribute {
    const detail::CXmlEventName* name;
    std::size_t offset;
    std::size_t size;
  };

  [[noreturn]] void Fail(const char* what) const;
  [[noreturn]] void FailAt(const char* what, std::uint64_t offset) const;
  // The absolute offset of the next octet.
  std::uint64_t Position() const { return m_base + m_pos; }
  std::uint8_t Octet() {
    if (m_pos >= m_length) Refill(1, "Unexpected end of data");
    return m_data[m_pos++];
  }
  // The next `count` octets; fails when fewer remain. Valid until the next octet is taken.
  const unsigned char* Take(std::uint64_t count);
  // Makes at least `need` octets available from the current one, moving the unread ones to the
  // front of the window and reading from the source; fails with `what` when the input ends.
  void Refill(std::uint64_t need, const char* what);
  // True when no octet follows (the source, if any, has ended).
  bool AtEnd();

  std::uint64_t LengthOnBit2(std::uint8_t first);
  std::uint64_t LengthOnBit5(std::uint8_t first);
  std::uint64_t LengthOnBit7(std::uint8_t first);
  std::uint32_t IntegerOnBit2(std::uint8_t first);
  std::uint32_t IntegerOnBit3(std::uint8_t first);
  std::uint32_t IntegerOnBit4(std::uint8_t first);
  std::uint32_t Count();
  // A non-empty octet string with its length on bit 2 (additional data, URIs of the header).
  std::string_view OctetString();

  const std::string& Entry(StringTable table, std::uint32_t index, std::uint64_t offset) const;
  void AddTo(StringTable table, std::string_view text);
  // UTF-8 that is checked, in the internal encoding: `utf8` itself or its conversion in `out`.
  std::string_view Internal(std::string_view utf8, std::string& out);
  void Utf8Text(std::string_view utf8, std::uint64_t offset, std::string& out);
  // Fails unless `utf8` is well-formed UTF-8 of characters XML allows: a document read must
  // write as XML text that reads again.
  void CheckText(std::string_view utf8, std::uint64_t offset) const;
  // Fails unless the entry for a table of prefixes, local names or other names is a name
  // without a colon, or when a namespace name holds the XML parser's name separator.
  void CheckName(StringTable table, std::string_view utf8, std::uint64_t offset) const;
  // Fails when two attributes of the element at `offset` have the same namespace and local name,
  // which XML does not allow.
  void CheckUniqueAttributes(std::uint64_t offset);
  // Fails for a name that XML namespaces reserve: a prefix or namespace used against the rules
  // of the xml and xmlns prefixes, or an attribute named xmlns.
  void CheckQName(const detail::CXmlEventName& name, bool element, std::uint64_t offset) const;
  // An identifying string or index; returns the index of its table entry.
  std::uint32_t IdentifyingIndex(StringTable table);
  // A non-identifying string or index starting on bit 1 (empty for the 0xFF of no value).
  std::string_view NonIdentifying(StringTable table, std::string& scratch);
  // The literal part of a non-identifying string starting on bit 1 whose first octet was
  // `first`; `add` receives the add-to-table bit.
  std::string_view NonIdentifyingLiteral(std::uint8_t first, std::string& scratch, bool& add);
  // A character chunk whose first octet was `first`; `cdata` tells whether it came from the
  // CDATA algorithm.
  std::string_view CharacterChunkText(std::uint8_t first, bool& cdata);
  // Decodes a payload of `length` octets: UTF-8 (0), UTF-16 (1), or with a restricted alphabet
  // or encoding algorithm (`kind` 2 or 3, `id` its wire id).
  std::string_view DecodePayload(int kind, std::uint32_t id, std::uint64_t length,
                                 std::string& scratch);

  const detail::CXmlEventName* MakeName(const QName& parts, std::uint64_t offset);
  void ReadDocument();
  void ReadHeader();
  void ReadInitialVocabulary();
  void SeedExternalVocabulary(const std::string& uri, std::uint64_t offset);
  void ReadBody();
  // Reads an element whose first octet was `first` and delivers its start; returns true when
  // its attribute list ended the element too.
  bool ReadElementStart(std::uint8_t first);
  // A qualified name given as a literal: its record, entered in its table unless that is full.
  const detail::CXmlEventName* QNameLiteral(std::uint8_t flags, bool element);
  void ReadProcessingInstruction(bool deliver);
  void SkipDocumentTypeDeclaration(std::uint8_t first, bool& documentEnded);

  detail::IXmlEventHandler& m_handler;
  const CXmlSerializationContext& m_context;
  detail::CTextEncoder m_encoder;

  // The input: m_length octets at m_data, of which m_pos are read; m_base is the offset of
  // m_data in the document. With a source, m_data is m_window, of m_capacity octets.
  const unsigned char* m_data = nullptr;
  std::size_t m_length = 0;
  std::size_t m_pos = 0;
  std::uint64_t m_base = 0;
  detail::IByteSource* m_source = nullptr;
  std::unique_ptr<unsigned char[]> m_window;
  std::size_t m_capacity = 0;

  std::size_t m_depth = 0;
  bool m_sawDocumentElement = false;
  std::vector<std::string> m_tables[StringTableCount];
  // Per table, the literal that came last while the table was full.
  std::string m_lastLiterals[StringTableCount];
  std::vector<QName> m_elementNames;
  std::vector<QName> m_attributeNames;
  std::deque<detail::CXmlEventName> m_names;
  std::vector<std::string> m_alphabets;  // UTF-8
  std::vector<std::string_view> m_alphabetCharacters;
  std::string m_scratch;
  std::string m_utf8;
  std::string m_attributeText;
  std::vector<PendingAttribute> m_pendingAttributes;
  std::vector<detail::CXmlEventAttribute> m_attributes;
  std::vector<const detail::CXmlEventName*> m_sortedNames;  // for CheckUniqueAttributes
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_FASTINFOSET_FASTINFOSETREADER_H
