// The integer, real and boolean texts read through both of their entry points: the conversions
// (under WhitespaceRule_None) and the Fast Infoset encoding algorithms that carry the same types.
// Where the two must agree a row gives one outcome; the rows with a second outcome are the
// deliberate differences of the encodings: a text is a whitespace-separated list of values, and
// the long algorithm carries every value of both i8 and ui8.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/fastinfoset/FastInfosetBinaryData.h"
#include "OvXmlLib6/types/Conversions.h"

#include <cstdio>
#include <cstring>
#include <gtest/gtest.h>
#include <string>
#include <utility>

using namespace OvXmlLib6;
using C = CConversions;

namespace {

constexpr auto kNone = CWhitespaceUtils::WhitespaceRule_None;

// The octets in upper-case hexadecimal (or the message of the failure) and the printed form.
using Outcome = std::pair<std::string, std::string>;

template <typename Bits>
std::string Hex(Bits bits) {
  char hex[24];
  std::snprintf(hex, sizeof hex, "%0*llX", static_cast<int>(sizeof bits * 2),
                static_cast<unsigned long long>(bits));
  return hex;
}

template <typename Bits, typename Real>
Bits BitsOf(Real value) {
  Bits bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// The value the conversions read, as the octets the algorithm would carry, and its ToString.
Outcome Converted(std::uint32_t algorithm, const std::string& text) {
  try {
    switch (algorithm) {
      case FIAlgorithm_Short: {
        const std::int16_t v = C::i2FromString(text, kNone);
        return {Hex(static_cast<std::uint16_t>(v)), C::i2ToString(v)};
      }
      case FIAlgorithm_Int: {
        const std::int32_t v = C::i4FromString(text, kNone);
        return {Hex(static_cast<std::uint32_t>(v)), C::i4ToString(v)};
      }
      case FIAlgorithm_Long: {
        const std::int64_t v = C::i8FromString(text, kNone);
        return {Hex(static_cast<std::uint64_t>(v)), C::i8ToString(v)};
      }
      case FIAlgorithm_Boolean: {
        const bool v = C::booleanFromString(text, kNone);
        return {v ? "38" : "30", C::booleanToString(v)};
      }
      case FIAlgorithm_Float: {
        const float v = C::r4FromString(text, kNone);
        return {Hex(BitsOf<std::uint32_t>(v)), C::r4ToString(v, nullptr)};
      }
      default: {
        const double v = C::r8FromString(text, kNone);
        return {Hex(BitsOf<std::uint64_t>(v)), C::r8ToString(v, nullptr)};
      }
    }
  } catch (const COvInvalidValueException& e) {
    return {e.GetMessage(), ""};
  }
}

// The octets of the encoding and the text they decode to.
Outcome Encoded(std::uint32_t algorithm, const std::string& text) {
  try {
    CFastInfosetBinaryData data;
    data.SetAsEncodedString(algorithm, text);
    return {data.GetAsHexString(), data.GetAsString(algorithm)};
  } catch (const COvInvalidValueException& e) {
    return {e.GetMessage(), ""};
  }
}

struct Row {
  std::uint32_t algorithm;
  std::string text;
  const char* outcome;             // octets or message
  const char* encoding = nullptr;  // the encodings' outcome where it differs on purpose
};

const Row kRows[] = {
    {FIAlgorithm_Short, "1", "0001"},
    {FIAlgorithm_Short, "-32768", "8000"},
    {FIAlgorithm_Short, "", "0000"},
    {FIAlgorithm_Short, "32768", "The value [32768] is to large to fit in a i2"},
    {FIAlgorithm_Short, "-32769", "The value [-32769] is to large to fit in a i2"},
    {FIAlgorithm_Short, "1x", "The value [1x] can not be converted to a i4"},
    {FIAlgorithm_Int, "+258", "00000102"},
    {FIAlgorithm_Int, "-2147483648", "80000000"},
    {FIAlgorithm_Int, "\v\f7", "00000007"},                 // strtol skips C-locale spaces
    {FIAlgorithm_Int, std::string("5\0x", 3), "00000005"},  // the text ends at a NUL
    {FIAlgorithm_Int, "2147483648", "The value [2147483648] is to large to fit in a i4"},
    // The range error is reported before the trailing garbage, as strtol does.
    {FIAlgorithm_Int, "2147483648x", "The value [2147483648x] is to large to fit in a i4"},
    {FIAlgorithm_Int, "-", "The value [-] can not be converted to a i4"},
    {FIAlgorithm_Int, "+", "The value [+] can not be converted to a i4"},
    {FIAlgorithm_Int, "0x10", "The value [0x10] can not be converted to a i4"},
    {FIAlgorithm_Int, "--1", "The value [--1] can not be converted to a i4"},
    {FIAlgorithm_Long, "-1", "FFFFFFFFFFFFFFFF"},
    {FIAlgorithm_Long, "-9223372036854775808", "8000000000000000"},
    {FIAlgorithm_Long, "-9223372036854775809",
     "The value [-9223372036854775809] is to large to fit in a i8"},
    {FIAlgorithm_Long, "18446744073709551616",
     "The value [18446744073709551616] is to large to fit in a i8"},
    {FIAlgorithm_Long, "1.5", "The value [1.5] can not be converted to a i8"},
    {FIAlgorithm_Boolean, "true", "38"},
    {FIAlgorithm_Boolean, "FaLsE", "30"},
    {FIAlgorithm_Boolean, "1", "38"},
    {FIAlgorithm_Boolean, "0", "30"},
    {FIAlgorithm_Boolean, "yes",
     "A Boolean Value read from an XML document was invalid [yes]. Valid values are 'true', "
     "'false', '1', or '0'"},
    {FIAlgorithm_Boolean, "",
     "A Boolean Value read from an XML document was invalid []. Valid values are 'true', "
     "'false', '1', or '0'"},
    {FIAlgorithm_Float, "1.5", "3FC00000"},
    {FIAlgorithm_Float, "0.1", "3DCCCCCD"},
    {FIAlgorithm_Float, "", "7FC00000"},  // NaN
    {FIAlgorithm_Float, "1e39", "7F800000"},
    {FIAlgorithm_Float, "-3.4028235e38", "FF7FFFFF"},
    {FIAlgorithm_Float, "1,5", "The value [1,5] can not be converted to a r4"},
    {FIAlgorithm_Double, "-2.0", "C000000000000000"},
    {FIAlgorithm_Double, "+.5", "3FE0000000000000"},
    {FIAlgorithm_Double, "5.", "4014000000000000"},
    {FIAlgorithm_Double, "1E-2", "3F847AE147AE147B"},
    {FIAlgorithm_Double, "\v1.5", "3FF8000000000000"},
    {FIAlgorithm_Double, std::string("1.5\0x", 5), "3FF8000000000000"},
    {FIAlgorithm_Double, "NaN", "7FF8000000000000"},
    {FIAlgorithm_Double, "1.#QNAN", "7FF8000000000000"},
    {FIAlgorithm_Double, "-NAN", "7FF8000000000000"},
    {FIAlgorithm_Double, "INF", "7FF0000000000000"},
    {FIAlgorithm_Double, "-INF", "FFF0000000000000"},
    // Out of range: an infinity or zero with the sign, decided by the first significant digit.
    {FIAlgorithm_Double, "-1e400", "FFF0000000000000"},
    {FIAlgorithm_Double, "0.000000001e999", "7FF0000000000000"},
    {FIAlgorithm_Double, "1e999999999999999999", "7FF0000000000000"},
    {FIAlgorithm_Double, "123456789e-999", "0000000000000000"},
    {FIAlgorithm_Double, "-0.0000e-999", "8000000000000000"},
    {FIAlgorithm_Double, "4.9e-324", "0000000000000001"},
    {FIAlgorithm_Double, "+INF", "The value [+INF] can not be converted to a r8"},
    {FIAlgorithm_Double, "inf", "The value [inf] can not be converted to a r8"},
    {FIAlgorithm_Double, "nan", "The value [nan] can not be converted to a r8"},
    {FIAlgorithm_Double, "Infinity", "The value [Infinity] can not be converted to a r8"},
    {FIAlgorithm_Double, "0x1p3", "The value [0x1p3] can not be converted to a r8"},
    {FIAlgorithm_Double, "1.5f", "The value [1.5f] can not be converted to a r8"},
    {FIAlgorithm_Double, "1e", "The value [1e] can not be converted to a r8"},
    {FIAlgorithm_Double, "1e+", "The value [1e+] can not be converted to a r8"},
    {FIAlgorithm_Double, "e5", "The value [e5] can not be converted to a r8"},
    {FIAlgorithm_Double, ".", "The value [.] can not be converted to a r8"},
    {FIAlgorithm_Double, "-", "The value [-] can not be converted to a r8"},
    {FIAlgorithm_Double, "1.2.3", "The value [1.2.3] can not be converted to a r8"},
    {FIAlgorithm_Double, "--1", "The value [--1] can not be converted to a r8"},

    // The long algorithm also carries ui8 values, as their two's complement.
    {FIAlgorithm_Long, "18446744073709551615",
     "The value [18446744073709551615] is to large to fit in a i8", "FFFFFFFFFFFFFFFF"},
    {FIAlgorithm_Long, "9223372036854775808",
     "The value [9223372036854775808] is to large to fit in a i8", "8000000000000000"},
    // An encoding's text is a list: whitespace separates values and is never part of one.
    {FIAlgorithm_Int, "1 -2", "The value [1 -2] can not be converted to a i4", "00000001FFFFFFFE"},
    {FIAlgorithm_Short, "7\n", "The value [7\n] can not be converted to a i4", "0007"},
    {FIAlgorithm_Int, " ", "The value [ ] can not be converted to a i4", "00000000"},
    {FIAlgorithm_Double, "1.5 ", "The value [1.5 ] can not be converted to a r8",
     "3FF8000000000000"},
    {FIAlgorithm_Boolean, " true",
     "A Boolean Value read from an XML document was invalid [ true]. "
     "Valid values are 'true', 'false', '1', or '0'",
     "38"},
    // A failure names the one value of the list.
    {FIAlgorithm_Short, "1 -32769", "The value [1 -32769] can not be converted to a i4",
     "The value [-32769] is to large to fit in a i2"},
};

}  // namespace

TEST(NumberText, ConversionsAndFastInfosetEncodingsReadAndPrintAlike) {
  for (const Row& row : kRows) {
    SCOPED_TRACE("algorithm " + std::to_string(row.algorithm) + " [" + row.text + "]");
    const Outcome converted = Converted(row.algorithm, row.text);
    const Outcome encoded = Encoded(row.algorithm, row.text);
    EXPECT_EQ(converted.first, row.outcome);
    if (row.encoding != nullptr) {
      EXPECT_EQ(encoded.first, row.encoding);
    } else {
      EXPECT_EQ(encoded.first, row.outcome);
      // A value decodes to the text the conversions print for it, unless that text would read
      // back as another value: then the decoded real has the digits that keep its octets.
      if (encoded.second != converted.second) {
        EXPECT_TRUE(row.algorithm == FIAlgorithm_Float || row.algorithm == FIAlgorithm_Double);
        EXPECT_NE(Encoded(row.algorithm, converted.second).first, row.outcome);
        EXPECT_EQ(Encoded(row.algorithm, encoded.second).first, row.outcome);
      }
    }
  }
}
