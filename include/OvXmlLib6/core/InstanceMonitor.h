// CInstanceMonitor: a per-class instance hook. Library objects hold one constructed with their
// class name ("CXmlAttribute", "CStringBuffer", "Ci4Col", ...). It records nothing and has no
// fields, so it costs nothing; a build that counts live instances per class can give it a body.
#ifndef OVXMLLIB6_CORE_INSTANCEMONITOR_H
#define OVXMLLIB6_CORE_INSTANCEMONITOR_H

class CInstanceMonitor {
 public:
  explicit constexpr CInstanceMonitor(const char* /*className*/) noexcept {}
  constexpr CInstanceMonitor(const CInstanceMonitor&) noexcept = default;
  CInstanceMonitor& operator=(const CInstanceMonitor&) noexcept = default;
};

#endif  // OVXMLLIB6_CORE_INSTANCEMONITOR_H
