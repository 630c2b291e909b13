#include "OvXmlLib6/core/Exceptions.h"

#include <utility>

namespace OvXmlLib6 {

namespace {
// Set while CloneChain clones one link: the copy constructor then leaves the inner chain out.
thread_local bool t_cloningOneLink = false;
}  // namespace

COvException* COvException::CloneLink() const {
  t_cloningOneLink = true;
  try {
    COvException* copy = Clone();
    t_cloningOneLink = false;
    return copy;
  } catch (...) {
    t_cloningOneLink = false;
    throw;
  }
}

COvException* COvException::CloneChain(const COvException* first) {
  COvException* head = nullptr;
  COvException** tail = &head;
  for (const COvException* link = first; link != nullptr; link = link->m_inner) {
    COvException* copy;
    try {
      copy = link->CloneLink();
    } catch (...) {
      delete head;
      throw;
    }
    *tail = copy;
    tail = &copy->m_inner;
  }
  return head;
}

COvException::COvException() : m_inner(nullptr) {}

COvException::COvException(std::string message) : m_message(std::move(message)), m_inner(nullptr) {}

COvException::COvException(std::string message, const COvException& inner)
    : m_message(std::move(message)), m_inner(CloneChain(&inner)) {}

COvException::COvException(std::string message, COvException&& inner)
    : m_message(std::move(message)), m_inner(inner.CloneLink()) {
  m_inner->m_inner = inner.m_inner;
  inner.m_inner = nullptr;
}

COvException::COvException(const COvException& other)
    : m_message(other.m_message), m_inner(t_cloningOneLink ? nullptr : CloneChain(other.m_inner)) {}

COvException& COvException::operator=(const COvException& other) {
  if (this != &other) {
    COvException* inner = CloneChain(other.m_inner);
    m_message = other.m_message;
    // The chain held before the assignment is released here; keeping it would leak it.
    delete m_inner;
    m_inner = inner;
  }
  return *this;
}

COvException::~COvException() {
  // Unlink the chain one link at a time so a long chain is not destroyed by deep recursion.
  while (m_inner != nullptr) {
    COvException* next = m_inner->m_inner;
    m_inner->m_inner = nullptr;
    delete m_inner;
    m_inner = next;
  }
}

std::string COvException::GetMessage() const { return m_message; }

std::string COvException::GetFullMessage() const {
  std::string full = m_message;
  for (const COvException* e = m_inner; e != nullptr; e = e->m_inner) {
    full += '\n';
    full += e->m_message;
  }
  return full;
}

const COvException* COvException::GetInnerException() const { return m_inner; }

COvException* COvException::Clone() const { return new COvException(*this); }

#define OVXML_DEFINE_EXCEPTION(Name, Base)                                                        \
  Name::Name() = default;                                                                         \
  Name::Name(std::string message) : Base(std::move(message)) {}                                   \
  Name::Name(std::string message, const COvException& inner) : Base(std::move(message), inner) {} \
  Name::Name(std::string message, COvException&& inner)                                           \
      : Base(std::move(message), std::move(inner)) {}                                             \
  Name::Name(const COvException& other) : Base(other) {}                                          \
  Name::Name(const Name& other) : Base(other) {}                                                  \
  Name& Name::operator=(const COvException& other) {                                              \
    COvException::operator=(other);                                                               \
    return *this;                                                                                 \
  }                                                                                               \
  Name& Name::operator=(const Name& other) {                                                      \
    COvException::operator=(other);                                                               \
    return *this;                                                                                 \
  }                                                                                               \
  Name::~Name() = default;                                                                        \
  COvException* Name::Clone() const { return new Name(*this); }

OVXML_DEFINE_EXCEPTION(COvValidationException, COvException)
OVXML_DEFINE_EXCEPTION(COvInvalidValueException, COvValidationException)
OVXML_DEFINE_EXCEPTION(COvInvalidNamespaceException, COvValidationException)
OVXML_DEFINE_EXCEPTION(COvInvalidParamException, COvException)
OVXML_DEFINE_EXCEPTION(COvInvalidStateException, COvException)
OVXML_DEFINE_EXCEPTION(COvOverFlowException, COvException)

#undef OVXML_DEFINE_EXCEPTION

}  // namespace OvXmlLib6
