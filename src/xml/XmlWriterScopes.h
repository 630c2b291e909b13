// CXmlWriterScopes: the state behind CXmlWriter that its public header does not show. The
// writer's own sources and the text writer include it; the text writer reads the names of open
// elements inline through it.
#ifndef OVXMLLIB6_SRC_XML_XMLWRITERSCOPES_H
#define OVXMLLIB6_SRC_XML_XMLWRITERSCOPES_H

#include "OvXmlLib6/xml/XmlWriter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string_view>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

// The context of an open element with what the writer keeps for it: where its name lies in the
// writer's stack of names, and where its own bindings begin (those below bindingBase, with their
// text below bindingTextBase, belong to its ancestors). Every context a writer makes is one.
class CXmlWriterFrame : public CXmlWriter::CXmlWriterContext {
 public:
  explicit CXmlWriterFrame(const CXmlWriter* writer) : CXmlWriterContext(writer) {}

  static CXmlWriterFrame& Of(CXmlWriterContext* context) {
    return static_cast<CXmlWriterFrame&>(*context);
  }
  static const CXmlWriterFrame& Of(const CXmlWriterContext* context) {
    return static_cast<const CXmlWriterFrame&>(*context);
  }

  std::size_t nameOffset = 0;
  std::size_t nameLength = 0;
  std::size_t prefixLength = 0;
  std::size_t localNameOffset = 0;
  std::size_t bindingBase = 0;
  std::size_t bindingTextBase = 0;
};

// What a writer keeps besides its pending declarations and current context: the contexts, made
// once and reused so that elements after the first few allocate nothing; the prefix bindings in
// scope of the open elements; and the qualified names of the open elements, for their end tags.
class CXmlWriterScopes {
 public:
  // A growing byte array used as a stack: text is pushed at the end and dropped back to a mark.
  struct CharStack {
    std::unique_ptr<char[]> data;
    std::size_t length = 0;
    std::size_t capacity = 0;
    // Room for `more` bytes after the current end.
    char* Reserve(std::size_t more);
    // Pushes `text`, which may lie in this stack, and returns its offset.
    std::size_t Push(std::string_view text);
    std::string_view View(std::size_t offset, std::size_t size) const {
      return std::string_view(data.get() + offset, size);
    }
  };

  // A namespace bound to a prefix: where each is kept in bindingText.
  struct Binding {
    std::size_t ns;
    std::size_t nsLength;
    std::size_t prefix;
    std::size_t prefixLength;
  };

  // The names of an open element, as its context's getters give them.
  std::string_view QualifiedName(const CXmlWriterFrame& frame) const {
    return names.View(frame.nameOffset, frame.nameLength);
  }
  std::string_view LocalName(const CXmlWriterFrame& frame) const {
    return names.View(frame.nameOffset + frame.localNameOffset,
                      frame.nameLength - frame.localNameOffset);
  }
  std::string_view Prefix(const CXmlWriterFrame& frame) const {
    return names.View(frame.nameOffset, frame.prefixLength);
  }

  std::string_view BindingNamespace(const Binding& binding) const {
    return bindingText.View(binding.ns, binding.nsLength);
  }
  std::string_view BindingPrefix(const Binding& binding) const {
    return bindingText.View(binding.prefix, binding.prefixLength);
  }
  // True when binding `index` is not overridden by a later binding of the same namespace.
  bool IsInScope(std::size_t index) const {
    const std::string_view ns = BindingNamespace(bindings[index]);
    for (std::size_t i = index + 1; i < bindingCount; ++i) {
      if (BindingNamespace(bindings[i]) == ns) return false;
    }
    return true;
  }

  // The contexts of the open elements, outermost first, then those kept for reuse: only the first
  // openCount are in use.
  std::vector<std::unique_ptr<CXmlWriterFrame>> frames;
  std::size_t openCount = 0;
  // The bindings in scope of the open elements, outermost first: each element's own bindings
  // follow its ancestors', and go when it ends. Only the first bindingCount entries are in use.
  // Their text is kept in one stack as well, so binding allocates nothing once warm.
  std::vector<Binding> bindings;
  std::size_t bindingCount = 0;
  CharStack bindingText;
  // The qualified names of the open elements, one after the other.
  CharStack names;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_XMLWRITERSCOPES_H
