// OvVariant: one value of any primitive XML Schema type, tagged with its ItemType, as it travels
// between the descriptors and a generated class's property accessor; it also parses a value from
// text by type and formats it back.
//
// Scalars are held inline. Strings, binary data, dates, durations, decimals and big integers are
// owned heap copies, freed by Clear and copied deeply with the variant.
//
// Tag numbering: 0 no value, 1 to 26 the ItemType values, 27 a bound object and 28 a collection.
// Tags 27 and 28 hold one reference to the object (taken when set, given back when cleared); a
// copy of the variant takes a further reference to the same object.
#ifndef OVXMLLIB6_TYPES_VARIANT_H
#define OVXMLLIB6_TYPES_VARIANT_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"
#include "OvXmlLib6/types/Decimal.h"
#include "OvXmlLib6/types/ItemType.h"
#include "OvXmlLib6/types/WhitespaceUtils.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class CXmlObjectBase;
class CXmlCollectionBase;
namespace detail {
struct CVariantAccess;
}

struct OVXML_API OvVariant {
  // An invalid (empty) variant, tag 0.
  OvVariant();
  OvVariant(const OvVariant& other);
  OvVariant(OvVariant&& other) noexcept;
  OvVariant& operator=(const OvVariant& other);
  OvVariant& operator=(OvVariant&& other) noexcept;
  virtual ~OvVariant();

  // Frees the owned value and makes the variant invalid (tag 0); SetInvalid does the same.
  void Clear();
  void SetInvalid();
  bool IsValid() const { return m_type != 0; }

  // Each setter clears the variant, then stores the value and its tag.
  void SetHexBinary(const CBinaryData& value);
  void SetBase64Binary(const CBinaryData& value);
  void SetI1(std::int8_t value);
  void SetI2(std::int16_t value);
  void SetI4(std::int32_t value);
  void SetI8(std::int64_t value);
  void SetUI1(std::uint8_t value);
  void SetUI2(std::uint16_t value);
  void SetUI4(std::uint32_t value);
  void SetUI8(std::uint64_t value);
  void SetR4(float value);
  void SetR8(double value);
  void SetDuration(const CDateTimeSpan& value);
  void SetYearMonth(const CDateTime& value);
  void SetMonthDay(const CDateTime& value);
  void SetYear(std::uint16_t value);
  void SetMonth(std::uint8_t value);
  void SetDay(std::uint8_t value);
  void SetDate(const CDateTime& value);
  void SetDateTime(const CDateTime& value);
  void SetTime(const CDateTime& value);
  void SetChar(char value);
  void SetString(const std::string& value);
  void SetString(std::string&& value);
  void SetBoolean(bool value);
  void SetDecimal(const CDecimal& value);
  void SetInteger(const CBigInteger& value);
  // Tag 27 / 28, holding one reference to the object; a null object stores a null reference
  // under the tag.
  void SetXmlObject(CXmlObjectBase* value);
  void SetXmlCollection(CXmlCollectionBase* value);

  // The getters return the stored value without looking at the exact tag: the caller knows the
  // type. A scalar getter returns the bytes held in the value slot read as its own type. An
  // object getter returns the held object when the variant holds one of that class (so GetDate
  // of a dateTime variant returns it), and otherwise an empty value of the class, never an
  // invalid reference. References stay valid until the variant is next changed.
  const CBinaryData& GetHexBinary() const;
  const CBinaryData& GetBase64Binary() const;
  std::int8_t GetI1() const;
  std::int16_t GetI2() const;
  std::int32_t GetI4() const;
  std::int64_t GetI8() const;
  std::uint8_t GetUI1() const;
  std::uint16_t GetUI2() const;
  std::uint32_t GetUI4() const;
  std::uint64_t GetUI8() const;
  float GetR4() const;
  double GetR8() const;
  const CDateTimeSpan& GetDuration() const;
  const CDateTime& GetYearMonth() const;
  const CDateTime& GetMonthDay() const;
  std::uint16_t GetYear() const;
  std::uint8_t GetMonth() const;
  std::uint8_t GetDay() const;
  const CDateTime& GetDate() const;
  const CDateTime& GetDateTime() const;
  const CDateTime& GetTime() const;
  char GetChar() const;
  const std::string& GetString() const;
  bool GetBoolean() const;
  const CDecimal& GetDecimal() const;
  const CBigInteger& GetInteger() const;
  // The object held under tag 27 or 28; null under any other tag.
  CSmartPtr<CXmlObjectBase> GetXmlObject() const;
  // The collection held under tag 28 (or a collection set with SetXmlObject); null otherwise.
  CSmartPtr<CXmlCollectionBase> GetXmlCollection() const;

  // The tag.
  ItemType GetTypeAsEnum() const { return static_cast<ItemType>(m_type); }
  // The type word of the tag ("hexBinary" ... "integer"); any other tag, 0 included, throws
  // COvException "Invalid Type %d".
  std::string GetType() const;

  // The value's text by the CConversions routine of its type; the format is used by r4, r8 and
  // decimal only. Tags 0, 27 and 28 throw COvException "Invalid Type %d to convert to string".
  std::string ToString(const char* format = nullptr) const;

  // Parses text with the type's CConversions routine and the rule, then stores the value. A type
  // outside 1 to 26 throws COvException "Invalid Type %d to convert to string"; a conversion
  // error passes through and leaves the variant as it was.
  void FromString(const std::string& text, ItemType type, CWhitespaceUtils::WhitespaceRule rule);

 private:
  friend struct detail::CVariantAccess;

  template <typename T>
  void SetScalar(std::int32_t type, T value);
  template <typename T>
  T GetScalar() const;
  template <typename T>
  void SetObject(std::int32_t type, const T& value);
  void CopyFrom(const OvVariant& other);

  std::int32_t m_type;
  union {
    std::uint64_t bits;  // the scalars, stored byte-wise
    void* object;        // the owned value of the object tags
  } m_value;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_VARIANT_H
