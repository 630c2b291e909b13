#include "xml/DocumentObserver.h"

#include "OvXmlLib6/xml/XmlElement.h"
#include "xml/TreeStore.h"

#include <vector>

namespace OvXmlLib6 {
namespace detail {

void CDocumentObserver::Replay(const CXmlElement* root) {
  if (root == nullptr) return;
  // The open elements; the next one to start is the first child of the innermost, or, once it
  // has none left, the next sibling of the one that just ended.
  std::vector<const CXmlElement*> open;
  OnElementStarted(root, 0);
  open.push_back(root);
  const CXmlElement* next = root->GetFirstElement();
  while (!open.empty() && !IsDone()) {
    if (next != nullptr) {
      OnElementStarted(next, open.size());
      open.push_back(next);
      next = next->GetFirstElement();
      continue;
    }
    const CXmlElement* done = open.back();
    open.pop_back();
    OnElementEnded(done, open.size(), CTreeStore::ElementText(done));
    next = open.empty() ? nullptr : done->GetNextSiblingElement();
  }
}

}  // namespace detail
}  // namespace OvXmlLib6
