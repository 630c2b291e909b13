// CTypedCollection<T>: a ready collection of one bound class T (a generated class or any other
// CXmlObjectBase with a default constructor), for members that repeat.
//
//   CSmartPtr<CTypedCollection<COrderLine>> lines =
//       new CTypedCollection<COrderLine>("line", "urn:orders", 1, -1);
//   CSmartPtr<COrderLine> line = lines->Add();   // a new, empty item at the end
//   for (COrderLine* l : *lines) ...
//
// Reading makes one new T for each consecutive element whose name and namespace match the
// collection's, and lets it read that element; writing writes each item in order. Insertions
// and removals send the events of CXmlCollection.
#ifndef OVXMLLIB6_METADATA_TYPEDCOLLECTION_H
#define OVXMLLIB6_METADATA_TYPEDCOLLECTION_H

#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/metadata/XmlCollection.h"
#include "OvXmlLib6/xml/XmlElement.h"

#include <string>

namespace OvXmlLib6 {

template <class T>
class CTypedCollection : public CXmlCollection {
 public:
  using iterator = COvIterator<T>;
  using const_iterator = COvIterator<T>;

  CTypedCollection(const char* elementName, const char* ns, int minOccurs, int maxOccurs)
      : CXmlCollection(elementName, ns, minOccurs, maxOccurs) {}

  // Appends the item; null throws COvInvalidParamException.
  void Add(T* item) { AppendItem(item); }
  // Appends a new T and returns it.
  CSmartPtr<T> Add() {
    CSmartPtr<T> item = new T();
    AppendItem(item.get());
    return item;
  }
  // 0 <= index <= GetCount(), else COvInvalidParamException "Index out of range".
  void AddAt(int index, T* item) { AddItemAt(index, item); }
  // A null `after` inserts at the front; a null `before` appends.
  void AddAfter(const T* after, T* item) { AddAfterItem(after, item); }
  void AddBefore(const T* before, T* item) { AddBeforeItem(before, item); }

  // Throws COvInvalidParamException "Index %d is out of range, use 0 - %d" for a bad index.
  CSmartPtr<T> Item(int index) const { return static_cast<T*>(GetNodeAtIndex(index)->GetItem()); }

  iterator begin() const { return iterator(GetHead()); }
  iterator end() const { return iterator(); }

 protected:
  // Each matching element is read by a new T (the element, then its children from the first),
  // which is then appended; the first element that does not match ends the run.
  CXmlElement* FromXml_Int(CXmlElement* /*parent*/, CXmlElement* current,
                           const CXmlSerializationContext& context, bool /*flag*/) override {
    const std::string& name = GetCollectionElementName();
    const std::string ns = GetNamespace();
    while (current != nullptr && DoesElementNameMatch(context, current, name.c_str(), ns.c_str())) {
      CSmartPtr<T> item = new T();
      CXmlObjectBase::FromXml_Int(item.get(), current, current->GetFirstElement(), context);
      AppendItem(item.get());
      current = current->GetNextSiblingElement();
    }
    return current;
  }
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_TYPEDCOLLECTION_H
