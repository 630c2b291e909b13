#include "xml/ExpatReader.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/CharEncoding.h"
#include "core/Strings.h"
#include "xml/TreeStore.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <string>
#include <unordered_set>
#include <utility>

namespace OvXmlLib6 {

namespace {

// Large inputs are fed in pieces of this size: expat copies what it is given into its own
// buffer, so one call with a whole document would hold a second copy of it.
constexpr std::size_t kPieceSize = 256 * 1024;
// The block size for sources read through expat's own buffer.
constexpr std::size_t kReadBlock = 64 * 1024;

// True when every byte is ASCII other than NUL and carriage return: every code page the library
// accepts for its internal strings is a superset of ASCII, so such text is taken as it is.
inline bool IsPlainAscii(const char* text, std::size_t length) {
  unsigned char bad = 0;
  for (std::size_t i = 0; i < length; ++i) {
    const unsigned char c = static_cast<unsigned char>(text[i]);
    bad |= static_cast<unsigned char>((c & 0x80) | (c == '\r') | (c == 0));
  }
  return bad == 0;
}

}  // namespace

namespace detail {

void CUtf16Check::Scan(const unsigned char* data, std::size_t length) {
  const unsigned char* const end = data + length;
  while (data != end) {
    m_pending[m_pendingLength++] = *data++;
    if (m_pendingLength < 2) continue;
    m_pendingLength = 0;
    if (m_order == kUnknown) {
      const unsigned a = m_pending[0];
      const unsigned b = m_pending[1];
      if ((a == 0xFF && b == 0xFE) || (a == '<' && b == 0)) {
        m_order = kLittle;
      } else if ((a == 0xFE && b == 0xFF) || (a == 0 && b == '<')) {
        m_order = kBig;
      } else {
        m_order = kOff;
        return;
      }
      m_offset += 2;
      continue;
    }
    const unsigned high = m_order == kLittle ? m_pending[1] : m_pending[0];
    const bool lowSurrogate = (high & 0xFC) == 0xDC;
    if (lowSurrogate != m_highSurrogate) {
      // A high surrogate without its low one is reported where it stands.
      throw COvException(
          FormatString("Invalid byte sequence for the encoding UTF-16 at byte offset %llu",
                       m_highSurrogate ? m_offset - 2 : m_offset));
    }
    m_highSurrogate = (high & 0xFC) == 0xD8;
    m_offset += 2;
  }
}

CExpatFeed::CExpatFeed(XML_ParserStruct* parser, std::exception_ptr& error)
    : m_parser(parser), m_error(error) {}

void CExpatFeed::Check(int status) {
  if (status == XML_STATUS_OK && !m_error) return;
  m_failure.line = XML_GetCurrentLineNumber(m_parser);
  m_failure.column = XML_GetCurrentColumnNumber(m_parser) + 1;
  if (m_error) {
    std::exception_ptr thrown = std::move(m_error);
    m_error = nullptr;
    std::rethrow_exception(thrown);
  }
  const XML_Error code = XML_GetErrorCode(m_parser);
  const int line = static_cast<int>(m_failure.line);
  if (code == XML_ERROR_UNKNOWN_ENCODING && !m_transcoder.GetDeclaredEncoding().empty()) {
    m_failure.message = FormatString("unknown encoding '%s' (not known to iconv either)",
                                     m_transcoder.GetDeclaredEncoding().c_str());
  } else {
    m_failure.message = OrEmpty(XML_ErrorString(code));
  }
  throw COvException(FormatString("%s at line %d", m_failure.message.c_str(), line));
}

void CExpatFeed::Feed(const unsigned char* data, std::size_t length, bool isFinal) {
  if (m_inspected) {
    FeedInspected(data, length, isFinal);
    return;
  }
  // The declaration is looked at once, in the first bytes that hold all of it.
  if (!m_head.empty() || !m_transcoder.Inspect(data, length, isFinal)) {
    m_head.append(reinterpret_cast<const char*>(data), length);
    if (!m_transcoder.Inspect(reinterpret_cast<const unsigned char*>(m_head.data()), m_head.size(),
                              isFinal))
      return;
    data = nullptr;
  }
  m_inspected = true;
  if (m_transcoder.IsActive() && XML_SetEncoding(m_parser, "UTF-8") != XML_STATUS_OK)
    throw COvException("Failed to set the parser's input encoding");
  if (data != nullptr) {
    FeedInspected(data, length, isFinal);
  } else {
    const std::string head = std::move(m_head);
    m_head.clear();
    FeedInspected(reinterpret_cast<const unsigned char*>(head.data()), head.size(), isFinal);
  }
}

void CExpatFeed::FeedInspected(const unsigned char* data, std::size_t length, bool isFinal) {
  if (!m_transcoder.IsActive()) {
    m_utf16.Check(data, length);
    FeedParser(reinterpret_cast<const char*>(data), length, isFinal);
    return;
  }
  do {
    const std::size_t piece = std::min(length, kPieceSize);
    const bool last = isFinal && piece == length;
    m_transcoder.Convert(data, piece, last, m_converted);
    FeedParser(m_converted.data(), m_converted.size(), last);
    data += piece;
    length -= piece;
  } while (length != 0);
}

void CExpatFeed::FeedParser(const char* text, std::size_t length, bool isFinal) {
  do {
    const std::size_t piece = std::min(length, kPieceSize);
    const bool last = isFinal && piece == length;
    Check(XML_Parse(m_parser, text, static_cast<int>(piece), last));
    text += piece;
    length -= piece;
  } while (length != 0);
}

void CExpatFeed::Read(IByteSource& source) {
  // Until the start of the document shows that expat reads it as it is (and for a document
  // that must be transcoded, throughout), blocks go through the feed.
  std::unique_ptr<unsigned char[]> block;
  while (!IsDirect()) {
    if (!block) block.reset(new unsigned char[kReadBlock]);
    const std::size_t got = source.Read(block.get(), kReadBlock);
    Feed(block.get(), got, got == 0);
    if (got == 0) return;
  }
  // Then the source fills expat's own buffer: no block is copied twice.
  for (;;) {
    void* buffer = XML_GetBuffer(m_parser, static_cast<int>(kReadBlock));
    if (buffer == nullptr) Check(XML_STATUS_ERROR);  // out of memory, with expat's message
    const std::size_t got = source.Read(static_cast<unsigned char*>(buffer), kReadBlock);
    m_utf16.Check(static_cast<unsigned char*>(buffer), got);
    Check(XML_ParseBuffer(m_parser, static_cast<int>(got), got == 0));
    if (got == 0) return;
  }
}

namespace {

// Names beyond ASCII that the parser took, so that a document of such names asks it once per
// name and thread. Bounded: it starts again when full.
constexpr std::size_t kKnownNamesLimit = 4096;
thread_local std::unordered_set<std::string> t_knownNames;

}  // namespace

bool IsXmlNCName(std::string_view name) {
  if (name.empty()) return false;
  bool ascii = true;
  for (std::size_t i = 0; i < name.size(); ++i) {
    const unsigned char c = static_cast<unsigned char>(name[i]);
    if (c >= 0x80) {
      ascii = false;
    } else if ((kAsciiNameChars[c] & (i == 0 ? 1 : 2)) == 0) {
      return false;
    }
  }
  if (ascii) return true;
  if (t_knownNames.count(std::string(name)) != 0) return true;
  // Which letters beyond ASCII a name may hold is the parser's to say: it reads an empty
  // element of that name. With every ASCII byte a name character, nothing but one name fits.
  // It must be the UTF-8 parser: for UTF-16 and Latin-1 documents expat takes letters that it
  // refuses in UTF-8 (U+00B5), and what is written is read again as UTF-8.
  const std::string document = "<" + std::string(name) + "/>";
  XML_Parser parser = XML_ParserCreate("UTF-8");
  if (parser == nullptr) throw std::bad_alloc();
  const bool wellFormed =
      XML_Parse(parser, document.data(), static_cast<int>(document.size()), 1) == XML_STATUS_OK;
  XML_ParserFree(parser);
  if (wellFormed) {
    if (t_knownNames.size() >= kKnownNamesLimit) t_knownNames.clear();
    t_knownNames.emplace(name);
  }
  return wellFormed;
}

void CheckWritableNameSlow(std::string_view name, const char* what, bool internalText) {
  std::string utf8;
  std::string_view text = name;
  if (internalText && !IsASCIIOnly() && GetLocalCharEncoding() != 0 &&
      GetLocalCharEncoding() != 65001) {
    CTextEncoder encoder;
    encoder.ToUtf8(name, utf8);
    text = utf8;
  }
  if (IsXmlNCName(text)) return;
  // A name that is not one may be anything: the message shows its start.
  constexpr std::size_t kShown = 64;
  const std::string shown =
      name.size() > kShown ? std::string(name.substr(0, kShown)) + "..." : std::string(name);
  throw COvInvalidParamException(
      FormatString("The %s '%s' cannot be written: it is not an XML name", what, shown.c_str()));
}

}  // namespace detail

namespace {

// Parser text (UTF-8) in the internal encoding, into `out` (replaced).
void ToInternal(detail::CTextEncoder& encoder, const char* text, std::size_t length,
                std::string& out) {
  if (IsPlainAscii(text, length)) {
    out.assign(text, length);
  } else {
    out.clear();
    encoder.FromUtf8(std::string_view(text, length), out);
  }
}

}  // namespace

CExpatReader::CExpatReader(CXmlDocument* document, bool namespaces, bool keepCDATA)
    : CInstanceMonitor("CExpatReader"),
      m_document(document),
      m_store(document->m_store.get()),
      m_parser(nullptr) {
  m_scratch.reserve(512);
  // No forced encoding: expat takes it from the byte-order mark and the XML declaration.
  m_parser = namespaces ? XML_ParserCreateNS(nullptr, '|') : XML_ParserCreate(nullptr);
  if (m_parser == nullptr) throw std::bad_alloc();
  XML_SetUserData(m_parser, this);
  XML_SetElementHandler(m_parser, &StartElementHandler, &EndElementHandler);
  XML_SetCharacterDataHandler(m_parser, &CharacterDataHandler);
  XML_SetNamespaceDeclHandler(m_parser, &StartNamespaceHandler, &EndNamespaceHandler);
  if (keepCDATA) XML_SetCdataSectionHandler(m_parser, &StartCdataHandler, &EndCdataHandler);
  m_feed.reset(new detail::CExpatFeed(m_parser, m_error));
  // Comments, processing instructions and the document type have no handler: they are dropped.
  // Expat's protection against entity expansion stays at its defaults.
}

CExpatReader::~CExpatReader() {
  if (m_parser != nullptr) XML_ParserFree(m_parser);
  // After a failure the partial tree keeps the text its open elements had received.
  try {
    m_document->FlushOpenText();
  } catch (...) {
    // Out of memory while keeping partial text: that text is lost, the failure itself goes on.
  }
}

void CExpatReader::Parse(const unsigned char* data, std::size_t length, bool isFinal) {
  m_feed->Feed(data, length, isFinal);
}

void CExpatReader::Read(detail::IByteSource& source) { m_feed->Read(source); }

void CExpatReader::Fail() {
  m_error = std::current_exception();
  XML_StopParser(m_parser, XML_FALSE);
}

// Each handler catches everything: no exception may unwind through expat's C frames.

void CExpatReader::StartElementHandler(void* self, const char* name, const char** attributes) {
  CExpatReader* reader = static_cast<CExpatReader*>(self);
  if (reader->m_error) return;
  try {
    reader->OnStartElement(name, attributes);
  } catch (...) {
    reader->Fail();
  }
}

void CExpatReader::EndElementHandler(void* self, const char* /*name*/) {
  CExpatReader* reader = static_cast<CExpatReader*>(self);
  if (reader->m_error) return;
  try {
    reader->m_document->EndElement();
  } catch (...) {
    reader->Fail();
  }
}

void CExpatReader::CharacterDataHandler(void* self, const char* text, int length) {
  CExpatReader* reader = static_cast<CExpatReader*>(self);
  if (reader->m_error || length <= 0) return;
  try {
    reader->OnCharacterData(text, static_cast<std::size_t>(length));
  } catch (...) {
    reader->Fail();
  }
}

void CExpatReader::StartCdataHandler(void* self) {
  CExpatReader* reader = static_cast<CExpatReader*>(self);
  if (reader->m_error) return;
  try {
    reader->OnCharacterData("<![CDATA[", 9);
  } catch (...) {
    reader->Fail();
  }
}

void CExpatReader::EndCdataHandler(void* self) {
  CExpatReader* reader = static_cast<CExpatReader*>(self);
  if (reader->m_error) return;
  try {
    reader->OnCharacterData("]]>", 3);
  } catch (...) {
    reader->Fail();
  }
}

void CExpatReader::StartNamespaceHandler(void* self, const char* prefix, const char* uri) {
  CExpatReader* reader = static_cast<CExpatReader*>(self);
  if (reader->m_error) return;
  try {
    reader->OnNamespace(prefix, uri);
  } catch (...) {
    reader->Fail();
  }
}

void CExpatReader::EndNamespaceHandler(void* /*self*/, const char* /*prefix*/) {
  // Declarations stay in the document's map beyond their scope.
}

void CExpatReader::Convert(const char* text, std::size_t length, std::string& out) {
  ToInternal(m_store->Encoder(), text, length, out);
}

void CExpatReader::OnStartElement(const char* name, const char** attributes) {
  CXmlElement* element = m_document->AddElement(m_store->InternParserName(name));
  if (m_document->m_recordLines) {
    m_document->m_lines[element] = static_cast<std::uint32_t>(XML_GetCurrentLineNumber(m_parser));
  }
  if (attributes[0] == nullptr) {
    m_document->ElementStarted(element);
    return;
  }
  std::size_t count = 0;
  while (attributes[2 * count] != nullptr) ++count;
  std::uintptr_t& list = detail::CTreeStore::AttributeSlot(element);
  list = m_store->NewAttributeList(count);
  for (std::size_t i = 0; i < count; ++i) {
    const detail::CXmlName* attributeName = m_store->InternParserName(attributes[2 * i]);
    const char* value = attributes[2 * i + 1];
    const std::size_t length = std::strlen(value);
    std::uintptr_t text;
    if (IsPlainAscii(value, length)) {
      text = m_store->NewText(value, length);
    } else {
      Convert(value, length, m_scratch);
      text = m_store->NewText(m_scratch.data(), m_scratch.size());
    }
    // The list has room for every attribute.
    m_store->AddToAttributeList(list, m_store->NewAttribute(attributeName, text));
  }
  m_document->ElementStarted(element);
}

void CExpatReader::OnCharacterData(const char* text, std::size_t length) {
  if (IsPlainAscii(text, length)) {
    m_document->AppendOpenText(text, length, true);
  } else {
    Convert(text, length, m_scratch);
    m_document->AppendOpenText(m_scratch.data(), m_scratch.size(), false);
  }
}

void CExpatReader::OnNamespace(const char* prefix, const char* uri) {
  std::string key;
  std::string value;
  if (prefix != nullptr) Convert(prefix, std::strlen(prefix), key);
  if (uri != nullptr) Convert(uri, std::strlen(uri), value);
  m_document->m_aliases[std::move(key)] = std::move(value);
}

// ---------------------------------------------------------------------------------------------
// CExpatEventSource

namespace detail {

namespace {
// Separates the parts of expanded names. No XML 1.0 document can hold this character, so it
// never stands inside a namespace URI, a local name or a prefix.
constexpr char kNameSeparator = '\x01';
}  // namespace

// expat's callbacks. Each catches everything: no exception may unwind through expat's C frames.
// After a failure the parser stops and further callbacks do nothing.
struct CExpatEventSource::Callbacks {
  template <class Body>
  static void Guard(void* self, Body&& body) {
    CExpatEventSource& source = *static_cast<CExpatEventSource*>(self);
    if (source.m_error) return;
    try {
      body(source);
    } catch (...) {
      source.m_error = std::current_exception();
      XML_StopParser(source.m_parser, XML_FALSE);
    }
  }

  static void StartElement(void* self, const char* name, const char** attributes) {
    Guard(self, [&](CExpatEventSource& s) {
      std::size_t count = 0;
      while (attributes[2 * count] != nullptr) ++count;
      if (s.m_values.size() < count) s.m_values.resize(count);
      s.m_attributes.clear();
      for (std::size_t i = 0; i < count; ++i) {
        const std::string_view value = s.Internal(attributes[2 * i + 1], s.m_values[i]);
        s.m_attributes.push_back(CXmlEventAttribute{&s.Name(attributes[2 * i]), value});
      }
      s.m_handler.OnStartElement(s.Name(name), s.m_attributes.data(), count);
    });
  }
  static void EndElement(void* self, const char* /*name*/) {
    Guard(self, [](CExpatEventSource& s) { s.m_handler.OnEndElement(); });
  }
  static void CharacterData(void* self, const char* text, int length) {
    if (length <= 0) return;
    Guard(self, [&](CExpatEventSource& s) {
      s.m_handler.OnText(s.Internal(text, static_cast<std::size_t>(length), s.m_scratch));
    });
  }
  static void StartCdata(void* self) {
    Guard(self, [](CExpatEventSource& s) { s.m_handler.OnStartCdata(); });
  }
  static void EndCdata(void* self) {
    Guard(self, [](CExpatEventSource& s) { s.m_handler.OnEndCdata(); });
  }
  static void StartNamespace(void* self, const char* prefix, const char* uri) {
    Guard(self, [&](CExpatEventSource& s) {
      s.m_handler.OnNamespaceDeclaration(s.Internal(OrEmpty(prefix), s.m_scratch),
                                         s.Internal(OrEmpty(uri), s.m_scratch2));
    });
  }
  static void Comment(void* self, const char* text) {
    Guard(self,
          [&](CExpatEventSource& s) { s.m_handler.OnComment(s.Internal(text, s.m_scratch)); });
  }
  static void ProcessingInstruction(void* self, const char* target, const char* data) {
    Guard(self, [&](CExpatEventSource& s) {
      s.m_handler.OnProcessingInstruction(s.Internal(target, s.m_scratch),
                                          s.Internal(OrEmpty(data), s.m_scratch2));
    });
  }
};

CExpatEventSource::CExpatEventSource(IXmlEventHandler& handler)
    : m_handler(handler),
      m_parser(XML_ParserCreateNS(nullptr, kNameSeparator)),
      m_feed(m_parser, m_error) {
  if (m_parser == nullptr) throw std::bad_alloc();
  XML_SetUserData(m_parser, this);
  // Names come as "uri<sep>local<sep>prefix", so prefixes reach the handler.
  XML_SetReturnNSTriplet(m_parser, XML_TRUE);
  XML_SetElementHandler(m_parser, &Callbacks::StartElement, &Callbacks::EndElement);
  XML_SetCharacterDataHandler(m_parser, &Callbacks::CharacterData);
  XML_SetCdataSectionHandler(m_parser, &Callbacks::StartCdata, &Callbacks::EndCdata);
  XML_SetStartNamespaceDeclHandler(m_parser, &Callbacks::StartNamespace);
  XML_SetCommentHandler(m_parser, &Callbacks::Comment);
  XML_SetProcessingInstructionHandler(m_parser, &Callbacks::ProcessingInstruction);
  // The document type has no handler and is dropped; expat's protection against entity
  // expansion stays at its defaults, as for CExpatReader.
}

CExpatEventSource::~CExpatEventSource() { XML_ParserFree(m_parser); }

void CExpatEventSource::Parse(const unsigned char* data, std::size_t length, bool isFinal) {
  m_feed.Feed(data, length, isFinal);
}

void CExpatEventSource::Read(IByteSource& source) { m_feed.Read(source); }

void CExpatEventSource::Convert(const char* text, std::size_t length, std::string& out) {
  ToInternal(m_encoder, text, length, out);
}

std::string_view CExpatEventSource::Internal(const char* text, std::size_t length,
                                             std::string& scratch) {
  if (IsPlainAscii(text, length)) return std::string_view(text, length);
  Convert(text, length, scratch);
  return scratch;
}

std::string_view CExpatEventSource::Internal(const char* text, std::string& scratch) {
  return Internal(text, std::strlen(text), scratch);
}

const CXmlEventName& CExpatEventSource::Name(const char* expatName) {
  auto found = m_names.find(std::string_view(expatName));
  if (found != m_names.end()) return found->second->name;
  std::unique_ptr<NameEntry> entry(new NameEntry());
  entry->key = expatName;
  const std::string_view whole(entry->key);
  CXmlEventName* name = &entry->name;
  const std::size_t first = whole.find(kNameSeparator);
  if (first == std::string_view::npos) {
    Convert(whole.data(), whole.size(), name->localName);
  } else {
    Convert(whole.data(), first, name->namespaceURI);
    const std::string_view rest = whole.substr(first + 1);
    const std::size_t second = rest.find(kNameSeparator);
    Convert(rest.data(), std::min(second, rest.size()), name->localName);
    if (second != std::string_view::npos) {
      Convert(rest.data() + second + 1, rest.size() - second - 1, name->prefix);
    }
  }
  m_names.emplace(whole, std::move(entry));
  return *name;
}

}  // namespace detail

}  // namespace OvXmlLib6
