#include "port/Stack.h"

#include <pthread.h>

namespace OvXmlLib6 {
namespace port {

std::uintptr_t ThreadStackLimit() {
  pthread_attr_t attributes;
  if (pthread_getattr_np(pthread_self(), &attributes) != 0) return 0;
  void* low = nullptr;
  std::size_t size = 0;
  const int result = pthread_attr_getstack(&attributes, &low, &size);
  pthread_attr_destroy(&attributes);
  return result == 0 ? reinterpret_cast<std::uintptr_t>(low) : 0;
}

}  // namespace port
}  // namespace OvXmlLib6
