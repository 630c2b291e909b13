#include "metadata/AttributeRecords.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "core/ObjectMemory.h"

#include <new>

namespace OvXmlLib6 {
namespace detail {

CAttributeRecords* CAttributeRecords::New(std::size_t capacity) {
  if (capacity == 0) capacity = 1;
  void* memory = AllocateSmall(sizeof(CAttributeRecords) + capacity * sizeof(Record));
  return new (memory) CAttributeRecords(static_cast<std::uint32_t>(capacity));
}

void CAttributeRecords::Delete(CAttributeRecords* records) noexcept {
  if (records == nullptr) return;
  Record* items = records->Items();
  for (std::uint32_t i = 0; i < records->m_count; ++i) items[i].~Record();
  const std::size_t size = sizeof(CAttributeRecords) + records->m_capacity * sizeof(Record);
  records->~CAttributeRecords();
  FreeSmall(records, size);
}

void CAttributeRecords::Append(const CSharedString& ns, const CSharedString& name,
                               std::string_view value) {
  if (m_count == m_capacity) throw COvException("Internal error: attribute block full");
  // Counted only once built, so that a failed copy of the value leaves the block consistent.
  new (Items() + m_count) Record{ns, name, std::string(value)};
  ++m_count;
}

}  // namespace detail
}  // namespace OvXmlLib6
