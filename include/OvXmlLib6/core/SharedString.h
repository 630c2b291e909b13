// CSharedString: an immutable string whose copies share one heap block through an atomic
// reference count. Bound objects keep their names, namespaces and restrictions in it, so that the
// thousands of elements of a document that share a name or a namespace store it once, and an
// object carries 8 bytes per such string instead of a whole std::string.
//
//   CSharedString ns("urn:example:orders");
//   CSharedString same = ns;            // no copy of the text
//   const std::string& text = ns.str(); // valid while `ns` (or a copy) holds it
//
// The empty string holds no block. Copies may be used and destroyed on different threads.
#ifndef OVXMLLIB6_CORE_SHAREDSTRING_H
#define OVXMLLIB6_CORE_SHAREDSTRING_H

#include "OvXmlLib6/core/Export.h"

#include <atomic>
#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

namespace OvXmlLib6 {

class OVXML_API CSharedString {
 public:
  CSharedString() noexcept : m_block(nullptr) {}
  explicit CSharedString(std::string_view text);
  // A null pointer gives the empty string.
  explicit CSharedString(const char* text)
      : CSharedString(text != nullptr ? std::string_view(text) : std::string_view()) {}
  // Copies and destruction are inline: objects copy names by the hundred thousand, and most
  // names are permanent or empty, which needs no counting at all.
  CSharedString(const CSharedString& other) noexcept : m_block(other.m_block) {
    if (m_block != nullptr && !m_block->permanent) {
      m_block->references.fetch_add(1, std::memory_order_relaxed);
    }
  }
  CSharedString(CSharedString&& other) noexcept : m_block(other.m_block) {
    other.m_block = nullptr;
  }
  CSharedString& operator=(const CSharedString& other) noexcept;
  CSharedString& operator=(CSharedString&& other) noexcept;
  // Replaces the text (with a new block: other copies keep the old text).
  CSharedString& operator=(std::string_view text);
  CSharedString& operator=(const char* text) {
    return *this = (text != nullptr ? std::string_view(text) : std::string_view());
  }
  ~CSharedString() {
    // A permanent block is never freed; the pointer stays, so that leak checkers still see the
    // block reachable from a static string after its destruction.
    if (m_block != nullptr && !m_block->permanent) ReleaseCounted();
  }

  // A string that is never freed, for names made once and used for the life of the process
  // (descriptor tables, fixed collection names, restriction keywords): its copies share it
  // without counting references, so they cost no atomic operation to make or destroy. Keep it
  // in a static object; each call makes a new one.
  static CSharedString Permanent(std::string_view text);

  const std::string& str() const noexcept { return m_block != nullptr ? m_block->text : Empty(); }
  operator const std::string&() const noexcept { return str(); }
  const char* c_str() const noexcept { return str().c_str(); }
  std::size_t size() const noexcept { return str().size(); }
  bool empty() const noexcept { return m_block == nullptr; }

  friend bool operator==(const CSharedString& a, const CSharedString& b) noexcept {
    return a.m_block == b.m_block || a.str() == b.str();
  }
  friend bool operator!=(const CSharedString& a, const CSharedString& b) noexcept {
    return !(a == b);
  }
  friend bool operator==(const CSharedString& a, std::string_view b) noexcept {
    return std::string_view(a.str()) == b;
  }
  friend bool operator!=(const CSharedString& a, std::string_view b) noexcept { return !(a == b); }

 private:
  struct Block {
    Block(std::string_view s, bool isPermanent) : references(1), permanent(isPermanent), text(s) {}
    std::atomic<std::uint32_t> references;
    const bool permanent;
    const std::string text;
  };
  static const std::string& Empty() noexcept;
  void Release() noexcept;
  // Drops this copy's reference to a counted block, freeing it with the last one.
  void ReleaseCounted() noexcept;

  Block* m_block;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_SHAREDSTRING_H
