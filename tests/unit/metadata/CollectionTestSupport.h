// Helpers shared by the collection and wildcard tests: a minimal bound class, an event recorder,
// and writing or reading any bound object through its protected operations.
#ifndef OVXMLLIB6_TESTS_UNIT_METADATA_COLLECTIONTESTSUPPORT_H
#define OVXMLLIB6_TESTS_UNIT_METADATA_COLLECTIONTESTSUPPORT_H

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlTextWriter.h"
#include "unit/TestSupport.h"

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace ovxml_test {

using namespace OvXmlLib6;
using test::MessageOf;

// A bound object with a text value. Counts live instances; as a "wrapper" it can stand for
// another object (GetBase returns that one).
class CItem : public CXmlObjectBase {
 public:
  CItem() { ++s_live; }
  explicit CItem(std::string text, CXmlObjectBase* base = nullptr)
      : m_text(std::move(text)), m_base(base) {
    ++s_live;
    SetElementName("item");
  }
  CXmlObjectBase* GetBase() override { return m_base != nullptr ? m_base : this; }
  std::string GetNamespace() const override { return ""; }
  const std::string& Text() const { return m_text; }

  static int s_live;

 protected:
  ~CItem() override { --s_live; }
  std::string GetTargetNamespace() const override { return ""; }
  void ToXml_Int(CXmlWriter* writer, bool, const char* ns, const CXmlSerializationContext&,
                 bool) const override {
    writer->WriteStartElement(GetElementName().c_str(), ns);
    writer->WriteText(m_text.c_str());
    writer->WriteEndElement();
  }
  CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* current,
                           const CXmlSerializationContext&, bool) override {
    SetElementName(element->GetLocalName().c_str());
    m_text = element->GetText();
    return current;
  }

 private:
  std::string m_text;
  CXmlObjectBase* m_base = nullptr;
};

// Records every event as a line: "add", "addComplete", "change", "remove -1", ... With
// `describe` set, the add lines also show what their data points to ("add 7"). With
// `refuseAdds` set, the recorder throws on each add event, after recording it.
class CRecorder : public IEventSink {
 public:
  void OnEvent(CXmlObjectBase* source, MsgType type, void* data) override {
    lastSource = source;
    static const char* const kNames[] = {"change", "add", "addComplete", "remove",
                                         "removeComplete"};
    std::string line = kNames[type];
    if (type == MsgType_CollectionRemove || type == MsgType_CollectionRemoveComplete) {
      line += " " + std::to_string(*static_cast<int*>(data));
    } else if (type != MsgType_CollectionChange && describe) {
      line += " " + describe(data);
    }
    events.push_back(line);
    if (type == MsgType_CollectionAdd && refuseAdds) throw COvException("refused by a listener");
  }
  std::vector<std::string> events;
  CXmlObjectBase* lastSource = nullptr;
  std::function<std::string(void*)> describe;
  bool refuseAdds = false;
};

// Lets a test reach the protected reading and writing of any bound object.
class CAccess : public CXmlObjectBase {
 public:
  static std::string Write(const CXmlObjectBase* object,
                           const CXmlSerializationContext& context = CXmlSerializationContext()) {
    CTextStream stream;
    CXmlTextWriter writer(&stream);
    writer.SetFormatted(false);
    writer.Open();
    // A wrapper element, so that collections can write several siblings.
    writer.WriteStartElement("r", "");
    ToXml_Int(object, &writer, false, "", context, false);
    writer.WriteEndElement();
    writer.Close();
    std::string text = stream.GetText();
    return text.substr(3, text.size() - 7);  // without <r> and </r>
  }
  // Reads the children of the document element of `xml` into `object`; returns the local name
  // of the first child left unread, or "" when all were read.
  static std::string Read(CXmlObjectBase* object, const char* xml,
                          const CXmlSerializationContext& context = CXmlSerializationContext()) {
    CXmlDocument document(context);
    document.LoadXml(xml);
    CXmlElement* root = document.GetDocumentElement();
    CXmlElement* left = FromXml_Int(object, root, root->GetFirstElement(), context);
    return left != nullptr ? left->GetLocalName() : "";
  }
};

}  // namespace ovxml_test

#endif  // OVXMLLIB6_TESTS_UNIT_METADATA_COLLECTIONTESTSUPPORT_H
