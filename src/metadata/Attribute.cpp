#include "OvXmlLib6/metadata/Attribute.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"
#include "xml/TreeStore.h"

namespace OvXmlLib6 {

namespace {

const char* Safe(const char* s) { return s != nullptr ? s : ""; }

}  // namespace

CAttribute::CAttribute(const char* ns, const char* value, const char* name)
    : CInstanceMonitor("CAttribute"),
      m_name(Safe(name)),
      m_namespace(Safe(ns)),
      m_value(Safe(value)) {
  SetElementName(m_name.c_str());
}

CAttribute::CAttribute(FromParts, std::string_view ns, std::string_view value,
                       std::string_view name)
    : CInstanceMonitor("CAttribute"), m_name(name), m_namespace(ns), m_value(value) {
  SetElementName(m_name.c_str());
}

CAttribute::~CAttribute() = default;

void CAttribute::SetName(const char* name) {
  m_name = Safe(name);
  SetElementName(m_name.c_str());
}

void CAttribute::SetNamespace(const char* ns) { m_namespace = Safe(ns); }

void CAttribute::SetValue(const char* value) { m_value = Safe(value); }

std::string CAttribute::GetTargetNamespace() const { return std::string(); }

void CAttribute::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                           const CXmlSerializationContext& /*context*/, bool /*flag*/) const {
  writer->WriteAttribute(std::string_view(m_name.c_str(), m_name.size()),
                         std::string_view(m_namespace.c_str(), m_namespace.size()),
                         std::string_view(m_value.c_str(), m_value.size()));
}

void CAttribute::AttributesToXml_Int(CXmlWriter* writer,
                                     const CXmlSerializationContext& /*context*/) const {
  writer->WriteAttribute(std::string_view(m_name.c_str(), m_name.size()),
                         std::string_view(m_namespace.c_str(), m_namespace.size()),
                         std::string_view(m_value.c_str(), m_value.size()));
}

CXmlElement* CAttribute::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* /*current*/,
                                     const CXmlSerializationContext& /*context*/, bool /*flag*/) {
  throw COvException("This should be done by the collection");
}

CAttributeCol::CAttributeCol(const char* elementName, const char* restriction,
                             const char* targetNamespace)
    : CXmlCollection(elementName, "", 0, -1),
      CInstanceMonitor("CAttributeCol"),
      m_restriction(Safe(restriction)),
      m_targetNamespace(Safe(targetNamespace)) {}

CAttributeCol::~CAttributeCol() = default;

void CAttributeCol::SetNamespaceRestrictions(const char* restriction, const char* targetNamespace) {
  m_restriction = Safe(restriction);
  m_targetNamespace = Safe(targetNamespace);
}

void CAttributeCol::CheckNamespace(const CAttribute* attribute) const {
  if (attribute == nullptr) return;  // refused as a null item by the insertion itself
  TestNamespace(attribute->GetNamespace().c_str(), m_restriction.c_str(),
                m_targetNamespace.c_str());
}

void CAttributeCol::Add(CAttribute* attribute) {
  CSmartPtr<CAttribute> hold(attribute);
  CheckNamespace(attribute);
  AppendItem(attribute);
}

void CAttributeCol::Add(const char* name) { Add(new CAttribute("", "", name)); }

void CAttributeCol::Add(const char* value, const char* name) {
  Add(new CAttribute("", value, name));
}

void CAttributeCol::Add(const char* ns, const char* value, const char* name) {
  Add(new CAttribute(ns, value, name));
}

void CAttributeCol::AddAfter(const CAttribute* after, CAttribute* attribute) {
  CSmartPtr<CAttribute> hold(attribute);
  CheckNamespace(attribute);
  AddAfterItem(after, attribute);
}

void CAttributeCol::AddBefore(const CAttribute* before, CAttribute* attribute) {
  CSmartPtr<CAttribute> hold(attribute);
  CheckNamespace(attribute);
  AddBeforeItem(before, attribute);
}

CSmartPtr<CAttribute> CAttributeCol::Item(int index) const {
  return static_cast<CAttribute*>(GetNodeAtIndex(index)->GetItem());
}

CXmlElement* CAttributeCol::FromXml_Int(CXmlElement* parent, CXmlElement* current,
                                        const CXmlSerializationContext& /*context*/,
                                        bool /*flag*/) {
  const CXmlElement* element = parent != nullptr ? parent : current;
  if (element == nullptr) return current;
  // The values are read from the tree's own storage, which the getters of the tree would turn
  // into strings kept by the document.
  CXmlAttribute* const* attributes = detail::CTreeStore::ElementAttributes(element);
  for (std::size_t i = 0, n = detail::CTreeStore::ElementAttributeCount(element); i < n; ++i) {
    const CXmlAttribute* attribute = attributes[i];
    const std::string& ns = attribute->GetNamespaceURI();
    if (!IsNamespaceValid(ns.c_str(), m_restriction.c_str(), m_targetNamespace.c_str())) {
      throw COvInvalidNamespaceException(
          FormatString("Invalid Attribute [%s]. The attributes namespace is Inappropriate.",
                       attribute->GetLocalName().c_str()));
    }
    // A value stops at a NUL byte, as it did when it was passed on as a C string.
    std::string_view value = detail::CTreeStore::AttributeValue(attribute);
    value = value.substr(0, value.find('\0'));
    const std::string& name = attribute->GetLocalName();
    AppendItem(
        new CAttribute(CAttribute::FromParts{}, ns.c_str(), value, std::string_view(name.c_str())));
  }
  return current;
}

void CAttributeCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                              const CXmlSerializationContext& context, bool /*flag*/) const {
  AttributesToXml_Int(writer, context);
}

}  // namespace OvXmlLib6
