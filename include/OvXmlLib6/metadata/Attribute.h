// CAttribute and CAttributeCol: the untyped holders of a schema's attribute wildcard. A
// CAttribute is one attribute of any name and namespace; a CAttributeCol holds many, carries the
// wildcard's namespace restriction with its target namespace, and refuses attributes whose
// namespace the restriction forbids.
//
//   CSmartPtr<CAttributeCol> attrs = new CAttributeCol("AnyAttribute", "##any", "");
//   attrs->Add("urn:x", "42", "size");      // namespace, value, local name
//   for (CAttribute* a : *attrs) ... a->GetName(), a->GetValue() ...
//
// Restriction tokens: "##any" (every namespace), "##other" (every namespace but the target
// namespace), "##local" (no namespace), "##targetNamespace", or one namespace URI (which also
// admits no namespace).
#ifndef OVXMLLIB6_METADATA_ATTRIBUTE_H
#define OVXMLLIB6_METADATA_ATTRIBUTE_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/core/PooledObject.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/metadata/XmlCollection.h"

#include <string>
#include <string_view>

namespace OvXmlLib6 {

namespace detail {
class CElementReader;
class CNameCache;
}  // namespace detail

class OVXML_API CAttribute : public CXmlObjectBase, public CPooledObject, private CInstanceMonitor {
 public:
  // Null strings are taken as empty ones; the arguments come in the order of CAttributeCol::Add.
  CAttribute(const char* ns, const char* value, const char* name);
  CAttribute(const CAttribute&) = delete;
  CAttribute& operator=(const CAttribute&) = delete;
  ~CAttribute() override;

  CXmlObjectBase* GetBase() override { return this; }

  const std::string& GetName() const { return GetElementName(); }
  void SetName(const char* name);
  std::string GetNamespace() const override { return m_namespace; }
  void SetNamespace(const char* ns);
  const std::string& GetValue() const { return m_value; }
  void SetValue(const char* value);

 protected:
  // An attribute has no target namespace of its own; the empty one.
  std::string GetTargetNamespace() const override;
  // Writes the attribute on the element being started.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns,
                 const CXmlSerializationContext& context, bool flag) const override;
  void AttributesToXml_Int(CXmlWriter* writer,
                           const CXmlSerializationContext& context) const override;
  // Attributes are read by their collection: throws COvException "This should be done by the
  // collection".
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;

 private:
  friend class CAttributeCol;
  friend class CElement;

  // For readers: the names are shared, the value taken as it is.
  struct FromParts {};
  CAttribute(FromParts, CSharedString ns, std::string value, CSharedString name);

  // The name is the object's element name.
  CSharedString m_namespace;
  std::string m_value;
};

class OVXML_API CAttributeCol : public CXmlCollection,
                                public CPooledObject,
                                private CInstanceMonitor {
 public:
  using iterator = COvIterator<CAttribute>;
  using const_iterator = COvIterator<CAttribute>;

  // Null strings are taken as empty ones.
  CAttributeCol(const char* elementName, const char* restriction, const char* targetNamespace);
  CAttributeCol(const CSharedString& elementName, const CSharedString& restriction,
                const CSharedString& targetNamespace);
  ~CAttributeCol() override;

  // Each checks the attribute's namespace against the restriction first (COvInvalidNamespace-
  // Exception "Invalid namespace [%s]. The namespace must be one of [%s] where the target
  // namespace is [%s]") and then appends. The shorter forms leave out the leading arguments of
  // the full one: no namespace, then no value.
  void Add(CAttribute* attribute);
  void Add(const char* name);
  void Add(const char* value, const char* name);
  void Add(const char* ns, const char* value, const char* name);
  // A null `after` inserts at the front; a null `before` appends.
  void AddAfter(const CAttribute* after, CAttribute* attribute);
  void AddBefore(const CAttribute* before, CAttribute* attribute);

  // Throws COvInvalidParamException "Index %d is out of range, use 0 - %d" for a bad index.
  CSmartPtr<CAttribute> Item(int index) const;

  iterator begin() const { return iterator(GetHead()); }
  iterator end() const { return iterator(); }

  const std::string& GetNamespaceRestriction() const { return m_restriction.str(); }
  const std::string& GetRestrictionTargetNamespace() const { return m_targetNamespace.str(); }
  void SetNamespaceRestrictions(const char* restriction, const char* targetNamespace);

 protected:
  // Takes the attributes of `parent` (of `current` when parent is null), in document order;
  // an attribute whose namespace the restriction refuses throws COvInvalidNamespaceException
  // "Invalid Attribute [%s]. The attributes namespace is Inappropriate.". Returns `current`.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;
  // Writes every attribute, in order, on the element being started.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns,
                 const CXmlSerializationContext& context, bool flag) const override;

 private:
  friend class CElement;
  friend class detail::CElementReader;

  void CheckNamespace(const CAttribute* attribute) const;
  // Appends the attributes of the element in document order, each checked first against the
  // restriction (see FromXml_Int) unless `checkNamespaces` is false; their names come from the
  // cache.
  void ReadAttributesOf(const CXmlElement* element, detail::CNameCache& names,
                        bool checkNamespaces = true);
  void SetNamespaceRestrictions(const CSharedString& restriction,
                                const CSharedString& targetNamespace);

  CSharedString m_restriction;
  CSharedString m_targetNamespace;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_ATTRIBUTE_H
