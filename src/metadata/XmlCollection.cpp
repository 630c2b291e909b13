#include "OvXmlLib6/metadata/XmlCollection.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/ObjectMemory.h"
#include "core/Prefetch.h"

namespace OvXmlLib6 {

CXmlCollection::CXmlCollection() : m_head(nullptr), m_tail(nullptr), m_count(0) {}

CXmlCollection::CXmlCollection(const char* elementName, const char* ns, int minOccurs,
                               int maxOccurs)
    : CXmlCollectionBase(elementName, ns, minOccurs, maxOccurs),
      m_head(nullptr),
      m_tail(nullptr),
      m_count(0) {}

CXmlCollection::CXmlCollection(const CSharedString& elementName, const CSharedString& ns,
                               int minOccurs, int maxOccurs)
    : CXmlCollectionBase(elementName, ns, minOccurs, maxOccurs),
      m_head(nullptr),
      m_tail(nullptr),
      m_count(0) {}

CXmlCollection::~CXmlCollection() {
  if (!HasEventListeners()) {
    // Nobody watches: the nodes go one after the other without relinking the list, the next
    // node and its item requested while the current one goes.
    CNode* node = m_head;
    m_head = m_tail = nullptr;
    m_count = 0;
    while (node != nullptr) {
      CNode* next = node->m_next;
      if (next != nullptr) {
        detail::Prefetch(next);
        detail::Prefetch(next->m_item);
      }
      CXmlObjectBase* item = node->m_item;
      node->~CNode();
      detail::FreeSmall(node, sizeof(CNode));
      item->Release();
      node = next;
    }
    return;
  }
  while (m_head != nullptr) {
    // A destructor cannot pass on a listener's exception: the node goes regardless.
    try {
      FireOnCollectionRemove(-1);
    } catch (...) {
    }
    UnlinkNode(m_head);
    try {
      FireOnCollectionRemoveComplete(-1);
      FireOnCollectionChange();
    } catch (...) {
    }
  }
}

void CXmlCollection::Clear() {
  while (GetCount() > 0) Remove(0);
}

void CXmlCollection::Remove(int index) { RemoveNode(GetNodeAtIndex(index)); }

void CXmlCollection::RequireItem(const CXmlObjectBase* item) {
  if (item == nullptr) {
    throw COvInvalidParamException("A NULL item cannot be added to a collection");
  }
}

void CXmlCollection::InsertBetween(CNode* previous, CNode* next, CXmlObjectBase* item) {
  CNode* node;
  try {
    node = new (detail::AllocateSmall(sizeof(CNode))) CNode(item, previous, next);
  } catch (...) {
    // An item that nobody holds is deleted rather than leaked; a held one keeps its count.
    item->AddRef();
    item->Release();
    throw;
  }
  item->AddRef();
  if (previous != nullptr) {
    previous->m_next = node;
  } else {
    m_head = node;
  }
  if (next != nullptr) {
    next->m_previous = node;
  } else {
    m_tail = node;
  }
  ++m_count;
}

void CXmlCollection::AppendItem(CXmlObjectBase* item) {
  RequireItem(item);
  if (!HasEventListeners()) {
    // Nothing can run between the checks and the link: no hold is needed.
    InsertBetween(m_tail, nullptr, item);
    return;
  }
  CSmartPtr<CXmlObjectBase> hold(item);
  FireOnCollectionAdd(item);
  InsertBetween(m_tail, nullptr, item);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlCollection::PrependItem(CXmlObjectBase* item) {
  RequireItem(item);
  CSmartPtr<CXmlObjectBase> hold(item);
  FireOnCollectionAdd(item);
  InsertBetween(nullptr, m_head, item);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlCollection::AddItemAt(int index, CXmlObjectBase* item) {
  RequireItem(item);
  CSmartPtr<CXmlObjectBase> hold(item);
  if (index < 0 || index > m_count) throw COvInvalidParamException("Index out of range");
  if (index == m_count) {
    AppendItem(item);
    return;
  }
  CNode* at = GetNodeAtIndex(index);
  FireOnCollectionAdd(item);
  InsertBetween(at->m_previous, at, item);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlCollection::AddAfterItem(const CXmlObjectBase* after, CXmlObjectBase* item) {
  RequireItem(item);
  CSmartPtr<CXmlObjectBase> hold(item);
  if (after == nullptr) {
    PrependItem(item);
    return;
  }
  FireOnCollectionAdd(item);
  CNode* node = GetNodeForItem(after);
  InsertBetween(node, node->m_next, item);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlCollection::AddBeforeItem(const CXmlObjectBase* before, CXmlObjectBase* item) {
  RequireItem(item);
  CSmartPtr<CXmlObjectBase> hold(item);
  if (before == nullptr) {
    AppendItem(item);
    return;
  }
  FireOnCollectionAdd(item);
  CNode* node = GetNodeForItem(before);
  InsertBetween(node->m_previous, node, item);
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

CXmlCollection::CNode* CXmlCollection::GetNodeAtIndex(int index) const {
  if (index < 0 || index >= m_count) ThrowIndexOutOfRange(index, m_count);
  CNode* node = m_head;
  for (int i = 0; i < index; ++i) node = node->m_next;
  return node;
}

CXmlCollection::CNode* CXmlCollection::GetNodeForItem(const CXmlObjectBase* item) const {
  if (item != nullptr) {
    // Items are compared by the object that represents them, so two wrappers over one base
    // object are the same item. GetBase only reads, whatever its constness.
    CXmlObjectBase* wanted = const_cast<CXmlObjectBase*>(item)->GetBase();
    for (CNode* node = m_head; node != nullptr; node = node->m_next) {
      if (node->m_item->GetBase() == wanted) return node;
    }
  }
  throw COvInvalidParamException("The object was not found in the collection");
}

void CXmlCollection::UnlinkNode(CNode* node) noexcept {
  if (node->m_previous != nullptr) {
    node->m_previous->m_next = node->m_next;
  } else {
    m_head = node->m_next;
  }
  if (node->m_next != nullptr) {
    node->m_next->m_previous = node->m_previous;
  } else {
    m_tail = node->m_previous;
  }
  CXmlObjectBase* item = node->m_item;
  node->~CNode();
  detail::FreeSmall(node, sizeof(CNode));
  --m_count;
  item->Release();
}

void CXmlCollection::RemoveNode(CNode* node) {
  if (node == nullptr) return;
  FireOnCollectionRemove(-1);
  UnlinkNode(node);
  FireOnCollectionRemoveComplete(-1);
  FireOnCollectionChange();
}

void CXmlCollection::TakeItemsOf(CXmlCollection& other) {
  if (&other == this) return;
  if (!HasEventListeners() && !other.HasEventListeners()) {
    if (other.m_head == nullptr) return;
    other.m_head->m_previous = m_tail;
    if (m_tail != nullptr) {
      m_tail->m_next = other.m_head;
    } else {
      m_head = other.m_head;
    }
    m_tail = other.m_tail;
    m_count += other.m_count;
    other.m_head = other.m_tail = nullptr;
    other.m_count = 0;
    return;
  }
  while (other.m_head != nullptr) {
    AppendItem(other.m_head->m_item);
    other.RemoveNode(other.m_head);
  }
}

void CXmlCollection::AdoptItems(CXmlObjectBase* const* items, std::size_t count) {
  if (count == 0) return;
  CNode* first = nullptr;
  CNode* last = nullptr;
  try {
    for (std::size_t i = 0; i < count; ++i) {
      CNode* node = new (detail::AllocateSmall(sizeof(CNode))) CNode(items[i], last, nullptr);
      if (last != nullptr) {
        last->m_next = node;
      } else {
        first = node;
      }
      last = node;
    }
  } catch (...) {
    while (first != nullptr) {
      CNode* next = first->m_next;
      first->~CNode();
      detail::FreeSmall(first, sizeof(CNode));
      first = next;
    }
    throw;
  }
  first->m_previous = m_tail;
  if (m_tail != nullptr) {
    m_tail->m_next = first;
  } else {
    m_head = first;
  }
  m_tail = last;
  m_count += static_cast<std::int32_t>(count);
}

void CXmlCollection::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                               const CXmlSerializationContext& context, bool flag) const {
  const std::string ns = GetNamespace();
  for (CNode* node = m_head; node != nullptr; node = node->m_next) {
    CXmlObjectBase::ToXml_Int(node->m_item, writer, false, ns.c_str(), context, flag);
  }
}

void CXmlCollection::AttributesToXml_Int(CXmlWriter* writer,
                                         const CXmlSerializationContext& context) const {
  // The items are usually attributes spread over the heap: the next node, and all the lines of
  // the item that its writing reads, are requested at once instead of one after the other.
  constexpr std::size_t kItemBytes = 192;
  for (CNode* node = m_head; node != nullptr; node = node->m_next) {
    detail::Prefetch(node->m_next);
    detail::PrefetchRange(node->m_item, kItemBytes);
    CXmlObjectBase::AttributesToXml_Int(node->m_item, writer, context);
  }
}

}  // namespace OvXmlLib6
