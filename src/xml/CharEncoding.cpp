#include "OvXmlLib6/xml/CharEncoding.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "xml/CharEncoding.h"
#include "xml/Unicode.h"

namespace OvXmlLib6 {

namespace {
unsigned g_codePage = 0;
bool g_asciiOnly = false;

// Code page 0 is the system's code page, UTF-8 on POSIX systems.
unsigned EffectiveCodePage(unsigned codePage) { return codePage == 0 ? 65001 : codePage; }

std::unique_ptr<port::CCodePageConverter> OpenConverter(const char* to, const char* from,
                                                        unsigned codePage) {
  std::unique_ptr<port::CCodePageConverter> converter(new port::CCodePageConverter(to, from));
  if (!converter->IsOpen()) {
    throw COvException(FormatString(
        "The C library cannot convert text of code page [%u] from %s to %s", codePage, from, to));
  }
  return converter;
}
}  // namespace

void SetLocalCharEncoding(unsigned int codePage) {
  if (port::CodePageCharset(EffectiveCodePage(codePage)) == nullptr) {
    throw COvInvalidParamException(
        FormatString("Unsupported code page [%u] for the internal character encoding", codePage));
  }
  g_codePage = codePage;
}

unsigned int GetLocalCharEncoding() { return g_codePage; }

void ASCIIOnly(bool on) { g_asciiOnly = on; }

bool IsASCIIOnly() { return g_asciiOnly; }

namespace detail {

CTextEncoder::CTextEncoder()
    : m_passThrough(g_asciiOnly),
      m_utf8(EffectiveCodePage(g_codePage) == 65001),
      m_codePage(EffectiveCodePage(g_codePage)) {}

void CTextEncoder::FromUtf8(std::string_view in, std::string& out) {
  if (m_passThrough) {
    out.append(in.data(), in.size());
    return;
  }
  if (m_utf8) {
    RepairUtf8(in, out);
    return;
  }
  if (!m_fromUtf8) {
    m_fromUtf8 = OpenConverter(port::CodePageCharset(m_codePage), "UTF-8", m_codePage);
  }
  if (IsValidUtf8(in)) {
    m_fromUtf8->Convert(in, out);
  } else {
    std::string repaired;
    RepairUtf8(in, repaired);
    m_fromUtf8->Convert(repaired, out);
  }
}

void CTextEncoder::ToUtf8(std::string_view in, std::string& out) {
  if (m_passThrough) {
    out.append(in.data(), in.size());
    return;
  }
  if (m_utf8) {
    RepairUtf8(in, out);
    return;
  }
  if (!m_toUtf8) {
    m_toUtf8 = OpenConverter("UTF-8", port::CodePageCharset(m_codePage), m_codePage);
  }
  m_toUtf8->Convert(in, out);
}

void CTextEncoder::ToUtf16LE(std::string_view in, std::string& out) {
  if (m_passThrough || m_utf8) {
    Utf8ToUtf16LE(in, out);
    return;
  }
  std::string utf8;
  ToUtf8(in, utf8);
  Utf8ToUtf16LE(utf8, out);
}

}  // namespace detail
}  // namespace OvXmlLib6
