// CChildList: the child elements of an element read from a document, kept as one array of
// references until the element's child collection is asked for. A read then costs no collection
// and no list node per element; writing walks the array directly.
#ifndef OVXMLLIB6_SRC_METADATA_CHILDLIST_H
#define OVXMLLIB6_SRC_METADATA_CHILDLIST_H

#include <cstddef>
#include <cstdint>

namespace OvXmlLib6 {

class CElement;
class CXmlObjectBase;

namespace detail {

class CChildList {
 public:
  // Appends an element that nobody holds yet and takes its first reference. `list` may be null (a
  // list is made) and is replaced when it grows. If memory runs out, an element that nobody else
  // holds is deleted.
  static void Append(CChildList*& list, CElement* element);
  // Releases every element, without recursing into their own children, and frees the list;
  // `list` becomes null.
  static void Release(CChildList*& list) noexcept;
  // Frees the list without releasing the elements, whose references the caller has taken over;
  // `list` becomes null.
  static void Free(CChildList*& list) noexcept;

  // The elements, as the bound objects that collections hold.
  CXmlObjectBase* const* begin() const { return Items(); }
  CXmlObjectBase* const* end() const { return Items() + m_count; }
  std::size_t Count() const { return m_count; }

 private:
  explicit CChildList(std::uint32_t capacity) : m_count(0), m_capacity(capacity) {}
  CXmlObjectBase** Items() { return reinterpret_cast<CXmlObjectBase**>(this + 1); }
  CXmlObjectBase* const* Items() const {
    return reinterpret_cast<CXmlObjectBase* const*>(this + 1);
  }

  std::uint32_t m_count;
  std::uint32_t m_capacity;
};

static_assert(sizeof(CChildList) % alignof(CXmlObjectBase*) == 0, "the items follow the header");

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_CHILDLIST_H
