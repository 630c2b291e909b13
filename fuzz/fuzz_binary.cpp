// Hexadecimal and base64, through CConversions and through CBinaryData: the input as text either
// fails or decodes to bytes that re-encode to a text decoding to the same bytes; the input as
// bytes encodes to a text that decodes back to it.
#include "FuzzSupport.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/types/Conversions.h"

#include <functional>

using namespace OvXmlLib6;
using C = CConversions;
using Rule = CWhitespaceUtils::WhitespaceRule;

namespace {

std::string Bytes(const CBinaryData& data) {
  return std::string(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
}

struct CCodec {
  const char* name;
  std::function<CBinaryData(const std::string&, Rule)> decode;
  std::function<std::string(const CBinaryData&)> encode;
};

template <void (CBinaryData::*Set)(const char*)>
CBinaryData Decoded(const std::string& text, Rule) {
  CBinaryData data;
  (data.*Set)(text.c_str());
  return data;
}

const CCodec kCodecs[] = {
    {"hexBinary conversions", C::hexBinaryFromString, C::hexBinaryToString},
    {"base64Binary conversions", C::base64BinaryFromString, C::base64BinaryToString},
    {"CBinaryData hexadecimal", Decoded<&CBinaryData::SetAsHexString>,
     [](const CBinaryData& d) { return d.GetAsHexString(); }},
    {"CBinaryData base64", Decoded<&CBinaryData::SetAsBase64>,
     [](const CBinaryData& d) { return d.GetAsBase64(); }},
};

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string text(reinterpret_cast<const char*>(data), size);
  // The first byte picks the whitespace rule of the conversions.
  const Rule rule = static_cast<Rule>(size > 0 ? data[0] % 4 : 0);
  CBinaryData raw;
  raw.SetBuffer(data, static_cast<std::uint32_t>(size));
  for (const CCodec& codec : kCodecs) {
    CBinaryData decoded;
    if (fuzz::Attempt([&] { decoded = codec.decode(text, rule); })) {
      const std::string encoded = codec.encode(decoded);
      CBinaryData again;
      fuzz::MustSucceed(codec.name, encoded, [&] { again = codec.decode(encoded, rule); });
      fuzz::Require(again == decoded, codec.name, Bytes(decoded), Bytes(again));
    }
    CBinaryData back;
    fuzz::MustSucceed(codec.name, text, [&] { back = codec.decode(codec.encode(raw), rule); });
    fuzz::Require(back == raw, codec.name, text, Bytes(back));
  }
  return 0;
}
