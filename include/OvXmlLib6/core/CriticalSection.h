// COVCriticalSection: the library's only lock, a re-entrant mutual-exclusion section.
#ifndef OVXMLLIB6_CORE_CRITICALSECTION_H
#define OVXMLLIB6_CORE_CRITICALSECTION_H

#include "OvXmlLib6/core/Export.h"

#include <mutex>

class OVXML_API COVCriticalSection {
 public:
  COVCriticalSection() = default;
  COVCriticalSection(const COVCriticalSection&) = delete;
  COVCriticalSection& operator=(const COVCriticalSection&) = delete;
  virtual ~COVCriticalSection() = default;

  // Blocks until the calling thread owns the section; the owner may enter again.
  void Enter() { m_mutex.lock(); }
  // Leaves the section once; it is free when every Enter has been matched.
  void Leave() { m_mutex.unlock(); }

 private:
  std::recursive_mutex m_mutex;
};

namespace OvXmlLib6 {

// Holds a section for the lifetime of a scope, so every path out of it leaves the section.
class CCriticalSectionLock {
 public:
  explicit CCriticalSectionLock(COVCriticalSection& section) : m_section(section) {
    m_section.Enter();
  }
  CCriticalSectionLock(const CCriticalSectionLock&) = delete;
  CCriticalSectionLock& operator=(const CCriticalSectionLock&) = delete;
  ~CCriticalSectionLock() { m_section.Leave(); }

 private:
  COVCriticalSection& m_section;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_CRITICALSECTION_H
