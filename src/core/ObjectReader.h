// CObjectReader: binds an object while its document is parsed, instead of walking the finished
// tree afterwards. The entry points attach it to the document, load, and then commit.
#ifndef OVXMLLIB6_SRC_CORE_OBJECTREADER_H
#define OVXMLLIB6_SRC_CORE_OBJECTREADER_H

#include "xml/DocumentObserver.h"

namespace OvXmlLib6 {
namespace detail {

class CObjectReader : public CDocumentObserver {
 public:
  // Called once the document has loaded without error: puts what was read into the object, or
  // throws the first validation error met in document order. The object is not touched before.
  virtual void Commit() = 0;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_OBJECTREADER_H
