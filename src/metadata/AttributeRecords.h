// CAttributeRecords: the attributes of an element read from a document, kept in one block until
// the element's attribute collection is asked for. Reading a large document then costs one
// allocation per element with attributes, instead of a collection plus a list node and an object
// per attribute; writing the element back reads the block directly.
#ifndef OVXMLLIB6_SRC_METADATA_ATTRIBUTERECORDS_H
#define OVXMLLIB6_SRC_METADATA_ATTRIBUTERECORDS_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SharedString.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "xml/TreeStore.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

class CAttributeRecords {
 public:
  struct Record {
    CSharedString ns;
    CSharedString name;
    std::string value;
  };

  // A block with room for `capacity` records (at least one).
  static CAttributeRecords* New(std::size_t capacity);
  static void Delete(CAttributeRecords* records) noexcept;

  // Appends a record; the block must have room for it.
  void Append(const CSharedString& ns, const CSharedString& name, std::string_view value);

  const Record* begin() const { return Items(); }
  const Record* end() const { return Items() + m_count; }
  std::size_t Count() const { return m_count; }

 private:
  CAttributeRecords(std::uint32_t capacity) : m_count(0), m_capacity(capacity) {}
  ~CAttributeRecords() = default;
  Record* Items() { return reinterpret_cast<Record*>(this + 1); }
  const Record* Items() const { return reinterpret_cast<const Record*>(this + 1); }

  std::uint32_t m_count;
  std::uint32_t m_capacity;
};

static_assert(sizeof(CAttributeRecords) % alignof(CAttributeRecords::Record) == 0,
              "the records follow the header directly");

// Reads the attributes of a parsed element in document order: `admits(ns)` decides on each
// attribute's namespace (the first refused throws COvInvalidNamespaceException "Invalid
// Attribute [%s]. The attributes namespace is Inappropriate."), then `take(ns, name, value)`
// receives the interned namespace and local name and the value. A value stops at a NUL byte, as
// it did when values were passed on as C strings. The values are read from the tree's own
// storage, which the getters of the tree would turn into strings kept by the document.
template <typename Admits, typename Take>
void ReadElementAttributes(const CXmlElement* element, Admits admits, Take take) {
  CXmlAttribute* const* attributes = CTreeStore::ElementAttributes(element);
  for (std::size_t i = 0, n = CTreeStore::ElementAttributeCount(element); i < n; ++i) {
    const CXmlAttribute* attribute = attributes[i];
    const std::string& ns = CTreeStore::NamespaceURI(attribute);
    if (!admits(ns)) {
      throw COvInvalidNamespaceException(
          FormatString("Invalid Attribute [%s]. The attributes namespace is Inappropriate.",
                       CTreeStore::LocalName(attribute).c_str()));
    }
    std::string_view value = CTreeStore::AttributeValue(attribute);
    take(ns, CTreeStore::LocalName(attribute), value.substr(0, value.find('\0')));
  }
}

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_ATTRIBUTERECORDS_H
