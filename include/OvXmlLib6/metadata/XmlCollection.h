// CXmlCollection: an ordered list of bound objects, the base of the collections of generated
// classes and of the wildcard collections. Items are shared: the list holds one reference to each
// and callers may hold others.
//
// Every insertion sends, in order, add (the item), add complete (the item) and change; every
// removal sends remove (-1), remove complete (-1) and change. The remove events carry -1, not the
// index. A failed insertion leaves the list unchanged, but its add event may already have gone out.
//
// COvIterator<T>: a forward iterator over the items of a collection that holds only T objects;
// *it is the T* the collection holds. Adding or removing items invalidates iterators to the
// removed node only, as with a std::list.
#ifndef OVXMLLIB6_METADATA_XMLCOLLECTION_H
#define OVXMLLIB6_METADATA_XMLCOLLECTION_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"

#include <cstddef>
#include <cstdint>
#include <iterator>

namespace OvXmlLib6 {

class OVXML_API CXmlCollection : public CXmlCollectionBase {
 public:
  // One link of the list. The node owns one reference to its item.
  class OVXML_API CNode {
   public:
    CXmlObjectBase* GetItem() const { return m_item; }
    CNode* GetNext() const { return m_next; }
    CNode* GetPrevious() const { return m_previous; }

   private:
    friend class CXmlCollection;
    CNode(CXmlObjectBase* item, CNode* previous, CNode* next)
        : m_item(item), m_next(next), m_previous(previous) {}

    CXmlObjectBase* m_item;
    CNode* m_next;
    CNode* m_previous;
  };

  CXmlCollection();
  CXmlCollection(const char* elementName, const char* ns, int minOccurs, int maxOccurs);
  CXmlCollection(const CSharedString& elementName, const CSharedString& ns, int minOccurs,
                 int maxOccurs);
  // Items cannot be shared by two lists by copying the list.
  CXmlCollection(const CXmlCollection&) = delete;
  CXmlCollection& operator=(const CXmlCollection&) = delete;
  // Removes the items one by one from the front, each removal sending its events.
  ~CXmlCollection() override;

  int GetCount() const override { return m_count; }
  // Removes every item, from the front, each with its events.
  void Clear() override;
  // Throws COvInvalidParamException "Index %d is out of range, use 0 - %d" for a bad index.
  void Remove(int index) override;

  // The first and last nodes, null when empty.
  CNode* GetHead() const { return m_head; }
  CNode* GetTail() const { return m_tail; }

 protected:
  // The insertions. A null item is refused with COvInvalidParamException before any event. The
  // item is held for the duration of the call, so an item that nobody else holds is deleted
  // when the insertion fails rather than leaked.
  void AppendItem(CXmlObjectBase* item);
  void PrependItem(CXmlObjectBase* item);
  // 0 <= index <= count, else COvInvalidParamException "Index out of range"; index == count
  // appends, otherwise the item goes before the node at the index.
  void AddItemAt(int index, CXmlObjectBase* item);
  // A null `after` puts the item first; otherwise it goes after `after`'s node.
  void AddAfterItem(const CXmlObjectBase* after, CXmlObjectBase* item);
  // A null `before` puts the item last; otherwise it goes before `before`'s node.
  void AddBeforeItem(const CXmlObjectBase* before, CXmlObjectBase* item);

  // Throws COvInvalidParamException "Index %d is out of range, use 0 - %d" for a bad index.
  CNode* GetNodeAtIndex(int index) const;
  // The node whose item has the same GetBase() as `item`; throws COvInvalidParamException
  // "The object was not found in the collection" when there is none.
  CNode* GetNodeForItem(const CXmlObjectBase* item) const;
  // Unlinks and frees the node, releasing its item. The node must belong to this list.
  void RemoveNode(CNode* node);
  // Appends the items of `other` in order and empties it, each move with the events of both
  // lists; when neither has listeners the nodes themselves change lists.
  void TakeItemsOf(CXmlCollection& other);
  // Appends the items, taking over one reference to each from the caller, without events: for a
  // collection that nobody can observe yet. Every node is made before any is linked, so if
  // memory runs out nothing changes and the caller keeps its references.
  void AdoptItems(CXmlObjectBase* const* items, std::size_t count);

  // Writes the items in order; each item writes its own element.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns,
                 const CXmlSerializationContext& context, bool flag) const override;
  // Writes the attributes of every item in order (pseudo-element items put their attributes on
  // the open parent element).
  void AttributesToXml_Int(CXmlWriter* writer,
                           const CXmlSerializationContext& context) const override;

 private:
  // Links a new node for `item` between `previous` and `next` (either may be null), with the
  // events around it.
  void InsertBetween(CNode* previous, CNode* next, CXmlObjectBase* item);
  static void RequireItem(const CXmlObjectBase* item);
  // Unlinks and frees the node and releases its item.
  void UnlinkNode(CNode* node) noexcept;

  CNode* m_head;
  CNode* m_tail;
  std::int32_t m_count;
};

template <class T>
class COvIterator {
 public:
  using iterator_category = std::forward_iterator_tag;
  using value_type = T*;
  using difference_type = std::ptrdiff_t;
  using pointer = T* const*;
  using reference = T*;

  COvIterator() : m_node(nullptr) {}
  explicit COvIterator(const CXmlCollection::CNode* node) : m_node(node) {}

  T* operator*() const { return static_cast<T*>(m_node->GetItem()); }
  COvIterator& operator++() {
    m_node = m_node->GetNext();
    return *this;
  }
  COvIterator operator++(int) {
    COvIterator old = *this;
    m_node = m_node->GetNext();
    return old;
  }
  friend bool operator==(const COvIterator& a, const COvIterator& b) {
    return a.m_node == b.m_node;
  }
  friend bool operator!=(const COvIterator& a, const COvIterator& b) {
    return a.m_node != b.m_node;
  }

 private:
  const CXmlCollection::CNode* m_node;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_XMLCOLLECTION_H
