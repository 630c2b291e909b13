// The Unicode general category of every code point, as runs of equal category in code point
// order (the table is generated; see gen_unicode_categories.py).
#ifndef OVXMLLIB6_SRC_TYPES_UNICODECATEGORIES_H
#define OVXMLLIB6_SRC_TYPES_UNICODECATEGORIES_H

#include <cstdint>

namespace OvXmlLib6 {
namespace detail {

struct UnicodeCategoryRun {
  std::uint32_t first;    // first code point of the run; it lasts until the next run's first
  std::uint8_t category;  // index into kUnicodeCategoryNames
};

constexpr unsigned kUnicodeCategoryCount = 30;
// The two-letter names, "Cc" to "Zs", in alphabetical order.
extern const char* const kUnicodeCategoryNames[kUnicodeCategoryCount];
extern const UnicodeCategoryRun kUnicodeCategoryRuns[];
extern const unsigned kUnicodeCategoryRunCount;

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_UNICODECATEGORIES_H
