#include "types/Base16And64.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

namespace {

constexpr char kHexDigits[] = "0123456789ABCDEF";
constexpr char kBase64Alphabet[] =
    "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";

// Two output characters per byte, stored in memory order.
struct HexEncodeTable {
  std::array<std::array<char, 2>, 256> pairs{};
  constexpr HexEncodeTable() {
    for (int b = 0; b < 256; ++b) {
      pairs[b][0] = kHexDigits[b >> 4];
      pairs[b][1] = kHexDigits[b & 15];
    }
  }
};

// Digit value per character, pre-shifted for the high and the low nibble; any character that
// is not a hexadecimal digit sets bit 8, so a run of pairs is checked with one test.
constexpr std::uint16_t kNotHex = 0x100;
struct HexDecodeTable {
  std::array<std::uint16_t, 256> high{};
  std::array<std::uint16_t, 256> low{};
  constexpr HexDecodeTable() {
    for (int c = 0; c < 256; ++c) high[c] = low[c] = kNotHex;
    auto set = [this](int c, int v) {
      high[c] = static_cast<std::uint16_t>(v << 4);
      low[c] = static_cast<std::uint16_t>(v);
    };
    for (int d = 0; d < 10; ++d) set('0' + d, d);
    for (int d = 0; d < 6; ++d) {
      set('A' + d, 10 + d);
      set('a' + d, 10 + d);
    }
  }
};

// Two base64 characters for every 12-bit group, so three bytes take two look-ups.
struct Base64EncodeTable {
  std::array<std::array<char, 2>, 4096> pairs{};
  constexpr Base64EncodeTable() {
    for (int v = 0; v < 4096; ++v) {
      pairs[v][0] = kBase64Alphabet[v >> 6];
      pairs[v][1] = kBase64Alphabet[v & 63];
    }
  }
};

constexpr std::uint8_t kSkip = 0xFE;
constexpr std::uint8_t kInvalid = 0xFF;
constexpr std::uint32_t kNotSextet = 0x80000000u;

// `sextet` classifies a character after masking it to 7 bits. `shifted[k]` holds each alphabet
// character's value already moved to its place in a four-character group, and a flag bit for
// every other character (including those with the top bit set that only the slow path masks),
// so a whole group is decoded with four look-ups and one test.
struct Base64DecodeTable {
  std::array<std::uint8_t, 128> sextet{};
  std::array<std::array<std::uint32_t, 256>, 4> shifted{};
  constexpr Base64DecodeTable() {
    for (int c = 0; c < 128; ++c) sextet[c] = kInvalid;
    for (int v = 0; v < 64; ++v)
      sextet[static_cast<unsigned char>(kBase64Alphabet[v])] = static_cast<std::uint8_t>(v);
    for (char c : {'=', ' ', '\t', '\r', '\n'}) sextet[static_cast<unsigned char>(c)] = kSkip;
    for (int k = 0; k < 4; ++k) {
      for (int c = 0; c < 256; ++c) shifted[k][c] = kNotSextet;
      for (int v = 0; v < 64; ++v) {
        shifted[k][static_cast<unsigned char>(kBase64Alphabet[v])] = static_cast<std::uint32_t>(v)
                                                                     << (18 - 6 * k);
      }
    }
  }
};

constexpr HexEncodeTable kHexEncode;
constexpr HexDecodeTable kHexDecode;
constexpr Base64EncodeTable kBase64Encode;
constexpr Base64DecodeTable kBase64Decode;

inline void PutGroup(std::uint32_t group, unsigned char* out) {
  out[0] = static_cast<unsigned char>(group >> 16);
  out[1] = static_cast<unsigned char>(group >> 8);
  out[2] = static_cast<unsigned char>(group);
}

}  // namespace

void HexEncode(const unsigned char* bytes, std::size_t length, char* out) {
  for (std::size_t i = 0; i < length; ++i) {
    std::memcpy(out + 2 * i, kHexEncode.pairs[bytes[i]].data(), 2);
  }
}

namespace {

// The byte for every pair of characters, indexed by the two characters as they lie in memory
// (read as one 16-bit word), or kNotHex when either is not a hexadecimal digit: one look-up per
// output byte. 128 KiB, built on first use.
const std::uint16_t* HexPairTable() {
  static const std::vector<std::uint16_t> table = [] {
    std::vector<std::uint16_t> t(65536);
    for (int first = 0; first < 256; ++first) {
      for (int second = 0; second < 256; ++second) {
        const unsigned char pair[2] = {static_cast<unsigned char>(first),
                                       static_cast<unsigned char>(second)};
        std::uint16_t word;
        std::memcpy(&word, pair, 2);
        t[word] = kHexDecode.high[first] | kHexDecode.low[second];
      }
    }
    return t;
  }();
  return table.data();
}

inline unsigned PairAt(const std::uint16_t* pairs, const unsigned char* s) {
  std::uint16_t word;
  std::memcpy(&word, s, 2);
  return pairs[word];
}

}  // namespace

std::size_t HexDecode(const char* text, std::size_t length, unsigned char* out) {
  const auto* s = reinterpret_cast<const unsigned char*>(text);
  const std::uint16_t* pairs = HexPairTable();
  // Eight pairs are decoded before the one error test; the exact place is found below.
  std::size_t i = 0;
  for (; i + 16 <= length; i += 16, out += 8) {
    const unsigned v0 = PairAt(pairs, s + i), v1 = PairAt(pairs, s + i + 2);
    const unsigned v2 = PairAt(pairs, s + i + 4), v3 = PairAt(pairs, s + i + 6);
    const unsigned v4 = PairAt(pairs, s + i + 8), v5 = PairAt(pairs, s + i + 10);
    const unsigned v6 = PairAt(pairs, s + i + 12), v7 = PairAt(pairs, s + i + 14);
    if ((v0 | v1 | v2 | v3 | v4 | v5 | v6 | v7) & kNotHex) break;
    out[0] = static_cast<unsigned char>(v0);
    out[1] = static_cast<unsigned char>(v1);
    out[2] = static_cast<unsigned char>(v2);
    out[3] = static_cast<unsigned char>(v3);
    out[4] = static_cast<unsigned char>(v4);
    out[5] = static_cast<unsigned char>(v5);
    out[6] = static_cast<unsigned char>(v6);
    out[7] = static_cast<unsigned char>(v7);
  }
  for (; i + 1 < length; i += 2) {
    if (kHexDecode.high[s[i]] & kNotHex) return i;
    if (kHexDecode.low[s[i + 1]] & kNotHex) return i + 1;
    *out++ = static_cast<unsigned char>(kHexDecode.high[s[i]] | kHexDecode.low[s[i + 1]]);
  }
  return length;
}

void Base64Encode(const unsigned char* bytes, std::size_t length, char* out) {
  std::size_t i = 0;
  for (; i + 3 <= length; i += 3) {
    const std::uint32_t group =
        (std::uint32_t{bytes[i]} << 16) | (std::uint32_t{bytes[i + 1]} << 8) | bytes[i + 2];
    std::memcpy(out, kBase64Encode.pairs[group >> 12].data(), 2);
    std::memcpy(out + 2, kBase64Encode.pairs[group & 0xFFF].data(), 2);
    out += 4;
  }
  const std::size_t rest = length - i;
  if (rest == 0) return;
  std::uint32_t group = std::uint32_t{bytes[i]} << 16;
  if (rest == 2) group |= std::uint32_t{bytes[i + 1]} << 8;
  out[0] = kBase64Alphabet[(group >> 18) & 63];
  out[1] = kBase64Alphabet[(group >> 12) & 63];
  out[2] = rest == 2 ? kBase64Alphabet[(group >> 6) & 63] : '=';
  out[3] = '=';
}

std::size_t Base64Decode(const char* text, std::size_t length, unsigned char* out) {
  const auto* s = reinterpret_cast<const unsigned char*>(text);
  const auto& t = kBase64Decode.shifted;
  std::size_t i = 0;
  std::size_t written = 0;
  std::uint32_t group = 0;
  int sextets = 0;  // characters collected in `group` by the slow path
  while (i < length) {
    if (sextets == 0) {
      // Fast path: four alphabet characters at a time.
      while (i + 4 <= length) {
        const std::uint32_t v = t[0][s[i]] | t[1][s[i + 1]] | t[2][s[i + 2]] | t[3][s[i + 3]];
        if (v & kNotSextet) break;
        PutGroup(v, out + written);
        written += 3;
        i += 4;
      }
      if (i >= length) break;
    }
    // Slow path, one character: skipped characters, the top bit, and the end of the text.
    const std::uint8_t v = kBase64Decode.sextet[s[i++] & 0x7F];
    if (v == kSkip) continue;
    if (v == kInvalid) return 0;
    group = (group << 6) | v;
    if (++sextets == 4) {
      PutGroup(group, out + written);
      written += 3;
      group = 0;
      sextets = 0;
    }
  }
  // Left-over characters give their whole bytes; the remaining bits are dropped.
  if (sextets >= 2) {
    group <<= 6 * (4 - sextets);
    out[written++] = static_cast<unsigned char>(group >> 16);
    if (sextets == 3) out[written++] = static_cast<unsigned char>(group >> 8);
  }
  return written;
}

}  // namespace detail
}  // namespace OvXmlLib6
