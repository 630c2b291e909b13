#include "OvXmlLib6/metadata/Element.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"
#include "core/FirstReference.h"
#include "core/Prefetch.h"
#include "core/RootOptions.h"
#include "core/Strings.h"
#include "metadata/AttributeRecords.h"
#include "metadata/ChildList.h"
#include "metadata/ElementReader.h"
#include "metadata/Restriction.h"
#include "xml/TreeStore.h"

#include <cstring>
#include <typeinfo>
#include <vector>

namespace OvXmlLib6 {

namespace {

void RequireRestriction(const char* restriction, const char* targetNamespace) {
  if (restriction == nullptr) {
    throw COvInvalidNamespaceException("Namespace Restriction must have a value");
  }
  if (targetNamespace == nullptr) {
    throw COvInvalidNamespaceException("Target Namespace must have a value");
  }
}

// The one namespace a restriction names, if it names one: the target namespace for
// "##targetNamespace", none for "##local", the URI of a single-URI restriction.
bool SingleNamespaceOf(const std::string& restriction, const std::string& targetNamespace,
                       std::string& ns) {
  if (restriction == "##targetNamespace") {
    ns = targetNamespace;
    return true;
  }
  if (restriction == "##local") {
    ns.clear();
    return true;
  }
  if (restriction.compare(0, 2, "##") == 0 || restriction.find(' ') != std::string::npos) {
    return false;
  }
  ns = restriction;
  return true;
}

}  // namespace

CElement::CElement(const char* name) : CInstanceMonitor("CElement") { Init(name, "", "##any", ""); }

CElement::CElement(const char* name, const char* ns) : CInstanceMonitor("CElement") {
  if (ns != nullptr && detail::IsNamespaceKeyword(ns)) {
    throw COvInvalidNamespaceException(FormatString("Invalid Namespace [%s]", ns));
  }
  Init(name, ns, "##any", "");
}

CElement::CElement(const char* name, const char* ns, const char* restriction,
                   const char* targetNamespace)
    : CInstanceMonitor("CElement") {
  Init(name, ns, restriction, targetNamespace);
}

CElement::CElement(CXmlObjectBase* owner, const char* name) : CInstanceMonitor("CElement") {
  const std::string ns = owner != nullptr ? owner->GetNamespace() : std::string();
  Init(name, ns.c_str(), "##any", "");
}

CElement::CElement(ForReading, const CSharedString& restriction,
                   const CSharedString& targetNamespace)
    : CInstanceMonitor("CElement"),
      m_restriction(restriction),
      m_targetNamespace(targetNamespace) {}

CElement::~CElement() {
  detail::CAttributeRecords::Delete(m_attributeRecords);
  detail::CChildList::Release(m_childList);
}

const CSharedString& CElement::ChildCollectionName() {
  static const CSharedString name = CSharedString::Permanent("AnyElement");
  return name;
}

const CSharedString& CElement::AttributeCollectionName() {
  static const CSharedString name = CSharedString::Permanent("AnyAttribute");
  return name;
}

void CElement::Init(const char* name, const char* ns, const char* restriction,
                    const char* targetNamespace) {
  if (name == nullptr) throw COvInvalidNamespaceException("Element Name must have a value");
  RequireRestriction(restriction, targetNamespace);
  detail::RequireNamespace(detail::OrEmpty(ns), restriction, targetNamespace);
  m_namespace = ns;
  m_restriction = detail::SharedRestriction(restriction);
  m_targetNamespace = targetNamespace;
  SetElementName(name);
}

void CElement::SetName(const char* name) {
  SetElementName(name);
  FireOnChangeName();
}

void CElement::SetNamespace(const char* ns) {
  m_namespace = ns;
  FireOnChangeNamespace();
}

void CElement::SetText(const char* text) {
  m_text = detail::OrEmpty(text);
  FireOnChangeText();
}

const CSmartPtr<CAttributeCol>& CElement::GetAttributes() const {
  // Made on first use: most elements of a large document have no attributes, and an element
  // object is copied in every read.
  if (!m_attributes) {
    CSmartPtr<CAttributeCol> attributes =
        new CAttributeCol(AttributeCollectionName(), m_restriction, m_targetNamespace);
    CElement* self = const_cast<CElement*>(this);
    if (m_attributeRecords != nullptr) {
      // The objects are made first, each with its one reference, and then linked in one step.
      // The records are copied, not moved: if memory runs out half-way, they are still whole.
      constexpr std::size_t kOnStack = 32;
      CXmlObjectBase* onStack[kOnStack];
      std::vector<CXmlObjectBase*> onHeap;
      const std::size_t count = m_attributeRecords->Count();
      CXmlObjectBase** made = onStack;
      if (count > kOnStack) {
        onHeap.resize(count);
        made = onHeap.data();
      }
      std::size_t done = 0;
      try {
        for (const detail::CAttributeRecords::Record& record : *m_attributeRecords) {
          CAttribute* attribute =
              new CAttribute(CAttribute::FromParts{}, record.ns, record.value, record.name);
          detail::CFirstReference::Take(attribute);
          made[done++] = attribute;
        }
        attributes->AdoptItems(made, count);
      } catch (...) {
        while (done > 0) made[--done]->Release();
        throw;
      }
    }
    self->m_attributes = std::move(attributes);
    detail::CAttributeRecords::Delete(self->m_attributeRecords);
    self->m_attributeRecords = nullptr;
  }
  return m_attributes;
}

CElementCol* CElement::ChildCollection() {
  if (!m_children) GetChildElements();
  return m_children.get();
}

const CSmartPtr<CElementCol>& CElement::GetChildElements() const {
  if (!m_children) {
    CSmartPtr<CElementCol> children =
        new CElementCol(ChildCollectionName(), m_restriction, m_targetNamespace, 0, -1);
    CElement* self = const_cast<CElement*>(this);
    // The list's references pass to the collection (or, if memory runs out, stay).
    if (m_childList != nullptr) {
      children->AdoptItems(m_childList->begin(), m_childList->Count());
      detail::CChildList::Free(self->m_childList);
    }
    self->m_children = std::move(children);
  }
  return m_children;
}

void CElement::SetNamespaceRestrictions(const char* restriction, const char* targetNamespace) {
  RequireRestriction(restriction, targetNamespace);
  m_restriction = detail::SharedRestriction(restriction);
  m_targetNamespace = targetNamespace;
  if (m_attributes) m_attributes->SetNamespaceRestrictions(m_restriction, m_targetNamespace);
  if (m_children) m_children->SetNamespaceRestrictions(m_restriction, m_targetNamespace);
}

CXmlElement* CElement::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* current,
                                   const CXmlSerializationContext& /*context*/, bool /*flag*/) {
  if (current == nullptr) return current;
  detail::CElementReader reader(*this, detail::CElementReader::Checks::Namespaces);
  reader.Replay(current);
  reader.Commit();
  return reader.Skipped() ? current : current->GetNextSiblingElement();
}

detail::CObjectReader* CElement::NewObjectReader(const CXmlSerializationContext& /*bindContext*/) {
  if (typeid(*this) != typeid(CElement)) return nullptr;
  return new detail::CElementReader(*this, detail::CElementReader::Checks::Namespaces);
}

void CElement::CopyXmlElement(const CXmlElement* element) {
  if (element == nullptr) return;
  detail::CElementReader reader(*this, detail::CElementReader::Checks::None);
  reader.Replay(element);
  reader.Commit();
}

void CElement::WriteStart(CXmlWriter* writer, bool isRoot,
                          const CXmlSerializationContext& context) const {
  if (isRoot) detail::CRootOptions::WritePrologue(writer, context);
  // The attributes and the text are requested now, so that they load while the start tag is
  // written. The lengths are passed on: the writer need not measure the strings.
  if (m_attributeRecords != nullptr) {
    detail::Prefetch(m_attributeRecords->begin());
  } else if (m_attributes) {
    detail::Prefetch(m_attributes->GetHead());
  }
  detail::Prefetch(m_text.c_str());
  writer->WriteStartElement(std::string_view(GetElementName()),
                            std::string_view(m_namespace.c_str(), m_namespace.size()));
  if (isRoot) detail::CRootOptions::WriteAttributes(writer, context);
  if (m_attributes) {
    CXmlObjectBase::AttributesToXml_Int(m_attributes.get(), writer, context);
  } else if (m_attributeRecords != nullptr) {
    for (const detail::CAttributeRecords::Record& record : *m_attributeRecords) {
      writer->WriteAttribute(std::string_view(record.name.str()), std::string_view(record.ns.str()),
                             std::string_view(record.value));
    }
  }
  if (isRoot) detail::CRootOptions::WriteInlineSchema(writer, context);
  if (!m_text.empty()) writer->WriteText(std::string_view(m_text.c_str(), m_text.size()));
}

void CElement::ToXml_Int(CXmlWriter* writer, bool isRoot, const char* /*ns*/,
                         const CXmlSerializationContext& context, bool flag) const {
  // Written with an explicit stack, as reading is, so that depth costs no stack. A frame walks
  // the children of one element: the nodes of its collection, or the list of a read element
  // whose collection nobody has asked for.
  struct Frame {
    const CXmlCollection::CNode* node;
    CXmlObjectBase* const* next;
    CXmlObjectBase* const* end;
    explicit Frame(const CElement* element) : node(nullptr), next(nullptr), end(nullptr) {
      if (element->m_children) {
        node = element->m_children->GetHead();
      } else if (element->m_childList != nullptr) {
        next = element->m_childList->begin();
        end = element->m_childList->end();
      }
    }
    // The next child; the one after it is requested, as it is needed once this child's subtree
    // has been written.
    CXmlObjectBase* Next() {
      if (node != nullptr) {
        CXmlObjectBase* item = node->GetItem();
        node = node->GetNext();
        detail::Prefetch(node);
        return item;
      }
      if (next == end) return nullptr;
      CXmlObjectBase* item = *next++;
      if (next != end) detail::Prefetch(*next);
      return item;
    }
  };
  std::vector<Frame> stack;
  WriteStart(writer, isRoot, context);
  stack.emplace_back(this);
  while (!stack.empty()) {
    CXmlObjectBase* item = stack.back().Next();
    if (item == nullptr) {
      writer->WriteEndElement();
      stack.pop_back();
      continue;
    }
    // Children are nearly always plain elements: the exact type is cheaper to test than a cast.
    const CElement* child = typeid(*item) == typeid(CElement) ? static_cast<const CElement*>(item)
                                                              : dynamic_cast<const CElement*>(item);
    if (child == nullptr) {
      // An item of another class writes itself.
      CXmlObjectBase::ToXml_Int(item, writer, false, item->GetNamespace().c_str(), context, flag);
      continue;
    }
    // The rest of the child is loaded in one go rather than field by field.
    detail::PrefetchObject(child);
    child->WriteStart(writer, false, context);
    stack.emplace_back(child);
  }
}

CElementCol::CElementCol(const char* elementName, const char* restriction,
                         const char* targetNamespace, int minOccurs, int maxOccurs)
    : CXmlCollection(elementName, "", minOccurs, maxOccurs), CInstanceMonitor("CElementCol") {
  RequireRestriction(restriction, targetNamespace);
  m_restriction = detail::SharedRestriction(restriction);
  m_targetNamespace = targetNamespace;
}

CElementCol::CElementCol(const CSharedString& elementName, const CSharedString& restriction,
                         const CSharedString& targetNamespace, int minOccurs, int maxOccurs)
    : CXmlCollection(elementName, CSharedString(), minOccurs, maxOccurs),
      CInstanceMonitor("CElementCol"),
      m_restriction(restriction),
      m_targetNamespace(targetNamespace) {}

CElementCol::~CElementCol() = default;

void CElementCol::SetNamespaceRestrictions(const char* restriction, const char* targetNamespace) {
  RequireRestriction(restriction, targetNamespace);
  m_restriction = detail::SharedRestriction(restriction);
  m_targetNamespace = targetNamespace;
}

void CElementCol::CheckNamespace(const CElement* element) const {
  if (element == nullptr) return;  // refused as a null item by the insertion itself
  detail::RequireNamespace(element->m_namespace.str(), m_restriction.str(),
                           m_targetNamespace.str());
}

void CElementCol::Add(CElement* element) {
  CSmartPtr<CElement> hold(element);
  CheckNamespace(element);
  AppendItem(element);
}

void CElementCol::Add(const char* name) {
  std::string ns;
  if (!SingleNamespaceOf(m_restriction, m_targetNamespace, ns)) {
    throw COvInvalidStateException("A Namespace has not been set for this Collection");
  }
  Add(new CElement(name, ns.c_str(), m_restriction.c_str(), m_targetNamespace.c_str()));
}

void CElementCol::Add(const char* name, const char* ns) {
  Add(new CElement(name, ns, m_restriction.c_str(), m_targetNamespace.c_str()));
}

void CElementCol::AddAfter(const CElement* after, CElement* element) {
  CSmartPtr<CElement> hold(element);
  CheckNamespace(element);
  AddAfterItem(after, element);
}

void CElementCol::AddBefore(const CElement* before, CElement* element) {
  CSmartPtr<CElement> hold(element);
  CheckNamespace(element);
  AddBeforeItem(before, element);
}

CSmartPtr<CElement> CElementCol::Item(int index) const {
  return static_cast<CElement*>(GetNodeAtIndex(index)->GetItem());
}

CXmlElement* CElementCol::FromXml_Int(CXmlElement* parent, CXmlElement* current,
                                      const CXmlSerializationContext& context, bool /*flag*/) {
  while (current != nullptr &&
         detail::NamespaceSatisfies(current->GetNamespaceURI(), m_restriction.str(),
                                    m_targetNamespace.str())) {
    CSmartPtr<CElement> element =
        new CElement(GetCollectionElementName().c_str(), current->GetNamespaceURI().c_str(),
                     m_restriction.c_str(), m_targetNamespace.c_str());
    CXmlElement* next = CXmlObjectBase::FromXml_Int(element.get(), parent, current, context);
    if (next == current) break;
    Add(element.get());
    current = next;
  }
  return current;
}

}  // namespace OvXmlLib6
