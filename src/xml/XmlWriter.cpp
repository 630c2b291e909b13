#include "OvXmlLib6/xml/XmlWriter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "xml/Bytes.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace OvXmlLib6 {

namespace {
std::string_view View(const char* text) { return text != nullptr ? text : std::string_view(); }
}  // namespace

// ---------------------------------------------------------------------------------------------
// CXmlWriterContext

CXmlWriter::CXmlWriterContext::CXmlWriterContext(const CXmlWriter* writer)
    : CInstanceMonitor("CXmlWriterContext"),
      m_childCount(0),
      m_startTagOpen(false),
      m_depth(0),
      m_parent(nullptr),
      m_defaultNamespace(&m_ownDefaultNamespace),
      m_writer(writer),
      m_nameOffset(0),
      m_nameLength(0),
      m_prefixLength(0),
      m_localNameOffset(0),
      m_bindingBase(0),
      m_bindingTextBase(0) {}

CXmlWriter::CXmlWriterContext::~CXmlWriterContext() = default;

void CXmlWriter::CXmlWriterContext::Start(CXmlWriterContext* parent) {
  m_childCount = 0;
  m_startTagOpen = true;
  m_parent = parent;
  m_nameLength = 0;
  m_prefixLength = 0;
  m_localNameOffset = 0;
  if (parent != nullptr) {
    m_depth = parent->m_depth + 1;
    m_defaultNamespace = parent->m_defaultNamespace;
  } else {
    m_depth = 0;
    m_ownDefaultNamespace.clear();
    m_defaultNamespace = &m_ownDefaultNamespace;
  }
}

// ---------------------------------------------------------------------------------------------
// CXmlWriter

CXmlWriter::CXmlWriter(const char* className)
    : CInstanceMonitor(className), m_current(nullptr), m_openCount(0), m_bindingCount(0) {
  m_names.Reserve(256);
  m_bindingText.Reserve(256);
}

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
  m_current->m_ownDefaultNamespace.assign(View(ns));
  m_current->m_defaultNamespace = &m_current->m_ownDefaultNamespace;
}

void CXmlWriter::AddNamespace(const char* prefix, const char* ns) {
  if (m_current == nullptr) {
    m_pendingDeclarations[std::string(View(ns))] = std::string(View(prefix));
    return;
  }
  Bind(View(ns), View(prefix));
}

void CXmlWriter::WriteStartElement(std::string_view localName, std::string_view ns) {
  WriteStartElement(std::string(localName).c_str(), std::string(ns).c_str());
}

void CXmlWriter::WriteText(std::string_view text, int itemType) {
  WriteText(std::string(text).c_str(), itemType);
}

void CXmlWriter::WriteAttribute(std::string_view localName, std::string_view ns,
                                std::string_view value, int itemType) {
  WriteAttribute(std::string(localName).c_str(), std::string(ns).c_str(),
                 std::string(value).c_str(), itemType);
}

CXmlWriter::CXmlWriterContext* CXmlWriter::PushContext() {
  if (m_openCount == m_contexts.size()) {
    m_contexts.emplace_back(new CXmlWriterContext(this));
  }
  CXmlWriterContext* context = m_contexts[m_openCount].get();
  if (m_current == nullptr) {
    m_bindingCount = 0;
    m_bindingText.length = 0;
    m_names.length = 0;
  }
  context->Start(m_current);
  context->m_bindingBase = m_bindingCount;
  context->m_bindingTextBase = m_bindingText.length;
  context->m_nameOffset = m_names.length;
  ++m_openCount;
  m_current = context;
  if (context->m_parent == nullptr) {
    context->m_defaultNamespace = &m_pendingDefaultNamespace;
    for (const auto& declaration : m_pendingDeclarations) {
      Bind(declaration.first, declaration.second);
    }
  }
  return context;
}

void CXmlWriter::PopContext() {
  CXmlWriterContext* context = m_current;
  if (context == nullptr) return;
  m_current = context->m_parent;
  m_bindingCount = context->m_bindingBase;
  m_bindingText.length = context->m_bindingTextBase;
  m_names.length = context->m_nameOffset;
  context->m_parent = nullptr;
  context->m_defaultNamespace = &context->m_ownDefaultNamespace;
  --m_openCount;
}

char* CXmlWriter::CharStack::Reserve(std::size_t more) {
  if (more > capacity - length) {
    const std::size_t grown = std::max(2 * capacity, length + more);
    std::unique_ptr<char[]> bigger(new char[grown]);
    if (length != 0) std::memcpy(bigger.get(), data.get(), length);
    data = std::move(bigger);
    capacity = grown;
  }
  return data.get() + length;
}

std::size_t CXmlWriter::CharStack::Push(std::string_view text) {
  // Text taken from this stack itself (a prefix bound before, say) is found again after growing.
  const char* from = text.data();
  const bool own = data != nullptr && std::less_equal<const char*>()(data.get(), from) &&
                   std::less<const char*>()(from, data.get() + length);
  const std::size_t offset = own ? static_cast<std::size_t>(from - data.get()) : 0;
  char* out = Reserve(text.size());
  if (own) from = data.get() + offset;
  detail::CopyBytes(out, from, text.size());
  const std::size_t start = length;
  length += text.size();
  return start;
}

std::string_view CXmlWriter::SetElementName(std::string_view localName) {
  CXmlWriterContext* context = m_current;
  m_names.length = context->m_nameOffset;
  m_names.Push(localName);
  context->m_nameLength = localName.size();
  context->m_prefixLength = 0;
  context->m_localNameOffset = 0;
  return m_names.View(context->m_nameOffset, localName.size());
}

std::string_view CXmlWriter::SetElementName(std::string_view prefix, std::string_view localName) {
  CXmlWriterContext* context = m_current;
  m_names.length = context->m_nameOffset;
  const std::size_t length = prefix.size() + 1 + localName.size();
  if (length <= m_names.capacity - m_names.length) {
    char* out = m_names.data.get() + m_names.length;
    detail::CopyBytes(out, prefix.data(), prefix.size());
    out[prefix.size()] = ':';
    detail::CopyBytes(out + prefix.size() + 1, localName.data(), localName.size());
    m_names.length += length;
  } else {
    // Growing frees the storage a name taken from the writer lies in; Push finds it again.
    m_names.Push(prefix);
    m_names.Push(std::string_view(":", 1));
    m_names.Push(localName);
  }
  context->m_nameLength = length;
  context->m_prefixLength = prefix.size();
  context->m_localNameOffset = prefix.size() + 1;
  return m_names.View(context->m_nameOffset, length);
}

bool CXmlWriter::FindPrefix(std::string_view ns, std::string_view& prefix) const {
  // The innermost binding of the namespace wins; scopes hold few bindings.
  for (std::size_t i = m_bindingCount; i-- > 0;) {
    const Binding& binding = m_bindings[i];
    if (binding.nsLength == ns.size() &&
        detail::SameBytes(m_bindingText.data.get() + binding.ns, ns.data(), ns.size())) {
      prefix = BindingPrefix(binding);
      return true;
    }
  }
  return false;
}

bool CXmlWriter::IsInScope(std::size_t index) const {
  const std::string_view ns = BindingNamespace(m_bindings[index]);
  for (std::size_t i = index + 1; i < m_bindingCount; ++i) {
    if (BindingNamespace(m_bindings[i]) == ns) return false;
  }
  return true;
}

bool CXmlWriter::IsPrefixBound(std::string_view prefix) const {
  for (std::size_t i = 0; i < m_bindingCount; ++i) {
    const Binding& binding = m_bindings[i];
    if (binding.prefixLength == prefix.size() &&
        detail::SameBytes(m_bindingText.data.get() + binding.prefix, prefix.data(),
                          prefix.size()) &&
        IsInScope(i)) {
      return true;
    }
  }
  return false;
}

std::string_view CXmlWriter::Bind(std::string_view ns, std::string_view prefix) {
  // A namespace the element has bound already takes the new prefix in place; the old prefix's
  // bytes stay unused on the stack until the element ends.
  for (std::size_t i = m_current->m_bindingBase; i < m_bindingCount; ++i) {
    Binding& binding = m_bindings[i];
    if (BindingNamespace(binding) == ns) {
      binding.prefix = m_bindingText.Push(prefix);
      binding.prefixLength = prefix.size();
      return BindingPrefix(binding);
    }
  }
  if (m_bindingCount == m_bindings.size()) m_bindings.emplace_back();
  Binding& binding = m_bindings[m_bindingCount];
  binding.ns = m_bindingText.Push(ns);
  binding.nsLength = ns.size();
  binding.prefix = m_bindingText.Push(prefix);
  binding.prefixLength = prefix.size();
  ++m_bindingCount;
  return BindingPrefix(binding);
}

std::string CXmlWriter::GeneratePrefix() const {
  // Two letters for the first 676 names, as AA to ZZ; a scope with more bindings than that goes on
  // with three letters (AAA, ...) and so on, so every generated prefix stays a valid name.
  char name[24];
  for (std::size_t n = 0;; ++n) {
    std::size_t index = n;
    std::size_t width = 2;
    std::size_t count = 26 * 26;
    while (index >= count) {
      index -= count;
      ++width;
      count *= 26;
    }
    for (std::size_t i = width; i-- > 0;) {
      name[i] = static_cast<char>('A' + index % 26);
      index /= 26;
    }
    // Each candidate that is taken is bound to a distinct namespace, so this ends after at most
    // one more candidate than the scope has bindings.
    const std::string_view candidate(name, width);
    if (!IsPrefixBound(candidate)) return std::string(candidate);
  }
}

}  // namespace OvXmlLib6
