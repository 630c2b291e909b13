// Bytes into CXmlDocument: XML text in any encoding, gzip or zlib, Fast Infoset. A document that
// loads is walked whole, every name, namespace, attribute and text touched, so that a tree that
// points outside its store shows up under the sanitizers.
#include "FuzzSupport.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"

#include <vector>

using namespace OvXmlLib6;

namespace {

std::size_t Walk(const CXmlElement* root) {
  std::size_t total = 0;
  std::vector<const CXmlElement*> pending{root};
  while (!pending.empty()) {
    const CXmlElement* element = pending.back();
    pending.pop_back();
    total += element->GetLocalName().size() + element->GetNamespaceURI().size() +
             element->GetText().size();
    for (const CXmlAttribute* attribute : element->GetAttributes()) {
      total += attribute->GetLocalName().size() + attribute->GetNamespaceURI().size() +
               attribute->GetValue().size() + (attribute->IsNamespaceAttribute() ? 1 : 0);
    }
    for (const CXmlElement* child = element->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement()) {
      pending.push_back(child);
    }
  }
  return total;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  CXmlDocument document;
  fuzz::Attempt([&] {
    document.LoadXmlStream(data, static_cast<std::uint32_t>(size));
    if (document.GetDocumentElement() != nullptr) {
      volatile std::size_t sink = Walk(document.GetDocumentElement());
      (void)sink;
      document.LookupNamespaceFromAlias("");
    }
  });
  return 0;
}
