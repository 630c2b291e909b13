#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/StringBuffer.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "unit/xml/StreamTestSupport.h"
#include "xml/BinaryTextStream.h"
#include "xml/Unicode.h"

#include <cerrno>
#include <cstdio>
#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::Inflate;
using test::MessageOf;

TEST(CStringBuffer, KeepsTextAcrossBlocksAndMergesOnce) {
  CStringBuffer empty;
  EXPECT_STREQ(empty.GetText(), "");
  EXPECT_EQ(empty.GetLength(), 0u);

  CStringBuffer buffer(4);  // tiny blocks so every append crosses boundaries
  std::string expected;
  for (int i = 0; i < 50; ++i) {
    const std::string piece = "<e" + std::to_string(i) + ">";
    buffer.Append(piece);
    buffer.Append('x');
    buffer.Append("yz");
    buffer.Append(static_cast<const char*>(nullptr));
    expected += piece + "xyz";
  }
  EXPECT_EQ(buffer.GetLength(), expected.size());
  const char* merged = buffer.GetText();
  EXPECT_EQ(merged, expected);
  EXPECT_EQ(buffer.GetText(), merged);  // already one block: no second merge

  buffer.Append("tail");  // appending after a merge goes on in a new block
  EXPECT_EQ(std::string(buffer.GetText()), expected + "tail");

  buffer.Clear();
  EXPECT_EQ(buffer.GetLength(), 0u);
  EXPECT_STREQ(buffer.GetText(), "");
  buffer.Append("ab");
  EXPECT_STREQ(buffer.GetText(), "ab");  // a single block is returned terminated
}

TEST(CTextStream, ConvertsToTheOutputEncoding) {
  const std::string text = "a<\xC3\xA9\xE2\x82\xAC\xF0\x9F\x98\x80";  // a < e-acute euro emoji
  CTextStream never;
  EXPECT_EQ(never.GetEncodedText(), "");

  CTextStream utf8;
  EXPECT_EQ(utf8.GetEncoding(), XmlEncoding_UTF8);
  utf8.Append(text);
  EXPECT_EQ(utf8.GetEncodedText(), text);

  for (XmlEncoding encoding : {XmlEncoding_UTF16, XmlEncoding_UTF16NoDeclaration}) {
    CTextStream utf16(encoding);
    utf16.Append(text);
    // No byte-order mark in memory; the emoji becomes a surrogate pair.
    EXPECT_EQ(utf16.GetEncodedText(), std::string("a\0<\0\xE9\0\xAC\x20\x3D\xD8\x00\xDE", 12));
  }

  // A byte that is not UTF-8 is taken as the code point of the same value.
  CTextStream latin(XmlEncoding_UTF16);
  latin.Append("\xE9");
  EXPECT_EQ(latin.GetEncodedText(), std::string("\xE9\0", 2));

  CTextStream begun;
  begun.Append("old");
  begun.Begin();
  EXPECT_EQ(begun.GetEncodedText(), "");
}

// The stream converts its blocks one by one; characters, and malformed sequences, that straddle a
// block boundary must come out as they would from the merged text.
TEST(CTextStream, ConvertsAcrossBlockBoundaries) {
  const std::string unit =
      "ab\xE2\x82\xAC\xF0\x9F\x98\x80\xC3\xA9<\xE2\x82>\xFF\x80\x80\x80\x80\xC3";
  for (std::size_t shift = 0; shift < unit.size(); ++shift) {  // every cut within the unit
    std::string text(shift, 'x');
    while (text.size() < 3 * CStringBuffer::kDefaultBlockSize) text += unit;
    std::string utf8;
    std::string utf16;
    detail::RepairUtf8(text, utf8);
    detail::Utf8ToUtf16LE(text, utf16);

    CTextStream to8(XmlEncoding_UTF8);
    CTextStream to16(XmlEncoding_UTF16);
    for (std::size_t i = 0; i < text.size(); i += 7) {
      to8.Append(text.substr(i, 7));
      to16.Append(text.substr(i, 7));
    }
    ASSERT_EQ(to8.GetEncodedText(), utf8) << "shift " << shift;
    ASSERT_EQ(to16.GetEncodedText(), utf16) << "shift " << shift;
  }
}

// ToXmlStream's stream converts at every flush; a character, or a malformed sequence, cut by a
// flush must still come out as from converting the whole text at once.
TEST(CBinaryTextStream, ConvertsAcrossFlushes) {
  const std::string unit =
      "ab\xE2\x82\xAC\xF0\x9F\x98\x80\xC3\xA9<\xE2\x82>\xFF\x80\x80\x80\x80\xC3";
  std::string text;
  while (text.size() < 2 * CStringBuffer::kDefaultBlockSize) text += unit;
  std::string utf8;
  std::string utf16;
  detail::RepairUtf8(text, utf8);
  detail::Utf8ToUtf16LE(text, utf16);
  // Pieces of every length up to a unit and a half, so each flush cuts somewhere else; some
  // flushes cover several blocks, and the buffer's kept block is refilled after each.
  for (std::size_t piece = 1; piece < unit.size() * 3 / 2; ++piece) {
    for (XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
      CBinaryStream bytes;
      detail::CBinaryTextStream stream(encoding, bytes);
      stream.Begin();
      for (std::size_t i = 0; i < text.size(); i += piece) {
        stream.Append(text.substr(i, piece));
        if ((i / piece) % 3 != 1) stream.FlushBuffer();
      }
      stream.Finish();
      const std::string out(reinterpret_cast<const char*>(bytes.GetData().GetData()),
                            bytes.GetLength());
      ASSERT_EQ(out, encoding == XmlEncoding_UTF8 ? utf8 : utf16)
          << "piece " << piece << " encoding " << encoding;
    }
  }

  // An unknown encoding keeps the text until Finish, which fails as converting would.
  CBinaryStream bytes;
  detail::CBinaryTextStream unknown(static_cast<XmlEncoding>(0), bytes);
  unknown.Append(text);
  unknown.FlushBuffer();
  EXPECT_EQ(unknown.GetLength(), text.size());
  EXPECT_EQ(MessageOf([&] { unknown.Finish(); }),
            "Unknown Encoding, select UTF-8 (contact support@ovxmllib6.org for support)");
  EXPECT_EQ(bytes.GetLength(), 0u);
}

TEST(CTextStream, RejectsUnknownEncodingsWhenConverting) {
  for (int encoding : {0, 4, -1}) {
    CTextStream stream(static_cast<XmlEncoding>(encoding));
    stream.Append("x");
    EXPECT_EQ(MessageOf([&] { stream.GetEncodedText(); }),
              "Unknown Encoding, select UTF-8 (contact support@ovxmllib6.org for support)");
  }
}

TEST(CFileTextStream, WritesChunksWithByteOrderMarkForUtf16) {
  test::CFailingFileSystem fs;
  {
    CFileTextStream stream("a.xml", XmlEncoding_UTF8);
    stream.Begin();
    stream.Append("<r>\xC3\xA9</r>");
    stream.FlushBuffer();
    EXPECT_EQ(stream.GetLength(), 0u);
    stream.Append("\n");
    stream.Finish();
    stream.Finish();  // a second Finish does nothing
  }
  EXPECT_EQ(fs.Content("a.xml"), "<r>\xC3\xA9</r>\n");

  for (XmlEncoding encoding : {XmlEncoding_UTF16, XmlEncoding_UTF16NoDeclaration}) {
    CFileTextStream stream("b.xml", encoding);
    stream.Begin();
    stream.Append("<\xC3\xA9/>");
    stream.Finish();
    EXPECT_EQ(fs.Content("b.xml"), std::string("\xFF\xFE<\0\xE9\0/\0>\0", 10));
  }

  // Flushing without Begin creates the file then, keeping what was buffered.
  CFileTextStream lazy("c.xml", XmlEncoding_UTF16);
  lazy.Append("x");
  lazy.Finish();
  EXPECT_EQ(fs.Content("c.xml"), std::string("\xFF\xFEx\0", 4));
  EXPECT_THROW(lazy.FlushBuffer(), COvInvalidStateException);
}

TEST(CFileTextStream, ReportsFilesThatCannotBeWritten) {
  test::CFailingFileSystem fs;
  fs.createError = EACCES;
  CFileTextStream denied("/no/such.xml", XmlEncoding_UTF8);
  EXPECT_EQ(MessageOf([&] { denied.Begin(); }),
            "Failed to write data to the file [/no/such.xml] error [0x0000000D]");

  // The byte-order mark is the first write: its failure names the file too.
  fs.createError = 0;
  fs.writeError = ENOSPC;
  fs.writeLimit = 0;
  CFileTextStream noMark("m.xml", XmlEncoding_UTF16);
  EXPECT_EQ(MessageOf([&] { noMark.Begin(); }),
            "Failed to write data to the file [m.xml] error [0x0000001C]");

  // A later chunk fails with the flush message; the stream then stays failed rather than
  // creating the file anew over the part already written.
  fs.writeLimit = 6;
  CFileTextStream full("f.xml", XmlEncoding_UTF8);
  full.Begin();
  full.Append("<abc>");
  full.FlushBuffer();
  full.Append("more text");
  EXPECT_EQ(MessageOf([&] { full.FlushBuffer(); }),
            "Failed to write data to the file. Error [0x0000001C]");
  const int calls = fs.writeCalls;
  EXPECT_EQ(MessageOf([&] { full.Finish(); }),
            "Failed to write data to the file [f.xml] error [0x0000001C]");
  EXPECT_EQ(fs.writeCalls, calls);
  EXPECT_EQ(fs.Content("f.xml"), "<abc>");

  fs.writeError = 0;
  fs.closeError = EIO;
  CFileTextStream unclosable("g.xml", XmlEncoding_UTF8);
  unclosable.Begin();
  EXPECT_EQ(MessageOf([&] { unclosable.Finish(); }),
            "Failed to write data to the file. Error [0x00000005]");
}

TEST(CFileTextStream, UsesThePosixFileSystem) {
  const std::string path = testing::TempDir() + "ovxml_stream_test.xml";
  CFileTextStream stream(path.c_str(), XmlEncoding_UTF16);
  stream.Begin();
  stream.Append("ok");
  stream.Finish();
  std::unique_ptr<port::IReadFile> file;
  ASSERT_EQ(port::IFileSystem::Default().OpenRead(path.c_str(), file), 0);
  char bytes[16] = {};
  std::size_t got = 0;
  file->Read(bytes, sizeof bytes, got);
  EXPECT_EQ(std::string(bytes, got), std::string("\xFF\xFEo\0k\0", 6));
  std::remove(path.c_str());

  CFileTextStream missingDir("/nonexistent-dir/x.xml", XmlEncoding_UTF8);
  EXPECT_EQ(MessageOf([&] { missingDir.Begin(); }),
            "Failed to write data to the file [/nonexistent-dir/x.xml] error [0x00000002]");
}

TEST(CBinaryStream, CompressesToGzipAndZlib) {
  std::string text;
  for (int i = 0; i < 2000; ++i) text += "<item n=\"" + std::to_string(i) + "\">value</item>";
  for (CompressionType type : {CompressionType_GZip, CompressionType_ZLib}) {
    CBinaryStream stream;
    stream.Append(text);
    stream.Compress(type);
    const unsigned char* p = stream.GetData().GetData();
    ASSERT_LT(stream.GetLength(), text.size());
    EXPECT_EQ(type == CompressionType_GZip, p[0] == 0x1F && p[1] == 0x8B);
    EXPECT_EQ(Inflate(stream.GetData(), text.size() + 1), text);
  }

  CBinaryStream plain;
  plain.Append("abc");
  plain.Compress(CompressionType_None);
  plain.Compress(static_cast<CompressionType>(7));
  EXPECT_EQ(plain.GetLength(), 3u);
  // A few incompressible bytes do not fit an output array of their own size.
  EXPECT_EQ(MessageOf([&] { plain.Compress(CompressionType_GZip); }),
            "Failed to compress data. [Error Code: -5]");
  plain.Begin();
  EXPECT_EQ(plain.GetLength(), 0u);
}

TEST(CFileBinaryStream, WritesCollectedBytesWhenFinished) {
  test::CFailingFileSystem fs;
  CFileBinaryStream stream("out.fi");
  stream.Begin();
  stream.Append(reinterpret_cast<const unsigned char*>("\xE0\x00\x00\x01"), 4);
  stream.Append(static_cast<unsigned char>(0xF0));
  EXPECT_EQ(fs.Content("out.fi"), "<missing>");
  stream.Finish();
  EXPECT_EQ(fs.Content("out.fi"), std::string("\xE0\x00\x00\x01\xF0", 5));

  fs.writeError = EIO;
  EXPECT_EQ(MessageOf([&] { stream.Finish(); }),
            "Failed to write data to the file [out.fi] error [0x00000005]");
  fs.createError = EROFS;
  EXPECT_EQ(MessageOf([&] { stream.Finish(); }),
            "Failed to write data to the file [out.fi] error [0x0000001E]");
}
