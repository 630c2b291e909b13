#include "xml/TreeStore.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <new>
#include <utility>

namespace OvXmlLib6 {
namespace detail {

// Short text is stored in the bytes of a slot, after its low-order byte (the tag).
#if defined(__BYTE_ORDER__) && __BYTE_ORDER__ != __ORDER_LITTLE_ENDIAN__
#error "The text slots of the tree assume a little-endian machine"
#endif

namespace {
constexpr std::size_t kMaxRecordSize = std::numeric_limits<std::uint32_t>::max();
// Real documents use a few hundred distinct names. Past this many, further names get records of
// their own without entering the look-up tables, so that a hostile document with a million
// different names costs memory in proportion to its size, not hash-table churn.
constexpr std::size_t kMaxSharedNames = 16384;
}  // namespace

CTreeStore::CTreeStore(const CXmlDocument* document)
    : m_emptyName{document, this, std::string(), std::string()}, m_encoder(new CTextEncoder()) {}

CTreeStore::~CTreeStore() {
  if (m_retiredRoot != nullptr) Clear(m_retiredRoot);
}

// ---- Names -----------------------------------------------------------------------------------

const CXmlName* CTreeStore::Intern(std::string_view namespaceURI, std::string_view localName) {
  if (namespaceURI.empty() && localName.empty()) return &m_emptyName;
  std::string key;
  key.reserve(namespaceURI.size() + 1 + localName.size());
  key.append(namespaceURI).push_back('\0');
  key.append(localName);
  const auto it = m_byParts.find(key);
  if (it != m_byParts.end()) return it->second;
  m_names.push_back(
      CXmlName{m_emptyName.document, this, std::string(localName), std::string(namespaceURI)});
  const CXmlName* name = &m_names.back();
  m_byParts.emplace(std::move(key), name);
  return name;
}

const CXmlName* CTreeStore::InternParserNameSlow(std::string_view raw) {
  std::string converted;
  m_encoder->FromUtf8(raw, converted);
  const std::size_t bar = converted.find('|');
  const std::string_view whole(converted);
  const std::string_view ns = bar == std::string::npos ? std::string_view() : whole.substr(0, bar);
  const std::string_view local = bar == std::string::npos ? whole : whole.substr(bar + 1);
  if (m_byParserName.size() >= kMaxSharedNames) {
    // The tables are full: the name gets a record of its own.
    m_names.push_back(CXmlName{m_emptyName.document, this, std::string(local), std::string(ns)});
    return &m_names.back();
  }
  const CXmlName* name = Intern(ns, local);
  char* key = static_cast<char*>(m_arena.Allocate(raw.size() == 0 ? 1 : raw.size()));
  if (!raw.empty()) std::memcpy(key, raw.data(), raw.size());
  m_byParserName.emplace(std::string_view(key, raw.size()), name);
  return name;
}

// ---- Text slots ------------------------------------------------------------------------------

CTreeStore::TextRecord* CTreeStore::NewTextRecord(std::size_t capacity) {
  TextRecord* record = static_cast<TextRecord*>(m_arena.Allocate(sizeof(TextRecord) + capacity));
  record->size = 0;
  record->capacity = static_cast<std::uint32_t>(capacity);
  return record;
}

std::uintptr_t CTreeStore::NewText(const char* data, std::size_t size) {
  if (size == 0) return 0;
  if (size <= kMaxInline) {
    std::uintptr_t slot = 0;
    unsigned char* bytes = reinterpret_cast<unsigned char*>(&slot);
    bytes[0] = static_cast<unsigned char>((size << 2) | kInline);
    std::memcpy(bytes + 1, data, size);
    return slot;
  }
  if (size > kMaxRecordSize) {
    std::uintptr_t slot = 0;
    AppendText(slot, data, size);
    return slot;
  }
  TextRecord* record = NewTextRecord(size);
  std::memcpy(record->Data(), data, size);
  record->size = static_cast<std::uint32_t>(size);
  return reinterpret_cast<std::uintptr_t>(record);
}

void CTreeStore::AppendText(std::uintptr_t& slot, const char* data, std::size_t size) {
  if (size == 0) return;
  if (slot == 0 && size <= kMaxRecordSize) {
    slot = NewText(data, size);
    return;
  }
  if ((slot & kTagMask) == kInline) {
    // Short text moves into a record (or stays in the slot while it fits).
    char joined[kMaxInline];
    const std::string_view current = TextView(slot);
    const std::size_t needed = current.size() + size;
    if (needed <= kMaxInline) {
      std::memcpy(joined, current.data(), current.size());
      std::memcpy(joined + current.size(), data, size);
      slot = NewText(joined, needed);
      return;
    }
    if (needed <= kMaxRecordSize) {
      TextRecord* record = NewTextRecord(std::max<std::size_t>(needed, 2 * kMaxInline + 2));
      std::memcpy(record->Data(), current.data(), current.size());
      std::memcpy(record->Data() + current.size(), data, size);
      record->size = static_cast<std::uint32_t>(needed);
      slot = reinterpret_cast<std::uintptr_t>(record);
      return;
    }
    TextString(slot);
  }
  if ((slot & kMaterialized) == 0) {
    TextRecord* record = reinterpret_cast<TextRecord*>(slot);
    const std::size_t current = record != nullptr ? record->size : 0;
    const std::size_t needed = current + size;
    if (record != nullptr && needed <= record->capacity) {
      std::memcpy(record->Data() + current, data, size);
      record->size = static_cast<std::uint32_t>(needed);
      return;
    }
    if (needed <= kMaxRecordSize) {
      // Doubling growth keeps many small appends linear.
      const std::size_t capacity =
          std::min(std::max(needed, 2 * std::size_t{record->capacity}), kMaxRecordSize);
      TextRecord* grown = NewTextRecord(capacity);
      std::memcpy(grown->Data(), record->Data(), current);
      std::memcpy(grown->Data() + current, data, size);
      grown->size = static_cast<std::uint32_t>(needed);
      m_arena.Free(record, sizeof(TextRecord) + record->capacity);
      slot = reinterpret_cast<std::uintptr_t>(grown);
      return;
    }
    TextString(slot);  // too long for a record: it continues as a std::string
  }
  std::string& text = *reinterpret_cast<std::string*>(slot & ~kMaterialized);
  const std::size_t needed = text.size() + size;
  if (!text.empty() && text.capacity() < needed) {
    text.reserve(std::max(2 * text.capacity(), needed));
  }
  text.append(data, size);
}

const std::string& CTreeStore::TextString(std::uintptr_t& slot) {
  if ((slot & kMaterialized) == 0) {
    const std::string_view view = TextView(slot);
    void* memory = m_arena.Allocate(sizeof(std::string));
    std::string* text = new (memory) std::string(view);
    if (slot != 0 && (slot & kTagMask) == 0) {
      TextRecord* record = reinterpret_cast<TextRecord*>(slot);
      m_arena.Free(record, sizeof(TextRecord) + record->capacity);
    }
    slot = reinterpret_cast<std::uintptr_t>(text) | kMaterialized;
  }
  return *reinterpret_cast<const std::string*>(slot & ~kMaterialized);
}

std::string_view CTreeStore::TextView(const std::uintptr_t& slot) {
  if (slot == 0) return std::string_view();
  if ((slot & kTagMask) == kInline) {
    const char* bytes = reinterpret_cast<const char*>(&slot);
    return std::string_view(bytes + 1, (slot & 0xFF) >> 2);
  }
  if ((slot & kMaterialized) != 0) return *reinterpret_cast<const std::string*>(slot - 1);
  TextRecord* record = reinterpret_cast<TextRecord*>(slot);
  return std::string_view(record->Data(), record->size);
}

void CTreeStore::ReleaseText(std::uintptr_t slot, bool reuse) {
  if (slot == 0 || (slot & kTagMask) == kInline) return;
  if ((slot & kMaterialized) != 0) {
    std::string* text = reinterpret_cast<std::string*>(slot & ~kMaterialized);
    text->~basic_string();
    if (reuse) m_arena.Free(text, sizeof(std::string));
  } else if (reuse) {
    TextRecord* record = reinterpret_cast<TextRecord*>(slot);
    m_arena.Free(record, sizeof(TextRecord) + record->capacity);
  }
}

// ---- Attribute lists -------------------------------------------------------------------------

std::uintptr_t CTreeStore::NewAttributeList(std::size_t capacity) {
  ListRecord* list = static_cast<ListRecord*>(
      m_arena.Allocate(sizeof(ListRecord) + capacity * sizeof(CXmlAttribute*)));
  list->count = 0;
  list->capacity = static_cast<std::uint32_t>(capacity);
  return reinterpret_cast<std::uintptr_t>(list);
}

void CTreeStore::AddToAttributeList(std::uintptr_t& slot, CXmlAttribute* attribute) {
  if ((slot & kMaterialized) != 0) {
    reinterpret_cast<std::vector<CXmlAttribute*>*>(slot & ~kMaterialized)->push_back(attribute);
    return;
  }
  ListRecord* list = reinterpret_cast<ListRecord*>(slot);
  if (list == nullptr || list->count == list->capacity) {
    const std::size_t capacity = list == nullptr ? 4 : 2 * std::size_t{list->capacity};
    ListRecord* grown = reinterpret_cast<ListRecord*>(NewAttributeList(capacity));
    if (list != nullptr) {
      std::copy(list->Items(), list->Items() + list->count, grown->Items());
      grown->count = list->count;
      m_arena.Free(list, sizeof(ListRecord) + list->capacity * sizeof(CXmlAttribute*));
    }
    list = grown;
    slot = reinterpret_cast<std::uintptr_t>(list);
  }
  list->Items()[list->count++] = attribute;
}

const std::vector<CXmlAttribute*>& CTreeStore::AttributeVector(std::uintptr_t& slot) {
  if ((slot & kMaterialized) == 0) {
    ListRecord* list = reinterpret_cast<ListRecord*>(slot);
    void* memory = m_arena.Allocate(sizeof(std::vector<CXmlAttribute*>));
    auto* vector = new (memory) std::vector<CXmlAttribute*>();
    try {
      if (list != nullptr) vector->assign(list->Items(), list->Items() + list->count);
    } catch (...) {
      vector->~vector();
      m_arena.Free(memory, sizeof(std::vector<CXmlAttribute*>));
      throw;
    }
    if (list != nullptr) {
      m_arena.Free(list, sizeof(ListRecord) + list->capacity * sizeof(CXmlAttribute*));
    }
    slot = reinterpret_cast<std::uintptr_t>(vector) | kMaterialized;
  }
  return *reinterpret_cast<const std::vector<CXmlAttribute*>*>(slot & ~kMaterialized);
}

std::size_t CTreeStore::AttributeCount(std::uintptr_t slot) {
  if (slot == 0) return 0;
  if ((slot & kMaterialized) != 0) {
    return reinterpret_cast<const std::vector<CXmlAttribute*>*>(slot - 1)->size();
  }
  return reinterpret_cast<const ListRecord*>(slot)->count;
}

CXmlAttribute* const* CTreeStore::AttributeItems(std::uintptr_t slot) {
  if (slot == 0) return nullptr;
  if ((slot & kMaterialized) != 0) {
    return reinterpret_cast<const std::vector<CXmlAttribute*>*>(slot - 1)->data();
  }
  return reinterpret_cast<ListRecord*>(slot)->Items();
}

// ---- Nodes -----------------------------------------------------------------------------------

CXmlElement* CTreeStore::NewElement(const CXmlName* name) {
  return new (m_arena.Allocate(sizeof(CXmlElement))) CXmlElement(name);
}

CXmlAttribute* CTreeStore::NewAttribute(const CXmlName* name, std::uintptr_t value) {
  return new (m_arena.Allocate(sizeof(CXmlAttribute))) CXmlAttribute(name, value);
}

void CTreeStore::ReleaseAttribute(CXmlAttribute* attribute) {
  ReleaseText(attribute->m_value, true);
  attribute->~CXmlAttribute();
  m_arena.Free(attribute, sizeof(CXmlAttribute));
}

void CTreeStore::DestroyElement(CXmlElement* element, bool reuse) {
  const std::uintptr_t list = element->m_attributes;
  if (list != 0) {
    CXmlAttribute* const* items = AttributeItems(list);
    for (std::size_t i = 0, n = AttributeCount(list); i < n; ++i) {
      ReleaseText(items[i]->m_value, reuse);
      items[i]->~CXmlAttribute();
      if (reuse) m_arena.Free(items[i], sizeof(CXmlAttribute));
    }
    if ((list & kMaterialized) != 0) {
      auto* vector = reinterpret_cast<std::vector<CXmlAttribute*>*>(list & ~kMaterialized);
      vector->~vector();
      if (reuse) m_arena.Free(vector, sizeof(std::vector<CXmlAttribute*>));
    } else if (reuse) {
      ListRecord* record = reinterpret_cast<ListRecord*>(list);
      m_arena.Free(record, sizeof(ListRecord) + record->capacity * sizeof(CXmlAttribute*));
    }
  }
  ReleaseText(element->m_text, reuse);
  element->~CXmlElement();
  if (reuse) m_arena.Free(element, sizeof(CXmlElement));
}

void CTreeStore::DestroyTree(CXmlElement* element, bool reuse) {
  // The subtree is flattened while it is walked, in document order: before an element goes, the
  // ring of its children is opened and its last child made to continue with whatever followed
  // the element. So neither recursion nor a stack is needed, whatever the depth. A link with the
  // end bit set means nothing follows.
  element->m_next = CXmlElement::kEndOfSiblings;
  while (element != nullptr) {
    const std::uintptr_t continuation = element->m_next;
    CXmlElement* next;
    if (CXmlElement* last = element->m_lastChild) {
      next = CXmlElement::Untag(last->m_next);
      last->m_next = continuation;
    } else {
      next = (continuation & CXmlElement::kEndOfSiblings) != 0 ? nullptr
                                                               : CXmlElement::Untag(continuation);
    }
    DestroyElement(element, reuse);
    element = next;
  }
}

void CTreeStore::Clear(CXmlElement* root) {
  // The whole arena goes at once, so the memory of single nodes is not recycled.
  if (root != nullptr) DestroyTree(root, false);
  m_byParserName.clear();
  m_byParts.clear();
  m_names.clear();
  m_arena.Reset();
  previousSiblings.clear();
  for (std::string& text : pendingText) text.clear();
}

}  // namespace detail
}  // namespace OvXmlLib6
