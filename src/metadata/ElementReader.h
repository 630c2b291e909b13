// CElementReader: reads a document into a CElement tree while the document is parsed. Each
// element becomes a CElement when its start tag has been read, receives its text at its end tag
// and is then dropped from the document's tree, so the parse never holds more of the tree than
// the open elements.
//
// The checks are those of reading from a finished tree and come in the same order: an element's
// namespace against its parent's child collection, then its attributes, in document order. The
// first one that fails is kept and thrown by Commit, but only after the whole document has
// parsed, so that a document that is not well-formed reports that first. Until Commit succeeds
// the target element is not touched.
#ifndef OVXMLLIB6_SRC_METADATA_ELEMENTREADER_H
#define OVXMLLIB6_SRC_METADATA_ELEMENTREADER_H

#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/metadata/Element.h"
#include "core/ObjectReader.h"
#include "metadata/NameCache.h"

#include <exception>
#include <string>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

class CElementReader final : public CObjectReader {
 public:
  explicit CElementReader(CElement& target);

  void OnElementStarted(CXmlElement* element, std::size_t depth) override;
  bool OnElementEnded(CXmlElement* element, std::size_t depth, std::string_view text) override;
  void Commit() override;

 private:
  enum class State {
    Reading,  // building the copy
    Skipped,  // the document element's namespace is not one the target takes: nothing is read
    Failed,   // a check failed: the error waits for the end of the parse
  };

  // Whether the namespace passes the restriction of the target's child collection, which every
  // element below the document element and its attributes pass.
  bool ChildNamespaceValid(const std::string& ns);
  // The attributes of the document element, checked against the target's attribute collection.
  void ReadRootAttributes(CElement* root, const CXmlElement* source);
  // The attributes of any other element, checked and kept as records until asked for.
  void ReadAttributes(CElement* element, const CXmlElement* source);
  void Fail();

  CElement& m_target;
  State m_state;
  std::exception_ptr m_error;
  // The restrictions the target's collections apply: those of its attribute and child
  // collections when it has them, else its own. Every element below the document element takes
  // the child collection's.
  CSharedString m_attributeRestriction;
  CSharedString m_attributeTarget;
  CSharedString m_childRestriction;
  CSharedString m_childTarget;
  CNameCache m_names;
  CNamespaceVerdicts m_childVerdicts;
  // The open elements, the document element first: the copy and its source element in the
  // document. The copy of the document element (a stand-in for the target) holds the others.
  struct Frame {
    CElement* element;
    const CXmlElement* source;
  };
  std::vector<Frame> m_open;
  CSmartPtr<CElement> m_root;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_ELEMENTREADER_H
