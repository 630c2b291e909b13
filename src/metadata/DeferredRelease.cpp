#include "DeferredRelease.h"

#include "OvXmlLib6/core/XmlObjectBase.h"
#include "core/Prefetch.h"

#include <vector>

namespace OvXmlLib6 {
namespace detail {

namespace {

// The objects waiting for release, last in first out. The first few hundred stay in the frame
// of the outermost call: releasing a tree makes one such call per top-level item, and most
// never queue more.
class CPending {
 public:
  bool Empty() const { return m_count == 0 && m_spill.empty(); }
  // May throw on exhausted memory once the frame's room is used up.
  void Push(CXmlObjectBase* object) {
    if (m_count < kInline && m_spill.empty()) {
      m_inline[m_count++] = object;
    } else {
      m_spill.push_back(object);
    }
  }
  CXmlObjectBase* Pop() {
    if (!m_spill.empty()) {
      CXmlObjectBase* object = m_spill.back();
      m_spill.pop_back();
      return object;
    }
    return m_inline[--m_count];
  }
  CXmlObjectBase* Top() const {
    if (!m_spill.empty()) return m_spill.back();
    return m_count != 0 ? m_inline[m_count - 1] : nullptr;
  }

 private:
  static constexpr std::size_t kInline = 256;
  CXmlObjectBase* m_inline[kInline];
  std::size_t m_count = 0;
  std::vector<CXmlObjectBase*> m_spill;
};

// The queue of the outermost ReleaseDeferred on this thread, or null outside one.
thread_local CPending* t_pending = nullptr;

}  // namespace

void ReleaseDeferred(CXmlObjectBase* object) noexcept {
  if (object == nullptr) return;
  if (t_pending != nullptr) {
    // Push may throw on exhausted memory; release in place then (recursing one level) rather
    // than leak.
    try {
      t_pending->Push(object);
      return;
    } catch (...) {
    }
    object->Release();
    return;
  }
  CPending pending;
  t_pending = &pending;
  object->Release();
  while (!pending.Empty()) {
    CXmlObjectBase* next = pending.Pop();
    Prefetch(pending.Top());
    next->Release();
  }
  t_pending = nullptr;
}

}  // namespace detail
}  // namespace OvXmlLib6
