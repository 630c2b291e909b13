// IByteSource: input taken piece by piece (a file, standard input, an inflating stream, a block
// in memory), for the readers that take a document of any size in bounded memory; and the small
// sources that wrap others.
#ifndef OVXMLLIB6_SRC_XML_BYTESOURCE_H
#define OVXMLLIB6_SRC_XML_BYTESOURCE_H

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

class IByteSource {
 public:
  virtual ~IByteSource() = default;
  // Copies up to `capacity` (> 0) next bytes into `buffer` and returns how many; 0 only at the
  // end of the input. Failures throw the library's exceptions.
  virtual std::size_t Read(unsigned char* buffer, std::size_t capacity) = 0;
};

// A block the caller keeps while it is read.
class CMemorySource : public IByteSource {
 public:
  CMemorySource(const unsigned char* data, std::size_t length) : m_data(data), m_left(length) {}
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override {
    const std::size_t step = std::min(capacity, m_left);
    if (step != 0) std::memcpy(buffer, m_data, step);
    m_data += step;
    m_left -= step;
    return step;
  }

 private:
  const unsigned char* m_data;
  std::size_t m_left;
};

// A source whose first bytes can be looked at before they are read.
class CPeekSource : public IByteSource {
 public:
  explicit CPeekSource(IByteSource& input) : m_input(input) {}
  // The first `length` bytes, or fewer when the input is shorter. The vector stays valid, and
  // keeps what it holds, until a longer peek.
  const std::vector<unsigned char>& Peek(std::size_t length) {
    while (m_head.size() < length && !m_ended) {
      const std::size_t old = m_head.size();
      m_head.resize(length);
      const std::size_t got = m_input.Read(m_head.data() + old, length - old);
      m_head.resize(old + got);
      m_ended = got == 0;
    }
    return m_head;
  }
  // True when a peek reached the end of the input: the head is all of it.
  bool PeekedAll() const { return m_ended; }
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override {
    if (m_position == m_head.size()) return m_input.Read(buffer, capacity);
    const std::size_t step = std::min(capacity, m_head.size() - m_position);
    std::memcpy(buffer, m_head.data() + m_position, step);
    m_position += step;
    return step;
  }

 private:
  IByteSource& m_input;
  std::vector<unsigned char> m_head;
  std::size_t m_position = 0;
  bool m_ended = false;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_BYTESOURCE_H
