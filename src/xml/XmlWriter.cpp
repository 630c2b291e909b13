#include "OvXmlLib6/xml/XmlWriter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/Bytes.h"
#include "core/Strings.h"
#include "xml/XmlWriterScopes.h"

#include <algorithm>
#include <cstring>
#include <functional>

namespace OvXmlLib6 {

using detail::OrEmpty;

namespace detail {

char* CXmlWriterScopes::CharStack::Reserve(std::size_t more) {
  if (more > capacity - length) {
    const std::size_t grown = std::max(2 * capacity, length + more);
    std::unique_ptr<char[]> bigger(new char[grown]);
    if (length != 0) std::memcpy(bigger.get(), data.get(), length);
    data = std::move(bigger);
    capacity = grown;
  }
  return data.get() + length;
}

std::size_t CXmlWriterScopes::CharStack::Push(std::string_view text) {
  // Text taken from this stack itself (a prefix bound before, say) is found again after growing.
  const char* from = text.data();
  const bool own = data != nullptr && std::less_equal<const char*>()(data.get(), from) &&
                   std::less<const char*>()(from, data.get() + length);
  const std::size_t offset = own ? static_cast<std::size_t>(from - data.get()) : 0;
  char* out = Reserve(text.size());
  if (own) from = data.get() + offset;
  CopyBytes(out, from, text.size());
  const std::size_t start = length;
  length += text.size();
  return start;
}

}  // namespace detail

// ---------------------------------------------------------------------------------------------
// CXmlWriterContext

CXmlWriter::CXmlWriterContext::CXmlWriterContext(const CXmlWriter* writer)
    : CInstanceMonitor("CXmlWriterContext"),
      m_childCount(0),
      m_startTagOpen(false),
      m_depth(0),
      m_parent(nullptr),
      m_defaultNamespace(&m_ownDefaultNamespace),
      m_writer(writer) {}

CXmlWriter::CXmlWriterContext::~CXmlWriterContext() = default;

void CXmlWriter::CXmlWriterContext::Start(CXmlWriterContext* parent) {
  m_childCount = 0;
  m_startTagOpen = true;
  m_parent = parent;
  if (parent != nullptr) {
    m_depth = parent->m_depth + 1;
    m_defaultNamespace = parent->m_defaultNamespace;
  } else {
    m_depth = 0;
    m_ownDefaultNamespace.clear();
    m_defaultNamespace = &m_ownDefaultNamespace;
  }
}

std::string_view CXmlWriter::CXmlWriterContext::GetQualifiedName() const {
  return m_writer->m_scopes->QualifiedName(detail::CXmlWriterFrame::Of(this));
}

std::string_view CXmlWriter::CXmlWriterContext::GetLocalName() const {
  return m_writer->m_scopes->LocalName(detail::CXmlWriterFrame::Of(this));
}

std::string_view CXmlWriter::CXmlWriterContext::GetPrefix() const {
  return m_writer->m_scopes->Prefix(detail::CXmlWriterFrame::Of(this));
}

// ---------------------------------------------------------------------------------------------
// CXmlWriter

CXmlWriter::CXmlWriter(const char* className)
    : CInstanceMonitor(className), m_current(nullptr), m_scopes(new detail::CXmlWriterScopes()) {
  m_scopes->names.Reserve(256);
  m_scopes->bindingText.Reserve(256);
}

CXmlWriter::~CXmlWriter() = default;

void CXmlWriter::Open() {}

void CXmlWriter::WriteProcessingInstruction(std::string_view /*target*/,
                                            std::string_view /*data*/) {
  throw COvException("This writer does not write processing instructions.");
}

void CXmlWriter::Close() {
  if (m_current != nullptr) throw COvException("An Element has not been closed.");
}

void CXmlWriter::SetDefaultNamespace(const char* ns) {
  if (m_current == nullptr) {
    m_pendingDefaultNamespace.assign(OrEmpty(ns));
    return;
  }
  m_current->m_ownDefaultNamespace.assign(OrEmpty(ns));
  m_current->m_defaultNamespace = &m_current->m_ownDefaultNamespace;
}

void CXmlWriter::AddNamespace(const char* prefix, const char* ns) {
  if (m_current == nullptr) {
    m_pendingDeclarations[OrEmpty(ns)] = OrEmpty(prefix);
    return;
  }
  Bind(OrEmpty(ns), OrEmpty(prefix));
}

void CXmlWriter::WriteStartElement(std::string_view localName, std::string_view ns) {
  WriteStartElement(std::string(localName).c_str(), std::string(ns).c_str());
}

void CXmlWriter::WriteStartElement(std::string_view localName, std::string_view ns,
                                   const NamespaceDeclaration* /*declarations*/,
                                   std::size_t /*count*/) {
  WriteStartElement(localName, ns);
}

void CXmlWriter::WriteText(std::string_view text, int itemType) {
  WriteText(std::string(text).c_str(), itemType);
}

void CXmlWriter::WriteAttribute(std::string_view localName, std::string_view ns,
                                std::string_view value, int itemType) {
  WriteAttribute(std::string(localName).c_str(), std::string(ns).c_str(),
                 std::string(value).c_str(), itemType);
}

void CXmlWriter::WriteTextElement(std::string_view localName, std::string_view ns,
                                  std::string_view text, int itemType) {
  WriteStartElement(localName, ns);
  WriteText(text, itemType);
  WriteEndElement();
}

CXmlWriter::CXmlWriterContext* CXmlWriter::PushContext() {
  detail::CXmlWriterScopes& scopes = *m_scopes;
  if (scopes.openCount == scopes.frames.size()) {
    std::unique_ptr<detail::CXmlWriterFrame> fresh(new detail::CXmlWriterFrame(this));
    scopes.frames.push_back(std::move(fresh));
  }
  detail::CXmlWriterFrame* context = scopes.frames[scopes.openCount].get();
  if (m_current == nullptr) {
    scopes.bindingCount = 0;
    scopes.bindingText.length = 0;
    scopes.names.length = 0;
  }
  context->Start(m_current);
  context->nameOffset = scopes.names.length;
  context->nameLength = 0;
  context->prefixLength = 0;
  context->localNameOffset = 0;
  context->bindingBase = scopes.bindingCount;
  context->bindingTextBase = scopes.bindingText.length;
  ++scopes.openCount;
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
  detail::CXmlWriterScopes& scopes = *m_scopes;
  const detail::CXmlWriterFrame& frame = detail::CXmlWriterFrame::Of(context);
  m_current = context->m_parent;
  scopes.bindingCount = frame.bindingBase;
  scopes.bindingText.length = frame.bindingTextBase;
  scopes.names.length = frame.nameOffset;
  context->m_parent = nullptr;
  context->m_defaultNamespace = &context->m_ownDefaultNamespace;
  --scopes.openCount;
}

std::string_view CXmlWriter::SetElementName(std::string_view localName) {
  detail::CXmlWriterScopes& scopes = *m_scopes;
  detail::CXmlWriterFrame& frame = detail::CXmlWriterFrame::Of(m_current);
  scopes.names.length = frame.nameOffset;
  scopes.names.Push(localName);
  frame.nameLength = localName.size();
  frame.prefixLength = 0;
  frame.localNameOffset = 0;
  return scopes.names.View(frame.nameOffset, localName.size());
}

std::string_view CXmlWriter::SetElementName(std::string_view prefix, std::string_view localName) {
  detail::CXmlWriterScopes& scopes = *m_scopes;
  detail::CXmlWriterFrame& frame = detail::CXmlWriterFrame::Of(m_current);
  detail::CXmlWriterScopes::CharStack& names = scopes.names;
  names.length = frame.nameOffset;
  const std::size_t length = prefix.size() + 1 + localName.size();
  if (length <= names.capacity - names.length) {
    char* out = names.data.get() + names.length;
    detail::CopyBytes(out, prefix.data(), prefix.size());
    out[prefix.size()] = ':';
    detail::CopyBytes(out + prefix.size() + 1, localName.data(), localName.size());
    names.length += length;
  } else {
    // Growing frees the storage a name taken from the writer lies in; Push finds it again.
    names.Push(prefix);
    names.Push(std::string_view(":", 1));
    names.Push(localName);
  }
  frame.nameLength = length;
  frame.prefixLength = prefix.size();
  frame.localNameOffset = prefix.size() + 1;
  return names.View(frame.nameOffset, length);
}

bool CXmlWriter::FindPrefix(std::string_view ns, std::string_view& prefix) const {
  const detail::CXmlWriterScopes& scopes = *m_scopes;
  // The innermost binding of the namespace wins; scopes hold few bindings.
  for (std::size_t i = scopes.bindingCount; i-- > 0;) {
    const detail::CXmlWriterScopes::Binding& binding = scopes.bindings[i];
    if (binding.nsLength == ns.size() &&
        detail::SameBytes(scopes.bindingText.data.get() + binding.ns, ns.data(), ns.size())) {
      prefix = scopes.BindingPrefix(binding);
      return true;
    }
  }
  return false;
}

bool CXmlWriter::IsPrefixBound(std::string_view prefix) const {
  const detail::CXmlWriterScopes& scopes = *m_scopes;
  for (std::size_t i = 0; i < scopes.bindingCount; ++i) {
    const detail::CXmlWriterScopes::Binding& binding = scopes.bindings[i];
    if (binding.prefixLength == prefix.size() &&
        detail::SameBytes(scopes.bindingText.data.get() + binding.prefix, prefix.data(),
                          prefix.size()) &&
        scopes.IsInScope(i)) {
      return true;
    }
  }
  return false;
}

std::string_view CXmlWriter::Bind(std::string_view ns, std::string_view prefix) {
  detail::CXmlWriterScopes& scopes = *m_scopes;
  // A namespace the element has bound already takes the new prefix in place; the old prefix's
  // bytes stay unused on the stack until the element ends.
  for (std::size_t i = detail::CXmlWriterFrame::Of(m_current).bindingBase; i < scopes.bindingCount;
       ++i) {
    detail::CXmlWriterScopes::Binding& binding = scopes.bindings[i];
    if (scopes.BindingNamespace(binding) == ns) {
      binding.prefix = scopes.bindingText.Push(prefix);
      binding.prefixLength = prefix.size();
      return scopes.BindingPrefix(binding);
    }
  }
  if (scopes.bindingCount == scopes.bindings.size()) scopes.bindings.emplace_back();
  detail::CXmlWriterScopes::Binding& binding = scopes.bindings[scopes.bindingCount];
  binding.ns = scopes.bindingText.Push(ns);
  binding.nsLength = ns.size();
  binding.prefix = scopes.bindingText.Push(prefix);
  binding.prefixLength = prefix.size();
  ++scopes.bindingCount;
  return scopes.BindingPrefix(binding);
}

bool CXmlWriter::FindBoundPrefix(std::string_view ns, std::string_view& prefix) const {
  // The xml and xmlns namespaces are bound by XML itself and must not be declared again.
  if (ns == "http://www.w3.org/XML/1998/namespace") {
    prefix = "xml";
    return true;
  }
  if (ns == "http://www.w3.org/2000/xmlns/") {
    prefix = "xmlns";
    return true;
  }
  return FindPrefix(ns, prefix);
}

std::string_view CXmlWriter::PrefixFor(std::string_view ns, bool& declared) {
  declared = false;
  std::string_view prefix;
  if (FindBoundPrefix(ns, prefix)) return prefix;
  declared = true;
  return Bind(ns, GeneratePrefix());
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
