// CXmlAttribute: one attribute of a parsed element, with its name split into namespace URI and
// local name (the prefix is not kept). Attributes are created by the readers only and live as
// long as their element.
#ifndef OVXMLLIB6_XML_XMLATTRIBUTE_H
#define OVXMLLIB6_XML_XMLATTRIBUTE_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class CXmlDocument;
class CXmlElement;
class CExpatReader;
class CFastInfosetReader;

namespace detail {

class CTreeStore;

// A name as the tree keeps it. Every element and attribute of one document with the same
// namespace URI and local name points to one shared record owned by the document, so a node
// carries one pointer instead of two strings.
struct CXmlName {
  const CXmlDocument* document;
  CTreeStore* store;
  std::string localName;
  std::string namespaceURI;
};

}  // namespace detail

class OVXML_API CXmlAttribute : private CInstanceMonitor {
 public:
  // The document owns the storage of its attributes, the values included, and releases it.
  virtual ~CXmlAttribute();
  CXmlAttribute(const CXmlAttribute& other) = default;
  CXmlAttribute& operator=(const CXmlAttribute& other) = default;

  const std::string& GetLocalName() const { return m_name->localName; }
  // Empty when the attribute is unqualified.
  const std::string& GetNamespaceURI() const { return m_name->namespaceURI; }
  // In the library's internal character encoding.
  const std::string& GetValue() const;

  // True for xmlns, type, schemaLocation and noNamespaceSchemaLocation in the XML Schema
  // instance namespace or the namespace of namespace declarations. nil does not count: it is a
  // value the serialization engine reads.
  bool IsNamespaceAttribute() const;

 protected:
  // `name` is a record of the owning document (see CXmlElement::AddAttribute).
  CXmlAttribute(const detail::CXmlName* name, const std::string& value);
  CXmlAttribute(const detail::CXmlName* name, std::uintptr_t value);

 private:
  friend class detail::CTreeStore;

  const detail::CXmlName* m_name;
  // The value in the document's compact text storage, turned into the std::string of GetValue
  // on first request (see detail::CTreeStore).
  mutable std::uintptr_t m_value;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLATTRIBUTE_H
