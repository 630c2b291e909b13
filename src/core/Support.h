// The support address that some of the library's messages direct users to.
#ifndef OVXMLLIB6_SRC_CORE_SUPPORT_H
#define OVXMLLIB6_SRC_CORE_SUPPORT_H

namespace OvXmlLib6 {
namespace detail {

inline constexpr const char* kSupportAddress = "support@ovxmllib6.org";

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_SUPPORT_H
