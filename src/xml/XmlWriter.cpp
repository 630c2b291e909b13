#include "OvXmlLib6/xml/XmlWriter.h"

#include "OvXmlLib6/core/Exceptions.h"

namespace OvXmlLib6 {

namespace {
std::string_view View(const char* text) { return text != nullptr ? text : std::string_view(); }
}  // namespace

// ---------------------------------------------------------------------------------------------
// CXmlWriterContext

CXmlWriter::CXmlWriterContext::CXmlWriterContext()
    : CInstanceMonitor("CXmlWriterContext"),
      m_childCount(0),
      m_startTagOpen(false),
      m_depth(0),
      m_parent(nullptr),
      m_defaultNamespace(&m_ownDefaultNamespace),
      m_prefixMap(nullptr),
      m_sharesParentMap(false),
      m_ownsMap(false) {}

CXmlWriter::CXmlWriterContext::~CXmlWriterContext() { End(); }

void CXmlWriter::CXmlWriterContext::Start(CXmlWriterContext* parent, std::string_view localName) {
  m_childCount = 0;
  m_startTagOpen = true;
  m_localName.assign(localName.data(), localName.size());
  m_parent = parent;
  m_prefix.clear();
  if (parent != nullptr) {
    m_depth = parent->m_depth + 1;
    m_defaultNamespace = parent->m_defaultNamespace;
    m_prefixMap = parent->m_prefixMap;
    m_sharesParentMap = true;
    m_ownsMap = false;
  } else {
    m_depth = 0;
    m_ownDefaultNamespace.clear();
    m_defaultNamespace = &m_ownDefaultNamespace;
    m_prefixMap = nullptr;
    m_sharesParentMap = false;
    m_ownsMap = false;
  }
}

void CXmlWriter::CXmlWriterContext::End() {
  if (m_ownsMap) delete m_prefixMap;
  m_prefixMap = nullptr;
  m_ownsMap = false;
  m_sharesParentMap = false;
  m_parent = nullptr;
  m_defaultNamespace = &m_ownDefaultNamespace;
}

const std::string* CXmlWriter::CXmlWriterContext::FindPrefix(std::string_view ns) const {
  if (m_prefixMap == nullptr) return nullptr;
  const auto it = m_prefixMap->find(ns);
  return it == m_prefixMap->end() ? nullptr : &it->second;
}

bool CXmlWriter::CXmlWriterContext::IsPrefixBound(std::string_view prefix) const {
  if (m_prefixMap == nullptr) return false;
  for (const auto& binding : *m_prefixMap) {
    if (binding.second == prefix) return true;
  }
  return false;
}

void CXmlWriter::CXmlWriterContext::OwnMap() {
  if (m_ownsMap) return;
  m_prefixMap = m_prefixMap != nullptr ? new PrefixMap(*m_prefixMap) : new PrefixMap();
  m_ownsMap = true;
  m_sharesParentMap = false;
}

const std::string& CXmlWriter::CXmlWriterContext::Bind(std::string_view ns,
                                                       std::string_view prefix) {
  OwnMap();
  std::string& slot = (*m_prefixMap)[std::string(ns)];
  slot.assign(prefix.data(), prefix.size());
  return slot;
}

// ---------------------------------------------------------------------------------------------
// CXmlWriter

CXmlWriter::CXmlWriter(const char* className)
    : CInstanceMonitor(className), m_current(nullptr), m_openCount(0) {}

CXmlWriter::~CXmlWriter() = default;

void CXmlWriter::Open() {}

void CXmlWriter::Close() {
  if (m_current != nullptr) throw COvException("An Element has not been closed.");
}

void CXmlWriter::SetDefaultNamespace(const char* ns) {
  if (m_current == nullptr) {
    m_pendingDefaultNamespace.assign(View(ns));
    return;
  }
  m_current->OwnMap();
  m_current->m_ownDefaultNamespace.assign(View(ns));
  m_current->m_defaultNamespace = &m_current->m_ownDefaultNamespace;
}

void CXmlWriter::AddNamespace(const char* prefix, const char* ns) {
  if (m_current == nullptr) {
    m_pendingDeclarations[std::string(View(ns))] = std::string(View(prefix));
    return;
  }
  m_current->Bind(View(ns), View(prefix));
}

CXmlWriter::CXmlWriterContext* CXmlWriter::PushContext(std::string_view localName) {
  if (m_openCount == m_contexts.size()) {
    m_contexts.emplace_back(new CXmlWriterContext());
  }
  CXmlWriterContext* context = m_contexts[m_openCount].get();
  context->Start(m_current, localName);
  if (m_current == nullptr) {
    context->m_defaultNamespace = &m_pendingDefaultNamespace;
    if (!m_pendingDeclarations.empty()) {
      context->m_prefixMap = new PrefixMap(m_pendingDeclarations);
      context->m_ownsMap = true;
    }
  }
  ++m_openCount;
  m_current = context;
  return context;
}

void CXmlWriter::PopContext() {
  if (m_current == nullptr) return;
  CXmlWriterContext* parent = m_current->m_parent;
  m_current->End();
  --m_openCount;
  m_current = parent;
}

std::string CXmlWriter::GeneratePrefix(const CXmlWriterContext& context) {
  // Two letters for the first 676 names, as AA to ZZ; a scope with more bindings than that goes on
  // with three letters (AAA, ...) and so on, so every generated prefix stays a valid name.
  for (std::size_t n = 0;; ++n) {
    std::size_t index = n;
    std::size_t width = 2;
    std::size_t count = 26 * 26;
    while (index >= count) {
      index -= count;
      ++width;
      count *= 26;
    }
    std::string name(width, 'A');
    for (std::size_t i = width; i-- > 0;) {
      name[i] = static_cast<char>('A' + index % 26);
      index /= 26;
    }
    // Each candidate that is taken is bound to a distinct namespace, so this ends after at most
    // one more candidate than the scope has bindings.
    if (!context.IsPrefixBound(name)) return name;
  }
}

}  // namespace OvXmlLib6
