// CClassfactoryBase: the base of the factories that generated code provides to create the right
// generated class for an element, including the class named by the element's xsi:type attribute.
#ifndef OVXMLLIB6_CORE_CLASSFACTORY_H
#define OVXMLLIB6_CORE_CLASSFACTORY_H

#include "OvXmlLib6/core/Export.h"

#include <string>

namespace OvXmlLib6 {

class CXmlElement;

class OVXML_API CClassfactoryBase {
 public:
  CClassfactoryBase() = default;
  CClassfactoryBase(const CClassfactoryBase&) = default;
  CClassfactoryBase& operator=(const CClassfactoryBase&) = default;
  virtual ~CClassfactoryBase();

 protected:
  // The local part of the element's xsi:type value (the text after the first colon, or the whole
  // value without a colon); empty when the element has no such attribute or is null.
  static std::string GetElementType(CXmlElement* element);
  // The namespace of the type named by xsi:type: the namespace bound to its prefix in the
  // element's document, or the element's own namespace when the value has no prefix or the prefix
  // is not bound. Empty for a null element.
  static std::string GetElementTypeNamespaceUri(CXmlElement* element);
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_CLASSFACTORY_H
