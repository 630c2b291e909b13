#include "OvXmlLib6/fastinfoset/Vocabulary.h"

namespace OvXmlLib6 {

namespace {

// The predefined namespace of the "xml" prefix, stored with every slash doubled. This is the
// text the vocabulary has always held and matched; it never goes on the wire (the namespace is
// index 1 there), so the octets are unaffected.
const char kXmlNamespace[] = "http:////www.w3.org//XML//1998//namespace";

// The built-in restricted alphabets 1 (numeric, with a lower-case exponent letter) and 2 (date
// and time).
const char kNumericAlphabet[] = "0123456789-+.e ";
const char kDateTimeAlphabet[] = "0123456789-:TZ ";

}  // namespace

CFIVocabulary::CFIVocabulary() : m_restrictedAlphabets{kNumericAlphabet, kDateTimeAlphabet} {
  AddPrefixName("xml");
  AddNamespaceName(kXmlNamespace);
}

CFIVocabulary::~CFIVocabulary() = default;

bool CFIVocabulary::FindIndex(const IndexMap& map, const std::string& key, std::uint32_t& index) {
  const auto found = map.find(key);
  if (found == map.end()) return false;
  index = found->second;
  return true;
}

void CFIVocabulary::AddString(CFIStringTable& table, IndexMap& map, const std::string& value) {
  const std::uint32_t index = table.Add(value);
  // The index is the table position, which is the map's size plus 1 as long as no value was
  // added twice. A value added again keeps its first index.
  if (index <= MaxIndexedEntries) map.emplace(value, index);
}

std::uint32_t CFIVocabulary::IndexOfPart(CFIStringTable& table, IndexMap& map,
                                         const std::string& part, bool emptyIsAbsent) {
  if (emptyIsAbsent && part.empty()) return 0;
  std::uint32_t index = 0;
  if (FindIndex(map, part, index)) return index;
  AddString(table, map, part);
  return FindIndex(map, part, index) ? index : 0;
}

std::string CFIVocabulary::QNameKey(const std::string& prefix, const std::string& namespaceName,
                                    const std::string& localName) {
  std::string key;
  key.reserve(prefix.size() + namespaceName.size() + localName.size() + 24);
  for (const std::string* part : {&prefix, &namespaceName, &localName}) {
    key += std::to_string(part->size());
    key += ':';
    key += *part;
  }
  return key;
}

void CFIVocabulary::AddQName(CFIQNameTable& table, IndexMap& map, const std::string& prefix,
                             const std::string& namespaceName, const std::string& localName) {
  const CQNameParts parts(IndexOfPart(m_prefixNames, m_prefixMap, prefix, true),
                          IndexOfPart(m_namespaceNames, m_namespaceMap, namespaceName, true),
                          IndexOfPart(m_localNames, m_localNameMap, localName, false));
  const std::uint32_t index = table.Add(parts);
  if (index <= MaxIndexedEntries) map.emplace(QNameKey(prefix, namespaceName, localName), index);
}

void CFIVocabulary::AddPrefixName(const std::string& prefix) {
  AddString(m_prefixNames, m_prefixMap, prefix);
}

void CFIVocabulary::AddNamespaceName(const std::string& namespaceName) {
  AddString(m_namespaceNames, m_namespaceMap, namespaceName);
}

void CFIVocabulary::AddLocalName(const std::string& localName) {
  AddString(m_localNames, m_localNameMap, localName);
}

void CFIVocabulary::AddAttributeValue(const std::string& value) {
  AddString(m_attributeValues, m_attributeValueMap, value);
}

void CFIVocabulary::AddElementValue(const std::string& value) {
  AddString(m_characterChunks, m_elementValueMap, value);
}

void CFIVocabulary::AddElement(const std::string& prefix, const std::string& namespaceName,
                               const std::string& localName) {
  AddQName(m_elementNames, m_elementNameMap, prefix, namespaceName, localName);
}

void CFIVocabulary::AddAttribute(const std::string& prefix, const std::string& namespaceName,
                                 const std::string& localName) {
  AddQName(m_attributeNames, m_attributeNameMap, prefix, namespaceName, localName);
}

bool CFIVocabulary::FindPrefixNameIndex(const std::string& prefix, std::uint32_t& index) const {
  return FindIndex(m_prefixMap, prefix, index);
}

bool CFIVocabulary::FindNamespaceNameIndex(const std::string& namespaceName,
                                           std::uint32_t& index) const {
  return FindIndex(m_namespaceMap, namespaceName, index);
}

bool CFIVocabulary::FindLocalNameIndex(const std::string& localName, std::uint32_t& index) const {
  return FindIndex(m_localNameMap, localName, index);
}

bool CFIVocabulary::FindAttributeValueIndex(const std::string& value, std::uint32_t& index) const {
  return FindIndex(m_attributeValueMap, value, index);
}

bool CFIVocabulary::FindElementValueIndex(const std::string& value, std::uint32_t& index) const {
  return FindIndex(m_elementValueMap, value, index);
}

bool CFIVocabulary::FindElementIndex(const std::string& prefix, const std::string& namespaceName,
                                     const std::string& localName, std::uint32_t& index) const {
  return FindIndex(m_elementNameMap, QNameKey(prefix, namespaceName, localName), index);
}

bool CFIVocabulary::FindAttributeIndex(const std::string& prefix, const std::string& namespaceName,
                                       const std::string& localName, std::uint32_t& index) const {
  return FindIndex(m_attributeNameMap, QNameKey(prefix, namespaceName, localName), index);
}

}  // namespace OvXmlLib6
