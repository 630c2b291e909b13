#include "OvXmlLib6/xml/Compression.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/xml/StreamTestSupport.h"
#include "xml/Compression.h"

#include <zlib.h>

#include <gtest/gtest.h>
#include <random>
#include <string>

using namespace OvXmlLib6;
using test::UBytes;

namespace {

std::string Repetitive(std::size_t size) {
  std::string text;
  while (text.size() < size) text += "<item id=\"" + std::to_string(text.size()) + "\">x</item>";
  return text;
}

// All that an inflating source gives for `packed`, read in blocks of `block` bytes.
std::string InflateAll(const std::string& packed, std::uint64_t limit = 0,
                       std::size_t block = 4096) {
  detail::CMemorySource raw(UBytes(packed), packed.size());
  detail::CInflatingSource inflater(raw, limit);
  std::string out;
  std::string buffer(block, '\0');
  for (;;) {
    const std::size_t got = inflater.Read(reinterpret_cast<unsigned char*>(&buffer[0]), block);
    if (got == 0) return out;
    out.append(buffer, 0, got);
  }
}

}  // namespace

TEST(Compression, RoundTripsGzipAndZlib) {
  const std::string text = Repetitive(300000);
  for (int type : {1, 2}) {
    const std::string packed = test::Bytes(detail::Deflate(UBytes(text), text.size(), type));
    ASSERT_LT(packed.size(), text.size());
    EXPECT_EQ(type == 1, packed.compare(0, 2, "\x1F\x8B") == 0);
    EXPECT_TRUE(detail::LooksCompressed(UBytes(packed), packed.size()));
    EXPECT_EQ(InflateAll(packed), text);
    EXPECT_EQ(InflateAll(packed, 0, 7), text);  // blocks that split every step

    // Every truncation is refused rather than half-inflated.
    for (std::size_t cut : {std::size_t{2}, packed.size() / 2, packed.size() - 1}) {
      EXPECT_NE(test::MessageOf([&] {
                  InflateAll(packed.substr(0, cut));
                }).find("Failed to inflate the compressed input"),
                std::string::npos)
          << cut;
    }
  }
  // Deflating no input at all is refused.
  EXPECT_THROW(detail::Deflate(nullptr, 0, 2), COvException);
}

TEST(Compression, PlainAndCorruptInputIsNotInflated) {
  const std::string xml = "<?xml version=\"1.0\"?><a/>";
  EXPECT_FALSE(detail::LooksCompressed(UBytes(xml), xml.size()));

  std::string corrupt = test::Bytes(detail::Deflate(UBytes(Repetitive(5000)), 5000, 1));
  corrupt[corrupt.size() / 2] ^= 0x55;
  corrupt[corrupt.size() / 2 + 1] ^= 0x55;
  EXPECT_NE(test::MessageOf([&] { InflateAll(corrupt); }).find("Failed to inflate"),
            std::string::npos);

  std::mt19937 rng(3);
  for (int round = 0; round < 200; ++round) {
    std::string noise(rng() % 200, '\0');
    for (char& c : noise) c = static_cast<char>(rng());
    if (!noise.empty()) noise[0] = '\x1f';
    if (noise.size() > 1) noise[1] = '\x8b';
    test::MessageOf([&] { InflateAll(noise); });  // any result, but no crash
  }
}

TEST(Compression, InflationStopsAsSoonAsItPassesTheLimit) {
  // A small stream that expands a thousandfold.
  const std::string zeros(8 << 20, '\0');
  const std::string bomb = test::Bytes(detail::Deflate(UBytes(zeros), zeros.size(), 1));
  detail::CMemorySource raw(UBytes(bomb), bomb.size());
  detail::CInflatingSource inflater(raw, 1 << 20);
  std::string buffer(65536, '\0');
  std::uint64_t total = 0;
  const std::string message = test::MessageOf([&] {
    for (;;) total += inflater.Read(reinterpret_cast<unsigned char*>(&buffer[0]), buffer.size());
  });
  EXPECT_EQ(message,
            "Failed to inflate the compressed input: it expands beyond the limit of 1048576 bytes");
  EXPECT_LE(total, std::uint64_t{1} << 20);  // not one block beyond the limit
  EXPECT_FALSE(inflater.IsBroken());
  EXPECT_EQ(InflateAll(bomb, 8 << 20), zeros);
}
