// CXmlObjectBase: reference counting, the element name, the nesting guard, the namespace and
// element-name rules and the choice and property checks that generated setters call.
#include "OvXmlLib6/core/XmlObjectBase.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "core/Prefetch.h"
#include "core/SharedNames.h"
#include "core/Strings.h"
#include "port/Stack.h"
#include "xml/TreeStore.h"

#include <cstring>
#include <string_view>
#include <vector>

namespace OvXmlLib6 {

namespace {

std::uint32_t g_maxNestingDepth = kDefaultMaxNestingDepth;
// Levels of bound objects being read or written on this thread.
thread_local std::uint32_t t_nestingDepth = 0;
// The lowest address of this thread's stack, found on first use (0: the platform does not say),
// and the room that nesting leaves on it.
constexpr std::uintptr_t kStackLimitUnknown = 1;
thread_local std::uintptr_t t_stackLimit = kStackLimitUnknown;
constexpr std::uintptr_t kStackReserve = 256 * 1024;

// The objects whose count reached 0 while another object was being destroyed on this thread,
// last in first out. The outermost destruction deletes them one after the other, so destroying
// objects nested 100,000 deep (a collection's items, a generated object's members) takes a
// bounded amount of stack. The first few hundred stay in the frame of the outermost call.
class CPendingDeletes {
 public:
  bool Empty() const { return m_count == 0 && m_spill.empty(); }
  // False when memory is exhausted once the frame's room is used up.
  bool TryPush(CXmlObjectBase* object) noexcept {
    if (m_count < kInline && m_spill.empty()) {
      m_inline[m_count++] = object;
      return true;
    }
    try {
      m_spill.push_back(object);
      return true;
    } catch (...) {
      return false;
    }
  }
  CXmlObjectBase* Pop() {
    if (!m_spill.empty()) {
      CXmlObjectBase* object = m_spill.back();
      m_spill.pop_back();
      return object;
    }
    return m_inline[--m_count];
  }
  CXmlObjectBase* Top() const {
    if (!m_spill.empty()) return m_spill.back();
    return m_count != 0 ? m_inline[m_count - 1] : nullptr;
  }

 private:
  static constexpr std::size_t kInline = 256;
  CXmlObjectBase* m_inline[kInline];
  std::size_t m_count = 0;
  std::vector<CXmlObjectBase*> m_spill;
};

// The queue of the outermost destruction on this thread, or null outside one.
thread_local CPendingDeletes* t_pendingDeletes = nullptr;

}  // namespace

using detail::OrEmpty;

void SetMaxNestingDepth(std::uint32_t depth) { g_maxNestingDepth = depth == 0 ? 1 : depth; }

std::uint32_t GetMaxNestingDepth() { return g_maxNestingDepth; }

CXmlObjectBase::CNestingGuard::CNestingGuard(const char* elementName) {
  if (t_nestingDepth >= g_maxNestingDepth) {
    throw COvException(FormatString("Element nesting is deeper than %u levels at element [%s]",
                                    static_cast<unsigned>(g_maxNestingDepth),
                                    OrEmpty(elementName)));
  }
  // The level limit suits the usual stacks; a thread with a small stack, or a build whose frames
  // are larger (sanitizers), stops where the stack's room ends instead, keeping enough for the
  // failure to be wrapped and passed up.
  if (t_stackLimit == kStackLimitUnknown) t_stackLimit = port::ThreadStackLimit();
  // The frame's own address: a local's may lie on a sanitizer's separate stack.
  const auto address = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  if (t_stackLimit != 0 && address < t_stackLimit + kStackReserve) {
    throw COvException(FormatString(
        "Element nesting is deeper than %u levels at element [%s]: the thread's stack is used up",
        static_cast<unsigned>(t_nestingDepth), OrEmpty(elementName)));
  }
  ++t_nestingDepth;
}

CXmlObjectBase::CNestingGuard::~CNestingGuard() { --t_nestingDepth; }

// ---- Lifetime -------------------------------------------------------------------------------

CXmlObjectBase::CXmlObjectBase() : m_refCount(0) {}

CXmlObjectBase::CXmlObjectBase(const CXmlObjectBase& other)
    : IEventSink(other), m_refCount(0), m_elementName(other.m_elementName) {}

CXmlObjectBase& CXmlObjectBase::operator=(const CXmlObjectBase& other) {
  if (this != &other) m_elementName = other.m_elementName;
  return *this;
}

CXmlObjectBase::~CXmlObjectBase() = default;

std::int32_t CXmlObjectBase::AddRef() {
  return m_refCount.fetch_add(1, std::memory_order_relaxed) + 1;
}

std::int32_t CXmlObjectBase::Release() {
  // Release ordering publishes this thread's writes; the thread that reaches 0 acquires them
  // before it deletes.
  const std::int32_t count = m_refCount.fetch_sub(1, std::memory_order_acq_rel) - 1;
  if (count != 0) return count;
  // Inside another object's destruction the delete waits for the outermost one; should memory
  // for the queue run out, the object goes at once (one level deeper) rather than leak.
  if (t_pendingDeletes != nullptr && t_pendingDeletes->TryPush(this)) return 0;
  if (t_pendingDeletes != nullptr) {
    delete this;
    return 0;
  }
  CPendingDeletes pending;
  t_pendingDeletes = &pending;
  delete this;
  while (!pending.Empty()) {
    CXmlObjectBase* next = pending.Pop();
    detail::Prefetch(pending.Top());
    delete next;
  }
  t_pendingDeletes = nullptr;
  return 0;
}

void CXmlObjectBase::OnEvent(CXmlObjectBase* /*source*/, MsgType /*type*/, void* /*data*/) {}

void CXmlObjectBase::AttributesToXml_Int(CXmlWriter* /*writer*/,
                                         const CXmlSerializationContext& /*context*/) const {}

void CXmlObjectBase::SetElementName(const char* name) {
  // Objects made in numbers are named with one of few names: share them rather than copy.
  const std::string_view text = OrEmpty(name);
  if (m_elementName.str() != text) m_elementName = detail::SharedName(text);
}

void CXmlObjectBase::SetElementName(CXmlObjectBase* object, const char* name) {
  if (object == nullptr) throw COvInvalidParamException("SetElementName: the object is NULL");
  object->SetElementName(name);
}

// ---- Reaching other objects -----------------------------------------------------------------

void CXmlObjectBase::ToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer, bool isRoot,
                               const char* namespaceUri, const CXmlSerializationContext& context,
                               bool flag) {
  if (object == nullptr) throw COvInvalidParamException("ToXml_Int: the object is NULL");
  CNestingGuard guard(object->m_elementName.c_str());
  object->ToXml_Int(writer, isRoot, namespaceUri, context, flag);
}

void CXmlObjectBase::AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                         const CXmlSerializationContext& context) {
  if (object == nullptr) throw COvInvalidParamException("AttributesToXml_Int: the object is NULL");
  object->AttributesToXml_Int(writer, context);
}

CXmlElement* CXmlObjectBase::FromXml_Int(CXmlObjectBase* object, CXmlElement* parent,
                                         CXmlElement* current,
                                         const CXmlSerializationContext& context) {
  if (object == nullptr) throw COvInvalidParamException("FromXml_Int: the object is NULL");
  CNestingGuard guard(current != nullptr ? detail::CTreeStore::LocalName(current).c_str()
                                         : object->m_elementName.c_str());
  return object->FromXml_Int(parent, current, context, false);
}

// ---- Names and namespaces -------------------------------------------------------------------

bool CXmlObjectBase::DoesElementNameMatch(const CXmlSerializationContext& context,
                                          const CXmlElement* element, const char* name,
                                          const char* namespaceUri) const {
  if (element == nullptr) return false;
  if (detail::CTreeStore::LocalName(element) != OrEmpty(name)) return false;
  if (context.GetSchemaType() == SchemaType_DTD || context.GetIgnoreNamespaces()) return true;
  return detail::CTreeStore::NamespaceURI(element) == OrEmpty(namespaceUri);
}

bool CXmlObjectBase::IsNamespaceValid(const char* namespaceUri, const char* restriction,
                                      const char* targetNamespace) const {
  // Views rather than copies: readers call this for every element and attribute.
  const std::string_view ns = OrEmpty(namespaceUri);
  const std::string_view whole = OrEmpty(restriction);
  const std::string_view target = OrEmpty(targetNamespace);
  std::string_view work = whole;
  while (!work.empty()) {
    std::string_view token;
    const std::size_t blank = work.find(' ');
    if (blank == std::string_view::npos) {
      token = work;
      work = std::string_view();
    } else {
      // The remainder is reduced to the one blank found, so only the first token is examined as
      // written; every later pass sees an empty token.
      token = work.substr(0, blank);
      work = work.substr(blank, 1);
    }
    if (token == "##any") return true;
    if (token == "##other") {
      if (ns != target) return true;
    } else if (token == "##local") {
      if (ns.empty()) return true;
    } else if (token == "##targetNamespace") {
      if (ns == target) return true;
    } else if (ns == whole || ns.empty()) {
      return true;
    }
    // An empty token with a single blank left would be examined again and again with the same
    // result; it cannot admit what it has just refused, so the check ends here instead of looping.
    if (token.empty() && work == " ") return false;
  }
  return false;
}

void CXmlObjectBase::TestNamespace(const char* namespaceUri, const char* restriction,
                                   const char* targetNamespace) const {
  if (!IsNamespaceValid(namespaceUri, restriction, targetNamespace)) {
    throw COvInvalidNamespaceException(FormatString(
        "Invalid namespace [%s]. The namespace must be one of [%s] where the target namespace is "
        "[%s]",
        OrEmpty(namespaceUri), OrEmpty(restriction), OrEmpty(targetNamespace)));
  }
}

// ---- Choices and property checks ------------------------------------------------------------

void CXmlObjectBase::Choice_SelectElement(const char* name, CXmlObjectBase* value,
                                          std::string& selected) {
  name = OrEmpty(name);
  if (selected == name) {
    if (value == nullptr) selected.clear();
  } else if (selected.empty()) {
    selected = name;
  } else if (value != nullptr) {
    throw COvInvalidStateException(FormatString(
        "The Property [%s] is already set. Only one element within this class bay be set at a time",
        selected.c_str()));
  }
}

void CXmlObjectBase::Choice_CollectionChanged(const char* name, std::int32_t count,
                                              std::string& selected) {
  name = OrEmpty(name);
  if (selected == name) {
    if (count == 0) selected.clear();
  } else if (selected.empty()) {
    if (count > 0) selected = name;
  } else if (count != 0) {
    throw COvInvalidStateException(FormatString(
        "The Property [%s] is already set. Only one element within this class bay be set at a time",
        selected.c_str()));
  }
}

void CXmlObjectBase::Choice_SetElementValid(bool valid, const char* name, std::string& selected) {
  name = OrEmpty(name);
  if (!valid) {
    selected.clear();
    return;
  }
  if (selected != name) {
    throw COvInvalidStateException(FormatString(
        "The Property %s is already set. Only one element within this class bay be set at a time",
        selected.c_str()));
  }
  selected = name;
}

void CXmlObjectBase::Throw_IfPropertyIsNull(CXmlObjectBase* value, const char* propertyName) {
  if (value == nullptr) {
    throw COvInvalidParamException(
        FormatString("The Property [%s] is mandatory, it may node be NULL", OrEmpty(propertyName)));
  }
}

void CXmlObjectBase::Throw_IfElementNameDiffers(CXmlObjectBase* value, const char* expectedName) {
  if (value == nullptr) return;
  const std::string& actual = value->GetBase()->m_elementName;
  if (actual != OrEmpty(expectedName)) {
    throw COvInvalidParamException(
        FormatString("This property requrires an element with the name %s the element being set "
                     "has the element name %s",
                     OrEmpty(expectedName), actual.c_str()));
  }
}

}  // namespace OvXmlLib6
