// The typed collections of the date and time kinds: CdateCol, CdatetimeCol, CtimeCol,
// CmonthDayCol and CyearMonthCol, over their common base CdatetimeBaseCol.
//
// Each accepts only values of its own kind: adding a CDateTime of another type throws
// COvInvalidParamException "Dates added to this collection must be of type dt_date" (dt_dateTime,
// dt_time, dt_gMonthDay, dt_gYearMonth). The kind and the facets are checked before the add
// event and the index check; a value refused by them sends no event. The rest, including what
// the events' data points to, is as for the other typed collections (detail::CValueCol in
// TypeCollection.h).
#ifndef OVXMLLIB6_METADATA_DATETIMECOLLECTIONS_H
#define OVXMLLIB6_METADATA_DATETIMECOLLECTIONS_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/metadata/TypeCollection.h"
#include "OvXmlLib6/types/DateTime.h"

#include <string>

namespace OvXmlLib6 {

namespace detail {
extern template class CValueCol<CDateTime>;
}  // namespace detail

class OVXML_API CdatetimeBaseCol : public detail::CValueCol<CDateTime> {
 public:
  virtual void Add(const CDateTime& value);
  // Each member checks the value's kind and facets, then calls BaseAddAt.
  virtual void AddAt(int index, const CDateTime& value) = 0;
  // A copy of the value at the index.
  virtual CDateTime Item(int index) const;

 protected:
  CdatetimeBaseCol(ItemType itemType, const char* elementName, const char* ns, int minOccurs,
                   int maxOccurs, const char* pattern, int minLength, int maxLength,
                   const char* minInclusive, const char* maxInclusive, const char* minExclusive,
                   const char* maxExclusive, int totalDigits,
                   CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
  CdatetimeBaseCol(const CdatetimeBaseCol& other);
  CdatetimeBaseCol& operator=(const CdatetimeBaseCol& other);
  ~CdatetimeBaseCol() override;

  // The text of one value in the collection's lexical form.
  virtual std::string ItemToString(const CDateTime& value) const = 0;
  std::string ItemText(int index) const override;

  // Inserts after the kind and facet checks of the member: the add event, the index check, the
  // insertion, then the add-complete and change events (detail::CValueCol::InsertValue).
  void BaseAddAt(int index, const CDateTime& value);
  // The kind check and the date facet check that every member makes before BaseAddAt.
  void CheckKindAndFacets(const CDateTime& value, CDateTime::DTType kind,
                          const char* kindName) const;
};

#define OVXML_DECLARE_DATETIME_COL(Tag)                                                 \
  class OVXML_API C##Tag##Col : public CdatetimeBaseCol, private CInstanceMonitor {     \
   public:                                                                              \
    C##Tag##Col(const char* elementName, const char* ns, int minOccurs, int maxOccurs,  \
                const char* pattern = nullptr, int minLength = -1, int maxLength = -1,  \
                const char* minInclusive = nullptr, const char* maxInclusive = nullptr, \
                const char* minExclusive = nullptr, const char* maxExclusive = nullptr, \
                int totalDigits = -1,                                                   \
                CWhitespaceUtils::WhitespaceRule whitespaceRule =                       \
                    CWhitespaceUtils::WhitespaceRule_Collapse,                          \
                const char* format = nullptr);                                          \
    C##Tag##Col(const C##Tag##Col& other);                                              \
    C##Tag##Col& operator=(const C##Tag##Col& other);                                   \
    ~C##Tag##Col() override;                                                            \
                                                                                        \
    using CdatetimeBaseCol::Add;                                                        \
    void AddAt(int index, const CDateTime& value) override;                             \
                                                                                        \
   protected:                                                                           \
    void AddFromString(const std::string& text) override;                               \
    std::string ItemToString(const CDateTime& value) const override;                    \
  }

OVXML_DECLARE_DATETIME_COL(date);
OVXML_DECLARE_DATETIME_COL(datetime);
OVXML_DECLARE_DATETIME_COL(time);
OVXML_DECLARE_DATETIME_COL(monthDay);
OVXML_DECLARE_DATETIME_COL(yearMonth);

#undef OVXML_DECLARE_DATETIME_COL

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_DATETIMECOLLECTIONS_H
