// CXmlDocument: parses XML text (or compressed XML) into a tree of CXmlElement and CXmlAttribute
// and owns that tree. Every read of a bound object goes through one.
//
//   CXmlDocument doc;                         // or with a context and/or a callback
//   doc.Load("orders.xml");                   // or LoadXml / LoadXmlStream
//   for (CXmlElement* e = doc.GetDocumentElement()->GetFirstElement(); e;
//        e = e->GetNextSiblingElement()) { ... e->GetLocalName(), e->GetText() ... }
//
// Each load first empties the document, so one document can be loaded again; the text given to
// LoadXml or LoadXmlStream may be text of the document's own tree, which then goes only once the
// new input has been parsed (for that time both trees are held). Every failure
// throws COvException; after a failure the partial tree stays until the next load or destruction.
// A document is used by one thread at a time.
#ifndef OVXMLLIB6_XML_XMLDOCUMENT_H
#define OVXMLLIB6_XML_XMLDOCUMENT_H

#include "OvXmlLib6/core/Enums.h"
#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <vector>

namespace OvXmlLib6 {

namespace detail {
class CDocumentObserver;
class CPeekSource;
class CTreeBuilder;
class IByteSource;
}  // namespace detail

// When on, Load reads files in 128 KiB chunks, one chunk ahead of an incremental parse, so that
// only the tree and a few buffers are held; such files are parsed as XML text, or as Fast Infoset
// when they start as one, without decompression. Off by default. A plain global: set it before
// threads start.
OVXML_API void AsyncFromXmlFile(bool on);
OVXML_API bool IsAsyncFromXmlFile();

class OVXML_API CXmlDocument : private CInstanceMonitor {
 public:
  // Called with each element as its end tag is parsed. When it returns true the element is
  // removed from its parent and destroyed, so a large document can be consumed element by
  // element. Returning true for the document element has no effect.
  using ElementCompletedCallback = bool (*)(CXmlElement*);

  // Without a context the process-wide default context applies. The context must outlive the
  // document; its schema type is read again at each load (SchemaType_DTD: a parser without
  // namespace processing) and its StripCDATA flag decides how CDATA sections reach the text.
  CXmlDocument();
  explicit CXmlDocument(const CXmlSerializationContext& context);
  explicit CXmlDocument(ElementCompletedCallback callback);
  CXmlDocument(ElementCompletedCallback callback, const CXmlSerializationContext& context);
  virtual ~CXmlDocument();
  CXmlDocument(const CXmlDocument&) = delete;
  CXmlDocument& operator=(const CXmlDocument&) = delete;

  // Reads a file and parses it, block by block; gzip or zlib data is inflated on the way. With
  // AsyncFromXmlFile(true) the file is parsed as it is read, as XML text or Fast Infoset only.
  void Load(const char* fileName);
  // Parses NUL-terminated XML text; it must declare its encoding unless it is UTF-8.
  void LoadXml(const char* xml);
  // Parses NUL-terminated UTF-16 text (a 32-bit wchar_t string is UTF-32).
  void LoadXml(const wchar_t* xml);
  void LoadXml(const char16_t* xml);
  // Parses a byte block, inflating gzip or zlib data on the way. The caller keeps its block.
  void LoadXmlStream(const unsigned char* data, std::uint32_t length);

  // The root element, or null before a successful load.
  CXmlElement* GetDocumentElement() const { return m_documentElement; }
  // The namespace URI declared anywhere in the document for `prefix` (the empty prefix gives the
  // default namespace), or an empty string. Declarations are not scoped: the last one wins.
  std::string LookupNamespaceFromAlias(const char* prefix) const;

  // When on, parsing XML text records the line of each element's start tag, for tools that
  // report where in a file something is wrong (a schema compiler, say). Off by default, so
  // that ordinary loads pay nothing; set it before loading. Fast Infoset has no lines.
  void SetRecordLines(bool on) { m_recordLines = on; }
  // The line (from 1) of the element's start tag, or 0 when it was not recorded.
  std::uint32_t GetElementLine(const CXmlElement* element) const {
    const auto found = m_lines.find(element);
    return found == m_lines.end() ? 0 : found->second;
  }

 protected:
  // Destroys the tree, releases the input and forgets the element stack and the declarations.
  virtual void Cleanup();
  void Init();
  // Feeds the chunk in the current read buffer to the incremental parser, reading the file one
  // chunk ahead; `last` says the current chunk is the last one.
  void AsyncParse(bool last);
  // Reads the next chunk of the open file into `buffer` (131,072 bytes); returns true at the end
  // of the file.
  bool ReadChunkFromFile(unsigned char* buffer);

  CXmlElement* AddDocElement(const char* namespaceURI, const char* localName);
  CXmlElement* AddChildElement(const char* namespaceURI, const char* localName);
  static void AddElementAttribute(CXmlElement* element, const char* localName, const char* value,
                                  const char* namespaceURI);
  // Appends text to the element without its carriage returns, up to a NUL byte or `length`.
  static void AppendTextExcludingCR(CXmlElement* element, const char* text);
  static void AppendTextExcludingCR(CXmlElement* element, const char* text, std::uint32_t length);
  // Closes the element on top of the stack and offers it to the callback.
  void EndElement();

 private:
  friend class CExpatReader;
  friend class CXmlElement;
  friend class detail::CDocumentObserver;
  friend class detail::CTreeBuilder;

  CXmlElement* AddElement(const detail::CXmlName* name);
  // Gives the document a new, empty store and returns the old one, which destroys its tree when
  // it goes: the in-memory loaders keep it until their input has been parsed, since the input
  // may be text of that very tree.
  std::unique_ptr<detail::CTreeStore> RetireTree();
  // The element on top of the stack has its attributes: tells the observer.
  void ElementStarted(CXmlElement* element);
  // Inflates gzip or zlib input piece by piece as the document is parsed; `head` is its start
  // (all of it with `headIsAll`), what the message of data that does not inflate is made from.
  void ParseCompressed(detail::IByteSource& input, const unsigned char* head,
                       std::size_t headLength, bool headIsAll);
  // Parses input, taken block by block, as Fast Infoset when it starts as one, else as text.
  void ParseDocument(detail::CPeekSource& input);
  // The same for a block in memory, parsed in place.
  void ParseBlock(const unsigned char* data, std::size_t length);
  void ParseTextBlock(const unsigned char* data, std::size_t length, bool isFinal);
  // Character data for the element on top of the stack; `plain` text has no carriage return or
  // NUL byte to drop.
  void AppendOpenText(const char* text, std::size_t length, bool plain);
  // Moves the text gathered for the open elements into them.
  void FlushOpenText();
  void LoadFileWhole(const char* fileName);
  void LoadFileAsync(const char* fileName);
  // Reads up to `capacity` bytes of the open file; 0 at its end.
  std::size_t ReadFromFile(unsigned char* buffer, std::size_t capacity);

  std::unique_ptr<detail::CTreeStore> m_store;  // node and name storage, file state
  CXmlElement* m_documentElement;
  std::vector<CXmlElement*> m_elementStack;
  std::map<std::string, std::string> m_aliases;
  SchemaType m_schemaType;
  ElementCompletedCallback m_callback;
  const CXmlSerializationContext* m_context;
  detail::CDocumentObserver* m_observer;
  bool m_recordLines = false;
  std::map<const CXmlElement*, std::uint32_t> m_lines;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLDOCUMENT_H
