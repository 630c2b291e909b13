// The block memory behind CPooledObject, for internal small objects that are not classes of
// their own (list nodes, record blocks). See OvXmlLib6/core/PooledObject.h.
#ifndef OVXMLLIB6_SRC_CORE_OBJECTMEMORY_H
#define OVXMLLIB6_SRC_CORE_OBJECTMEMORY_H

#include <cstddef>

namespace OvXmlLib6 {
namespace detail {

// Memory for `size` bytes, aligned for any object of that size (16 bytes when the size is a
// multiple of 16, else 8); throws std::bad_alloc.
void* AllocateSmall(std::size_t size);
// Gives back memory from AllocateSmall with the same size; null is ignored.
void FreeSmall(void* memory, std::size_t size) noexcept;

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_OBJECTMEMORY_H
