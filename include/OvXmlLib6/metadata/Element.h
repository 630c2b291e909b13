// CElement and CElementCol: the untyped holders of a schema's element wildcard. A CElement holds
// one element of any name: its namespace, its text, its attributes (CAttributeCol) and its child
// elements (CElementCol). Any XML document can be read into a CElement tree and written back.
//
//   CSmartPtr<CElement> root = new CElement("root");
//   root->FromXml("<order xmlns='urn:o'><line n='1'>pen</line></order>");
//   for (CElement* child : *root->GetChildElements()) ... child->GetName(), child->GetText() ...
//   std::string xml = root->ToXml(false, false, EOLType_LF);
//
// Every element carries the wildcard's namespace restriction and target namespace (see
// Attribute.h for the tokens) and passes them on to its attribute and child collections: reading
// refuses content in a namespace that the restriction forbids.
//
// Reading, writing and destroying a tree do not recurse per level, so trees of any depth (a
// document nested 100,000 deep, say) are handled in bounded stack space. An element's text is
// the concatenation of all character data directly inside it; it is written before the child
// elements.
#ifndef OVXMLLIB6_METADATA_ELEMENT_H
#define OVXMLLIB6_METADATA_ELEMENT_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/core/PooledObject.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/metadata/XmlCollection.h"

#include <string>

namespace OvXmlLib6 {

class CElementCol;
namespace detail {
class CAttributeRecords;
class CChildList;
class CElementReader;
}  // namespace detail

class OVXML_API CElement : public CXmlObjectBase, public CPooledObject, private CInstanceMonitor {
 public:
  // An element in no namespace that admits any content ("##any").
  explicit CElement(const char* name);
  // An element in the namespace, which must be a concrete one: a keyword ("##any", "##other",
  // "##local", "##targetNamespace") throws COvInvalidNamespaceException "Invalid Namespace [%s]".
  CElement(const char* name, const char* ns);
  // Null arguments throw COvInvalidNamespaceException ("Element Name must have a value",
  // "Namespace Restriction must have a value", "Target Namespace must have a value"); a null
  // namespace is taken as the empty one. The namespace must satisfy the restriction.
  CElement(const char* name, const char* ns, const char* restriction, const char* targetNamespace);
  // An element in the namespace of `owner` (none when owner is null) that admits any content.
  CElement(CXmlObjectBase* owner, const char* name);
  CElement(const CElement&) = delete;
  CElement& operator=(const CElement&) = delete;
  ~CElement() override;

  CXmlObjectBase* GetBase() override { return this; }

  const std::string& GetName() const { return GetElementName(); }
  void SetName(const char* name);
  std::string GetNamespace() const override { return m_namespace; }
  void SetNamespace(const char* ns);
  const std::string& GetText() const { return m_text; }
  void SetText(const char* text);

  // The collections are made on first request and then stay with the element.
  const CSmartPtr<CAttributeCol>& GetAttributes() const;
  const CSmartPtr<CElementCol>& GetChildElements() const;

  const std::string& GetNamespaceRestriction() const { return m_restriction.str(); }
  const std::string& GetRestrictionTargetNamespace() const { return m_targetNamespace.str(); }
  // Sets the restriction of this element and of its attribute and child collections.
  void SetNamespaceRestrictions(const char* restriction, const char* targetNamespace);

  // Replaces the content of this element with a copy of `element` and its whole subtree: name,
  // namespace, text, attributes and children, without namespace checks; the children take the
  // restriction of this element's child collection. Null empties nothing and returns.
  void CopyXmlElement(const CXmlElement* element);

 protected:
  std::string GetTargetNamespace() const override { return m_targetNamespace; }

  // Writes the element: the start tag with its attributes, its text, its children, the end tag.
  // As the root (isRoot) it also writes the context's processing instructions, namespace
  // declarations, default namespace, additional root attributes and in-line schema.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns,
                 const CXmlSerializationContext& context, bool flag) const override;
  // Reads `current` and its subtree when its namespace satisfies the restriction and returns
  // its next sibling; otherwise returns `current` unchanged. A child element that the child
  // collection refuses throws COvValidationException "Invalid Element [%s] found in element
  // [%s]"; a failed read leaves the element unchanged.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;
  // A CElement (not a derived class, which may read differently) is read while the document is
  // parsed; a read that fails leaves it unchanged.
  detail::CObjectReader* NewObjectReader(const CXmlSerializationContext& bindContext) override;

  // Notifications of the setters, for derived classes; nothing happens here.
  virtual void FireOnChangeName() {}
  virtual void FireOnChangeNamespace() {}
  virtual void FireOnChangeText() {}

 private:
  friend class CElementCol;
  friend class detail::CElementReader;

  // For reading: a child element made under its parent's restriction, whose namespace the
  // reader has already checked against it. The reader sets the name and namespace.
  struct ForReading {};
  CElement(ForReading, const CSharedString& restriction, const CSharedString& targetNamespace);

  void Init(const char* name, const char* ns, const char* restriction, const char* targetNamespace);
  // The element names of the collections made for the content, shared by all elements.
  static const CSharedString& ChildCollectionName();
  static const CSharedString& AttributeCollectionName();
  CElementCol* ChildCollection();
  // Starts the element on the writer: start tag and attributes (and the root's extras).
  void WriteStart(CXmlWriter* writer, bool isRoot, const CXmlSerializationContext& context) const;

  // The name is the object's element name.
  CSharedString m_namespace;
  CSharedString m_restriction;
  CSharedString m_targetNamespace;
  std::string m_text;
  CSmartPtr<CAttributeCol> m_attributes;
  CSmartPtr<CElementCol> m_children;
  // Attributes read from a document and not yet asked for (never together with m_attributes):
  // GetAttributes turns them into the collection.
  detail::CAttributeRecords* m_attributeRecords = nullptr;
  // Likewise the child elements read from a document (never together with m_children).
  detail::CChildList* m_childList = nullptr;
};

class OVXML_API CElementCol : public CXmlCollection,
                              public CPooledObject,
                              private CInstanceMonitor {
 public:
  using iterator = COvIterator<CElement>;
  using const_iterator = COvIterator<CElement>;

  // The restriction is checked for sense (a null restriction or target namespace throws as for
  // CElement).
  CElementCol(const char* elementName, const char* restriction, const char* targetNamespace,
              int minOccurs, int maxOccurs);
  CElementCol(const CSharedString& elementName, const CSharedString& restriction,
              const CSharedString& targetNamespace, int minOccurs, int maxOccurs);
  ~CElementCol() override;

  // Appends the element; its namespace must satisfy the collection's restriction.
  void Add(CElement* element);
  // Appends a new element in the namespace the restriction names ("##targetNamespace": the
  // target namespace; "##local": none; a single URI: that URI); for a restriction that names
  // no single namespace ("##any", "##other", lists) throws COvInvalidStateException "A Namespace
  // has not been set for this Collection".
  void Add(const char* name);
  // Appends a new element in the namespace, which must satisfy the restriction.
  void Add(const char* name, const char* ns);
  // A null `after` inserts at the front; a null `before` appends.
  void AddAfter(const CElement* after, CElement* element);
  void AddBefore(const CElement* before, CElement* element);

  // Throws COvInvalidParamException "Index %d is out of range, use 0 - %d" for a bad index.
  CSmartPtr<CElement> Item(int index) const;

  iterator begin() const { return iterator(GetHead()); }
  iterator end() const { return iterator(); }

  const std::string& GetNamespaceRestriction() const { return m_restriction.str(); }
  const std::string& GetRestrictionTargetNamespace() const { return m_targetNamespace.str(); }
  void SetNamespaceRestrictions(const char* restriction, const char* targetNamespace);

 protected:
  // Reads consecutive elements whose namespace satisfies the restriction, one new CElement
  // each, and returns the first element not taken.
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;

 private:
  friend class CElement;
  friend class detail::CElementReader;

  void CheckNamespace(const CElement* element) const;
  void SetNamespaceRestrictions(const CSharedString& restriction,
                                const CSharedString& targetNamespace) {
    m_restriction = restriction;
    m_targetNamespace = targetNamespace;
  }

  CSharedString m_restriction;
  CSharedString m_targetNamespace;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_ELEMENT_H
