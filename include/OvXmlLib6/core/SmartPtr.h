// CSmartPtr<T>: an owning pointer to an object with an intrusive reference count. Taking an
// object calls its AddRef(), letting go calls its Release(); the object deletes itself when its
// count returns to 0. T needs to be complete wherever a CSmartPtr<T> takes or lets go of one.
#ifndef OVXMLLIB6_CORE_SMARTPTR_H
#define OVXMLLIB6_CORE_SMARTPTR_H

#include <cstddef>
#include <type_traits>

namespace OvXmlLib6 {

template <class T>
class CSmartPtr {
  // Converting constructors and assignments from CSmartPtr<U> when U* converts to T*.
  template <class U>
  using EnableIfConvertible = std::enable_if_t<std::is_convertible<U*, T*>::value, int>;

 public:
  CSmartPtr() noexcept : m_p(nullptr) {}
  CSmartPtr(T* p) : m_p(p) { AddRefIfSet(); }
  CSmartPtr(const CSmartPtr& other) : m_p(other.m_p) { AddRefIfSet(); }
  CSmartPtr(CSmartPtr&& other) noexcept : m_p(other.m_p) { other.m_p = nullptr; }
  template <class U, EnableIfConvertible<U> = 0>
  CSmartPtr(const CSmartPtr<U>& other) : m_p(other.m_p) {
    AddRefIfSet();
  }
  template <class U, EnableIfConvertible<U> = 0>
  CSmartPtr(CSmartPtr<U>&& other) noexcept : m_p(other.m_p) {
    other.m_p = nullptr;
  }
  ~CSmartPtr() { ReleaseIfSet(); }

  // Each assignment takes the new object before letting go of the old one, so assigning an
  // object to the pointer that already holds it never drops the count to 0 in between.
  CSmartPtr& operator=(T* p) {
    Reset(p);
    return *this;
  }
  CSmartPtr& operator=(const CSmartPtr& other) {
    Reset(other.m_p);
    return *this;
  }
  CSmartPtr& operator=(CSmartPtr&& other) noexcept {
    if (this != &other) {
      T* old = m_p;
      m_p = other.m_p;
      other.m_p = nullptr;
      if (old != nullptr) old->Release();
    }
    return *this;
  }
  template <class U, EnableIfConvertible<U> = 0>
  CSmartPtr& operator=(const CSmartPtr<U>& other) {
    Reset(other.m_p);
    return *this;
  }
  template <class U, EnableIfConvertible<U> = 0>
  CSmartPtr& operator=(CSmartPtr<U>&& other) noexcept {
    T* old = m_p;
    m_p = other.m_p;
    other.m_p = nullptr;
    if (old != nullptr) old->Release();
    return *this;
  }

  T* get() const noexcept { return m_p; }
  T* operator->() const noexcept { return m_p; }
  T& operator*() const noexcept { return *m_p; }
  // Lets `if (p)` work and passes the object to functions that take a T*.
  operator T*() const noexcept { return m_p; }

  // The comparisons take T* exactly, so they are preferred to the built-in pointer comparison
  // that the conversion above would otherwise make ambiguous. nullptr and NULL compare through
  // the T* forms; there are deliberately no std::nullptr_t overloads, which would make NULL
  // ambiguous (and likewise for construction and assignment).
  friend bool operator==(const CSmartPtr& a, const CSmartPtr& b) noexcept { return a.m_p == b.m_p; }
  friend bool operator!=(const CSmartPtr& a, const CSmartPtr& b) noexcept { return a.m_p != b.m_p; }
  friend bool operator==(const CSmartPtr& a, T* b) noexcept { return a.m_p == b; }
  friend bool operator!=(const CSmartPtr& a, T* b) noexcept { return a.m_p != b; }
  friend bool operator==(T* a, const CSmartPtr& b) noexcept { return a == b.m_p; }
  friend bool operator!=(T* a, const CSmartPtr& b) noexcept { return a != b.m_p; }

 private:
  template <class U>
  friend class CSmartPtr;

  void AddRefIfSet() {
    if (m_p != nullptr) m_p->AddRef();
  }
  void ReleaseIfSet() {
    if (m_p != nullptr) m_p->Release();
  }
  void Reset(T* p) {
    if (p != nullptr) p->AddRef();
    T* old = m_p;
    m_p = p;
    if (old != nullptr) old->Release();
  }

  T* m_p;
};

// Smart pointers to related types compare by the objects they hold.
template <class T, class U>
bool operator==(const CSmartPtr<T>& a, const CSmartPtr<U>& b) noexcept {
  return a.get() == b.get();
}
template <class T, class U>
bool operator!=(const CSmartPtr<T>& a, const CSmartPtr<U>& b) noexcept {
  return a.get() != b.get();
}

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_SMARTPTR_H
