// The typed primitive collections: one class per primitive XML Schema type that may repeat
// (Ci4Col for int, CstringCol for string, ...). Each keeps its values by value, checks every
// value added against the member's facets, reads one value from each consecutive matching element
// and writes one element per value.
//
//   CSmartPtr<Ci4Col> col = new Ci4Col("value", "", 0, -1);
//   col->Add(3);
//   col->AddAt(0, 1);          // 1, 3
//   for (std::int32_t v : *col) ...
//
// Every class has the same members, shown with Ci4Col (value type std::int32_t): Add(value),
// AddAt(index, value), Item(index), Remove(index), Clear(), GetCount(), begin()/end().
// AddAt sends the add event first, then refuses an index outside 0 to GetCount() with
// COvInvalidParamException "Index out of range", then checks the facets; Item and Remove refuse
// a bad index with "Index %d is out of range, use 0 - %d". A failed AddAt leaves the values
// unchanged. The events and what their data points to are described at detail::CValueCol
// (TypeCollection.h): add points to the value being added, add complete to the value as stored
// (valid while the collection is unchanged), the remove events to the real index.
//
// The date and time kinds (CdateCol, CdatetimeCol, CtimeCol, CmonthDayCol, CyearMonthCol) are in
// DateTimeCollections.h.
#ifndef OVXMLLIB6_METADATA_TYPEDCOLLECTIONS_H
#define OVXMLLIB6_METADATA_TYPEDCOLLECTIONS_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/metadata/TypeCollection.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "OvXmlLib6/types/Decimal.h"

#include <cstdint>
#include <string>
#include <vector>

namespace OvXmlLib6 {

namespace detail {

// What one typed collection knows about its type: the value type, the ItemType, the conversions
// from and to text and the facet check. Defined in the library.
#define OVXML_DECLARE_COL_TRAITS(Tag, ValueType)                                                   \
  struct OVXML_API Tag##ColTraits {                                                                \
    using Value = ValueType;                                                                       \
    static const ItemType kItemType;                                                               \
    static Value FromString(const std::string& text, CWhitespaceUtils::WhitespaceRule rule);       \
    static std::string ToString(const Value& value, const char* format);                           \
    static void Check(const CPrimitiveRestrictions& facets, const char* name, const Value& value); \
  }

OVXML_DECLARE_COL_TRAITS(hexBinary, CBinaryData);
OVXML_DECLARE_COL_TRAITS(base64Binary, CBinaryData);
OVXML_DECLARE_COL_TRAITS(i1, std::int8_t);
OVXML_DECLARE_COL_TRAITS(i2, std::int16_t);
OVXML_DECLARE_COL_TRAITS(i4, std::int32_t);
OVXML_DECLARE_COL_TRAITS(i8, std::int64_t);
OVXML_DECLARE_COL_TRAITS(ui1, std::uint8_t);
OVXML_DECLARE_COL_TRAITS(ui2, std::uint16_t);
OVXML_DECLARE_COL_TRAITS(ui4, std::uint32_t);
OVXML_DECLARE_COL_TRAITS(ui8, std::uint64_t);
OVXML_DECLARE_COL_TRAITS(r4, float);
OVXML_DECLARE_COL_TRAITS(r8, double);
OVXML_DECLARE_COL_TRAITS(duration, CDateTimeSpan);
OVXML_DECLARE_COL_TRAITS(year, std::uint16_t);
OVXML_DECLARE_COL_TRAITS(month, std::uint8_t);
OVXML_DECLARE_COL_TRAITS(day, std::uint8_t);
OVXML_DECLARE_COL_TRAITS(string, std::string);
OVXML_DECLARE_COL_TRAITS(boolean, bool);
OVXML_DECLARE_COL_TRAITS(decimal, CDecimal);
OVXML_DECLARE_COL_TRAITS(integer, CBigInteger);

#undef OVXML_DECLARE_COL_TRAITS

#define OVXML_EXTERN_VALUE_COL(Value) extern template class CValueCol<Value>
OVXML_EXTERN_VALUE_COL(CBinaryData);
OVXML_EXTERN_VALUE_COL(std::int8_t);
OVXML_EXTERN_VALUE_COL(std::int16_t);
OVXML_EXTERN_VALUE_COL(std::int32_t);
OVXML_EXTERN_VALUE_COL(std::int64_t);
OVXML_EXTERN_VALUE_COL(std::uint8_t);
OVXML_EXTERN_VALUE_COL(std::uint16_t);
OVXML_EXTERN_VALUE_COL(std::uint32_t);
OVXML_EXTERN_VALUE_COL(std::uint64_t);
OVXML_EXTERN_VALUE_COL(float);
OVXML_EXTERN_VALUE_COL(double);
OVXML_EXTERN_VALUE_COL(CDateTimeSpan);
OVXML_EXTERN_VALUE_COL(std::string);
OVXML_EXTERN_VALUE_COL(bool);
OVXML_EXTERN_VALUE_COL(CDecimal);
OVXML_EXTERN_VALUE_COL(CBigInteger);
#undef OVXML_EXTERN_VALUE_COL

// A typed collection of one of the types above: the values and their events are CValueCol's;
// this adds the conversions and the facet check, after the index check. The named classes below
// only choose the traits and the default whitespace rule. Instantiated once in the library for
// each traits type.
template <class Traits>
class OVXML_API CPrimitiveCol : public CValueCol<typename Traits::Value> {
 public:
  using Value = typename Traits::Value;

  void Add(const Value& value) { AddAt(this->GetCount(), value); }
  void AddAt(int index, const Value& value) { this->InsertValue(index, value, &CheckFacets); }
  // A copy of the value at the index.
  Value Item(int index) const { return this->ValueAt(index); }

 protected:
  CPrimitiveCol(const char* elementName, const char* ns, int minOccurs, int maxOccurs,
                const char* pattern, int minLength, int maxLength, const char* minInclusive,
                const char* maxInclusive, const char* minExclusive, const char* maxExclusive,
                int totalDigits, CWhitespaceUtils::WhitespaceRule whitespaceRule,
                const char* format);
  CPrimitiveCol(const CPrimitiveCol& other);
  CPrimitiveCol& operator=(const CPrimitiveCol& other);
  ~CPrimitiveCol() override;

  void AddFromString(const std::string& text) override;
  std::string ItemText(int index) const override;

 private:
  static void CheckFacets(const CXmlTypeCollection& collection, const Value& value);
};

#define OVXML_EXTERN_PRIMITIVE_COL(Tag) extern template class CPrimitiveCol<Tag##ColTraits>
OVXML_EXTERN_PRIMITIVE_COL(hexBinary);
OVXML_EXTERN_PRIMITIVE_COL(base64Binary);
OVXML_EXTERN_PRIMITIVE_COL(i1);
OVXML_EXTERN_PRIMITIVE_COL(i2);
OVXML_EXTERN_PRIMITIVE_COL(i4);
OVXML_EXTERN_PRIMITIVE_COL(i8);
OVXML_EXTERN_PRIMITIVE_COL(ui1);
OVXML_EXTERN_PRIMITIVE_COL(ui2);
OVXML_EXTERN_PRIMITIVE_COL(ui4);
OVXML_EXTERN_PRIMITIVE_COL(ui8);
OVXML_EXTERN_PRIMITIVE_COL(r4);
OVXML_EXTERN_PRIMITIVE_COL(r8);
OVXML_EXTERN_PRIMITIVE_COL(duration);
OVXML_EXTERN_PRIMITIVE_COL(year);
OVXML_EXTERN_PRIMITIVE_COL(month);
OVXML_EXTERN_PRIMITIVE_COL(day);
OVXML_EXTERN_PRIMITIVE_COL(string);
OVXML_EXTERN_PRIMITIVE_COL(boolean);
OVXML_EXTERN_PRIMITIVE_COL(decimal);
OVXML_EXTERN_PRIMITIVE_COL(integer);
#undef OVXML_EXTERN_PRIMITIVE_COL

}  // namespace detail

// Declares C<Tag>Col over the traits of its type. The facet arguments, the whitespace rule and
// the format may be left out: no facets, the given default rule, the conversion's own format.
#define OVXML_DECLARE_PRIMITIVE_COL(Tag, DefaultRule)                                            \
  class OVXML_API C##Tag##Col : public detail::CPrimitiveCol<detail::Tag##ColTraits>,            \
                                private CInstanceMonitor {                                       \
   public:                                                                                       \
    C##Tag##Col(const char* elementName, const char* ns, int minOccurs, int maxOccurs,           \
                const char* pattern = nullptr, int minLength = -1, int maxLength = -1,           \
                const char* minInclusive = nullptr, const char* maxInclusive = nullptr,          \
                const char* minExclusive = nullptr, const char* maxExclusive = nullptr,          \
                int totalDigits = -1,                                                            \
                CWhitespaceUtils::WhitespaceRule whitespaceRule = CWhitespaceUtils::DefaultRule, \
                const char* format = nullptr);                                                   \
    C##Tag##Col(const C##Tag##Col& other);                                                       \
    C##Tag##Col& operator=(const C##Tag##Col& other);                                            \
    ~C##Tag##Col() override;                                                                     \
  }

OVXML_DECLARE_PRIMITIVE_COL(hexBinary, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(base64Binary, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(i1, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(i2, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(i4, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(i8, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(ui1, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(ui2, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(ui4, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(ui8, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(r4, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(r8, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(duration, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(year, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(month, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(day, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(string, WhitespaceRule_Preserve);
OVXML_DECLARE_PRIMITIVE_COL(boolean, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(decimal, WhitespaceRule_Collapse);
OVXML_DECLARE_PRIMITIVE_COL(integer, WhitespaceRule_Collapse);

#undef OVXML_DECLARE_PRIMITIVE_COL

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_TYPEDCOLLECTIONS_H
