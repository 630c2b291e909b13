// Releasing a reference without recursing through a deep tree of bound objects.
#ifndef OVXMLLIB6_SRC_METADATA_DEFERREDRELEASE_H
#define OVXMLLIB6_SRC_METADATA_DEFERREDRELEASE_H

namespace OvXmlLib6 {

class CXmlObjectBase;

namespace detail {

// Releases one reference to `object`. When this happens inside the destruction of another object
// that was itself released this way, the release is queued and done by the outermost call once
// the destructor in progress has returned. So destroying a tree of collections and items nested
// 100,000 deep takes a bounded amount of stack: each level's items are released from the same
// loop instead of from inside their parent's destructor.
void ReleaseDeferred(CXmlObjectBase* object) noexcept;

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_DEFERREDRELEASE_H
