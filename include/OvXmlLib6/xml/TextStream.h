// The text streams the XML text writer appends to. CTextStream collects the text in memory and
// converts it to the output encoding when it is taken out; CFileTextStream sends the text to a file
// in converted chunks whenever the writer flushes it.
#ifndef OVXMLLIB6_XML_TEXTSTREAM_H
#define OVXMLLIB6_XML_TEXTSTREAM_H

#include "OvXmlLib6/core/Enums.h"
#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/xml/StringBuffer.h"

#include <cstddef>
#include <memory>
#include <string>
#include <string_view>

namespace OvXmlLib6 {

namespace detail {
class CBufferAppend;
class CTextEncoder;
}  // namespace detail
namespace port {
class IWriteFile;
}

// A memory stream: everything appended stays buffered until it is taken out.
class OVXML_API CTextStream : private CInstanceMonitor {
 public:
  // The writers flush the stream whenever this many bytes or more are buffered.
  static constexpr std::size_t kFlushThreshold = 4096;

  // Any encoding is accepted here; one other than UTF-8 or UTF-16 fails when text is converted.
  explicit CTextStream(XmlEncoding encoding = XmlEncoding_UTF8);
  CTextStream(const CTextStream&) = delete;
  CTextStream& operator=(const CTextStream&) = delete;
  virtual ~CTextStream();

  // Starts the output: the memory stream empties its buffer.
  virtual void Begin();
  // Ends the output: nothing to do for the memory stream.
  virtual void Finish();
  // Called by the writers whenever kFlushThreshold bytes or more are buffered: nothing to do for
  // the memory stream, which keeps everything until it is taken out.
  virtual void FlushBuffer();

  void Append(const char* text) { m_buffer.Append(text); }
  void Append(const std::string& text) { m_buffer.Append(text); }
  void Append(char c) { m_buffer.Append(c); }
  void Append(const char* text, std::size_t length) { m_buffer.Append(text, length); }

  // The number of bytes buffered (in the internal code page).
  std::size_t GetLength() const { return m_buffer.GetLength(); }
  XmlEncoding GetEncoding() const { return m_encoding; }

  // The buffered text as it is, in the internal code page, valid until the next change.
  const char* GetText() { return m_buffer.GetText(); }
  // The buffered text in its blocks, for readers that take it in pieces without merging it.
  const CStringBuffer& GetBuffer() const { return m_buffer; }
  // The buffered text converted to the encoding: UTF-8 bytes, or UTF-16LE bytes without a
  // byte-order mark. Throws COvException for an unknown encoding.
  std::string GetEncodedText();

 protected:
  // For derived streams, which are counted under their own class name.
  CTextStream(XmlEncoding encoding, const char* className);

  // Appends `length` bytes of internal text to `out`, converted to the stream's encoding.
  void Encode(const char* text, std::size_t length, std::string& out);
  // Appends the whole buffered text to `out`, converted, without merging the blocks first.
  void EncodeBuffered(std::string& out);
  // Appends the buffered text to `out`, converted, and empties the buffer, for streams that
  // convert their text piece by piece as it is flushed. The bytes at the end that may begin a
  // character going on in the next piece are held back until the next call; with `final` they
  // are converted too. The pieces together convert as the whole text would in one.
  void ConvertAndClear(std::string& out, bool final);
  // True for the encodings Encode accepts.
  bool IsKnownEncoding() const;

  CStringBuffer m_buffer;
  XmlEncoding m_encoding;

 private:
  // The library's writers append to m_buffer through it, inline.
  friend class detail::CBufferAppend;

  // Converts one block of buffered text after m_carry, holding its last bytes back in m_carry.
  void EncodeBlock(std::string_view block, std::string& out);

  std::unique_ptr<detail::CTextEncoder> m_encoder;  // made on first use
  std::string m_carry;  // the part of a character that spans two blocks, while encoding
};

// A stream into a file. Begin creates the file (writing the byte-order mark FF FE first for the
// UTF-16 encodings); each FlushBuffer converts the buffered text and writes it while the writer
// goes on; Finish writes the rest and closes the file. A stream that is flushed or finished
// without Begin creates its file then. Files are reached through the library's file system.
class OVXML_API CFileTextStream : public CTextStream {
 public:
  CFileTextStream(const char* fileName, XmlEncoding encoding);
  ~CFileTextStream() override;

  void Begin() override;
  void Finish() override;
  void FlushBuffer() override;

  const std::string& GetFileName() const { return m_fileName; }

 private:
  enum State { kNotStarted, kOpen, kFinished, kFailed };

  void OpenFile();
  void EnsureOpen();
  void WriteBuffered();
  [[noreturn]] void FailWrite(int error);

  std::string m_fileName;
  std::unique_ptr<port::IWriteFile> m_file;
  std::string m_converted;  // the converted bytes of the last write, kept to reuse its storage
  State m_state;
  int m_error;  // the system error of the failure that stopped the stream
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_TEXTSTREAM_H
