// The built-in Fast Infoset encoding algorithms 1 to 10 over raw octets: Encode turns the text of
// a value into the algorithm's octets, Decode turns octets back into text. Decode never trusts
// the octet count: a count that the algorithm cannot have produced is an error.
#ifndef OVXMLLIB6_SRC_FASTINFOSET_ENCODINGALGORITHMS_H
#define OVXMLLIB6_SRC_FASTINFOSET_ENCODINGALGORITHMS_H

#include <cstdint>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// Appends `width` octets of `value`, most significant first.
void PutBigEndian(std::uint64_t value, int width, std::string& out);

// Reads `width` octets, most significant first, from [p, limit) into *value and returns the
// position after them; null when fewer than `width` octets remain.
const unsigned char* GetBigEndian(const unsigned char* p, const unsigned char* limit, int width,
                                  std::uint64_t* value);

// Appends the octets of `text` under the algorithm to `out` (bytes held in a string). The
// numeric and boolean algorithms take one or more values separated by whitespace. Throws
// COvException "Unknown byte encoding." for an algorithm outside 1 to 10, and the library's
// conversion messages or "Invalid value for <NAME> byte encoding." for text the algorithm cannot
// carry.
void EncodeAlgorithm(std::uint32_t algorithm, std::string_view text, std::string& out);

// The text of the octets [p, limit) under the algorithm, as a document's content reads; UUIDs are
// in the 8-4-4-4-12 form of lower-case hexadecimal digits, separated by single spaces. Throws
// "Unknown byte encoding." for an algorithm outside 1 to 10 and "Invalid value for <NAME> byte
// encoding." for octets the algorithm cannot have produced (for example an odd count for SHORT).
std::string DecodeAlgorithm(std::uint32_t algorithm, const unsigned char* p,
                            const unsigned char* limit);

// The UUID algorithm's octets [p, limit) as plain hexadecimal digits, the form that
// CFastInfosetBinaryData reads back. Throws "Invalid value for UUID byte encoding." unless the
// octets are whole values.
std::string DecodeUuidDigits(const unsigned char* p, const unsigned char* limit);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_FASTINFOSET_ENCODINGALGORITHMS_H
