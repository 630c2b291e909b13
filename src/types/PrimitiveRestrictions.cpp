#include "OvXmlLib6/types/PrimitiveRestrictions.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "OvXmlLib6/types/Decimal.h"
#include "OvXmlLib6/types/Variant.h"
#include "types/DecimalText.h"
#include "types/NumberText.h"
#include "types/XsdRegex.h"

#include <algorithm>
#include <cmath>
#include <cstring>
#include <exception>
#include <limits>
#include <memory>

namespace OvXmlLib6 {

namespace {

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

std::string TextOf(const char* text) { return text == nullptr ? std::string() : text; }

int FacetNumber(int value) { return value < 0 ? -1 : value; }

// Characters of UTF-8 text: the bytes that do not continue a sequence.
std::int64_t CountCharacters(std::string_view text) {
  std::int64_t count = 0;
  for (char c : text) {
    if ((static_cast<unsigned char>(c) & 0xC0) != 0x80) ++count;
  }
  return count;
}

using detail::Order;

// An integer value against a literal of the integer family, by value. Literals of month and day
// may be written in their own lexical forms, "--05" and "---05".
Order CompareIntegerLiteral(std::string_view valueText, std::string literal, ItemType type) {
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

Order FromCompareResult(CDateTime::DTCompareResult result) {
  switch (result) {
    case CDateTime::DTCompare_Less:
      return Order::kLess;
    case CDateTime::DTCompare_Equal:
      return Order::kEqual;
    case CDateTime::DTCompare_Greater:
      return Order::kGreater;
    default:
      return Order::kIncomparable;
  }
}

// The value as a dateTime on the XML Schema reference calendar, with its zone: the kinds that
// lack fields take them from 1972-12-31T00:00:00 (1972 is a leap year, so --02-29 exists).
// CDateTime orders dateTimes only; this lets every kind be ordered the same way. Throws when
// the value has no such dateTime (a lenient gDay above 31, a kind that is not set).
CDateTime AsReferenceDateTime(const CDateTime& v) {
  int year = 1972, month = 12, day = 31, hour = 0, minute = 0, second = 0;
  int milli = 0, micro = 0, nano = 0;
  const CDateTime::DTType kind = v.GetType();
  if (kind == CDateTime::dateTime || kind == CDateTime::time) {
    hour = v.GetHour();
    minute = v.GetMinute();
    second = v.GetSecond();
    milli = v.GetMilliSecond();
    micro = v.GetMicroSecond();
    nano = v.GetNanoSecond();
  }
  switch (kind) {
    case CDateTime::dateTime:
    case CDateTime::date:
      year = v.GetYear();
      month = v.GetMonth();
      day = v.GetDay();
      break;
    case CDateTime::time:
      break;
    case CDateTime::gYearMonth:
      year = v.GetYear();
      month = v.GetMonth();
      day = 1;
      break;
    case CDateTime::gYear:
      year = v.GetYear();
      month = 1;
      day = 1;
      break;
    case CDateTime::gMonthDay:
      month = v.GetMonth();
      day = v.GetDay();
      break;
    case CDateTime::gMonth:
      month = v.GetMonth();
      day = 1;
      break;
    case CDateTime::gDay:
      day = v.GetDay();
      break;
    default:
      throw COvException("no reference dateTime");
  }
  CDateTime result(static_cast<short>(year), static_cast<unsigned char>(month),
                   static_cast<unsigned char>(day), static_cast<unsigned char>(hour),
                   static_cast<unsigned char>(minute), static_cast<unsigned char>(second),
                   static_cast<unsigned short>(milli), static_cast<unsigned short>(micro),
                   static_cast<unsigned short>(nano));
  if (v.HasTimeZone()) {
    result.SetTimeZone(v.GetZoneHour(), v.GetZoneMinute());
  } else if (v.IsUTC()) {
    result.SetUTC();
  }
  return result;
}

CDateTime ParseDateLiteral(const std::string& literal, ItemType type, CDateTime::DTType kind) {
  switch (type) {
    case ItemType_datetime:
      return CConversions::datetimeFromString(literal, kCollapse);
    case ItemType_time:
      return CConversions::timeFromString(literal, kCollapse);
    case ItemType_date:
    case ItemType_yearMonth:
    case ItemType_monthDay:
      return CConversions::dateFromString(literal, kCollapse);
    default:
      break;
  }
  // Not a date type: the value's own kind picks the parser.
  if (kind == CDateTime::dateTime) return CConversions::datetimeFromString(literal, kCollapse);
  if (kind == CDateTime::time) return CConversions::timeFromString(literal, kCollapse);
  return CConversions::dateFromString(literal, kCollapse);
}

// A callable that orders the value against a literal, referred to rather than copied: the checks
// make one for every value, and a std::function would allocate for most of their lambdas. The
// callable must outlive the reference.
class CompareRef {
 public:
  CompareRef() = default;
  template <typename Compare>
  explicit CompareRef(const Compare& compare)
      : m_target(&compare), m_call([](const void* target, const std::string& literal) {
          return (*static_cast<const Compare*>(target))(literal);
        }) {}
  Order operator()(const std::string& literal) const { return m_call(m_target, literal); }

 private:
  const void* m_target = nullptr;
  Order (*m_call)(const void*, const std::string&) = nullptr;
};

}  // namespace

// One value as the facets see it.
struct CPrimitiveRestrictions::Subject {
  enum MessageForm { kText, kInteger, kReal };

  ItemType type = ItemType_None;
  // The value's lexical form: what a pattern matches and what messages show unless `shown` is
  // set. Both lie in `storage`, in a string of the caller, or in the checked string itself.
  std::string_view text;
  std::string_view shown;
  std::string storage;
  // The length for the length facets; -1 when they do not apply to the type.
  std::int64_t length = -1;
  // Whether the bounds apply.
  bool ordered = false;
  // Whether totalDigits and fractionDigits apply; they are counted on `text`.
  bool digits = false;
  MessageForm form = kText;
  double real = 0.0;
  // The value against a literal of its type (a bound or an enumeration value), by value.
  CompareRef compare;
  // Set when the value has no text (a date that cannot be printed): rethrown by any facet that
  // needs the text, so bounds alone still work.
  std::exception_ptr textError;
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
  PrepareIntegerRange();
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

struct CPrimitiveRestrictions::CDecimalBounds {
  std::unique_ptr<const CDecimal> minInclusive;
  std::unique_ptr<const CDecimal> maxInclusive;
  std::unique_ptr<const CDecimal> minExclusive;
  std::unique_ptr<const CDecimal> maxExclusive;
};

namespace {
std::unique_ptr<const CDecimal> DecimalBound(const std::string& literal) {
  if (literal.empty()) return nullptr;
  try {
    return std::make_unique<const CDecimal>(CConversions::decimalFromString(literal, kCollapse));
  } catch (const COvException&) {
    return nullptr;
  }
}
}  // namespace

void CPrimitiveRestrictions::PrepareIntegerRange() {
  if (!m_minInclusive.empty() || !m_maxInclusive.empty() || !m_minExclusive.empty() ||
      !m_maxExclusive.empty()) {
    auto bounds = std::make_shared<CDecimalBounds>();
    bounds->minInclusive = DecimalBound(m_minInclusive);
    bounds->maxInclusive = DecimalBound(m_maxInclusive);
    bounds->minExclusive = DecimalBound(m_minExclusive);
    bounds->maxExclusive = DecimalBound(m_maxExclusive);
    m_decimalBounds = std::move(bounds);
  }
  m_integerRangeOnly = false;
  if (!m_pattern.empty() || m_length >= 0 || m_minLength >= 0 || m_maxLength >= 0 ||
      m_totalDigits >= 0 || m_fractionDigits >= 0 || !m_enumerations.empty()) {
    return;
  }
  std::int64_t low = std::numeric_limits<std::int64_t>::min();
  std::int64_t high = std::numeric_limits<std::int64_t>::max();
  // A bound that is not a plain integer, or one whose exclusive form leaves no room, keeps the
  // full check.
  auto bound = [](const std::string& literal, std::int64_t& value) {
    const std::string text = CWhitespaceUtils::Collapse(literal);
    std::size_t digits = text.empty() || (text[0] != '-' && text[0] != '+') ? 0 : 1;
    if (digits == text.size()) return false;
    for (std::size_t i = digits; i < text.size(); ++i) {
      if (text[i] < '0' || text[i] > '9') return false;
    }
    try {
      value = static_cast<std::int64_t>(detail::ParseInteger(text, detail::kI8Range));
    } catch (const COvException&) {
      return false;
    }
    return true;
  };
  std::int64_t value = 0;
  if (!m_minInclusive.empty()) {
    if (!bound(m_minInclusive, value)) return;
    low = std::max(low, value);
  }
  if (!m_minExclusive.empty()) {
    if (!bound(m_minExclusive, value) || value == std::numeric_limits<std::int64_t>::max()) return;
    low = std::max(low, value + 1);
  }
  if (!m_maxInclusive.empty()) {
    if (!bound(m_maxInclusive, value)) return;
    high = std::min(high, value);
  }
  if (!m_maxExclusive.empty()) {
    if (!bound(m_maxExclusive, value) || value == std::numeric_limits<std::int64_t>::min()) return;
    high = std::min(high, value - 1);
  }
  m_integerMin = low;
  m_integerMax = high;
  m_integerRangeOnly = true;
}

void CPrimitiveRestrictions::SetLength(int length) {
  m_length = FacetNumber(length);
  PrepareIntegerRange();
}

void CPrimitiveRestrictions::SetFractionDigits(int fractionDigits) {
  m_fractionDigits = FacetNumber(fractionDigits);
  PrepareIntegerRange();
}

void CPrimitiveRestrictions::AddEnumeration(const char* value) {
  if (value != nullptr) m_enumerations.emplace_back(value);
  PrepareIntegerRange();
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
    if (subject.textError) std::rethrow_exception(subject.textError);
    if (subject.form == Subject::kReal) {
      throw COvException(FormatString("Invalid Value for %s [%f]", elementName, subject.real));
    }
    // An integer shows its decimal text, which is what "%d" prints, for every width.
    const std::string shown(subject.shown.empty() ? subject.text : subject.shown);
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
    if (subject.textError) std::rethrow_exception(subject.textError);
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
  if (m_integerRangeOnly && value >= m_integerMin && value <= m_integerMax) return;
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  s.storage = CConversions::i8ToString(value);
  s.text = s.storage;
  s.ordered = true;
  s.digits = true;
  s.form = Subject::kInteger;
  const auto compare = [&](const std::string& literal) {
    return CompareIntegerLiteral(s.text, literal, type);
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckUnsigned(const char* name, std::uint64_t value,
                                           ItemType type) const {
  if (m_integerRangeOnly && value <= static_cast<std::uint64_t>(m_integerMax) &&
      (m_integerMin <= 0 || value >= static_cast<std::uint64_t>(m_integerMin))) {
    return;
  }
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  const std::string digits = CConversions::ui8ToString(value);
  // The pattern sees the type's own lexical form; the bounds compare the number.
  switch (type) {
    case ItemType_year:
      s.storage = CConversions::yearToString(static_cast<std::uint16_t>(value));
      s.text = s.storage;
      break;
    case ItemType_month:
      s.storage = CConversions::monthToString(static_cast<std::uint8_t>(value));
      s.text = s.storage;
      break;
    case ItemType_day:
      s.storage = CConversions::dayToString(static_cast<std::uint8_t>(value));
      s.text = s.storage;
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
  const auto compare = [&](const std::string& literal) {
    return CompareIntegerLiteral(digits, literal, type);
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckReal(const char* name, double value, ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  s.storage = type == ItemType_r4 ? CConversions::r4ToString(static_cast<float>(value), nullptr)
                                  : CConversions::r8ToString(value, nullptr);
  s.text = s.storage;
  s.ordered = true;
  s.form = Subject::kReal;
  s.real = value;
  const auto compare = [&](const std::string& literal) {
    return CompareReal(value, literal, type);
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckBoolean(const char* name, bool value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_boolean;
  s.storage = CConversions::booleanToString(value);
  s.text = s.storage;
  const auto compare = [&](const std::string& literal) {
    try {
      return CConversions::booleanFromString(literal, kCollapse) == value ? Order::kEqual
                                                                          : Order::kIncomparable;
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckString(const char* name, const std::string& value,
                                         ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  s.text = value;
  // Counted only for the length facets that need it.
  if (m_length >= 0 || m_minLength >= 0 || m_maxLength >= 0) s.length = CountCharacters(value);
  const auto compare = [&](const std::string& literal) {
    return literal == value ? Order::kEqual : Order::kIncomparable;
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckBinary(const char* name, const CBinaryData& value,
                                         ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  const bool hex = type == ItemType_hexBinary;
  s.storage = hex ? value.GetAsHexString() : value.GetAsBase64();
  s.text = s.storage;
  s.length = value.GetLength();
  const auto compare = [&](const std::string& literal) {
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
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckDecimal(const char* name, const CDecimal& value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_decimal;
  s.storage = value.ToString();
  s.text = s.storage;
  s.ordered = true;
  s.digits = true;
  // Literals are read by the decimal parser itself and compared with the decimal's own order.
  const auto compare = [&](const std::string& literal) {
    // The bounds were read once; enumeration values are read here.
    const CDecimal* bound = nullptr;
    if (m_decimalBounds) {
      if (&literal == &m_minInclusive) bound = m_decimalBounds->minInclusive.get();
      if (&literal == &m_maxInclusive) bound = m_decimalBounds->maxInclusive.get();
      if (&literal == &m_minExclusive) bound = m_decimalBounds->minExclusive.get();
      if (&literal == &m_maxExclusive) bound = m_decimalBounds->maxExclusive.get();
    }
    const auto order = [&value](const CDecimal& other) {
      if (value < other) return Order::kLess;
      if (value > other) return Order::kGreater;
      return Order::kEqual;
    };
    if (bound != nullptr) return order(*bound);
    try {
      return order(CConversions::decimalFromString(literal, kCollapse));
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckInteger(const char* name, const CBigInteger& value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_integer;
  s.storage = value.ToString();
  s.text = s.storage;
  s.ordered = true;
  s.digits = true;
  // Exact on the text, so that a bound with a fraction ("12.5") is not cut to an integer first.
  const auto compare = [&](const std::string& literal) {
    return detail::CompareDecimalText(s.text, CWhitespaceUtils::Collapse(literal));
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckDateTime(const char* name, const CDateTime& value,
                                           ItemType type) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = type;
  try {
    s.storage = CConversions::datetimeToString(value);
    s.text = s.storage;
  } catch (const COvException&) {
    s.textError = std::current_exception();
  }
  s.ordered = true;
  const auto compare = [&](const std::string& literal) {
    try {
      const CDateTime other = ParseDateLiteral(literal, type, value.GetType());
      return FromCompareResult(AsReferenceDateTime(value).CompareTo(AsReferenceDateTime(other)));
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::CheckDuration(const char* name, const CDateTimeSpan& value) const {
  if (!HasFacets()) return;
  Subject s;
  s.type = ItemType_duration;
  s.storage = CConversions::durationToString(value);
  s.text = s.storage;
  s.ordered = true;
  const auto compare = [&](const std::string& literal) {
    try {
      return FromCompareResult(
          value.CompareTo(CConversions::durationFromString(literal, kCollapse)));
    } catch (const COvException&) {
      return Order::kIncomparable;
    }
  };
  s.compare = CompareRef(compare);
  CheckSubject(name, s);
}

void CPrimitiveRestrictions::Check(const char* name, const OvVariant& value) const {
  if (!HasFacets()) return;
  const ItemType type = value.GetTypeAsEnum();
  switch (type) {
    case ItemType_hexBinary:
    case ItemType_base64Binary:
      return CheckBinary(name, value.GetHexBinary(), type);
    case ItemType_i1:
      return CheckSigned(name, value.GetI1(), type);
    case ItemType_i2:
      return CheckSigned(name, value.GetI2(), type);
    case ItemType_i4:
      return CheckSigned(name, value.GetI4(), type);
    case ItemType_i8:
      return CheckSigned(name, value.GetI8(), type);
    case ItemType_ui1:
      return CheckUnsigned(name, value.GetUI1(), type);
    case ItemType_ui2:
      return CheckUnsigned(name, value.GetUI2(), type);
    case ItemType_ui4:
      return CheckUnsigned(name, value.GetUI4(), type);
    case ItemType_ui8:
      return CheckUnsigned(name, value.GetUI8(), type);
    case ItemType_year:
      return CheckUnsigned(name, value.GetYear(), type);
    case ItemType_month:
      return CheckUnsigned(name, value.GetMonth(), type);
    case ItemType_day:
      return CheckUnsigned(name, value.GetDay(), type);
    case ItemType_r4:
      return CheckReal(name, value.GetR4(), type);
    case ItemType_r8:
      return CheckReal(name, value.GetR8(), type);
    case ItemType_duration:
      return CheckDuration(name, value.GetDuration());
    case ItemType_yearMonth:
    case ItemType_monthDay:
    case ItemType_date:
    case ItemType_datetime:
    case ItemType_time:
      return CheckDateTime(name, value.GetDateTime(), type);
    case ItemType_char:
      return CheckString(name, std::string(1, value.GetChar()), type);
    case ItemType_string:
      return CheckString(name, value.GetString(), type);
    case ItemType_boolean:
      return CheckBoolean(name, value.GetBoolean());
    case ItemType_decimal:
      return CheckDecimal(name, value.GetDecimal());
    case ItemType_integer:
      return CheckInteger(name, value.GetInteger());
    default:
      return;  // no value, or a bound object: no facets apply
  }
}

}  // namespace OvXmlLib6
