#include "OvXmlLib6/xml/XmlTextWriter.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <cstring>

namespace OvXmlLib6 {

namespace {

constexpr std::string_view kXmlNamespace = "http://www.w3.org/XML/1998/namespace";
constexpr std::string_view kXmlnsNamespace = "http://www.w3.org/2000/xmlns/";
constexpr char kCDataStart[] = "<![CDATA[";

// Most namespaces passed for attributes are empty: those cost no call to strlen.
std::string_view View(const char* text) {
  return text != nullptr && *text != '\0' ? std::string_view(text) : std::string_view();
}

// The bytes the escaping loop stops at: the terminating zero and the characters it replaces.
struct EscapeTable {
  bool stop[256] = {};
  constexpr EscapeTable() {
    for (unsigned char c : {'\0', '&', '<', '>', '"', '\n', '\r'}) stop[c] = true;
  }
};
constexpr EscapeTable kEscape;

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

CXmlTextWriter::CXmlTextWriter(CTextStream* stream)
    : CXmlWriter("CXmlTextWriter"),
      m_lineEnd("\n"),
      m_eolType(EOLType_LF),
      m_formatted(true),
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

void CXmlTextWriter::PutEscaped(const char* text) {
  if (text == nullptr) return;
  const char* run = text;
  const char* p = text;
  for (;;) {
    // Plain bytes are only scanned here, four at a time, and copied as one run below.
    for (;;) {
      if (kEscape.stop[static_cast<unsigned char>(p[0])]) break;
      if (kEscape.stop[static_cast<unsigned char>(p[1])]) {
        p += 1;
        break;
      }
      if (kEscape.stop[static_cast<unsigned char>(p[2])]) {
        p += 2;
        break;
      }
      if (kEscape.stop[static_cast<unsigned char>(p[3])]) {
        p += 3;
        break;
      }
      p += 4;
    }
    if (p != run) Put(run, static_cast<std::size_t>(p - run));
    switch (*p) {
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
        // The line-end string always matches a valid type: SetEOLType refuses any other.
        PutLineEnd();
        break;
      default:  // '\r' is dropped; line feeds carry the line end
        break;
    }
    run = ++p;
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

std::string_view CXmlTextWriter::PrefixFor(std::string_view ns, bool& declared) {
  // The xml and xmlns namespaces are bound by XML itself and must not be declared again.
  declared = false;
  if (ns == kXmlNamespace) return "xml";
  if (ns == kXmlnsNamespace) return "xmlns";
  if (const std::string* prefix = FindPrefix(ns)) return *prefix;
  declared = true;
  return Bind(ns, GeneratePrefix());
}

void CXmlTextWriter::WriteStartElement(const char* localName, const char* ns) {
  const std::string_view name = View(localName);
  if (name.empty()) throw COvInvalidParamException("An element's local name must not be empty");
  const std::string_view uri = View(ns);
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
  if (m_formatted) PutIndent(context->GetDepth());
  Put('<');
  if (!uri.empty() && uri != context->GetDefaultNamespace()) {
    bool declared = false;
    const std::string_view prefix = PrefixFor(uri, declared);
    Put(SetElementName(prefix, name));
    if (declared) {
      Put(" xmlns:", 7);
      Put(prefix);
      Put("=\"", 2);
      PutEscaped(ns);
      Put('"');
    }
  } else {
    Put(SetElementName(name));
  }
  if (parent == nullptr) {
    if (!GetPendingDefaultNamespace().empty()) {
      Put(" xmlns=\"", 8);
      PutEscaped(GetPendingDefaultNamespace());
      Put('"');
    }
    for (const auto& declaration : GetPendingDeclarations()) {
      Put(" xmlns:", 7);
      Put(declaration.second);
      Put("=\"", 2);
      PutEscaped(declaration.first);
      Put('"');
    }
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
    const std::string_view name =
        context->GetPrefix().empty() ? context->GetLocalName() : context->GetQualifiedName();
    Put(name.data(), name.size());
    Put('>');
  }
  if (m_formatted) PutLineEnd();
  PopContext();
  FlushIfNeeded();
}

void CXmlTextWriter::WriteText(const char* text, int /*itemType*/) {
  if (text == nullptr || *text == '\0') return;
  CloseStartTag();
  // Text kept as a CDATA section when it was read goes back out unchanged.
  if (*text == '<' && std::strncmp(text, kCDataStart, sizeof kCDataStart - 1) == 0) {
    Put(text, std::strlen(text));
  } else {
    PutEscaped(text);
  }
  FlushIfNeeded();
}

void CXmlTextWriter::PutAttribute(std::string_view localName, std::string_view ns,
                                  const char* value) {
  Put(' ');
  if (!ns.empty()) {
    bool declared = false;
    const std::string_view prefix = PrefixFor(ns, declared);
    if (declared) {
      Put("xmlns:", 6);
      Put(prefix);
      Put("=\"", 2);
      PutEscaped(ns.data());
      Put("\" ", 2);
    }
    Put(prefix);
    Put(':');
  }
  Put(localName.data(), localName.size());
  Put("=\"", 2);
  PutEscaped(value);
  Put('"');
  FlushIfNeeded();
}

void CXmlTextWriter::WriteAttribute(const char* localName, const char* ns, const char* value,
                                    int /*itemType*/) {
  CheckAttributeAllowed("attribute");
  const std::string_view name = View(localName);
  if (name.empty()) throw COvInvalidParamException("An attribute's local name must not be empty");
  PutAttribute(name, View(ns), value);
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
      PutEscaped(typeNamespace);
      Put("\" ", 2);
    }
    m_scratch = prefix;
    m_scratch += ':';
  }
  m_scratch += View(typeName);
  PutAttribute("type", kSchemaInstanceNamespace, m_scratch.c_str());
}

void CXmlTextWriter::WriteComment(const char* text) {
  // A comment inside a start tag would break it: close the tag as a child element would.
  const CXmlWriterContext* context = GetCurrentContext();
  if (context != nullptr && context->IsStartTagOpen()) {
    CloseStartTag();
    if (m_formatted) PutLineEnd();
  }
  Put("<!--", 4);
  PutEscaped(text);
  Put("-->", 3);
  PutLineEnd();
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

void CXmlTextWriter::WriteRawContent(const char* text) {
  CloseStartTag();
  Put(View(text).data(), View(text).size());
  FlushIfNeeded();
}

}  // namespace OvXmlLib6
