// CDocumentObserver: follows the tree of a CXmlDocument while it is being parsed. A reader that
// binds objects during the parse attaches one, so that each element can be turned into objects
// as soon as it is complete and then dropped from the tree: the tree never holds more than the
// open elements, whatever the size of the document.
#ifndef OVXMLLIB6_SRC_XML_DOCUMENTOBSERVER_H
#define OVXMLLIB6_SRC_XML_DOCUMENTOBSERVER_H

#include <cstddef>
#include <string_view>

namespace OvXmlLib6 {

class CXmlDocument;
class CXmlElement;

namespace detail {

class CDocumentObserver {
 public:
  CDocumentObserver() = default;
  CDocumentObserver(const CDocumentObserver&) = delete;
  CDocumentObserver& operator=(const CDocumentObserver&) = delete;
  virtual ~CDocumentObserver() = default;

  // Called once the start tag of `element` has been read, attributes included; the document
  // element has depth 0. The element's text is not known yet.
  virtual void OnElementStarted(const CXmlElement* element, std::size_t depth) = 0;
  // Called after the end tag with the element's whole text, which the element itself holds
  // only if it stays. Returning true removes the element from the tree and destroys it (the
  // document element is never removed).
  virtual bool OnElementEnded(const CXmlElement* element, std::size_t depth,
                              std::string_view text) = 0;
  // True once the observer wants no more elements (Replay stops; a parse goes on regardless).
  virtual bool IsDone() const { return false; }

  // Reports a finished subtree to the observer as a parse would have, in document order and
  // without recursion, with `root` at depth 0. Nothing is removed from the tree, whatever the
  // observer answers.
  void Replay(const CXmlElement* root);

  // Attaches the observer to the next loads of the document (null detaches it).
  static void Attach(CXmlDocument& document, CDocumentObserver* observer);
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_DOCUMENTOBSERVER_H
