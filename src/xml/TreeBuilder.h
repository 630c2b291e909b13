// CTreeBuilder: builds the tree of a CXmlDocument from the events of a document reader, as the
// text parser builds it: names interned once per reader name record, each element's attribute
// list made in one go, text gathered per open element and stored when the element ends (carriage
// returns and NUL bytes dropped), CDATA markers kept in the text unless the context strips them,
// comments and processing instructions dropped. Namespace declarations go to the document's map.
#ifndef OVXMLLIB6_SRC_XML_TREEBUILDER_H
#define OVXMLLIB6_SRC_XML_TREEBUILDER_H

#include "xml/XmlEvents.h"

namespace OvXmlLib6 {

class CXmlDocument;

namespace detail {

class CTreeStore;
struct CXmlName;

class CTreeBuilder : public IXmlEventHandler {
 public:
  // For a document whose load has begun (its store is the one the tree goes to).
  explicit CTreeBuilder(CXmlDocument& document);
  CTreeBuilder(const CTreeBuilder&) = delete;
  CTreeBuilder& operator=(const CTreeBuilder&) = delete;
  // Moves the text of the elements still open (after a failure) into them.
  ~CTreeBuilder() override;

  void OnNamespaceDeclaration(std::string_view prefix, std::string_view uri) override;
  void OnStartElement(const CXmlEventName& name, const CXmlEventAttribute* attributes,
                      std::size_t count) override;
  void OnEndElement() override;
  void OnText(std::string_view text) override;
  void OnStartCdata() override;
  void OnEndCdata() override;
  void OnComment(std::string_view /*text*/) override {}
  void OnProcessingInstruction(std::string_view /*target*/, std::string_view /*data*/) override {}

 private:
  const CXmlName* TreeName(const CXmlEventName& name);

  CXmlDocument& m_document;
  CTreeStore& m_store;
  bool m_keepCDATA;
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_TREEBUILDER_H
