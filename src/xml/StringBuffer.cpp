#include "OvXmlLib6/xml/StringBuffer.h"

#include "xml/BufferAppend.h"

#include <algorithm>

namespace OvXmlLib6 {

CStringBuffer::CStringBuffer(std::uint32_t blockSize)
    : CInstanceMonitor("CStringBuffer"),
      m_blockSize(blockSize == 0 ? 1 : blockSize),
      m_current(nullptr),
      m_pos(nullptr),
      m_end(nullptr),
      m_fullLength(0) {}

void CStringBuffer::NewBlock(std::size_t capacity) {
  // Make room in the lists first (doubling), so that nothing can throw once the new block is
  // allocated.
  if (m_blocks.size() == m_blocks.capacity())
    m_blocks.reserve(std::max<std::size_t>(16, 2 * m_blocks.size()));
  if (m_blockLengths.size() == m_blockLengths.capacity()) {
    m_blockLengths.reserve(std::max<std::size_t>(16, 2 * m_blockLengths.size()));
  }
  // One byte more than the text, for the terminating zero GetText writes.
  char* block = new char[capacity + 1];
  if (m_current != nullptr) {
    const std::size_t used = static_cast<std::size_t>(m_pos - m_current);
    m_blockLengths.push_back(used);
    m_fullLength += used;
  }
  m_blocks.push_back(block);
  m_current = block;
  m_pos = block;
  m_end = block + capacity;
}

void CStringBuffer::Append(const char* text, std::size_t length) {
  detail::CBufferAppend::Append(*this, text, length);
}

void CStringBuffer::AppendSlow(const char* text, std::size_t length) {
  while (length != 0) {
    if (m_pos == m_end) NewBlock(m_blockSize);
    const std::size_t step = std::min(length, static_cast<std::size_t>(m_end - m_pos));
    std::memcpy(m_pos, text, step);
    m_pos += step;
    text += step;
    length -= step;
  }
}

const char* CStringBuffer::GetText() {
  if (m_blocks.empty()) return "";
  if (m_blocks.size() > 1) {
    const std::size_t total = GetLength();
    char* merged = new char[total + 1];
    std::size_t offset = 0;
    for (std::size_t i = 0; i < m_blockLengths.size(); ++i) {
      std::memcpy(merged + offset, m_blocks[i], m_blockLengths[i]);
      offset += m_blockLengths[i];
    }
    std::memcpy(merged + offset, m_current, static_cast<std::size_t>(m_pos - m_current));
    for (char* block : m_blocks) delete[] block;
    m_blocks.assign(1, merged);
    m_blockLengths.clear();
    m_fullLength = 0;
    m_current = merged;
    m_pos = merged + total;
    m_end = m_pos;
  }
  *m_pos = '\0';
  return m_current;
}

void CStringBuffer::Clear() {
  // The block being filled is kept when it has the usual size, so a buffer that is filled and
  // emptied over and over (a stream flushed as it is written) allocates nothing after the start.
  char* keep = nullptr;
  if (m_current != nullptr && static_cast<std::size_t>(m_end - m_current) == m_blockSize) {
    keep = m_current;
  }
  for (char* block : m_blocks) {
    if (block != keep) delete[] block;
  }
  m_blocks.clear();
  m_blockLengths.clear();
  m_fullLength = 0;
  m_current = keep;
  m_pos = keep;
  m_end = keep != nullptr ? keep + m_blockSize : nullptr;
  if (keep != nullptr) m_blocks.push_back(keep);
}

CStringBuffer::~CStringBuffer() {
  for (char* block : m_blocks) delete[] block;
}

}  // namespace OvXmlLib6
