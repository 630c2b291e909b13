// The numbers under which Fast Infoset knows its built-in restricted alphabets and encoding
// algorithms, and the kinds of encoding a typed value can be given.
#ifndef OVXMLLIB6_FASTINFOSET_ENCODINGS_H
#define OVXMLLIB6_FASTINFOSET_ENCODINGS_H

#include <cstdint>

namespace OvXmlLib6 {

// How values of one item type are written.
enum FIEncodingKind : std::uint32_t {
  FIEncodingKind_None = 0,                // as a plain character string
  FIEncodingKind_RestrictedAlphabet = 1,  // packed in a restricted alphabet
  FIEncodingKind_Algorithm = 2            // as the octets of an encoding algorithm
};

// The built-in restricted alphabets.
enum FIRestrictedAlphabet : std::uint32_t {
  FIRestrictedAlphabet_Numeric = 1,
  FIRestrictedAlphabet_DateAndTime = 2
};

// The built-in encoding algorithms.
enum FIAlgorithm : std::uint32_t {
  FIAlgorithm_Hexadecimal = 1,
  FIAlgorithm_Base64 = 2,
  FIAlgorithm_Short = 3,
  FIAlgorithm_Int = 4,
  FIAlgorithm_Long = 5,
  FIAlgorithm_Boolean = 6,
  FIAlgorithm_Float = 7,
  FIAlgorithm_Double = 8,
  FIAlgorithm_UUID = 9,
  FIAlgorithm_CDATA = 10
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_FASTINFOSET_ENCODINGS_H
