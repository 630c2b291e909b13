// The attribute descriptors and the class descriptor.
#include "OvXmlLib6/metadata/AttributeInfo.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlGeneratedClass.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/types/Variant.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlWriter.h"
#include "core/Strings.h"
#include "metadata/Restriction.h"
#include "types/VariantText.h"
#include "xml/TreeStore.h"

#include <string_view>

namespace OvXmlLib6Data {

using OvXmlLib6::COvException;
using OvXmlLib6::COvValidationException;
using OvXmlLib6::CSmartPtr;
using OvXmlLib6::FormatString;
using OvXmlLib6::detail::CTreeStore;
using OvXmlLib6::detail::OrEmpty;

// ---- CAttributeInfo -----------------------------------------------------------------------

CAttributeInfo::CAttributeInfo(const char* name, const char* ns, int propertyIndex, bool optional,
                               const char* defaultValue)
    : m_attributeName(OrEmpty(name)),
      m_attributeNamespace(OrEmpty(ns)),
      m_propertyIndex(propertyIndex),
      m_optional(optional),
      m_defaultValue(OrEmpty(defaultValue)) {}

CAttributeInfo::CAttributeInfo(const CAttributeInfo& other) = default;
CAttributeInfo& CAttributeInfo::operator=(const CAttributeInfo& other) = default;
CAttributeInfo::~CAttributeInfo() = default;

bool CAttributeInfo::IsThisAttribute(const Context& context, CXmlAttribute* attribute) const {
  if (attribute == nullptr) return false;
  if (CTreeStore::LocalName(attribute) != m_attributeName) return false;
  return context.GetIgnoreNamespaces() ||
         CTreeStore::NamespaceURI(attribute) == m_attributeNamespace;
}

void CAttributeInfo::AccessProperty(CXmlGeneratedClass* object, bool read, OvVariant& value) const {
  object->AccessProperty(m_propertyIndex, read, value);
}

void CAttributeInfo::ReadProperty(const CXmlGeneratedClass* object, OvVariant& value) const {
  object->ReadProperty(m_propertyIndex, value);
}

void CAttributeInfo::TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                                   const std::string& targetNamespace) {
  OvXmlLib6::detail::RequireNamespace(namespaceUri, restriction, targetNamespace);
}

std::string CAttributeInfo::GetTargetNamespace(const CXmlObjectBase* object) {
  if (object == nullptr) {
    throw OvXmlLib6::COvInvalidParamException("GetTargetNamespace: the object is NULL");
  }
  return object->GetTargetNamespace();
}

void CAttributeInfo::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot,
                               const char* ns, const Context& context) {
  CXmlObjectBase::ToXml_Int(object, writer, isRoot, ns, context, false);
}

bool CAttributeInfo::IsSuppressedDefault(const Context& context, const std::string& text) const {
  return m_optional && !m_defaultValue.empty() && context.GetNoOptionalAttributeDefaultOutput() &&
         text == m_defaultValue;
}

void CAttributeInfo::RequireFound(bool found) const {
  if (m_optional || found) return;
  throw COvValidationException(
      FormatString("Failed to find the required Attribute [%s]", m_attributeName.c_str()));
}

// ---- CAttributeInfoPrimitive --------------------------------------------------------------

CAttributeInfoPrimitive::CAttributeInfoPrimitive(const char* name, const char* ns,
                                                 int propertyIndex, bool optional, ItemType type,
                                                 const char* format, WhitespaceRule rule,
                                                 const CPrimitiveRestrictions& restrictions,
                                                 const char* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_restrictions(restrictions),
      m_itemType(type),
      m_format(format),
      m_whitespaceRule(rule) {}

void CAttributeInfoPrimitive::CheckRestriction(const OvVariant& value) const {
  m_restrictions.Check(AttributeName().c_str(), value);
}

void CAttributeInfoPrimitive::AttributeToXml(const Context& context,
                                             const CXmlGeneratedClass* object,
                                             CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  // An unset required attribute goes on to ToString, which reports the missing value.
  if (IsOptional() && !value.IsValid()) return;
  const std::string text = value.ToString(m_format);
  if (IsSuppressedDefault(context, text)) return;
  // Without a format the text is the one the facets check.
  m_restrictions.Check(AttributeName().c_str(), value,
                       m_format == nullptr ? std::string_view(text) : std::string_view());
  writer->WriteAttribute(std::string_view(AttributeName()), std::string_view(AttributeNamespace()),
                         std::string_view(text), m_itemType);
}

bool CAttributeInfoPrimitive::AttributeFromXml(const Context& /*context*/,
                                               CXmlGeneratedClass* object,
                                               CXmlAttribute* attribute) {
  // Name and namespace must both match exactly: IgnoreNamespaces is not consulted here.
  if (attribute == nullptr || CTreeStore::LocalName(attribute) != AttributeName() ||
      CTreeStore::NamespaceURI(attribute) != AttributeNamespace()) {
    return false;
  }
  OvVariant value;
  OvXmlLib6::detail::VariantFromText(value, CTreeStore::AttributeValue(attribute), m_itemType,
                                     m_whitespaceRule);
  AccessProperty(object, false, value);
  return true;
}

void CAttributeInfoPrimitive::Validate(const Context& /*context*/, bool found) const {
  RequireFound(found);
}

// ---- CAttributeInfoEnum -------------------------------------------------------------------

CAttributeInfoEnum::CAttributeInfoEnum(const char* name, const char* ns, int propertyIndex,
                                       bool optional, EnumToTextFunction toText,
                                       EnumFromTextFunction fromText, const char* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_fromText(fromText),
      m_toText(toText) {}

void CAttributeInfoEnum::AttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                                        CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  if (IsOptional() && !value.IsValid()) return;
  const std::string text = OrEmpty(m_toText != nullptr ? m_toText(value.GetI4()) : nullptr);
  if (IsSuppressedDefault(context, text)) return;
  writer->WriteAttribute(std::string_view(AttributeName()), std::string_view(AttributeNamespace()),
                         std::string_view(text), OvXmlLib6::ItemType_string);
}

bool CAttributeInfoEnum::AttributeFromXml(const Context& context, CXmlGeneratedClass* object,
                                          CXmlAttribute* attribute) {
  if (!IsThisAttribute(context, attribute)) return false;
  if (m_fromText == nullptr) {
    throw COvException(FormatString("No conversion from text is set for the attribute [%s]",
                                    AttributeName().c_str()));
  }
  const std::string text(CTreeStore::AttributeValue(attribute));
  OvVariant value;
  value.SetI4(m_fromText(text.c_str()));
  AccessProperty(object, false, value);
  return true;
}

void CAttributeInfoEnum::Validate(const Context& /*context*/, bool found) const {
  RequireFound(found);
}

// ---- CAttributeInfoAny --------------------------------------------------------------------

CAttributeInfoAny::CAttributeInfoAny(const char* name, const char* ns, int propertyIndex,
                                     bool optional, const char* restriction,
                                     const char* targetNamespace, const char* defaultValue)
    : CAttributeInfo(name, ns, propertyIndex, optional, defaultValue),
      m_restriction(OrEmpty(restriction)),
      m_targetNamespace(OrEmpty(targetNamespace)) {}

namespace {
CSmartPtr<OvXmlLib6::CAttributeCol> AttributeCollection(
    const CAttributeInfo& info, const OvXmlLib6::CXmlGeneratedClass* object) {
  OvXmlLib6::OvVariant value;
  info.ReadProperty(object, value);
  auto* attributes = dynamic_cast<OvXmlLib6::CAttributeCol*>(
      OvXmlLib6::detail::CVariantAccess::HeldCollection(value));
  if (attributes == nullptr) {
    throw COvException(
        "Serialization Data Error : The collection should be a CAttributeCol, it "
        "was not!");
  }
  return attributes;
}
}  // namespace

void CAttributeInfoAny::AttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                                       CXmlWriter* writer) const {
  // Whatever collection the property holds writes its items as attributes; most elements carry
  // no foreign attribute, and then nothing is asked of the object.
  OvVariant value;
  ReadProperty(object, value);
  // The variant holds the list while it is written.
  const OvXmlLib6::CXmlCollectionBase* attributes =
      OvXmlLib6::detail::CVariantAccess::HeldCollection(value);
  if (attributes == nullptr || attributes->GetCount() == 0) return;
  const std::string target = CAttributeInfo::GetTargetNamespace(object);
  CAttributeInfo::ToXml_Int(attributes, writer, false, target.c_str(), context);
}

bool CAttributeInfoAny::AttributeFromXml(const Context& /*context*/, CXmlGeneratedClass* object,
                                         CXmlAttribute* attribute) {
  if (attribute == nullptr) return false;
  const std::string& ns = CTreeStore::NamespaceURI(attribute);
  TestNamespace(ns, m_restriction, m_targetNamespace);
  const CSmartPtr<OvXmlLib6::CAttributeCol> attributes = AttributeCollection(*this, object);
  const std::string value(CTreeStore::AttributeValue(attribute));
  attributes->Add(ns.c_str(), value.c_str(), CTreeStore::LocalName(attribute).c_str());
  return true;
}

void CAttributeInfoAny::Validate(const Context& /*context*/, bool /*found*/) const {}

// ---- CParentElementInfo -------------------------------------------------------------------

CParentElementInfo::CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType,
                                       const char* name, const char* ns, int textPropertyIndex,
                                       bool failIfAttributeUnknown, bool hasBaseClasses)
    : m_groupType(groupType),
      m_elementType(elementType),
      m_elementName(OrEmpty(name)),
      m_elementNamespace(OrEmpty(ns)),
      m_textPropertyIndex(textPropertyIndex),
      m_failIfAttributeUnknown(failIfAttributeUnknown),
      m_hasBaseClasses(hasBaseClasses) {}

CParentElementInfo::CParentElementInfo(const CParentElementInfo& other) = default;
CParentElementInfo& CParentElementInfo::operator=(const CParentElementInfo& other) = default;
CParentElementInfo::~CParentElementInfo() = default;

}  // namespace OvXmlLib6Data
