// Table-driven hexadecimal and base64 codecs over raw buffers, shared by CBinaryData and the
// Fast Infoset encodings.
#ifndef OVXMLLIB6_SRC_TYPES_BASE16AND64_H
#define OVXMLLIB6_SRC_TYPES_BASE16AND64_H

#include <cstddef>

namespace OvXmlLib6 {
namespace detail {

// Writes 2 * length upper-case hexadecimal characters to `out`.
void HexEncode(const unsigned char* bytes, std::size_t length, char* out);

// Decodes `length` characters (a multiple of two) into `out`. Returns the offset of the first
// character that is not a hexadecimal digit, or `length` when every character is one.
std::size_t HexDecode(const char* text, std::size_t length, unsigned char* out);

// The number of characters Base64Encode writes for `length` bytes.
inline std::size_t Base64EncodedLength(std::size_t length) { return (length + 2) / 3 * 4; }

// Writes the padded base64 form of the bytes to `out`, without line breaks.
void Base64Encode(const unsigned char* bytes, std::size_t length, char* out);

// Decodes base64 text into `out` (room for `length` bytes suffices) and returns the number of
// whole bytes produced. Whitespace (blank, tab, CR, LF) and "=" are skipped wherever they stand;
// only the low 7 bits of each character count. Any other character makes the result 0.
std::size_t Base64Decode(const char* text, std::size_t length, unsigned char* out);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_BASE16AND64_H
