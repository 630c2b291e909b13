#include "OvXmlLib6/fastinfoset/FastInfosetWriter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"
#include "core/Strings.h"
#include "fastinfoset/Declarations.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "xml/CharEncoding.h"
#include "xml/ExpatReader.h"
#include "xml/Unicode.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

namespace {

constexpr std::uint32_t kMaxTableEntries = 1u << 20;
constexpr std::uint32_t kBuiltInAlgorithms = 10;
constexpr std::size_t kNone = static_cast<std::size_t>(-1);

constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";

[[noreturn]] void Fail(const std::string& what) {
  throw COvException("Failed to write FastInfoset. " + what);
}

std::uint64_t Load64(const char* p) {
  std::uint64_t word;
  std::memcpy(&word, p, sizeof word);
  return word;
}

// A fast hash of a short string, mixed with two numbers (the prefix and namespace of a name).
std::uint64_t Hash(std::string_view key, std::uint32_t a, std::uint32_t b) {
  constexpr std::uint64_t kMul = 0x9E3779B97F4A7C15ull;
  std::uint64_t h = (std::uint64_t{a} << 32 | b) ^ (key.size() * kMul);
  const char* p = key.data();
  std::size_t n = key.size();
  while (n >= 8) {
    h = (h ^ Load64(p)) * kMul;
    h ^= h >> 29;
    p += 8;
    n -= 8;
  }
  if (n != 0) {
    std::uint64_t last = 0;
    std::memcpy(&last, p, n);
    h = (h ^ last) * kMul;
  }
  h ^= h >> 32;
  return h * kMul;
}

// True when the text is all ASCII, tested eight bytes at a time.
// True when every byte is ASCII from the space up, and so is written as it is.
bool IsPrintableAscii(std::string_view text) {
  constexpr std::uint64_t kHigh = 0x8080808080808080ull;
  constexpr std::uint64_t kSpaces = 0x2020202020202020ull;
  const char* p = text.data();
  std::size_t n = text.size();
  while (n >= 8) {
    const std::uint64_t word = Load64(p);
    // A high bit, or a byte below the space (the subtraction borrows into its high bit).
    if (((word | ((word - kSpaces) & ~word)) & kHigh) != 0) return false;
    p += 8;
    n -= 8;
  }
  while (n-- > 0) {
    const unsigned char c = static_cast<unsigned char>(*p++);
    if (c < 0x20 || c >= 0x80) return false;
  }
  return true;
}

bool IsAscii(std::string_view text) {
  const char* p = text.data();
  std::size_t n = text.size();
  while (n >= 8) {
    if ((Load64(p) & 0x8080808080808080ull) != 0) return false;
    p += 8;
    n -= 8;
  }
  while (n-- > 0) {
    if ((static_cast<unsigned char>(*p++) & 0x80) != 0) return false;
  }
  return true;
}

// The text up to its first NUL byte: texts and values end there, as C strings would.
std::string_view UpToNul(std::string_view text) {
  const void* nul = std::memchr(text.data(), '\0', text.size());
  return nul == nullptr ? text : text.substr(0, static_cast<const char*>(nul) - text.data());
}

std::string_view View(const char* text) {
  return text != nullptr ? std::string_view(text) : std::string_view();
}

}  // namespace

// One vocabulary table as the writer sees it: how many entries it has (the reader's index of the
// next one) and a map from each entry's key to its index. Keys are UTF-8 strings, with two
// numbers for qualified names (prefix and namespace indexes). The map is open-addressed over
// 8-octet slots (part of the hash and the entry's position), which keeps large tables compact in
// the cache; the entries and their key bytes live in storage that never moves, so finding an
// entry allocates nothing.
class CWriterTable {
 public:
  CWriterTable() { m_slots.resize(64); }

  std::uint32_t Size() const { return m_size; }
  bool IsFull() const { return m_size >= kMaxTableEntries; }

  bool Find(std::string_view key, std::uint32_t a, std::uint32_t b, std::uint32_t& index) const {
    if (key.size() > m_longest) return false;
    const std::uint64_t hash = Hash(key, a, b);
    const std::uint32_t at = Locate(hash, key, a, b);
    if (m_slots[at] == 0) return false;
    index = m_entries[(m_slots[at] & 0xFFFFFFFFu) - 1].index;
    return true;
  }

  // Appends an entry when the table is not full and returns its index, or 0. A key that is
  // present already keeps its first index in the map.
  std::uint32_t Add(std::string_view key, std::uint32_t a = 0, std::uint32_t b = 0) {
    if (IsFull()) return 0;
    const std::uint32_t index = ++m_size;
    if ((m_entries.size() + 1) * 2 > m_slots.size()) Grow();
    const std::uint64_t hash = Hash(key, a, b);
    const std::uint32_t at = Locate(hash, key, a, b);
    if (m_slots[at] != 0) return index;
    m_entries.push_back(Entry{Store(key), static_cast<std::uint32_t>(key.size()), index, a, b});
    m_slots[at] = (hash & 0xFFFFFFFF00000000ull) | m_entries.size();
    if (key.size() > m_longest) m_longest = key.size();
    return index;
  }

 private:
  struct Entry {
    const char* key;
    std::uint32_t length;
    std::uint32_t index;
    std::uint32_t a;
    std::uint32_t b;
  };

  // The slot that holds the key, or the empty slot where it would go.
  std::uint32_t Locate(std::uint64_t hash, std::string_view key, std::uint32_t a,
                       std::uint32_t b) const {
    const std::uint64_t tag = hash & 0xFFFFFFFF00000000ull;
    for (std::size_t i = hash & m_mask;; i = (i + 1) & m_mask) {
      const std::uint64_t slot = m_slots[i];
      if (slot == 0) return static_cast<std::uint32_t>(i);
      if ((slot & 0xFFFFFFFF00000000ull) != tag) continue;
      const Entry& entry = m_entries[(slot & 0xFFFFFFFFu) - 1];
      if (entry.a == a && entry.b == b && entry.length == key.size() &&
          std::memcmp(entry.key, key.data(), key.size()) == 0) {
        return static_cast<std::uint32_t>(i);
      }
    }
  }

  const char* Store(std::string_view key) {
    if (key.size() > m_blockRoom) {
      const std::size_t size = key.size() > 16384 ? key.size() : 16384;
      m_blocks.emplace_back(new char[size]);
      m_blockPos = m_blocks.back().get();
      m_blockRoom = size;
    }
    char* at = m_blockPos;
    if (!key.empty()) std::memcpy(at, key.data(), key.size());
    m_blockPos += key.size();
    m_blockRoom -= key.size();
    return at;
  }

  void Grow() {
    m_slots.assign(m_slots.size() * 2, 0);
    m_mask = m_slots.size() - 1;
    for (std::size_t n = 0; n < m_entries.size(); ++n) {
      const Entry& entry = m_entries[n];
      const std::uint64_t hash = Hash(std::string_view(entry.key, entry.length), entry.a, entry.b);
      std::size_t i = hash & m_mask;
      while (m_slots[i] != 0) i = (i + 1) & m_mask;
      m_slots[i] = (hash & 0xFFFFFFFF00000000ull) | (n + 1);
    }
  }

  std::vector<std::uint64_t> m_slots;  // 0: empty
  std::size_t m_mask = 63;
  std::vector<Entry> m_entries;
  std::uint32_t m_size = 0;
  std::size_t m_longest = 0;
  std::vector<std::unique_ptr<char[]>> m_blocks;
  char* m_blockPos = nullptr;
  std::size_t m_blockRoom = 0;
};

// The state and the encoding work of one CFastInfosetWriter.
class CFastInfosetEncoder {
 public:
  CFastInfosetEncoder(CFastInfosetWriter& writer, CBinaryStream& stream,
                      const CXmlSerializationContext& context, FInfoDecl declaration);

  void Open();
  void Close();
  // `declarations` are bound in the element's scope and written on it.
  void StartElement(std::string_view localName, std::string_view ns,
                    const CXmlWriter::NamespaceDeclaration* declarations = nullptr,
                    std::size_t count = 0);
  void EndElement();
  void Attribute(std::string_view localName, std::string_view ns, std::string_view value,
                 int itemType);
  void XsiType(std::string_view typeName, std::string_view typeNamespace);
  void Text(std::string_view text, int itemType);
  void Comment(std::string_view text);
  void ProcessingInstruction(std::string_view target, std::string_view data);

 private:
  enum Table {
    Prefix,
    NamespaceName,
    LocalName,
    OtherNCName,
    AttributeValue,
    Chunk,
    OtherString,
    ElementName,
    AttributeName,
    TableCount
  };

  // ---- Output buffer
  void Reserve(std::size_t more) {
    if (more > m_capacity - m_pos) Grow(more);
  }
  void Grow(std::size_t more);
  void Put(std::uint8_t octet) {
    Reserve(1);
    m_buffer[m_pos++] = octet;
  }
  void PutBytes(const void* bytes, std::size_t length) {
    Reserve(length);
    if (length != 0) std::memcpy(m_buffer.get() + m_pos, bytes, length);
    m_pos += length;
  }
  // Hands a full buffer to the stream; only between items, when no start tag waits for changes.
  void HandOverIfFull() {
    if (m_pos >= CFastInfosetWriter::kBlockSize) HandOver();
  }
  void HandOver();

  // ---- Integers and lengths (each named by the bit it starts on)
  void PutLengthOnBit2(std::size_t length);
  void PutLengthOnBit5(std::uint8_t high, std::size_t length);
  void PutLengthOnBit7(std::uint8_t high, std::size_t length);
  void PutIntegerOnBit2(std::uint8_t high, std::uint32_t value);
  void PutIntegerOnBit3(std::uint8_t high, std::uint32_t value) {
    PutIntegerOnBit3Or4(0, high, value);
  }
  void PutIntegerOnBit4(std::uint8_t high, std::uint32_t value) {
    PutIntegerOnBit3Or4(1, high, value);
  }
  void PutIntegerOnBit3Or4(int shift, std::uint8_t high, std::uint32_t value);
  void PutCount(std::size_t count);

  // ---- Strings
  // The UTF-8 form of internal text; `scratch` holds it when it must be converted.
  std::string_view Utf8(std::string_view text, std::string& scratch) {
    return m_utf8Internal && IsPrintableAscii(text) ? text : Utf8Slow(text, scratch);
  }
  std::string_view Utf8Slow(std::string_view text, std::string& scratch);
  // An identifying string or index (names, namespaces, prefixes, PI targets); returns the index
  // the string has afterwards, or 0 when the full table could not take it.
  std::uint32_t PutIdentifying(Table table, std::string_view utf8);
  // A non-identifying string or index starting on bit 1 (attribute values, comments, PI data).
  void PutValue(Table table, std::string_view text, int itemType, std::uint32_t maxAdd);
  // A character chunk (on bit 3).
  void PutChunk(std::string_view text, int itemType);
  // The restricted-alphabet or algorithm octets of a typed value into m_payload: the kind (2 for
  // an alphabet, 3 for an algorithm) and wire id, or false when the value is written as text.
  bool EncodeTyped(int itemType, std::string_view text, int& kind, std::uint32_t& id);
  bool PackAlphabet(std::uint32_t alphabet, std::string_view text);
  // The common values of the boolean and integer algorithms, encoded without a round trip
  // through text; false for anything else, which takes the general path.
  bool EncodeCommonForm(std::uint32_t algorithm, std::string_view text);

  // ---- Elements
  void BeforeItem();
  void CloseStartTag();
  void EnsureHeader();
  void WriteHeader();
  void WriteInitialVocabulary(const CFIVocabulary& vocabulary, bool external);
  void SeedTables(const CFIVocabulary& vocabulary);
  // The index of a name part in its table, or 0 when it has none yet.
  std::uint32_t FindIndex(Table table, std::string_view utf8) const {
    std::uint32_t index = 0;
    return m_tables[table].Find(utf8, 0, 0, index) ? index : 0;
  }
  // The index of the namespace or prefix named last, which most names repeat: found again
  // without hashing. Indexes never change, so what is kept stays right for the whole document.
  struct LastPart {
    Table table;
    std::string text;
    std::uint32_t index = 0;
    // True when `utf8` is the part kept (and it has an index).
    bool Is(std::string_view utf8) const {
      return index != 0 && utf8.size() == text.size() &&
             std::memcmp(utf8.data(), text.data(), utf8.size()) == 0;
    }
    std::uint32_t IndexOf(const CFastInfosetEncoder& encoder, std::string_view utf8) {
      if (Is(utf8)) return index;
      const std::uint32_t found = encoder.FindIndex(table, utf8);
      if (found != 0) {
        text.assign(utf8.data(), utf8.size());
        index = found;
      }
      return found;
    }
  };
  // One namespace declaration: xmlns (empty prefix) or xmlns:prefix.
  void PutDeclaration(std::string_view prefix, std::string_view ns);
  // Declares a namespace on the open start tag after its name was written.
  void InsertDeclaration(std::string_view prefix, std::string_view ns);
  // A qualified name, by index or literal; `element` chooses the table and the form.
  void PutName(bool element, std::string_view prefix, std::string_view ns,
               std::string_view localName);
  // The prefix the writer gives `ns` on the open start tag, declaring a new one there.
  std::string_view AttributePrefix(std::string_view ns);
  void CheckStartTagOpen(const char* what) const;

  // The code of each character of a restricted alphabet (its position, or -1) and the bits per
  // code; alphabets of characters beyond ASCII have 0 bits and are not used.
  struct AlphabetCodes {
    signed char code[128];
    int bits = 0;
  };

  CFastInfosetWriter& m_writer;
  CBinaryStream& m_stream;
  const CFastInfosetContext& m_fi;
  FInfoDecl m_declaration;
  CFastInfosetContext::EncodedCharacterString m_encodings[CFastInfosetContext::EncodingTableSize];
  std::uint32_t m_attributeMaxAdd;
  std::uint32_t m_chunkMaxAdd;
  std::vector<AlphabetCodes> m_alphabets;
  CTextEncoder m_encoder;
  bool m_utf8Internal;

  std::unique_ptr<unsigned char[]> m_buffer;
  std::size_t m_pos = 0;
  std::size_t m_capacity = 0;

  CWriterTable m_tables[TableCount];
  bool m_headerWritten = false;
  bool m_rootWritten = false;
  bool m_rootEnded = false;
  bool m_pendingTerminator = false;
  // The open start tag: where its first octet lies, where declarations may be inserted (kNone
  // while it has no declaration block) and whether it has attributes.
  bool m_tagOpen = false;
  std::size_t m_tagStart = 0;
  std::size_t m_declarationsEnd = kNone;
  bool m_tagHasAttributes = false;

  LastPart m_lastNamespace{NamespaceName, {}, 0};
  LastPart m_lastPrefix{Prefix, {}, 0};
  std::string m_nameScratch;
  std::string m_nsScratch;
  std::string m_valueScratch;
  std::string m_payload;
  std::string m_check;
  std::string m_insert;
  std::string m_xsiValue;
};

CFastInfosetEncoder::CFastInfosetEncoder(CFastInfosetWriter& writer, CBinaryStream& stream,
                                         const CXmlSerializationContext& context,
                                         FInfoDecl declaration)
    : m_writer(writer),
      m_stream(stream),
      m_fi(context.GetFIContext()),
      m_declaration(declaration),
      m_attributeMaxAdd(m_fi.GetAttributeMaxAddLength()),
      m_chunkMaxAdd(m_fi.GetElementMaxAddLength()),
      m_utf8Internal(m_encoder.IsInternalUtf8()) {
  if (declaration < FInfoDecl_None || declaration > FInfoDecl_Version11StandaloneYes) {
    Fail(FormatString("Unknown XML declaration choice [%d].", static_cast<int>(declaration)));
  }
  for (int type = 0; type < CFastInfosetContext::EncodingTableSize; ++type) {
    m_encodings[type] = m_fi.GetEncoding(type);
  }
  for (const std::string& characters : m_fi.GetVocabulary()->GetRestrictedAlphabets()) {
    AlphabetCodes codes;
    std::fill(std::begin(codes.code), std::end(codes.code), static_cast<signed char>(-1));
    if (!characters.empty() && characters.size() < 128 && IsAscii(characters)) {
      for (std::size_t i = characters.size(); i-- > 0;)
        codes.code[static_cast<unsigned char>(characters[i])] = static_cast<signed char>(i);
      codes.bits = 1;
      while ((std::size_t{1} << codes.bits) <= characters.size()) ++codes.bits;
    }
    m_alphabets.push_back(codes);
  }
  m_capacity = CFastInfosetWriter::kBlockSize + 4096;
  m_buffer.reset(new unsigned char[m_capacity]);
  m_payload.reserve(64);
}

// ---- Output buffer -----------------------------------------------------------------------------

void CFastInfosetEncoder::Grow(std::size_t more) {
  // Only an open start tag (whose octets may still change) or one long string fills the buffer
  // past a block: the buffer grows to take it.
  std::size_t capacity = m_capacity * 2;
  while (capacity - m_pos < more) capacity *= 2;
  std::unique_ptr<unsigned char[]> bigger(new unsigned char[capacity]);
  if (m_pos != 0) std::memcpy(bigger.get(), m_buffer.get(), m_pos);
  m_buffer = std::move(bigger);
  m_capacity = capacity;
}

void CFastInfosetEncoder::HandOver() {
  if (m_pos == 0) return;
  if (m_pos > UINT32_MAX) Fail("A block of output is too large for the stream.");
  m_stream.Append(m_buffer.get(), static_cast<std::uint32_t>(m_pos));
  m_pos = 0;
  m_stream.FlushBuffer();
}

// ---- Integers and lengths ----------------------------------------------------------------------

void CFastInfosetEncoder::PutLengthOnBit2(std::size_t length) {
  Reserve(5);
  unsigned char* out = m_buffer.get() + m_pos;
  if (length <= 64) {
    out[0] = static_cast<std::uint8_t>(length - 1);
    m_pos += 1;
  } else if (length <= 320) {
    out[0] = 0x40;
    out[1] = static_cast<std::uint8_t>(length - 65);
    m_pos += 2;
  } else {
    const std::uint64_t v = length - 321;
    if (v > UINT32_MAX) Fail("A string is too long.");
    out[0] = 0x60;
    for (int i = 0; i < 4; ++i) out[1 + i] = static_cast<std::uint8_t>(v >> (24 - 8 * i));
    m_pos += 5;
  }
}

void CFastInfosetEncoder::PutLengthOnBit5(std::uint8_t high, std::size_t length) {
  Reserve(5);
  unsigned char* out = m_buffer.get() + m_pos;
  if (length <= 8) {
    out[0] = static_cast<std::uint8_t>(high | (length - 1));
    m_pos += 1;
  } else if (length <= 264) {
    out[0] = static_cast<std::uint8_t>(high | 0x08);
    out[1] = static_cast<std::uint8_t>(length - 9);
    m_pos += 2;
  } else {
    const std::uint64_t v = length - 265;
    if (v > UINT32_MAX) Fail("A string is too long.");
    out[0] = static_cast<std::uint8_t>(high | 0x0C);
    for (int i = 0; i < 4; ++i) out[1 + i] = static_cast<std::uint8_t>(v >> (24 - 8 * i));
    m_pos += 5;
  }
}

void CFastInfosetEncoder::PutLengthOnBit7(std::uint8_t high, std::size_t length) {
  Reserve(5);
  unsigned char* out = m_buffer.get() + m_pos;
  if (length <= 2) {
    out[0] = static_cast<std::uint8_t>(high | (length - 1));
    m_pos += 1;
  } else if (length <= 258) {
    out[0] = static_cast<std::uint8_t>(high | 0x02);
    out[1] = static_cast<std::uint8_t>(length - 3);
    m_pos += 2;
  } else {
    const std::uint64_t v = length - 259;
    if (v > UINT32_MAX) Fail("A string is too long.");
    out[0] = static_cast<std::uint8_t>(high | 0x03);
    for (int i = 0; i < 4; ++i) out[1 + i] = static_cast<std::uint8_t>(v >> (24 - 8 * i));
    m_pos += 5;
  }
}

void CFastInfosetEncoder::PutIntegerOnBit2(std::uint8_t high, std::uint32_t value) {
  Reserve(3);
  unsigned char* out = m_buffer.get() + m_pos;
  if (value <= 64) {
    out[0] = static_cast<std::uint8_t>(high | (value - 1));
    m_pos += 1;
  } else if (value <= 8256) {
    const std::uint32_t v = value - 65;
    out[0] = static_cast<std::uint8_t>(high | 0x40 | (v >> 8));
    out[1] = static_cast<std::uint8_t>(v);
    m_pos += 2;
  } else {
    const std::uint32_t v = value - 8257;
    out[0] = static_cast<std::uint8_t>(high | 0x60 | (v >> 16));
    out[1] = static_cast<std::uint8_t>(v >> 8);
    out[2] = static_cast<std::uint8_t>(v);
    m_pos += 3;
  }
}

// The integers starting on bit 3 and on bit 4 have the same four forms, those of bit 4 with one
// bit less in each: their flags and ranges are those of bit 3 shifted right by `shift` (0 or 1).
void CFastInfosetEncoder::PutIntegerOnBit3Or4(int shift, std::uint8_t high, std::uint32_t value) {
  const std::uint32_t oneOctet = 32u >> shift;
  const std::uint32_t twoOctets = oneOctet + (2048u >> shift);
  const std::uint32_t threeOctets = twoOctets + (524288u >> shift);
  Reserve(4);
  unsigned char* out = m_buffer.get() + m_pos;
  if (value <= oneOctet) {
    out[0] = static_cast<std::uint8_t>(high | (value - 1));
    m_pos += 1;
  } else if (value <= twoOctets) {
    const std::uint32_t v = value - oneOctet - 1;
    out[0] = static_cast<std::uint8_t>(high | (0x20 >> shift) | (v >> 8));
    out[1] = static_cast<std::uint8_t>(v);
    m_pos += 2;
  } else if (value <= threeOctets) {
    const std::uint32_t v = value - twoOctets - 1;
    out[0] = static_cast<std::uint8_t>(high | (0x28 >> shift) | (v >> 16));
    out[1] = static_cast<std::uint8_t>(v >> 8);
    out[2] = static_cast<std::uint8_t>(v);
    m_pos += 3;
  } else {
    const std::uint32_t v = value - threeOctets - 1;
    out[0] = static_cast<std::uint8_t>(high | (0x30 >> shift));
    out[1] = static_cast<std::uint8_t>(v >> 16);
    out[2] = static_cast<std::uint8_t>(v >> 8);
    out[3] = static_cast<std::uint8_t>(v);
    m_pos += 4;
  }
}

void CFastInfosetEncoder::PutCount(std::size_t count) {
  if (count <= 128) {
    Put(static_cast<std::uint8_t>(count - 1));
  } else {
    const std::size_t v = count - 129;
    Put(static_cast<std::uint8_t>(0x80 | (v >> 16)));
    Put(static_cast<std::uint8_t>(v >> 8));
    Put(static_cast<std::uint8_t>(v));
  }
}

// ---- Strings -----------------------------------------------------------------------------------

std::string_view CFastInfosetEncoder::Utf8Slow(std::string_view text, std::string& scratch) {
  CheckWritableControls(text);
  if (m_utf8Internal && IsValidUtf8(text)) return text;
  scratch.clear();
  m_encoder.ToUtf8(text, scratch);
  return scratch;
}

std::uint32_t CFastInfosetEncoder::PutIdentifying(Table table, std::string_view utf8) {
  CWriterTable& entries = m_tables[table];
  std::uint32_t index = 0;
  if (entries.Find(utf8, 0, 0, index)) {
    PutIntegerOnBit2(0x80, index);
    return index;
  }
  if (utf8.empty()) Fail("A name or identifier is empty.");
  PutLengthOnBit2(utf8.size());
  PutBytes(utf8.data(), utf8.size());
  return entries.Add(utf8);
}

bool CFastInfosetEncoder::PackAlphabet(std::uint32_t alphabet, std::string_view text) {
  if (alphabet == 0 || alphabet > m_alphabets.size() || text.empty()) return false;
  const AlphabetCodes& codes = m_alphabets[alphabet - 1];
  if (codes.bits == 0) return false;
  const int bits = codes.bits;
  m_payload.clear();
  std::uint32_t buffer = 0;
  int held = 0;
  for (char c : text) {
    const unsigned char byte = static_cast<unsigned char>(c);
    if (byte >= 128 || codes.code[byte] < 0) return false;
    buffer = (buffer << bits) | static_cast<std::uint32_t>(codes.code[byte]);
    held += bits;
    while (held >= 8) {
      held -= 8;
      m_payload += static_cast<char>((buffer >> held) & 0xFF);
    }
    buffer &= (1u << held) - 1;
  }
  if (held != 0) {
    // The rest of the last octet is ones: the end marker.
    m_payload += static_cast<char>(((buffer << (8 - held)) | ((1u << (8 - held)) - 1)) & 0xFF);
  }
  return true;
}

bool CFastInfosetEncoder::EncodeCommonForm(std::uint32_t algorithm, std::string_view text) {
  m_payload.clear();
  switch (algorithm) {
    case FIAlgorithm_Boolean:
      if (text == "true" || text == "false") {
        m_payload += static_cast<char>(text[0] == 't' ? 0x38 : 0x30);
        return true;
      }
      return false;
    case FIAlgorithm_Short:
    case FIAlgorithm_Int:
    case FIAlgorithm_Long: {
      // One integer in its canonical form ("0", or digits without a leading zero after an
      // optional minus), which the algorithm gives back unchanged when it fits.
      const bool negative = !text.empty() && text[0] == '-';
      const std::string_view digits = text.substr(negative ? 1 : 0);
      if (digits.empty() || digits.size() > 19 || (digits[0] == '0' && digits.size() > 1) ||
          (negative && digits[0] == '0')) {
        return false;
      }
      std::uint64_t magnitude = 0;
      for (char c : digits) {
        if (c < '0' || c > '9') return false;
        magnitude = magnitude * 10 + static_cast<std::uint64_t>(c - '0');
      }
      const int width = algorithm == FIAlgorithm_Short ? 2 : algorithm == FIAlgorithm_Int ? 4 : 8;
      const std::uint64_t limit = std::uint64_t{1} << (width * 8 - 1);
      if (negative ? magnitude > limit : magnitude >= limit) return false;
      PutBigEndian(negative ? ~magnitude + 1 : magnitude, width, m_payload);
      return true;
    }
    default:
      return false;
  }
}

bool CFastInfosetEncoder::EncodeTyped(int itemType, std::string_view text, int& kind,
                                      std::uint32_t& id) {
  if (itemType <= 0 || itemType >= CFastInfosetContext::EncodingTableSize) return false;
  const CFastInfosetContext::EncodedCharacterString& encoding = m_encodings[itemType];
  if (encoding.kind == FIEncodingKind_RestrictedAlphabet) {
    if (!PackAlphabet(encoding.index, text)) return false;
    kind = 2;
    id = encoding.index - 1;
    return true;
  }
  if (encoding.kind != FIEncodingKind_Algorithm || encoding.index == 0 ||
      encoding.index > kBuiltInAlgorithms) {
    return false;
  }
  if (EncodeCommonForm(encoding.index, text)) {
    kind = 3;
    id = encoding.index - 1;
    return true;
  }
  // The value goes out in the algorithm's form only when reading it back gives the same text;
  // anything else (a value that does not parse, or a form the algorithm does not keep, such as
  // "+5" or "1.0") is written as text.
  m_payload.clear();
  try {
    EncodeAlgorithm(encoding.index, text, m_payload);
    const unsigned char* p = reinterpret_cast<const unsigned char*>(m_payload.data());
    m_check = DecodeAlgorithm(encoding.index, p, p + m_payload.size());
  } catch (const COvException&) {
    return false;
  }
  if (m_check != text || m_payload.empty()) return false;
  kind = 3;
  id = encoding.index - 1;
  return true;
}

void CFastInfosetEncoder::PutValue(Table table, std::string_view text, int itemType,
                                   std::uint32_t maxAdd) {
  if (text.empty()) {
    Put(0xFF);
    return;
  }
  CWriterTable& entries = m_tables[table];
  std::uint32_t index = 0;
  const std::string_view utf8 = Utf8(text, m_valueScratch);
  if (entries.Find(utf8, 0, 0, index)) {
    PutIntegerOnBit2(0x80, index);
    return;
  }
  int kind = 0;
  std::uint32_t id = 0;
  if (itemType > 0 && EncodeTyped(itemType, text, kind, id)) {
    // Alphabet values are added as their text; algorithm values are not (their text form is the
    // algorithm's, which two implementations may print differently).
    const bool add = kind == 2 && utf8.size() <= maxAdd && !entries.IsFull();
    Put(static_cast<std::uint8_t>((add ? 0x40 : 0) | (kind << 4) | (id >> 4)));
    PutLengthOnBit5(static_cast<std::uint8_t>((id & 0x0F) << 4), m_payload.size());
    PutBytes(m_payload.data(), m_payload.size());
    if (add) entries.Add(utf8);
    return;
  }
  const bool add = utf8.size() <= maxAdd && !entries.IsFull();
  PutLengthOnBit5(add ? 0x40 : 0x00, utf8.size());
  PutBytes(utf8.data(), utf8.size());
  if (add) entries.Add(utf8);
}

void CFastInfosetEncoder::PutChunk(std::string_view text, int itemType) {
  CWriterTable& entries = m_tables[Chunk];
  // Text kept as one CDATA section when it was read goes out with the CDATA algorithm, which
  // the reader turns back into such a section.
  // (An empty section has no octets to carry: it goes out as its text.)
  std::string_view inner;
  if (detail::IsOneCDataSection(text, inner) && !inner.empty()) {
    const std::string_view utf8 = Utf8(inner, m_valueScratch);
    const std::uint32_t id = FIAlgorithm_CDATA - 1;
    Put(static_cast<std::uint8_t>(0x8C | (id >> 6)));
    PutLengthOnBit7(static_cast<std::uint8_t>((id & 0x3F) << 2), utf8.size());
    PutBytes(utf8.data(), utf8.size());
    return;
  }
  const std::string_view utf8 = Utf8(text, m_valueScratch);
  std::uint32_t index = 0;
  if (entries.Find(utf8, 0, 0, index)) {
    PutIntegerOnBit4(0xA0, index);
    return;
  }
  int kind = 0;
  std::uint32_t id = 0;
  if (itemType > 0 && EncodeTyped(itemType, text, kind, id)) {
    const bool add = kind == 2 && utf8.size() <= m_chunkMaxAdd && !entries.IsFull();
    Put(static_cast<std::uint8_t>(0x80 | (add ? 0x10 : 0) | (kind << 2) | (id >> 6)));
    PutLengthOnBit7(static_cast<std::uint8_t>((id & 0x3F) << 2), m_payload.size());
    PutBytes(m_payload.data(), m_payload.size());
    if (add) entries.Add(utf8);
    return;
  }
  const bool add = utf8.size() <= m_chunkMaxAdd && !entries.IsFull();
  PutLengthOnBit7(add ? 0x90 : 0x80, utf8.size());
  if (utf8.size() >= CFastInfosetWriter::kBlockSize && !m_tagOpen) {
    // A long text goes to the stream as it is, after what is buffered.
    HandOver();
    if (utf8.size() > UINT32_MAX) Fail("A text is too long.");
    m_stream.Append(reinterpret_cast<const unsigned char*>(utf8.data()),
                    static_cast<std::uint32_t>(utf8.size()));
    m_stream.FlushBuffer();
  } else {
    PutBytes(utf8.data(), utf8.size());
  }
  if (add) entries.Add(utf8);
}

// ---- Header and vocabulary
// -----------------------------------------------------------------------

void CFastInfosetEncoder::Open() { m_stream.Begin(); }

void CFastInfosetEncoder::EnsureHeader() {
  if (!m_headerWritten) WriteHeader();
}

void CFastInfosetEncoder::SeedTables(const CFIVocabulary& vocabulary) {
  const auto strings = [](const CFIStringTable& from, CWriterTable& to) {
    for (const std::string& entry : from) to.Add(entry);
  };
  strings(vocabulary.GetPrefixNamesTable(), m_tables[Prefix]);
  // The vocabulary spells the XML namespace (entry 1) its own way; it is never on the wire, and
  // names in it are found by the namespace's real text.
  std::uint32_t n = 0;
  for (const std::string& entry : vocabulary.GetNamespaceNamesTable()) {
    m_tables[NamespaceName].Add(++n == 1 ? kXmlNamespace : std::string_view(entry));
  }
  strings(vocabulary.GetLocalNamesTable(), m_tables[LocalName]);
  strings(vocabulary.GetAttributeValuesTable(), m_tables[AttributeValue]);
  strings(vocabulary.GetCharacterChunksTable(), m_tables[Chunk]);
  // A name is found by its local name's text and its prefix and namespace indexes.
  const auto names = [&vocabulary](const CFIQNameTable& from, CWriterTable& to) {
    for (const CQNameParts& parts : from) {
      const std::string* local = vocabulary.GetLocalNamesTable().GetAt(parts.localName);
      if (local == nullptr) Fail("The vocabulary names a local name it does not hold.");
      to.Add(*local, parts.prefix, parts.namespaceName);
    }
  };
  names(vocabulary.GetElementNamesTable(), m_tables[ElementName]);
  names(vocabulary.GetAttributeNamesTable(), m_tables[AttributeName]);
}

void CFastInfosetEncoder::WriteInitialVocabulary(const CFIVocabulary& vocabulary, bool external) {
  const std::size_t flagsAt = m_pos;
  Put(0);
  Put(0);
  if (external) {
    m_buffer[flagsAt] |= 0x10;
    const std::string uri = m_fi.GetExternalVocabularyURI();
    const std::string_view utf8 = Utf8(uri, m_valueScratch);
    PutLengthOnBit2(utf8.size());
    PutBytes(utf8.data(), utf8.size());
    return;
  }
  // The entries after the built-ins (prefix 1 and namespace 1), table by table.
  const auto strings = [this](const CFIStringTable& table, std::size_t skip, std::size_t at,
                              std::uint8_t flag) {
    if (table.size() <= skip) return;
    m_buffer[at] |= flag;
    PutCount(table.size() - skip);
    std::size_t n = 0;
    for (const std::string& entry : table) {
      if (n++ < skip) continue;
      const std::string_view utf8 = Utf8(entry, m_valueScratch);
      if (utf8.empty()) Fail("The vocabulary holds an empty string.");
      PutLengthOnBit2(utf8.size());
      PutBytes(utf8.data(), utf8.size());
    }
  };
  const auto values = [this](const CFIStringTable& table, std::size_t at, std::uint8_t flag) {
    if (table.empty()) return;
    m_buffer[at] |= flag;
    PutCount(table.size());
    for (const std::string& entry : table) {
      const std::string_view utf8 = Utf8(entry, m_valueScratch);
      if (utf8.empty()) Fail("The vocabulary holds an empty value.");
      PutLengthOnBit5(0x00, utf8.size());
      PutBytes(utf8.data(), utf8.size());
    }
  };
  const auto names = [this](const CFIQNameTable& table, std::size_t at, std::uint8_t flag) {
    if (table.empty()) return;
    m_buffer[at] |= flag;
    PutCount(table.size());
    for (const CQNameParts& parts : table) {
      if (parts.localName == 0 || (parts.prefix != 0 && parts.namespaceName == 0))
        Fail("The vocabulary holds an invalid name.");
      Put(static_cast<std::uint8_t>((parts.prefix != 0 ? 0x02 : 0) |
                                    (parts.namespaceName != 0 ? 0x01 : 0)));
      if (parts.prefix != 0) PutIntegerOnBit2(0x00, parts.prefix);
      if (parts.namespaceName != 0) PutIntegerOnBit2(0x00, parts.namespaceName);
      PutIntegerOnBit2(0x00, parts.localName);
    }
  };
  strings(vocabulary.GetPrefixNamesTable(), 1, flagsAt, 0x02);
  strings(vocabulary.GetNamespaceNamesTable(), 1, flagsAt, 0x01);
  strings(vocabulary.GetLocalNamesTable(), 0, flagsAt + 1, 0x80);
  values(vocabulary.GetAttributeValuesTable(), flagsAt + 1, 0x10);
  values(vocabulary.GetCharacterChunksTable(), flagsAt + 1, 0x08);
  names(vocabulary.GetElementNamesTable(), flagsAt + 1, 0x02);
  names(vocabulary.GetAttributeNamesTable(), flagsAt + 1, 0x01);
}

void CFastInfosetEncoder::WriteHeader() {
  m_headerWritten = true;
  if (m_declaration != FInfoDecl_None) {
    const char* declaration = kFInfoDeclarations[m_declaration - 1];
    PutBytes(declaration, std::strlen(declaration));
  }
  static const unsigned char kIdentification[] = {0xE0, 0x00, 0x00, 0x01};
  PutBytes(kIdentification, sizeof kIdentification);
  const CFIVocabulary& vocabulary = *m_fi.GetVocabulary();
  const bool external = !m_fi.GetExternalVocabularyURI().empty();
  const bool initial =
      external || vocabulary.GetPrefixNamesTable().size() > 1 ||
      vocabulary.GetNamespaceNamesTable().size() > 1 || !vocabulary.GetLocalNamesTable().empty() ||
      !vocabulary.GetAttributeValuesTable().empty() ||
      !vocabulary.GetCharacterChunksTable().empty() || !vocabulary.GetElementNamesTable().empty() ||
      !vocabulary.GetAttributeNamesTable().empty();
  Put(initial ? 0x20 : 0x00);
  if (initial) WriteInitialVocabulary(vocabulary, external);
  SeedTables(vocabulary);
}

// ---- Items -------------------------------------------------------------------------------------

void CFastInfosetEncoder::CloseStartTag() {
  if (!m_tagOpen) return;
  m_tagOpen = false;
  m_writer.GetCurrentContext()->MarkStartTagClosed();
  if (m_tagHasAttributes) m_pendingTerminator = true;
}

void CFastInfosetEncoder::BeforeItem() {
  EnsureHeader();
  CloseStartTag();
  if (m_pendingTerminator) {
    Put(0xF0);
    m_pendingTerminator = false;
  }
  HandOverIfFull();
}

void CFastInfosetEncoder::PutDeclaration(std::string_view prefix, std::string_view ns) {
  Put(static_cast<std::uint8_t>(0xCC | (prefix.empty() ? 0 : 0x02) | (ns.empty() ? 0 : 0x01)));
  if (!prefix.empty()) PutIdentifying(Prefix, Utf8(prefix, m_nameScratch));
  if (!ns.empty()) PutIdentifying(NamespaceName, Utf8(ns, m_nsScratch));
}

void CFastInfosetEncoder::InsertDeclaration(std::string_view prefix, std::string_view ns) {
  // The declaration is written at the end of the buffer, then moved to its place before the
  // element's name. Only declarations add prefixes and namespaces to the tables, so the entries
  // it adds get the indexes they would have had there.
  const std::size_t from = m_pos;
  const bool newBlock = m_declarationsEnd == kNone;
  PutDeclaration(prefix, ns);
  m_insert.assign(reinterpret_cast<const char*>(m_buffer.get() + from), m_pos - from);
  m_pos = from;
  std::size_t at = m_declarationsEnd;
  if (newBlock) {
    // [0 a qqqqqq][rest of the name] becomes [0 a 111000][declaration][F0][00 qqqqqq][rest].
    const std::uint8_t first = m_buffer[m_tagStart];
    m_insert.insert(m_insert.begin(), static_cast<char>((first & 0x40) | 0x38));
    m_insert += static_cast<char>(0xF0);
    m_insert += static_cast<char>(first & 0x3F);
    at = m_tagStart;
    // The first octet is replaced by the inserted ones.
    std::memmove(m_buffer.get() + at, m_buffer.get() + at + 1, m_pos - at - 1);
    --m_pos;
  }
  Reserve(m_insert.size());
  std::memmove(m_buffer.get() + at + m_insert.size(), m_buffer.get() + at, m_pos - at);
  std::memcpy(m_buffer.get() + at, m_insert.data(), m_insert.size());
  m_pos += m_insert.size();
  m_declarationsEnd = newBlock ? m_tagStart + m_insert.size() - 2 : at + m_insert.size();
}

void CFastInfosetEncoder::PutName(bool element, std::string_view prefix, std::string_view ns,
                                  std::string_view localName) {
  const std::string_view local = Utf8(localName, m_valueScratch);
  // The namespace and prefix named last are mostly named again, and their text is then the
  // UTF-8 kept for them already.
  const bool sameNs = m_utf8Internal && m_lastNamespace.Is(ns);
  const bool samePrefix = m_utf8Internal && m_lastPrefix.Is(prefix);
  const std::string_view nsUtf8 = ns.empty() || sameNs ? ns : Utf8(ns, m_nsScratch);
  const std::string_view prefixUtf8 =
      prefix.empty() || samePrefix ? prefix : Utf8(prefix, m_nameScratch);
  const std::uint32_t nsIndex = ns.empty() ? 0
                                : sameNs   ? m_lastNamespace.index
                                           : m_lastNamespace.IndexOf(*this, nsUtf8);
  const std::uint32_t prefixIndex = prefix.empty() ? 0
                                    : samePrefix   ? m_lastPrefix.index
                                                   : m_lastPrefix.IndexOf(*this, prefixUtf8);
  CWriterTable& names = m_tables[element ? ElementName : AttributeName];
  const bool partsKnown = (ns.empty() || nsIndex != 0) && (prefix.empty() || prefixIndex != 0);
  std::uint32_t index = 0;
  if (partsKnown && names.Find(local, prefixIndex, nsIndex, index)) {
    if (element) {
      // The first octet's bits 1-2 are already in the buffer (00, or 0 a from the start tag).
      const std::uint8_t high = m_buffer[--m_pos];
      PutIntegerOnBit3(high, index);
    } else {
      PutIntegerOnBit2(0x00, index);
    }
    return;
  }
  // A name goes out literally once; after that its index stands for it.
  detail::CheckWritableName(local, element ? "element name" : "attribute name", false);
  if (!prefix.empty()) detail::CheckWritableName(prefixUtf8, "namespace prefix", false);
  const std::uint8_t flags =
      static_cast<std::uint8_t>((prefix.empty() ? 0 : 0x02) | (ns.empty() ? 0 : 0x01));
  if (element) {
    m_buffer[m_pos - 1] |= static_cast<std::uint8_t>(0x3C | flags);
  } else {
    Put(static_cast<std::uint8_t>(0x78 | flags));
  }
  const std::uint32_t p = prefix.empty() ? 0 : PutIdentifying(Prefix, prefixUtf8);
  const std::uint32_t n = ns.empty() ? 0 : PutIdentifying(NamespaceName, nsUtf8);
  PutIdentifying(LocalName, local);
  // A part that a full table could not take cannot be named by index: the name is not added.
  if ((prefix.empty() || p != 0) && (ns.empty() || n != 0)) {
    names.Add(local, p, n);
  } else if (!names.IsFull()) {
    names.Add(std::string_view("\0", 1), UINT32_MAX, UINT32_MAX);
  }
}

void CFastInfosetEncoder::StartElement(std::string_view localName, std::string_view ns,
                                       const CXmlWriter::NamespaceDeclaration* own,
                                       std::size_t count) {
  if (localName.empty()) Fail("An element's local name must not be empty.");
  if (m_rootEnded && m_writer.GetCurrentContext() == nullptr)
    Fail("A second document element cannot be written.");
  CXmlWriter::CXmlWriterContext* parent = m_writer.GetCurrentContext();
  if (parent != nullptr) parent->AddChild();
  BeforeItem();
  CXmlWriter::CXmlWriterContext* context = m_writer.PushContext();
  m_rootWritten = true;
  m_tagOpen = true;
  m_tagHasAttributes = false;
  m_tagStart = m_pos;
  m_declarationsEnd = kNone;
  // The element's own declarations are in scope for its name and attributes. The xml prefix is
  // bound by Fast Infoset itself.
  std::size_t ownCount = 0;
  for (std::size_t i = 0; i < count; ++i) {
    if (own[i].ns == kXmlNamespace) continue;
    ++ownCount;
    if (own[i].prefix.empty()) {
      m_writer.CXmlWriter::SetDefaultNamespace(std::string(own[i].ns).c_str());
    } else {
      m_writer.Bind(own[i].ns, own[i].prefix);
    }
  }

  std::string_view prefix;
  bool declared = false;
  if (!ns.empty() && ns != context->GetDefaultNamespace()) {
    prefix = m_writer.PrefixFor(ns, declared);
  }
  const bool root = parent == nullptr;
  const bool declarations = declared || own != 0 ||
                            (root && (!m_writer.GetPendingDefaultNamespace().empty() ||
                                      !m_writer.GetPendingDeclarations().empty()));
  if (declarations) {
    Put(0x38);
    // The root's declarations: the prefixes (in namespace order), then the default namespace.
    if (root) {
      for (const auto& declaration : m_writer.GetPendingDeclarations()) {
        if (declaration.first == kXmlNamespace) continue;
        PutDeclaration(declaration.second, declaration.first);
      }
      if (!m_writer.GetPendingDefaultNamespace().empty())
        PutDeclaration(std::string_view(), m_writer.GetPendingDefaultNamespace());
    }
    for (std::size_t i = 0; i < count; ++i) {
      if (own[i].ns != kXmlNamespace) PutDeclaration(own[i].prefix, own[i].ns);
    }
    if (declared) PutDeclaration(prefix, ns);
    Put(0xF0);
    m_declarationsEnd = m_pos - 1;
  }
  Put(0x00);
  m_writer.SetElementName(prefix, localName);
  PutName(true, prefix, ns, localName);
}

void CFastInfosetEncoder::CheckStartTagOpen(const char* what) const {
  if (m_writer.GetCurrentContext() == nullptr)
    Fail(FormatString("Cannot write the %s: no element is open to take it.", what));
  if (!m_tagOpen) Fail("Attributes must be added before elements");
}

std::string_view CFastInfosetEncoder::AttributePrefix(std::string_view ns) {
  bool declared = false;
  const std::string_view prefix = m_writer.PrefixFor(ns, declared);
  if (declared) InsertDeclaration(prefix, ns);
  return prefix;
}

void CFastInfosetEncoder::Attribute(std::string_view localName, std::string_view ns,
                                    std::string_view value, int itemType) {
  CheckStartTagOpen("attribute");
  if (localName.empty()) Fail("An attribute's local name must not be empty.");
  const std::string_view prefix = ns.empty() ? std::string_view() : AttributePrefix(ns);
  m_buffer[m_tagStart] |= 0x40;
  m_tagHasAttributes = true;
  PutName(false, prefix, ns, localName);
  PutValue(AttributeValue, UpToNul(value), itemType, m_attributeMaxAdd);
}

void CFastInfosetEncoder::XsiType(std::string_view typeName, std::string_view typeNamespace) {
  CheckStartTagOpen("xsi:type attribute");
  m_xsiValue.clear();
  if (!typeNamespace.empty() &&
      typeNamespace != m_writer.GetCurrentContext()->GetDefaultNamespace()) {
    m_xsiValue = AttributePrefix(typeNamespace);
    m_xsiValue += ':';
  }
  m_xsiValue += typeName;
  Attribute("type", CXmlWriter::kSchemaInstanceNamespace, m_xsiValue, 0);
}

void CFastInfosetEncoder::EndElement() {
  if (m_writer.GetCurrentContext() == nullptr) Fail("Cannot end an element: no element is open.");
  CloseStartTag();
  if (m_pendingTerminator) {
    Put(0xFF);
    m_pendingTerminator = false;
  } else {
    m_pendingTerminator = true;
  }
  m_writer.PopContext();
  if (m_writer.GetCurrentContext() == nullptr) m_rootEnded = true;
  HandOverIfFull();
}

void CFastInfosetEncoder::Text(std::string_view text, int itemType) {
  text = UpToNul(text);
  if (text.empty()) return;
  if (m_writer.GetCurrentContext() == nullptr) Fail("Text must be inside an element.");
  BeforeItem();
  PutChunk(text, itemType);
}

void CFastInfosetEncoder::Comment(std::string_view text) {
  BeforeItem();
  Put(0xE2);
  PutValue(OtherString, UpToNul(text), 0, m_chunkMaxAdd);
}

void CFastInfosetEncoder::ProcessingInstruction(std::string_view target, std::string_view data) {
  if (target.empty() || target.find_first_of(" \t\r\n?") != std::string_view::npos)
    Fail("Invalid processing instruction target.");
  BeforeItem();
  Put(0xE1);
  PutIdentifying(OtherNCName, Utf8(target, m_nameScratch));
  PutValue(OtherString, data, 0, m_chunkMaxAdd);
}

void CFastInfosetEncoder::Close() {
  if (m_writer.GetCurrentContext() != nullptr) Fail("An Element has not been closed.");
  if (!m_rootWritten) Fail("The document has no element.");
  // The document's terminator, shared with the root's when that one is still pending.
  if (m_pendingTerminator) {
    Put(0xFF);
    m_pendingTerminator = false;
  } else {
    Put(0xF0);
  }
  HandOver();
  m_stream.FlushBuffer();
  m_stream.Finish();
}

}  // namespace detail

// ---- CFastInfosetWriter ------------------------------------------------------------------------

using detail::Fail;

CFastInfosetWriter::CFastInfosetWriter(CBinaryStream* stream,
                                       const CXmlSerializationContext& context,
                                       FInfoDecl declaration)
    : CXmlWriter("CFastInfosetWriter") {
  if (stream == nullptr) {
    throw COvInvalidParamException("The Fast Infoset writer needs a stream to write to");
  }
  m_encoder.reset(new detail::CFastInfosetEncoder(*this, *stream, context, declaration));
}

CFastInfosetWriter::~CFastInfosetWriter() = default;

void CFastInfosetWriter::Open() {
  CXmlWriter::Open();
  m_encoder->Open();
}

void CFastInfosetWriter::Close() { m_encoder->Close(); }

void CFastInfosetWriter::WriteComment(const char* text) { m_encoder->Comment(detail::View(text)); }

void CFastInfosetWriter::WriteRawBlock(const char* text) {
  // The context's processing instructions come this way, as "<?target data?>".
  std::string_view raw = detail::View(text);
  const auto space = [](char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; };
  while (!raw.empty() && space(raw.front())) raw.remove_prefix(1);
  while (!raw.empty() && space(raw.back())) raw.remove_suffix(1);
  if (raw.size() < 4 || raw.compare(0, 2, "<?") != 0 || raw.compare(raw.size() - 2, 2, "?>") != 0) {
    Fail(
        "Raw text cannot be carried in a Fast Infoset document; only processing instructions "
        "(<?target data?>) can.");
  }
  raw = raw.substr(2, raw.size() - 4);
  std::size_t end = 0;
  while (end < raw.size() && !space(raw[end])) ++end;
  std::string_view data = raw.substr(end);
  while (!data.empty() && space(data.front())) data.remove_prefix(1);
  m_encoder->ProcessingInstruction(raw.substr(0, end), data);
}

void CFastInfosetWriter::WriteRawLine(const char* /*text*/) {
  Fail("Raw XML text (such as an in-line schema) cannot be carried in a Fast Infoset document.");
}

void CFastInfosetWriter::WriteStartElement(const char* localName, const char* ns) {
  m_encoder->StartElement(detail::View(localName), detail::View(ns));
}

void CFastInfosetWriter::WriteStartElement(std::string_view localName, std::string_view ns) {
  m_encoder->StartElement(localName, ns);
}

void CFastInfosetWriter::WriteStartElement(std::string_view localName, std::string_view ns,
                                           const NamespaceDeclaration* declarations,
                                           std::size_t count) {
  m_encoder->StartElement(localName, ns, declarations, count);
}

void CFastInfosetWriter::WriteText(const char* text, int itemType) {
  m_encoder->Text(detail::View(text), itemType);
}

void CFastInfosetWriter::WriteText(std::string_view text, int itemType) {
  m_encoder->Text(text, itemType);
}

void CFastInfosetWriter::WriteEndElement() { m_encoder->EndElement(); }

void CFastInfosetWriter::WriteAttribute(const char* localName, const char* ns, const char* value,
                                        int itemType) {
  m_encoder->Attribute(detail::View(localName), detail::View(ns), detail::View(value), itemType);
}

void CFastInfosetWriter::WriteAttribute(std::string_view localName, std::string_view ns,
                                        std::string_view value, int itemType) {
  m_encoder->Attribute(localName, ns, value, itemType);
}

void CFastInfosetWriter::WriteXsiType(const char* typeName, const char* typeNamespace,
                                      int /*itemType*/) {
  m_encoder->XsiType(detail::View(typeName), detail::View(typeNamespace));
}

void CFastInfosetWriter::WriteProcessingInstruction(std::string_view target,
                                                    std::string_view data) {
  m_encoder->ProcessingInstruction(target, data);
}

}  // namespace OvXmlLib6
