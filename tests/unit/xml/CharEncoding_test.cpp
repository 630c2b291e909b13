#include "OvXmlLib6/xml/CharEncoding.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "xml/CharEncoding.h"
#include "xml/Unicode.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using detail::CTextEncoder;

namespace {

// Restores the process-wide switches a test changes.
struct SwitchGuard {
  ~SwitchGuard() {
    SetLocalCharEncoding(0);
    ASCIIOnly(false);
  }
};

std::string Utf16(std::string_view utf8) {
  std::string out;
  detail::Utf8ToUtf16LE(utf8, out);
  return out;
}

}  // namespace

TEST(Unicode, ValidatesUtf8Strictly) {
  EXPECT_TRUE(detail::IsValidUtf8("plain \xC3\xA9 \xE2\x82\xAC \xF0\x9F\x98\x80"));
  EXPECT_FALSE(detail::IsValidUtf8("\xC0\xAF"));          // overlong
  EXPECT_FALSE(detail::IsValidUtf8("\xED\xA0\x80"));      // surrogate
  EXPECT_FALSE(detail::IsValidUtf8("\xF4\x90\x80\x80"));  // above U+10FFFF
  EXPECT_FALSE(detail::IsValidUtf8("\xE2\x82"));          // truncated at the end
  EXPECT_FALSE(detail::IsValidUtf8("\x80"));
}

TEST(Unicode, ConvertsToUtf16LittleEndian) {
  EXPECT_EQ(Utf16("A\xC3\xA9"), std::string("A\0\xE9\0", 4));
  EXPECT_EQ(Utf16("\xF0\x9F\x98\x80"), std::string("\x3D\xD8\x00\xDE", 4));  // surrogate pair
  EXPECT_EQ(Utf16("\xFF"), std::string("\xFF\0", 2));                        // invalid byte widened

  std::string out;
  const char16_t units[] = {u'a', 0xD83D, 0xDE00, 0xDC00};
  detail::Utf16ToUtf16LE(units, 4, out);
  EXPECT_EQ(out, std::string("a\0\x3D\xD8\x00\xDE\xFD\xFF", 8));  // lone surrogate replaced
  out.clear();
  const char32_t points[] = {U'a', 0x1F600, 0x110000};
  detail::Utf32ToUtf16LE(points, 3, out);
  EXPECT_EQ(out, std::string("a\0\x3D\xD8\x00\xDE\xFD\xFF", 8));
}

TEST(CTextEncoder, Utf8InternalPassesValidTextAndWidensInvalidBytes) {
  CTextEncoder encoder;
  EXPECT_TRUE(encoder.IsInternalUtf8());
  std::string out;
  encoder.FromUtf8("caf\xC3\xA9", out);
  EXPECT_EQ(out, "caf\xC3\xA9");
  out.clear();
  encoder.ToUtf8("bad \xE9!", out);
  EXPECT_EQ(out, "bad \xC3\xA9!");
}

TEST(CTextEncoder, ConvertsThroughACodePage) {
  SwitchGuard guard;
  SetLocalCharEncoding(1252);
  CTextEncoder encoder;
  EXPECT_FALSE(encoder.IsInternalUtf8());
  std::string internal;
  encoder.FromUtf8("\xE2\x82\xAC caf\xC3\xA9 \xE4\xB8\xAD", internal);  // euro, e-acute, CJK
  EXPECT_EQ(internal, "\x80 caf\xE9 ?");
  std::string utf8;
  encoder.ToUtf8(internal, utf8);
  EXPECT_EQ(utf8, "\xE2\x82\xAC caf\xC3\xA9 ?");
  std::string utf16;
  encoder.ToUtf16LE("\xE9", utf16);
  EXPECT_EQ(utf16, std::string("\xE9\0", 2));
}

TEST(CTextEncoder, AsciiOnlyLeavesBytesAlone) {
  SwitchGuard guard;
  SetLocalCharEncoding(28591);
  ASCIIOnly(true);
  CTextEncoder encoder;
  std::string out;
  encoder.FromUtf8("\xC3\xA9", out);
  encoder.ToUtf8("\xFF", out);
  EXPECT_EQ(out, "\xC3\xA9\xFF");
}

TEST(SetLocalCharEncoding, RefusesUnknownCodePagesWhenSet) {
  SwitchGuard guard;
  SetLocalCharEncoding(1251);
  EXPECT_THROW(SetLocalCharEncoding(437), COvInvalidParamException);
  EXPECT_EQ(GetLocalCharEncoding(), 1251u);
  for (unsigned cp : {0u, 65001u, 1252u, 28591u, 1250u, 28605u, 20127u}) {
    EXPECT_NO_THROW(SetLocalCharEncoding(cp)) << cp;
    CTextEncoder encoder;
    std::string out;
    encoder.FromUtf8("ascii", out);
    EXPECT_EQ(out, "ascii") << cp;
  }
}
