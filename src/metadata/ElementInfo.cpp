// The root of the element descriptors and the group bases: the common fields, the element test,
// the property access, the facet check and the writing routines that the concrete classes share.
#include "OvXmlLib6/metadata/ElementInfo.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlGeneratedClass.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"
#include "OvXmlLib6/types/Variant.h"
#include "OvXmlLib6/xml/XmlWriter.h"
#include "core/Strings.h"
#include "xml/TreeStore.h"

#include <string_view>

namespace OvXmlLib6Data {

using OvXmlLib6::COvException;
using OvXmlLib6::CSmartPtr;
using OvXmlLib6::CXmlCollectionBase;
using OvXmlLib6::detail::CTreeStore;
using OvXmlLib6::detail::OrEmpty;

CElementInfo::CElementInfo(const char* name, const char* ns, int propertyIndex)
    : m_elementName(OrEmpty(name)),
      m_elementNamespace(OrEmpty(ns)),
      m_propertyIndex(propertyIndex),
      m_itemType(OvXmlLib6::ItemType_None),
      m_format(nullptr),
      m_whitespaceRule(OvXmlLib6::CWhitespaceUtils::WhitespaceRule_None),
      m_hasPrimitiveInfo(false),
      m_choiceBranch(ChoiceBranch_None),
      m_usesTargetNamespace(false) {}

CElementInfo::CElementInfo(const char* name, const char* ns, int propertyIndex, ItemType type,
                           const char* format, WhitespaceRule rule,
                           const CPrimitiveRestrictions& restrictions)
    : m_elementName(OrEmpty(name)),
      m_elementNamespace(OrEmpty(ns)),
      m_propertyIndex(propertyIndex),
      m_restrictions(restrictions),
      m_itemType(type),
      m_format(format),
      m_whitespaceRule(rule),
      m_hasPrimitiveInfo(true),
      m_choiceBranch(ChoiceBranch_None),
      m_usesTargetNamespace(false) {}

CElementInfo::CElementInfo(const CElementInfo& other) = default;
CElementInfo& CElementInfo::operator=(const CElementInfo& other) = default;
CElementInfo::~CElementInfo() = default;

void CElementInfo::PseudoChildAttributeToXml(const Context& /*context*/,
                                             const CXmlGeneratedClass* /*object*/,
                                             CXmlWriter* /*writer*/) const {}

bool CElementInfo::IsThisElement(const Context& context, const CXmlElement* element) const {
  if (element == nullptr) return false;
  if (CTreeStore::LocalName(element) != m_elementName) return false;
  return context.GetIgnoreNamespaces() || CTreeStore::NamespaceURI(element) == m_elementNamespace;
}

void CElementInfo::CheckRestriction(const OvVariant& value) const {
  if (!m_hasPrimitiveInfo) {
    throw COvException("Cannot CheckRestriction for type: " + value.GetType());
  }
  m_restrictions.Check(m_elementName.c_str(), value);
}

void CElementInfo::AccessProperty(CXmlGeneratedClass* object, bool read, OvVariant& value) const {
  object->AccessProperty(m_propertyIndex, read, value);
}

void CElementInfo::ReadProperty(const CXmlGeneratedClass* object, OvVariant& value) const {
  object->ReadProperty(m_propertyIndex, value);
}

OvXmlLib6::CXmlElement* CElementInfo::FromXml_Int(CXmlObjectBase* object, CXmlElement* parent,
                                                  CXmlElement* cursor, const Context& context,
                                                  bool flag) {
  if (object == nullptr) {
    throw OvXmlLib6::COvInvalidParamException("FromXml_Int: the object is NULL");
  }
  // Counts one level of nesting, as the object base's own forwarding does.
  const CXmlObjectBase::CNestingGuard depth(
      parent != nullptr   ? CTreeStore::LocalName(parent).c_str()
      : cursor != nullptr ? CTreeStore::LocalName(cursor).c_str()
                          : object->GetElementName().c_str());
  return object->FromXml_Int(parent, cursor, context, flag);
}

void CElementInfo::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                       const Context& context) {
  CXmlObjectBase::AttributesToXml_Int(object, writer, context);
}

std::string CElementInfo::GetAnyDefaultNamespace(const char* restriction,
                                                 const char* targetNamespace,
                                                 const char* otherNamespace) {
  const std::string_view text = OrEmpty(restriction);
  if (text == "##any") return OrEmpty(targetNamespace);
  if (text == "##other") return *OrEmpty(targetNamespace) == '\0' ? "DefaultNamespace" : "";
  if (text == "##local") return std::string();
  if (text == "##targetNamespace") return OrEmpty(otherNamespace);
  const std::size_t blank = text.find(' ');
  if (blank != std::string_view::npos && text.size() >= 3 && text.compare(0, 2, "##") == 0) {
    // The first token decides.
    const std::string first(text.substr(0, blank));
    return GetAnyDefaultNamespace(first.c_str(), targetNamespace, otherNamespace);
  }
  return std::string();
}

// ---- Writing routines ---------------------------------------------------------------------

bool CElementInfo::ElementToXmlPrim(const Context& /*context*/, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  if (!value.IsValid()) return false;
  const ItemType type = value.GetTypeAsEnum();
  if (m_hasPrimitiveInfo && m_format == nullptr &&
      (type == OvXmlLib6::ItemType_decimal || type == OvXmlLib6::ItemType_integer)) {
    // The text written is the one the facets check: made once.
    const std::string text = value.ToString();
    m_restrictions.Check(m_elementName.c_str(), value, text);
    writer->WriteTextElement(m_elementName, m_elementNamespace, text, type);
    return true;
  }
  CheckRestriction(value);
  if (type == OvXmlLib6::ItemType_string) {
    // A string is its own text form: written from the variant without a copy.
    writer->WriteTextElement(m_elementName, m_elementNamespace, value.GetString(),
                             OvXmlLib6::ItemType_string);
  } else {
    writer->WriteTextElement(m_elementName, m_elementNamespace, value.ToString(m_format),
                             value.GetTypeAsEnum());
  }
  return true;
}

bool CElementInfo::ElementToXmlPrimOpt(const Context& context, const CXmlGeneratedClass* object,
                                       CXmlWriter* writer) const {
  return ElementToXmlPrim(context, object, writer);
}

bool CElementInfo::ElementToXmlEnum(const Context& /*context*/, const CXmlGeneratedClass* object,
                                    CXmlWriter* writer, EnumToTextFunction toText) const {
  OvVariant value;
  ReadProperty(object, value);
  if (!value.IsValid()) return false;
  const char* text = toText != nullptr ? toText(value.GetI4()) : nullptr;
  writer->WriteTextElement(m_elementName, m_elementNamespace, OrEmpty(text),
                           OvXmlLib6::ItemType_string);
  return true;
}

bool CElementInfo::ElementToXmlEnumOpt(const Context& context, const CXmlGeneratedClass* object,
                                       CXmlWriter* writer, EnumToTextFunction toText) const {
  return ElementToXmlEnum(context, object, writer, toText);
}

bool CElementInfo::ElementToXmlCls(const Context& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer, bool inChoice) const {
  OvVariant value;
  ReadProperty(object, value);
  const CSmartPtr<CXmlObjectBase> member = value.GetXmlObject();
  if (!member) return false;
  CXmlObjectBase::ToXml_Int(member.get(), writer, false, m_elementNamespace.c_str(), context,
                            inChoice);
  return true;
}

bool CElementInfo::ElementToXmlCol(const Context& context, const CXmlGeneratedClass* object,
                                   CXmlWriter* writer) const {
  OvVariant value;
  ReadProperty(object, value);
  const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
  if (!collection || collection->GetCount() <= 0) return false;
  CXmlObjectBase::ToXml_Int(collection.get(), writer, false, m_elementNamespace.c_str(), context,
                            false);
  return true;
}

// ---- Group bases --------------------------------------------------------------------------

bool CElementInfoSeq::Validate(const Context& /*context*/, const CXmlGeneratedClass* /*object*/,
                               bool /*found*/, bool /*check*/) const {
  throw COvException("Not implemented, should never be called");
}

bool CElementInfoChoice::Validate(const Context& /*context*/, const CXmlGeneratedClass* /*object*/,
                                  bool /*found*/, bool /*check*/) const {
  throw COvException("Not implemented, should never be called");
}

}  // namespace OvXmlLib6Data
