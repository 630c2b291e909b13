#include "xml/TreeStore.h"

#include <cstring>
#include <new>
#include <utility>

namespace OvXmlLib6 {
namespace detail {

CTreeStore::CTreeStore(const CXmlDocument* document)
    : m_emptyName{document, this, std::string(), std::string()}, m_encoder(new CTextEncoder()) {}

CTreeStore::~CTreeStore() = default;

const CXmlName* CTreeStore::Intern(std::string_view namespaceURI, std::string_view localName) {
  if (namespaceURI.empty() && localName.empty()) return &m_emptyName;
  std::string key;
  key.reserve(namespaceURI.size() + 1 + localName.size());
  key.append(namespaceURI).push_back('\0');
  key.append(localName);
  const auto it = m_byParts.find(key);
  if (it != m_byParts.end()) return it->second;
  m_names.push_back(
      CXmlName{m_emptyName.document, this, std::string(localName), std::string(namespaceURI)});
  const CXmlName* name = &m_names.back();
  m_byParts.emplace(std::move(key), name);
  return name;
}

const CXmlName* CTreeStore::InternParserNameSlow(std::string_view raw) {
  std::string converted;
  m_encoder->FromUtf8(raw, converted);
  const std::size_t bar = converted.find('|');
  const CXmlName* name = bar == std::string::npos
                             ? Intern(std::string_view(), converted)
                             : Intern(std::string_view(converted).substr(0, bar),
                                      std::string_view(converted).substr(bar + 1));
  char* key = static_cast<char*>(m_arena.Allocate(raw.size() == 0 ? 1 : raw.size()));
  if (!raw.empty()) std::memcpy(key, raw.data(), raw.size());
  m_byParserName.emplace(std::string_view(key, raw.size()), name);
  return name;
}

CXmlElement* CTreeStore::NewElement(const CXmlName* name) {
  return new (m_arena.Allocate(sizeof(CXmlElement))) CXmlElement(name);
}

CXmlAttribute* CTreeStore::NewAttribute(const CXmlName* name, std::string value) {
  return new (m_arena.Allocate(sizeof(CXmlAttribute))) CXmlAttribute(name, std::move(value));
}

std::vector<CXmlAttribute*>* CTreeStore::NewAttributeList(std::size_t reserve) {
  void* memory = m_arena.Allocate(sizeof(std::vector<CXmlAttribute*>));
  auto* list = new (memory) std::vector<CXmlAttribute*>();
  try {
    list->reserve(reserve);
  } catch (...) {
    list->~vector();
    m_arena.Free(memory, sizeof(std::vector<CXmlAttribute*>));
    throw;
  }
  return list;
}

void CTreeStore::ReleaseAttribute(CXmlAttribute* attribute) {
  attribute->~CXmlAttribute();
  m_arena.Free(attribute, sizeof(CXmlAttribute));
}

void CTreeStore::DestroyElement(CXmlElement* element, bool reuse) {
  if (std::vector<CXmlAttribute*>* list = element->m_attributes) {
    for (CXmlAttribute* attribute : *list) {
      attribute->~CXmlAttribute();
      if (reuse) m_arena.Free(attribute, sizeof(CXmlAttribute));
    }
    list->~vector();
    if (reuse) m_arena.Free(list, sizeof(std::vector<CXmlAttribute*>));
  }
  element->~CXmlElement();
  if (reuse) m_arena.Free(element, sizeof(CXmlElement));
}

void CTreeStore::DestroyTree(CXmlElement* element, bool reuse) {
  // The subtree is flattened while it is walked: an element's children are spliced in front of
  // the elements that follow it, so neither recursion nor a stack is needed, whatever the depth.
  element->m_next = nullptr;
  while (element != nullptr) {
    CXmlElement* next = element->m_next;
    if (element->m_firstChild != nullptr) {
      element->m_lastChild->m_next = next;
      next = element->m_firstChild;
    }
    DestroyElement(element, reuse);
    element = next;
  }
}

void CTreeStore::Clear(CXmlElement* root) {
  // The whole arena goes at once, so the memory of single nodes is not recycled.
  if (root != nullptr) DestroyTree(root, false);
  m_byParserName.clear();
  m_byParts.clear();
  m_names.clear();
  m_arena.Reset();
}

}  // namespace detail
}  // namespace OvXmlLib6
