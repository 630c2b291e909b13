// What the whole-path benchmarks share: the heap settings they run on, the raw expat parse they
// compare with, and glibc's count of the heap in use.
#ifndef OVXML_BENCH_BENCHSUPPORT_H
#define OVXML_BENCH_BENCHSUPPORT_H

#include <expat.h>

#include <cstddef>
#include <malloc.h>

namespace bench {

// Freed memory stays with the process (no trimming, no per-block mmap for the large buffers),
// so that every benchmark of the program runs on a warm heap unless it asks otherwise.
inline const bool kHeapKept = [] {
  mallopt(M_MMAP_THRESHOLD, 256 << 20);
  mallopt(M_TRIM_THRESHOLD, 512 << 20);
  return true;
}();

// Parses the bytes with a namespace-aware expat whose handlers only count, the floor any reader
// stands on. Returns the number of start and end tags plus the characters of text, or -1 when
// expat finds the document malformed.
inline long ParseWithExpat(const char* data, std::size_t length) {
  long events = 0;
  XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
  XML_SetUserData(parser, &events);
  XML_SetElementHandler(
      parser, [](void* user, const XML_Char*, const XML_Char**) { ++*static_cast<long*>(user); },
      [](void* user, const XML_Char*) { ++*static_cast<long*>(user); });
  XML_SetCharacterDataHandler(
      parser, [](void* user, const XML_Char*, int count) { *static_cast<long*>(user) += count; });
  if (XML_Parse(parser, data, static_cast<int>(length), 1) == XML_STATUS_ERROR) events = -1;
  XML_ParserFree(parser);
  return events;
}

// Bytes of heap in use by the process, as glibc counts them.
inline std::size_t HeapInUse() {
  const struct mallinfo2 info = mallinfo2();
  return info.uordblks + info.hblkhd;
}

}  // namespace bench

#endif  // OVXML_BENCH_BENCHSUPPORT_H
