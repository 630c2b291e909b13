#include "OvXmlLib6/metadata/DateTimeCollections.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/Conversions.h"

namespace OvXmlLib6 {

CdatetimeBaseCol::CdatetimeBaseCol(ItemType itemType, const char* elementName, const char* ns,
                                   int minOccurs, int maxOccurs, const char* pattern, int minLength,
                                   int maxLength, const char* minInclusive,
                                   const char* maxInclusive, const char* minExclusive,
                                   const char* maxExclusive, int totalDigits,
                                   CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                   const char* format)
    : CValueCol(itemType, elementName, ns, minOccurs, maxOccurs, pattern, minLength, maxLength,
                minInclusive, maxInclusive, minExclusive, maxExclusive, totalDigits, whitespaceRule,
                format) {}

CdatetimeBaseCol::CdatetimeBaseCol(const CdatetimeBaseCol& other) = default;
CdatetimeBaseCol& CdatetimeBaseCol::operator=(const CdatetimeBaseCol& other) = default;
CdatetimeBaseCol::~CdatetimeBaseCol() = default;

void CdatetimeBaseCol::Add(const CDateTime& value) { AddAt(GetCount(), value); }

CDateTime CdatetimeBaseCol::Item(int index) const { return ValueAt(index); }

std::string CdatetimeBaseCol::ItemText(int index) const { return ItemToString(ValueAt(index)); }

void CdatetimeBaseCol::BaseAddAt(int index, const CDateTime& value) {
  // The member has checked the kind and the facets already.
  InsertValue(index, value, nullptr);
}

void CdatetimeBaseCol::CheckKindAndFacets(const CDateTime& value, CDateTime::DTType kind,
                                          const char* kindName) const {
  if (value.GetType() != kind) {
    throw COvInvalidParamException(
        FormatString("Dates added to this collection must be of type %s", kindName));
  }
  GetRestrictions().CheckDateTime(GetCollectionElementName().c_str(), value, GetItemType());
}

#define OVXML_DEFINE_DATETIME_COL(Tag, Kind)                                                      \
  C##Tag##Col::C##Tag##Col(const char* elementName, const char* ns, int minOccurs, int maxOccurs, \
                           const char* pattern, int minLength, int maxLength,                     \
                           const char* minInclusive, const char* maxInclusive,                    \
                           const char* minExclusive, const char* maxExclusive, int totalDigits,   \
                           CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format)   \
      : CdatetimeBaseCol(ItemType_##Tag, elementName, ns, minOccurs, maxOccurs, pattern,          \
                         minLength, maxLength, minInclusive, maxInclusive, minExclusive,          \
                         maxExclusive, totalDigits, whitespaceRule, format),                      \
        CInstanceMonitor("C" #Tag "Col") {}                                                       \
  C##Tag##Col::C##Tag##Col(const C##Tag##Col& other) = default;                                   \
  C##Tag##Col& C##Tag##Col::operator=(const C##Tag##Col& other) = default;                        \
  C##Tag##Col::~C##Tag##Col() = default;                                                          \
  void C##Tag##Col::AddAt(int index, const CDateTime& value) {                                    \
    CheckKindAndFacets(value, CDateTime::Kind, #Kind);                                            \
    BaseAddAt(index, value);                                                                      \
  }                                                                                               \
  void C##Tag##Col::AddFromString(const std::string& text) {                                      \
    Add(CConversions::Tag##FromString(text, GetWhitespaceRule()));                                \
  }                                                                                               \
  std::string C##Tag##Col::ItemToString(const CDateTime& value) const {                           \
    return CConversions::Tag##ToString(value);                                                    \
  }

OVXML_DEFINE_DATETIME_COL(date, dt_date)
OVXML_DEFINE_DATETIME_COL(datetime, dt_dateTime)
OVXML_DEFINE_DATETIME_COL(time, dt_time)
OVXML_DEFINE_DATETIME_COL(monthDay, dt_gMonthDay)
OVXML_DEFINE_DATETIME_COL(yearMonth, dt_gYearMonth)

#undef OVXML_DEFINE_DATETIME_COL

}  // namespace OvXmlLib6
