#include "OvXmlLib6/metadata/TypeCollection.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "OvXmlLib6/types/Decimal.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"

#include <cstdint>
#include <utility>

namespace OvXmlLib6 {

CXmlTypeCollection::CXmlTypeCollection(ItemType itemType, const char* elementName, const char* ns,
                                       int minOccurs, int maxOccurs, const char* pattern,
                                       int minLength, int maxLength, const char* minInclusive,
                                       const char* maxInclusive, const char* minExclusive,
                                       const char* maxExclusive, int totalDigits,
                                       CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                       const char* format)
    : CXmlCollectionBase(elementName, ns, minOccurs, maxOccurs),
      m_restrictions(pattern, minLength, maxLength, minInclusive, maxInclusive, minExclusive,
                     maxExclusive, totalDigits),
      m_itemType(itemType),
      m_format(format != nullptr ? format : ""),
      m_hasFormat(format != nullptr),
      m_whitespaceRule(whitespaceRule) {}

CXmlTypeCollection::CXmlTypeCollection(const CXmlTypeCollection& other) = default;
CXmlTypeCollection& CXmlTypeCollection::operator=(const CXmlTypeCollection& other) = default;
CXmlTypeCollection::~CXmlTypeCollection() = default;

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* current,
                                             const CXmlSerializationContext& context,
                                             bool /*flag*/) {
  const std::string& name = GetCollectionElementName();
  const std::string ns = GetNamespace();
  while (current != nullptr && DoesElementNameMatch(context, current, name.c_str(), ns.c_str())) {
    AddFromString(current->GetText());
    current = current->GetNextSiblingElement();
  }
  return current;
}

void CXmlTypeCollection::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                                   const CXmlSerializationContext& context, bool /*flag*/) const {
  ValidateCount(context);
  const std::string& name = GetCollectionElementName();
  const std::string ns = GetNamespace();
  const int count = GetCount();
  for (int i = 0; i < count; ++i) {
    writer->WriteStartElement(name.c_str(), ns.c_str());
    writer->WriteText(ItemText(i).c_str(), m_itemType);
    writer->WriteEndElement();
  }
}

namespace detail {

template <class Value>
const Value& CValueCol<Value>::ValueAt(int index) const {
  if (index < 0 || index >= GetCount()) ThrowIndexOutOfRange(index, GetCount());
  return Slot::Get(m_values[index]);
}

template <class Value>
void CValueCol<Value>::InsertValue(int index, Value value, FacetCheck checkAfterIndex) {
  // `value` is the call's own copy: the caller's argument may be a value of this collection,
  // which a listener could remove during the add event.
  FireOnCollectionAdd(&value);
  // The count is read after the event, since a listener may have changed it.
  if (index < 0 || index > GetCount()) throw COvInvalidParamException("Index out of range");
  if (checkAfterIndex != nullptr) checkAfterIndex(*this, value);
  const auto at = m_values.insert(m_values.begin() + index, typename Slot::Type{std::move(value)});
  FireOnCollectionAddComplete(&Slot::Get(*at));
  FireOnCollectionChange();
}

template <class Value>
void CValueCol<Value>::Remove(int index) {
  FireOnCollectionRemove(index);
  if (index < 0 || index >= GetCount()) ThrowIndexOutOfRange(index, GetCount());
  m_values.erase(m_values.begin() + index);
  FireOnCollectionRemoveComplete(index);
  FireOnCollectionChange();
}

template <class Value>
void CValueCol<Value>::Clear() {
  if (!HasEventListeners()) {
    // Nobody sees the single removals, so the values go at once instead of one by one from the
    // front, which would cost quadratic time.
    m_values.clear();
    return;
  }
  while (!m_values.empty()) Remove(0);
}

// One instantiation per value type; the collections of equal value types (ui2 and year; ui1,
// month and day) share one.
template class CValueCol<CBinaryData>;
template class CValueCol<std::int8_t>;
template class CValueCol<std::int16_t>;
template class CValueCol<std::int32_t>;
template class CValueCol<std::int64_t>;
template class CValueCol<std::uint8_t>;
template class CValueCol<std::uint16_t>;
template class CValueCol<std::uint32_t>;
template class CValueCol<std::uint64_t>;
template class CValueCol<float>;
template class CValueCol<double>;
template class CValueCol<CDateTimeSpan>;
template class CValueCol<std::string>;
template class CValueCol<bool>;
template class CValueCol<CDecimal>;
template class CValueCol<CBigInteger>;
template class CValueCol<CDateTime>;

}  // namespace detail

}  // namespace OvXmlLib6
