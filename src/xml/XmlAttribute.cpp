#include "OvXmlLib6/xml/XmlAttribute.h"

#include "xml/TreeStore.h"

namespace OvXmlLib6 {

namespace {
constexpr const char* kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr const char* kNamespaceDeclarationNamespace = "http://www.w3.org/2000/xmlns/";
}  // namespace

CXmlAttribute::CXmlAttribute(const detail::CXmlName* name, std::uintptr_t value)
    : CInstanceMonitor("CXmlAttribute"), m_name(name), m_value(value) {}

CXmlAttribute::CXmlAttribute(const CXmlAttribute& other)
    : CInstanceMonitor(other), m_name(other.m_name), m_value(0) {
  // As for elements: the value is materialised in the original before it is shared, so that a
  // read through the copy never frees what the original still points to.
  if (other.m_value != 0) other.GetValue();
  m_value = other.m_value;
}

CXmlAttribute::~CXmlAttribute() = default;

const std::string& CXmlAttribute::GetLocalName() const { return m_name->localName; }

const std::string& CXmlAttribute::GetNamespaceURI() const { return m_name->namespaceURI; }

const std::string& CXmlAttribute::GetValue() const {
  return m_value != 0 ? m_name->store->TextString(m_value) : detail::CTreeStore::EmptyText();
}

bool CXmlAttribute::IsNamespaceAttribute() const {
  const std::string& ns = m_name->namespaceURI;
  if (ns != kSchemaInstanceNamespace && ns != kNamespaceDeclarationNamespace) return false;
  const std::string& local = m_name->localName;
  return local == "xmlns" || local == "type" || local == "schemaLocation" ||
         local == "noNamespaceSchemaLocation";
}

}  // namespace OvXmlLib6
