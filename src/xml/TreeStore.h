// The storage behind one CXmlDocument: the node arena, the interned names, the compact text and
// attribute storage, the text encoder of the current load and the state of the file modes.
//
// Memory layout. Elements, attributes, text and attribute lists all live in the document's
// arena. A text (element text or attribute value) is held in a "text slot": 0 for the empty
// text; up to 7 bytes held in the slot itself (numbers, codes, short names: the low byte has the
// tag 2 and the length, the other bytes the text); else the address of a record
// {size, capacity, bytes} in the arena. The first time a
// getter asks for it as a std::string, the record is replaced by a std::string placed in the
// arena and the slot keeps its address with the low bit set; later appends go to that string.
// Attribute lists work the same way: a record {count, capacity, attribute pointers} until
// GetAttributes asks for the std::vector, then a std::vector in the arena. So a tree that is
// loaded costs its nodes and bytes, and the standard containers are paid for only where they
// are asked for.
#ifndef OVXMLLIB6_SRC_XML_TREESTORE_H
#define OVXMLLIB6_SRC_XML_TREESTORE_H

#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "port/File.h"
#include "xml/CharEncoding.h"
#include "xml/NodeArena.h"

#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

// A name as the tree keeps it. Every element and attribute of one document with the same
// namespace URI and local name points to one shared record owned by the document, so a node
// carries one pointer instead of two strings.
struct CXmlName {
  const CXmlDocument* document;
  CTreeStore* store;
  std::string localName;
  std::string namespaceURI;
};

class CTreeStore {
 public:
  explicit CTreeStore(const CXmlDocument* document);
  CTreeStore(const CTreeStore&) = delete;
  CTreeStore& operator=(const CTreeStore&) = delete;
  ~CTreeStore();

  // ---- Names
  // The name record of (namespace URI, local name), created on first use.
  const CXmlName* Intern(std::string_view namespaceURI, std::string_view localName);
  // The name record of a name as the parser delivers it (UTF-8, "uri|local" or "local"):
  // converted to the internal encoding and split at the first '|' on first sight, then found
  // by its raw bytes.
  const CXmlName* InternParserName(const char* raw) {
    const std::string_view key(raw);
    const auto it = m_byParserName.find(key);
    return it != m_byParserName.end() ? it->second : InternParserNameSlow(key);
  }
  const CXmlName* EmptyName() const { return &m_emptyName; }

  // ---- Nodes
  CXmlElement* NewElement(const CXmlName* name);
  CXmlAttribute* NewAttribute(const CXmlName* name, std::uintptr_t value);
  // Destroys an attribute that no element holds.
  void ReleaseAttribute(CXmlAttribute* attribute);
  // Destroys an element with its descendants, their text and attributes, iteratively (any
  // depth), and gives their memory back for reuse. The element must be unlinked from its parent.
  void DestroySubtree(CXmlElement* element) { DestroyTree(element, true); }
  // Destroys the tree rooted at `root` (may be null) and every name; keeps nothing.
  void Clear(CXmlElement* root);
  // The tree that the store destroys with itself (a store retired from its document).
  void SetRetiredRoot(CXmlElement* root) { m_retiredRoot = root; }

  // ---- Text slots
  std::uintptr_t NewText(const char* data, std::size_t size);
  // Appends to the text, growing it by doubling.
  void AppendText(std::uintptr_t& slot, const char* data, std::size_t size);
  const std::string& TextString(std::uintptr_t& slot);
  // What the getters return for an empty slot, so that reading one materialises nothing.
  static const std::string& EmptyText() {
    static const std::string empty;
    return empty;
  }
  // Valid while the slot is unchanged (short text lies in the slot itself).
  static std::string_view TextView(const std::uintptr_t& slot);

  // ---- Attribute lists
  std::uintptr_t NewAttributeList(std::size_t capacity);
  // Appends to the list, which has room for it when it was made with enough capacity.
  void AddToAttributeList(std::uintptr_t& slot, CXmlAttribute* attribute);
  const std::vector<CXmlAttribute*>& AttributeVector(std::uintptr_t& slot);
  // The attributes without turning the list into a vector.
  static std::size_t AttributeCount(std::uintptr_t slot);
  static CXmlAttribute* const* AttributeItems(std::uintptr_t slot);

  // The names of nodes, inline for the library's own readers (the public getters are out of
  // line so that the name records stay internal).
  static const std::string& LocalName(const CXmlElement* element) {
    return element->m_name->localName;
  }
  static const std::string& NamespaceURI(const CXmlElement* element) {
    return element->m_name->namespaceURI;
  }
  static const std::string& LocalName(const CXmlAttribute* attribute) {
    return attribute->m_name->localName;
  }
  static const std::string& NamespaceURI(const CXmlAttribute* attribute) {
    return attribute->m_name->namespaceURI;
  }

  // For readers that fill a new element's attribute list in one go (NewAttributeList, then
  // AddToAttributeList).
  static std::uintptr_t& AttributeSlot(CXmlElement* element) { return element->m_attributes; }

  // Read-only views of a finished element's text and attributes and of an attribute's value,
  // for readers that copy them into objects: unlike the public getters they do not turn the
  // compact storage into std::string and std::vector members of the document.
  static std::string_view ElementText(const CXmlElement* element) {
    return TextView(element->m_text);
  }
  static std::size_t ElementAttributeCount(const CXmlElement* element) {
    return AttributeCount(element->m_attributes);
  }
  static CXmlAttribute* const* ElementAttributes(const CXmlElement* element) {
    return AttributeItems(element->m_attributes);
  }
  static std::string_view AttributeValue(const CXmlAttribute* attribute) {
    return TextView(attribute->m_value);
  }

  // The encoder of the current load: made at the start of each load, so it follows the switches
  // as they are then.
  CTextEncoder& Encoder() { return *m_encoder; }
  void ResetEncoder() { m_encoder.reset(new CTextEncoder()); }

  // Bytes held by the node arena.
  std::size_t ArenaCapacity() const { return m_arena.Capacity(); }

  // ---- State of a load
  // For each open element: its previous sibling (null for a first child or the document
  // element), so that a completed element can be unlinked from its parent in constant time; and
  // the text gathered for it so far, which moves into the element, exactly sized, when it ends.
  // The text buffers are kept from one element to the next.
  std::vector<CXmlElement*> previousSiblings;
  std::vector<std::string> pendingText;

  // Asynchronous file mode: the open file and the two chunk buffers.
  std::unique_ptr<port::IReadFile> file;
  std::uint64_t bytesRead = 0;
  std::unique_ptr<unsigned char[]> readBuffer;
  std::unique_ptr<unsigned char[]> spareBuffer;
  std::uint32_t readLength = 0;

 private:
  struct TextRecord {
    std::uint32_t size;
    std::uint32_t capacity;
    char* Data() { return reinterpret_cast<char*>(this + 1); }
  };
  struct ListRecord {
    std::uint32_t count;
    std::uint32_t capacity;
    CXmlAttribute** Items() { return reinterpret_cast<CXmlAttribute**>(this + 1); }
  };
  static constexpr std::uintptr_t kMaterialized = 1;
  static constexpr std::uintptr_t kInline = 2;
  static constexpr std::uintptr_t kTagMask = 3;
  static constexpr std::size_t kMaxInline = sizeof(std::uintptr_t) - 1;

  const CXmlName* InternParserNameSlow(std::string_view raw);
  void DestroyTree(CXmlElement* element, bool reuse);
  void DestroyElement(CXmlElement* element, bool reuse);
  void ReleaseText(std::uintptr_t slot, bool reuse);
  TextRecord* NewTextRecord(std::size_t capacity);

  CXmlElement* m_retiredRoot = nullptr;
  CNodeArena m_arena;
  CXmlName m_emptyName;
  std::deque<CXmlName> m_names;
  // Keys point into m_arena (parser names) or into the records (namespace, NUL, local name).
  std::unordered_map<std::string_view, const CXmlName*> m_byParserName;
  std::unordered_map<std::string, const CXmlName*> m_byParts;
  std::unique_ptr<CTextEncoder> m_encoder;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_TREESTORE_H
