// CXmlElement: one element of the in-memory tree. It carries its namespace URI and local name
// (no prefix), the concatenation of all character data directly inside it (mixed content is
// merged, whitespace between child elements included), its attributes in document order and its
// child elements as a sibling chain. There are no text, comment or processing-instruction nodes.
//
// Elements are created by the readers only; the public interface is read-only. They live as long
// as their document, or until an element-completed callback has them removed.
//
// A copy is shallow: it shares the original's name, children, attributes and text and owns none
// of them, so it is valid only while the original's document holds the original. Reading through
// either never changes what the other returns. Assignment is deleted: assigning over an element
// that sits in a tree would overwrite the links that hold its siblings and children.
#ifndef OVXMLLIB6_XML_XMLELEMENT_H
#define OVXMLLIB6_XML_XMLELEMENT_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/xml/XmlAttribute.h"

#include <cstdint>
#include <string>
#include <vector>

namespace OvXmlLib6 {

class OVXML_API CXmlElement : private CInstanceMonitor {
 public:
  // The document owns the nodes of its tree, with their text and attributes, and releases a
  // subtree without recursion.
  virtual ~CXmlElement();
  CXmlElement(const CXmlElement& other);
  CXmlElement& operator=(const CXmlElement& other) = delete;

  const CXmlDocument* GetDocument() const;
  // The first child element, or null.
  CXmlElement* GetFirstElement() const {
    return m_lastChild != nullptr ? Untag(m_lastChild->m_next) : nullptr;
  }
  // The next element with the same parent, or null.
  CXmlElement* GetNextSiblingElement() const {
    return (m_next & kEndOfSiblings) != 0 ? nullptr : Untag(m_next);
  }

  const std::string& GetLocalName() const;
  // Empty for an element in no namespace.
  const std::string& GetNamespaceURI() const;
  const std::string& GetText() const;

  const std::vector<CXmlAttribute*>& GetAttributes() const;
  // The value of the first attribute with this local name and namespace URI, or an empty string.
  const std::string& GetAttribute(const std::string& localName,
                                  const std::string& namespaceURI) const;

 protected:
  // An element without a name, owned by `document`.
  explicit CXmlElement(const CXmlDocument* document);

  void SetElementName(const std::string& localName);
  void SetNamespace(const std::string& namespaceURI);

  // Appends character data, up to a NUL byte or `length` bytes. Text grows by doubling so that
  // many small pieces cost linear time.
  void AppendText(const char* text);
  void AppendText(const char* text, int length);

  // A new, unnamed element appended after the last child (constant time).
  CXmlElement* CreateNewChildElement();
  // Unlinks the last child and returns it (not destroyed), or null when there are no children.
  CXmlElement* RemoveLastChildElement();
  void AddAttribute(const std::string& localName, const std::string& value,
                    const std::string& namespaceURI);

 private:
  friend class CXmlDocument;
  friend class detail::CTreeStore;

  // Made by the document's storage, with one of its name records.
  explicit CXmlElement(const detail::CXmlName* name);

  // Children form a ring: each links to its next sibling, and the last child links back to the
  // first with the low bit set, so a parent reaches both ends through m_lastChild alone. An
  // element without siblings in a ring (the document element) holds just the bit.
  static constexpr std::uintptr_t kEndOfSiblings = 1;
  static CXmlElement* Untag(std::uintptr_t link) {
    return reinterpret_cast<CXmlElement*>(link & ~kEndOfSiblings);
  }
  // Appends `child` in constant time.
  void LinkLastChild(CXmlElement* child);
  // Unlinks the last child, given the child before it (null when it is the only one).
  void UnlinkLastChild(CXmlElement* previous);

  const detail::CXmlName* m_name;  // also leads to the document
  std::uintptr_t m_next;
  CXmlElement* m_lastChild;
  // The attributes and the text are kept compactly in the document's storage and turned into
  // the std::vector and std::string of the getters on first request (see detail::CTreeStore).
  mutable std::uintptr_t m_attributes;
  mutable std::uintptr_t m_text;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLELEMENT_H
