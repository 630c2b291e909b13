#include "OvXmlLib6/xml/BinaryStream.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "port/File.h"
#include "xml/Compression.h"

#include <limits>
#include <memory>

namespace OvXmlLib6 {

// ---------------------------------------------------------------------------------------------
// CBinaryStream

CBinaryStream::CBinaryStream() : CBinaryStream("CBinaryStream") {}

CBinaryStream::CBinaryStream(const char* className) : CInstanceMonitor(className) {}

CBinaryStream::~CBinaryStream() = default;

void CBinaryStream::Begin() { m_data.Clear(); }

void CBinaryStream::Finish() {}

void CBinaryStream::FlushBuffer() {}

void CBinaryStream::Append(const std::string& bytes) {
  if (bytes.size() > std::numeric_limits<std::uint32_t>::max()) {
    throw COvInvalidParamException(FormatString(
        "Binary output of %zu bytes exceeds the maximum length of %u bytes", bytes.size(),
        static_cast<unsigned>(std::numeric_limits<std::uint32_t>::max())));
  }
  m_data.Append(reinterpret_cast<const unsigned char*>(bytes.data()),
                static_cast<std::uint32_t>(bytes.size()));
}

void CBinaryStream::Append(const CBinaryData& bytes) {
  if (m_data.GetLength() == 0) {
    m_data = bytes;
  } else {
    m_data.Append(bytes);
  }
}

void CBinaryStream::Compress(CompressionType type) {
  if (type != CompressionType_GZip && type != CompressionType_ZLib) return;
  m_data = detail::Deflate(m_data.GetData(), m_data.GetLength(), type);
}

// ---------------------------------------------------------------------------------------------
// CFileBinaryStream

CFileBinaryStream::CFileBinaryStream(const char* fileName)
    : CBinaryStream("CFileBinaryStream"), m_fileName(fileName != nullptr ? fileName : "") {}

CFileBinaryStream::~CFileBinaryStream() = default;

void CFileBinaryStream::Finish() {
  std::unique_ptr<port::IWriteFile> file;
  int error = port::IFileSystem::Current().Create(m_fileName.c_str(), file);
  if (error == 0 && m_data.GetLength() != 0)
    error = file->Write(m_data.GetData(), m_data.GetLength());
  if (error == 0) error = file->Close();
  if (error != 0) {
    file.reset();
    throw COvException(FormatString("Failed to write data to the file [%s] error [0x%08X]",
                                    m_fileName.c_str(), static_cast<unsigned>(error)));
  }
}

}  // namespace OvXmlLib6
