// CNameCache: the shared strings of the names a reader copies out of a document. The document
// interns its names, so one name is one std::string for the whole document; the cache maps the
// address of that string to one CSharedString, and every object read from the document shares
// it.
//
// The names must stay where they are while the cache is in use (a document's names do until it
// is loaded again or destroyed).
#ifndef OVXMLLIB6_SRC_METADATA_NAMECACHE_H
#define OVXMLLIB6_SRC_METADATA_NAMECACHE_H

#include "OvXmlLib6/core/SharedString.h"
#include "core/SharedNames.h"

#include <cstddef>
#include <cstdint>
#include <string>

namespace OvXmlLib6 {
namespace detail {

class CNameCache {
 public:
  const CSharedString& Get(const std::string& interned) {
    // Four ways per set, so that two names of one document that fall into the same set do not
    // push each other out on every element.
    const std::uintptr_t address = reinterpret_cast<std::uintptr_t>(&interned);
    Entry* set = m_entries + ((address * kMix) >> (8 * sizeof(std::uintptr_t) - kSetBits)) * kWays;
    for (std::size_t way = 0; way < kWays; ++way) {
      if (set[way].key == &interned) return set[way].value;
    }
    Entry& entry = set[m_victim++ % kWays];
    entry.value = SharedName(interned);
    entry.key = &interned;
    return entry.value;
  }

 private:
  // Small, as a reader is made per wildcard element read from a tree: a document's vocabulary is
  // usually a few dozen names, and a miss only costs a look-up in the shared table.
  static constexpr std::size_t kSetBits = 4;
  static constexpr std::size_t kWays = 4;
  static constexpr std::uintptr_t kMix = static_cast<std::uintptr_t>(0x9E3779B97F4A7C15ull);
  struct Entry {
    const std::string* key = nullptr;
    CSharedString value;
  };
  Entry m_entries[(std::size_t{1} << kSetBits) * kWays];
  std::size_t m_victim = 0;
};

// The verdicts of a namespace restriction on the namespaces of one document, remembered for the
// last few namespaces seen (interned strings, compared by address).
class CNamespaceVerdicts {
 public:
  // The verdict on the namespace, asked of `check(ns)` on first sight.
  template <typename Check>
  bool Admits(const std::string& interned, Check check) {
    for (const Entry& entry : m_entries) {
      if (entry.key == &interned) return entry.admitted;
    }
    Entry& entry = m_entries[m_next];
    m_next = (m_next + 1) % kEntries;
    entry.admitted = check(interned);
    entry.key = &interned;
    return entry.admitted;
  }

 private:
  static constexpr std::size_t kEntries = 4;
  struct Entry {
    const std::string* key = nullptr;
    bool admitted = false;
  };
  Entry m_entries[kEntries];
  std::size_t m_next = 0;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_NAMECACHE_H
