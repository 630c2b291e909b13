#include "OvXmlLib6/metadata/XmlCollectionBase.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <algorithm>
#include <memory>
#include <vector>

namespace OvXmlLib6 {

struct CXmlCollectionBase::CListeners {
  std::vector<IEventSink*> sinks;
  // Events in progress; while above 0, removed listeners are only nulled out, so that the
  // iteration over the vector stays valid, and the vector is compacted afterwards.
  int firing = 0;
  bool removed = false;
};

CXmlCollectionBase::CXmlCollectionBase() : m_listeners(nullptr), m_minOccurs(0), m_maxOccurs(-1) {}

CXmlCollectionBase::CXmlCollectionBase(const char* elementName, const char* ns, int minOccurs,
                                       int maxOccurs)
    : CXmlCollectionBase(CSharedString(elementName), CSharedString(ns), minOccurs, maxOccurs) {}

CXmlCollectionBase::CXmlCollectionBase(const CSharedString& elementName, const CSharedString& ns,
                                       int minOccurs, int maxOccurs)
    : m_elementName(elementName),
      m_elementNamespace(ns),
      m_listeners(nullptr),
      m_minOccurs(minOccurs),
      m_maxOccurs(maxOccurs) {
  SetElementName(m_elementName);
}

CXmlCollectionBase::CXmlCollectionBase(const CXmlCollectionBase& other)
    : CXmlObjectBase(other),
      m_elementName(other.m_elementName),
      m_elementNamespace(other.m_elementNamespace),
      m_listeners(nullptr),
      m_minOccurs(other.m_minOccurs),
      m_maxOccurs(other.m_maxOccurs) {}

CXmlCollectionBase& CXmlCollectionBase::operator=(const CXmlCollectionBase& other) {
  if (this != &other) {
    CXmlObjectBase::operator=(other);
    m_elementName = other.m_elementName;
    m_elementNamespace = other.m_elementNamespace;
    m_minOccurs = other.m_minOccurs;
    m_maxOccurs = other.m_maxOccurs;
  }
  return *this;
}

CXmlCollectionBase::~CXmlCollectionBase() { delete m_listeners; }

void CXmlCollectionBase::AddEventListener(IEventSink* listener) {
  if (listener == nullptr) return;
  if (m_listeners == nullptr) {
    std::unique_ptr<CListeners> made(new CListeners());
    made->sinks.push_back(listener);
    m_listeners = made.release();
    return;
  }
  m_listeners->sinks.push_back(listener);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* listener) {
  if (m_listeners == nullptr) return;
  std::vector<IEventSink*>& sinks = m_listeners->sinks;
  if (m_listeners->firing > 0) {
    // An event is being delivered over this vector: blank the entries out instead of erasing
    // them, and compact once the outermost event is done.
    for (IEventSink*& entry : sinks) {
      if (entry == listener) {
        entry = nullptr;
        m_listeners->removed = true;
      }
    }
    return;
  }
  sinks.erase(std::remove(sinks.begin(), sinks.end(), listener), sinks.end());
  DropEmptyListeners();
}

void CXmlCollectionBase::DropEmptyListeners() noexcept {
  if (m_listeners != nullptr && m_listeners->firing == 0 && m_listeners->sinks.empty()) {
    delete m_listeners;
    m_listeners = nullptr;
  }
}

void CXmlCollectionBase::ValidateCount(const CXmlSerializationContext& context) const {
  if (context.GetIgnoreInvalidCollectionCounts()) return;
  const int count = GetCount();
  if (m_maxOccurs != -1 && count > m_maxOccurs) {
    throw COvValidationException(
        FormatString("The Maximum number of [%s] elements allowed in this collection is %d",
                     m_elementName.c_str(), static_cast<int>(m_maxOccurs)));
  }
  if (count < m_minOccurs) {
    throw COvValidationException(
        FormatString("The Minimum number of [%s] elements allowed in this collection is %d",
                     m_elementName.c_str(), static_cast<int>(m_minOccurs)));
  }
}

std::string CXmlCollectionBase::GetTargetNamespace() const {
  throw COvException(
      "CXmlCollectionBase::GetTargetNamespace Should not be used from within a Collection "
      "(program logic error)");
}

void CXmlCollectionBase::AttributesToXml_Int(CXmlWriter* /*writer*/,
                                             const CXmlSerializationContext& /*context*/) const {}

void CXmlCollectionBase::ThrowIndexOutOfRange(int index, int count) {
  throw COvInvalidParamException(
      FormatString("Index %d is out of range, use 0 - %d", index, count - 1));
}

template <typename Send>
void CXmlCollectionBase::FireToListeners(Send send) {
  if (m_listeners == nullptr) return;
  // Ends the event on every path, compacting the vector after the outermost one. The block
  // stays while any event is in progress, so `listeners` remains valid throughout.
  CListeners& listeners = *m_listeners;
  struct FiringScope {
    CXmlCollectionBase* self;
    CListeners& listeners;
    ~FiringScope() {
      if (--listeners.firing == 0 && listeners.removed) {
        listeners.removed = false;
        listeners.sinks.erase(std::remove(listeners.sinks.begin(), listeners.sinks.end(),
                                          static_cast<IEventSink*>(nullptr)),
                              listeners.sinks.end());
        self->DropEmptyListeners();
      }
    }
  };
  ++listeners.firing;
  FiringScope scope{this, listeners};
  // Listeners added during the event are not called for it: the loop stops at today's size.
  const std::size_t count = listeners.sinks.size();
  for (std::size_t i = 0; i < count; ++i) {
    IEventSink* listener = listeners.sinks[i];
    if (listener != nullptr) send(listener);
  }
}

void CXmlCollectionBase::FireOnCollectionChange() {
  FireToListeners([this](IEventSink* sink) { FireOnCollectionChangeEvent(sink, this); });
}

void CXmlCollectionBase::FireOnCollectionAdd(void* item) {
  FireToListeners([this, item](IEventSink* sink) { FireOnCollectionAddEvent(sink, this, item); });
}

void CXmlCollectionBase::FireOnCollectionAddComplete(void* item) {
  FireToListeners(
      [this, item](IEventSink* sink) { FireOnCollectionAddCompleteEvent(sink, this, item); });
}

void CXmlCollectionBase::FireOnCollectionRemove(int index) {
  FireToListeners(
      [this, index](IEventSink* sink) { FireOnCollectionRemoveEvent(sink, this, index); });
}

void CXmlCollectionBase::FireOnCollectionRemoveComplete(int index) {
  FireToListeners(
      [this, index](IEventSink* sink) { FireOnCollectionRemoveCompleteEvent(sink, this, index); });
}

}  // namespace OvXmlLib6
