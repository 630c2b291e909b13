// Prefetch: asks the processor to start loading the cache line at an address that the caller
// will read soon. Writing a large object tree chases pointers from node to item to strings; a
// prefetch issued as soon as an address is known lets those loads overlap with the writing in
// between instead of each waiting in turn. It never faults, so any address (null too) may be
// given; compilers without the builtin get nothing.
#ifndef OVXMLLIB6_SRC_XML_PREFETCH_H
#define OVXMLLIB6_SRC_XML_PREFETCH_H

namespace OvXmlLib6 {
namespace detail {

inline void Prefetch(const void* address) {
#if defined(__GNUC__) || defined(__clang__)
  __builtin_prefetch(address);
#else
  (void)address;
#endif
}

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_PREFETCH_H
