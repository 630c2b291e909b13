#include "OvXmlLib6/xml/XmlElement.h"

#include "OvXmlLib6/xml/XmlDocument.h"
#include "xml/TreeStore.h"

#include <algorithm>
#include <cstring>

namespace OvXmlLib6 {

namespace {
const std::vector<CXmlAttribute*> kNoAttributes;
const std::string kEmpty;
}  // namespace

CXmlElement::CXmlElement(const detail::CXmlName* name)
    : CInstanceMonitor("CXmlElement"),
      m_name(name),
      m_next(nullptr),
      m_firstChild(nullptr),
      m_lastChild(nullptr),
      m_attributes(nullptr) {}

CXmlElement::CXmlElement(const CXmlDocument* document)
    : CXmlElement(document->m_store->EmptyName()) {}

CXmlElement::~CXmlElement() = default;

const std::vector<CXmlAttribute*>& CXmlElement::GetAttributes() const {
  return m_attributes != nullptr ? *m_attributes : kNoAttributes;
}

const std::string& CXmlElement::GetAttribute(const std::string& localName,
                                             const std::string& namespaceURI) const {
  if (m_attributes != nullptr) {
    for (const CXmlAttribute* attribute : *m_attributes) {
      if (attribute->GetLocalName() == localName && attribute->GetNamespaceURI() == namespaceURI) {
        return attribute->GetValue();
      }
    }
  }
  return kEmpty;
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
  const std::size_t size = m_text.size() + static_cast<std::size_t>(length);
  // Many small pieces (the parser delivers each line separately) grow the text by doubling.
  if (!m_text.empty() && m_text.capacity() < size) {
    m_text.reserve(std::max(2 * m_text.capacity(), size));
  }
  m_text.append(text, static_cast<std::size_t>(length));
}

CXmlElement* CXmlElement::CreateNewChildElement() {
  CXmlElement* child = m_name->store->NewElement(m_name->store->EmptyName());
  if (m_lastChild == nullptr) {
    m_firstChild = child;
  } else {
    m_lastChild->m_next = child;
  }
  m_lastChild = child;
  return child;
}

CXmlElement* CXmlElement::RemoveLastChildElement() {
  CXmlElement* last = m_lastChild;
  if (last == nullptr) return nullptr;
  if (m_firstChild == last) {
    m_firstChild = m_lastChild = nullptr;
    return last;
  }
  CXmlElement* before = m_firstChild;
  while (before->m_next != last) before = before->m_next;
  before->m_next = nullptr;
  m_lastChild = before;
  return last;
}

void CXmlElement::AddAttribute(const std::string& localName, const std::string& value,
                               const std::string& namespaceURI) {
  detail::CTreeStore* store = m_name->store;
  CXmlAttribute* attribute = store->NewAttribute(store->Intern(namespaceURI, localName), value);
  if (m_attributes == nullptr) {
    try {
      m_attributes = store->NewAttributeList(4);
    } catch (...) {
      store->ReleaseAttribute(attribute);
      throw;
    }
  }
  try {
    m_attributes->push_back(attribute);
  } catch (...) {
    store->ReleaseAttribute(attribute);
    throw;
  }
}

}  // namespace OvXmlLib6
