// CStringBuffer: the growable text buffer behind the text streams. Text is kept in blocks of a
// fixed size, so appending never moves what is already buffered; the blocks are merged into one
// array only when the whole content is taken out.
#ifndef OVXMLLIB6_XML_STRINGBUFFER_H
#define OVXMLLIB6_XML_STRINGBUFFER_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

namespace OvXmlLib6 {

namespace detail {
class CBufferAppend;
}

class OVXML_API CStringBuffer : private CInstanceMonitor {
 public:
  static constexpr std::uint32_t kDefaultBlockSize = 4095;

  // `blockSize` is the text capacity of each block (each array is one byte longer, for the
  // terminating zero); 0 is taken as 1.
  explicit CStringBuffer(std::uint32_t blockSize = kDefaultBlockSize);
  CStringBuffer(const CStringBuffer&) = delete;
  CStringBuffer& operator=(const CStringBuffer&) = delete;
  virtual ~CStringBuffer();

  // Appends a NUL-terminated text; null appends nothing.
  void Append(const char* text) {
    if (text != nullptr) Append(text, std::strlen(text));
  }
  void Append(const std::string& text) { Append(text.data(), text.size()); }
  void Append(char c) {
    if (m_pos != m_end) {
      *m_pos++ = c;
    } else {
      AppendSlow(&c, 1);
    }
  }
  // Appends `length` bytes; the common case copies into the current block in place.
  void Append(const char* text, std::size_t length);

  // The number of bytes buffered.
  std::size_t GetLength() const {
    return m_fullLength + static_cast<std::size_t>(m_pos - m_current);
  }

  // The whole content as one NUL-terminated text, valid until the buffer next changes. With more
  // than one block the blocks are merged into one array first, so a second call costs nothing.
  const char* GetText();

  // The blocks in order, for readers that can take the text in pieces without merging it.
  std::size_t GetBlockCount() const { return m_blocks.size(); }
  std::string_view GetBlock(std::size_t index) const {
    const std::size_t length = index + 1 == m_blocks.size()
                                   ? static_cast<std::size_t>(m_pos - m_current)
                                   : m_blockLengths[index];
    return std::string_view(m_blocks[index], length);
  }

  // Empties the buffer. The block being filled is kept for reuse when it has the usual size.
  void Clear();

 private:
  // The library's writers append through it, inline.
  friend class detail::CBufferAppend;

  void AppendSlow(const char* text, std::size_t length);
  void NewBlock(std::size_t capacity);

  std::vector<char*> m_blocks;
  std::vector<std::size_t> m_blockLengths;  // used lengths of the full blocks
  std::uint32_t m_blockSize;
  // The block being filled (the last of m_blocks, or null), the end of its text and the end of
  // its room. Appending moves only m_pos, which keeps the inline path to one store.
  char* m_current;
  char* m_pos;
  char* m_end;
  std::size_t m_fullLength;  // sum of m_blockLengths
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_STRINGBUFFER_H
