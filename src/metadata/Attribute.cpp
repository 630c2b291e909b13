#include "OvXmlLib6/metadata/Attribute.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"
#include "core/Strings.h"
#include "metadata/AttributeRecords.h"
#include "metadata/NameCache.h"
#include "metadata/Restriction.h"
#include "xml/TreeStore.h"

namespace OvXmlLib6 {

CAttribute::CAttribute(const char* ns, const char* value, const char* name)
    : CInstanceMonitor("CAttribute"), m_namespace(ns), m_value(detail::OrEmpty(value)) {
  SetElementName(name);
}

CAttribute::CAttribute(FromParts, CSharedString ns, std::string value, CSharedString name)
    : CInstanceMonitor("CAttribute"), m_namespace(std::move(ns)), m_value(std::move(value)) {
  SetElementName(std::move(name));
}

CAttribute::~CAttribute() = default;

void CAttribute::SetName(const char* name) { SetElementName(name); }

void CAttribute::SetNamespace(const char* ns) { m_namespace = ns; }

void CAttribute::SetValue(const char* value) { m_value = detail::OrEmpty(value); }

std::string CAttribute::GetTargetNamespace() const { return std::string(); }

void CAttribute::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                           const CXmlSerializationContext& /*context*/, bool /*flag*/) const {
  writer->WriteAttribute(std::string_view(GetElementName()),
                         std::string_view(m_namespace.c_str(), m_namespace.size()),
                         std::string_view(m_value.c_str(), m_value.size()));
}

void CAttribute::AttributesToXml_Int(CXmlWriter* writer,
                                     const CXmlSerializationContext& /*context*/) const {
  writer->WriteAttribute(std::string_view(GetElementName()),
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
      m_restriction(detail::SharedRestriction(restriction)),
      m_targetNamespace(targetNamespace) {}

CAttributeCol::CAttributeCol(const CSharedString& elementName, const CSharedString& restriction,
                             const CSharedString& targetNamespace)
    : CXmlCollection(elementName, CSharedString(), 0, -1),
      CInstanceMonitor("CAttributeCol"),
      m_restriction(restriction),
      m_targetNamespace(targetNamespace) {}

CAttributeCol::~CAttributeCol() = default;

void CAttributeCol::SetNamespaceRestrictions(const char* restriction, const char* targetNamespace) {
  m_restriction = detail::SharedRestriction(restriction);
  m_targetNamespace = targetNamespace;
}

void CAttributeCol::SetNamespaceRestrictions(const CSharedString& restriction,
                                             const CSharedString& targetNamespace) {
  m_restriction = restriction;
  m_targetNamespace = targetNamespace;
}

void CAttributeCol::CheckNamespace(const CAttribute* attribute) const {
  if (attribute == nullptr) return;  // refused as a null item by the insertion itself
  detail::RequireNamespace(attribute->GetNamespace(), m_restriction.str(), m_targetNamespace.str());
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
  if (element != nullptr) {
    detail::CNameCache names;
    ReadAttributesOf(element, names);
  }
  return current;
}

void CAttributeCol::ReadAttributesOf(const CXmlElement* element, detail::CNameCache& names,
                                     bool checkNamespaces) {
  detail::ReadElementAttributes(
      element,
      [this, checkNamespaces](const std::string& ns) {
        return !checkNamespaces ||
               detail::NamespaceSatisfies(ns, m_restriction.str(), m_targetNamespace.str());
      },
      [this, &names](const std::string& ns, const std::string& name, std::string_view value) {
        AppendItem(new CAttribute(CAttribute::FromParts{}, names.Get(ns), std::string(value),
                                  names.Get(name)));
      });
}

void CAttributeCol::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                              const CXmlSerializationContext& context, bool /*flag*/) const {
  AttributesToXml_Int(writer, context);
}

}  // namespace OvXmlLib6
