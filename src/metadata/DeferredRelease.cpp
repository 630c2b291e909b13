#include "DeferredRelease.h"

#include "OvXmlLib6/core/XmlObjectBase.h"
#include "xml/Prefetch.h"

#include <vector>

namespace OvXmlLib6 {
namespace detail {

namespace {

// The queue of the outermost ReleaseDeferred on this thread, or null outside one.
thread_local std::vector<CXmlObjectBase*>* t_pending = nullptr;

}  // namespace

void ReleaseDeferred(CXmlObjectBase* object) noexcept {
  if (object == nullptr) return;
  if (t_pending != nullptr) {
    // push_back may throw on exhausted memory; release in place then (recursing one level)
    // rather than leak.
    try {
      t_pending->push_back(object);
      return;
    } catch (...) {
    }
    object->Release();
    return;
  }
  std::vector<CXmlObjectBase*> pending;
  t_pending = &pending;
  object->Release();
  while (!pending.empty()) {
    CXmlObjectBase* next = pending.back();
    pending.pop_back();
    if (!pending.empty()) Prefetch(pending.back());
    next->Release();
  }
  t_pending = nullptr;
}

}  // namespace detail
}  // namespace OvXmlLib6
