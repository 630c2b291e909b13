// Copying and comparing short strings (names, prefixes, namespace URIs, short values) inline:
// most are a few to a few dozen bytes, for which a call to memcpy or memcmp costs more than the
// work. Two moves or compares that overlap in the middle cover every length between their sizes.
#ifndef OVXMLLIB6_SRC_CORE_BYTES_H
#define OVXMLLIB6_SRC_CORE_BYTES_H

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace OvXmlLib6 {
namespace detail {

inline void CopyBytes(char* to, const char* from, std::size_t length) {
  if (length >= 8 && length <= 16) {
    std::memcpy(to, from, 8);
    std::memcpy(to + length - 8, from + length - 8, 8);
  } else if (length >= 4 && length < 8) {
    std::memcpy(to, from, 4);
    std::memcpy(to + length - 4, from + length - 4, 4);
  } else if (length < 4) {
    for (std::size_t i = 0; i < length; ++i) to[i] = from[i];
  } else {
    std::memcpy(to, from, length);
  }
}

inline bool SameBytes(const char* a, const char* b, std::size_t length) {
  if (length < 8) {
    for (std::size_t i = 0; i < length; ++i) {
      if (a[i] != b[i]) return false;
    }
    return true;
  }
  if (length > 32) return std::memcmp(a, b, length) == 0;
  std::uint64_t x;
  std::uint64_t y;
  for (std::size_t i = 0; i + 8 < length; i += 8) {
    std::memcpy(&x, a + i, 8);
    std::memcpy(&y, b + i, 8);
    if (x != y) return false;
  }
  std::memcpy(&x, a + length - 8, 8);
  std::memcpy(&y, b + length - 8, 8);
  return x == y;
}

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_BYTES_H
