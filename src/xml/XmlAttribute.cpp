#include "OvXmlLib6/xml/XmlAttribute.h"

#include <utility>

namespace OvXmlLib6 {

namespace {
constexpr const char* kSchemaInstanceNamespace = "http://www.w3.org/2001/XMLSchema-instance";
constexpr const char* kNamespaceDeclarationNamespace = "http://www.w3.org/2000/xmlns/";
}  // namespace

CXmlAttribute::CXmlAttribute(const detail::CXmlName* name, std::string value)
    : CInstanceMonitor("CXmlAttribute"), m_name(name), m_value(std::move(value)) {}

CXmlAttribute::~CXmlAttribute() = default;

bool CXmlAttribute::IsNamespaceAttribute() const {
  const std::string& ns = m_name->namespaceURI;
  if (ns != kSchemaInstanceNamespace && ns != kNamespaceDeclarationNamespace) return false;
  const std::string& local = m_name->localName;
  return local == "xmlns" || local == "type" || local == "schemaLocation" ||
         local == "noNamespaceSchemaLocation";
}

}  // namespace OvXmlLib6
