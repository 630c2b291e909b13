// The process-wide table of names (element and attribute names, namespace URIs) that readers
// share between the objects they make. The first kMaxSharedNames distinct names of at most
// kMaxSharedNameLength bytes become permanent strings, kept for the life of the process (well
// under a megabyte in all), so that the hundreds of thousands of objects read from documents of
// one vocabulary copy and drop their names without reference counting. Further names, and
// longer ones, get ordinary shared strings, so a hostile document cannot make the table grow
// past its bound.
#ifndef OVXMLLIB6_SRC_CORE_SHAREDNAMES_H
#define OVXMLLIB6_SRC_CORE_SHAREDNAMES_H

#include "OvXmlLib6/core/SharedString.h"

#include <cstddef>
#include <string_view>

namespace OvXmlLib6 {
namespace detail {

constexpr std::size_t kMaxSharedNames = 4096;
constexpr std::size_t kMaxSharedNameLength = 128;

// The shared string of a name. Thread-safe.
CSharedString SharedName(std::string_view name);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_SHAREDNAMES_H
