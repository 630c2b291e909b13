// CElementReader: the one reader of XML into a CElement tree. It receives the elements of a
// document in document order as a CDocumentObserver: from the parser while the document is
// parsed (CElement's entry points), or from a finished tree replayed into it (FromXml_Int on a
// tree, CopyXmlElement). Each element becomes a CElement when its start tag has been read and
// receives its text at its end tag; during a parse the element is then dropped from the
// document's tree, so the parse never holds more of the tree than the open elements.
//
// The checks come in document order: an element's namespace against its parent's child
// collection, then its attributes. The first one that fails is kept and thrown by Commit, after
// the whole document has parsed, so that a document that is not well-formed reports that first.
// Until Commit succeeds the target element is not touched: a failed read leaves it as it was.
//
// The restrictions: the document element must satisfy the target's own restriction (else
// nothing is read, and that is no error); its attributes are checked against the target's
// attribute collection, everything below it against the target's child collection (each
// collection's own restriction when the target has one, else the target's).
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
  enum class Checks {
    Namespaces,  // a wildcard read: namespaces are checked against the restrictions
    None,        // a copy: everything is taken as it is
  };

  CElementReader(CElement& target, Checks checks);

  void OnElementStarted(const CXmlElement* element, std::size_t depth) override;
  bool OnElementEnded(const CXmlElement* element, std::size_t depth,
                      std::string_view text) override;
  bool IsDone() const override { return m_state != State::Reading; }
  void Commit() override;

  // After Commit: whether the document element was left unread because the target's
  // restriction refuses its namespace.
  bool Skipped() const { return m_state == State::Skipped; }

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
  const Checks m_checks;
  State m_state;
  std::exception_ptr m_error;
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
