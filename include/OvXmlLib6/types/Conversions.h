// CConversions: the lexical forms of the XML Schema primitive types and the library's values.
//
// Every ...FromString member first applies the caller's whitespace rule to the text and parses
// what is left; a text that cannot be converted throws COvInvalidValueException. Every ...ToString
// member builds a new string. Parsing and printing do not depend on the C locale.
#ifndef OVXMLLIB6_TYPES_CONVERSIONS_H
#define OVXMLLIB6_TYPES_CONVERSIONS_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "OvXmlLib6/types/Decimal.h"
#include "OvXmlLib6/types/WhitespaceUtils.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CConversions {
 public:
  using WhitespaceRule = CWhitespaceUtils::WhitespaceRule;

  // Integers. The 32- and 64-bit parsers accept leading whitespace, an optional sign and decimal
  // digits; an empty text is 0; the unsigned ones take a leading "-" and negate modulo 2^n.
  // Narrow types are parsed as 32-bit values and then range-checked.
  static std::int8_t i1FromString(const std::string& s, WhitespaceRule rule);
  static std::string i1ToString(std::int8_t value);
  static std::int16_t i2FromString(const std::string& s, WhitespaceRule rule);
  static std::string i2ToString(std::int16_t value);
  static std::int32_t i4FromString(const std::string& s, WhitespaceRule rule);
  static std::string i4ToString(std::int32_t value);
  static std::int64_t i8FromString(const std::string& s, WhitespaceRule rule);
  static std::string i8ToString(std::int64_t value);
  static std::uint8_t ui1FromString(const std::string& s, WhitespaceRule rule);
  static std::string ui1ToString(std::uint8_t value);
  static std::uint16_t ui2FromString(const std::string& s, WhitespaceRule rule);
  static std::string ui2ToString(std::uint16_t value);
  static std::uint32_t ui4FromString(const std::string& s, WhitespaceRule rule);
  static std::string ui4ToString(std::uint32_t value);
  static std::uint64_t ui8FromString(const std::string& s, WhitespaceRule rule);
  static std::string ui8ToString(std::uint64_t value);

  // Reals. An empty text is NaN; "NaN", "1.#QNAN", "-NAN", "INF" and "-INF" are the special
  // values. Output: "NaN", "INF", "-INF", else the value printed with `format` (a printf format
  // for one double) or, when it is null, "%.7g" (r4) / "%.16g" (r8).
  static float r4FromString(const std::string& s, WhitespaceRule rule);
  static std::string r4ToString(float value, const char* format);
  static double r8FromString(const std::string& s, WhitespaceRule rule);
  static std::string r8ToString(double value, const char* format);

  // Decimals and big integers, parsed by their own classes. A non-null decimal format is read
  // as a decimal count of fraction digits to round to (as atoi reads it).
  static CDecimal decimalFromString(const std::string& s, WhitespaceRule rule);
  static std::string decimalToString(const CDecimal& value, const char* format);
  static CBigInteger integerFromString(const std::string& s, WhitespaceRule rule);
  static std::string integerToString(const CBigInteger& value);

  // "true", "false", "1" or "0", the words in any case. Output "true" or "false".
  static bool booleanFromString(const std::string& s, WhitespaceRule rule);
  static std::string booleanToString(bool value);

  // Exactly one byte. The NUL character prints as the empty string.
  static char charFromString(const std::string& s, WhitespaceRule rule);
  static std::string charToString(char value);

  static std::string stringFromString(const std::string& s, WhitespaceRule rule);
  static std::string stringToString(const std::string& value);

  // Binary data in upper-case hexadecimal and in base64 (see CBinaryData).
  static CBinaryData hexBinaryFromString(const std::string& s, WhitespaceRule rule);
  static std::string hexBinaryToString(const CBinaryData& value);
  static CBinaryData base64BinaryFromString(const std::string& s, WhitespaceRule rule);
  static std::string base64BinaryToString(const CBinaryData& value);

  // Dates and times. Each parser builds a value of its kind and runs the CDateTime parser for it
  // (ParseXSDDateTime, ParseXSDTime, else ParseXSDDate, which takes the kind from the text, so
  // dateFromString of "2004-05" gives a gYearMonth). The five ToString forms are one routine:
  // CDateTime::ToString("s"), the form of the value's own kind.
  static CDateTime datetimeFromString(const std::string& s, WhitespaceRule rule);
  static std::string datetimeToString(const CDateTime& value);
  static CDateTime dateFromString(const std::string& s, WhitespaceRule rule);
  static std::string dateToString(const CDateTime& value);
  static CDateTime timeFromString(const std::string& s, WhitespaceRule rule);
  static std::string timeToString(const CDateTime& value);
  static CDateTime yearMonthFromString(const std::string& s, WhitespaceRule rule);
  static std::string yearMonthToString(const CDateTime& value);
  static CDateTime monthDayFromString(const std::string& s, WhitespaceRule rule);
  static std::string monthDayToString(const CDateTime& value);

  // gYear, gMonth and gDay as numbers: parsed as the date kind, then its field is taken (a text
  // of a kind without that field fails in the getter). Output "%u", "--%02u" and "---%02u".
  static std::uint16_t yearFromString(const std::string& s, WhitespaceRule rule);
  static std::string yearToString(std::uint16_t value);
  static std::uint8_t monthFromString(const std::string& s, WhitespaceRule rule);
  static std::string monthToString(std::uint8_t value);
  static std::uint8_t dayFromString(const std::string& s, WhitespaceRule rule);
  static std::string dayToString(std::uint8_t value);

  static CDateTimeSpan durationFromString(const std::string& s, WhitespaceRule rule);
  static std::string durationToString(const CDateTimeSpan& value);
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_CONVERSIONS_H
