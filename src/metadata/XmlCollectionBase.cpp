#include "OvXmlLib6/metadata/XmlCollectionBase.h"

#include "OvXmlLib6/core/Exceptions.h"

#include <algorithm>

namespace OvXmlLib6 {

CXmlCollectionBase::CXmlCollectionBase()
    : m_minOccurs(0), m_maxOccurs(-1), m_firing(0), m_listenersRemoved(false) {}

CXmlCollectionBase::CXmlCollectionBase(const char* elementName, const char* ns, int minOccurs,
                                       int maxOccurs)
    : CXmlCollectionBase(CSharedString(elementName), CSharedString(ns), minOccurs, maxOccurs) {}

CXmlCollectionBase::CXmlCollectionBase(const CSharedString& elementName, const CSharedString& ns,
                                       int minOccurs, int maxOccurs)
    : m_elementName(elementName),
      m_elementNamespace(ns),
      m_minOccurs(minOccurs),
      m_maxOccurs(maxOccurs),
      m_firing(0),
      m_listenersRemoved(false) {
  SetElementName(m_elementName);
}

CXmlCollectionBase::CXmlCollectionBase(const CXmlCollectionBase& other)
    : CXmlObjectBase(other),
      m_elementName(other.m_elementName),
      m_elementNamespace(other.m_elementNamespace),
      m_minOccurs(other.m_minOccurs),
      m_maxOccurs(other.m_maxOccurs),
      m_firing(0),
      m_listenersRemoved(false) {}

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

CXmlCollectionBase::~CXmlCollectionBase() = default;

void CXmlCollectionBase::AddEventListener(IEventSink* listener) {
  if (listener != nullptr) m_listeners.push_back(listener);
}

void CXmlCollectionBase::RemoveEventListener(IEventSink* listener) {
  if (m_firing > 0) {
    // An event is being delivered over this vector: blank the entries out instead of erasing
    // them, and compact once the outermost event is done.
    for (IEventSink*& entry : m_listeners) {
      if (entry == listener) {
        entry = nullptr;
        m_listenersRemoved = true;
      }
    }
    return;
  }
  m_listeners.erase(std::remove(m_listeners.begin(), m_listeners.end(), listener),
                    m_listeners.end());
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
  if (m_listeners.empty()) return;
  // Ends the event on every path, compacting the vector after the outermost one.
  struct FiringScope {
    CXmlCollectionBase* self;
    ~FiringScope() {
      if (--self->m_firing == 0 && self->m_listenersRemoved) {
        self->m_listenersRemoved = false;
        auto& listeners = self->m_listeners;
        listeners.erase(
            std::remove(listeners.begin(), listeners.end(), static_cast<IEventSink*>(nullptr)),
            listeners.end());
      }
    }
  };
  ++m_firing;
  FiringScope scope{this};
  // Listeners added during the event are not called for it: the loop stops at today's size.
  const std::size_t count = m_listeners.size();
  for (std::size_t i = 0; i < count; ++i) {
    IEventSink* listener = m_listeners[i];
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
