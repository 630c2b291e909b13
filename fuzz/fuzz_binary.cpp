// Hexadecimal and base64: the input as text, through CConversions and through CBinaryData,
// either fails or decodes to bytes that re-encode to a text decoding to the same bytes; the input
// as bytes encodes to texts that decode back to it.
#include "FuzzSupport.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"

using namespace OvXmlLib6;
using C = CConversions;

namespace {

std::string Bytes(const CBinaryData& data) {
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

// Decodes the text with `decode`; what decodes re-encodes with `encode` to a text that decodes
// to the same bytes.
template <typename Decode, typename Encode>
void Check(const std::string& text, Decode decode, Encode encode) {
  CBinaryData decoded;
  if (!fuzz::Attempt([&] { decoded = decode(text); })) {
    return;
  }
  const std::string encoded = encode(decoded);
  CBinaryData again;
  fuzz::MustSucceed("an encoded text decodes", encoded, [&] { again = decode(encoded); });
  fuzz::Require(again == decoded, "bytes survive encoding and decoding", Bytes(decoded),
                Bytes(again));
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  // The first byte picks the whitespace rule of the conversions.
  const auto rule = static_cast<CWhitespaceUtils::WhitespaceRule>(size > 0 ? data[0] % 4 : 0);
  Check(
      text, [&](const std::string& t) { return C::hexBinaryFromString(t, rule); },
      C::hexBinaryToString);
  Check(
      text, [&](const std::string& t) { return C::base64BinaryFromString(t, rule); },
      C::base64BinaryToString);
  const std::string cText = text.c_str();
  Check(
      cText,
      [](const std::string& t) {
        CBinaryData d;
        d.SetAsHexString(t.c_str());
        return d;
      },
      [](const CBinaryData& d) { return d.GetAsHexString(); });
  Check(
      cText,
      [](const std::string& t) {
        CBinaryData d;
        d.SetAsBase64(t.c_str());
        return d;
      },
      [](const CBinaryData& d) { return d.GetAsBase64(); });

  CBinaryData raw;
  raw.SetBuffer(data, static_cast<std::uint32_t>(size));
  fuzz::MustSucceed("any bytes round-trip through hexadecimal", text, [&] {
    CBinaryData back;
    back.SetAsHexString(raw.GetAsHexString().c_str());
    fuzz::Require(back == raw, "bytes through hexadecimal", text, Bytes(back));
  });
  fuzz::MustSucceed("any bytes round-trip through base64", text, [&] {
    CBinaryData back;
    back.SetAsBase64(raw.GetAsBase64().c_str());
    fuzz::Require(back == raw, "bytes through base64", text, Bytes(back));
  });
  return 0;
}
