#include "fastinfoset/EncodingAlgorithms.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/types/Conversions.h"
#include "types/Base16And64.h"
#include "types/CharClass.h"
#include "types/NumberText.h"
#include "xml/CharEncoding.h"

#include <cmath>
#include <cstdlib>
#include <cstring>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

namespace {

// The names of the algorithms 1 to 10 in their error messages.
const char* const kAlgorithmNames[] = {"",        "HEXADECIMAL", "BASE64", "SHORT", "INT",  "LONG",
                                       "BOOLEAN", "FLOAT",       "DOUBLE", "UUID",  "CDATA"};

const std::size_t kUuidLength = 16;

[[noreturn]] void ThrowUnknownAlgorithm() { throw COvException("Unknown byte encoding."); }

[[noreturn]] void ThrowInvalid(std::uint32_t algorithm) {
  throw COvException(
      FormatString("Invalid value for %s byte encoding.", kAlgorithmNames[algorithm]));
}

// The whitespace-separated values of a list. A text without any is one empty value, which the
// conversions give its usual meaning (0 for integers, NaN for reals, an error for booleans).
std::vector<std::string_view> SplitValues(std::string_view text) {
  std::vector<std::string_view> values;
  std::size_t pos = 0;
  while (pos < text.size()) {
    while (pos < text.size() && IsXmlSpace(text[pos])) ++pos;
    const std::size_t start = pos;
    while (pos < text.size() && !IsXmlSpace(text[pos])) ++pos;
    if (pos > start) values.push_back(text.substr(start, pos - start));
  }
  if (values.empty()) values.push_back(std::string_view());
  return values;
}

std::uint64_t FloatBits(float value) {
  std::uint32_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

std::uint64_t DoubleBits(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

// The hexadecimal digits of UUIDs in the 8-4-4-4-12 form that documents carry, separated by
// whitespace, as DecodeAlgorithm prints them.
std::string UuidDigits(std::string_view text) {
  std::string digits;
  for (std::string_view value : SplitValues(text)) {
    if (value.size() != 36 || value[8] != '-' || value[13] != '-' || value[18] != '-' ||
        value[23] != '-') {
      ThrowInvalid(FIAlgorithm_UUID);
    }
    for (std::size_t i = 0; i < value.size(); ++i) {
      if (i != 8 && i != 13 && i != 18 && i != 23) digits += value[i];
    }
  }
  return digits;
}

void EncodeHex(std::uint32_t algorithm, std::string_view text, std::string& out) {
  if (text.size() % 2 != 0) ThrowInvalid(algorithm);
  const std::size_t start = out.size();
  out.resize(start + text.size() / 2);
  const std::size_t bad =
      HexDecode(text.data(), text.size(), reinterpret_cast<unsigned char*>(&out[start]));
  if (bad != text.size()) {
    throw COvException(FormatString("Invalid char in hex string [%c]", text[bad]));
  }
  if (algorithm == FIAlgorithm_UUID && (out.size() - start) % kUuidLength != 0) {
    ThrowInvalid(algorithm);
  }
}

void EncodeBase64(std::string_view text, std::string& out) {
  const std::size_t start = out.size();
  out.resize(start + text.size());
  const std::size_t decoded =
      Base64Decode(text.data(), text.size(), reinterpret_cast<unsigned char*>(&out[start]));
  out.resize(start + decoded);
  // The decoder yields nothing for text with a character outside base64; only whitespace and
  // padding may legitimately decode to nothing.
  if (decoded == 0) {
    for (char c : text) {
      if (!IsXmlSpace(c) && c != '=') ThrowInvalid(FIAlgorithm_Base64);
    }
  }
}

// One octet-group header of 4 bits giving the unused bits at the end, then one bit per value.
void EncodeBoolean(std::string_view text, std::string& out) {
  const std::vector<std::string_view> values = SplitValues(text);
  const std::size_t bits = 4 + values.size();
  const std::size_t octets = (bits + 7) / 8;
  const std::size_t start = out.size();
  out.resize(start + octets, '\0');
  unsigned char* data = reinterpret_cast<unsigned char*>(&out[start]);
  data[0] = static_cast<unsigned char>((octets * 8 - bits) << 4);
  for (std::size_t i = 0; i < values.size(); ++i) {
    if (CConversions::booleanFromString(std::string(values[i]),
                                        CWhitespaceUtils::WhitespaceRule_None)) {
      const std::size_t bit = 4 + i;
      data[bit / 8] = static_cast<unsigned char>(data[bit / 8] | (0x80u >> (bit % 8)));
    }
  }
}

std::string DecodeBoolean(const unsigned char* p, const unsigned char* limit) {
  const std::size_t length = static_cast<std::size_t>(limit - p);
  if (length == 0) return std::string();
  const std::size_t unused = p[0] >> 4;
  if (unused > 7 || 4 + unused > length * 8) ThrowInvalid(FIAlgorithm_Boolean);
  const std::size_t count = length * 8 - 4 - unused;
  std::string text;
  for (std::size_t i = 0; i < count; ++i) {
    const std::size_t bit = 4 + i;
    if (i > 0) text += ' ';
    text += CConversions::booleanToString((p[bit / 8] & (0x80u >> (bit % 8))) != 0);
  }
  return text;
}

// A real in the conversions' form, which keeps 7 (float) or 16 (double) significant digits. A
// value that such text does not give back exactly is printed with 9 or 17 digits, as many as the
// type can need, so that a value read from a document keeps its bits through its text.
std::string RealText(float value) {
  std::string text = CConversions::r4ToString(value, nullptr);
  if (std::isfinite(value) && std::strtof(text.c_str(), nullptr) != value) {
    text = CConversions::r4ToString(value, "%.9g");
  }
  return text;
}

std::string RealText(double value) {
  std::string text = CConversions::r8ToString(value, nullptr);
  if (std::isfinite(value) && std::strtod(text.c_str(), nullptr) != value) {
    text = CConversions::r8ToString(value, "%.17g");
  }
  return text;
}

// Values of `width` octets each, joined by single spaces.
std::string DecodeFixedWidth(std::uint32_t algorithm, int width, const unsigned char* p,
                             const unsigned char* limit) {
  if (static_cast<std::size_t>(limit - p) % static_cast<std::size_t>(width) != 0) {
    ThrowInvalid(algorithm);
  }
  std::string text;
  std::uint64_t bits = 0;
  while ((p = GetBigEndian(p, limit, width, &bits)) != nullptr) {
    if (!text.empty()) text += ' ';
    switch (algorithm) {
      case FIAlgorithm_Short:
        text += CConversions::i2ToString(static_cast<std::int16_t>(bits));
        break;
      case FIAlgorithm_Int:
        text += CConversions::i4ToString(static_cast<std::int32_t>(bits));
        break;
      case FIAlgorithm_Long:
        text += CConversions::i8ToString(static_cast<std::int64_t>(bits));
        break;
      case FIAlgorithm_Float: {
        const std::uint32_t bits32 = static_cast<std::uint32_t>(bits);
        float value = 0;
        std::memcpy(&value, &bits32, sizeof value);
        text += RealText(value);
        break;
      }
      default: {
        double value = 0;
        std::memcpy(&value, &bits, sizeof value);
        text += RealText(value);
        break;
      }
    }
  }
  return text;
}

}  // namespace

void PutBigEndian(std::uint64_t value, int width, std::string& out) {
  for (int shift = (width - 1) * 8; shift >= 0; shift -= 8) {
    out += static_cast<char>((value >> shift) & 0xFF);
  }
}

const unsigned char* GetBigEndian(const unsigned char* p, const unsigned char* limit, int width,
                                  std::uint64_t* value) {
  if (limit - p < width) return nullptr;
  std::uint64_t result = 0;
  for (int i = 0; i < width; ++i) result = (result << 8) | p[i];
  *value = result;
  return p + width;
}

void EncodeAlgorithm(std::uint32_t algorithm, std::string_view text, std::string& out) {
  switch (algorithm) {
    case FIAlgorithm_UUID:
      if (text.find('-') != std::string_view::npos) {
        EncodeHex(algorithm, UuidDigits(text), out);
        return;
      }
      [[fallthrough]];
    case FIAlgorithm_Hexadecimal:
      EncodeHex(algorithm, text, out);
      return;
    case FIAlgorithm_Base64:
      EncodeBase64(text, out);
      return;
    case FIAlgorithm_Short:
      for (std::string_view value : SplitValues(text)) {
        const auto i4 = static_cast<std::int32_t>(ParseInteger(value, kI4Range));
        PutBigEndian(static_cast<std::uint16_t>(NarrowInteger<std::int16_t>(i4, value, "i2")), 2,
                     out);
      }
      return;
    case FIAlgorithm_Int:
      for (std::string_view value : SplitValues(text)) {
        PutBigEndian(ParseInteger(value, kI4Range), 4, out);
      }
      return;
    case FIAlgorithm_Long:
      for (std::string_view value : SplitValues(text)) {
        PutBigEndian(ParseInteger(value, kI8OrUi8Range), 8, out);
      }
      return;
    case FIAlgorithm_Boolean:
      EncodeBoolean(text, out);
      return;
    case FIAlgorithm_Float:
      for (std::string_view value : SplitValues(text)) {
        PutBigEndian(FloatBits(ParseR4(value)), 4, out);
      }
      return;
    case FIAlgorithm_Double:
      for (std::string_view value : SplitValues(text)) {
        PutBigEndian(DoubleBits(ParseR8(value)), 8, out);
      }
      return;
    case FIAlgorithm_CDATA: {
      CTextEncoder encoder;
      encoder.ToUtf8(text, out);
      return;
    }
    default:
      ThrowUnknownAlgorithm();
  }
}

std::string DecodeAlgorithm(std::uint32_t algorithm, const unsigned char* p,
                            const unsigned char* limit) {
  const std::size_t length = static_cast<std::size_t>(limit - p);
  switch (algorithm) {
    case FIAlgorithm_UUID: {
      if (length % kUuidLength != 0) ThrowInvalid(algorithm);
      static const char kDigits[] = "0123456789abcdef";
      std::string text;
      for (std::size_t i = 0; i < length; ++i) {
        const std::size_t at = i % kUuidLength;
        if (at == 0 && i > 0) text += ' ';
        if (at == 4 || at == 6 || at == 8 || at == 10) text += '-';
        text += kDigits[p[i] >> 4];
        text += kDigits[p[i] & 0x0F];
      }
      return text;
    }
    case FIAlgorithm_Hexadecimal: {
      std::string text(length * 2, '\0');
      if (length > 0) HexEncode(p, length, &text[0]);
      return text;
    }
    case FIAlgorithm_Base64: {
      std::string text(Base64EncodedLength(length), '\0');
      if (length > 0) Base64Encode(p, length, &text[0]);
      return text;
    }
    case FIAlgorithm_Short:
      return DecodeFixedWidth(algorithm, 2, p, limit);
    case FIAlgorithm_Int:
    case FIAlgorithm_Float:
      return DecodeFixedWidth(algorithm, 4, p, limit);
    case FIAlgorithm_Long:
    case FIAlgorithm_Double:
      return DecodeFixedWidth(algorithm, 8, p, limit);
    case FIAlgorithm_Boolean:
      return DecodeBoolean(p, limit);
    case FIAlgorithm_CDATA: {
      std::string text;
      CTextEncoder encoder;
      encoder.FromUtf8(std::string_view(reinterpret_cast<const char*>(p), length), text);
      return text;
    }
    default:
      ThrowUnknownAlgorithm();
  }
}

std::string DecodeUuidDigits(const unsigned char* p, const unsigned char* limit) {
  const std::size_t length = static_cast<std::size_t>(limit - p);
  if (length % kUuidLength != 0) ThrowInvalid(FIAlgorithm_UUID);
  std::string text(length * 2, '\0');
  if (length > 0) HexEncode(p, length, &text[0]);
  return text;
}

}  // namespace detail
}  // namespace OvXmlLib6
