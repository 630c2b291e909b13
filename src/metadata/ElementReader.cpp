#include "metadata/ElementReader.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "metadata/AttributeRecords.h"
#include "metadata/ChildList.h"
#include "metadata/Restriction.h"
#include "xml/TreeStore.h"

#include <utility>

namespace OvXmlLib6 {
namespace detail {

CElementReader::CElementReader(CElement& target, Checks checks)
    : m_target(target),
      m_checks(checks),
      m_state(State::Reading),
      m_attributeRestriction(target.m_attributes ? target.m_attributes->m_restriction
                                                 : target.m_restriction),
      m_attributeTarget(target.m_attributes ? target.m_attributes->m_targetNamespace
                                            : target.m_targetNamespace),
      m_childRestriction(target.m_children ? target.m_children->m_restriction
                                           : target.m_restriction),
      m_childTarget(target.m_children ? target.m_children->m_targetNamespace
                                      : target.m_targetNamespace) {}

bool CElementReader::ChildNamespaceValid(const std::string& ns) {
  if (m_checks == Checks::None) return true;
  return m_childVerdicts.Admits(ns, [this](const std::string& uri) {
    return NamespaceSatisfies(uri, m_childRestriction.str(), m_childTarget.str());
  });
}

void CElementReader::ReadRootAttributes(CElement* root, const CXmlElement* source) {
  if (CTreeStore::ElementAttributeCount(source) == 0) return;
  // They go to the target's own collection in the end, so they are read as objects.
  root->m_attributes = new CAttributeCol(CElement::AttributeCollectionName(),
                                         m_attributeRestriction, m_attributeTarget);
  root->m_attributes->ReadAttributesOf(source, m_names, m_checks == Checks::Namespaces);
}

void CElementReader::ReadAttributes(CElement* element, const CXmlElement* source) {
  const std::size_t count = CTreeStore::ElementAttributeCount(source);
  if (count == 0) return;
  element->m_attributeRecords = CAttributeRecords::New(count);
  ReadElementAttributes(
      source, [this](const std::string& ns) { return ChildNamespaceValid(ns); },
      [this, element](const std::string& ns, const std::string& name, std::string_view value) {
        element->m_attributeRecords->Append(m_names.Get(ns), m_names.Get(name), value);
      });
}

void CElementReader::OnElementStarted(const CXmlElement* source, std::size_t depth) {
  if (m_state != State::Reading) return;
  try {
    if (depth == 0 && m_checks == Checks::None) {
      // A copy takes the document element whatever its namespace.
    } else if (depth == 0) {
      // As reading from a tree: a document element in a namespace the target does not take is
      // not read at all, and that is no error.
      if (!NamespaceSatisfies(CTreeStore::NamespaceURI(source), m_target.m_restriction.str(),
                              m_target.m_targetNamespace.str())) {
        m_state = State::Skipped;
        return;
      }
    } else if (!ChildNamespaceValid(CTreeStore::NamespaceURI(source))) {
      throw COvValidationException(FormatString(
          "Invalid Element [%s] found in element [%s]", CTreeStore::LocalName(source).c_str(),
          CTreeStore::LocalName(m_open.back().source).c_str()));
    }
    CElement* element = new CElement(CElement::ForReading{}, m_childRestriction, m_childTarget);
    // Held at once, by the parent's children (in document order) or as the root, so that a
    // failure below releases it with the rest.
    if (depth == 0) {
      m_root = element;
    } else {
      CChildList::Append(m_open.back().element->m_childList, element);
    }
    element->SetElementName(m_names.Get(CTreeStore::LocalName(source)));
    element->m_namespace = m_names.Get(CTreeStore::NamespaceURI(source));
    if (depth == 0) {
      ReadRootAttributes(element, source);
    } else {
      ReadAttributes(element, source);
    }
    m_open.push_back(Frame{element, source});
  } catch (const COvException&) {
    Fail();
  }
}

bool CElementReader::OnElementEnded(const CXmlElement* /*source*/, std::size_t /*depth*/,
                                    std::string_view text) {
  if (m_state == State::Reading) {
    m_open.back().element->m_text.assign(text.data(), text.size());
    m_open.pop_back();
  }
  // Everything the element held has been copied: the document can let it go.
  return true;
}

void CElementReader::Fail() {
  m_error = std::current_exception();
  m_state = State::Failed;
  // Nothing more is built; what was is of no use any more.
  m_open.clear();
  m_root = nullptr;
}

void CElementReader::Commit() {
  if (m_state == State::Failed) std::rethrow_exception(m_error);
  if (m_state == State::Skipped || !m_root) return;
  CElement& target = m_target;
  // Reading replaces the content in place, with the events of the target's collections.
  if (target.m_attributes) target.m_attributes->Clear();
  CChildList::Release(target.m_childList);
  if (target.m_children) target.m_children->Clear();
  target.SetElementName(m_root->SharedElementName());
  target.m_namespace = std::move(m_root->m_namespace);
  target.m_text = std::move(m_root->m_text);
  if (m_root->m_attributes && m_root->m_attributes->GetCount() != 0) {
    target.GetAttributes()->TakeItemsOf(*m_root->m_attributes);
  }
  if (m_root->m_childList != nullptr) {
    if (target.m_children) {
      // A collection someone may hold or watch: it receives the children, with its events.
      for (CXmlObjectBase* child : *m_root->m_childList) target.m_children->AppendItem(child);
    } else {
      target.m_childList = m_root->m_childList;
      m_root->m_childList = nullptr;
    }
  }
  m_root = nullptr;
}

}  // namespace detail
}  // namespace OvXmlLib6
