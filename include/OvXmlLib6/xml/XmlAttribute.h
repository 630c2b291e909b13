// CXmlAttribute: one attribute of a parsed element, with its name split into namespace URI and
// local name (the prefix is not kept). Attributes are created by the readers only and live as
// long as their element.
//
// A copy is shallow: it shares the original's name and value and owns neither, so it is valid
// only while the original's document holds the original. Copies never change what the original
// returns. Assignment is deleted: an attribute belongs to its element's list, and nothing may be
// assigned over it.
#ifndef OVXMLLIB6_XML_XMLATTRIBUTE_H
#define OVXMLLIB6_XML_XMLATTRIBUTE_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class CXmlDocument;
class CXmlElement;

namespace detail {
class CTreeStore;
struct CXmlName;
}  // namespace detail

class OVXML_API CXmlAttribute : private CInstanceMonitor {
 public:
  // The document owns the storage of its attributes, the values included, and releases it.
  virtual ~CXmlAttribute();
  CXmlAttribute(const CXmlAttribute& other);
  CXmlAttribute& operator=(const CXmlAttribute& other) = delete;

  const std::string& GetLocalName() const;
  // Empty when the attribute is unqualified.
  const std::string& GetNamespaceURI() const;
  // In the library's internal character encoding.
  const std::string& GetValue() const;

  // True for xmlns, type, schemaLocation and noNamespaceSchemaLocation in the XML Schema
  // instance namespace or the namespace of namespace declarations. nil does not count: it is a
  // value the serialization engine reads.
  bool IsNamespaceAttribute() const;

 private:
  friend class detail::CTreeStore;

  // Made by the document's storage only: `name` is one of its name records and `value` one of
  // its text slots.
  CXmlAttribute(const detail::CXmlName* name, std::uintptr_t value);

  const detail::CXmlName* m_name;
  // The value in the document's compact text storage, turned into the std::string of GetValue
  // on first request (see detail::CTreeStore).
  mutable std::uintptr_t m_value;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLATTRIBUTE_H
