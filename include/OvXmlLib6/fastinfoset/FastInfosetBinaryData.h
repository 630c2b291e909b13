// CFastInfosetBinaryData: the octets of a value under one of Fast Infoset's built-in encoding
// algorithms (the FIAlgorithm numbers 1 to 10), made from the value's text and turned back into
// text.
#ifndef OVXMLLIB6_FASTINFOSET_FASTINFOSETBINARYDATA_H
#define OVXMLLIB6_FASTINFOSET_FASTINFOSETBINARYDATA_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/types/BinaryData.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CFastInfosetBinaryData : public CBinaryData {
 public:
  CFastInfosetBinaryData();
  // As the CBinaryData constructor of the same arguments: copies the bytes, or adopts a new[]
  // array when `adopt` is true.
  CFastInfosetBinaryData(unsigned char* bytes, std::uint32_t length, bool adopt);
  // The bytes of the string, without the terminating zero.
  explicit CFastInfosetBinaryData(const char* text);
  // Shares the other value's bytes.
  CFastInfosetBinaryData(const CBinaryData& other);
  CFastInfosetBinaryData(const CFastInfosetBinaryData& other);
  CFastInfosetBinaryData& operator=(const CFastInfosetBinaryData& other);
  ~CFastInfosetBinaryData() override;

  // Replaces the value with the octets of `text` under the algorithm:
  //   1 hexadecimal, 9 uuid: hexadecimal digits, two per octet (uuid: 16 octets per UUID);
  //   2 base64: base64 text;
  //   3 short, 4 int, 5 long: decimal integers of 2, 4 and 8 octets, most significant first
  //     (long also takes unsigned 64-bit values, as their two's complement);
  //   6 boolean: true/false/1/0, a 4-bit count of unused bits then one bit per value;
  //   7 float, 8 double: IEEE bits, most significant first;
  //   10 cdata: the text in UTF-8.
  // The numeric and boolean algorithms take one or more values separated by whitespace.
  // Throws COvException "Unknown byte encoding." for any other algorithm, and the conversion
  // messages, or "Invalid value for <NAME> byte encoding.", for text the algorithm cannot carry.
  // On failure the value is left unchanged.
  void SetAsEncodedString(std::uint32_t algorithm, const std::string& text);

  // The text of the stored octets under the algorithm: upper-case hexadecimal, base64, decimal
  // integers, true/false, reals in "%.7g" (float) and "%.16g" (double) form with NaN, INF and
  // -INF, or the cdata text in the internal code page. Several values are joined by single
  // spaces. Throws "Unknown byte encoding." for an unknown algorithm and, for octets that the
  // algorithm cannot have produced, "Invalid value for <NAME> byte encoding." (for example
  // "Invalid value for SHORT byte encoding." for an odd count).
  std::string GetAsString(std::uint32_t algorithm) const;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_FASTINFOSET_FASTINFOSETBINARYDATA_H
