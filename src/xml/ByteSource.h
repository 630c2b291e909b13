// IByteSource: input taken piece by piece (a file, standard input, an inflating stream), for the
// readers that convert a document of any size in bounded memory.
#ifndef OVXMLLIB6_SRC_XML_BYTESOURCE_H
#define OVXMLLIB6_SRC_XML_BYTESOURCE_H

#include <cstddef>

namespace OvXmlLib6 {
namespace detail {

class IByteSource {
 public:
  virtual ~IByteSource() = default;
  // Copies up to `capacity` (> 0) next bytes into `buffer` and returns how many; 0 only at the
  // end of the input. Failures throw the library's exceptions.
  virtual std::size_t Read(unsigned char* buffer, std::size_t capacity) = 0;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_BYTESOURCE_H
