#include "OvXmlLib6/core/Exceptions.h"

#include <cstdarg>
#include <cstdio>
#include <cstring>
#include <string>

namespace OvXmlLib6 {

namespace {

// Rewrites the legacy size prefixes the C library does not know: "I64" becomes "ll", "F" and "N"
// (far and near pointer sizes) are dropped. Returns false when the format needs no rewriting.
bool NormaliseFormat(const char* format, std::string& out) {
  bool changed = false;
  const char* p = format;
  while (*p != '\0') {
    if (*p != '%') {
      out += *p++;
      continue;
    }
    out += *p++;
    if (*p == '%') {
      out += *p++;
      continue;
    }
    // Flags, width and precision pass through unchanged.
    while (*p != '\0' && std::char_traits<char>::find("-+0 #*.0123456789", 17, *p) != nullptr) {
      out += *p++;
    }
    // Size prefixes.
    for (;;) {
      if (p[0] == 'I' && p[1] == '6' && p[2] == '4') {
        out += "ll";
        p += 3;
        changed = true;
      } else if (*p == 'F' || *p == 'N') {
        ++p;
        changed = true;
      } else if (*p == 'h' || *p == 'l' || *p == 'L') {
        out += *p++;
      } else {
        break;
      }
    }
    if (*p != '\0') out += *p++;
  }
  return changed;
}

std::string VFormat(const char* format, va_list args) {
  va_list measure;
  va_copy(measure, args);
  const int needed = std::vsnprintf(nullptr, 0, format, measure);
  va_end(measure);
  if (needed <= 0) return std::string();
  // The exact length is known, so the output is never truncated.
  std::string result(static_cast<std::size_t>(needed) + 1, '\0');
  const int written = std::vsnprintf(&result[0], result.size(), format, args);
  result.resize(written > 0 ? static_cast<std::size_t>(written) : 0);
  return result;
}

}  // namespace

std::string FormatString(const char* format, ...) {
  if (format == nullptr) return std::string();
  std::string normalised;
  // Most formats hold none of the legacy prefixes; only those that might are rewritten.
  const bool rewrite =
      std::strpbrk(format, "IFN") != nullptr && NormaliseFormat(format, normalised);
  va_list args;
  va_start(args, format);
  std::string result = VFormat(rewrite ? normalised.c_str() : format, args);
  va_end(args);
  return result;
}

}  // namespace OvXmlLib6
