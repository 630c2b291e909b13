#include "OvXmlLib6/xml/XmlTextWriter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/Strings.h"
#include "xml/BufferAppend.h"
#include "xml/ExpatReader.h"
#include "xml/Unicode.h"
#include "xml/XmlWriterScopes.h"

#include <cstdint>
#include <cstring>

#if defined(__SSE2__) && (defined(__GNUC__) || defined(__clang__))
#include <emmintrin.h>
#endif

namespace OvXmlLib6 {

namespace {

// Most namespaces passed for attributes are empty: those cost no call to strlen.
std::string_view View(const char* text) {
  return text != nullptr && *text != '\0' ? std::string_view(text) : std::string_view();
}

// The bytes the escaping stops at: the characters it replaces or drops, NUL, which ends a text as
// it would a C string, and the other control characters, which XML 1.0 cannot carry. A line feed
// only needs replacing when the line end is CR LF.
struct EscapeTable {
  bool stop[256] = {};
  constexpr explicit EscapeTable(bool lineFeed) {
    for (unsigned c = 0; c < 0x20; ++c) stop[c] = c != '\t' && c != '\n';
    for (unsigned char c : {'&', '<', '>', '"'}) stop[c] = true;
    stop[static_cast<unsigned char>('\n')] = lineFeed;
  }
};
constexpr EscapeTable kEscapeLf(false);
constexpr EscapeTable kEscapeCrLf(true);

#if defined(__SSE2__) && (defined(__GNUC__) || defined(__clang__))
#define OVXML_ESCAPE_SSE2 1

// Bit i is set when byte i of `v` is one the escaping stops at; `passed` holds the control
// character that goes through as it is besides the tab: line feeds when they are not such bytes,
// else tabs.
inline unsigned StopMask(__m128i v, __m128i passed) {
  const __m128i control = _mm_cmpeq_epi8(_mm_min_epu8(v, _mm_set1_epi8(0x1F)), v);
  const __m128i plain =
      _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('\t')), _mm_cmpeq_epi8(v, passed));
  const __m128i hit =
      _mm_or_si128(_mm_or_si128(_mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('&')),
                                             _mm_cmpeq_epi8(v, _mm_set1_epi8('<'))),
                                _mm_or_si128(_mm_cmpeq_epi8(v, _mm_set1_epi8('>')),
                                             _mm_cmpeq_epi8(v, _mm_set1_epi8('"')))),
                   _mm_andnot_si128(plain, control));
  return static_cast<unsigned>(_mm_movemask_epi8(hit));
}

inline const char* FirstSet(const char* p, unsigned mask) { return p + __builtin_ctz(mask); }
#endif

// The first byte in [p, end) that `stops` marks, or `end`; `begin` (at most p) is where the text
// starts. With SSE2 the bytes are tested 16 at a time, and a shorter rest with loads that overlap
// bytes tested before (of the text, never outside it); `lineFeed` tells whether the table marks
// the line feed.
const char* FindStop(const char* begin, const char* p, const char* end, const bool* stops,
                     bool lineFeed) {
#if defined(OVXML_ESCAPE_SSE2)
  const __m128i lf = _mm_set1_epi8(lineFeed ? '\t' : '\n');
  while (end - p >= 16) {
    const unsigned mask = StopMask(_mm_loadu_si128(reinterpret_cast<const __m128i*>(p)), lf);
    if (mask != 0) return FirstSet(p, mask);
    p += 16;
  }
  const std::size_t rest = static_cast<std::size_t>(end - p);
  if (rest == 0) return end;
  if (end - begin >= 16) {
    // The text's last 16 bytes; the bits of those before p are shifted out.
    const unsigned mask =
        StopMask(_mm_loadu_si128(reinterpret_cast<const __m128i*>(end - 16)), lf) >> (16 - rest);
    return mask != 0 ? FirstSet(p, mask) : end;
  }
  if (rest >= 8) {
    // Two loads of 8 bytes, the second ending at `end`, cover the rest.
    std::uint64_t first;
    std::uint64_t last;
    std::memcpy(&first, p, 8);
    std::memcpy(&last, end - 8, 8);
    const unsigned mask =
        StopMask(_mm_set_epi64x(static_cast<long long>(last), static_cast<long long>(first)), lf);
    if ((mask & 0xFFu) != 0) return FirstSet(p, mask & 0xFFu);
    return mask != 0 ? FirstSet(end - 8, mask >> 8) : end;
  }
  if (rest >= 4) {
    std::uint32_t first;
    std::uint32_t last;
    std::memcpy(&first, p, 4);
    std::memcpy(&last, end - 4, 4);
    // The upper bytes are zeros, which test as NUL: only the low 8 bits count.
    const unsigned mask =
        StopMask(_mm_set_epi32(0, 0, static_cast<int>(last), static_cast<int>(first)), lf) & 0xFFu;
    if ((mask & 0xFu) != 0) return FirstSet(p, mask & 0xFu);
    return mask != 0 ? FirstSet(end - 4, mask >> 4) : end;
  }
#else
  (void)begin;
  (void)lineFeed;
  while (end - p >= 4) {
    if (stops[static_cast<unsigned char>(p[0])]) return p;
    if (stops[static_cast<unsigned char>(p[1])]) return p + 1;
    if (stops[static_cast<unsigned char>(p[2])]) return p + 2;
    if (stops[static_cast<unsigned char>(p[3])]) return p + 3;
    p += 4;
  }
#endif
  while (p != end && !stops[static_cast<unsigned char>(*p)]) ++p;
  return p;
}

const char* LineEndFor(EOLType type) {
  switch (type) {
    case EOLType_CRLF:
      return "\r\n";
    case EOLType_LF:
      return "\n";
  }
  throw COvException("Invalid EOL type.");
}

}  // namespace

inline void CXmlTextWriter::Put(const char* text, std::size_t length) {
  detail::CBufferAppend::Append(*m_stream, text, length);
}

inline void CXmlTextWriter::Put(std::string_view text) { Put(text.data(), text.size()); }

inline void CXmlTextWriter::Put(char c) { m_stream->Append(c); }

inline void CXmlTextWriter::PutLineEnd() { Put(m_lineEnd.data(), m_lineEnd.size()); }

CXmlTextWriter::CXmlTextWriter(CTextStream* stream)
    : CXmlWriter("CXmlTextWriter"),
      m_lineEnd("\n"),
      m_escapeStops(kEscapeLf.stop),
      m_eolType(EOLType_LF),
      m_formatted(true),
      m_exact(false),
      m_stream(stream) {
  if (stream == nullptr) {
    throw COvInvalidParamException("The XML text writer needs a stream to write to");
  }
}

CXmlTextWriter::~CXmlTextWriter() = default;

void CXmlTextWriter::Open() {
  CXmlWriter::Open();
  m_stream->Begin();
}

void CXmlTextWriter::Close() {
  m_stream->Finish();
  CXmlWriter::Close();
}

void CXmlTextWriter::SetEOLType(EOLType type) {
  m_lineEnd = LineEndFor(type);
  m_escapeStops = type == EOLType_CRLF ? kEscapeCrLf.stop : kEscapeLf.stop;
  m_eolType = type;
}

void CXmlTextWriter::WriteHeader() {
  static constexpr char kStart[] = "<?xml version=\"1.0\"";
  Put(kStart, sizeof kStart - 1);
  switch (m_stream->GetEncoding()) {
    case XmlEncoding_UTF8:
      Put(" encoding=\"UTF-8\"");
      break;
    case XmlEncoding_UTF16:
      Put(" encoding=\"UTF-16\"");
      break;
    default:
      break;
  }
  Put("?>", 2);
  PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::PutIndent(std::int32_t depth) {
  static constexpr char kTabs[] =
      "\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t\t";
  constexpr std::int32_t kCount = sizeof kTabs - 1;
  while (depth > 0) {
    const std::int32_t step = depth < kCount ? depth : kCount;
    Put(kTabs, static_cast<std::size_t>(step));
    depth -= step;
  }
}

void CXmlTextWriter::PutEscaped(std::string_view text) {
  if (text.empty()) return;
  const bool lineFeed = m_eolType == EOLType_CRLF;
  const char* p = text.data();
  const char* const end = p + text.size();
  for (;;) {
    // Plain bytes are only scanned, and copied as one run.
    const char* stop = FindStop(text.data(), p, end, m_escapeStops, lineFeed);
    if (stop != p) Put(p, static_cast<std::size_t>(stop - p));
    if (stop == end) return;
    switch (*stop) {
      case '\0':
        return;
      case '&':
        Put("&amp;", 5);
        break;
      case '<':
        Put("&lt;", 4);
        break;
      case '>':
        Put("&gt;", 4);
        break;
      case '"':
        Put("&quot;", 6);
        break;
      case '\n':
        // Only stopped at for CR LF line ends.
        PutLineEnd();
        break;
      case '\r':  // dropped, unless exact; line feeds carry the line end
        if (m_exact) Put("&#13;", 5);
        break;
      default:
        // No character reference can stand for them either.
        detail::ThrowUnwritableControl(static_cast<unsigned char>(*stop));
    }
    p = stop + 1;
  }
}

void CXmlTextWriter::CloseStartTag() {
  CXmlWriterContext* context = GetCurrentContext();
  if (context != nullptr && context->IsStartTagOpen()) {
    Put('>');
    context->MarkStartTagClosed();
  }
}

void CXmlTextWriter::CheckAttributeAllowed(const char* what) {
  const CXmlWriterContext* context = GetCurrentContext();
  if (context == nullptr) {
    throw COvInvalidStateException(
        FormatString("Cannot write the %s: no element is open to take it", what));
  }
  if (!context->IsStartTagOpen()) throw COvException("Attributes must be added before elements");
}

void CXmlTextWriter::WriteStartElement(const char* localName, const char* ns) {
  WriteStartElement(View(localName), View(ns));
}

void CXmlTextWriter::WriteStartElement(std::string_view name, std::string_view uri) {
  StartElement(name, uri, nullptr, 0);
}

void CXmlTextWriter::WriteStartElement(std::string_view name, std::string_view uri,
                                       const NamespaceDeclaration* declarations,
                                       std::size_t count) {
  StartElement(name, uri, declarations, count);
}

void CXmlTextWriter::PutDeclaration(std::string_view prefix, std::string_view ns) {
  if (prefix.empty()) {
    Put(" xmlns=\"", 8);
  } else {
    Put(" xmlns:", 7);
    Put(prefix);
    Put("=\"", 2);
  }
  PutEscaped(ns);
  Put('"');
}

void CXmlTextWriter::StartElement(std::string_view name, std::string_view uri,
                                  const NamespaceDeclaration* declarations, std::size_t count) {
  if (name.empty()) throw COvInvalidParamException("An element's local name must not be empty");
  detail::CheckWritableName(name, "element name", true);
  for (std::size_t i = 0; i < count; ++i) {
    if (!declarations[i].prefix.empty()) {
      detail::CheckWritableName(declarations[i].prefix, "namespace prefix", true);
    }
  }
  CXmlWriterContext* parent = GetCurrentContext();
  if (parent != nullptr) {
    parent->AddChild();
    if (parent->IsStartTagOpen()) {
      Put('>');
      if (m_formatted) PutLineEnd();
      parent->MarkStartTagClosed();
    }
  }
  CXmlWriterContext* context = PushContext();
  // The element's own declarations are in scope for its name and attributes.
  for (std::size_t i = 0; i < count; ++i) {
    if (declarations[i].prefix.empty()) {
      CXmlWriter::SetDefaultNamespace(std::string(declarations[i].ns).c_str());
    } else {
      Bind(declarations[i].ns, declarations[i].prefix);
    }
  }
  if (m_formatted) PutIndent(context->GetDepth());
  Put('<');
  if (!uri.empty() && uri != context->GetDefaultNamespace()) {
    bool declared = false;
    const std::string_view prefix = PrefixFor(uri, declared);
    Put(SetElementName(prefix, name));
    if (declared) PutDeclaration(prefix, uri);
  } else {
    Put(SetElementName(name));
  }
  if (parent == nullptr) {
    if (!GetPendingDefaultNamespace().empty()) PutDeclaration("", GetPendingDefaultNamespace());
    for (const auto& declaration : GetPendingDeclarations()) {
      PutDeclaration(declaration.second, declaration.first);
    }
  }
  for (std::size_t i = 0; i < count; ++i) {
    PutDeclaration(declarations[i].prefix, declarations[i].ns);
  }
  FlushIfNeeded();
}

void CXmlTextWriter::WriteEndElement() {
  CXmlWriterContext* context = GetCurrentContext();
  if (context == nullptr) {
    throw COvInvalidStateException("Cannot end an element: no element is open");
  }
  if (context->IsStartTagOpen()) {
    Put("/>", 2);
  } else {
    if (m_formatted && context->GetChildCount() > 0) PutIndent(context->GetDepth());
    Put("</", 2);
    // An empty prefix is not repeated: the end tag then has the local name alone.
    const detail::CXmlWriterScopes& scopes = *GetScopes();
    const detail::CXmlWriterFrame& frame = detail::CXmlWriterFrame::Of(context);
    const std::string_view name =
        scopes.Prefix(frame).empty() ? scopes.LocalName(frame) : scopes.QualifiedName(frame);
    Put(name.data(), name.size());
    Put('>');
  }
  if (m_formatted) PutLineEnd();
  PopContext();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteText(const char* text, int itemType) {
  if (text == nullptr || *text == '\0') return;
  WriteText(std::string_view(text), itemType);
}

void CXmlTextWriter::WriteText(std::string_view text, int /*itemType*/) {
  if (text.empty() || text[0] == '\0') return;
  CloseStartTag();
  PutText(text);
  FlushIfNeeded();
}

void CXmlTextWriter::PutText(std::string_view text) {
  // Text kept as a CDATA section when it was read goes back out unchanged.
  std::string_view inner;
  if (text[0] == '<' && detail::IsOneCDataSection(text, inner) &&
      std::memchr(text.data(), '\0', text.size()) == nullptr) {
    Put(text);
  } else {
    PutEscaped(text);
  }
}

void CXmlTextWriter::WriteTextElement(std::string_view name, std::string_view uri,
                                      std::string_view text, int itemType) {
  // The element needs no context when it declares nothing: inside another element (the document
  // element declares what is pending), in the default namespace or one with a prefix in scope.
  CXmlWriterContext* parent = GetCurrentContext();
  std::string_view prefix;
  const bool qualified = !uri.empty() && parent != nullptr && uri != parent->GetDefaultNamespace();
  if (parent == nullptr || name.empty() || (qualified && !FindBoundPrefix(uri, prefix))) {
    CXmlWriter::WriteTextElement(name, uri, text, itemType);
    return;
  }
  detail::CheckWritableName(name, "element name", true);
  // What StartElement, WriteText and WriteEndElement write for it.
  parent->AddChild();
  if (parent->IsStartTagOpen()) {
    Put('>');
    if (m_formatted) PutLineEnd();
    parent->MarkStartTagClosed();
  }
  if (m_formatted) PutIndent(parent->GetDepth() + 1);
  Put('<');
  if (qualified) {
    Put(prefix);
    Put(':');
  }
  Put(name);
  if (text.empty() || text[0] == '\0') {
    Put("/>", 2);
  } else {
    Put('>');
    PutText(text);
    Put("</", 2);
    // An empty prefix is not repeated in the end tag.
    if (!prefix.empty()) {
      Put(prefix);
      Put(':');
    }
    Put(name);
    Put('>');
  }
  if (m_formatted) PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::PutAttribute(std::string_view localName, std::string_view ns,
                                  std::string_view value) {
  Put(' ');
  if (!ns.empty()) {
    bool declared = false;
    const std::string_view prefix = PrefixFor(ns, declared);
    if (declared) {
      Put("xmlns:", 6);
      Put(prefix);
      Put("=\"", 2);
      PutEscaped(ns);
      Put("\" ", 2);
    }
    Put(prefix);
    Put(':');
  }
  Put(localName.data(), localName.size());
  Put("=\"", 2);
  if (m_exact) {
    // A parser reads tabs and line ends in attribute values as spaces: references keep them.
    for (;;) {
      const std::size_t at = value.find_first_of("\t\n\r");
      PutEscaped(value.substr(0, at));
      if (at == std::string_view::npos) break;
      Put(value[at] == '\t' ? "&#9;" : value[at] == '\n' ? "&#10;" : "&#13;");
      value.remove_prefix(at + 1);
    }
  } else {
    PutEscaped(value);
  }
  Put('"');
  FlushIfNeeded();
}

void CXmlTextWriter::WriteAttribute(const char* localName, const char* ns, const char* value,
                                    int itemType) {
  WriteAttribute(View(localName), View(ns), View(value), itemType);
}

void CXmlTextWriter::WriteAttribute(std::string_view localName, std::string_view ns,
                                    std::string_view value, int /*itemType*/) {
  CheckAttributeAllowed("attribute");
  if (localName.empty()) {
    throw COvInvalidParamException("An attribute's local name must not be empty");
  }
  detail::CheckWritableName(localName, "attribute name", true);
  PutAttribute(localName, ns, value);
}

void CXmlTextWriter::WriteXsiType(const char* typeName, const char* typeNamespace,
                                  int /*itemType*/) {
  CheckAttributeAllowed("xsi:type attribute");
  const std::string_view uri = View(typeNamespace);
  m_scratch.clear();
  if (!uri.empty() && uri != GetCurrentContext()->GetDefaultNamespace()) {
    bool declared = false;
    const std::string_view prefix = PrefixFor(uri, declared);
    if (declared) {
      Put(" xmlns:", 7);
      Put(prefix);
      Put("=\"", 2);
      PutEscaped(uri);
      Put("\" ", 2);
    }
    m_scratch = prefix;
    m_scratch += ':';
  }
  m_scratch += View(typeName);
  PutAttribute("type", kSchemaInstanceNamespace, m_scratch);
}

void CXmlTextWriter::CloseStartTagForChild() {
  // A comment or processing instruction inside a start tag would break it.
  const CXmlWriterContext* context = GetCurrentContext();
  if (context != nullptr && context->IsStartTagOpen()) {
    CloseStartTag();
    if (m_formatted) PutLineEnd();
  }
}

void CXmlTextWriter::WriteComment(const char* text) {
  CloseStartTagForChild();
  Put("<!--", 4);
  PutEscaped(View(text));
  Put("-->", 3);
  PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteProcessingInstruction(std::string_view target, std::string_view data) {
  if (target.empty() || target.find_first_of(" \t\r\n?") != std::string_view::npos)
    throw COvInvalidParamException("Invalid processing instruction target.");
  if (data.find("?>") != std::string_view::npos)
    throw COvInvalidParamException("Processing instruction data must not contain \"?>\".");
  CloseStartTagForChild();
  Put("<?", 2);
  Put(target);
  if (!data.empty()) {
    Put(' ');
    Put(data);
  }
  Put("?>", 2);
  if (GetCurrentContext() == nullptr || m_formatted) PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteVerbatimComment(std::string_view text) {
  if (text.find("--") != std::string_view::npos || (!text.empty() && text.back() == '-'))
    throw COvInvalidParamException("A comment must not contain \"--\" or end with \"-\".");
  CloseStartTagForChild();
  Put("<!--", 4);
  Put(text);
  Put("-->", 3);
  if (GetCurrentContext() == nullptr || m_formatted) PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteRawBlock(const char* text) {
  Put(View(text).data(), View(text).size());
  PutLineEnd();
  PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteRawLine(const char* text) {
  Put(' ');
  PutLineEnd();
  Put(View(text).data(), View(text).size());
  PutLineEnd();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteRawContent(const char* text) { WriteRawContent(View(text)); }

void CXmlTextWriter::WriteRawContent(std::string_view text) {
  CloseStartTag();
  Put(text);
  FlushIfNeeded();
}

}  // namespace OvXmlLib6
