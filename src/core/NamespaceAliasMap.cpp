#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "core/Strings.h"

#include <iterator>

namespace OvXmlLib6 {

using detail::OrEmpty;

CNamespaceAliasMap::CNamespaceAliasMap() = default;

CNamespaceAliasMap::~CNamespaceAliasMap() = default;

void CNamespaceAliasMap::Add(const char* alias, const char* namespaceURI) {
  m_aliases[OrEmpty(namespaceURI)] = OrEmpty(alias);
}

void CNamespaceAliasMap::RemoveNamespace(const char* namespaceURI) {
  m_aliases.erase(OrEmpty(namespaceURI));
}

bool CNamespaceAliasMap::DoesNamespaceExist(const char* namespaceURI) const {
  return m_aliases.find(OrEmpty(namespaceURI)) != m_aliases.end();
}

bool CNamespaceAliasMap::DoesAliasExist(const char* alias) const {
  const std::string wanted = OrEmpty(alias);
  for (const auto& entry : m_aliases) {
    if (entry.second == wanted) return true;
  }
  return false;
}

std::string CNamespaceAliasMap::GetNamespaceFromAlias(const char* alias) const {
  const std::string wanted = OrEmpty(alias);
  for (const auto& entry : m_aliases) {
    if (entry.second == wanted) return entry.first;
  }
  throw COvException(FormatString("Namespace alias [%s] not found", wanted.c_str()));
}

std::string CNamespaceAliasMap::GetAliasFromNamespace(const char* namespaceURI) {
  // Inserts an empty alias for an unknown namespace; callers rely on nothing else.
  return m_aliases[OrEmpty(namespaceURI)];
}

int CNamespaceAliasMap::GetNamespaceCount() const { return static_cast<int>(m_aliases.size()); }

std::string CNamespaceAliasMap::GetNamespaceAt(int index) const {
  if (index < 0) index = 0;
  // Positions past the end give an empty string instead of stepping beyond the map.
  if (static_cast<std::size_t>(index) >= m_aliases.size()) return std::string();
  return std::next(m_aliases.begin(), index)->first;
}

}  // namespace OvXmlLib6
