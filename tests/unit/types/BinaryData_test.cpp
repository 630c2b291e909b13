#include "OvXmlLib6/types/BinaryData.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"

#include <cstring>
#include <gtest/gtest.h>
#include <random>
#include <string>
#include <thread>
#include <utility>
#include <vector>

using namespace OvXmlLib6;
using test::Bytes;
using test::MessageOf;

TEST(CBinaryData, HexRoundTripAndErrors) {
  CBinaryData d;
  d.SetAsHexString("0aFf");
  EXPECT_EQ(Bytes(d), "\x0a\xff");
  EXPECT_EQ(d.GetAsHexString(), "0AFF");

  d.SetAsHexString("");
  EXPECT_NE(d.GetData(), nullptr);
  EXPECT_EQ(d.GetLength(), 0u);

  // Odd length fails on the terminating zero of the last pair.
  const std::pair<const char*, std::string> refused[] = {
      {"ABC", std::string(1, '\0')}, {"0G", "G"}, {"x0", "x"}, {"00 1", " "}};
  for (const auto& r : refused) {
    EXPECT_EQ(MessageOf([&] { CBinaryData().SetAsHexString(r.first); }),
              "Invalid char in hex string [" + r.second + "]");
  }

  // A failed set leaves the value empty.
  CBinaryData failed("keep");
  EXPECT_THROW(failed.SetAsHexString("zz"), COvException);
  EXPECT_EQ(failed.GetData(), nullptr);

  EXPECT_EQ(CBinaryData().GetAsHexString(), "");
  EXPECT_EQ(CBinaryData::GetAsHexString(nullptr, 5), "");
}

TEST(CBinaryData, Base64DecodingRules) {
  // Padding and whitespace anywhere are skipped; the top bit of each character is masked off; a
  // lone left-over character gives no byte; an invalid character anywhere empties the result,
  // without an exception.
  const std::pair<std::string, std::string> cases[] = {{"TWFu", "Man"},
                                                       {"TW Fu\n", "Man"},
                                                       {"TWE=", "Ma"},
                                                       {"T=W\tE\r", "Ma"},
                                                       {"\xD4\xD7\xC6\xF5", "Man"},
                                                       {"TWFuT", "Man"},
                                                       {"TW!u", ""},
                                                       {std::string(400, 'A') + "*AAA", ""}};
  CBinaryData d;  // each decoding replaces what the one before left
  for (const auto& c : cases) {
    d.SetAsBase64(c.first.c_str());
    EXPECT_EQ(Bytes(d), c.second) << c.first;
  }
}

TEST(CBinaryData, Base64EncodeMatchesBitwiseReference) {
  static const char* alphabet = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/";
  std::mt19937 rng(7);
  for (std::uint32_t length = 0; length < 70; ++length) {
    std::vector<unsigned char> raw(length);
    for (auto& b : raw) b = static_cast<unsigned char>(rng());
    std::string expected;
    std::uint32_t bits = 0;
    int count = 0;
    for (unsigned char b : raw) {
      bits = (bits << 8) | b;
      count += 8;
      while (count >= 6) expected += alphabet[(bits >> (count -= 6)) & 63];
    }
    if (count > 0) expected += alphabet[(bits << (6 - count)) & 63];
    while (expected.size() % 4 != 0) expected += '=';

    CBinaryData d(raw.data(), length, false);
    EXPECT_EQ(d.GetAsBase64(), expected);
    CBinaryData back;
    back.SetAsBase64(expected.c_str());
    EXPECT_TRUE(length == 0 ? back.GetLength() == 0 : back == d) << length;
    // Line breaks inserted at every position decode to the same bytes.
    std::string wrapped;
    for (std::size_t i = 0; i < expected.size(); ++i) (wrapped += expected[i]) += "\r\n"[i % 2];
    back.SetAsBase64(wrapped.c_str());
    EXPECT_EQ(Bytes(back), Bytes(d)) << length;
  }
  EXPECT_EQ(CBinaryData("Ma").GetAsBase64(), "TWE=");
  EXPECT_EQ(CBinaryData().GetAsBase64(), "");
}

TEST(CBinaryData, CopiesShareUntilTheFirstChange) {
  CBinaryData a("abc");
  CBinaryData b = a;
  EXPECT_EQ(a.GetData(), b.GetData());
  b.Append('x');
  EXPECT_EQ(Bytes(a), "abc");
  EXPECT_EQ(Bytes(b), "abcx");

  CBinaryData c;
  c = a;
  EXPECT_EQ(c.GetData(), a.GetData());
  c[0] = 'A';  // writable index unshares
  EXPECT_EQ(Bytes(a), "abc");
  EXPECT_EQ(Bytes(c), "Abc");

  const CBinaryData& self = c;
  c = self;
  EXPECT_EQ(Bytes(c), "Abc");
  c.Clear();
  EXPECT_EQ(c.GetData(), nullptr);
  EXPECT_EQ(c.GetLength(), 0u);
}

TEST(CBinaryData, AppendForms) {
  CBinaryData d;
  d.Append("ab");
  d.Append(std::string("cd"));
  d.Append('e');
  d.Append(static_cast<unsigned char>('f'));
  d.Append(CBinaryData("g"));
  d.Append(CBinaryData());
  d.Append(static_cast<const char*>(nullptr));
  EXPECT_EQ(Bytes(d), "abcdefg");
  d.Append(d);  // appending a value to itself
  EXPECT_EQ(Bytes(d), "abcdefgabcdefg");

  // Growing past the initial capacity keeps every byte.
  std::string expected = Bytes(d);
  const std::string chunk(3000, 'z');
  for (int i = 0; i < 10; ++i) {
    d.Append(chunk);
    expected += chunk;
  }
  EXPECT_EQ(Bytes(d), expected);
  // A pointer into the value's own bytes survives the reallocation it causes.
  d.Append(d.GetData(), d.GetLength());
  EXPECT_EQ(Bytes(d), expected + expected);
}

TEST(CBinaryData, IndexAllowsTheLengthButNotBeyond) {
  CBinaryData d("abc");
  EXPECT_EQ(d[2], 'c');
  EXPECT_NO_THROW(d[3]);
  EXPECT_EQ(MessageOf([] { CBinaryData("abc")[4]; }), "Index Out of range [4]");
  EXPECT_EQ(MessageOf([] { CBinaryData()[0]; }), "Index Out of range [0]");
  const CBinaryData& cd = d;
  EXPECT_EQ(cd[0], 'a');
  EXPECT_THROW(cd[5], COvException);

  // Adopted and decoded buffers have room for the byte just past the data.
  auto* raw = new unsigned char[2]{'h', 'i'};
  CBinaryData adopted(raw, 2, true);
  EXPECT_EQ(Bytes(adopted), "hi");
  EXPECT_NO_THROW(adopted[2]);
  CBinaryData hex;
  hex.SetAsHexString("00");
  EXPECT_NO_THROW(hex[1]);
  CBinaryData b64;
  b64.SetAsBase64("AAAA");
  EXPECT_NO_THROW(b64[3]);
}

TEST(CBinaryData, EqualityDistinguishesEmptyFromZeroLength) {
  EXPECT_TRUE(CBinaryData() == CBinaryData());
  CBinaryData zero;
  zero.SetBuffer("");
  EXPECT_TRUE(zero != CBinaryData());
  EXPECT_TRUE(CBinaryData("ab") == CBinaryData("ab"));
  EXPECT_TRUE(CBinaryData("ab") != CBinaryData("abc"));
  EXPECT_TRUE(CBinaryData("ab") != CBinaryData("ac"));
}

TEST(CBinaryData, ReleaseDataHandsOverTheArray) {
  CBinaryData empty;
  EXPECT_EQ(empty.ReleaseData(), nullptr);

  CBinaryData a("xyz");
  const CBinaryData shared = a;
  unsigned char* array = a.ReleaseData();
  ASSERT_NE(array, nullptr);
  EXPECT_EQ(std::memcmp(array, "xyz", 3), 0);
  EXPECT_NE(array, shared.GetData());  // the shared value was unshared first
  EXPECT_EQ(a.GetData(), nullptr);
  EXPECT_EQ(Bytes(shared), "xyz");
  delete[] array;
}

TEST(CBinaryData, ThreadsChangingTheirOwnCopiesNeverInterfere) {
  for (int round = 0; round < 50; ++round) {
    const CBinaryData original("seed");
    auto worker = [&original](char mark, std::string* result) {
      for (int i = 0; i < 200; ++i) {
        CBinaryData mine = original;  // shares with the other thread's copies
        mine.Append(mark);
        mine[0] = static_cast<unsigned char>(mark);
        CBinaryData again = mine;
        again.Append(mine);
        if (i == 199) *result = Bytes(again);
      }
    };
    std::string first, second;
    std::thread t1(worker, '1', &first);
    std::thread t2(worker, '2', &second);
    t1.join();
    t2.join();
    EXPECT_EQ(first, "1eed11eed1");
    EXPECT_EQ(second, "2eed22eed2");
    EXPECT_EQ(Bytes(original), "seed");
  }
}
