#include "xml/ExpatReader.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/Strings.h"
#include "xml/TreeStore.h"

#include <expat.h>

#include <algorithm>
#include <climits>
#include <cstring>
#include <new>
#include <utility>

namespace OvXmlLib6 {

namespace {

// Large inputs are fed in pieces of this size: expat copies what it is given into its own
// buffer, so one call with a whole document would hold a second copy of it.
constexpr std::size_t kPieceSize = 256 * 1024;

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
  const char* text = reinterpret_cast<const char*>(data);
  do {
    const std::size_t piece = std::min(length, kPieceSize);
    const bool last = isFinal && piece == length;
    const XML_Status status = XML_Parse(m_parser, text, static_cast<int>(piece), last);
    if (m_error) {
      std::exception_ptr error = std::move(m_error);
      m_error = nullptr;
      std::rethrow_exception(error);
    }
    if (status != XML_STATUS_OK) {
      const XML_Error code = XML_GetErrorCode(m_parser);
      const char* message = XML_ErrorString(code);
      throw COvException(FormatString("%s at line %d", detail::OrEmpty(message),
                                      static_cast<int>(XML_GetCurrentLineNumber(m_parser))));
    }
    text += piece;
    length -= piece;
  } while (length != 0);
}

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
  if (IsPlainAscii(text, length)) {
    out.assign(text, length);
  } else {
    out.clear();
    m_store->Encoder().FromUtf8(std::string_view(text, length), out);
  }
}

void CExpatReader::OnStartElement(const char* name, const char** attributes) {
  CXmlElement* element = m_document->AddElement(m_store->InternParserName(name));
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

}  // namespace OvXmlLib6
