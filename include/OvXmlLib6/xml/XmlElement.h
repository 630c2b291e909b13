// CXmlElement: one element of the in-memory tree. It carries its namespace URI and local name
// (no prefix), the concatenation of all character data directly inside it (mixed content is
// merged, whitespace between child elements included), its attributes in document order and its
// child elements as a sibling chain. There are no text, comment or processing-instruction nodes.
//
// Elements are created by the readers only; the public interface is read-only. They live as long
// as their document, or until an element-completed callback has them removed.
#ifndef OVXMLLIB6_XML_XMLELEMENT_H
#define OVXMLLIB6_XML_XMLELEMENT_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/xml/XmlAttribute.h"

#include <string>
#include <vector>

namespace OvXmlLib6 {

class OVXML_API CXmlElement : private CInstanceMonitor {
 public:
  // The document owns the nodes of its tree and releases a subtree without recursion; destroying
  // one element releases only its own text.
  virtual ~CXmlElement();
  // Shallow, as pointers are copied: the copy shares the children and attributes of the original
  // but owns none of them.
  CXmlElement(const CXmlElement& other) = default;
  CXmlElement& operator=(const CXmlElement& other) = default;

  const CXmlDocument* GetDocument() const { return m_name->document; }
  // The first child element, or null.
  CXmlElement* GetFirstElement() const { return m_firstChild; }
  // The next element with the same parent, or null.
  CXmlElement* GetNextSiblingElement() const { return m_next; }

  const std::string& GetLocalName() const { return m_name->localName; }
  // Empty for an element in no namespace.
  const std::string& GetNamespaceURI() const { return m_name->namespaceURI; }
  const std::string& GetText() const { return m_text; }

  const std::vector<CXmlAttribute*>& GetAttributes() const;
  // The value of the first attribute with this local name and namespace URI, or an empty string.
  const std::string& GetAttribute(const std::string& localName,
                                  const std::string& namespaceURI) const;

 protected:
  // An element without a name, owned by `document`.
  explicit CXmlElement(const CXmlDocument* document);
  explicit CXmlElement(const detail::CXmlName* name);

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
  friend class CExpatReader;
  friend class CFastInfosetReader;
  friend class detail::CTreeStore;

  const detail::CXmlName* m_name;  // also leads to the document
  CXmlElement* m_next;
  CXmlElement* m_firstChild;
  CXmlElement* m_lastChild;
  std::vector<CXmlAttribute*>* m_attributes;  // null while there are none
  std::string m_text;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLELEMENT_H
