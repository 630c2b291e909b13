// CXmlTypeCollection: the base of the typed primitive collections (Ci4Col, CstringCol, ...). It
// carries what every one of them needs besides its values: the item type, the facets each added
// value is checked against, the whitespace rule of reading and the format of writing.
//
// Reading takes every consecutive child element whose name matches the collection's element name
// and namespace and hands its text to AddFromString; the first element that does not match ends
// the run without error. Writing checks the count, then writes one element per value.
//
// detail::CValueCol<Value>, below, holds the values of every typed collection and is the one
// place where they are inserted and removed, with the events that go with it.
#ifndef OVXMLLIB6_METADATA_TYPECOLLECTION_H
#define OVXMLLIB6_METADATA_TYPECOLLECTION_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"
#include "OvXmlLib6/types/ItemType.h"
#include "OvXmlLib6/types/PrimitiveRestrictions.h"
#include "OvXmlLib6/types/WhitespaceUtils.h"

#include <cstddef>
#include <iterator>
#include <string>
#include <vector>

namespace OvXmlLib6 {

class OVXML_API CXmlTypeCollection : public CXmlCollectionBase {
 public:
  // The facet arguments go unchanged to the CPrimitiveRestrictions constructor (pattern,
  // minLength, maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive, totalDigits).
  // A null format means the conversion's default form.
  CXmlTypeCollection(ItemType itemType, const char* elementName, const char* ns, int minOccurs,
                     int maxOccurs, const char* pattern, int minLength, int maxLength,
                     const char* minInclusive, const char* maxInclusive, const char* minExclusive,
                     const char* maxExclusive, int totalDigits,
                     CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
  CXmlTypeCollection(const CXmlTypeCollection& other);
  CXmlTypeCollection& operator=(const CXmlTypeCollection& other);

  ItemType GetItemType() const { return m_itemType; }
  CWhitespaceUtils::WhitespaceRule GetWhitespaceRule() const { return m_whitespaceRule; }
  // Null when no format was given.
  const char* GetFormat() const { return m_hasFormat ? m_format.c_str() : nullptr; }
  // The facets; the non-const form lets the facets without a constructor slot be added
  // (SetLength, SetFractionDigits, AddEnumeration).
  const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }
  CPrimitiveRestrictions& GetRestrictions() { return m_restrictions; }

 protected:
  ~CXmlTypeCollection() override;

  // Converts the text of one element with the collection's whitespace rule and appends the
  // value, checking its facets.
  virtual void AddFromString(const std::string& text) = 0;

  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;
  // ValidateCount, then one element per value with the collection's element name and namespace
  // (the namespace argument is not used).
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns,
                 const CXmlSerializationContext& context, bool flag) const override;

  // The text of the value at index, for writing.
  virtual std::string ItemText(int index) const = 0;

 private:
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  std::string m_format;
  bool m_hasFormat;
  CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
};

namespace detail {

// One value of a CbooleanCol. std::vector<bool> keeps its values as bits and so has no address
// of a value to hand to the add-complete event; a vector of these has.
struct CBoolSlot {
  bool value;
};

// A random-access iterator over the values of a vector of CBoolSlot; *it is the stored bool.
class CBoolSlotIterator {
 public:
  using iterator_category = std::random_access_iterator_tag;
  using value_type = bool;
  using difference_type = std::ptrdiff_t;
  using pointer = const bool*;
  using reference = const bool&;

  CBoolSlotIterator() : m_slot(nullptr) {}
  explicit CBoolSlotIterator(const CBoolSlot* slot) : m_slot(slot) {}

  reference operator*() const { return m_slot->value; }
  pointer operator->() const { return &m_slot->value; }
  reference operator[](difference_type n) const { return m_slot[n].value; }
  CBoolSlotIterator& operator++() { return *this += 1; }
  CBoolSlotIterator operator++(int) {
    CBoolSlotIterator old = *this;
    ++m_slot;
    return old;
  }
  CBoolSlotIterator& operator--() { return *this -= 1; }
  CBoolSlotIterator operator--(int) {
    CBoolSlotIterator old = *this;
    --m_slot;
    return old;
  }
  CBoolSlotIterator& operator+=(difference_type n) {
    m_slot += n;
    return *this;
  }
  CBoolSlotIterator& operator-=(difference_type n) {
    m_slot -= n;
    return *this;
  }
  friend CBoolSlotIterator operator+(CBoolSlotIterator it, difference_type n) { return it += n; }
  friend CBoolSlotIterator operator+(difference_type n, CBoolSlotIterator it) { return it += n; }
  friend CBoolSlotIterator operator-(CBoolSlotIterator it, difference_type n) { return it -= n; }
  friend difference_type operator-(CBoolSlotIterator a, CBoolSlotIterator b) {
    return a.m_slot - b.m_slot;
  }
  friend bool operator==(CBoolSlotIterator a, CBoolSlotIterator b) { return a.m_slot == b.m_slot; }
  friend bool operator!=(CBoolSlotIterator a, CBoolSlotIterator b) { return a.m_slot != b.m_slot; }
  friend bool operator<(CBoolSlotIterator a, CBoolSlotIterator b) { return a.m_slot < b.m_slot; }
  friend bool operator>(CBoolSlotIterator a, CBoolSlotIterator b) { return a.m_slot > b.m_slot; }
  friend bool operator<=(CBoolSlotIterator a, CBoolSlotIterator b) { return a.m_slot <= b.m_slot; }
  friend bool operator>=(CBoolSlotIterator a, CBoolSlotIterator b) { return a.m_slot >= b.m_slot; }

 private:
  const CBoolSlot* m_slot;
};

// How a value of the type is stored: as itself, except bool (see CBoolSlot).
template <class Value>
struct CValueSlot {
  using Type = Value;
  using const_iterator = typename std::vector<Value>::const_iterator;
  static Value& Get(Type& slot) { return slot; }
  static const Value& Get(const Type& slot) { return slot; }
  static const_iterator Begin(const std::vector<Type>& values) { return values.begin(); }
  static const_iterator End(const std::vector<Type>& values) { return values.end(); }
};

template <>
struct CValueSlot<bool> {
  using Type = CBoolSlot;
  using const_iterator = CBoolSlotIterator;
  static bool& Get(Type& slot) { return slot.value; }
  static const bool& Get(const Type& slot) { return slot.value; }
  static const_iterator Begin(const std::vector<Type>& values) {
    return const_iterator(values.data());
  }
  static const_iterator End(const std::vector<Type>& values) {
    return const_iterator(values.data() + values.size());
  }
};

// The values of a typed collection, and the one way in which every typed collection inserts and
// removes them and tells its listeners.
//
// Events and their data (the `void*` each listener receives):
// - an insertion sends add with a pointer to the value being added (a copy the call owns,
//   valid during the event only; listeners must not change it), then checks the index, then
//   inserts, then sends add complete with a pointer to the value as stored in the collection
//   (valid only while the collection is unchanged), then change;
// - a removal sends remove with a pointer to the index, then checks the index, erases, and
//   sends remove complete (the index again) and change. The index is the real one, unlike the
//   -1 of the object lists (CXmlCollection).
// Every check comes before the values change, so a refused insertion or removal leaves them as
// they were (the events already sent stay sent).
template <class Value>
class OVXML_API CValueCol : public CXmlTypeCollection {
  using Slot = CValueSlot<Value>;

 public:
  using const_iterator = typename Slot::const_iterator;

  // Sends remove (index), then throws COvInvalidParamException "Index %d is out of range, use
  // 0 - %d" unless the index is valid; then erases and sends remove complete and change.
  void Remove(int index) override;
  // Removes the values one by one from the front, each with its events.
  void Clear() override;
  int GetCount() const override { return static_cast<int>(m_values.size()); }

  const_iterator begin() const { return Slot::Begin(m_values); }
  const_iterator end() const { return Slot::End(m_values); }

 protected:
  // A check of the value against the collection's facets; it throws when one fails.
  using FacetCheck = void (*)(const CXmlTypeCollection& collection, const Value& value);

  using CXmlTypeCollection::CXmlTypeCollection;
  CValueCol(const CValueCol& other) = default;
  CValueCol& operator=(const CValueCol& other) = default;
  ~CValueCol() override = default;

  // The value at the index; throws "Index %d is out of range, use 0 - %d" for a bad index.
  const Value& ValueAt(int index) const;
  // The insertion: the add event (with `value`), then COvInvalidParamException "Index out of
  // range" unless 0 <= index <= GetCount(), then `checkAfterIndex` when not null (the kinds
  // whose facets are checked before the add event pass null), then the value goes before
  // position `index` (index == GetCount() appends), then add complete and change.
  void InsertValue(int index, Value value, FacetCheck checkAfterIndex);

 private:
  std::vector<typename Slot::Type> m_values;
};

}  // namespace detail

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_TYPECOLLECTION_H
