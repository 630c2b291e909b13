// CFirstReference: gives an object that was just made, and that no other thread can reach yet,
// its first reference with a plain store instead of an atomic increment. Readers make objects
// by the hundred thousand and hand each to exactly one holder.
#ifndef OVXMLLIB6_SRC_CORE_FIRSTREFERENCE_H
#define OVXMLLIB6_SRC_CORE_FIRSTREFERENCE_H

#include "OvXmlLib6/core/XmlObjectBase.h"

#include <atomic>

namespace OvXmlLib6 {
namespace detail {

class CFirstReference {
 public:
  // The object's count must be 0: it was made by the caller and given to nobody yet.
  static void Take(CXmlObjectBase* object) noexcept {
    object->m_refCount.store(1, std::memory_order_relaxed);
  }
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_FIRSTREFERENCE_H
