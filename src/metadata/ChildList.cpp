#include "metadata/ChildList.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/metadata/Element.h"
#include "core/FirstReference.h"
#include "core/ObjectMemory.h"

#include <cstring>
#include <limits>
#include <new>

namespace OvXmlLib6 {
namespace detail {

void CChildList::Append(CChildList*& list, CElement* element) {
  if (list == nullptr || list->m_count == list->m_capacity) {
    try {
      const std::uint32_t count = list != nullptr ? list->m_count : 0;
      if (count > std::numeric_limits<std::uint32_t>::max() / 2) {
        throw COvException("Too many child elements in one element");
      }
      // Doubling keeps appends cheap; a first list has room for a few children.
      const std::uint32_t capacity = count < 2 ? 4 : count * 2;
      void* memory = AllocateSmall(sizeof(CChildList) + capacity * sizeof(CXmlObjectBase*));
      CChildList* grown = new (memory) CChildList(capacity);
      if (list != nullptr) {
        std::memcpy(grown->Items(), list->Items(), count * sizeof(CXmlObjectBase*));
        grown->m_count = count;
        FreeSmall(list, sizeof(CChildList) + list->m_capacity * sizeof(CXmlObjectBase*));
      }
      list = grown;
    } catch (...) {
      // Not taken: an element that nobody holds goes, one held elsewhere keeps its count.
      element->AddRef();
      element->Release();
      throw;
    }
  }
  CFirstReference::Take(element);
  list->Items()[list->m_count++] = element;
}

void CChildList::Release(CChildList*& list) noexcept {
  if (list == nullptr) return;
  CChildList* released = list;
  list = nullptr;
  CXmlObjectBase** items = released->Items();
  for (std::uint32_t i = 0; i < released->m_count; ++i) items[i]->Release();
  FreeSmall(released, sizeof(CChildList) + released->m_capacity * sizeof(CXmlObjectBase*));
}

void CChildList::Free(CChildList*& list) noexcept {
  if (list == nullptr) return;
  FreeSmall(list, sizeof(CChildList) + list->m_capacity * sizeof(CXmlObjectBase*));
  list = nullptr;
}

}  // namespace detail
}  // namespace OvXmlLib6
