// Attribute descriptors and the class descriptor of generated classes (namespace
// OvXmlLib6Data). Beside its element descriptors (ElementInfo.h) each generated class owns a
// null-terminated array of attribute descriptors and one CParentElementInfo:
//
//   static CParentElementInfo* info = new CParentElementInfo(
//       XmlElementGroupType_Sequence, XmlElementType_Element, "purchaseOrder", "urn:po", -1,
//       true /*fail if an attribute is unknown*/, false /*has base classes*/);
//   static CAttributeInfo* attributes[] = {
//       new CAttributeInfoPrimitive("orderDate", "", 3, true, ItemType_date, nullptr,
//                                   CWhitespaceUtils::WhitespaceRule_Collapse,
//                                   CPrimitiveRestrictions(), nullptr),
//       new CAttributeInfoEnum("status", "", 4, true, &StatusToText, &StatusFromText, "open"),
//       nullptr};
//
// Descriptors are immutable once built and may be shared by any number of threads.
#ifndef OVXMLLIB6_METADATA_ATTRIBUTEINFO_H
#define OVXMLLIB6_METADATA_ATTRIBUTEINFO_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/metadata/ElementInfo.h"

#include <string>

namespace OvXmlLib6 {
class CXmlAttribute;
}  // namespace OvXmlLib6

namespace OvXmlLib6Data {

class OVXML_API CAttributeInfo {
 public:
  using Context = OvXmlLib6::CXmlSerializationContext;
  using CXmlAttribute = OvXmlLib6::CXmlAttribute;
  using CXmlGeneratedClass = OvXmlLib6::CXmlGeneratedClass;
  using CXmlObjectBase = OvXmlLib6::CXmlObjectBase;
  using CXmlWriter = OvXmlLib6::CXmlWriter;
  using OvVariant = OvXmlLib6::OvVariant;

  // Null strings are taken as empty ones (a null default value is the empty string).
  CAttributeInfo(const char* name, const char* ns, int propertyIndex, bool optional,
                 const char* defaultValue);
  CAttributeInfo(const CAttributeInfo& other);
  CAttributeInfo& operator=(const CAttributeInfo& other);
  virtual ~CAttributeInfo();

  // Writes the attribute on the open start tag, or nothing.
  virtual void AttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                              CXmlWriter* writer) const = 0;
  // Offers an attribute of the element being read; true when this descriptor took it.
  virtual bool AttributeFromXml(const Context& context, CXmlGeneratedClass* object,
                                CXmlAttribute* attribute) = 0;
  // The end-of-reading check: a required attribute that was not found throws
  // COvValidationException "Failed to find the required Attribute [%s]".
  virtual void Validate(const Context& context, bool found) const = 0;

  std::string GetAttributeName() const { return m_attributeName; }
  std::string GetAttributeNamespace() const { return m_attributeNamespace; }
  int GetPropertyIndex() const { return m_propertyIndex; }
  bool IsOptional() const { return m_optional; }
  std::string GetDefaultValue() const { return m_defaultValue; }

  // False for null; true when the local name equals the attribute name and the namespace URI
  // equals the attribute namespace or the context ignores namespaces.
  bool IsThisAttribute(const Context& context, CXmlAttribute* attribute) const;
  void AccessProperty(CXmlGeneratedClass* object, bool read, OvVariant& value) const;
  void ReadProperty(const CXmlGeneratedClass* object, OvVariant& value) const;

  // Throws COvInvalidNamespaceException "Invalid namespace [%s]. The namespace must be one of
  // [%s] where the target namespace is [%s]" unless the restriction admits the namespace. The
  // restriction is split at blanks and admits the namespace if any token does: "##any" every
  // namespace; "##other" any namespace but the target namespace; "##local" the empty namespace;
  // "##targetNamespace" the target namespace; any other token a namespace equal to the whole
  // restriction (so of a list of several URIs none matches).
  static void TestNamespace(const std::string& namespaceUri, const std::string& restriction,
                            const std::string& targetNamespace);
  // The object's own target namespace.
  static std::string GetTargetNamespace(const CXmlObjectBase* object);
  // The object's ToXml_Int with the same arguments and false as the last.
  static void ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot,
                        const char* ns, const Context& context);

 protected:
  const std::string& AttributeName() const { return m_attributeName; }
  const std::string& AttributeNamespace() const { return m_attributeNamespace; }
  const std::string& DefaultValue() const { return m_defaultValue; }
  // Whether an optional attribute holding `text` is left out: it equals the non-empty default
  // and the context suppresses defaults.
  bool IsSuppressedDefault(const Context& context, const std::string& text) const;
  // "Failed to find the required Attribute [%s]" for a required attribute not found.
  void RequireFound(bool found) const;

 private:
  std::string m_attributeName;
  std::string m_attributeNamespace;
  std::int32_t m_propertyIndex;
  bool m_optional;
  std::string m_defaultValue;
};

// A primitive value. Reading takes the attribute only when name and namespace both match
// exactly (the context's IgnoreNamespaces is not consulted) and makes no facet check; writing
// checks the facets.
class OVXML_API CAttributeInfoPrimitive : public CAttributeInfo {
 public:
  using ItemType = OvXmlLib6::ItemType;
  using WhitespaceRule = OvXmlLib6::CWhitespaceUtils::WhitespaceRule;
  using CPrimitiveRestrictions = OvXmlLib6::CPrimitiveRestrictions;

  // `format` is not copied: it must live as long as the descriptor.
  CAttributeInfoPrimitive(const char* name, const char* ns, int propertyIndex, bool optional,
                          ItemType type, const char* format, WhitespaceRule rule,
                          const CPrimitiveRestrictions& restrictions, const char* defaultValue);

  void AttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const Context& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const Context& context, bool found) const override;

  // Runs the facet checks on the value.
  void CheckRestriction(const OvVariant& value) const;

  const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }
  ItemType GetItemType() const { return m_itemType; }
  const char* GetFormat() const { return m_format; }
  WhitespaceRule GetWhitespaceRule() const { return m_whitespaceRule; }

 private:
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  const char* m_format;
  WhitespaceRule m_whitespaceRule;
};

// An enumerated value, held by the property as an int (SetI4/GetI4) and written as the to-text
// function's text. Reading passes the raw attribute value to the from-text function.
class OVXML_API CAttributeInfoEnum : public CAttributeInfo {
 public:
  CAttributeInfoEnum(const char* name, const char* ns, int propertyIndex, bool optional,
                     EnumToTextFunction toText, EnumFromTextFunction fromText,
                     const char* defaultValue);

  void AttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const Context& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const Context& context, bool found) const override;

  EnumFromTextFunction GetFromText() const { return m_fromText; }
  EnumToTextFunction GetToText() const { return m_toText; }

 private:
  EnumFromTextFunction m_fromText;
  EnumToTextFunction m_toText;
};

// The attribute wildcard: takes every attribute offered to it whose namespace the restriction
// admits (TestNamespace) into the CAttributeCol that the property holds, and writes that
// collection's attributes.
class OVXML_API CAttributeInfoAny : public CAttributeInfo {
 public:
  CAttributeInfoAny(const char* name, const char* ns, int propertyIndex, bool optional,
                    const char* restriction, const char* targetNamespace, const char* defaultValue);

  void AttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                      CXmlWriter* writer) const override;
  bool AttributeFromXml(const Context& context, CXmlGeneratedClass* object,
                        CXmlAttribute* attribute) override;
  void Validate(const Context& context, bool found) const override;

  const std::string& GetNamespaceRestriction() const { return m_restriction; }
  const std::string& GetTargetNamespace() const { return m_targetNamespace; }

 private:
  std::string m_restriction;
  std::string m_targetNamespace;
};

// The class descriptor: content model, how the class shows in XML, its element's name and
// namespace, the property that receives the element's own text (-1: none), whether an unknown
// attribute fails reading, and whether the class has base classes.
class OVXML_API CParentElementInfo {
 public:
  CParentElementInfo(XmlElementGroupType groupType, XmlElementType elementType, const char* name,
                     const char* ns, int textPropertyIndex, bool failIfAttributeUnknown,
                     bool hasBaseClasses);
  CParentElementInfo(const CParentElementInfo& other);
  CParentElementInfo& operator=(const CParentElementInfo& other);
  virtual ~CParentElementInfo();

  XmlElementGroupType GetElementGroupType() const { return m_groupType; }
  XmlElementType GetElementType() const { return m_elementType; }
  std::string GetElementName() const { return m_elementName; }
  std::string GetElementNamespace() const { return m_elementNamespace; }
  int GetElementTextPropertyIndex() const { return m_textPropertyIndex; }
  bool GetFromXmlFailIfAttributeUnknown() const { return m_failIfAttributeUnknown; }
  bool GetHasBaseClasses() const { return m_hasBaseClasses; }

 private:
  XmlElementGroupType m_groupType;
  XmlElementType m_elementType;
  std::string m_elementName;
  std::string m_elementNamespace;
  std::int32_t m_textPropertyIndex;
  bool m_failIfAttributeUnknown;
  bool m_hasBaseClasses;
};

}  // namespace OvXmlLib6Data

#endif  // OVXMLLIB6_METADATA_ATTRIBUTEINFO_H
