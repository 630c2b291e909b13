// The vocabulary of a Fast Infoset document: the tables that give strings and qualified names
// their indexes, and the hash maps that find those indexes again when writing.
//
// Indexes start at 1 and follow the order in which entries were added. Each table keeps every
// entry it is given, because a reader must mirror the stream exactly; its map stops taking new
// entries once an index would pass 2^20, the largest index the format allows, and such values are
// then simply not found (so a writer writes them as literals).
#ifndef OVXMLLIB6_FASTINFOSET_VOCABULARY_H
#define OVXMLLIB6_FASTINFOSET_VOCABULARY_H

#include "OvXmlLib6/core/Export.h"

#include <cstdint>
#include <string>
#include <unordered_map>
#include <utility>
#include <vector>

namespace OvXmlLib6 {

// A qualified name as three vocabulary indexes. An index of 0 means the part is absent (no
// prefix, no namespace).
class OVXML_API CQNameParts {
 public:
  CQNameParts() = default;
  CQNameParts(std::uint32_t prefixIndex, std::uint32_t namespaceNameIndex,
              std::uint32_t localNameIndex)
      : prefix(prefixIndex), namespaceName(namespaceNameIndex), localName(localNameIndex) {}

  bool operator==(const CQNameParts& other) const {
    return prefix == other.prefix && namespaceName == other.namespaceName &&
           localName == other.localName;
  }
  bool operator!=(const CQNameParts& other) const { return !(*this == other); }

  std::uint32_t prefix = 0;
  std::uint32_t namespaceName = 0;
  std::uint32_t localName = 0;
};

// One vocabulary table. Position 0 holds index 1.
template <class T>
class CFITable {
 public:
  using const_iterator = typename std::vector<T>::const_iterator;

  const_iterator begin() const { return m_entries.begin(); }
  const_iterator end() const { return m_entries.end(); }
  std::size_t size() const { return m_entries.size(); }
  bool empty() const { return m_entries.empty(); }

  // The entry with the 1-based index, or null when the table has no such entry.
  const T* GetAt(std::uint32_t index) const {
    return index >= 1 && index <= m_entries.size() ? &m_entries[index - 1] : nullptr;
  }

  // Appends the entry and returns its index.
  std::uint32_t Add(T entry) {
    m_entries.push_back(std::move(entry));
    return static_cast<std::uint32_t>(m_entries.size());
  }

 private:
  std::vector<T> m_entries;
};

class OVXML_API CFIStringTable : public CFITable<std::string> {};
class OVXML_API CFIQNameTable : public CFITable<CQNameParts> {};

class OVXML_API CFIVocabulary {
 public:
  // The largest index a map holds: 2^20.
  static constexpr std::uint32_t MaxIndexedEntries = 1u << 20;

  // A new vocabulary holds the built-in entries: prefix 1 "xml", namespace name 1, and the
  // restricted alphabets 1 (numeric) and 2 (date and time).
  CFIVocabulary();
  CFIVocabulary(const CFIVocabulary&) = default;
  CFIVocabulary& operator=(const CFIVocabulary&) = default;
  virtual ~CFIVocabulary();

  // Append one string to its table and, while it has no index yet and the table is small
  // enough, enter it in the table's map.
  void AddPrefixName(const std::string& prefix);
  void AddNamespaceName(const std::string& namespaceName);
  void AddLocalName(const std::string& localName);
  void AddAttributeValue(const std::string& value);
  // A character chunk of element content.
  void AddElementValue(const std::string& value);

  // Append a qualified name to the element or attribute name table. A prefix, namespace or local
  // name not yet in its own table is added there first, in that order; an empty prefix or
  // namespace stands for an absent one and takes index 0.
  void AddElement(const std::string& prefix, const std::string& namespaceName,
                  const std::string& localName);
  void AddAttribute(const std::string& prefix, const std::string& namespaceName,
                    const std::string& localName);

  // Look-ups for writing: true and the index when the value has one.
  bool FindPrefixNameIndex(const std::string& prefix, std::uint32_t& index) const;
  bool FindNamespaceNameIndex(const std::string& namespaceName, std::uint32_t& index) const;
  bool FindLocalNameIndex(const std::string& localName, std::uint32_t& index) const;
  bool FindAttributeValueIndex(const std::string& value, std::uint32_t& index) const;
  bool FindElementValueIndex(const std::string& value, std::uint32_t& index) const;
  bool FindElementIndex(const std::string& prefix, const std::string& namespaceName,
                        const std::string& localName, std::uint32_t& index) const;
  bool FindAttributeIndex(const std::string& prefix, const std::string& namespaceName,
                          const std::string& localName, std::uint32_t& index) const;

  // The restricted alphabets; the alphabet with index n is at position n - 1.
  const std::vector<std::string>& GetRestrictedAlphabets() const { return m_restrictedAlphabets; }

  const CFIQNameTable& GetElementNamesTable() const { return m_elementNames; }
  const CFIStringTable& GetPrefixNamesTable() const { return m_prefixNames; }
  const CFIQNameTable& GetAttributeNamesTable() const { return m_attributeNames; }
  const CFIStringTable& GetNamespaceNamesTable() const { return m_namespaceNames; }
  const CFIStringTable& GetLocalNamesTable() const { return m_localNames; }
  const CFIStringTable& GetAttributeValuesTable() const { return m_attributeValues; }
  const CFIStringTable& GetCharacterChunksTable() const { return m_characterChunks; }

 private:
  using IndexMap = std::unordered_map<std::string, std::uint32_t>;

  static bool FindIndex(const IndexMap& map, const std::string& key, std::uint32_t& index);
  static void AddString(CFIStringTable& table, IndexMap& map, const std::string& value);
  // The index of a part of a qualified name, adding the part first when it has none. An empty
  // prefix or namespace is absent and gives 0, as does a part that the full map cannot index.
  static std::uint32_t IndexOfPart(CFIStringTable& table, IndexMap& map, const std::string& part,
                                   bool emptyIsAbsent);
  void AddQName(CFIQNameTable& table, IndexMap& map, const std::string& prefix,
                const std::string& namespaceName, const std::string& localName);
  // The map key of a qualified name: the three strings, each after its length, so that no two
  // names share a key.
  static std::string QNameKey(const std::string& prefix, const std::string& namespaceName,
                              const std::string& localName);

  std::vector<std::string> m_restrictedAlphabets;

  IndexMap m_prefixMap;
  IndexMap m_namespaceMap;
  IndexMap m_localNameMap;
  IndexMap m_attributeValueMap;
  IndexMap m_elementValueMap;
  IndexMap m_elementNameMap;
  IndexMap m_attributeNameMap;

  CFIQNameTable m_elementNames;
  CFIStringTable m_prefixNames;
  CFIQNameTable m_attributeNames;
  CFIStringTable m_namespaceNames;
  CFIStringTable m_localNames;
  CFIStringTable m_attributeValues;
  CFIStringTable m_characterChunks;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_FASTINFOSET_VOCABULARY_H
