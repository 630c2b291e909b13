#include "OvXmlLib6/types/Variant.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"
#include "OvXmlLib6/types/Conversions.h"
#include "types/DecimalText.h"
#include "types/VariantText.h"
#include "types/WhitespaceView.h"

#include <cstring>
#include <type_traits>
#include <utility>

namespace OvXmlLib6 {

namespace {

constexpr std::int32_t kXmlObject = 27;
constexpr std::int32_t kXmlCollection = 28;

// The class of the owned value of a tag, or kScalar.
enum Storage { kScalar, kBinary, kDateTime, kSpan, kString, kDecimal, kInteger, kReference };

Storage StorageOf(std::int32_t type) {
  switch (type) {
    case ItemType_hexBinary:
    case ItemType_base64Binary:
      return kBinary;
    case ItemType_yearMonth:
    case ItemType_monthDay:
    case ItemType_date:
    case ItemType_datetime:
    case ItemType_time:
      return kDateTime;
    case ItemType_duration:
      return kSpan;
    case ItemType_string:
      return kString;
    case ItemType_decimal:
      return kDecimal;
    case ItemType_integer:
      return kInteger;
    case kXmlObject:
    case kXmlCollection:
      return kReference;
    default:
      return kScalar;
  }
}

const char* const kTypeWords[] = {
    nullptr,     "hexBinary", "base64Binary", "i1",      "i2",      "i4",     "i8",
    "ui1",       "ui2",       "ui4",          "ui8",     "r4",      "r8",     "duration",
    "yearMonth", "monthDay",  "year",         "month",   "day",     "date",   "datetime",
    "time",      "char",      "string",       "boolean", "decimal", "integer"};

// An empty value of each object class, returned by getters when the variant holds another
// class, so that a wrong getter never dereferences a scalar.
template <typename T>
const T& EmptyValue() {
  static const T empty;
  return empty;
}

// Generated classes pass every value through a variant that lives for one property: writing or
// reading a document sets and clears one for each value. Each thread keeps the last string,
// decimal and date its variants let go of, and the next one set is copied into it: that spares
// allocating the value and, while it fits, its characters or digits. What is kept is bounded by
// kRecycledSize characters or digits.
constexpr std::size_t kRecycledSize = 256;

struct RecycledValues {
  std::string* string = nullptr;
  CDecimal* decimal = nullptr;
  CDateTime* dateTime = nullptr;
  ~RecycledValues();
};

// Set when the thread's kept values are freed, at its end: variants cleared after that (static
// ones, or those of objects freed later) free their values themselves.
thread_local bool t_recyclingOver = false;
thread_local RecycledValues t_recycled;

RecycledValues::~RecycledValues() {
  t_recyclingOver = true;
  delete string;
  delete decimal;
  delete dateTime;
}

std::string*& Slot(RecycledValues& kept, const std::string*) { return kept.string; }
CDecimal*& Slot(RecycledValues& kept, const CDecimal*) { return kept.decimal; }
CDateTime*& Slot(RecycledValues& kept, const CDateTime*) { return kept.dateTime; }

bool WorthKeeping(const std::string& value) { return value.capacity() <= kRecycledSize; }
bool WorthKeeping(const CDecimal& value) {
  return detail::CDecimalAccess::StorageDigits(value) <= kRecycledSize;
}
bool WorthKeeping(const CDateTime&) { return true; }

template <typename T>
constexpr bool kRecycled =
    std::is_same_v<T, std::string> || std::is_same_v<T, CDecimal> || std::is_same_v<T, CDateTime>;

// A new value of the variant, `value` copied or moved into a kept one when there is one.
template <typename T, typename From>
T* NewValue(From&& value) {
  if constexpr (kRecycled<T>) {
    if (t_recyclingOver) return new T(std::forward<From>(value));
    T*& slot = Slot(t_recycled, static_cast<const T*>(nullptr));
    if (slot != nullptr) {
      T* kept = slot;
      slot = nullptr;
      try {
        *kept = std::forward<From>(value);
      } catch (...) {
        delete kept;
        throw;
      }
      return kept;
    }
  }
  return new T(std::forward<From>(value));
}

// Frees a value of the variant, or keeps it for the next.
template <typename T>
void FreeValue(T* value) {
  if (!t_recyclingOver && WorthKeeping(*value)) {
    T*& slot = Slot(t_recycled, static_cast<const T*>(nullptr));
    if (slot == nullptr) {
      slot = value;
      return;
    }
  }
  delete value;
}

}  // namespace

OvVariant::OvVariant() : m_type(0) { m_value.bits = 0; }

OvVariant::OvVariant(const OvVariant& other) : m_type(0) {
  m_value.bits = 0;
  CopyFrom(other);
}

OvVariant::OvVariant(OvVariant&& other) noexcept : m_type(other.m_type), m_value(other.m_value) {
  other.m_type = 0;
  other.m_value.bits = 0;
}

OvVariant& OvVariant::operator=(const OvVariant& other) {
  if (this != &other) {
    OvVariant copy(other);  // a failed copy leaves this variant as it was
    *this = std::move(copy);
  }
  return *this;
}

OvVariant& OvVariant::operator=(OvVariant&& other) noexcept {
  if (this != &other) {
    Clear();
    m_type = other.m_type;
    m_value = other.m_value;
    other.m_type = 0;
    other.m_value.bits = 0;
  }
  return *this;
}

OvVariant::~OvVariant() { Clear(); }

void OvVariant::CopyFrom(const OvVariant& other) {
  Clear();
  if (other.m_type < 0 || other.m_type > kXmlCollection) throw COvException("Unknown Type");
  switch (StorageOf(other.m_type)) {
    case kScalar:
      m_value.bits = other.m_value.bits;
      break;
    case kBinary:
      m_value.object = new CBinaryData(*static_cast<const CBinaryData*>(other.m_value.object));
      break;
    case kDateTime:
      m_value.object = NewValue<CDateTime>(*static_cast<const CDateTime*>(other.m_value.object));
      break;
    case kSpan:
      m_value.object = new CDateTimeSpan(*static_cast<const CDateTimeSpan*>(other.m_value.object));
      break;
    case kString:
      m_value.object =
          NewValue<std::string>(*static_cast<const std::string*>(other.m_value.object));
      break;
    case kDecimal:
      m_value.object = NewValue<CDecimal>(*static_cast<const CDecimal*>(other.m_value.object));
      break;
    case kInteger:
      m_value.object = new CBigInteger(*static_cast<const CBigInteger*>(other.m_value.object));
      break;
    case kReference:
      m_value.object = other.m_value.object;
      if (m_value.object != nullptr) static_cast<CXmlObjectBase*>(m_value.object)->AddRef();
      break;
  }
  m_type = other.m_type;
}

void OvVariant::Clear() {
  switch (StorageOf(m_type)) {
    case kScalar:
      break;
    case kBinary:
      delete static_cast<CBinaryData*>(m_value.object);
      break;
    case kDateTime:
      FreeValue(static_cast<CDateTime*>(m_value.object));
      break;
    case kSpan:
      delete static_cast<CDateTimeSpan*>(m_value.object);
      break;
    case kString:
      FreeValue(static_cast<std::string*>(m_value.object));
      break;
    case kDecimal:
      FreeValue(static_cast<CDecimal*>(m_value.object));
      break;
    case kInteger:
      delete static_cast<CBigInteger*>(m_value.object);
      break;
    case kReference:
      // The tag goes before the reference, so that an object whose destruction reaches this
      // variant again finds it empty.
      if (m_value.object != nullptr) {
        CXmlObjectBase* object = static_cast<CXmlObjectBase*>(m_value.object);
        m_type = 0;
        m_value.bits = 0;
        object->Release();
      }
      break;
  }
  // Nothing is held any more, so the tag goes too: a getter or a second Clear must not see a
  // freed pointer under an object tag.
  m_type = 0;
  m_value.bits = 0;
}

void OvVariant::SetInvalid() { Clear(); }

template <typename T>
void OvVariant::SetScalar(std::int32_t type, T value) {
  static_assert(std::is_trivially_copyable<T>::value && sizeof(T) <= sizeof(std::uint64_t),
                "scalars fit the value slot");
  Clear();
  m_value.bits = 0;
  std::memcpy(&m_value.bits, &value, sizeof value);
  m_type = type;
}

template <typename T>
T OvVariant::GetScalar() const {
  T value;
  std::memcpy(&value, &m_value, sizeof value);
  return value;
}

template <typename T>
void OvVariant::SetObject(std::int32_t type, const T& value) {
  T* copy = NewValue<T>(value);  // copied before the old value goes, so `value` may live in this
  Clear();
  m_value.object = copy;
  m_type = type;
}

void OvVariant::SetHexBinary(const CBinaryData& value) { SetObject(ItemType_hexBinary, value); }
void OvVariant::SetBase64Binary(const CBinaryData& value) {
  SetObject(ItemType_base64Binary, value);
}
void OvVariant::SetI1(std::int8_t value) { SetScalar(ItemType_i1, value); }
void OvVariant::SetI2(std::int16_t value) { SetScalar(ItemType_i2, value); }
void OvVariant::SetI4(std::int32_t value) { SetScalar(ItemType_i4, value); }
void OvVariant::SetI8(std::int64_t value) { SetScalar(ItemType_i8, value); }
void OvVariant::SetUI1(std::uint8_t value) { SetScalar(ItemType_ui1, value); }
void OvVariant::SetUI2(std::uint16_t value) { SetScalar(ItemType_ui2, value); }
void OvVariant::SetUI4(std::uint32_t value) { SetScalar(ItemType_ui4, value); }
void OvVariant::SetUI8(std::uint64_t value) { SetScalar(ItemType_ui8, value); }
void OvVariant::SetR4(float value) { SetScalar(ItemType_r4, value); }
void OvVariant::SetR8(double value) { SetScalar(ItemType_r8, value); }
void OvVariant::SetDuration(const CDateTimeSpan& value) { SetObject(ItemType_duration, value); }
void OvVariant::SetYearMonth(const CDateTime& value) { SetObject(ItemType_yearMonth, value); }
void OvVariant::SetMonthDay(const CDateTime& value) { SetObject(ItemType_monthDay, value); }
void OvVariant::SetYear(std::uint16_t value) { SetScalar(ItemType_year, value); }
void OvVariant::SetMonth(std::uint8_t value) { SetScalar(ItemType_month, value); }
void OvVariant::SetDay(std::uint8_t value) { SetScalar(ItemType_day, value); }
void OvVariant::SetDate(const CDateTime& value) { SetObject(ItemType_date, value); }
void OvVariant::SetDateTime(const CDateTime& value) { SetObject(ItemType_datetime, value); }
void OvVariant::SetTime(const CDateTime& value) { SetObject(ItemType_time, value); }
void OvVariant::SetChar(char value) { SetScalar(ItemType_char, value); }
void OvVariant::SetString(const std::string& value) { SetObject(ItemType_string, value); }
void OvVariant::SetString(std::string&& value) {
  std::string* moved = NewValue<std::string>(std::move(value));
  Clear();
  m_value.object = moved;
  m_type = ItemType_string;
}
void OvVariant::SetBoolean(bool value) { SetScalar(ItemType_boolean, value); }
void OvVariant::SetDecimal(const CDecimal& value) { SetObject(ItemType_decimal, value); }
void OvVariant::SetInteger(const CBigInteger& value) { SetObject(ItemType_integer, value); }

void OvVariant::SetXmlObject(CXmlObjectBase* value) {
  // The new reference is taken before the old one goes, so setting the held object again is safe.
  if (value != nullptr) value->AddRef();
  Clear();
  m_value.object = value;
  m_type = kXmlObject;
}

void OvVariant::SetXmlCollection(CXmlCollectionBase* value) {
  CXmlObjectBase* object = value;  // held as the object base, like tag 27
  if (object != nullptr) object->AddRef();
  Clear();
  m_value.object = object;
  m_type = kXmlCollection;
}

namespace {

template <typename T>
const T& Held(std::int32_t type, Storage storage, void* object) {
  return StorageOf(type) == storage ? *static_cast<const T*>(object) : EmptyValue<T>();
}

}  // namespace

const CBinaryData& OvVariant::GetHexBinary() const {
  return Held<CBinaryData>(m_type, kBinary, m_value.object);
}
const CBinaryData& OvVariant::GetBase64Binary() const { return GetHexBinary(); }
std::int8_t OvVariant::GetI1() const { return GetScalar<std::int8_t>(); }
std::int16_t OvVariant::GetI2() const { return GetScalar<std::int16_t>(); }
std::int32_t OvVariant::GetI4() const { return GetScalar<std::int32_t>(); }
std::int64_t OvVariant::GetI8() const { return GetScalar<std::int64_t>(); }
std::uint8_t OvVariant::GetUI1() const { return GetScalar<std::uint8_t>(); }
std::uint16_t OvVariant::GetUI2() const { return GetScalar<std::uint16_t>(); }
std::uint32_t OvVariant::GetUI4() const { return GetScalar<std::uint32_t>(); }
std::uint64_t OvVariant::GetUI8() const { return GetScalar<std::uint64_t>(); }
float OvVariant::GetR4() const { return GetScalar<float>(); }
double OvVariant::GetR8() const { return GetScalar<double>(); }
const CDateTimeSpan& OvVariant::GetDuration() const {
  return Held<CDateTimeSpan>(m_type, kSpan, m_value.object);
}
const CDateTime& OvVariant::GetYearMonth() const { return GetDateTime(); }
const CDateTime& OvVariant::GetMonthDay() const { return GetDateTime(); }
std::uint16_t OvVariant::GetYear() const { return GetScalar<std::uint16_t>(); }
std::uint8_t OvVariant::GetMonth() const { return GetScalar<std::uint8_t>(); }
std::uint8_t OvVariant::GetDay() const { return GetScalar<std::uint8_t>(); }
const CDateTime& OvVariant::GetDate() const { return GetDateTime(); }
const CDateTime& OvVariant::GetDateTime() const {
  return Held<CDateTime>(m_type, kDateTime, m_value.object);
}
const CDateTime& OvVariant::GetTime() const { return GetDateTime(); }
char OvVariant::GetChar() const { return GetScalar<char>(); }
const std::string& OvVariant::GetString() const {
  return Held<std::string>(m_type, kString, m_value.object);
}
bool OvVariant::GetBoolean() const {
  // Any byte but 0 is true: a bool read from another scalar's bytes must not be a bad bool.
  return GetScalar<std::uint8_t>() != 0;
}
const CDecimal& OvVariant::GetDecimal() const {
  return Held<CDecimal>(m_type, kDecimal, m_value.object);
}
const CBigInteger& OvVariant::GetInteger() const {
  return Held<CBigInteger>(m_type, kInteger, m_value.object);
}

CSmartPtr<CXmlObjectBase> OvVariant::GetXmlObject() const {
  if (m_type != kXmlObject && m_type != kXmlCollection) return CSmartPtr<CXmlObjectBase>();
  return static_cast<CXmlObjectBase*>(m_value.object);
}

CSmartPtr<CXmlCollectionBase> OvVariant::GetXmlCollection() const {
  // The held pointer is looked at directly: a reference taken and given back for it costs two
  // atomic operations for every wildcard attribute list written.
  if (m_type != kXmlObject && m_type != kXmlCollection) return CSmartPtr<CXmlCollectionBase>();
  CXmlObjectBase* object = static_cast<CXmlObjectBase*>(m_value.object);
  if (m_type == kXmlCollection) return static_cast<CXmlCollectionBase*>(object);
  return dynamic_cast<CXmlCollectionBase*>(object);
}

std::string OvVariant::GetType() const {
  if (m_type < ItemType_hexBinary || m_type > ItemType_integer) {
    throw COvException(FormatString("Invalid Type %d", m_type));
  }
  return kTypeWords[m_type];
}

std::string OvVariant::ToString(const char* format) const {
  using C = CConversions;
  switch (m_type) {
    case ItemType_hexBinary:
      return C::hexBinaryToString(GetHexBinary());
    case ItemType_base64Binary:
      return C::base64BinaryToString(GetBase64Binary());
    case ItemType_i1:
      return C::i1ToString(GetI1());
    case ItemType_i2:
      return C::i2ToString(GetI2());
    case ItemType_i4:
      return C::i4ToString(GetI4());
    case ItemType_i8:
      return C::i8ToString(GetI8());
    case ItemType_ui1:
      return C::ui1ToString(GetUI1());
    case ItemType_ui2:
      return C::ui2ToString(GetUI2());
    case ItemType_ui4:
      return C::ui4ToString(GetUI4());
    case ItemType_ui8:
      return C::ui8ToString(GetUI8());
    case ItemType_r4:
      return C::r4ToString(GetR4(), format);
    case ItemType_r8:
      return C::r8ToString(GetR8(), format);
    case ItemType_duration:
      return C::durationToString(GetDuration());
    case ItemType_yearMonth:
      return C::yearMonthToString(GetYearMonth());
    case ItemType_monthDay:
      return C::monthDayToString(GetMonthDay());
    case ItemType_year:
      return C::yearToString(GetYear());
    case ItemType_month:
      return C::monthToString(GetMonth());
    case ItemType_day:
      return C::dayToString(GetDay());
    case ItemType_date:
      return C::dateToString(GetDate());
    case ItemType_datetime:
      return C::datetimeToString(GetDateTime());
    case ItemType_time:
      return C::timeToString(GetTime());
    case ItemType_char:
      return C::charToString(GetChar());
    case ItemType_string:
      return C::stringToString(GetString());
    case ItemType_boolean:
      return C::booleanToString(GetBoolean());
    case ItemType_decimal:
      return C::decimalToString(GetDecimal(), format);
    case ItemType_integer:
      return C::integerToString(GetInteger());
    default:
      throw COvException(FormatString("Invalid Type %d to convert to string", m_type));
  }
}

void OvVariant::FromString(const std::string& text, ItemType type,
                           CWhitespaceUtils::WhitespaceRule rule) {
  using C = CConversions;
  // Each branch converts first and stores only on success.
  switch (type) {
    case ItemType_hexBinary:
      return SetHexBinary(C::hexBinaryFromString(text, rule));
    case ItemType_base64Binary:
      return SetBase64Binary(C::base64BinaryFromString(text, rule));
    case ItemType_i1:
      return SetI1(C::i1FromString(text, rule));
    case ItemType_i2:
      return SetI2(C::i2FromString(text, rule));
    case ItemType_i4:
      return SetI4(C::i4FromString(text, rule));
    case ItemType_i8:
      return SetI8(C::i8FromString(text, rule));
    case ItemType_ui1:
      return SetUI1(C::ui1FromString(text, rule));
    case ItemType_ui2:
      return SetUI2(C::ui2FromString(text, rule));
    case ItemType_ui4:
      return SetUI4(C::ui4FromString(text, rule));
    case ItemType_ui8:
      return SetUI8(C::ui8FromString(text, rule));
    case ItemType_r4:
      return SetR4(C::r4FromString(text, rule));
    case ItemType_r8:
      return SetR8(C::r8FromString(text, rule));
    case ItemType_duration:
      return SetDuration(C::durationFromString(text, rule));
    case ItemType_yearMonth:
      return SetYearMonth(C::yearMonthFromString(text, rule));
    case ItemType_monthDay:
      return SetMonthDay(C::monthDayFromString(text, rule));
    case ItemType_year:
      return SetYear(C::yearFromString(text, rule));
    case ItemType_month:
      return SetMonth(C::monthFromString(text, rule));
    case ItemType_day:
      return SetDay(C::dayFromString(text, rule));
    case ItemType_date:
      return SetDate(C::dateFromString(text, rule));
    case ItemType_datetime:
      return SetDateTime(C::datetimeFromString(text, rule));
    case ItemType_time:
      return SetTime(C::timeFromString(text, rule));
    case ItemType_char:
      return SetChar(C::charFromString(text, rule));
    case ItemType_string:
      return SetString(C::stringFromString(text, rule));
    case ItemType_boolean:
      return SetBoolean(C::booleanFromString(text, rule));
    case ItemType_decimal:
      return SetDecimal(C::decimalFromString(text, rule));
    case ItemType_integer:
      return SetInteger(C::integerFromString(text, rule));
    default:
      throw COvException(
          FormatString("Invalid Type %d to convert to string", static_cast<int>(type)));
  }
}

namespace detail {

void VariantFromText(OvVariant& value, std::string_view text, ItemType type,
                     CWhitespaceUtils::WhitespaceRule rule) {
  if (type != ItemType_string) {
    value.FromString(std::string(text), type, rule);
    return;
  }
  std::string scratch;
  const std::string_view result = ApplyRuleView(rule, text, scratch);
  if (result.data() == scratch.data()) {
    value.SetString(std::move(scratch));
  } else {
    value.SetString(std::string(result));
  }
}

}  // namespace detail
}  // namespace OvXmlLib6
