#include "OvXmlLib6/types/PrimitiveRestrictions.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"
#include "OvXmlLib6/types/Decimal.h"
#include "types/DecimalText.h"
#include "types/XsdRegex.h"

#include <cmath>
#include <cstring>
#include <functional>

namespace OvXmlLib6 {

namespace {

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

int FacetNumber(int value) { return value < 0 ? -1 : value; }

// Characters of UTF-8 text: the bytes that do not continue a sequence.
std::int64_t CountCharacters(const std::string& text) {
  std::int64_t count = 0;
  for (char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
  }
  return count;
}

using detail::Order;

// An integer value against a literal of the integer family, by value. Literals of month and day
// may be written in their own lexical forms, "--05" and "---05".
Order CompareIntegerLiteral(const std::string& valueText, std::string literal, ItemType type) {
  literal = CWhitespaceUtils::Collapse(literal);
  if (type == ItemType_month && literal.compare(0, 2, "--") == 0) literal.erase(0, 2);
  if (type == ItemType_day && literal.compare(0, 3, "---") == 0) literal.erase(0, 3);
  return detail::CompareDecimalText(valueText, literal);
}

Order CompareReal(double value, const std::string& literal, ItemType type) {
  double bound;
  try {
    bound = type == ItemType_r4
                ? static_cast<double>(CConversions::r4FromString(literal, kCollapse))
                : CConversions::r8FromString(literal, kCollapse);
  } catch (const COvException&) {
    return Order::kIncomparable;
  }
  if (std::isnan(value) || std::isnan(bound)) return Order::kIncomparable;
  if (value < bound) return Order::kLess;
  if (value > bound) return Order::kGreater;
  return Order::kEqual;
}

}  // namespace

// One value as the facets see it.
struct CPrimitiveRestrictions::Subject {
  enum MessageForm { kText, kInteger, kReal };

  ItemType type = ItemType_None;
  // The value's lexical form: what a pattern matches and what messages show unless `shown` is
  // set.
  std::string text;
  std::string shown;
  // The length for the length facets; -1 when they do not apply to the type.
  std::int64_t length = -1;
  // Whether the bounds apply.
  bool ordered = false;
  // Whether totalDigits and fractionDigits apply; they are counted on `text`.
  bool digits = false;
  MessageForm form = kText;
  double real = 0.0;
  // The value against a literal of its type (a bound or an enumeration value), by value.
  std::function<Order(const std::string&)> compare;
};

CPrimitiveRestrictions::CPrimitiveRestrictions()
    : m_length(-1), m_minLength(-1), m_maxLength(-1), m_totalDigits(-1), m_fractionDigits(-1) {}

CPrimitiveRestrictions::CPrimitiveRestrictions(const char* pattern, int minLength, int maxLength,
                                               const char* minInclusive, const char* maxInclusive,
                                               const char* minExclusive, const char* maxExclusive,
                                               int totalDigits)
    : m_pattern(TextOf(pattern)),
      m_length(-1),
      m_minLength(FacetNumber(minLength)),
      m_maxLength(FacetNumber(maxLength)),
      m_minInclusive(TextOf(minInclusive)),
      m_maxInclusive(TextOf(maxInclusive)),
      m_minExclusive(TextOf(minExclusive)),
      m_maxExclusive(TextOf(maxExclusive)),
      m_totalDigits(FacetNumber(totalDigits)),
      m_fractionDigits(-1) {
  CompilePattern();
}

CPrimitiveRestrictions::CPrimitiveRestrictions(const CPrimitiveRestrictions& other) = default;
CPrimitiveRestrictions& CPrimitiveRestrictions::operator=(const CPrimitiveRestrictions& other) =
    default;
CPrimitiveRestrictions::~CPrimitiveRestrictions() = default;

void CPrimitiveRestrictions::CompilePattern() {
#ifndef OVXML_NO_REGEX
  if (m_pattern.empty()) return;
  try {
    m_regex = std::make_shared<const detail::CXsdRegex>(m_pattern);
  } catch (const COvException& e) {
    m_patternError = e.GetMessage();
  }
#endif
}

void CPrimitiveRestrictions::SetLength(int length) { m_length = FacetNumber(length); }

void CPrimitiveRestrictions::SetFractionDigits(int fractionDigits) {
  m_fractionDigits = FacetNumber(fractionDigits);
}

void CPrimitiveRestrictions::AddEnumeration(const char* value) {
  if (value != nullptr) m_enumerations.emplace_back(value);
}

bool CPrimitiveRestrictions::HasFacets() const {
  return !m_pattern.empty() || m_length >= 0 || m_minLength >= 0 || m_maxLength >= 0 ||
         !m_minInclusive.empty() || !m_maxInclusive.empty() || !m_minExclusive.empty() ||
         !m_maxExclusive.empty() || m_totalDigits >= 0 || m_fractionDigits >= 0 ||
         !m_enumerations.empty();
}

void CPrimitiveRestrictions::CheckSubject(const char* name, const Subject& subject) const {
  const char* elementName = name == nullptr ? "" : name;
  auto fail = [&]() {
    if (subject.form == Subject::kReal) {
      throw COvException(FormatString("Invalid Value for %s [%f]", elementName, subject.real));
    }
    // An integer shows its decimal text, which is what "%d" prints, for every width.
    const std::string& shown = subject.shown.empty() ? subject.text : subject.shown;
    throw COvException(FormatString("Invalid Value for %s [%s]", elementName, shown.c_str()));
  };

  if (subject.length >= 0) {
    if (m_length >= 0 && subject.length != m_length) fail();
    if (m_minLength >= 0 && subject.length < m_minLength) fail();
    if (m_maxLength >= 0 && subject.length > m_maxLength) fail();
  }

  if (!m_pattern.empty()) {
#ifdef OVXML_NO_REGEX
    throw COvException(
        "Regular Expressions not supported as library was built with _NO_REGEX flag set.");
#else
    if (!m_regex) throw COvException(m_patternError);
    if (!m_regex->Matches(subject.text)) fail();
#endif
  }

  if (!m_enumerations.empty()) {
    bool found = false;
    for (const std::string& literal : m_enumerations) {
      if (subject.compare(literal) == Order::kEqual) {
        found = true;
        break;
      }
    }
    if (!found) fail();
  }

  if (subject.ordered) {
    // Each bound admits only the orders listed; an incomparable pair fails every bound.
    auto admits = [&](const std::string& bound, bool less, bool equal, bool greater) {
      if (bound.empty()) return true;
      switch (subject.compare(bound)) {
        case Order::kLess:
          return less;
        case Order::kEqual:
          return equal;
        case Order::kGreater:
          return greater;
        case Order::kIncomparable:
          break;
      }
      return false;
    };
    if (!admits(m_minInclusive, false, true, true)) fail();
    if (!admits(m_maxInclusive, true, true, false)) fail();
    if (!admits(m_minExclusive, false, false, true)) fail();
    if (!admits(m_maxExclusive, true, false, false)) fail();
  }

  if (subject.digits && (m_totalDigits >= 0 || m_fractionDigits >= 0)) {
    int total = 0, fraction = 0;
    detail::CountDecimalDigits(subject.text, total, fraction);
    if (m_totalDigits >= 0 && total > m_totalDigits) fail();
    if (m_fractionDigits >= 0 && fraction > m_fractionDigits) fail();
  }
}

void CPrimitiveRestrictions::CheckSigned(const char* name, std::int64_t value,
                                         ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  s.text = CConversions::i8ToString(value);
  s.ordered = true;
  s.digits = true;
  s.form = Subject::kInteger;
  s.compare = [&](const std::string& literal) {
    return CompareIntegerLiteral(s.text, literal, type);
  };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckUnsigned(const char* name, std::uint64_t value,
                                           ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  const std::string digits = CConversions::ui8ToString(value);
  // The pattern sees the type's own lexical form; the bounds compare the number.
  switch (type) {
    case ItemType_year:
      s.text = CConversions::yearToString(static_cast<std::uint16_t>(value));
      break;
    case ItemType_month:
      s.text = CConversions::monthToString(static_cast<std::uint8_t>(value));
      break;
    case ItemType_day:
      s.text = CConversions::dayToString(static_cast<std::uint8_t>(value));
      break;
    default:
      s.text = digits;
      s.digits = true;
      break;
  }
  // Messages show the number, as "%d" prints it, also for year, month and day.
  s.shown = digits;
  s.ordered = true;
  s.form = Subject::kInteger;
  s.compare = [&](const std::string& literal) {
    return CompareIntegerLiteral(digits, literal, type);
  };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckReal(const char* name, double value, ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  s.text = type == ItemType_r4 ? CConversions::r4ToString(static_cast<float>(value), nullptr)
                               : CConversions::r8ToString(value, nullptr);
  s.ordered = true;
  s.form = Subject::kReal;
  s.real = value;
  s.compare = [&](const std::string& literal) { return CompareReal(value, literal, type); };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckBoolean(const char* name, bool value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_boolean;
  s.text = CConversions::booleanToString(value);
  s.compare = [&](const std::string& literal) {
    try {
      return CConversions::booleanFromString(literal, kCollapse) == value ? Order::kEqual
                                                                          : Order::kIncomparable;
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckString(const char* name, const std::string& value,
                                         ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  s.text = value;
  s.length = CountCharacters(value);
  s.compare = [&](const std::string& literal) {
    return literal == value ? Order::kEqual : Order::kIncomparable;
  };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckBinary(const char* name, const CBinaryData& value,
                                         ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  const bool hex = type == ItemType_hexBinary;
  s.text = hex ? value.GetAsHexString() : value.GetAsBase64();
  s.length = value.GetLength();
  s.compare = [&](const std::string& literal) {
    try {
      const CBinaryData other = hex ? CConversions::hexBinaryFromString(literal, kCollapse)
                                    : CConversions::base64BinaryFromString(literal, kCollapse);
      const std::uint32_t n = value.GetLength();
      const bool same = other.GetLength() == n &&
                        (n == 0 || std::memcmp(other.GetData(), value.GetData(), n) == 0);
      return same ? Order::kEqual : Order::kIncomparable;
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckDecimal(const char* name, const CDecimal& value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_decimal;
  s.text = value.ToString();
  s.ordered = true;
  s.digits = true;
  // Literals are read by the decimal parser itself and compared with the decimal's own order.
  s.compare = [&](const std::string& literal) {
    try {
      const CDecimal other = CConversions::decimalFromString(literal, kCollapse);
      if (value < other) return Order::kLess;
      if (value > other) return Order::kGreater;
      return Order::kEqual;
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckInteger(const char* name, const CBigInteger& value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_integer;
  s.text = value.ToString();
  s.ordered = true;
  s.digits = true;
  // Exact on the text, so that a bound with a fraction ("12.5") is not cut to an integer first.
  s.compare = [&](const std::string& literal) {
    return detail::CompareDecimalText(s.text, CWhitespaceUtils::Collapse(literal));
  };
  CheckSubject(name, s);
}

}  // namespace OvXmlLib6
