// gzip and zlib around XML text or Fast Infoset: inflation of input with automatic format
// detection, and deflation of collected output.
#ifndef OVXMLLIB6_SRC_XML_COMPRESSION_H
#define OVXMLLIB6_SRC_XML_COMPRESSION_H

#include "OvXmlLib6/types/BinaryData.h"

#include <cstddef>

namespace OvXmlLib6 {
namespace detail {

// True when the bytes start like a gzip member or a zlib stream (a cheap test before inflating).
bool LooksCompressed(const unsigned char* data, std::size_t length);

// Inflates gzip or zlib data (detected from the header) into `out`, in 64 KiB steps. Returns
// false, leaving `out` unspecified, when the input is not a complete compressed stream (so the
// caller parses it as it is). Throws COvException when the inflated size passes the limit set
// with SetMaxInflatedSize.
bool TryInflate(const unsigned char* data, std::size_t length, CBinaryData& out);

// Compresses `data` at level 1 into an array of the input's size, as gzip (type 1) or zlib
// (type 2). Output that does not fit, that is, data that does not shrink, fails like any other
// zlib error with "Failed to compress data. [Error Code: %d]".
CBinaryData Deflate(const unsigned char* data, std::size_t length, int compressionType);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_COMPRESSION_H
