// CTestNode: a small bound class for the object-base tests. It holds one element (name,
// namespace, text, attributes, child elements) and reads and writes it through the entry points'
// protected operations, like a generated class or a wildcard element would.
#ifndef OVXML_TESTS_UNIT_CORE_TESTNODE_H
#define OVXML_TESTS_UNIT_CORE_TESTNODE_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"

#include <string>
#include <utility>
#include <vector>

namespace OvXmlLib6 {
namespace testing_support {

class CTestNode : public CXmlObjectBase {
 public:
  struct Attr {
    std::string name, ns, value;
  };

  explicit CTestNode(const char* name = "", const char* ns = "", bool* deleted = nullptr)
      : m_ns(ns), m_deleted(deleted) {
    SetElementName(name);
  }

  CXmlObjectBase* GetBase() override { return this; }
  std::string GetNamespace() const override { return m_ns; }

  const std::string& Name() const { return GetElementName(); }
  std::string m_ns;
  std::string m_text;
  std::vector<Attr> m_attrs;
  std::vector<CSmartPtr<CTestNode>> m_children;
  // Whether the context passed to FromXml_Int asked to ignore unknown elements; an element named
  // "unknown" fails unless the context allows it.
  bool m_sawIgnoreUnknown = false;

  CTestNode* Add(const char* name, const char* ns = "") {
    m_children.push_back(new CTestNode(name, ns));
    return m_children.back();
  }

  // Exposes the protected helpers to the tests.
  using CXmlObjectBase::Choice_CollectionChanged;
  using CXmlObjectBase::Choice_SelectElement;
  using CXmlObjectBase::Choice_SetElementValid;
  using CXmlObjectBase::DoesElementNameMatch;
  using CXmlObjectBase::IsNamespaceValid;
  using CXmlObjectBase::TestNamespace;
  using CXmlObjectBase::Throw_IfElementNameDiffers;
  using CXmlObjectBase::Throw_IfPropertyIsNull;

 protected:
  ~CTestNode() override {
    if (m_deleted != nullptr) *m_deleted = true;
  }
  std::string GetTargetNamespace() const override { return m_ns; }

  void ToXml_Int(CXmlWriter* writer, bool /*isRoot*/, const char* /*ns*/,
                 const CXmlSerializationContext& context, bool /*flag*/) const override {
    writer->WriteStartElement(GetElementName().c_str(), m_ns.c_str());
    for (const Attr& a : m_attrs)
      writer->WriteAttribute(a.name.c_str(), a.ns.c_str(), a.value.c_str());
    if (!m_text.empty()) writer->WriteText(m_text.c_str());
    for (const CSmartPtr<CTestNode>& child : m_children)
      CXmlObjectBase::ToXml_Int(child, writer, false, child->m_ns.c_str(), context, false);
    writer->WriteEndElement();
  }

  CXmlElement* FromXml_Int(CXmlElement* /*parent*/, CXmlElement* current,
                           const CXmlSerializationContext& context, bool /*flag*/) override {
    if (current == nullptr) throw COvValidationException("no element to read");
    if (current->GetLocalName() == "unknown" && !context.GetIgnoreUnknownElements())
      throw COvValidationException("Unknown element [unknown]");
    m_sawIgnoreUnknown = context.GetIgnoreUnknownElements();
    SetElementName(current->GetLocalName().c_str());
    m_ns = current->GetNamespaceURI();
    m_text = current->GetText();
    m_attrs.clear();
    for (const CXmlAttribute* a : current->GetAttributes())
      m_attrs.push_back({a->GetLocalName(), a->GetNamespaceURI(), a->GetValue()});
    m_children.clear();
    for (CXmlElement* c = current->GetFirstElement(); c != nullptr;) {
      CSmartPtr<CTestNode> child = new CTestNode();
      c = CXmlObjectBase::FromXml_Int(child, current, c, context);
      m_children.push_back(child);
    }
    return current->GetNextSiblingElement();
  }

 private:
  bool* m_deleted;
};

// Compares two trees node by node; returns the path of the first difference, or "" when equal.
inline std::string DiffTrees(const CTestNode& a, const CTestNode& b, const std::string& path = "") {
  const std::string here = path + "/" + a.Name();
  if (a.Name() != b.Name()) return here + ": name " + a.Name() + " vs " + b.Name();
  if (a.m_ns != b.m_ns) return here + ": namespace " + a.m_ns + " vs " + b.m_ns;
  if (a.m_text != b.m_text) return here + ": text [" + a.m_text + "] vs [" + b.m_text + "]";
  if (a.m_attrs.size() != b.m_attrs.size()) return here + ": attribute count";
  for (std::size_t i = 0; i < a.m_attrs.size(); ++i) {
    const auto& x = a.m_attrs[i];
    const auto& y = b.m_attrs[i];
    if (x.name != y.name || x.ns != y.ns || x.value != y.value)
      return here + ": attribute " + x.name;
  }
  if (a.m_children.size() != b.m_children.size()) return here + ": child count";
  for (std::size_t i = 0; i < a.m_children.size(); ++i) {
    std::string d = DiffTrees(*a.m_children[i], *b.m_children[i], here);
    if (!d.empty()) return d;
  }
  return "";
}

}  // namespace testing_support
}  // namespace OvXmlLib6

#endif  // OVXML_TESTS_UNIT_CORE_TESTNODE_H
