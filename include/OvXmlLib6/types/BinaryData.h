// CBinaryData: the value of hexBinary and base64Binary. Copies share one buffer under a reference
// count; the bytes are copied on the first change of a shared value (copy on write). Every change
// of a shared buffer happens under that buffer's own lock, so two threads may each change their
// own copy of one value; two threads changing the same CBinaryData object are not supported.
#ifndef OVXMLLIB6_TYPES_BINARYDATA_H
#define OVXMLLIB6_TYPES_BINARYDATA_H

#include "OvXmlLib6/core/Export.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {

class OVXML_API CBinaryData {
 public:
  // An empty value: no buffer at all.
  CBinaryData();
  // Shares other's buffer.
  CBinaryData(const CBinaryData& other);
  // Copies the string's bytes, without the terminating zero.
  explicit CBinaryData(const char* text);
  // With adopt == false the bytes are copied. With adopt == true the value takes ownership of
  // `bytes`, which must come from new[]; because operator[] allows the index equal to the length,
  // an adopted array is moved into one that has a spare byte after the data.
  CBinaryData(unsigned char* bytes, std::uint32_t length, bool adopt);
  virtual ~CBinaryData();

  CBinaryData& operator=(const CBinaryData& other);

  // Releases the buffer; the value becomes empty.
  void Clear();
  // Replaces the value with a copy of the bytes.
  void SetBuffer(const unsigned char* bytes, std::uint32_t length);
  void SetBuffer(const char* text);

  // The bytes (null for an empty value); valid until the next change of the value.
  const unsigned char* GetData() const;
  std::uint32_t GetLength() const;

  // Hands the byte array (allocated with new[]) to the caller; the value becomes empty.
  // Returns null for an empty value.
  unsigned char* ReleaseData();

  void Append(const unsigned char* bytes, std::uint32_t length);
  void Append(char c);
  void Append(unsigned char c);
  void Append(const char* text);
  void Append(const std::string& text);
  void Append(const CBinaryData& other);

  // The byte at `index`; the index equal to the length is allowed and yields the byte just past
  // the data. Throws COvException "Index Out of range [%d]" above that or on an empty value.
  unsigned char& operator[](std::uint32_t index);
  const unsigned char& operator[](std::uint32_t index) const;

  bool operator==(const CBinaryData& other) const;
  bool operator!=(const CBinaryData& other) const { return !(*this == other); }

  // Hexadecimal form: upper-case on output; either case on input, no whitespace, even length.
  void SetAsHexString(const char* text);
  std::string GetAsHexString() const;
  static std::string GetAsHexString(const unsigned char* bytes, std::uint32_t length);

  // Base64 form without line breaks. Invalid base64 input yields an empty buffer, no exception;
  // whitespace and padding characters are skipped wherever they stand.
  void SetAsBase64(const char* text);
  std::string GetAsBase64() const;

 protected:
  // Decodes hexadecimal text into a new[] array stored in *out; returns the byte count.
  static std::uint32_t ConvertToHexData(const char* text, unsigned char** out);

 private:
  struct SharedBuffer;

  void Release();
  void MakeUnshared();
  void Adopt(unsigned char* bytes, std::uint32_t length, std::uint32_t capacity);

  SharedBuffer* m_buffer;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TYPES_BINARYDATA_H
