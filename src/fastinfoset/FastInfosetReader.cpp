#include "fastinfoset/FastInfosetReader.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"
#include "core/Strings.h"
#include "fastinfoset/Declarations.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "xml/ExpatReader.h"
#include "xml/Unicode.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace OvXmlLib6 {

namespace {

constexpr std::size_t kMaxTableEntries = 1u << 20;
// The index under which a string table full to the limit keeps the literal that came last, for
// the item it stands in: no index in the input can name it (they end at 2^20).
constexpr std::uint32_t kLastLiteral = (1u << 20) + 1;
// Deeper documents are refused: the open elements cost memory the input does not pay for.
constexpr std::size_t kMaxDepth = 100000;
constexpr std::uint32_t kBuiltInAlgorithms = 10;
// The input window of a byte source, and what of it is read before the header is looked for.
constexpr std::size_t kWindowSize = 64 * 1024;
constexpr std::size_t kHeaderProbe = 64;

const char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";
const char kXmlnsNamespace[] = "http://www.w3.org/2000/xmlns/";

// Whether XML namespaces allow `prefix` (empty: none) bound to `ns`: the prefix xml only to the
// XML namespace and that namespace only to it, nothing to the namespace of namespace
// declarations or with the prefix xmlns, and no prefix to the empty namespace.
bool IsAllowedBinding(std::string_view prefix, std::string_view ns) {
  if (prefix == "xmlns" || ns == kXmlnsNamespace) return false;
  if ((prefix == "xml") != (ns == kXmlNamespace)) return false;
  return prefix.empty() || !ns.empty();
}
const unsigned char kIdentification[] = {0xE0, 0x00, 0x00, 0x01};

bool HasIdentificationAt(const unsigned char* data, std::size_t length, std::size_t at) {
  return length >= at + sizeof kIdentification &&
         std::memcmp(data + at, kIdentification, sizeof kIdentification) == 0;
}

}  // namespace

long CFastInfosetReader::FindHeader(const unsigned char* data, std::size_t length) {
  if (data == nullptr) return -1;
  if (HasIdentificationAt(data, length, 0)) return 0;
  for (const char* declaration : detail::kFInfoDeclarations) {
    const std::size_t size = std::strlen(declaration);
    if (length >= size && std::memcmp(data, declaration, size) == 0 &&
        HasIdentificationAt(data, length, size)) {
      return static_cast<long>(size);
    }
  }
  return -1;
}

CFastInfosetReader::CFastInfosetReader(detail::IXmlEventHandler& handler,
                                       const CXmlSerializationContext& context)
    : m_handler(handler), m_context(context) {}

// ---- Failures and octets ------------------------------------------------------------------

void CFastInfosetReader::FailAt(const char* what, std::uint64_t offset) const {
  throw COvException(FormatString("Failed to parse FastInfoset. %s at byte offset %llu", what,
                                  static_cast<unsigned long long>(offset)));
}

void CFastInfosetReader::Fail(const char* what) const {
  const std::uint64_t position = Position();
  FailAt(what, position == 0 ? 0 : position - 1);
}

const unsigned char* CFastInfosetReader::Take(std::uint64_t count) {
  if (count > m_length - m_pos) Refill(count, "Length beyond the end of data");
  const unsigned char* p = m_data + m_pos;
  m_pos += static_cast<std::size_t>(count);
  return p;
}

void CFastInfosetReader::Refill(std::uint64_t need, const char* what) {
  if (m_source == nullptr || need > std::numeric_limits<std::size_t>::max()) {
    FailAt(what, Position());
  }
  const std::size_t kept = m_length - m_pos;
  unsigned char* window = m_window.get();
  if (m_capacity > kWindowSize && need <= kWindowSize) {
    // The item that made the window grow is behind: back to the usual size.
    std::unique_ptr<unsigned char[]> smaller(new unsigned char[kWindowSize]);
    std::memcpy(smaller.get(), window + m_pos, kept);
    m_window = std::move(smaller);
    m_capacity = kWindowSize;
  } else if (kept != 0 && m_pos != 0) {
    std::memmove(window, window + m_pos, kept);
  }
  m_base += m_pos;
  m_pos = 0;
  m_length = kept;
  m_data = m_window.get();
  while (m_length < need) {
    if (m_length == m_capacity) {
      // Grows by doubling, each step only once the source has filled the one before, so that a
      // length the source does not back costs no more than twice what it delivered.
      const std::size_t capacity =
          static_cast<std::size_t>(std::min<std::uint64_t>(need, std::uint64_t{m_capacity} * 2));
      std::unique_ptr<unsigned char[]> larger(new unsigned char[capacity]);
      std::memcpy(larger.get(), m_window.get(), m_length);
      m_window = std::move(larger);
      m_capacity = capacity;
      m_data = m_window.get();
    }
    const std::size_t got = m_source->Read(m_window.get() + m_length, m_capacity - m_length);
    if (got == 0) FailAt(what, Position());
    m_length += std::min(got, m_capacity - m_length);
  }
}

bool CFastInfosetReader::AtEnd() {
  if (m_pos < m_length) return false;
  if (m_source == nullptr) return true;
  m_base += m_pos;
  m_pos = 0;
  m_length = std::min(m_source->Read(m_window.get(), m_capacity), m_capacity);
  return m_length == 0;
}

// ---- Integers and lengths -----------------------------------------------------------------

namespace {
std::uint32_t Join(std::uint32_t high, const unsigned char* p, int count) {
  for (int i = 0; i < count; ++i) high = (high << 8) | p[i];
  return high;
}
}  // namespace

std::uint64_t CFastInfosetReader::LengthOnBit2(std::uint8_t first) {
  if ((first & 0x40) == 0) return (first & 0x3Fu) + 1;
  if ((first & 0x7F) == 0x40) return Octet() + 65u;
  if ((first & 0x7F) == 0x60) return std::uint64_t{Join(0, Take(4), 4)} + 321;
  Fail("Invalid length");
}

std::uint64_t CFastInfosetReader::LengthOnBit5(std::uint8_t first) {
  first &= 0x0F;
  if ((first & 0x08) == 0) return (first & 0x07u) + 1;
  if (first == 0x08) return Octet() + 9u;
  if (first == 0x0C) return std::uint64_t{Join(0, Take(4), 4)} + 265;
  Fail("Invalid length");
}

std::uint64_t CFastInfosetReader::LengthOnBit7(std::uint8_t first) {
  first &= 0x03;
  if ((first & 0x02) == 0) return first + 1u;
  if (first == 0x02) return Octet() + 3u;
  return std::uint64_t{Join(0, Take(4), 4)} + 259;
}

std::uint32_t CFastInfosetReader::IntegerOnBit2(std::uint8_t first) {
  if ((first & 0x40) == 0) return (first & 0x3Fu) + 1;
  if ((first & 0x60) == 0x40) return Join(first & 0x1Fu, Take(1), 1) + 65;
  if ((first & 0x70) == 0x60) return Join(first & 0x0Fu, Take(2), 2) + 8257;
  Fail("Invalid index");
}

std::uint32_t CFastInfosetReader::IntegerOnBit3(std::uint8_t first) {
  if ((first & 0x20) == 0) return (first & 0x1Fu) + 1;
  if ((first & 0x38) == 0x20) return Join(first & 0x07u, Take(1), 1) + 33;
  if ((first & 0x38) == 0x28) return Join(first & 0x07u, Take(2), 2) + 2081;
  if ((first & 0x3F) == 0x30) {
    const unsigned char* p = Take(3);
    if ((p[0] & 0xF0) == 0) return Join(0, p, 3) + 526369;
  }
  Fail("Invalid index");
}

std::uint32_t CFastInfosetReader::IntegerOnBit4(std::uint8_t first) {
  if ((first & 0x10) == 0) return (first & 0x0Fu) + 1;
  if ((first & 0x1C) == 0x10) return Join(first & 0x03u, Take(1), 1) + 17;
  if ((first & 0x1C) == 0x14) return Join(first & 0x03u, Take(2), 2) + 1041;
  if ((first & 0x1F) == 0x18) {
    const unsigned char* p = Take(3);
    if ((p[0] & 0xF0) == 0) return Join(0, p, 3) + 263185;
  }
  Fail("Invalid index");
}

std::uint32_t CFastInfosetReader::Count() {
  const std::uint8_t first = Octet();
  if ((first & 0x80) == 0) return first + 1u;
  if ((first & 0xF0) == 0x80) {
    const std::uint32_t count = Join(first & 0x0Fu, Take(2), 2) + 129;
    if (count <= kMaxTableEntries) return count;
  }
  Fail("Invalid count");
}

std::string_view CFastInfosetReader::OctetString() {
  const std::uint8_t first = Octet();
  if ((first & 0x80) != 0) Fail("Invalid octet string");
  const std::uint64_t length = LengthOnBit2(first);
  return {reinterpret_cast<const char*>(Take(length)), static_cast<std::size_t>(length)};
}

// ---- Strings ------------------------------------------------------------------------------

const std::string& CFastInfosetReader::Entry(StringTable table, std::uint32_t index,
                                             std::uint64_t offset) const {
  const std::vector<std::string>& entries = m_tables[table];
  if (index == kLastLiteral) return m_lastLiterals[table];
  if (index == 0 || index > entries.size()) FailAt("Index out of the vocabulary table", offset);
  return entries[index - 1];
}

void CFastInfosetReader::AddTo(StringTable table, std::string_view text) {
  if (m_tables[table].size() < kMaxTableEntries) m_tables[table].emplace_back(text);
}

std::string_view CFastInfosetReader::Internal(std::string_view utf8, std::string& out) {
  if (m_encoder.IsInternalUtf8()) return utf8;
  out.clear();
  m_encoder.FromUtf8(utf8, out);
  return out;
}

void CFastInfosetReader::CheckText(std::string_view utf8, std::uint64_t offset) const {
  if (detail::IsXmlText(utf8)) return;
  FailAt(detail::IsValidUtf8(utf8) ? "Character not allowed in XML" : "Invalid UTF-8 string",
         offset);
}

void CFastInfosetReader::CheckName(StringTable table, std::string_view utf8,
                                   std::uint64_t offset) const {
  if ((table == Prefix || table == LocalName || table == OtherNCName) &&
      !detail::IsXmlNCName(utf8)) {
    FailAt("Invalid name", offset);
  }
  // The XML parser splits names at "|" and so refuses namespace names that hold one.
  if (table == NamespaceName && utf8.find('|') != std::string_view::npos) {
    FailAt("Namespace name holding \"|\"", offset);
  }
}

void CFastInfosetReader::Utf8Text(std::string_view utf8, std::uint64_t offset, std::string& out) {
  CheckText(utf8, offset);
  m_encoder.FromUtf8(utf8, out);
}

std::uint32_t CFastInfosetReader::IdentifyingIndex(StringTable table) {
  const std::uint64_t offset = Position();
  const std::uint8_t first = Octet();
  if ((first & 0x80) != 0) {
    const std::uint32_t index = IntegerOnBit2(first);
    Entry(table, index, offset);
    return index;
  }
  const std::uint64_t length = LengthOnBit2(first);
  const std::uint64_t start = Position();
  const unsigned char* p = Take(length);
  std::string text;
  Utf8Text({reinterpret_cast<const char*>(p), static_cast<std::size_t>(length)}, start, text);
  CheckName(table, {reinterpret_cast<const char*>(p), static_cast<std::size_t>(length)}, start);
  if (m_tables[table].size() >= kMaxTableEntries) {
    // A full table takes nothing more; the literal serves only the item it stands in.
    m_lastLiterals[table] = std::move(text);
    return kLastLiteral;
  }
  m_tables[table].push_back(std::move(text));
  return static_cast<std::uint32_t>(m_tables[table].size());
}

std::string_view CFastInfosetReader::NonIdentifying(StringTable table, std::string& scratch) {
  const std::uint64_t offset = Position();
  const std::uint8_t first = Octet();
  if (first == 0xFF) return {};
  if ((first & 0x80) != 0) return Entry(table, IntegerOnBit2(first), offset);
  bool add = false;
  const std::string_view text = NonIdentifyingLiteral(first, scratch, add);
  if (add) AddTo(table, text);
  return text;
}

std::string_view CFastInfosetReader::NonIdentifyingLiteral(std::uint8_t first, std::string& scratch,
                                                           bool& add) {
  const int kind = (first >> 4) & 0x03;
  std::uint32_t id = 0;
  std::uint8_t lengthBits = first;
  if (kind >= 2) {
    const std::uint8_t second = Octet();
    id = ((first & 0x0Fu) << 4) | (second >> 4);
    lengthBits = second;
  }
  add = (first & 0x40) != 0;
  return DecodePayload(kind, id, LengthOnBit5(lengthBits), scratch);
}

std::string_view CFastInfosetReader::CharacterChunkText(std::uint8_t first, bool& cdata) {
  const std::uint64_t offset = Position() - 1;
  cdata = false;
  if ((first & 0x20) != 0) return Entry(CharacterChunk, IntegerOnBit4(first), offset);
  const int kind = (first >> 2) & 0x03;
  std::uint32_t id = 0;
  std::uint8_t lengthBits = first;
  if (kind >= 2) {
    const std::uint8_t second = Octet();
    id = ((first & 0x03u) << 6) | (second >> 2);
    lengthBits = second;
  }
  const std::string_view text = DecodePayload(kind, id, LengthOnBit7(lengthBits), m_scratch);
  cdata = kind == 3 && id + 1 == FIAlgorithm_CDATA;
  if ((first & 0x10) != 0) AddTo(CharacterChunk, text);
  return text;
}

std::string_view CFastInfosetReader::DecodePayload(int kind, std::uint32_t id, std::uint64_t length,
                                                   std::string& scratch) {
  const std::uint64_t offset = Position();
  const unsigned char* p = Take(length);
  const std::size_t size = static_cast<std::size_t>(length);
  switch (kind) {
    case 0: {
      const std::string_view utf8(reinterpret_cast<const char*>(p), size);
      CheckText(utf8, offset);
      return Internal(utf8, scratch);
    }
    case 1: {
      if (size % 2 != 0) FailAt("Odd length of a UTF-16 string", offset);
      m_utf8.clear();
      for (std::size_t i = 0; i < size; i += 2) {
        char32_t unit = static_cast<char32_t>((p[i] << 8) | p[i + 1]);
        if (unit >= 0xDC00 && unit <= 0xDFFF) FailAt("Invalid UTF-16 string", offset + i);
        if (unit >= 0xD800 && unit <= 0xDBFF) {
          const char32_t low = i + 3 < size ? static_cast<char32_t>((p[i + 2] << 8) | p[i + 3]) : 0;
          if (low < 0xDC00 || low > 0xDFFF) FailAt("Invalid UTF-16 string", offset + i);
          unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
          i += 2;
        }
        detail::AppendUtf8(unit, m_utf8);
      }
      CheckText(m_utf8, offset);
      return Internal(m_utf8, scratch);
    }
    case 2: {
      if (id >= m_alphabets.size()) FailAt("Unknown restricted alphabet", offset);
      // The characters of the alphabet; the code of each is its position.
      const std::string& alphabet = m_alphabets[id];
      std::vector<std::string_view>& characters = m_alphabetCharacters;
      characters.clear();
      for (std::size_t at = 0; at < alphabet.size();) {
        const std::size_t begin = at;
        if (detail::DecodeUtf8(alphabet, at) < 0) ++at;
        characters.push_back(std::string_view(alphabet).substr(begin, at - begin));
      }
      int bits = 1;
      while ((std::size_t{1} << bits) <= characters.size()) ++bits;
      const std::uint32_t end = (1u << bits) - 1;
      m_utf8.clear();
      std::uint32_t buffer = 0;
      int held = 0;
      for (std::size_t i = 0; i < size; ++i) {
        buffer = (buffer << 8) | p[i];
        held += 8;
        while (held >= bits) {
          held -= bits;
          const std::uint32_t code = (buffer >> held) & end;
          if (code == end) {
            if (i + 1 != size) FailAt("Invalid restricted alphabet data", offset + i);
            held = 0;
            break;
          }
          if (code >= characters.size()) FailAt("Invalid restricted alphabet data", offset + i);
          m_utf8.append(characters[code]);
        }
        buffer &= (1u << held) - 1;
      }
      return Internal(m_utf8, scratch);
    }
    default:
      if (id + 1 > kBuiltInAlgorithms) FailAt("Unknown encoding algorithm", offset);
      // CDATA carries text as UTF-8; the other algorithms print values in ASCII.
      if (id + 1 == FIAlgorithm_CDATA) {
        CheckText({reinterpret_cast<const char*>(p), size}, offset);
      }
      try {
        scratch = detail::DecodeAlgorithm(id + 1, p, p + size);
      } catch (const COvException& e) {
        FailAt(e.GetMessage().c_str(), offset);
      }
      return scratch;
  }
}

// ---- Header -------------------------------------------------------------------------------

void CFastInfosetReader::ReadHeader() {
  Take(sizeof kIdentification);
  const std::uint8_t components = Octet();
  if ((components & 0x80) != 0) Fail("Invalid optional components");
  if ((components & 0x40) != 0) {
    // Additional data: pairs of an id and the data, none of which is needed.
    for (std::uint32_t n = Count(); n > 0; --n) {
      OctetString();
      OctetString();
    }
  }
  if ((components & 0x20) != 0) ReadInitialVocabulary();
  if ((components & 0x10) != 0) {
    for (std::uint8_t item = Octet(); item != 0xF0; item = Octet()) {
      if ((item & 0xFC) != 0xC0) Fail("Invalid notation");
      IdentifyingIndex(OtherNCName);
      if ((item & 0x02) != 0) IdentifyingIndex(OtherURI);
      if ((item & 0x01) != 0) IdentifyingIndex(OtherURI);
    }
  }
  if ((components & 0x08) != 0) {
    for (std::uint8_t item = Octet(); item != 0xF0; item = Octet()) {
      if ((item & 0xFE) != 0xD0) Fail("Invalid unparsed entity");
      IdentifyingIndex(OtherNCName);
      IdentifyingIndex(OtherURI);
      if ((item & 0x01) != 0) IdentifyingIndex(OtherURI);
      IdentifyingIndex(OtherNCName);
    }
  }
  if ((components & 0x04) != 0) OctetString();
  if ((components & 0x02) != 0 && Octet() > 1) Fail("Invalid standalone value");
  if ((components & 0x01) != 0) NonIdentifying(OtherString, m_scratch);
}

const detail::CXmlEventName* CFastInfosetReader::MakeName(const QName& parts,
                                                          std::uint64_t offset) {
  detail::CXmlEventName name;
  if (parts.prefix != 0) name.prefix = Entry(Prefix, parts.prefix, offset);
  if (parts.namespaceName != 0) {
    name.namespaceURI = Entry(NamespaceName, parts.namespaceName, offset);
  }
  name.localName = Entry(LocalName, parts.localName, offset);
  m_names.push_back(std::move(name));
  return &m_names.back();
}

void CFastInfosetReader::SeedExternalVocabulary(const std::string& uri, std::uint64_t offset) {
  const CFastInfosetContext& fi = m_context.GetFIContext();
  if (fi.GetExternalVocabularyURI().empty() || fi.GetExternalVocabularyURI() != uri) {
    FailAt("Unknown external vocabulary", offset);
  }
  const CFIVocabulary& vocabulary = *fi.GetVocabulary();
  const auto copy = [](const CFIStringTable& from, std::vector<std::string>& to) {
    to.assign(from.begin(), from.end());
  };
  copy(vocabulary.GetPrefixNamesTable(), m_tables[Prefix]);
  copy(vocabulary.GetNamespaceNamesTable(), m_tables[NamespaceName]);
  copy(vocabulary.GetLocalNamesTable(), m_tables[LocalName]);
  copy(vocabulary.GetAttributeValuesTable(), m_tables[AttributeValue]);
  copy(vocabulary.GetCharacterChunksTable(), m_tables[CharacterChunk]);
  // The vocabulary keeps the built-in namespace in its own spelling; readers get the real one.
  if (!m_tables[NamespaceName].empty()) m_tables[NamespaceName][0] = kXmlNamespace;
  const auto names = [this, offset](const CFIQNameTable& from, std::vector<QName>& to) {
    to.clear();
    for (const CQNameParts& parts : from) {
      QName name{parts.prefix, parts.namespaceName, parts.localName, nullptr};
      name.name = MakeName(name, offset);
      to.push_back(name);
    }
  };
  names(vocabulary.GetElementNamesTable(), m_elementNames);
  names(vocabulary.GetAttributeNamesTable(), m_attributeNames);
}

void CFastInfosetReader::ReadInitialVocabulary() {
  const std::uint8_t high = Octet();
  const std::uint8_t low = Octet();
  if ((high & 0xE0) != 0) Fail("Invalid initial vocabulary");
  if ((high & 0x10) != 0) {
    const std::uint64_t offset = Position();
    std::string uri;
    Utf8Text(OctetString(), offset, uri);
    SeedExternalVocabulary(uri, offset);
  }
  // Each table: a count, then its entries, which are appended after the built-ins.
  const auto strings = [this](StringTable table, std::vector<std::string>* to) {
    for (std::uint32_t n = Count(); n > 0; --n) {
      const std::uint64_t offset = Position();
      const std::string_view entry = OctetString();
      std::string text;
      if (to == &m_alphabets) {
        CheckText(entry, offset);
        text.assign(entry);
      } else {
        Utf8Text(entry, offset, text);
        // The alphabet and algorithm tables borrow the prefix table's tag: only the string
        // tables hold names.
        if (to == nullptr) CheckName(table, entry, offset);
      }
      if (to == nullptr) to = &m_tables[table];
      if (to->size() < kMaxTableEntries) to->push_back(std::move(text));
    }
  };
  std::vector<std::string> algorithms;
  if ((high & 0x08) != 0) strings(Prefix, &m_alphabets);
  if ((high & 0x04) != 0) strings(Prefix, &algorithms);
  if ((high & 0x02) != 0) strings(Prefix, nullptr);
  if ((high & 0x01) != 0) strings(NamespaceName, nullptr);
  if ((low & 0x80) != 0) strings(LocalName, nullptr);
  if ((low & 0x40) != 0) strings(OtherNCName, nullptr);
  if ((low & 0x20) != 0) strings(OtherURI, nullptr);
  const StringTable values[] = {AttributeValue, CharacterChunk, OtherString};
  for (int i = 0; i < 3; ++i) {
    if ((low & (0x10 >> i)) == 0) continue;
    for (std::uint32_t n = Count(); n > 0; --n) {
      const std::uint8_t first = Octet();
      if ((first & 0xC0) != 0) Fail("Invalid vocabulary entry");
      bool add = false;
      AddTo(values[i], NonIdentifyingLiteral(first, m_scratch, add));
    }
  }
  for (int i = 0; i < 2; ++i) {
    if ((low & (0x02 >> i)) == 0) continue;
    std::vector<QName>& to = i == 0 ? m_elementNames : m_attributeNames;
    for (std::uint32_t n = Count(); n > 0; --n) {
      const std::uint64_t offset = Position();
      const std::uint8_t flags = Octet();
      if ((flags & 0xFC) != 0 || flags == 0x02) Fail("Invalid name surrogate");
      QName name{0, 0, 0, nullptr};
      const auto index = [this]() {
        const std::uint8_t first = Octet();
        if ((first & 0x80) != 0) Fail("Invalid index");
        return IntegerOnBit2(first);
      };
      if ((flags & 0x02) != 0) name.prefix = index();
      if ((flags & 0x01) != 0) name.namespaceName = index();
      name.localName = index();
      if (to.size() >= kMaxTableEntries) continue;
      name.name = MakeName(name, offset);
      CheckQName(*name.name, i == 0, offset);
      to.push_back(name);
    }
  }
}

// ---- Body ---------------------------------------------------------------------------------

const detail::CXmlEventName* CFastInfosetReader::QNameLiteral(std::uint8_t flags, bool element) {
  if ((flags & 0x03) == 0x02) Fail("Prefix without a namespace name");
  const std::uint64_t offset = Position() - 1;
  QName name{0, 0, 0, nullptr};
  if ((flags & 0x02) != 0) name.prefix = IdentifyingIndex(Prefix);
  if ((flags & 0x01) != 0) name.namespaceName = IdentifyingIndex(NamespaceName);
  name.localName = IdentifyingIndex(LocalName);
  std::vector<QName>& table = element ? m_elementNames : m_attributeNames;
  name.name = MakeName(name, offset);
  CheckQName(*name.name, element, offset);
  // A full table takes nothing more; the name serves only the item it stands in.
  if (table.size() < kMaxTableEntries) table.push_back(name);
  return name.name;
}

bool CFastInfosetReader::ReadElementStart(std::uint8_t first) {
  const std::uint64_t offset = Position() - 1;
  if (m_depth >= kMaxDepth) FailAt("Elements nested too deeply", offset);
  std::uint8_t nameOctet = first;
  if ((first & 0x3F) == 0x38) {
    for (std::uint8_t item = Octet(); item != 0xF0; item = Octet()) {
      if ((item & 0xFC) != 0xCC) Fail("Invalid namespace declaration");
      const std::uint32_t prefix = (item & 0x02) != 0 ? IdentifyingIndex(Prefix) : 0;
      const std::uint32_t ns = (item & 0x01) != 0 ? IdentifyingIndex(NamespaceName) : 0;
      const std::string_view prefixText =
          prefix == 0 ? std::string_view() : std::string_view(Entry(Prefix, prefix, offset));
      const std::string_view nsText =
          ns == 0 ? std::string_view() : std::string_view(Entry(NamespaceName, ns, offset));
      if (!IsAllowedBinding(prefixText, nsText)) FailAt("Reserved prefix or namespace", offset);
      m_handler.OnNamespaceDeclaration(prefixText, nsText);
    }
    nameOctet = Octet();
    if ((nameOctet & 0xC0) != 0) Fail("Invalid element name");
  }
  const detail::CXmlEventName* elementName;
  if ((nameOctet & 0x3C) == 0x3C) {
    elementName = QNameLiteral(nameOctet, true);
  } else {
    const std::uint64_t at = Position() - 1;
    const std::uint32_t index = IntegerOnBit3(nameOctet);
    if (index > m_elementNames.size()) FailAt("Index out of the vocabulary table", at);
    elementName = m_elementNames[index - 1].name;
  }
  if (m_depth == 0 && m_sawDocumentElement) FailAt("Second document element", offset);
  const detail::CXmlEventName& name = *elementName;
  bool ended = false;
  m_attributes.clear();
  if ((first & 0x40) != 0) {
    // The values are gathered in one buffer, which a refill of the input does not move, and
    // viewed once they are all there.
    m_pendingAttributes.clear();
    m_attributeText.clear();
    for (;;) {
      const std::uint64_t at = Position();
      const std::uint8_t item = Octet();
      if (item == 0xF0 || item == 0xFF) {
        ended = item == 0xFF;
        break;
      }
      if ((item & 0x80) != 0) Fail("Invalid attribute");
      const detail::CXmlEventName* attributeName;
      if ((item & 0x7C) == 0x78) {
        attributeName = QNameLiteral(item, false);
      } else {
        const std::uint32_t nameIndex = IntegerOnBit2(item);
        if (nameIndex > m_attributeNames.size()) FailAt("Index out of the vocabulary table", at);
        attributeName = m_attributeNames[nameIndex - 1].name;
      }
      const std::string_view value = NonIdentifying(AttributeValue, m_scratch);
      m_pendingAttributes.push_back({attributeName, m_attributeText.size(), value.size()});
      m_attributeText.append(value);
    }
    for (const PendingAttribute& attribute : m_pendingAttributes) {
      m_attributes.push_back(
          {attribute.name,
           std::string_view(m_attributeText).substr(attribute.offset, attribute.size)});
    }
    CheckUniqueAttributes(offset);
  }
  m_sawDocumentElement = true;
  ++m_depth;
  m_handler.OnStartElement(name, m_attributes.data(), m_attributes.size());
  return ended;
}

void CFastInfosetReader::CheckQName(const detail::CXmlEventName& name, bool element,
                                    std::uint64_t offset) const {
  const std::string& ns = name.namespaceURI;
  bool allowed;
  if (ns.empty()) {
    // An attribute named xmlns in no namespace would be a namespace declaration in XML.
    allowed = element || name.localName != "xmlns";
  } else if (name.prefix.empty()) {
    // Written with a prefix of the writer's choice (xml for the XML namespace), or for an element
    // as the default namespace, which the XML namespace cannot be.
    allowed = ns != kXmlnsNamespace && (!element || ns != kXmlNamespace);
  } else {
    allowed = IsAllowedBinding(name.prefix, ns);
  }
  if (!allowed) FailAt("Reserved prefix or namespace", offset);
}

void CFastInfosetReader::CheckUniqueAttributes(std::uint64_t offset) {
  const auto same = [](const detail::CXmlEventName* a, const detail::CXmlEventName* b) {
    return a == b || (a->localName == b->localName && a->namespaceURI == b->namespaceURI);
  };
  const std::size_t count = m_pendingAttributes.size();
  if (count <= 16) {
    for (std::size_t i = 1; i < count; ++i) {
      for (std::size_t j = 0; j < i; ++j) {
        if (same(m_pendingAttributes[i].name, m_pendingAttributes[j].name)) {
          FailAt("Duplicate attribute", offset);
        }
      }
    }
    return;
  }
  // Many attributes: sorted by name, so that a hostile element costs n log n.
  m_sortedNames.clear();
  for (const PendingAttribute& attribute : m_pendingAttributes) {
    m_sortedNames.push_back(attribute.name);
  }
  const auto less = [](const detail::CXmlEventName* a, const detail::CXmlEventName* b) {
    const int local = a->localName.compare(b->localName);
    return local != 0 ? local < 0 : a->namespaceURI < b->namespaceURI;
  };
  std::sort(m_sortedNames.begin(), m_sortedNames.end(), less);
  if (std::adjacent_find(m_sortedNames.begin(), m_sortedNames.end(), same) != m_sortedNames.end()) {
    FailAt("Duplicate attribute", offset);
  }
}

void CFastInfosetReader::ReadProcessingInstruction(bool deliver) {
  const std::uint64_t offset = Position();
  const std::uint32_t target = IdentifyingIndex(OtherNCName);
  const std::string_view data = NonIdentifying(OtherString, m_scratch);
  if (deliver) m_handler.OnProcessingInstruction(Entry(OtherNCName, target, offset), data);
}

void CFastInfosetReader::SkipDocumentTypeDeclaration(std::uint8_t first, bool& documentEnded) {
  if ((first & 0x02) != 0) IdentifyingIndex(OtherURI);
  if ((first & 0x01) != 0) IdentifyingIndex(OtherURI);
  for (;;) {
    const std::uint8_t item = Octet();
    if (item == 0xF0) return;
    if (item == 0xFF) {
      documentEnded = true;
      return;
    }
    if (item != 0xE1) Fail("Invalid item in the document type declaration");
    // The declaration has no event, nor have the instructions inside it.
    ReadProcessingInstruction(false);
  }
}

void CFastInfosetReader::ReadBody() {
  bool sawDocumentType = false;
  bool documentEnded = false;
  while (!documentEnded) {
    const std::uint8_t item = Octet();
    const bool inElement = m_depth != 0;
    if (item < 0x80) {
      if (ReadElementStart(item)) {
        --m_depth;
        m_handler.OnEndElement();
      }
    } else if (item == 0xE1) {
      ReadProcessingInstruction(true);
    } else if (item == 0xE2) {
      m_handler.OnComment(NonIdentifying(OtherString, m_scratch));
    } else if (item == 0xF0 || item == 0xFF) {
      if (!inElement) {
        documentEnded = true;
      } else {
        --m_depth;
        m_handler.OnEndElement();
        if (item == 0xFF) {
          if (m_depth == 0) {
            documentEnded = true;
          } else {
            --m_depth;
            m_handler.OnEndElement();
          }
        }
      }
    } else if (inElement && item < 0xC0) {
      bool cdata = false;
      const std::string_view text = CharacterChunkText(item, cdata);
      if (cdata) {
        m_handler.OnStartCdata();
        m_handler.OnText(text);
        m_handler.OnEndCdata();
      } else {
        m_handler.OnText(text);
      }
    } else if (inElement && (item & 0xFC) == 0xC8) {
      // An unexpanded entity reference: its name and identifiers, for which there is no event.
      IdentifyingIndex(OtherNCName);
      if ((item & 0x02) != 0) IdentifyingIndex(OtherURI);
      if ((item & 0x01) != 0) IdentifyingIndex(OtherURI);
    } else if (!inElement && (item & 0xFC) == 0xC4 && !sawDocumentType && !m_sawDocumentElement) {
      sawDocumentType = true;
      SkipDocumentTypeDeclaration(item, documentEnded);
    } else {
      Fail("Invalid item");
    }
  }
  if (!m_sawDocumentElement) FailAt("No document element", Position());
  if (m_depth != 0) FailAt("Unterminated element", Position());
  if (!AtEnd()) FailAt("Data after the end of the document", Position());
}

void CFastInfosetReader::ReadDocument() {
  m_depth = 0;
  m_sawDocumentElement = false;
  for (std::vector<std::string>& table : m_tables) table.clear();
  m_tables[Prefix].assign(1, "xml");
  m_tables[NamespaceName].assign(1, kXmlNamespace);
  m_elementNames.clear();
  m_attributeNames.clear();
  m_names.clear();
  m_alphabets = m_context.GetFIContext().GetVocabulary()->GetRestrictedAlphabets();
  ReadHeader();
  ReadBody();
}

void CFastInfosetReader::Read(const unsigned char* data, std::size_t length, std::size_t start) {
  m_source = nullptr;
  m_data = data;
  m_length = length;
  m_pos = start;
  m_base = 0;
  ReadDocument();
}

void CFastInfosetReader::Read(detail::IByteSource& source) {
  m_source = &source;
  if (m_capacity != kWindowSize) {
    m_window.reset(new unsigned char[kWindowSize]);
    m_capacity = kWindowSize;
  }
  m_data = m_window.get();
  m_length = 0;
  m_pos = 0;
  m_base = 0;
  // Enough of the start to hold the longest XML declaration and the identification octets.
  while (m_length < kHeaderProbe) {
    const std::size_t got = source.Read(m_window.get() + m_length, m_capacity - m_length);
    if (got == 0) break;
    m_length += std::min(got, m_capacity - m_length);
  }
  const long start = FindHeader(m_data, m_length);
  if (start < 0) FailAt("No Fast Infoset header", 0);
  m_pos = static_cast<std::size_t>(start);
  ReadDocument();
}

}  // namespace OvXmlLib6
