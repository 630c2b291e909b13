// Helpers for the C strings that the public interface takes, where null stands for "empty".
#ifndef OVXMLLIB6_SRC_CORE_STRINGS_H
#define OVXMLLIB6_SRC_CORE_STRINGS_H

namespace OvXmlLib6 {
namespace detail {

// The text, or "" for null.
inline const char* OrEmpty(const char* text) { return text != nullptr ? text : ""; }

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_STRINGS_H
