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

}  // namespace

TEST(Compression, RoundTripsGzipAndZlib) {
  const std::string text = Repetitive(300000);
  for (int type : {1, 2}) {
    const CBinaryData packed = detail::Deflate(UBytes(text), text.size(), type);
    ASSERT_LT(packed.GetLength(), text.size());
    const unsigned char* p = packed.GetData();
    EXPECT_EQ(type == 1, p[0] == 0x1F && p[1] == 0x8B);
    EXPECT_TRUE(detail::LooksCompressed(p, packed.GetLength()));
    CBinaryData back;
    ASSERT_TRUE(detail::TryInflate(p, packed.GetLength(), back));
    EXPECT_EQ(test::Bytes(back), text);

    // Every truncation is refused rather than half-inflated.
    for (std::uint32_t cut : {2u, packed.GetLength() / 2, packed.GetLength() - 1}) {
      CBinaryData part;
      EXPECT_FALSE(detail::TryInflate(p, cut, part)) << cut;
    }
  }
  // Deflating no input at all is refused.
  EXPECT_THROW(detail::Deflate(nullptr, 0, 2), COvException);
}

TEST(Compression, PlainAndCorruptInputIsNotInflated) {
  const std::string xml = "<?xml version=\"1.0\"?><a/>";
  EXPECT_FALSE(detail::LooksCompressed(UBytes(xml), xml.size()));
  CBinaryData out;
  EXPECT_FALSE(detail::TryInflate(UBytes(xml), xml.size(), out));

  std::string corrupt = test::Bytes(detail::Deflate(UBytes(Repetitive(5000)), 5000, 1));
  corrupt[corrupt.size() / 2] ^= 0x55;
  corrupt[corrupt.size() / 2 + 1] ^= 0x55;
  EXPECT_FALSE(detail::TryInflate(UBytes(corrupt), corrupt.size(), out));

  std::mt19937 rng(3);
  for (int round = 0; round < 200; ++round) {
    std::string noise(rng() % 200, '\0');
    for (char& c : noise) c = static_cast<char>(rng());
    if (!noise.empty()) noise[0] = '\x1f';
    if (noise.size() > 1) noise[1] = '\x8b';
    detail::TryInflate(UBytes(noise), noise.size(), out);  // any result, but no crash
  }
}

TEST(Compression, InflationIsCappedByTheProcessLimit) {
  // A small stream that expands a thousandfold.
  const std::string zeros(8 << 20, '\0');
  const CBinaryData bomb = detail::Deflate(UBytes(zeros), zeros.size(), 1);
  SetMaxInflatedSize(1 << 20);
  CBinaryData out;
  EXPECT_NE(test::MessageOf([&] {
              detail::TryInflate(bomb.GetData(), bomb.GetLength(), out);
            }).find("limit of 1048576 bytes"),
            std::string::npos);
  // Piece by piece, the limit stops the stream at the first piece past it.
  test::CMemorySource packed(test::Bytes(bomb), 4096);
  detail::CInflatingSource inflating(packed);
  std::uint64_t delivered = 0;
  std::string piece(65536, '\0');
  EXPECT_NE(test::MessageOf([&] {
              for (;;) {
                const std::size_t got =
                    inflating.Read(reinterpret_cast<unsigned char*>(&piece[0]), piece.size());
                if (got == 0) break;
                delivered += got;
              }
            }).find("limit of 1048576 bytes"),
            std::string::npos);
  EXPECT_LE(delivered, std::uint64_t{1} << 20);
  EXPECT_GT(delivered, (std::uint64_t{1} << 20) - piece.size());
  SetMaxInflatedSize(0);
  EXPECT_EQ(GetMaxInflatedSize(), std::uint64_t{1} << 30);
  EXPECT_TRUE(detail::TryInflate(bomb.GetData(), bomb.GetLength(), out));
  EXPECT_EQ(out.GetLength(), zeros.size());
}
