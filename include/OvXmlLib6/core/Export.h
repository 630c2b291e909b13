// Symbol visibility for the library's public API.
//
// The library is built with hidden visibility: only declarations marked OVXML_API are exported
// from a shared build. In a static build the marker is harmless.
#ifndef OVXMLLIB6_CORE_EXPORT_H
#define OVXMLLIB6_CORE_EXPORT_H

#if defined(_WIN32)
#if defined(OVXML_SHARED)
#if defined(OVXML_BUILDING)
#define OVXML_API __declspec(dllexport)
#else
#define OVXML_API __declspec(dllimport)
#endif
#else
#define OVXML_API
#endif
#elif defined(__GNUC__) || defined(__clang__)
#define OVXML_API __attribute__((visibility("default")))
#else
#define OVXML_API
#endif

#if defined(__GNUC__) || defined(__clang__)
#define OVXML_PRINTF_FORMAT(fmt, first) __attribute__((format(printf, fmt, first)))
#else
#define OVXML_PRINTF_FORMAT(fmt, first)
#endif

#endif  // OVXMLLIB6_CORE_EXPORT_H
