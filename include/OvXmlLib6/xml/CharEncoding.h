// Process-wide switches for the 8-bit text the library keeps in its strings. Set them before
// threads start; they are plain globals without locking.
#ifndef OVXMLLIB6_XML_CHARENCODING_H
#define OVXMLLIB6_XML_CHARENCODING_H

#include "OvXmlLib6/core/Export.h"

namespace OvXmlLib6 {

// The Windows code page of the library's internal strings. 0, the default, is the system's
// code page, which is UTF-8 on POSIX systems. Accepted: 0, 65001 (UTF-8), 1252, 28591
// (ISO-8859-1), 1250, 1251, 28605 (ISO-8859-15) and 20127 (US-ASCII); any other value throws
// COvInvalidParamException and leaves the setting unchanged.
OVXML_API void SetLocalCharEncoding(unsigned int codePage);
OVXML_API unsigned int GetLocalCharEncoding();

// When on, parsed text is kept as the parser delivers it (UTF-8) and written text goes out as it
// is, without any code-page conversion. Off by default.
OVXML_API void ASCIIOnly(bool on);
OVXML_API bool IsASCIIOnly();

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_CHARENCODING_H
