#include "OvXmlLib6/metadata/TypeCollection.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"

namespace OvXmlLib6 {

CXmlTypeCollection::CXmlTypeCollection(ItemType itemType, const char* elementName, const char* ns,
                                       int minOccurs, int maxOccurs, const char* pattern,
                                       int minLength, int maxLength, const char* minInclusive,
                                       const char* maxInclusive, const char* minExclusive,
                                       const char* maxExclusive, int totalDigits,
                                       CWhitespaceUtils::WhitespaceRule whitespaceRule,
                                       const char* format)
    : CXmlCollectionBase(elementName, ns, minOccurs, maxOccurs),
      m_restrictions(pattern, minLength, maxLength, minInclusive, maxInclusive, minExclusive,
                     maxExclusive, totalDigits),
      m_itemType(itemType),
      m_format(format != nullptr ? format : ""),
      m_hasFormat(format != nullptr),
      m_whitespaceRule(whitespaceRule) {}

CXmlTypeCollection::CXmlTypeCollection(const CXmlTypeCollection& other) = default;
CXmlTypeCollection& CXmlTypeCollection::operator=(const CXmlTypeCollection& other) = default;
CXmlTypeCollection::~CXmlTypeCollection() = default;

CXmlElement* CXmlTypeCollection::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* current,
                                             const CXmlSerializationContext& context,
                                             bool /*flag*/) {
  const std::string& name = GetCollectionElementName();
  const std::string ns = GetNamespace();
  while (current != nullptr && DoesElementNameMatch(context, current, name.c_str(), ns.c_str())) {
    AddFromString(current->GetText());
    current = current->GetNextSiblingElement();
  }
  return current;
}

void CXmlTypeCollection::ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                                   const CXmlSerializationContext& context, bool /*flag*/) const {
  ValidateCount(context);
  const std::string& name = GetCollectionElementName();
  const std::string ns = GetNamespace();
  const int count = GetCount();
  for (int i = 0; i < count; ++i) {
    writer->WriteStartElement(name.c_str(), ns.c_str());
    writer->WriteText(ItemText(i).c_str(), m_itemType);
    writer->WriteEndElement();
  }
}

void CXmlTypeCollection::CheckIndex(int index, int count) {
  if (index < 0 || index >= count) ThrowIndexOutOfRange(index, count);
}

void CXmlTypeCollection::BeginInsert(int index, int count, void* item) {
  FireOnCollectionAdd(item);
  if (index < 0 || index > count) throw COvInvalidParamException("Index out of range");
}

void CXmlTypeCollection::EndInsert(void* item) {
  FireOnCollectionAddComplete(item);
  FireOnCollectionChange();
}

void CXmlTypeCollection::BeginRemove(int index, int count) {
  FireOnCollectionRemove(index);
  CheckIndex(index, count);
}

void CXmlTypeCollection::EndRemove(int index) {
  FireOnCollectionRemoveComplete(index);
  FireOnCollectionChange();
}

}  // namespace OvXmlLib6
