#include "fastinfoset/FastInfosetReader.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/fastinfoset/Encodings.h"
#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"
#include "core/Strings.h"
#include "fastinfoset/EncodingAlgorithms.h"
#include "xml/TreeStore.h"
#include "xml/Unicode.h"

#include <cstring>

namespace OvXmlLib6 {

namespace {

constexpr std::size_t kMaxTableEntries = 1u << 20;
// Deeper documents are refused: the open elements cost memory the input does not pay for.
constexpr std::size_t kMaxDepth = 100000;
constexpr std::uint32_t kBuiltInAlgorithms = 10;

const char kXmlNamespace[] = "http://www.w3.org/XML/1998/namespace";
const unsigned char kIdentification[] = {0xE0, 0x00, 0x00, 0x01};

// The XML declarations that may precede the binary header, byte for byte.
const char* const kDeclarations[] = {
    "<?xml encoding='finf'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
};

bool HasIdentificationAt(const unsigned char* data, std::size_t length, std::size_t at) {
  return length >= at + sizeof kIdentification &&
         std::memcmp(data + at, kIdentification, sizeof kIdentification) == 0;
}

// True when the text has a carriage return or NUL byte, which the tree drops from text.
bool NeedsFiltering(const std::string& text) {
  return text.find('\r') != std::string::npos || text.find('\0') != std::string::npos;
}

}  // namespace

long CFastInfosetReader::FindHeader(const unsigned char* data, std::size_t length) {
  if (data == nullptr) return -1;
  if (HasIdentificationAt(data, length, 0)) return 0;
  for (const char* declaration : kDeclarations) {
    const std::size_t size = std::strlen(declaration);
    if (length >= size && std::memcmp(data, declaration, size) == 0 &&
        HasIdentificationAt(data, length, size)) {
      return static_cast<long>(size);
    }
  }
  return -1;
}

CFastInfosetReader::CFastInfosetReader(CXmlDocument* document, const unsigned char* data,
                                       std::size_t length)
    : m_document(document),
      m_store(document->m_store.get()),
      m_data(data),
      m_length(length),
      m_pos(0),
      m_keepCDATA(!document->m_context->GetStripCDATA()) {}

CFastInfosetReader::~CFastInfosetReader() {
  try {
    m_document->FlushOpenText();
  } catch (...) {
    // Out of memory while keeping partial text: that text is lost, the failure itself goes on.
  }
}

// ---- Failures and octets ------------------------------------------------------------------

void CFastInfosetReader::FailAt(const char* what, std::size_t offset) const {
  throw COvException(FormatString("Failed to parse FastInfoset. %s at byte offset %lu", what,
                                  static_cast<unsigned long>(offset)));
}

void CFastInfosetReader::Fail(const char* what) const { FailAt(what, m_pos == 0 ? 0 : m_pos - 1); }

std::uint8_t CFastInfosetReader::Octet() {
  if (m_pos >= m_length) FailAt("Unexpected end of data", m_pos);
  return m_data[m_pos++];
}

const unsigned char* CFastInfosetReader::Take(std::uint64_t count) {
  if (count > m_length - m_pos) FailAt("Length beyond the end of data", m_pos);
  const unsigned char* p = m_data + m_pos;
  m_pos += static_cast<std::size_t>(count);
  return p;
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

std::pair<const unsigned char*, std::size_t> CFastInfosetReader::OctetString() {
  const std::uint8_t first = Octet();
  if ((first & 0x80) != 0) Fail("Invalid octet string");
  const std::uint64_t length = LengthOnBit2(first);
  const unsigned char* p = Take(length);
  return {p, static_cast<std::size_t>(length)};
}

// ---- Strings ------------------------------------------------------------------------------

const std::string& CFastInfosetReader::Entry(StringTable table, std::uint32_t index,
                                             std::size_t offset) const {
  const std::vector<std::string>& entries = m_tables[table];
  if (index == 0 || index > entries.size()) FailAt("Index out of the vocabulary table", offset);
  return entries[index - 1];
}

void CFastInfosetReader::AddTo(StringTable table, const std::string& text) {
  if (m_tables[table].size() < kMaxTableEntries) m_tables[table].push_back(text);
}

void CFastInfosetReader::Utf8Text(const unsigned char* p, std::size_t length, std::size_t offset,
                                  std::string& out) {
  const std::string_view text(reinterpret_cast<const char*>(p), length);
  if (!detail::IsValidUtf8(text)) FailAt("Invalid UTF-8 string", offset);
  m_store->Encoder().FromUtf8(text, out);
}

std::uint32_t CFastInfosetReader::IdentifyingIndex(StringTable table) {
  const std::size_t offset = m_pos;
  const std::uint8_t first = Octet();
  if ((first & 0x80) != 0) {
    const std::uint32_t index = IntegerOnBit2(first);
    Entry(table, index, offset);
    return index;
  }
  const std::uint64_t length = LengthOnBit2(first);
  const std::size_t start = m_pos;
  const unsigned char* p = Take(length);
  std::string text;
  Utf8Text(p, static_cast<std::size_t>(length), start, text);
  if (m_tables[table].size() >= kMaxTableEntries) {
    // A full table takes nothing more; the literal is usable only where it stands, which an
    // index cannot express.
    FailAt("Vocabulary table full", offset);
  }
  m_tables[table].push_back(std::move(text));
  return static_cast<std::uint32_t>(m_tables[table].size());
}

void CFastInfosetReader::NonIdentifying(StringTable table, std::string& out) {
  const std::size_t offset = m_pos;
  const std::uint8_t first = Octet();
  out.clear();
  if (first == 0xFF) return;
  if ((first & 0x80) != 0) {
    out = Entry(table, IntegerOnBit2(first), offset);
    return;
  }
  if (NonIdentifyingLiteral(first, out)) AddTo(table, out);
}

bool CFastInfosetReader::NonIdentifyingLiteral(std::uint8_t first, std::string& out) {
  const int kind = (first >> 4) & 0x03;
  std::uint32_t id = 0;
  std::uint8_t lengthBits = first;
  if (kind >= 2) {
    const std::uint8_t second = Octet();
    id = ((first & 0x0Fu) << 4) | (second >> 4);
    lengthBits = second;
  }
  DecodePayload(kind, id, LengthOnBit5(lengthBits), out);
  return (first & 0x40) != 0;
}

void CFastInfosetReader::CharacterChunkText(std::uint8_t first, std::string& out, bool& cdata) {
  const std::size_t offset = m_pos - 1;
  out.clear();
  cdata = false;
  if ((first & 0x20) != 0) {
    out = Entry(CharacterChunk, IntegerOnBit4(first), offset);
    return;
  }
  const int kind = (first >> 2) & 0x03;
  std::uint32_t id = 0;
  std::uint8_t lengthBits = first;
  if (kind >= 2) {
    const std::uint8_t second = Octet();
    id = ((first & 0x03u) << 6) | (second >> 2);
    lengthBits = second;
  }
  DecodePayload(kind, id, LengthOnBit7(lengthBits), out);
  cdata = kind == 3 && id + 1 == FIAlgorithm_CDATA;
  if ((first & 0x10) != 0) AddTo(CharacterChunk, out);
}

void CFastInfosetReader::DecodePayload(int kind, std::uint32_t id, std::uint64_t length,
                                       std::string& out) {
  const std::size_t offset = m_pos;
  const unsigned char* p = Take(length);
  const std::size_t size = static_cast<std::size_t>(length);
  switch (kind) {
    case 0:
      Utf8Text(p, size, offset, out);
      return;
    case 1: {
      if (size % 2 != 0) FailAt("Odd length of a UTF-16 string", offset);
      std::string utf8;
      for (std::size_t i = 0; i < size; i += 2) {
        char32_t unit = static_cast<char32_t>((p[i] << 8) | p[i + 1]);
        if (unit >= 0xDC00 && unit <= 0xDFFF) FailAt("Invalid UTF-16 string", offset + i);
        if (unit >= 0xD800 && unit <= 0xDBFF) {
          const char32_t low = i + 3 < size ? static_cast<char32_t>((p[i + 2] << 8) | p[i + 3]) : 0;
          if (low < 0xDC00 || low > 0xDFFF) FailAt("Invalid UTF-16 string", offset + i);
          unit = 0x10000 + ((unit - 0xD800) << 10) + (low - 0xDC00);
          i += 2;
        }
        detail::AppendUtf8(unit, utf8);
      }
      m_store->Encoder().FromUtf8(utf8, out);
      return;
    }
    case 2: {
      if (id >= m_alphabets.size()) FailAt("Unknown restricted alphabet", offset);
      // The characters of the alphabet; the code of each is its position.
      const std::string& alphabet = m_alphabets[id];
      std::vector<std::string_view> characters;
      for (std::size_t at = 0; at < alphabet.size();) {
        const std::size_t begin = at;
        if (detail::DecodeUtf8(alphabet, at) < 0) ++at;
        characters.push_back(std::string_view(alphabet).substr(begin, at - begin));
      }
      int bits = 1;
      while ((std::size_t{1} << bits) <= characters.size()) ++bits;
      const std::uint32_t end = (1u << bits) - 1;
      std::string utf8;
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
          utf8.append(characters[code]);
        }
        buffer &= (1u << held) - 1;
      }
      m_store->Encoder().FromUtf8(utf8, out);
      return;
    }
    default:
      if (id + 1 > kBuiltInAlgorithms) FailAt("Unknown encoding algorithm", offset);
      try {
        out = detail::DecodeAlgorithm(id + 1, p, p + size);
      } catch (const COvException& e) {
        FailAt(e.GetMessage().c_str(), offset);
      }
      return;
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

void CFastInfosetReader::SeedExternalVocabulary(const std::string& uri, std::size_t offset) {
  const CFastInfosetContext& fi = m_document->m_context->GetFIContext();
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
  // The vocabulary keeps the built-in namespace in its own spelling; the tree gets the real one.
  if (!m_tables[NamespaceName].empty()) m_tables[NamespaceName][0] = kXmlNamespace;
  const auto names = [this, offset](const CFIQNameTable& from, std::vector<QName>& to) {
    to.clear();
    for (const CQNameParts& parts : from) {
      const std::string& local = Entry(LocalName, parts.localName, offset);
      const std::string& ns = parts.namespaceName == 0
                                  ? std::string()
                                  : Entry(NamespaceName, parts.namespaceName, offset);
      to.push_back(
          {parts.prefix, parts.namespaceName, parts.localName, m_store->Intern(ns, local)});
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
    const std::size_t offset = m_pos;
    const auto uri = OctetString();
    std::string text;
    Utf8Text(uri.first, uri.second, offset, text);
    SeedExternalVocabulary(text, offset);
  }
  // Each table: a count, then its entries, which are appended after the built-ins.
  const auto strings = [this](StringTable table, std::vector<std::string>* to) {
    for (std::uint32_t n = Count(); n > 0; --n) {
      const std::size_t offset = m_pos;
      const auto entry = OctetString();
      std::string text;
      if (to == &m_alphabets) {
        if (!detail::IsValidUtf8(
                std::string_view(reinterpret_cast<const char*>(entry.first), entry.second))) {
          FailAt("Invalid UTF-8 string", offset);
        }
        text.assign(reinterpret_cast<const char*>(entry.first), entry.second);
      } else {
        Utf8Text(entry.first, entry.second, offset, text);
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
      std::string text;
      NonIdentifyingLiteral(first, text);
      AddTo(values[i], text);
    }
  }
  for (int i = 0; i < 2; ++i) {
    if ((low & (0x02 >> i)) == 0) continue;
    std::vector<QName>& to = i == 0 ? m_elementNames : m_attributeNames;
    for (std::uint32_t n = Count(); n > 0; --n) {
      const std::size_t offset = m_pos;
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
      if (name.prefix != 0) Entry(Prefix, name.prefix, offset);
      const std::string& ns = name.namespaceName == 0
                                  ? std::string()
                                  : Entry(NamespaceName, name.namespaceName, offset);
      name.name = m_store->Intern(ns, Entry(LocalName, name.localName, offset));
      if (to.size() < kMaxTableEntries) to.push_back(name);
    }
  }
}

// ---- Body ---------------------------------------------------------------------------------

std::uint32_t CFastInfosetReader::QNameLiteral(std::uint8_t flags, bool element) {
  if ((flags & 0x03) == 0x02) Fail("Prefix without a namespace name");
  const std::size_t offset = m_pos - 1;
  QName name{0, 0, 0, nullptr};
  if ((flags & 0x02) != 0) name.prefix = IdentifyingIndex(Prefix);
  if ((flags & 0x01) != 0) name.namespaceName = IdentifyingIndex(NamespaceName);
  name.localName = IdentifyingIndex(LocalName);
  const std::string& ns =
      name.namespaceName == 0 ? std::string() : Entry(NamespaceName, name.namespaceName, offset);
  name.name = m_store->Intern(ns, Entry(LocalName, name.localName, offset));
  std::vector<QName>& table = element ? m_elementNames : m_attributeNames;
  if (table.size() >= kMaxTableEntries) FailAt("Vocabulary table full", offset);
  table.push_back(name);
  return static_cast<std::uint32_t>(table.size());
}

bool CFastInfosetReader::ReadElementStart(std::uint8_t first) {
  const std::size_t offset = m_pos - 1;
  if (m_document->m_elementStack.size() >= kMaxDepth) FailAt("Elements nested too deeply", offset);
  std::uint8_t nameOctet = first;
  if ((first & 0x3F) == 0x38) {
    for (std::uint8_t item = Octet(); item != 0xF0; item = Octet()) {
      if ((item & 0xFC) != 0xCC) Fail("Invalid namespace declaration");
      const std::uint32_t prefix = (item & 0x02) != 0 ? IdentifyingIndex(Prefix) : 0;
      const std::uint32_t ns = (item & 0x01) != 0 ? IdentifyingIndex(NamespaceName) : 0;
      m_document->m_aliases[prefix == 0 ? std::string() : m_tables[Prefix][prefix - 1]] =
          ns == 0 ? std::string() : m_tables[NamespaceName][ns - 1];
    }
    nameOctet = Octet();
    if ((nameOctet & 0xC0) != 0) Fail("Invalid element name");
  }
  std::uint32_t index;
  if ((nameOctet & 0x3C) == 0x3C) {
    index = QNameLiteral(nameOctet, true);
  } else {
    const std::size_t at = m_pos - 1;
    index = IntegerOnBit3(nameOctet);
    if (index > m_elementNames.size()) FailAt("Index out of the vocabulary table", at);
  }
  if (m_document->m_elementStack.empty() && m_document->m_documentElement != nullptr) {
    FailAt("Second document element", offset);
  }
  CXmlElement* element = m_document->AddElement(m_elementNames[index - 1].name);
  bool ended = false;
  if ((first & 0x40) != 0) {
    m_attributes.clear();
    for (;;) {
      const std::size_t at = m_pos;
      const std::uint8_t item = Octet();
      if (item == 0xF0 || item == 0xFF) {
        ended = item == 0xFF;
        break;
      }
      if ((item & 0x80) != 0) Fail("Invalid attribute");
      std::uint32_t nameIndex;
      if ((item & 0x7C) == 0x78) {
        nameIndex = QNameLiteral(item, false);
      } else {
        nameIndex = IntegerOnBit2(item);
        if (nameIndex > m_attributeNames.size()) FailAt("Index out of the vocabulary table", at);
      }
      NonIdentifying(AttributeValue, m_scratch);
      m_attributes.emplace_back(m_attributeNames[nameIndex - 1].name, m_scratch);
    }
    std::uintptr_t& list = detail::CTreeStore::AttributeSlot(element);
    list = m_store->NewAttributeList(m_attributes.size());
    for (const auto& attribute : m_attributes) {
      m_store->AddToAttributeList(
          list, m_store->NewAttribute(attribute.first, m_store->NewText(attribute.second.data(),
                                                                        attribute.second.size())));
    }
  }
  m_document->ElementStarted(element);
  return ended;
}

void CFastInfosetReader::SkipProcessingInstruction() {
  IdentifyingIndex(OtherNCName);
  NonIdentifying(OtherString, m_scratch);
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
    SkipProcessingInstruction();
  }
}

void CFastInfosetReader::ReadBody() {
  std::vector<CXmlElement*>& stack = m_document->m_elementStack;
  bool sawDocumentType = false;
  bool documentEnded = false;
  std::string text;
  while (!documentEnded) {
    const std::uint8_t item = Octet();
    const bool inElement = !stack.empty();
    if (item < 0x80) {
      if (ReadElementStart(item)) {
        m_document->EndElement();
      }
    } else if (item == 0xE1) {
      SkipProcessingInstruction();
    } else if (item == 0xE2) {
      NonIdentifying(OtherString, m_scratch);
    } else if (item == 0xF0 || item == 0xFF) {
      if (!inElement) {
        documentEnded = true;
      } else {
        m_document->EndElement();
        if (item == 0xFF) {
          if (stack.empty()) {
            documentEnded = true;
          } else {
            m_document->EndElement();
          }
        }
      }
    } else if (inElement && item < 0xC0) {
      bool cdata = false;
      CharacterChunkText(item, text, cdata);
      if (cdata && m_keepCDATA) text = "<![CDATA[" + text + "]]>";
      m_document->AppendOpenText(text.data(), text.size(), !NeedsFiltering(text));
    } else if (inElement && (item & 0xFC) == 0xC8) {
      // An unexpanded entity reference: its name and identifiers; the tree has no place for it.
      IdentifyingIndex(OtherNCName);
      if ((item & 0x02) != 0) IdentifyingIndex(OtherURI);
      if ((item & 0x01) != 0) IdentifyingIndex(OtherURI);
    } else if (!inElement && (item & 0xFC) == 0xC4 && !sawDocumentType &&
               m_document->m_documentElement == nullptr) {
      sawDocumentType = true;
      SkipDocumentTypeDeclaration(item, documentEnded);
    } else {
      Fail("Invalid item");
    }
  }
  if (m_document->m_documentElement == nullptr) FailAt("No document element", m_pos);
  if (!stack.empty()) FailAt("Unterminated element", m_pos);
  if (m_pos != m_length) FailAt("Data after the end of the document", m_pos);
}

void CFastInfosetReader::Read(std::size_t start) {
  m_pos = start;
  m_tables[Prefix].assign(1, "xml");
  m_tables[NamespaceName].assign(1, kXmlNamespace);
  m_alphabets = m_document->m_context->GetFIContext().GetVocabulary()->GetRestrictedAlphabets();
  ReadHeader();
  ReadBody();
}

}  // namespace OvXmlLib6
