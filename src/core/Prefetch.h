// Prefetch: asks the processor to start loading the cache line at an address that the caller
// will read soon. Writing a large object tree chases pointers from node to item to strings; a
// prefetch issued as soon as an address is known lets those loads overlap with the writing in
// between instead of each waiting in turn. It never faults, so any address (null too) may be
// given; compilers without the builtin get nothing.
#ifndef OVXMLLIB6_SRC_CORE_PREFETCH_H
#define OVXMLLIB6_SRC_CORE_PREFETCH_H

#include <cstddef>
#include <cstdint>

namespace OvXmlLib6 {
namespace detail {

inline void Prefetch(const void* address) {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(address);
#else
  (void)address;
#endif
}

// Every cache line of the `size` bytes at `address`; nothing for null. The addresses are formed
// as integers, so a range that reaches past the object is harmless.
inline void PrefetchRange(const void* address, std::size_t size) {
  if (address == nullptr) return;
  constexpr std::uintptr_t kLine = 64;
  const std::uintptr_t start = reinterpret_cast<std::uintptr_t>(address);
  for (std::uintptr_t line = start & ~(kLine - 1); line < start + size; line += kLine) {
    Prefetch(reinterpret_cast<const void*>(line));
  }
}

template <class T>
inline void PrefetchObject(const T* object) {
  PrefetchRange(object, sizeof(T));
}

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_PREFETCH_H
