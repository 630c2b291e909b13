// CPrimitiveRestrictions: the facets of a primitive XML Schema type (length, minLength,
// maxLength, pattern, enumeration, min/max inclusive/exclusive, totalDigits, fractionDigits) and
// the check of one value against them.
//
// Which facets apply depends on the value's ItemType, as in XML Schema:
// - length, minLength, maxLength: string and char (counted in characters, the text being UTF-8)
//   and hexBinary / base64Binary (counted in bytes);
// - the four bounds: the integer and real types, year, month and day, decimal, integer, the date
//   and time kinds and duration; values are compared with the bound by value, not as text (a
//   bound that does not convert to the type, a NaN or an indeterminate date order fails);
// - totalDigits and fractionDigits: the integer types, decimal and integer;
// - pattern: every type, matched against the value's text (the form the ...ToString conversion
//   gives without a format); enumeration: every type, a value matching one literal by value.
// Facets that do not apply to a type are not checked.
//
// A failing facet throws COvException "Invalid Value for %s [%d]" (integer types, year, month
// and day), "Invalid Value for %s [%f]" (r4, r8) or "Invalid Value for %s [%s]" (the others,
// with the value's text), the first placeholder naming the element or attribute.
//
// A pattern is compiled once, when the restriction is built, and shared by copies. A pattern
// that is not a valid XML Schema regular expression makes every check of a value throw
// COvException "Invalid pattern [%s]: ..." (not the constructor, since restrictions are built in
// static tables). In a library built without regular expressions (OVXML_NO_REGEX) a check with a
// pattern throws "Regular Expressions not supported as library was built with _NO_REGEX flag
// set.". Checks are const and may run on several threads at once.
#ifndef OVXMLLIB6_TYPES_PRIMITIVERESTRICTIONS_H
#define OVXMLLIB6_TYPES_PRIMITIVERESTRICTIONS_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/types/ItemType.h"

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace OvXmlLib6 {

class CBigInteger;
class CBinaryData;
class CDateTime;
class CDateTimeSpan;
class CDecimal;
struct OvVariant;

namespace detail {
class CXsdRegex;
}

class OVXML_API CPrimitiveRestrictions {
 public:
  // No facets.
  CPrimitiveRestrictions();
  // A null or empty string and a negative number mean that the facet is absent.
  CPrimitiveRestrictions(const char* pattern, int minLength, int maxLength,
                         const char* minInclusive, const char* maxInclusive,
                         const char* minExclusive, const char* maxExclusive, int totalDigits);
  CPrimitiveRestrictions(const CPrimitiveRestrictions& other);
  CPrimitiveRestrictions& operator=(const CPrimitiveRestrictions& other);
  virtual ~CPrimitiveRestrictions();

  // The facets the constructor has no slot for. A negative number removes the facet; a null
  // enumeration literal is ignored.
  void SetLength(int length);
  void SetFractionDigits(int fractionDigits);
  void AddEnumeration(const char* value);

  // Whether any facet is present (a check without facets returns at once).
  bool HasFacets() const;
  const std::string& GetPattern() const { return m_pattern; }
  int GetLength() const { return m_length; }
  int GetMinLength() const { return m_minLength; }
  int GetMaxLength() const { return m_maxLength; }
  const std::string& GetMinInclusive() const { return m_minInclusive; }
  const std::string& GetMaxInclusive() const { return m_maxInclusive; }
  const std::string& GetMinExclusive() const { return m_minExclusive; }
  const std::string& GetMaxExclusive() const { return m_maxExclusive; }
  int GetTotalDigits() const { return m_totalDigits; }
  int GetFractionDigits() const { return m_fractionDigits; }
  const std::vector<std::string>& GetEnumerations() const { return m_enumerations; }

  // The check of the value a variant holds, by the variant's tag (what descriptors call). An
  // invalid variant has no value to check.
  void Check(const char* name, const OvVariant& value) const;
  // The same with the value's text as its ...ToString conversion gives it without a format,
  // which writers have made anyway: the checks of decimals and big integers take it instead of
  // making it again. An empty text is made as usual.
  void Check(const char* name, const OvVariant& value, std::string_view text) const;

  // The check of one value, by kind of value. `name` names the element or attribute in the
  // message. The type says which lexical form and facets apply: CheckSigned takes i1, i2, i4,
  // i8; CheckUnsigned ui1, ui2, ui4, ui8, year, month, day; CheckReal r4 and r8; CheckString
  // string and char; CheckBinary hexBinary and base64Binary.
  void CheckSigned(const char* name, std::int64_t value, ItemType type) const;
  void CheckUnsigned(const char* name, std::uint64_t value, ItemType type) const;
  void CheckReal(const char* name, double value, ItemType type) const;
  void CheckBoolean(const char* name, bool value) const;
  void CheckString(const char* name, const std::string& value, ItemType type) const;
  void CheckBinary(const char* name, const CBinaryData& value, ItemType type) const;
  // `text`, when not empty, is the value's ToString() (see Check).
  void CheckDecimal(const char* name, const CDecimal& value, std::string_view text = {}) const;
  void CheckInteger(const char* name, const CBigInteger& value, std::string_view text = {}) const;
  // date, datetime, time, yearMonth, monthDay. Kinds without some fields are ordered as
  // dateTimes on the XML Schema reference calendar (a date at midnight, a time on 1972-12-31, a
  // gMonthDay in 1972, ...), keeping the zone, so values of every kind compare by value.
  void CheckDateTime(const char* name, const CDateTime& value, ItemType type) const;
  void CheckDuration(const char* name, const CDateTimeSpan& value) const;

 private:
  struct Subject;
  void CheckSubject(const char* name, const Subject& subject) const;
  void CompilePattern();
  // Works out m_integerRangeOnly and the range, and the bounds as decimals, after any facet
  // changes.
  void PrepareIntegerRange();
  struct CDecimalBounds;

  std::string m_pattern;
  int m_length;
  int m_minLength;
  int m_maxLength;
  std::string m_minInclusive;
  std::string m_maxInclusive;
  std::string m_minExclusive;
  std::string m_maxExclusive;
  int m_totalDigits;
  int m_fractionDigits;
  std::vector<std::string> m_enumerations;
  // The compiled pattern, shared by copies; null without a pattern or when it failed to compile.
  std::shared_ptr<const detail::CXsdRegex> m_regex;
  // Why the pattern failed to compile; empty when it compiled.
  std::string m_patternError;
  // Set when every facet is a bound written as an integer that 64 bits hold: the inclusive range
  // they allow then lets integer values pass without text. Values outside it take the full
  // check, which words the error.
  bool m_integerRangeOnly = false;
  std::int64_t m_integerMin = 0;
  std::int64_t m_integerMax = 0;
  // The four bounds read as decimals once (each null when absent or not a decimal), shared by
  // copies.
  std::shared_ptr<const CDecimalBounds> m_decimalBounds;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_PRIMITIVERESTRICTIONS_H
