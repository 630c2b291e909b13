#include "OvXmlLib6/xml/XmlElement.h"

#include "OvXmlLib6/xml/XmlDocument.h"
#include "xml/TreeStore.h"

#include <cstring>

namespace OvXmlLib6 {

namespace {
const std::vector<CXmlAttribute*> kNoAttributes;
}  // namespace

CXmlElement::CXmlElement(const detail::CXmlName* name)
    : CInstanceMonitor("CXmlElement"),
      m_name(name),
      m_next(kEndOfSiblings),
      m_lastChild(nullptr),
      m_attributes(0),
      m_text(0) {}

CXmlElement::CXmlElement(const CXmlDocument* document)
    : CXmlElement(document->m_store->EmptyName()) {}

CXmlElement::CXmlElement(const CXmlElement& other)
    : CInstanceMonitor(other),
      m_name(other.m_name),
      m_next(other.m_next),
      m_lastChild(other.m_lastChild),
      m_attributes(0),
      m_text(0) {
  // The first read of a text or an attribute list replaces its compact form with a std::string
  // or std::vector and frees the compact form. Were the compact form shared, a read through one
  // element would leave the other pointing at freed storage, and the materialised form would be
  // released by neither. So the original's forms are materialised first and then shared: the
  // document releases them once, with the original.
  if (other.m_text != 0) other.GetText();
  if (other.m_attributes != 0) other.GetAttributes();
  m_text = other.m_text;
  m_attributes = other.m_attributes;
}

CXmlElement::~CXmlElement() = default;

const CXmlDocument* CXmlElement::GetDocument() const { return m_name->document; }

const std::string& CXmlElement::GetLocalName() const { return m_name->localName; }

const std::string& CXmlElement::GetNamespaceURI() const { return m_name->namespaceURI; }

const std::vector<CXmlAttribute*>& CXmlElement::GetAttributes() const {
  return m_attributes != 0 ? m_name->store->AttributeVector(m_attributes) : kNoAttributes;
}

const std::string& CXmlElement::GetText() const {
  return m_text != 0 ? m_name->store->TextString(m_text) : detail::CTreeStore::EmptyText();
}

const std::string& CXmlElement::GetAttribute(const std::string& localName,
                                             const std::string& namespaceURI) const {
  CXmlAttribute* const* items = detail::CTreeStore::AttributeItems(m_attributes);
  for (std::size_t i = 0, n = detail::CTreeStore::AttributeCount(m_attributes); i < n; ++i) {
    if (detail::CTreeStore::LocalName(items[i]) == localName &&
        detail::CTreeStore::NamespaceURI(items[i]) == namespaceURI) {
      return items[i]->GetValue();
    }
  }
  return detail::CTreeStore::EmptyText();
}

void CXmlElement::SetElementName(const std::string& localName) {
  m_name = m_name->store->Intern(m_name->namespaceURI, localName);
}

void CXmlElement::SetNamespace(const std::string& namespaceURI) {
  m_name = m_name->store->Intern(namespaceURI, m_name->localName);
}

void CXmlElement::AppendText(const char* text) {
  if (text != nullptr) AppendText(text, static_cast<int>(std::strlen(text)));
}

void CXmlElement::AppendText(const char* text, int length) {
  if (text == nullptr || length <= 0) return;
  const char* end = static_cast<const char*>(std::memchr(text, '\0', length));
  m_name->store->AppendText(m_text, text, end != nullptr ? end - text : length);
}

void CXmlElement::LinkLastChild(CXmlElement* child) {
  if (m_lastChild == nullptr) {
    child->m_next = reinterpret_cast<std::uintptr_t>(child) | kEndOfSiblings;
  } else {
    child->m_next = m_lastChild->m_next;  // the link back to the first child
    m_lastChild->m_next = reinterpret_cast<std::uintptr_t>(child);
  }
  m_lastChild = child;
}

void CXmlElement::UnlinkLastChild(CXmlElement* previous) {
  CXmlElement* last = m_lastChild;
  if (previous != nullptr) previous->m_next = last->m_next;
  m_lastChild = previous;
  last->m_next = kEndOfSiblings;
}

CXmlElement* CXmlElement::CreateNewChildElement() {
  CXmlElement* child = m_name->store->NewElement(m_name->store->EmptyName());
  LinkLastChild(child);
  return child;
}

CXmlElement* CXmlElement::RemoveLastChildElement() {
  CXmlElement* last = m_lastChild;
  if (last == nullptr) return nullptr;
  CXmlElement* previous = nullptr;
  CXmlElement* first = Untag(last->m_next);
  if (first != last) {
    previous = first;
    while (Untag(previous->m_next) != last) previous = Untag(previous->m_next);
  }
  UnlinkLastChild(previous);
  return last;
}

void CXmlElement::AddAttribute(const std::string& localName, const std::string& value,
                               const std::string& namespaceURI) {
  detail::CTreeStore* store = m_name->store;
  const detail::CXmlName* name = store->Intern(namespaceURI, localName);
  CXmlAttribute* attribute = store->NewAttribute(name, store->NewText(value.data(), value.size()));
  try {
    store->AddToAttributeList(m_attributes, attribute);
  } catch (...) {
    store->ReleaseAttribute(attribute);
    throw;
  }
}

}  // namespace OvXmlLib6
