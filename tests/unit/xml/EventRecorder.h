// CEventRecorder: the events of a document reader as one line of text, for the tests of the
// readers.
#ifndef OVXMLLIB6_TESTS_UNIT_XML_EVENTRECORDER_H
#define OVXMLLIB6_TESTS_UNIT_XML_EVENTRECORDER_H

#include "xml/XmlEvents.h"

#include <cstddef>
#include <deque>
#include <string>
#include <string_view>

namespace OvXmlLib6 {
namespace test {

// The events as text. Each name record is numbered when first seen, through its handler slot,
// so the log shows which records the reader passed again.
class CEventRecorder : public detail::IXmlEventHandler {
 public:
  std::string log;
  // Consecutive pieces of text are logged as one (a reader may split a run of text anywhere).
  bool joinText = false;

  void OnNamespaceDeclaration(std::string_view prefix, std::string_view uri) override {
    m_inText = false;
    log += "ns(" + std::string(prefix) + "=" + std::string(uri) + ")";
  }
  void OnStartElement(const detail::CXmlEventName& name,
                      const detail::CXmlEventAttribute* attributes, std::size_t count) override {
    m_inText = false;
    log += "<" + Name(name);
    for (std::size_t i = 0; i < count; ++i) {
      log += " " + Name(*attributes[i].name) + "='" + std::string(attributes[i].value) + "'";
    }
    log += ">";
  }
  void OnEndElement() override { Log("</>"); }
  void OnText(std::string_view text) override {
    if (joinText && m_inText) {
      log.insert(log.size() - 1, text);
      return;
    }
    log += "'" + std::string(text) + "'";
    m_inText = true;
  }
  void OnStartCdata() override { Log("[["); }
  void OnEndCdata() override { Log("]]"); }
  void OnComment(std::string_view text) override { Log("<!--" + std::string(text) + "-->"); }
  void OnProcessingInstruction(std::string_view target, std::string_view data) override {
    Log("<?" + std::string(target) + " " + std::string(data) + "?>");
  }

 private:
  void Log(const std::string& item) {
    log += item;
    m_inText = false;
  }
  std::string Name(const detail::CXmlEventName& name) {
    if (name.handlerData == nullptr)
      name.handlerData = &m_records.emplace_back(m_records.size() + 1);
    const std::string text = (name.prefix.empty() ? "" : name.prefix + ":") + name.localName +
                             (name.namespaceURI.empty() ? "" : "{" + name.namespaceURI + "}");
    return text + "#" + std::to_string(*static_cast<const std::size_t*>(name.handlerData));
  }
  std::deque<std::size_t> m_records;
  bool m_inText = false;
};

}  // namespace test
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_TESTS_UNIT_XML_EVENTRECORDER_H
