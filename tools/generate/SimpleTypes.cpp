#include "generate/SimpleTypes.h"

#include <cstring>

namespace ovxml_generate {

namespace {

struct CBuiltin {
  const char* name;
  const char* tag;
  const char* cppType;
  const char* variant;
  const char* rule;
  bool byValue;
  const char* minInclusive;
  const char* maxInclusive;
};

// Every built-in type and its item type. Names and other string kinds are held as text; lists
// of names (NMTOKENS, IDREFS, ENTITIES) as their text too.
const CBuiltin kBuiltins[] = {
    {"string", "string", "std::string", "String", "Preserve", false, nullptr, nullptr},
    {"anySimpleType", "string", "std::string", "String", "Preserve", false, nullptr, nullptr},
    {"normalizedString", "string", "std::string", "String", "Replace", false, nullptr, nullptr},
    {"token", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"language", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"Name", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"NCName", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"NMTOKEN", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"NMTOKENS", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"ID", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"IDREF", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"IDREFS", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"ENTITY", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"ENTITIES", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"anyURI", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"QName", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"NOTATION", "string", "std::string", "String", "Collapse", false, nullptr, nullptr},
    {"boolean", "boolean", "bool", "Boolean", "Collapse", true, nullptr, nullptr},
    {"decimal", "decimal", "OvXmlLib6::CDecimal", "Decimal", "Collapse", false, nullptr, nullptr},
    {"integer", "integer", "OvXmlLib6::CBigInteger", "Integer", "Collapse", false, nullptr,
     nullptr},
    {"nonNegativeInteger", "integer", "OvXmlLib6::CBigInteger", "Integer", "Collapse", false, "0",
     nullptr},
    {"positiveInteger", "integer", "OvXmlLib6::CBigInteger", "Integer", "Collapse", false, "1",
     nullptr},
    {"nonPositiveInteger", "integer", "OvXmlLib6::CBigInteger", "Integer", "Collapse", false,
     nullptr, "0"},
    {"negativeInteger", "integer", "OvXmlLib6::CBigInteger", "Integer", "Collapse", false, nullptr,
     "-1"},
    {"long", "i8", "std::int64_t", "I8", "Collapse", true, nullptr, nullptr},
    {"int", "i4", "std::int32_t", "I4", "Collapse", true, nullptr, nullptr},
    {"short", "i2", "std::int16_t", "I2", "Collapse", true, nullptr, nullptr},
    {"byte", "i1", "std::int8_t", "I1", "Collapse", true, nullptr, nullptr},
    {"unsignedLong", "ui8", "std::uint64_t", "UI8", "Collapse", true, nullptr, nullptr},
    {"unsignedInt", "ui4", "std::uint32_t", "UI4", "Collapse", true, nullptr, nullptr},
    {"unsignedShort", "ui2", "std::uint16_t", "UI2", "Collapse", true, nullptr, nullptr},
    {"unsignedByte", "ui1", "std::uint8_t", "UI1", "Collapse", true, nullptr, nullptr},
    {"float", "r4", "float", "R4", "Collapse", true, nullptr, nullptr},
    {"double", "r8", "double", "R8", "Collapse", true, nullptr, nullptr},
    {"duration", "duration", "OvXmlLib6::CDateTimeSpan", "Duration", "Collapse", false, nullptr,
     nullptr},
    {"dateTime", "datetime", "OvXmlLib6::CDateTime", "DateTime", "Collapse", false, nullptr,
     nullptr},
    {"date", "date", "OvXmlLib6::CDateTime", "Date", "Collapse", false, nullptr, nullptr},
    {"time", "time", "OvXmlLib6::CDateTime", "Time", "Collapse", false, nullptr, nullptr},
    {"gYearMonth", "yearMonth", "OvXmlLib6::CDateTime", "YearMonth", "Collapse", false, nullptr,
     nullptr},
    {"gMonthDay", "monthDay", "OvXmlLib6::CDateTime", "MonthDay", "Collapse", false, nullptr,
     nullptr},
    {"gYear", "year", "std::uint16_t", "Year", "Collapse", true, nullptr, nullptr},
    {"gMonth", "month", "std::uint8_t", "Month", "Collapse", true, nullptr, nullptr},
    {"gDay", "day", "std::uint8_t", "Day", "Collapse", true, nullptr, nullptr},
    {"hexBinary", "hexBinary", "OvXmlLib6::CBinaryData", "HexBinary", "Collapse", false, nullptr,
     nullptr},
    {"base64Binary", "base64Binary", "OvXmlLib6::CBinaryData", "Base64Binary", "Collapse", false,
     nullptr, nullptr},
};

void Replace(const std::string& added, std::string* facet) {
  if (!added.empty()) *facet = added;
}

void Replace(int added, int* facet) {
  if (added >= 0) *facet = added;
}

}  // namespace

bool BuiltinType(const std::string& localName, CSimpleType* type) {
  for (const CBuiltin& builtin : kBuiltins) {
    if (localName != builtin.name) continue;
    *type = CSimpleType();
    type->tag = builtin.tag;
    type->cppType = builtin.cppType;
    type->variant = builtin.variant;
    type->rule = builtin.rule;
    type->byValue = builtin.byValue;
    if (builtin.minInclusive != nullptr) type->facets.minInclusive = builtin.minInclusive;
    if (builtin.maxInclusive != nullptr) type->facets.maxInclusive = builtin.maxInclusive;
    return true;
  }
  return false;
}

void MergeFacets(const CFacets& added, CFacets* facets) {
  Replace(added.pattern, &facets->pattern);
  Replace(added.length, &facets->length);
  Replace(added.minLength, &facets->minLength);
  Replace(added.maxLength, &facets->maxLength);
  Replace(added.minInclusive, &facets->minInclusive);
  Replace(added.maxInclusive, &facets->maxInclusive);
  Replace(added.minExclusive, &facets->minExclusive);
  Replace(added.maxExclusive, &facets->maxExclusive);
  Replace(added.totalDigits, &facets->totalDigits);
  Replace(added.fractionDigits, &facets->fractionDigits);
  if (!added.enumerations.empty()) facets->enumerations = added.enumerations;
}

}  // namespace ovxml_generate
