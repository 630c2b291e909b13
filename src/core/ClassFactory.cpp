// CClassfactoryBase: reading an element's xsi:type attribute for the generated factories.
#include "OvXmlLib6/core/ClassFactory.h"

#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"

namespace OvXmlLib6 {

namespace {

const std::string& TypeAttribute(const CXmlElement& element) {
  static const std::string kType = "type";
  static const std::string kInstanceNamespace = CXmlWriter::kSchemaInstanceNamespace;
  return element.GetAttribute(kType, kInstanceNamespace);
}

}  // namespace

CClassfactoryBase::~CClassfactoryBase() = default;

std::string CClassfactoryBase::GetElementType(CXmlElement* element) {
  if (element == nullptr) return std::string();
  const std::string& value = TypeAttribute(*element);
  const std::size_t colon = value.find(':');
  return colon == std::string::npos ? value : value.substr(colon + 1);
}

std::string CClassfactoryBase::GetElementTypeNamespaceUri(CXmlElement* element) {
  if (element == nullptr) return std::string();
  const std::string& value = TypeAttribute(*element);
  const std::size_t colon = value.find(':');
  if (colon != std::string::npos && element->GetDocument() != nullptr) {
    std::string uri =
        element->GetDocument()->LookupNamespaceFromAlias(value.substr(0, colon).c_str());
    if (!uri.empty()) return uri;
  }
  return element->GetNamespaceURI();
}

}  // namespace OvXmlLib6
