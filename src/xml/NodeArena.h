// Bump allocation of the tree's nodes from large blocks owned by one document, with a free list
// per size so that nodes released while parsing (element-completed callbacks) are reused.
#ifndef OVXMLLIB6_SRC_XML_NODEARENA_H
#define OVXMLLIB6_SRC_XML_NODEARENA_H

#include <cstddef>

namespace OvXmlLib6 {
namespace detail {

class CNodeArena {
 public:
  static constexpr std::size_t kAlignment = 8;

  CNodeArena() = default;
  CNodeArena(const CNodeArena&) = delete;
  CNodeArena& operator=(const CNodeArena&) = delete;
  ~CNodeArena() { Reset(); }

  // Uninitialised memory for `size` bytes, aligned to 8. Sizes up to kMaxPooled are taken from
  // the free list of their size first.
  void* Allocate(std::size_t size) {
    size = Round(size);
    if (size <= kMaxPooled) {
      FreeSlot*& list = m_free[size / kAlignment];
      if (list != nullptr) {
        FreeSlot* slot = list;
        list = slot->next;
        return slot;
      }
    }
    if (static_cast<std::size_t>(m_end - m_cursor) < size) return AllocateSlow(size);
    void* p = m_cursor;
    m_cursor += size;
    return p;
  }

  // Gives memory of Allocate(size) back for reuse; larger sizes stay until Reset.
  void Free(void* p, std::size_t size) {
    size = Round(size);
    if (size > kMaxPooled || p == nullptr) return;
    FreeSlot* slot = static_cast<FreeSlot*>(p);
    slot->next = m_free[size / kAlignment];
    m_free[size / kAlignment] = slot;
  }

  // Releases every block. Objects in them must have been destroyed.
  void Reset();

  // Bytes held in blocks, used or not.
  std::size_t Capacity() const { return m_capacity; }

 private:
  struct FreeSlot {
    FreeSlot* next;
  };
  struct Block {
    Block* next;
  };
  static constexpr std::size_t kMaxPooled = 256;
  static constexpr std::size_t kFirstBlock = 4096;
  static constexpr std::size_t kLargestBlock = 1 << 20;

  static std::size_t Round(std::size_t size) { return (size + kAlignment - 1) & ~(kAlignment - 1); }
  void* AllocateSlow(std::size_t size);

  char* m_cursor = nullptr;
  char* m_end = nullptr;
  Block* m_blocks = nullptr;
  std::size_t m_nextBlock = kFirstBlock;
  std::size_t m_capacity = 0;
  FreeSlot* m_free[kMaxPooled / kAlignment + 1] = {};
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_NODEARENA_H
