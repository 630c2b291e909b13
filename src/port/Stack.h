// The calling thread's stack, for code whose depth follows its input: it stops before the stack
// runs out instead of overflowing it.
#ifndef OVXMLLIB6_SRC_PORT_STACK_H
#define OVXMLLIB6_SRC_PORT_STACK_H

#include <cstdint>

namespace OvXmlLib6 {
namespace port {

// The lowest address of the calling thread's stack (stacks grow downwards on the platforms this
// builds on), or 0 when the platform does not say.
std::uintptr_t ThreadStackLimit();

}  // namespace port
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_PORT_STACK_H
