#include "xml/NodeArena.h"

#include <algorithm>
#include <iterator>
#include <new>

namespace OvXmlLib6 {
namespace detail {

void* CNodeArena::AllocateSlow(std::size_t size) {
  // Blocks double up to 1 MiB, so a small document costs little and a large one few blocks.
  const std::size_t header = Round(sizeof(Block));
  std::size_t blockSize = std::max(m_nextBlock, size + header);
  m_nextBlock = std::min(m_nextBlock * 2, kLargestBlock);
  char* raw = static_cast<char*>(::operator new(blockSize));
  Block* block = reinterpret_cast<Block*>(raw);
  block->next = m_blocks;
  m_blocks = block;
  m_capacity += blockSize;
  if (size + header == blockSize && m_cursor != m_end) {
    // An oversized request gets a block of its own; the current block stays in use.
    return raw + header;
  }
  m_cursor = raw + header + size;
  m_end = raw + blockSize;
  return raw + header;
}

void CNodeArena::Reset() {
  while (m_blocks != nullptr) {
    Block* next = m_blocks->next;
    ::operator delete(m_blocks);
    m_blocks = next;
  }
  m_cursor = m_end = nullptr;
  m_nextBlock = kFirstBlock;
  m_capacity = 0;
  std::fill(std::begin(m_free), std::end(m_free), nullptr);
}

}  // namespace detail
}  // namespace OvXmlLib6
