// The byte streams for binary output (Fast Infoset, compressed XML). CBinaryStream collects the
// bytes in memory; CFileBinaryStream writes what it collected to a file when it is finished.
#ifndef OVXMLLIB6_XML_BINARYSTREAM_H
#define OVXMLLIB6_XML_BINARYSTREAM_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/types/BinaryData.h"
#include "OvXmlLib6/xml/TextStream.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CBinaryStream : private CInstanceMonitor {
 public:
  CBinaryStream();
  CBinaryStream(const CBinaryStream&) = delete;
  CBinaryStream& operator=(const CBinaryStream&) = delete;
  virtual ~CBinaryStream();

  // Starts the output: empties the collected bytes.
  virtual void Begin();
  // Ends the output: nothing to do for the memory stream.
  virtual void Finish();
  // Called by the Fast Infoset writer after each block of bytes it appends. The memory stream
  // keeps everything, so it does nothing; a derived stream may pass the collected bytes on (and
  // take them out of GetData) as they come.
  virtual void FlushBuffer();

  void Append(const unsigned char* bytes, std::uint32_t length) { m_data.Append(bytes, length); }
  void Append(unsigned char byte) { m_data.Append(byte); }
  void Append(const std::string& bytes);
  // Into an empty stream the value is shared, not copied: CBinaryData copies on the next change.
  void Append(const CBinaryData& bytes);

  // The collected bytes.
  const CBinaryData& GetData() const { return m_data; }
  std::uint32_t GetLength() const { return m_data.GetLength(); }

  // Replaces the collected bytes with their gzip (CompressionType_GZip) or zlib
  // (CompressionType_ZLib) form, compressed in one pass at level 1 into an array of the input's
  // size; any other type leaves them as they are. Output that does not shrink cannot be
  // compressed and fails with "Failed to compress data. [Error Code: %d]" (zlib's result code).
  void Compress(CompressionType type);

 protected:
  // For derived streams, which are counted under their own class name.
  explicit CBinaryStream(const char* className);

  CBinaryData m_data;
};

// Collects the bytes like CBinaryStream; Finish creates the file anew and writes them in one call.
class OVXML_API CFileBinaryStream : public CBinaryStream {
 public:
  explicit CFileBinaryStream(const char* fileName);
  ~CFileBinaryStream() override;

  void Finish() override;

  const std::string& GetFileName() const { return m_fileName; }

 private:
  std::string m_fileName;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_BINARYSTREAM_H
