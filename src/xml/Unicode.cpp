#include "xml/Unicode.h"

#include "OvXmlLib6/core/Exceptions.h"

namespace OvXmlLib6 {
namespace detail {

namespace {
constexpr char32_t kReplacement = 0xFFFD;

inline unsigned char Byte(std::string_view text, std::size_t i) {
  return static_cast<unsigned char>(text[i]);
}
}  // namespace

long DecodeUtf8(std::string_view text, std::size_t& pos) {
  const std::size_t n = text.size();
  const unsigned char b0 = Byte(text, pos);
  if (b0 < 0x80) {
    ++pos;
    return b0;
  }
  std::size_t length;
  char32_t cp;
  char32_t min;
  if (b0 >= 0xC2 && b0 <= 0xDF) {
    length = 2;
    cp = b0 & 0x1F;
    min = 0x80;
  } else if (b0 >= 0xE0 && b0 <= 0xEF) {
    length = 3;
    cp = b0 & 0x0F;
    min = 0x800;
  } else if (b0 >= 0xF0 && b0 <= 0xF4) {
    length = 4;
    cp = b0 & 0x07;
    min = 0x10000;
  } else {
    return -1;
  }
  if (n - pos < length) return -1;
  for (std::size_t k = 1; k < length; ++k) {
    const unsigned char b = Byte(text, pos + k);
    if ((b & 0xC0) != 0x80) return -1;
    cp = (cp << 6) | (b & 0x3F);
  }
  if (cp < min || cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) return -1;
  pos += length;
  return static_cast<long>(cp);
}

bool IsValidUtf8(std::string_view text) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    // Runs of ASCII are the common case.
    while (pos < text.size() && Byte(text, pos) < 0x80) ++pos;
    if (pos < text.size() && DecodeUtf8(text, pos) < 0) return false;
  }
  return true;
}

bool IsXmlText(std::string_view text) {
  std::size_t pos = 0;
  while (pos < text.size()) {
    const unsigned char b = Byte(text, pos);
    if (b >= 0x20 && b < 0x80) {
      ++pos;
      continue;
    }
    if (b < 0x20) {
      if (b != '\t' && b != '\n' && b != '\r') return false;
      ++pos;
      continue;
    }
    const long cp = DecodeUtf8(text, pos);
    if (cp < 0 || cp == 0xFFFE || cp == 0xFFFF) return false;
  }
  return true;
}

void CheckWritableControls(std::string_view text) {
  for (const char c : text) {
    const unsigned char b = static_cast<unsigned char>(c);
    if (b < 0x20 && b != '\t' && b != '\n' && b != '\r') ThrowUnwritableControl(b);
  }
}

void ThrowUnwritableControl(unsigned char c) {
  throw COvException(
      FormatString("The control character [0x%02X] cannot be written: XML 1.0 does not allow it",
                   static_cast<unsigned>(c)));
}

void AppendUtf8(char32_t cp, std::string& out) {
  if (cp < 0x80) {
    out += static_cast<char>(cp);
  } else if (cp < 0x800) {
    out += static_cast<char>(0xC0 | (cp >> 6));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else if (cp < 0x10000) {
    out += static_cast<char>(0xE0 | (cp >> 12));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  } else {
    out += static_cast<char>(0xF0 | (cp >> 18));
    out += static_cast<char>(0x80 | ((cp >> 12) & 0x3F));
    out += static_cast<char>(0x80 | ((cp >> 6) & 0x3F));
    out += static_cast<char>(0x80 | (cp & 0x3F));
  }
}

void AppendUtf16LE(char32_t cp, std::string& out) {
  auto unit = [&out](char32_t u) {
    out += static_cast<char>(u & 0xFF);
    out += static_cast<char>(u >> 8);
  };
  if (cp > 0x10FFFF || (cp >= 0xD800 && cp <= 0xDFFF)) cp = kReplacement;
  if (cp < 0x10000) {
    unit(cp);
  } else {
    cp -= 0x10000;
    unit(0xD800 | (cp >> 10));
    unit(0xDC00 | (cp & 0x3FF));
  }
}

void Utf8ToUtf16LE(std::string_view in, std::string& out) {
  out.reserve(out.size() + 2 * in.size());
  std::size_t pos = 0;
  while (pos < in.size()) {
    const unsigned char b = Byte(in, pos);
    if (b < 0x80) {
      out += static_cast<char>(b);
      out += '\0';
      ++pos;
      continue;
    }
    const long cp = DecodeUtf8(in, pos);
    if (cp < 0) {
      AppendUtf16LE(b, out);
      ++pos;
    } else {
      AppendUtf16LE(static_cast<char32_t>(cp), out);
    }
  }
}

void Latin1ToUtf8(std::string_view in, std::string& out) {
  for (const char c : in) AppendUtf8(static_cast<unsigned char>(c), out);
}

void RepairUtf8(std::string_view in, std::string& out) {
  if (IsValidUtf8(in)) {
    out.append(in.data(), in.size());
    return;
  }
  std::size_t pos = 0;
  while (pos < in.size()) {
    const std::size_t start = pos;
    if (DecodeUtf8(in, pos) < 0) {
      AppendUtf8(Byte(in, pos), out);
      ++pos;
    } else {
      out.append(in.data() + start, pos - start);
    }
  }
}

void Utf16ToUtf16LE(const char16_t* text, std::size_t length, std::string& out) {
  out.reserve(out.size() + 2 * length);
  for (std::size_t i = 0; i < length; ++i) {
    char32_t cp = text[i];
    if (cp >= 0xD800 && cp <= 0xDBFF && i + 1 < length && text[i + 1] >= 0xDC00 &&
        text[i + 1] <= 0xDFFF) {
      cp = 0x10000 + ((cp - 0xD800) << 10) + (text[i + 1] - 0xDC00);
      ++i;
    }
    AppendUtf16LE(cp, out);
  }
}

void Utf32ToUtf16LE(const char32_t* text, std::size_t length, std::string& out) {
  out.reserve(out.size() + 2 * length);
  for (std::size_t i = 0; i < length; ++i) AppendUtf16LE(text[i], out);
}

}  // namespace detail
}  // namespace OvXmlLib6
