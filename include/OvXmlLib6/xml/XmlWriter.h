// CXmlWriter: the output interface that serialization drives with start-element, attribute, text
// and end-element calls. The writer, not its caller, decides namespace prefixes: it keeps one
// context per open element with the prefix bindings in scope, shares the parent's bindings until
// an element declares something of its own, and invents the prefixes AA, AB, ... for namespaces
// that have none.
#ifndef OVXMLLIB6_XML_XMLWRITER_H
#define OVXMLLIB6_XML_XMLWRITER_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace OvXmlLib6 {

class OVXML_API CXmlWriter : private CInstanceMonitor {
 public:
  // Namespace URI to prefix.
  using PrefixMap = std::map<std::string, std::string, std::less<>>;

  // The state of one open element.
  class OVXML_API CXmlWriterContext : private CInstanceMonitor {
   public:
    CXmlWriterContext();
    CXmlWriterContext(const CXmlWriterContext&) = delete;
    CXmlWriterContext& operator=(const CXmlWriterContext&) = delete;
    // Frees the prefix map when this context owns it.
    virtual ~CXmlWriterContext();

    std::int32_t GetChildCount() const { return m_childCount; }
    bool IsStartTagOpen() const { return m_startTagOpen; }
    std::int32_t GetDepth() const { return m_depth; }
    const std::string& GetLocalName() const { return m_localName; }
    CXmlWriterContext* GetParent() const { return m_parent; }
    const std::string& GetDefaultNamespace() const { return *m_defaultNamespace; }
    // The prefix the start tag was written with; empty when it has none.
    const std::string& GetPrefix() const { return m_prefix; }

    // The prefix bound to `ns` in this scope, or null.
    const std::string* FindPrefix(std::string_view ns) const;
    // True when some namespace in scope is bound to `prefix`.
    bool IsPrefixBound(std::string_view prefix) const;
    // Binds `prefix` to `ns` in this context, copying the parent's map first if it is shared.
    const std::string& Bind(std::string_view ns, std::string_view prefix);
    // Makes this context own its map: a copy of the parent's while it still shares it.
    void OwnMap();

    // For writers: counts a child element, records that the start tag was closed, and keeps the
    // prefix the start tag was written with, so the end tag repeats it whatever is bound later.
    void AddChild() { ++m_childCount; }
    void MarkStartTagClosed() { m_startTagOpen = false; }
    void SetPrefix(std::string_view prefix) { m_prefix.assign(prefix.data(), prefix.size()); }

   private:
    friend class CXmlWriter;

    // Sets the context up for a new element; `parent` is null for the document element.
    void Start(CXmlWriterContext* parent, std::string_view localName);
    // Drops the element's state, freeing the map when owned.
    void End();

    std::int32_t m_childCount;
    bool m_startTagOpen;
    std::int32_t m_depth;
    std::string m_localName;
    CXmlWriterContext* m_parent;
    // The default namespace in scope: a string of this context, of an ancestor or of the writer,
    // each of which outlives this context, so elements inherit it without a copy.
    const std::string* m_defaultNamespace;
    std::string m_ownDefaultNamespace;
    PrefixMap* m_prefixMap;  // null while nothing is bound in scope
    bool m_sharesParentMap;
    bool m_ownsMap;
    std::string m_prefix;
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

  // The innermost open element, or null.
  CXmlWriterContext* GetCurrentContext() const { return m_current; }

  static constexpr const char* kSchemaInstanceNamespace =
      "http://www.w3.org/2001/XMLSchema-instance";

 protected:
  // `className` is the concrete writer's name, under which it is counted.
  explicit CXmlWriter(const char* className);

  // Opens a context for a new element below the current one (or the document element, which takes
  // the pending default namespace and declarations) and makes it current.
  CXmlWriterContext* PushContext(std::string_view localName);
  // Closes the current context and makes its parent current.
  void PopContext();

  // The first of AA, AB, ..., AZ, BA, ... that no namespace in the context's scope is bound to.
  static std::string GeneratePrefix(const CXmlWriterContext& context);

  const std::string& GetPendingDefaultNamespace() const { return m_pendingDefaultNamespace; }
  const PrefixMap& GetPendingDeclarations() const { return m_pendingDeclarations; }

 private:
  std::string m_pendingDefaultNamespace;
  CXmlWriterContext* m_current;
  PrefixMap m_pendingDeclarations;
  // Contexts are kept for reuse, so elements after the first few allocate nothing.
  std::vector<std::unique_ptr<CXmlWriterContext>> m_contexts;
  std::size_t m_openCount;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLWRITER_H
