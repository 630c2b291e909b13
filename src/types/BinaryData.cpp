#include "OvXmlLib6/types/BinaryData.h"

#include "OvXmlLib6/core/CriticalSection.h"
#include "OvXmlLib6/core/Exceptions.h"
#include "types/Base16And64.h"

#include <algorithm>
#include <cstring>
#include <limits>

namespace OvXmlLib6 {

namespace {

constexpr std::uint32_t kMinCopyCapacity = 8192;
constexpr std::uint64_t kMaxLength = std::numeric_limits<std::uint32_t>::max();

// Converts a host size to the 32-bit length of a binary value, refusing what does not fit.
std::uint32_t CheckedLength(std::size_t length) {
  if (length > kMaxLength) {
    throw COvInvalidParamException(
        FormatString("Binary data of %zu bytes exceeds the maximum length of %u bytes", length,
                     static_cast<unsigned>(kMaxLength)));
  }
  return static_cast<std::uint32_t>(length);
}

// Twice the needed size, clamped to the 32-bit range.
std::uint32_t GrownCapacity(std::uint64_t needed) {
  return static_cast<std::uint32_t>(std::min<std::uint64_t>(2 * needed, kMaxLength));
}

}  // namespace

// One record per distinct value, shared by every CBinaryData that holds that value.
struct CBinaryData::SharedBuffer {
  unsigned char* bytes;
  std::uint32_t length;
  std::uint32_t capacity;
  std::int32_t refCount;
  COVCriticalSection lock;

  SharedBuffer(unsigned char* adopted, std::uint32_t len, std::uint32_t cap)
      : bytes(adopted), length(len), capacity(cap), refCount(1) {}

  // A copy of `len` bytes with room to grow: twice the length, at least 8 KiB.
  static SharedBuffer* Copy(const unsigned char* data, std::uint32_t len) {
    const std::uint32_t cap = std::max(kMinCopyCapacity, GrownCapacity(len));
    unsigned char* array = new unsigned char[cap];
    if (len != 0) std::memcpy(array, data, len);
    return new SharedBuffer(array, len, cap);
  }
};

CBinaryData::CBinaryData() : m_buffer(nullptr) {}

CBinaryData::CBinaryData(const CBinaryData& other) : m_buffer(other.m_buffer) {
  if (m_buffer != nullptr) {
    CCriticalSectionLock guard(m_buffer->lock);
    ++m_buffer->refCount;
  }
}

CBinaryData::CBinaryData(const char* text) : m_buffer(nullptr) { SetBuffer(text); }

CBinaryData::CBinaryData(unsigned char* bytes, std::uint32_t length, bool adopt)
    : m_buffer(nullptr) {
  if (!adopt) {
    SetBuffer(bytes, length);
    return;
  }
  // The caller's array has no room past the data, where operator[] may legally look; move it
  // into an array one byte larger so that access stays in bounds.
  unsigned char* array = new unsigned char[static_cast<std::size_t>(length) + 1];
  if (length != 0) std::memcpy(array, bytes, length);
  array[length] = 0;
  delete[] bytes;
  Adopt(array, length, length == kMaxLength ? length : length + 1);
}

CBinaryData::~CBinaryData() { Release(); }

CBinaryData& CBinaryData::operator=(const CBinaryData& other) {
  if (m_buffer == other.m_buffer) return *this;
  Release();
  if (other.m_buffer != nullptr) {
    CCriticalSectionLock guard(other.m_buffer->lock);
    ++other.m_buffer->refCount;
    m_buffer = other.m_buffer;
  }
  return *this;
}

void CBinaryData::Release() {
  SharedBuffer* buffer = m_buffer;
  if (buffer == nullptr) return;
  m_buffer = nullptr;
  bool last;
  {
    CCriticalSectionLock guard(buffer->lock);
    last = --buffer->refCount <= 0;
  }
  if (last) {
    delete[] buffer->bytes;
    delete buffer;
  }
}

void CBinaryData::MakeUnshared() {
  SharedBuffer* buffer = m_buffer;
  if (buffer == nullptr) return;
  CCriticalSectionLock guard(buffer->lock);
  if (buffer->refCount >= 2) {
    // Others keep the old record; this value moves to a private copy.
    m_buffer = SharedBuffer::Copy(buffer->bytes, buffer->length);
    --buffer->refCount;
  }
}

void CBinaryData::Adopt(unsigned char* bytes, std::uint32_t length, std::uint32_t capacity) {
  Release();
  m_buffer = new SharedBuffer(bytes, length, capacity);
}

void CBinaryData::Clear() { Release(); }

void CBinaryData::SetBuffer(const unsigned char* bytes, std::uint32_t length) {
  SharedBuffer* fresh = SharedBuffer::Copy(bytes, bytes == nullptr ? 0 : length);
  Release();
  m_buffer = fresh;
}

void CBinaryData::SetBuffer(const char* text) {
  const std::size_t length = text == nullptr ? 0 : std::strlen(text);
  SetBuffer(reinterpret_cast<const unsigned char*>(text), CheckedLength(length));
}

const unsigned char* CBinaryData::GetData() const {
  return m_buffer == nullptr ? nullptr : m_buffer->bytes;
}

std::uint32_t CBinaryData::GetLength() const { return m_buffer == nullptr ? 0 : m_buffer->length; }

unsigned char* CBinaryData::ReleaseData() {
  if (m_buffer == nullptr) return nullptr;
  MakeUnshared();
  SharedBuffer* buffer = m_buffer;
  unsigned char* bytes = buffer->bytes;
  {
    CCriticalSectionLock guard(buffer->lock);
    const std::int32_t count = --buffer->refCount;
    if (count >= 1) {
      // Another thread took a reference since the buffer was made unshared.
      throw COvException(FormatString("Failed to release data. [RefCount=%d]", count));
    }
  }
  m_buffer = nullptr;
  delete buffer;
  return bytes;
}

void CBinaryData::Append(const unsigned char* bytes, std::uint32_t length) {
  if (m_buffer == nullptr) {
    SetBuffer(bytes, length);
    return;
  }
  if (length == 0) return;
  MakeUnshared();
  SharedBuffer* buffer = m_buffer;
  if (bytes >= buffer->bytes && bytes < buffer->bytes + buffer->capacity) {
    // The source lies in this value's own array, which growing may free: copy it out first.
    const std::string copy(reinterpret_cast<const char*>(bytes), length);
    Append(copy);
    return;
  }
  CCriticalSectionLock guard(buffer->lock);
  if (buffer->refCount > 1) {
    throw COvException(FormatString("Failed to append. [RefCount=%d]", buffer->refCount));
  }
  const std::uint64_t needed = std::uint64_t{buffer->length} + length;
  if (needed > kMaxLength) CheckedLength(static_cast<std::size_t>(needed));
  if (needed > buffer->capacity) {
    const std::uint32_t capacity = GrownCapacity(needed);
    unsigned char* array = new unsigned char[capacity];
    std::memcpy(array, buffer->bytes, buffer->length);
    delete[] buffer->bytes;
    buffer->bytes = array;
    buffer->capacity = capacity;
  }
  std::memcpy(buffer->bytes + buffer->length, bytes, length);
  buffer->length = static_cast<std::uint32_t>(needed);
}

void CBinaryData::Append(char c) { Append(reinterpret_cast<const unsigned char*>(&c), 1); }

void CBinaryData::Append(unsigned char c) { Append(&c, 1); }

void CBinaryData::Append(const char* text) {
  if (text == nullptr) return;
  Append(reinterpret_cast<const unsigned char*>(text), CheckedLength(std::strlen(text)));
}

void CBinaryData::Append(const std::string& text) {
  Append(reinterpret_cast<const unsigned char*>(text.data()), CheckedLength(text.size()));
}

void CBinaryData::Append(const CBinaryData& other) {
  if (other.m_buffer == nullptr) return;
  Append(other.m_buffer->bytes, other.m_buffer->length);
}

unsigned char& CBinaryData::operator[](std::uint32_t index) {
  // The index equal to the length is allowed (the byte just past the data), but never beyond
  // the array itself.
  if (m_buffer == nullptr || index > m_buffer->length || index >= m_buffer->capacity) {
    throw COvException(FormatString("Index Out of range [%d]", static_cast<int>(index)));
  }
  MakeUnshared();
  return m_buffer->bytes[index];
}

const unsigned char& CBinaryData::operator[](std::uint32_t index) const {
  if (m_buffer == nullptr || index > m_buffer->length || index >= m_buffer->capacity) {
    throw COvException(FormatString("Index Out of range [%d]", static_cast<int>(index)));
  }
  return m_buffer->bytes[index];
}

bool CBinaryData::operator==(const CBinaryData& other) const {
  if (m_buffer == nullptr || other.m_buffer == nullptr) return m_buffer == other.m_buffer;
  if (m_buffer == other.m_buffer) return true;
  return m_buffer->length == other.m_buffer->length &&
         std::memcmp(m_buffer->bytes, other.m_buffer->bytes, m_buffer->length) == 0;
}

std::uint32_t CBinaryData::ConvertToHexData(const char* text, unsigned char** out) {
  const std::size_t length = text == nullptr ? 0 : std::strlen(text);
  CheckedLength(length);
  unsigned char* array = new unsigned char[length / 2 + 1];
  // An odd length is decoded through the terminating zero, which then fails as the last
  // pair's second character.
  const std::size_t span = length + (length & 1);
  const std::size_t bad = detail::HexDecode(text, span, array);
  if (bad != span) {
    delete[] array;
    throw COvException(FormatString("Invalid char in hex string [%c]", text[bad]));
  }
  *out = array;
  return static_cast<std::uint32_t>(length / 2);
}

void CBinaryData::SetAsHexString(const char* text) {
  Release();
  unsigned char* array = nullptr;
  const std::uint32_t length = ConvertToHexData(text, &array);
  // ConvertToHexData allocates one byte more than it decodes.
  Adopt(array, length, length + 1);
}

std::string CBinaryData::GetAsHexString() const {
  return m_buffer == nullptr ? std::string() : GetAsHexString(m_buffer->bytes, m_buffer->length);
}

std::string CBinaryData::GetAsHexString(const unsigned char* bytes, std::uint32_t length) {
  if (bytes == nullptr) return std::string();
  std::string text(std::size_t{length} * 2, '\0');
  detail::HexEncode(bytes, length, &text[0]);
  return text;
}

void CBinaryData::SetAsBase64(const char* text) {
  Release();
  const std::size_t length = text == nullptr ? 0 : std::strlen(text);
  CheckedLength(length);
  unsigned char* array = new unsigned char[length + 1];
  const std::size_t decoded = detail::Base64Decode(text, length, array);
  // Decoding never fills the array, which is one byte longer than the text.
  Adopt(array, static_cast<std::uint32_t>(decoded), static_cast<std::uint32_t>(decoded) + 1);
}

std::string CBinaryData::GetAsBase64() const {
  if (m_buffer == nullptr) return std::string();
  std::string text(detail::Base64EncodedLength(m_buffer->length), '\0');
  detail::Base64Encode(m_buffer->bytes, m_buffer->length, text.data());
  return text;
}

}  // namespace OvXmlLib6
