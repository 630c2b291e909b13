#include "xml/TreeBuilder.h"

#include "OvXmlLib6/xml/XmlDocument.h"
#include "xml/TreeStore.h"

#include <cstring>
#include <string>

namespace OvXmlLib6 {
namespace detail {

CTreeBuilder::CTreeBuilder(CXmlDocument& document)
    : m_document(document),
      m_store(*document.m_store),
      m_keepCDATA(!document.m_context->GetStripCDATA()) {}

CTreeBuilder::~CTreeBuilder() {
  try {
    m_document.FlushOpenText();
  } catch (...) {
    // Out of memory while keeping partial text: that text is lost, the failure itself goes on.
  }
}

const CXmlName* CTreeBuilder::TreeName(const CXmlEventName& name) {
  if (name.handlerData == nullptr) {
    name.handlerData = m_store.Intern(name.namespaceURI, name.localName);
  }
  return static_cast<const CXmlName*>(name.handlerData);
}

void CTreeBuilder::OnNamespaceDeclaration(std::string_view prefix, std::string_view uri) {
  m_document.m_aliases[std::string(prefix)] = std::string(uri);
}

void CTreeBuilder::OnStartElement(const CXmlEventName& name, const CXmlEventAttribute* attributes,
                                  std::size_t count) {
  CXmlElement* element = m_document.AddElement(TreeName(name));
  if (count != 0) {
    std::uintptr_t& list = CTreeStore::AttributeSlot(element);
    list = m_store.NewAttributeList(count);
    for (std::size_t i = 0; i < count; ++i) {
      const std::string_view value = attributes[i].value;
      // The list has room for every attribute.
      m_store.AddToAttributeList(list,
                                 m_store.NewAttribute(TreeName(*attributes[i].name),
                                                      m_store.NewText(value.data(), value.size())));
    }
  }
  m_document.ElementStarted(element);
}

void CTreeBuilder::OnEndElement() { m_document.EndElement(); }

void CTreeBuilder::OnText(std::string_view text) {
  if (text.empty()) return;
  const bool plain = std::memchr(text.data(), '\r', text.size()) == nullptr &&
                     std::memchr(text.data(), '\0', text.size()) == nullptr;
  m_document.AppendOpenText(text.data(), text.size(), plain);
}

void CTreeBuilder::OnStartCdata() {
  if (m_keepCDATA) m_document.AppendOpenText("<![CDATA[", 9, true);
}

void CTreeBuilder::OnEndCdata() {
  if (m_keepCDATA) m_document.AppendOpenText("]]>", 3, true);
}

}  // namespace detail
}  // namespace OvXmlLib6
