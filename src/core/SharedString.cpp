#include "OvXmlLib6/core/SharedString.h"

namespace OvXmlLib6 {

const std::string& CSharedString::Empty() noexcept {
  static const std::string empty;
  return empty;
}

CSharedString::CSharedString(std::string_view text)
    : m_block(text.empty() ? nullptr : new Block(text, false)) {}

CSharedString CSharedString::Permanent(std::string_view text) {
  CSharedString permanent;
  // Deliberately never freed: copies may outlive any owner, up to the end of the process.
  if (!text.empty()) permanent.m_block = new Block(text, true);
  return permanent;
}

CSharedString& CSharedString::operator=(const CSharedString& other) noexcept {
  if (m_block != other.m_block) {
    if (other.m_block != nullptr && !other.m_block->permanent) {
      other.m_block->references.fetch_add(1, std::memory_order_relaxed);
    }
    Release();
    m_block = other.m_block;
  }
  return *this;
}

CSharedString& CSharedString::operator=(CSharedString&& other) noexcept {
  if (this != &other) {
    Release();
    m_block = other.m_block;
    other.m_block = nullptr;
  }
  return *this;
}

CSharedString& CSharedString::operator=(std::string_view text) {
  // The new block is made before the old one goes, so `text` may point into it.
  Block* block = text.empty() ? nullptr : new Block(text, false);
  Release();
  m_block = block;
  return *this;
}

void CSharedString::Release() noexcept {
  if (m_block != nullptr && !m_block->permanent) ReleaseCounted();
}

void CSharedString::ReleaseCounted() noexcept {
  if (m_block->references.fetch_sub(1, std::memory_order_acq_rel) == 1) delete m_block;
  m_block = nullptr;
}

}  // namespace OvXmlLib6
