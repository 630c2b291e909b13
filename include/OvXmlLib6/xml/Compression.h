// Process-wide limit on how large compressed input may grow when it is inflated, so that a small
// hostile stream cannot exhaust memory. Set it before threads start.
#ifndef OVXMLLIB6_XML_COMPRESSION_H
#define OVXMLLIB6_XML_COMPRESSION_H

#include "OvXmlLib6/core/Export.h"

#include <cstdint>

namespace OvXmlLib6 {

// The largest inflated size accepted, in bytes; 1 GiB by default. Inflating more throws
// COvException. 0 restores the default.
OVXML_API void SetMaxInflatedSize(std::uint64_t bytes);
OVXML_API std::uint64_t GetMaxInflatedSize();

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_COMPRESSION_H
