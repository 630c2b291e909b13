// The storage behind one CXmlDocument: the node arena, the interned names, the text encoder of
// the current load and the file of the asynchronous mode.
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

class CTreeStore {
 public:
  explicit CTreeStore(const CXmlDocument* document);
  CTreeStore(const CTreeStore&) = delete;
  CTreeStore& operator=(const CTreeStore&) = delete;
  ~CTreeStore();

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

  CXmlElement* NewElement(const CXmlName* name);
  CXmlAttribute* NewAttribute(const CXmlName* name, std::string value);
  std::vector<CXmlAttribute*>* NewAttributeList(std::size_t reserve);
  // Destroys an attribute that no element holds.
  void ReleaseAttribute(CXmlAttribute* attribute);

  // Destroys an element with its descendants and their attributes, iteratively (any depth), and
  // gives their memory back for reuse. The element must be unlinked from its parent.
  void DestroySubtree(CXmlElement* element) { DestroyTree(element, true); }
  // Destroys the tree rooted at `root` (may be null) and every name; keeps nothing.
  void Clear(CXmlElement* root);

  // The encoder of the current load: made at the start of each load, so it follows the switches
  // as they are then.
  CTextEncoder& Encoder() { return *m_encoder; }
  void ResetEncoder() { m_encoder.reset(new CTextEncoder()); }

  // Bytes held by the node arena.
  std::size_t ArenaCapacity() const { return m_arena.Capacity(); }

  // For each open element, its previous sibling (null for a first child or the document
  // element), so that a completed element can be unlinked from its parent in constant time.
  std::vector<CXmlElement*> previousSiblings;

  // Asynchronous file mode: the open file and the position of the next read.
  std::unique_ptr<port::IReadFile> file;
  std::string fileName;
  std::uint64_t bytesRead = 0;
  std::unique_ptr<unsigned char[]> readBuffer;
  std::unique_ptr<unsigned char[]> spareBuffer;
  std::uint32_t readLength = 0;

 private:
  const CXmlName* InternParserNameSlow(std::string_view raw);
  void DestroyTree(CXmlElement* element, bool reuse);
  void DestroyElement(CXmlElement* element, bool reuse);

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
