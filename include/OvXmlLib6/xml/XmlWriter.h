// CXmlWriter: the output interface that serialization drives with start-element, attribute, text
// and end-element calls. The writer, not its caller, decides namespace prefixes: it keeps one
// context per open element and one stack of prefix bindings, to which each element adds its own
// and from which they go when it ends, and invents the prefixes AA, AB, ... for namespaces that
// have none.
#ifndef OVXMLLIB6_XML_XMLWRITER_H
#define OVXMLLIB6_XML_XMLWRITER_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>

namespace OvXmlLib6 {

namespace detail {
class CXmlWriterFrame;
class CXmlWriterScopes;
}  // namespace detail

class OVXML_API CXmlWriter : private CInstanceMonitor {
 public:
  // Namespace URI to prefix.
  using PrefixMap = std::map<std::string, std::string, std::less<>>;

  // A namespace declaration an element carries: an empty prefix declares the default namespace
  // (an empty URI with it undeclares that).
  struct NamespaceDeclaration {
    std::string_view prefix;
    std::string_view ns;
  };

  // The state of one open element. Contexts are made and reused by their writer only.
  class OVXML_API CXmlWriterContext : private CInstanceMonitor {
   public:
    CXmlWriterContext(const CXmlWriterContext&) = delete;
    CXmlWriterContext& operator=(const CXmlWriterContext&) = delete;
    virtual ~CXmlWriterContext();

    std::int32_t GetChildCount() const { return m_childCount; }
    bool IsStartTagOpen() const { return m_startTagOpen; }
    std::int32_t GetDepth() const { return m_depth; }
    CXmlWriterContext* GetParent() const { return m_parent; }
    const std::string& GetDefaultNamespace() const { return *m_defaultNamespace; }
    // The name the start tag was written with: "prefix:local" or "local". Valid while the element
    // is open.
    std::string_view GetQualifiedName() const;
    std::string_view GetLocalName() const;
    // The prefix the start tag was written with; empty when it has none.
    std::string_view GetPrefix() const;

    // For writers: counts a child element and records that the start tag was closed.
    void AddChild() { ++m_childCount; }
    void MarkStartTagClosed() { m_startTagOpen = false; }

   private:
    friend class CXmlWriter;
    friend class detail::CXmlWriterFrame;

    explicit CXmlWriterContext(const CXmlWriter* writer);
    // Sets the context up for a new element; `parent` is null for the document element.
    void Start(CXmlWriterContext* parent);

    std::int32_t m_childCount;
    bool m_startTagOpen;
    std::int32_t m_depth;
    CXmlWriterContext* m_parent;
    // The default namespace in scope: a string of this context, of an ancestor or of the writer,
    // each of which outlives this context, so elements inherit it without a copy.
    const std::string* m_defaultNamespace;
    std::string m_ownDefaultNamespace;
    const CXmlWriter* m_writer;
  };

  CXmlWriter(const CXmlWriter&) = delete;
  CXmlWriter& operator=(const CXmlWriter&) = delete;
  virtual ~CXmlWriter();

  // Starts the output. Nothing to do in the base.
  virtual void Open();
  // Ends the output; throws "An Element has not been closed." while an element is open.
  virtual void Close();
  // Before the document element: the default namespace declared on it. Inside an element: the
  // default namespace in scope of the current element (no declaration is written).
  virtual void SetDefaultNamespace(const char* ns);
  // Before the document element: a declaration written on it. Inside an element: binds the prefix
  // in the current element's scope (no declaration is written).
  virtual void AddNamespace(const char* prefix, const char* ns);

  // Null strings are taken as empty ones. `itemType` is the value's ItemType number, for writers
  // that encode values by type; the text writer ignores it.
  virtual void WriteComment(const char* text) = 0;
  virtual void WriteRawBlock(const char* text) = 0;
  virtual void WriteRawLine(const char* text) = 0;
  virtual void WriteStartElement(const char* localName, const char* ns) = 0;
  virtual void WriteText(const char* text, int itemType = 0) = 0;
  virtual void WriteEndElement() = 0;
  virtual void WriteAttribute(const char* localName, const char* ns, const char* value,
                              int itemType = 0) = 0;
  // Writes the attribute xsi:type with the type's qualified name.
  virtual void WriteXsiType(const char* typeName, const char* typeNamespace, int itemType = 0) = 0;
  // A processing instruction <?target data?> where the document stands: before the document
  // element, or inside the current element (after its start tag). The base throws
  // COvException "This writer does not write processing instructions."; the library's writers
  // all write them.
  virtual void WriteProcessingInstruction(std::string_view target, std::string_view data);

  // The same calls for strings whose lengths are known, which spares the writer measuring them
  // again. As above, a text or value ends at a NUL byte inside it; names are taken as they are.
  // The base copies the strings and calls the forms above.
  virtual void WriteStartElement(std::string_view localName, std::string_view ns);
  // Starts an element that declares the given namespaces, as a converter keeps them from the
  // document it reads: a writer that can binds them in the element's scope, writes them on it and
  // names the element and its attributes with them. The base ignores them and calls the form
  // above, so the writer chooses the prefixes.
  virtual void WriteStartElement(std::string_view localName, std::string_view ns,
                                 const NamespaceDeclaration* declarations, std::size_t count);
  virtual void WriteText(std::string_view text, int itemType = 0);
  virtual void WriteAttribute(std::string_view localName, std::string_view ns,
                              std::string_view value, int itemType = 0);
  // An element that holds text alone: what WriteStartElement, WriteText and WriteEndElement
  // write in turn, which is what the base calls. The text writer writes the usual case in one
  // go, since most elements of bound objects are such values.
  virtual void WriteTextElement(std::string_view localName, std::string_view ns,
                                std::string_view text, int itemType = 0);

  // The innermost open element, or null.
  CXmlWriterContext* GetCurrentContext() const { return m_current; }

  static constexpr const char* kSchemaInstanceNamespace =
      "http://www.w3.org/2001/XMLSchema-instance";

 protected:
  // `className` is the concrete writer's name, under which it is counted.
  explicit CXmlWriter(const char* className);

  // Opens a context for a new element below the current one (or the document element, which takes
  // the pending default namespace and declarations) and makes it current. The caller names it.
  CXmlWriterContext* PushContext();
  // Closes the current context, dropping its bindings, and makes its parent current.
  void PopContext();

  // Sets `prefix` to the prefix bound to `ns` in the current element's scope and returns true, or
  // returns false when there is none. The view is valid until the next binding.
  bool FindPrefix(std::string_view ns, std::string_view& prefix) const;
  // True when some namespace in the current element's scope is bound to `prefix`.
  bool IsPrefixBound(std::string_view prefix) const;
  // Binds `prefix` to `ns` in the current element's scope, in place of a binding of `ns` that
  // the element already has, and returns the stored prefix (valid until the next binding). An
  // element must be open.
  std::string_view Bind(std::string_view ns, std::string_view prefix);
  // As FindPrefix, with the prefixes XML binds itself: "xml" and "xmlns" for their namespaces.
  bool FindBoundPrefix(std::string_view ns, std::string_view& prefix) const;
  // The first of AA, AB, ..., AZ, BA, ... that no namespace in the current scope is bound to.
  std::string GeneratePrefix() const;
  // The prefix for `ns` in the current scope: "xml" and "xmlns" for the namespaces XML binds
  // itself, else the bound prefix; when there is none a new one is generated and bound, and
  // `declared` is set (the caller declares it). The view is valid until the next binding.
  std::string_view PrefixFor(std::string_view ns, bool& declared);
  // Keeps the current element's name for its end tag: "prefix:local" when there is a prefix (even
  // an empty one), else "local". Returns the name kept.
  std::string_view SetElementName(std::string_view localName);
  std::string_view SetElementName(std::string_view prefix, std::string_view localName);

  const std::string& GetPendingDefaultNamespace() const { return m_pendingDefaultNamespace; }
  const PrefixMap& GetPendingDeclarations() const { return m_pendingDeclarations; }

  // The writer's internal state, for the library's own writers.
  const detail::CXmlWriterScopes* GetScopes() const { return m_scopes.get(); }

 private:
  std::string m_pendingDefaultNamespace;
  CXmlWriterContext* m_current;
  PrefixMap m_pendingDeclarations;
  // The contexts, the prefix bindings in scope and the names of the open elements.
  std::unique_ptr<detail::CXmlWriterScopes> m_scopes;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLWRITER_H
