#include "OvXmlLib6/fastinfoset/FastInfosetBinaryData.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <functional>
#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

// The octets after encoding `text`, in upper-case hexadecimal.
std::string Encoded(std::uint32_t algorithm, const std::string& text) {
  CFastInfosetBinaryData data;
  data.SetAsEncodedString(algorithm, text);
  return data.GetAsHexString();
}

// The text of the octets given in hexadecimal.
std::string Decoded(std::uint32_t algorithm, const char* hex) {
  CFastInfosetBinaryData data;
  data.SetAsHexString(hex);
  return data.GetAsString(algorithm);
}

std::string EncodeMessage(std::uint32_t algorithm, const std::string& text) {
  return MessageOf([&] { Encoded(algorithm, text); });
}

std::string DecodeMessage(std::uint32_t algorithm, const char* hex) {
  return MessageOf([&] { Decoded(algorithm, hex); });
}

}  // namespace

// The texts of single values, and their failures, are read as the conversions read them
// (tests/unit/types/NumberText_test.cpp); these tests are about lists and octets.

TEST(CFastInfosetBinaryData, BooleanPacksAFourBitHeaderThenOneBitPerValue) {
  EXPECT_EQ(Encoded(FIAlgorithm_Boolean, "TRUE 0 1"), "1A");
  EXPECT_EQ(Encoded(FIAlgorithm_Boolean, "1 1 1 1 1"), "7F80");
  EXPECT_EQ(Decoded(FIAlgorithm_Boolean, "38"), "true");
  EXPECT_EQ(Decoded(FIAlgorithm_Boolean, "1A"), "true false true");
  EXPECT_EQ(Decoded(FIAlgorithm_Boolean, "7F80"), "true true true true true");
  // More unused bits than the octets hold.
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Boolean, "80"), "Invalid value for BOOLEAN byte encoding.");
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Boolean, "50"), "Invalid value for BOOLEAN byte encoding.");
}

TEST(CFastInfosetBinaryData, IntegersDecodeAsBigEndianTwosComplement) {
  EXPECT_EQ(Decoded(FIAlgorithm_Short, "0001FFFE8000"), "1 -2 -32768");
  EXPECT_EQ(Decoded(FIAlgorithm_Int, "000003E880000000"), "1000 -2147483648");
  EXPECT_EQ(Decoded(FIAlgorithm_Long, "FFFFFFFFFFFFFFFF7FFFFFFFFFFFFFFF"),
            "-1 9223372036854775807");
  EXPECT_EQ(Decoded(FIAlgorithm_Short, ""), "");
}

TEST(CFastInfosetBinaryData, OctetCountsThatAreNotWholeValuesAreRejected) {
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Short, "000102"), "Invalid value for SHORT byte encoding.");
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Int, "000102"), "Invalid value for INT byte encoding.");
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Long, "00010203040506"),
            "Invalid value for LONG byte encoding.");
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Float, "0001020304"),
            "Invalid value for FLOAT byte encoding.");
  EXPECT_EQ(DecodeMessage(FIAlgorithm_Double, "0001"), "Invalid value for DOUBLE byte encoding.");
  EXPECT_EQ(DecodeMessage(FIAlgorithm_UUID, "000102030405060708090A0B0C0D0E"),
            "Invalid value for UUID byte encoding.");
}

TEST(CFastInfosetBinaryData, RealListsDecodeInGeneralForm) {
  EXPECT_EQ(Decoded(FIAlgorithm_Float, "3FC00000BF800000"), "1.5 -1");
  EXPECT_EQ(Decoded(FIAlgorithm_Double, "C000000000000000"), "-2");
  const auto roundTrip = [](std::uint32_t algorithm, const std::string& text) {
    CFastInfosetBinaryData data;
    data.SetAsEncodedString(algorithm, text);
    return data.GetAsString(algorithm);
  };
  EXPECT_EQ(roundTrip(FIAlgorithm_Double, "NaN -INF INF 1.#QNAN -NAN"), "NaN -INF INF NaN NaN");
  EXPECT_EQ(roundTrip(FIAlgorithm_Double, "1e999 -1e999 1e-999 -0.0000e-999"), "INF -INF 0 -0");
  EXPECT_EQ(roundTrip(FIAlgorithm_Float, "+.5 5."), "0.5 5");
  // Values that the short form would change get the digits that keep them.
  EXPECT_EQ(Decoded(FIAlgorithm_Float, "47F120657F7FFFFF3DCCCCCD"),
            "123456.789 3.40282347e+38 0.1");
  EXPECT_EQ(Decoded(FIAlgorithm_Double, "3FD33333333333343FB999999999999A"),
            "0.30000000000000004 0.1");
}

TEST(CFastInfosetBinaryData, HexadecimalAndUuidReadHexDigits) {
  EXPECT_EQ(Encoded(FIAlgorithm_Hexadecimal, "DEADbe"), "DEADBE");
  EXPECT_EQ(Encoded(FIAlgorithm_Hexadecimal, ""), "");
  EXPECT_EQ(Decoded(FIAlgorithm_Hexadecimal, "00ff"), "00FF");
  const char uuid[] = "0123456789ABCDEFFEDCBA9876543210";
  EXPECT_EQ(Encoded(FIAlgorithm_UUID, uuid), uuid);
  EXPECT_EQ(Decoded(FIAlgorithm_UUID, uuid), uuid);
  EXPECT_EQ(EncodeMessage(FIAlgorithm_Hexadecimal, "ABC"),
            "Invalid value for HEXADECIMAL byte encoding.");
  EXPECT_EQ(EncodeMessage(FIAlgorithm_Hexadecimal, "AZ"), "Invalid char in hex string [Z]");
  EXPECT_EQ(EncodeMessage(FIAlgorithm_UUID, "0123"), "Invalid value for UUID byte encoding.");
  // UUIDs also read in the 8-4-4-4-12 form that documents carry, one value or several.
  EXPECT_EQ(Encoded(FIAlgorithm_UUID, "01234567-89ab-cdef-FEDC-ba9876543210"), uuid);
  EXPECT_EQ(Encoded(FIAlgorithm_UUID,
                    " 01234567-89ab-cdef-fedc-ba9876543210\n00000000-0000-0000-ffff-ffffffffffff"),
            std::string(uuid) + "0000000000000000FFFFFFFFFFFFFFFF");
  for (const char* bad :
       {"01234567-89ab-cdef-fedc-ba987654321", "0123456789ab-cdef-fedc-ba98-76543210",
        "01234567-89ab-cdef-fedc-ba9876543210 0123"}) {
    EXPECT_EQ(EncodeMessage(FIAlgorithm_UUID, bad), "Invalid value for UUID byte encoding.") << bad;
  }
  EXPECT_EQ(EncodeMessage(FIAlgorithm_UUID, "0123456x-89ab-cdef-fedc-ba9876543210"),
            "Invalid char in hex string [x]");
}

TEST(CFastInfosetBinaryData, Base64ReadsAndWritesBase64) {
  EXPECT_EQ(Encoded(FIAlgorithm_Base64, "3q2+"), "DEADBE");
  EXPECT_EQ(Encoded(FIAlgorithm_Base64, " 3q2+\n3q0= "), "DEADBEDEAD");
  EXPECT_EQ(Encoded(FIAlgorithm_Base64, " = "), "");
  EXPECT_EQ(Decoded(FIAlgorithm_Base64, "DEADBEDEAD"), "3q2+3q0=");
  EXPECT_EQ(EncodeMessage(FIAlgorithm_Base64, "3q2!"), "Invalid value for BASE64 byte encoding.");
}

TEST(CFastInfosetBinaryData, CdataIsUtf8Text) {
  EXPECT_EQ(Encoded(FIAlgorithm_CDATA, "x<y"), "783C79");
  EXPECT_EQ(Decoded(FIAlgorithm_CDATA, "783C79"), "x<y");
  EXPECT_EQ(Decoded(FIAlgorithm_CDATA, "C3A9"), "\xC3\xA9");
}

TEST(CFastInfosetBinaryData, UnknownAlgorithmsAreRejectedBothWays) {
  for (std::uint32_t algorithm : {0u, 11u, 32u, 0xFFFFFFFFu}) {
    EXPECT_EQ(EncodeMessage(algorithm, "1"), "Unknown byte encoding.");
    EXPECT_EQ(DecodeMessage(algorithm, "01"), "Unknown byte encoding.");
  }
}

TEST(CFastInfosetBinaryData, FailedEncodingLeavesTheValueUnchanged) {
  CFastInfosetBinaryData data("ab");
  EXPECT_THROW(data.SetAsEncodedString(FIAlgorithm_Short, "1 2 x"), COvInvalidValueException);
  EXPECT_EQ(data.GetAsHexString(), "6162");
}

TEST(CFastInfosetBinaryData, DecodesBytesGivenAtConstruction) {
  unsigned char bytes[] = {0x00, 0x2A};
  EXPECT_EQ(CFastInfosetBinaryData(bytes, 2, false).GetAsString(FIAlgorithm_Short), "42");
  CBinaryData plain;
  plain.SetAsHexString("38");
  EXPECT_EQ(CFastInfosetBinaryData(plain).GetAsString(FIAlgorithm_Boolean), "true");
  EXPECT_EQ(CFastInfosetBinaryData("x").GetAsString(FIAlgorithm_CDATA), "x");
}
