// The events a document reader delivers, in document order, to whatever consumes them: the tree
// builder of CXmlDocument, or a writer that converts a document as it is read (the `ovxml`
// converter), which must keep text, child elements, comments and processing instructions in the
// order they came.
//
// All text is in the library's internal encoding (what CXmlWriter takes), and every view is valid
// only during the call that passes it.
#ifndef OVXMLLIB6_SRC_XML_XMLEVENTS_H
#define OVXMLLIB6_SRC_XML_XMLEVENTS_H

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// A qualified name. A reader keeps one record per distinct name for the whole document and passes
// the same record each time the name comes again, so a handler may key what it derives from a
// name (an interned tree name, an index of its own) on the record: `handlerData` is the handler's
// slot, null until the handler sets it, and never touched by the reader.
struct CXmlEventName {
  std::string prefix;  // empty when the name has none
  std::string namespaceURI;
  std::string localName;
  mutable const void* handlerData = nullptr;
};

// Where a parse stopped: the line and column (both from 1; the column counts bytes of the text as
// the parser read it) and, for a document that is not well-formed, the parser's own message
// without the position.
struct CParseFailure {
  std::uint64_t line = 0;  // 0: the parse has not failed
  std::uint64_t column = 0;
  std::string message;
};

struct CXmlEventAttribute {
  const CXmlEventName* name;
  std::string_view value;
};

class IXmlEventHandler {
 public:
  virtual ~IXmlEventHandler() = default;

  // A namespace declaration of the element that starts next (an empty prefix declares the
  // default namespace; an empty URI undeclares it). Comes before that element's OnStartElement.
  virtual void OnNamespaceDeclaration(std::string_view prefix, std::string_view uri) = 0;
  // An element with its attributes (namespace declarations are not among them).
  virtual void OnStartElement(const CXmlEventName& name, const CXmlEventAttribute* attributes,
                              std::size_t count) = 0;
  virtual void OnEndElement() = 0;
  // Character data of the current element. A reader may split one run of text into several
  // calls; consecutive calls belong together.
  virtual void OnText(std::string_view text) = 0;
  // The bounds of a CDATA section, around the OnText calls of its content.
  virtual void OnStartCdata() {}
  virtual void OnEndCdata() {}
  // Comments and processing instructions, inside or outside the document element.
  virtual void OnComment(std::string_view text) = 0;
  virtual void OnProcessingInstruction(std::string_view target, std::string_view data) = 0;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_XMLEVENTS_H
