#include "OvXmlLib6/xml/XmlDocument.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/Compression.h"
#include "core/Strings.h"
#include "fastinfoset/FastInfosetReader.h"
#include "port/File.h"
#include "xml/ByteSource.h"
#include "xml/Compression.h"
#include "xml/DocumentObserver.h"
#include "xml/ExpatReader.h"
#include "xml/TreeBuilder.h"
#include "xml/TreeStore.h"
#include "xml/Unicode.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <limits>
#include <string>
#include <utility>
#include <vector>

namespace OvXmlLib6 {

namespace {

bool g_asyncFromXmlFile = false;

// The asynchronous mode reads the file in chunks of this size, one chunk ahead of the parser.
constexpr std::uint32_t kChunkSize = 131072;
// The code reported when a file ends before the data it should hold.
constexpr int kEndOfFileError = 38;

constexpr const char* kOpenFailed = "Failed to open the file [%s] Error [0x%08x]";
constexpr const char* kSizeFailed = "Failed to get the size of the file [%s] Error [0x%08x]";
constexpr const char* kReadFailed = "Failed to read the contents of the file [%s] Error [0x%08x]";
constexpr const char* kChunkReadFailed = "Failed to read the contents of the file. Error [0x%08x]";

// Enough of the start of a document to find the identification of a Fast Infoset document
// behind an XML declaration, and for the parser to fail on input taken for compressed data that
// is not.
constexpr std::size_t kHeadSize = 4096;

// Reads the rest of an inflating source and drops it; false when the compressed data proves
// truncated or corrupt on the way. Any other failure (the limit, the input) leaves the answer
// true: the data is not known to be broken.
bool InflatesToTheEnd(detail::CInflatingSource& inflater) {
  constexpr std::size_t kBlock = 65536;
  std::unique_ptr<unsigned char[]> block(new unsigned char[kBlock]);
  try {
    while (inflater.Read(block.get(), kBlock) != 0) {
    }
  } catch (const COvException&) {
  }
  return !inflater.IsBroken();
}

// A file opened by Load, read in blocks up to the size it announced; a file that ends before
// that fails like one that cannot be read.
class CFileSource : public detail::IByteSource {
 public:
  CFileSource(port::IReadFile& file, const char* name, std::uint64_t size)
      : m_file(file), m_name(name), m_left(size) {}
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override {
    if (m_left == 0) return 0;
    std::size_t got = 0;
    const int error = m_file.Read(buffer, std::min<std::uint64_t>(capacity, m_left), got);
    if (error != 0 || got == 0) {
      throw COvException(FormatString(kReadFailed, m_name, error != 0 ? error : kEndOfFileError));
    }
    m_left -= got;
    return got;
  }

 private:
  port::IReadFile& m_file;
  const char* m_name;
  std::uint64_t m_left;
};

// Hands `put` the runs of the text between its carriage returns, which are dropped; the text
// ends at a NUL byte or after `length` bytes.
template <typename Put>
void ForEachRunWithoutCR(const char* text, std::size_t length, Put&& put) {
  const char* end = static_cast<const char*>(std::memchr(text, '\0', length));
  if (end == nullptr) end = text + length;
  while (text < end) {
    const char* cr = static_cast<const char*>(std::memchr(text, '\r', end - text));
    const char* runEnd = cr != nullptr ? cr : end;
    put(text, static_cast<std::size_t>(runEnd - text));
    text = cr != nullptr ? cr + 1 : end;
  }
}

template <typename Char>
std::size_t Length(const Char* text) {
  std::size_t n = 0;
  if (text != nullptr) {
    while (text[n] != 0) ++n;
  }
  return n;
}

}  // namespace

void AsyncFromXmlFile(bool on) { g_asyncFromXmlFile = on; }

bool IsAsyncFromXmlFile() { return g_asyncFromXmlFile; }

CXmlDocument::CXmlDocument()
    : CXmlDocument(nullptr, CXmlSerializationContext::GetDefaultContext()) {}

CXmlDocument::CXmlDocument(const CXmlSerializationContext& context)
    : CXmlDocument(nullptr, context) {}

CXmlDocument::CXmlDocument(ElementCompletedCallback callback)
    : CXmlDocument(callback, CXmlSerializationContext::GetDefaultContext()) {}

CXmlDocument::CXmlDocument(ElementCompletedCallback callback,
                           const CXmlSerializationContext& context)
    : CInstanceMonitor("CXmlDocument"),
      m_store(new detail::CTreeStore(this)),
      m_documentElement(nullptr),
      m_schemaType(context.GetSchemaType()),
      m_callback(callback),
      m_context(&context),
      m_observer(nullptr) {}

CXmlDocument::~CXmlDocument() { CXmlDocument::Cleanup(); }

void CXmlDocument::Cleanup() {
  m_store->Clear(m_documentElement);
  m_documentElement = nullptr;
  m_elementStack.clear();
  m_aliases.clear();
  m_lines.clear();
  m_store->file.reset();
  m_store->readBuffer.reset();
  m_store->spareBuffer.reset();
}

void CXmlDocument::Init() {
  m_documentElement = nullptr;
  m_store->file.reset();
  m_store->ResetEncoder();
  m_schemaType = m_context->GetSchemaType();
}

std::string CXmlDocument::LookupNamespaceFromAlias(const char* prefix) const {
  const auto it = m_aliases.find(detail::OrEmpty(prefix));
  return it != m_aliases.end() ? it->second : std::string();
}

// ---- Loaders -------------------------------------------------------------------------------

std::unique_ptr<detail::CTreeStore> CXmlDocument::RetireTree() {
  std::unique_ptr<detail::CTreeStore> fresh(new detail::CTreeStore(this));
  m_store.swap(fresh);
  fresh->SetRetiredRoot(m_documentElement);
  m_documentElement = nullptr;
  return fresh;
}

void CXmlDocument::LoadXml(const char* xml) {
  const std::unique_ptr<detail::CTreeStore> retired = RetireTree();
  Cleanup();
  Init();
  const std::size_t length = Length(xml);
  if (length == 0) throw COvException("XML String is empty!");
  // The caller's text is parsed where it is; it outlives this call.
  ParseTextBlock(reinterpret_cast<const unsigned char*>(xml), length, true);
}

void CXmlDocument::LoadXml(const wchar_t* xml) {
  const std::unique_ptr<detail::CTreeStore> retired = RetireTree();
  Cleanup();
  Init();
  // A UTF-16 little-endian byte-order mark, then the text as UTF-16LE. An empty string still has
  // the mark, so it reaches the parser and fails there.
  std::string bytes("\xFF\xFE", 2);
  const std::size_t length = Length(xml);
  if constexpr (sizeof(wchar_t) == 4) {
    detail::Utf32ToUtf16LE(reinterpret_cast<const char32_t*>(xml), length, bytes);
  } else {
    detail::Utf16ToUtf16LE(reinterpret_cast<const char16_t*>(xml), length, bytes);
  }
  ParseTextBlock(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), true);
}

void CXmlDocument::LoadXml(const char16_t* xml) {
  const std::unique_ptr<detail::CTreeStore> retired = RetireTree();
  Cleanup();
  Init();
  std::string bytes("\xFF\xFE", 2);
  detail::Utf16ToUtf16LE(xml, Length(xml), bytes);
  ParseTextBlock(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size(), true);
}

void CXmlDocument::LoadXmlStream(const unsigned char* data, std::uint32_t length) {
  const std::unique_ptr<detail::CTreeStore> retired = RetireTree();
  Cleanup();
  Init();
  if (length == 0 || data == nullptr) throw COvException("XML Stream is empty!");
  // The block is only read, and only during this call, so it is parsed in place rather than
  // copied first; compressed data is inflated piece by piece as the parser takes it.
  if (!detail::LooksCompressed(data, length)) {
    ParseBlock(data, length);
    return;
  }
  detail::CMemorySource source(data, length);
  ParseCompressed(source, data, length, true);
}

void CXmlDocument::Load(const char* fileName) {
  Cleanup();
  Init();
  if (fileName == nullptr) fileName = "";
  if (g_asyncFromXmlFile) {
    LoadFileAsync(fileName);
  } else {
    LoadFileWhole(fileName);
  }
}

void CXmlDocument::LoadFileWhole(const char* fileName) {
  std::unique_ptr<port::IReadFile> file;
  int error = port::IFileSystem::Current().OpenRead(fileName, file);
  if (error != 0) throw COvException(FormatString(kOpenFailed, fileName, error));
  std::uint64_t size = 0;
  error = file->Size(size);
  if (error == 0 && size > std::numeric_limits<std::uint32_t>::max()) error = EFBIG;
  if (error != 0) throw COvException(FormatString(kSizeFailed, fileName, error));
  // The file is read in blocks as the parser takes them: only the tree grows with its size.
  CFileSource source(*file, fileName, size);
  detail::CPeekSource raw(source);
  const std::vector<unsigned char>& head = raw.Peek(kHeadSize);
  if (detail::LooksCompressed(head.data(), head.size())) {
    ParseCompressed(raw, head.data(), head.size(), raw.PeekedAll());
  } else {
    ParseDocument(raw);
  }
}

void CXmlDocument::LoadFileAsync(const char* fileName) {
  detail::CTreeStore& store = *m_store;
  // Whatever happens, the file and both buffers are released before this call returns.
  struct Release {
    detail::CTreeStore& store;
    ~Release() {
      store.file.reset();
      store.readBuffer.reset();
      store.spareBuffer.reset();
    }
  } release{store};

  int error = port::IFileSystem::Current().OpenRead(fileName, store.file);
  if (error != 0) throw COvException(FormatString(kOpenFailed, fileName, error));
  store.bytesRead = 0;
  store.readBuffer.reset(new unsigned char[kChunkSize]);
  if (ReadChunkFromFile(store.readBuffer.get())) {
    store.file.reset();
    throw COvException(FormatString(kReadFailed, fileName, kEndOfFileError));
  }
  store.bytesRead += store.readLength;
  // Like decompression, Fast Infoset detection does not apply in this mode: it parses text.
  AsyncParse(store.readLength < kChunkSize);
}

std::size_t CXmlDocument::ReadFromFile(unsigned char* buffer, std::size_t capacity) {
  detail::CTreeStore& store = *m_store;
  std::size_t got = 0;
  const int error = store.file->Read(buffer, capacity, got);
  if (error != 0) {
    store.file.reset();
    throw COvException(FormatString(kChunkReadFailed, error));
  }
  return got;
}

bool CXmlDocument::ReadChunkFromFile(unsigned char* buffer) {
  const std::size_t got = ReadFromFile(buffer, kChunkSize);
  m_store->readLength = static_cast<std::uint32_t>(got);
  return got == 0;
}

void CXmlDocument::AsyncParse(bool last) {
  detail::CTreeStore& store = *m_store;
  CExpatReader reader(this, m_schemaType != SchemaType_DTD, !m_context->GetStripCDATA());
  store.spareBuffer.reset(new unsigned char[kChunkSize]);
  std::uint32_t length = store.readLength;
  while (!last) {
    // The next chunk is read before the current one is parsed.
    const bool atEnd = ReadChunkFromFile(store.spareBuffer.get());
    reader.Parse(store.readBuffer.get(), length, false);
    std::swap(store.readBuffer, store.spareBuffer);
    length = store.readLength;
    store.bytesRead += length;
    // A file whose size is a multiple of the chunk size ends with an empty read.
    last = atEnd || length < kChunkSize;
  }
  reader.Parse(store.readBuffer.get(), length, true);
  if (m_documentElement == nullptr) throw COvException("Invalid or empty XML document");
}

// ---- Parsing -------------------------------------------------------------------------------

void CXmlDocument::ParseCompressed(detail::IByteSource& input, const unsigned char* head,
                                   std::size_t headLength, bool headIsAll) {
  detail::CInflatingSource inflater(input, GetMaxInflatedSize());
  detail::CPeekSource inflated(inflater);
  try {
    ParseDocument(inflated);
  } catch (COvException& e) {
    // Corrupt data may inflate to garbage that the parser refuses before the inflater sees the
    // damage: the rest is inflated (and dropped) to tell that from a document that is wrong.
    if (!inflater.IsBroken() && InflatesToTheEnd(inflater)) throw;
    // Not compressed after all, cut short or corrupt: the bytes read as text fail at their start,
    // since no XML text begins like gzip or zlib data. The parser's message alone ("not
    // well-formed") would hide the likely cause.
    COvException inner = std::move(e);
    try {
      CXmlDocument text(*m_context);
      text.ParseTextBlock(head, headLength, headIsAll);
    } catch (COvException& textFailure) {
      inner = std::move(textFailure);
    }
    throw COvException(
        "The input starts like gzip or zlib data, but the compressed data is truncated or "
        "corrupt; read as text instead, it fails",
        std::move(inner));
  }
}

void CXmlDocument::ParseDocument(detail::CPeekSource& input) {
  // A Fast Infoset document is read by its own reader, whose events build the tree; like the text
  // reader the builder calls ElementStarted once an element has its attributes, so that an
  // observer sees every element.
  const std::vector<unsigned char>& head = input.Peek(kHeadSize);
  if (CFastInfosetReader::FindHeader(head.data(), head.size()) >= 0) {
    detail::CTreeBuilder builder(*this);
    CFastInfosetReader reader(builder, *m_context);
    reader.Read(input);
    return;
  }
  CExpatReader reader(this, m_schemaType != SchemaType_DTD, !m_context->GetStripCDATA());
  reader.Read(input);
}

void CXmlDocument::ParseBlock(const unsigned char* data, std::size_t length) {
  const long start = CFastInfosetReader::FindHeader(data, length);
  if (start >= 0) {
    detail::CTreeBuilder builder(*this);
    CFastInfosetReader reader(builder, *m_context);
    reader.Read(data, length, static_cast<std::size_t>(start));
    return;
  }
  ParseTextBlock(data, length, true);
}

void CXmlDocument::ParseTextBlock(const unsigned char* data, std::size_t length, bool isFinal) {
  CExpatReader reader(this, m_schemaType != SchemaType_DTD, !m_context->GetStripCDATA());
  reader.Parse(data, length, isFinal);
}

// ---- Tree building -------------------------------------------------------------------------

CXmlElement* CXmlDocument::AddElement(const detail::CXmlName* name) {
  CXmlElement* previous = nullptr;
  CXmlElement* element;
  if (m_documentElement == nullptr) {
    element = m_store->NewElement(name);
    m_documentElement = element;
  } else {
    if (m_elementStack.empty()) throw COvException("Invalid or empty XML document");
    CXmlElement* parent = m_elementStack.back();
    element = m_store->NewElement(name);
    previous = parent->m_lastChild;
    parent->LinkLastChild(element);
  }
  m_elementStack.push_back(element);
  m_store->previousSiblings.push_back(previous);
  if (m_store->pendingText.size() < m_elementStack.size()) m_store->pendingText.emplace_back();
  return element;
}

void CXmlDocument::ElementStarted(CXmlElement* element) {
  if (m_observer != nullptr) m_observer->OnElementStarted(element, m_elementStack.size() - 1);
}

void CXmlDocument::AppendOpenText(const char* text, std::size_t length, bool plain) {
  if (m_elementStack.empty()) return;
  std::string& pending = m_store->pendingText[m_elementStack.size() - 1];
  if (plain) {
    pending.append(text, length);
    return;
  }
  ForEachRunWithoutCR(text, length,
                      [&pending](const char* run, std::size_t size) { pending.append(run, size); });
}

namespace {
// Buffers larger than this are given back once their text has moved into its element.
constexpr std::size_t kKeptPendingCapacity = 64 * 1024;
}  // namespace

void CXmlDocument::FlushOpenText() {
  for (std::size_t depth = 0; depth < m_elementStack.size(); ++depth) {
    std::string& pending = m_store->pendingText[depth];
    if (pending.empty()) continue;
    m_store->AppendText(m_elementStack[depth]->m_text, pending.data(), pending.size());
    pending.clear();
  }
}

CXmlElement* CXmlDocument::AddDocElement(const char* namespaceURI, const char* localName) {
  return AddElement(m_store->Intern(detail::OrEmpty(namespaceURI), detail::OrEmpty(localName)));
}

CXmlElement* CXmlDocument::AddChildElement(const char* namespaceURI, const char* localName) {
  return AddDocElement(namespaceURI, localName);
}

void CXmlDocument::AddElementAttribute(CXmlElement* element, const char* localName,
                                       const char* value, const char* namespaceURI) {
  element->AddAttribute(detail::OrEmpty(localName), detail::OrEmpty(value),
                        detail::OrEmpty(namespaceURI));
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text) {
  AppendTextExcludingCR(element, text,
                        text != nullptr ? static_cast<std::uint32_t>(std::strlen(text)) : 0);
}

void CXmlDocument::AppendTextExcludingCR(CXmlElement* element, const char* text,
                                         std::uint32_t length) {
  if (text == nullptr) return;
  // Straight to the store: the element's own AppendText takes an int length.
  ForEachRunWithoutCR(text, length, [element](const char* run, std::size_t size) {
    element->m_name->store->AppendText(element->m_text, run, size);
  });
}

void CXmlDocument::EndElement() {
  if (m_elementStack.empty()) return;
  CXmlElement* element = m_elementStack.back();
  CXmlElement* previous = m_store->previousSiblings.back();
  std::string& pending = m_store->pendingText[m_elementStack.size() - 1];
  // The gathered text is emptied whatever happens below; a large buffer is given back.
  struct ResetPending {
    std::string& text;
    ~ResetPending() {
      text.clear();
      if (text.capacity() > kKeptPendingCapacity) std::string().swap(text);
    }
  } reset{pending};
  m_elementStack.pop_back();
  m_store->previousSiblings.pop_back();
  bool remove;
  if (m_observer != nullptr && element->m_text == 0) {
    // The observer reads the text where it was gathered; the element stores it only if it
    // stays in the tree.
    remove = m_observer->OnElementEnded(element, m_elementStack.size(), pending);
    if (!remove && !pending.empty()) {
      m_store->AppendText(element->m_text, pending.data(), pending.size());
    }
  } else {
    if (!pending.empty()) m_store->AppendText(element->m_text, pending.data(), pending.size());
    remove = m_observer != nullptr
                 ? m_observer->OnElementEnded(element, m_elementStack.size(),
                                              detail::CTreeStore::ElementText(element))
                 : m_callback != nullptr && m_callback(element);
  }
  if (!remove) return;
  // The document element is never removed: the document would be left without a root.
  if (m_elementStack.empty()) return;
  // The element is its parent's last child; `previous` was the last child before it.
  CXmlElement* parent = m_elementStack.back();
  parent->UnlinkLastChild(previous);
  m_store->DestroySubtree(element);
}

void detail::CDocumentObserver::Attach(CXmlDocument& document, CDocumentObserver* observer) {
  document.m_observer = observer;
}

}  // namespace OvXmlLib6
