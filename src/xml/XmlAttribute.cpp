#include "OvXmlLib6/xml/XmlAttribute.h"

#include "xml/TreeStore.h"

namespace OvXmlLib6 {

namespace {
constexpr const char* kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr const char* kNamespaceDeclarationNamespace = "http://www.w3.org/2000/xmlns/";
}  // namespace

CXmlAttribute::CXmlAttribute(const detail::CXmlName* name, std::uintptr_t value)
    : CInstanceMonitor("CXmlAttribute"), m_name(name), m_value(value) {}

CXmlAttribute::CXmlAttribute(const detail::CXmlName* name, const std::string& value)
    : CXmlAttribute(name, name->store->NewText(value.data(), value.size())) {}

CXmlAttribute::~CXmlAttribute() = default;

const std::string& CXmlAttribute::GetValue() const { return m_name->store->TextString(m_value); }

bool CXmlAttribute::IsNamespaceAttribute() const {
  const std::string& ns = m_name->namespaceURI;
  if (ns != kSchemaInstanceNamespace && ns != kNamespaceDeclarationNamespace) return false;
  const std::string& local = m_name->localName;
  return local == "xmlns" || local == "type" || local == "schemaLocation" ||
         local == "noNamespaceSchemaLocation";
}

}  // namespace OvXmlLib6
