// CXmlTypeCollection: the base of the typed primitive collections (Ci4Col, CstringCol, ...). It
// carries what every one of them needs besides its values: the item type, the facets each added
// value is checked against, the whitespace rule of reading and the format of writing.
//
// Reading takes every consecutive child element whose name matches the collection's element name
// and namespace and hands its text to AddFromString; the first element that does not match ends
// the run without error. Writing checks the count, then writes one element per value.
#ifndef OVXMLLIB6_METADATA_TYPECOLLECTION_H
#define OVXMLLIB6_METADATA_TYPECOLLECTION_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"
#include "OvXmlLib6/types/ItemType.h"
#include "OvXmlLib6/types/PrimitiveRestrictions.h"
#include "OvXmlLib6/types/WhitespaceUtils.h"

#include <string>

namespace OvXmlLib6 {

class OVXML_API CXmlTypeCollection : public CXmlCollectionBase {
 public:
  // The facet arguments go unchanged to the CPrimitiveRestrictions constructor (pattern,
  // minLength, maxLength, minInclusive, maxInclusive, minExclusive, maxExclusive, totalDigits).
  // A null format means the conversion's default form.
  CXmlTypeCollection(ItemType itemType, const char* elementName, const char* ns, int minOccurs,
                     int maxOccurs, const char* pattern, int minLength, int maxLength,
                     const char* minInclusive, const char* maxInclusive, const char* minExclusive,
                     const char* maxExclusive, int totalDigits,
                     CWhitespaceUtils::WhitespaceRule whitespaceRule, const char* format);
  CXmlTypeCollection(const CXmlTypeCollection& other);
  CXmlTypeCollection& operator=(const CXmlTypeCollection& other);

  ItemType GetItemType() const { return m_itemType; }
  CWhitespaceUtils::WhitespaceRule GetWhitespaceRule() const { return m_whitespaceRule; }
  // Null when no format was given.
  const char* GetFormat() const { return m_hasFormat ? m_format.c_str() : nullptr; }
  // The facets; the non-const form lets the facets without a constructor slot be added
  // (SetLength, SetFractionDigits, AddEnumeration).
  const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }
  CPrimitiveRestrictions& GetRestrictions() { return m_restrictions; }

 protected:
  ~CXmlTypeCollection() override;

  // Converts the text of one element with the collection's whitespace rule and appends the
  // value, checking its facets.
  virtual void AddFromString(const std::string& text) = 0;

  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;
  // ValidateCount, then one element per value with the collection's element name and namespace
  // (the namespace argument is not used).
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* ns,
                 const CXmlSerializationContext& context, bool flag) const override;

  // The text of the value at index, for writing.
  virtual std::string ItemText(int index) const = 0;

  // The steps that every typed collection shares around its own vector of `count` values.
  // Before an insertion at `index`: sends the add event, then throws COvInvalidParamException
  // "Index out of range" unless 0 <= index <= count.
  void BeginInsert(int index, int count, void* item);
  // After an insertion: add complete, then change.
  void EndInsert(void* item);
  // Before removing the value at `index`: sends remove (index), then throws "Index %d is out of
  // range, use 0 - %d" unless the index is valid.
  void BeginRemove(int index, int count);
  // After the removal: remove complete (index), then change.
  void EndRemove(int index);
  // Throws "Index %d is out of range, use 0 - %d" unless the index is valid.
  static void CheckIndex(int index, int count);

 private:
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  std::string m_format;
  bool m_hasFormat;
  CWhitespaceUtils::WhitespaceRule m_whitespaceRule;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_METADATA_TYPECOLLECTION_H
