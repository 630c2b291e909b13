// UTF-8, UTF-16 and UTF-32 helpers over byte strings; no locale, no allocation beyond `out`.
#ifndef OVXMLLIB6_SRC_XML_UNICODE_H
#define OVXMLLIB6_SRC_XML_UNICODE_H

#include <cstddef>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// True when `text` is well-formed UTF-8 (no overlong forms, surrogates or code points above
// U+10FFFF).
bool IsValidUtf8(std::string_view text);

// True when `text` is well-formed UTF-8 of characters that XML 1.0 allows: tab, line feed,
// carriage return, U+0020 to U+D7FF, U+E000 to U+FFFD and U+10000 up (no other control
// character, no U+FFFE or U+FFFF), so that it can be written as XML text.
bool IsXmlText(std::string_view text);

// The writers refuse what no reader would take back: throws COvException "The control character
// [0x..] cannot be written: XML 1.0 does not allow it" for the first byte of `text` below 0x20
// other than tab, line feed and carriage return.
void CheckWritableControls(std::string_view text);
[[noreturn]] void ThrowUnwritableControl(unsigned char c);

// Decodes one UTF-8 sequence at `text[pos]`; returns its code point and advances `pos`, or
// returns -1 and leaves `pos` unchanged when the sequence there is not well-formed.
long DecodeUtf8(std::string_view text, std::size_t& pos);

void AppendUtf8(char32_t cp, std::string& out);
void AppendUtf16LE(char32_t cp, std::string& out);

// UTF-8 to UTF-16LE bytes. A byte that does not start a well-formed sequence is taken as the
// code point of the same value (as ISO-8859-1 would read it), so nothing is lost or rejected.
void Utf8ToUtf16LE(std::string_view in, std::string& out);

// Each byte as the code point of the same value, in UTF-8.
void Latin1ToUtf8(std::string_view in, std::string& out);

// UTF-8 where well-formed; other bytes widened as Latin1ToUtf8 does. Valid input is appended
// unchanged in one copy.
void RepairUtf8(std::string_view in, std::string& out);

// UTF-16 code units (host order) to UTF-16LE bytes, and UTF-32 code points to UTF-16LE bytes; an
// unpaired surrogate or a value above U+10FFFF becomes U+FFFD.
void Utf16ToUtf16LE(const char16_t* text, std::size_t length, std::string& out);
void Utf32ToUtf16LE(const char32_t* text, std::size_t length, std::string& out);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_UNICODE_H
