#include "OvXmlLib6/metadata/TypedCollections.h"

#include "OvXmlLib6/types/Conversions.h"

namespace OvXmlLib6 {
namespace detail {

// The traits: each type's conversions and the facet check of its kind of value.
#define OVXML_DEFINE_COL_TRAITS(Tag, ToText, CheckCall)                                           \
  const ItemType Tag##ColTraits::kItemType = ItemType_##Tag;                                      \
  Tag##ColTraits::Value Tag##ColTraits::FromString(const std::string& text,                       \
                                                   CWhitespaceUtils::WhitespaceRule rule) {       \
    return CConversions::Tag##FromString(text, rule);                                             \
  }                                                                                               \
  std::string Tag##ColTraits::ToString(const Value& value, [[maybe_unused]] const char* format) { \
    return CConversions::ToText;                                                                  \
  }                                                                                               \
  void Tag##ColTraits::Check(const CPrimitiveRestrictions& facets, const char* name,              \
                             const Value& value) {                                                \
    facets.CheckCall;                                                                             \
  }

OVXML_DEFINE_COL_TRAITS(hexBinary, hexBinaryToString(value),
                        CheckBinary(name, value, ItemType_hexBinary))
OVXML_DEFINE_COL_TRAITS(base64Binary, base64BinaryToString(value),
                        CheckBinary(name, value, ItemType_base64Binary))
OVXML_DEFINE_COL_TRAITS(i1, i1ToString(value), CheckSigned(name, value, ItemType_i1))
OVXML_DEFINE_COL_TRAITS(i2, i2ToString(value), CheckSigned(name, value, ItemType_i2))
OVXML_DEFINE_COL_TRAITS(i4, i4ToString(value), CheckSigned(name, value, ItemType_i4))
OVXML_DEFINE_COL_TRAITS(i8, i8ToString(value), CheckSigned(name, value, ItemType_i8))
OVXML_DEFINE_COL_TRAITS(ui1, ui1ToString(value), CheckUnsigned(name, value, ItemType_ui1))
OVXML_DEFINE_COL_TRAITS(ui2, ui2ToString(value), CheckUnsigned(name, value, ItemType_ui2))
OVXML_DEFINE_COL_TRAITS(ui4, ui4ToString(value), CheckUnsigned(name, value, ItemType_ui4))
OVXML_DEFINE_COL_TRAITS(ui8, ui8ToString(value), CheckUnsigned(name, value, ItemType_ui8))
OVXML_DEFINE_COL_TRAITS(r4, r4ToString(value, format), CheckReal(name, value, ItemType_r4))
OVXML_DEFINE_COL_TRAITS(r8, r8ToString(value, format), CheckReal(name, value, ItemType_r8))
OVXML_DEFINE_COL_TRAITS(duration, durationToString(value), CheckDuration(name, value))
OVXML_DEFINE_COL_TRAITS(year, yearToString(value), CheckUnsigned(name, value, ItemType_year))
OVXML_DEFINE_COL_TRAITS(month, monthToString(value), CheckUnsigned(name, value, ItemType_month))
OVXML_DEFINE_COL_TRAITS(day, dayToString(value), CheckUnsigned(name, value, ItemType_day))
OVXML_DEFINE_COL_TRAITS(string, stringToString(value), CheckString(name, value, ItemType_string))
OVXML_DEFINE_COL_TRAITS(boolean, booleanToString(value), CheckBoolean(name, value))
OVXML_DEFINE_COL_TRAITS(decimal, decimalToString(value, format), CheckDecimal(name, value))
OVXML_DEFINE_COL_TRAITS(integer, integerToString(value), CheckInteger(name, value))

#undef OVXML_DEFINE_COL_TRAITS

template <class Traits>
CPrimitiveCol<Traits>::CPrimitiveCol(const char* elementName, const char* ns, int minOccurs,
                                     int maxOccurs, const char* pattern, int minLength,
                                     int maxLength, const char* minInclusive,
                                     const char* maxInclusive, const char* minExclusive,
                                     const char* maxExclusive, int totalDigits,
                                     CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                     const char* format)
    : CValueCol<Value>(Traits::kItemType, elementName, ns, minOccurs, maxOccurs, pattern, minLength,
                       maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive,
                       totalDigits, whitespaceRule, format) {}

template <class Traits>
CPrimitiveCol<Traits>::CPrimitiveCol(const CPrimitiveCol& other) = default;
template <class Traits>
CPrimitiveCol<Traits>& CPrimitiveCol<Traits>::operator=(const CPrimitiveCol& other) = default;
template <class Traits>
CPrimitiveCol<Traits>::~CPrimitiveCol() = default;

template <class Traits>
void CPrimitiveCol<Traits>::CheckFacets(const CXmlTypeCollection& collection, const Value& value) {
  Traits::Check(collection.GetRestrictions(), collection.GetCollectionElementName().c_str(), value);
}

template <class Traits>
void CPrimitiveCol<Traits>::AddFromString(const std::string& text) {
  Add(Traits::FromString(text, this->GetWhitespaceRule()));
}

template <class Traits>
std::string CPrimitiveCol<Traits>::ItemText(int index) const {
  return Traits::ToString(this->ValueAt(index), this->GetFormat());
}

#define OVXML_INSTANTIATE_PRIMITIVE_COL(Tag) template class CPrimitiveCol<Tag##ColTraits>;
OVXML_INSTANTIATE_PRIMITIVE_COL(hexBinary)
OVXML_INSTANTIATE_PRIMITIVE_COL(base64Binary)
OVXML_INSTANTIATE_PRIMITIVE_COL(i1)
OVXML_INSTANTIATE_PRIMITIVE_COL(i2)
OVXML_INSTANTIATE_PRIMITIVE_COL(i4)
OVXML_INSTANTIATE_PRIMITIVE_COL(i8)
OVXML_INSTANTIATE_PRIMITIVE_COL(ui1)
OVXML_INSTANTIATE_PRIMITIVE_COL(ui2)
OVXML_INSTANTIATE_PRIMITIVE_COL(ui4)
OVXML_INSTANTIATE_PRIMITIVE_COL(ui8)
OVXML_INSTANTIATE_PRIMITIVE_COL(r4)
OVXML_INSTANTIATE_PRIMITIVE_COL(r8)
OVXML_INSTANTIATE_PRIMITIVE_COL(duration)
OVXML_INSTANTIATE_PRIMITIVE_COL(year)
OVXML_INSTANTIATE_PRIMITIVE_COL(month)
OVXML_INSTANTIATE_PRIMITIVE_COL(day)
OVXML_INSTANTIATE_PRIMITIVE_COL(string)
OVXML_INSTANTIATE_PRIMITIVE_COL(boolean)
OVXML_INSTANTIATE_PRIMITIVE_COL(decimal)
OVXML_INSTANTIATE_PRIMITIVE_COL(integer)
#undef OVXML_INSTANTIATE_PRIMITIVE_COL

}  // namespace detail

#define OVXML_DEFINE_PRIMITIVE_COL(Tag)                                                           \
  C##Tag##Col::C##Tag##Col(const char* elementName, const char* ns, int minOccurs, int maxOccurs, \
                           const char* pattern, int minLength, int maxLength,                     \
                           const char* minInclusive, const char* maxInclusive,                    \
                           const char* minExclusive, const char* maxExclusive, int totalDigits,   \
                           CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)   \
      : CPrimitiveCol(elementName, ns, minOccurs, maxOccurs, pattern, minLength, maxLength,       \
                      minInclusive, maxInclusive, minExclusive, maxExclusive, totalDigits,        \
                      whitespaceRule, format),                                                    \
        CInstanceMonitor("C" #Tag "Col") {}                                                       \
  C##Tag##Col::C##Tag##Col(const C##Tag##Col& other) = default;                                   \
  C##Tag##Col& C##Tag##Col::operator=(const C##Tag##Col& other) = default;                        \
  C##Tag##Col::~C##Tag##Col() = default;

OVXML_DEFINE_PRIMITIVE_COL(hexBinary)
OVXML_DEFINE_PRIMITIVE_COL(base64Binary)
OVXML_DEFINE_PRIMITIVE_COL(i1)
OVXML_DEFINE_PRIMITIVE_COL(i2)
OVXML_DEFINE_PRIMITIVE_COL(i4)
OVXML_DEFINE_PRIMITIVE_COL(i8)
OVXML_DEFINE_PRIMITIVE_COL(ui1)
OVXML_DEFINE_PRIMITIVE_COL(ui2)
OVXML_DEFINE_PRIMITIVE_COL(ui4)
OVXML_DEFINE_PRIMITIVE_COL(ui8)
OVXML_DEFINE_PRIMITIVE_COL(r4)
OVXML_DEFINE_PRIMITIVE_COL(r8)
OVXML_DEFINE_PRIMITIVE_COL(duration)
OVXML_DEFINE_PRIMITIVE_COL(year)
OVXML_DEFINE_PRIMITIVE_COL(month)
OVXML_DEFINE_PRIMITIVE_COL(day)
OVXML_DEFINE_PRIMITIVE_COL(string)
OVXML_DEFINE_PRIMITIVE_COL(boolean)
OVXML_DEFINE_PRIMITIVE_COL(decimal)
OVXML_DEFINE_PRIMITIVE_COL(integer)
#undef OVXML_DEFINE_PRIMITIVE_COL

}  // namespace OvXmlLib6
