// CExpatReader: the adapter that turns expat's callbacks into the tree of a CXmlDocument, and
// CExpatEventSource, which hands them as events to any IXmlEventHandler. The only file that
// includes expat is their implementation.
#ifndef OVXMLLIB6_SRC_XML_EXPATREADER_H
#define OVXMLLIB6_SRC_XML_EXPATREADER_H

#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "xml/ByteSource.h"
#include "xml/CharEncoding.h"
#include "xml/InputTranscoder.h"
#include "xml/XmlEvents.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <exception>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

struct XML_ParserStruct;

namespace OvXmlLib6 {

namespace detail {
class CTreeStore;

// Watches the bytes of a document on their way to the parser and refuses an unpaired surrogate in
// UTF-16 text: expat takes a high surrogate followed by any code unit as a pair, which would turn
// malformed input into a wrong character instead of an error. The byte order comes from the
// first two bytes (a byte-order mark, or '<' without one); other documents pass unlooked at.
class CUtf16Check {
 public:
  // The next bytes of the document. Throws COvException "Invalid byte sequence for the encoding
  // UTF-16 at byte offset <n>".
  void Check(const unsigned char* data, std::size_t length) {
    if (m_order != kOff) Scan(data, length);
  }

 private:
  enum Order { kUnknown, kOff, kLittle, kBig };
  void Scan(const unsigned char* data, std::size_t length);

  Order m_order = kUnknown;
  unsigned char m_pending[2] = {0, 0};  // the start, then the first byte of a split code unit
  std::size_t m_pendingLength = 0;
  bool m_highSurrogate = false;     // the last code unit was a high surrogate
  unsigned long long m_offset = 0;  // of the first byte of `m_pending`
};

// Feeds a document to one expat parser piece by piece, in parts expat takes without holding a
// second copy of a large piece. A document whose declaration names an encoding expat does not
// know, and iconv does, passes through the input transcoder on the way. Parse errors throw
// COvException "<expat's message> at line <n>"; an exception a callback kept in `error` is
// rethrown instead.
class CExpatFeed {
 public:
  CExpatFeed(XML_ParserStruct* parser, std::exception_ptr& error);
  void Feed(const unsigned char* data, std::size_t length, bool isFinal);
  // Feeds the whole source, block by block, to its end.
  void Read(IByteSource& source);
  // True once the start of the document showed that expat reads the bytes as they are, so that
  // a reader may hand them to expat's own buffer.
  bool IsDirect() const { return m_inspected && !m_transcoder.IsActive(); }
  // Throws for a parse that failed, after noting where in Failure().
  void Check(int status);
  const CParseFailure& Failure() const { return m_failure; }

 private:
  void FeedInspected(const unsigned char* data, std::size_t length, bool isFinal);
  void FeedParser(const char* text, std::size_t length, bool isFinal);

  XML_ParserStruct* m_parser;
  std::exception_ptr& m_error;
  bool m_inspected = false;
  std::string m_head;  // the start of the document while its declaration is incomplete
  CInputTranscoder m_transcoder;
  std::string m_converted;
  CUtf16Check m_utf16;
  CParseFailure m_failure;
};

// Whether `name` (UTF-8) is a name without a colon that the parser takes for an element name, so
// that names from other sources (Fast Infoset) write as XML that reads again.
bool IsXmlNCName(std::string_view name);

// What each ASCII byte may be in a name without a colon: bit 1 a first character, bit 2 a later
// one. Bytes from 0x80 (parts of other letters) are neither; the parser judges those names.
constexpr std::array<unsigned char, 256> MakeAsciiNameChars() {
  std::array<unsigned char, 256> table{};
  for (int c = 0; c < 128; ++c) {
    const bool letter = (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') || c == '_';
    const bool other = (c >= '0' && c <= '9') || c == '-' || c == '.';
    table[static_cast<std::size_t>(c)] =
        static_cast<unsigned char>((letter ? 1 : 0) | (letter || other ? 2 : 0));
  }
  return table;
}
inline constexpr std::array<unsigned char, 256> kAsciiNameChars = MakeAsciiNameChars();

// The slow half of CheckWritableName, for names with bytes beyond ASCII or bad ones.
void CheckWritableNameSlow(std::string_view name, const char* what, bool internalText);

// Throws COvInvalidParamException "The <what> '<name>' cannot be written: it is not an XML name"
// unless `name` is a name without a colon that the parser reads back, so that no writer turns a
// name into markup or into text that does not read again. The name is UTF-8, or with
// `internalText` in the internal character encoding.
inline void CheckWritableName(std::string_view name, const char* what, bool internalText) {
  // Most names are ASCII: one table look-up per byte.
  unsigned char all = name.empty() ? 0 : kAsciiNameChars[static_cast<unsigned char>(name[0])] & 1;
  for (std::size_t i = 1; i < name.size() && all != 0; ++i) {
    all &= kAsciiNameChars[static_cast<unsigned char>(name[i])] >> 1;
  }
  if (all == 0) CheckWritableNameSlow(name, what, internalText);
}
}  // namespace detail

class CExpatReader : private CInstanceMonitor {
 public:
  // A namespace-aware parser (expanded names "uri|local") unless `namespaces` is false. With
  // `keepCDATA` the markers of CDATA sections stay in the element text around their content.
  CExpatReader(CXmlDocument* document, bool namespaces, bool keepCDATA);
  CExpatReader(const CExpatReader&) = delete;
  CExpatReader& operator=(const CExpatReader&) = delete;
  ~CExpatReader();

  // Feeds one piece of the document. Throws COvException "<expat's message> at line <n>" when
  // the text is not well-formed, or rethrows what a callback threw.
  void Parse(const unsigned char* data, std::size_t length, bool isFinal);
  // Parses the whole source, block by block, to its end.
  void Read(detail::IByteSource& source);

 private:
  static void StartElementHandler(void* self, const char* name, const char** attributes);
  static void EndElementHandler(void* self, const char* name);
  static void CharacterDataHandler(void* self, const char* text, int length);
  static void StartCdataHandler(void* self);
  static void EndCdataHandler(void* self);
  static void StartNamespaceHandler(void* self, const char* prefix, const char* uri);
  static void EndNamespaceHandler(void* self, const char* prefix);

  void OnStartElement(const char* name, const char** attributes);
  void OnCharacterData(const char* text, std::size_t length);
  void OnNamespace(const char* prefix, const char* uri);
  // Parser text in the internal encoding, into `out` (replaced).
  void Convert(const char* text, std::size_t length, std::string& out);
  // Keeps the exception in flight and stops the parser; it is rethrown once expat has returned.
  void Fail();

  CXmlDocument* m_document;
  detail::CTreeStore* m_store;
  XML_ParserStruct* m_parser;
  std::string m_scratch;  // conversions of text pieces reuse it instead of allocating
  std::exception_ptr m_error;
  std::unique_ptr<detail::CExpatFeed> m_feed;
};

namespace detail {

// A namespace-aware parser that delivers a document as events, in document order: namespace
// declarations, elements with their prefixes, text (converted to the internal encoding), CDATA
// bounds, comments and processing instructions. It holds no more of the document than expat's
// own buffer, so a document of any size passes through in bounded memory. Errors and entity
// protection are those of CExpatReader.
class CExpatEventSource {
 public:
  explicit CExpatEventSource(IXmlEventHandler& handler);
  CExpatEventSource(const CExpatEventSource&) = delete;
  CExpatEventSource& operator=(const CExpatEventSource&) = delete;
  ~CExpatEventSource();

  // Feeds one piece of the document; the last piece has `isFinal`. Throws COvException
  // "<expat's message> at line <n>" when the text is not well-formed, or rethrows what the
  // handler threw.
  void Parse(const unsigned char* data, std::size_t length, bool isFinal);
  // Parses the whole source, block by block, to its end.
  void Read(IByteSource& source);
  // Where the parse stopped, after Parse or Read threw.
  const CParseFailure& Failure() const { return m_feed.Failure(); }

 private:
  struct Callbacks;
  friend struct Callbacks;

  // The event record of an expat name ("uri\x01local\x01prefix", "uri\x01local" or "local"),
  // made on its first use.
  const CXmlEventName& Name(const char* expatName);
  // Parser text (UTF-8) in the internal encoding, into `out` (replaced).
  void Convert(const char* text, std::size_t length, std::string& out);
  // Parser text in the internal encoding: the text itself when it is plain ASCII, else its
  // conversion in `scratch`.
  std::string_view Internal(const char* text, std::size_t length, std::string& scratch);
  std::string_view Internal(const char* text, std::string& scratch);

  IXmlEventHandler& m_handler;
  XML_ParserStruct* m_parser;
  CTextEncoder m_encoder;
  // A name record with the expat name it was made from, which its key in m_names views.
  struct NameEntry {
    std::string key;
    CXmlEventName name;
  };
  std::unordered_map<std::string_view, std::unique_ptr<NameEntry>> m_names;
  std::vector<CXmlEventAttribute> m_attributes;
  std::vector<std::string> m_values;  // the converted attribute values, reused
  std::string m_scratch;
  std::string m_scratch2;
  std::exception_ptr m_error;
  CExpatFeed m_feed;
};

}  // namespace detail

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_EXPATREADER_H
