#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"
#include "xml/ExpatReader.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;

namespace {

// Writes every event as one bracketed item, so a test compares a document's events at a glance.
class CEventLog : public detail::IXmlEventHandler {
 public:
  std::string log;

  void OnNamespaceDeclaration(std::string_view prefix, std::string_view uri) override {
    log += "[ns " + std::string(prefix) + "=" + std::string(uri) + "]";
  }
  void OnStartElement(const detail::CXmlEventName& name,
                      const detail::CXmlEventAttribute* attributes, std::size_t count) override {
    log += "[<" + Name(name);
    for (std::size_t i = 0; i < count; ++i)
      log += " " + Name(*attributes[i].name) + "=" + std::string(attributes[i].value);
    log += "]";
  }
  void OnEndElement() override { log += "[/]"; }
  void OnText(std::string_view text) override {
    // Pieces of one run are joined.
    if (!log.empty() && log.back() == '\'') {
      log.insert(log.size() - 1, text);
    } else {
      log += "'" + std::string(text) + "'";
    }
  }
  void OnStartCdata() override { log += "[cdata]"; }
  void OnEndCdata() override { log += "[/cdata]"; }
  void OnComment(std::string_view text) override { log += "[!" + std::string(text) + "]"; }
  void OnProcessingInstruction(std::string_view target, std::string_view data) override {
    log += "[?" + std::string(target) + "|" + std::string(data) + "]";
  }

 private:
  static std::string Name(const detail::CXmlEventName& name) {
    std::string text = name.prefix.empty() ? "" : name.prefix + ":";
    if (!name.namespaceURI.empty()) text += "{" + name.namespaceURI + "}";
    return text + name.localName;
  }
};

std::string Events(const std::string& xml, std::size_t pieceSize) {
  CEventLog log;
  detail::CExpatEventSource source(log);
  const auto* bytes = reinterpret_cast<const unsigned char*>(xml.data());
  for (std::size_t at = 0; at < xml.size(); at += pieceSize)
    source.Parse(bytes + at, std::min(pieceSize, xml.size() - at), false);
  source.Parse(nullptr, 0, true);
  return log.log;
}

}  // namespace

TEST(ExpatEventSource, DeliversTheDocumentInOrder) {
  const struct {
    const char* xml;
    const char* events;
  } cases[] = {
      {"<p>Hello <b>big</b> world</p>", "[<p]'Hello '[<b]'big'[/]' world'[/]"},
      {"<?a x?><!--c--><r><!--in--><?b?>t<![CDATA[<&>]]></r><!--after-->",
       "[?a|x][!c][<r][!in][?b|]'t'[cdata]'<&>'[/cdata][/][!after]"},
      {"<p:r xmlns:p='urn:p' xmlns='urn:d' p:a='1' b='2'><c xmlns=''/></p:r>",
       "[ns p=urn:p][ns =urn:d][<p:{urn:p}r p:{urn:p}a=1 b=2][ns =][<c][/][/]"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'>caf\xE9</a>",
       "[<a b=\xC3\xA9]'caf\xC3\xA9'[/]"},
      {"<!DOCTYPE a [<!ENTITY e 'ent'>]><a>&e;&#65;</a>", "[<a]'entA'[/]"},
  };
  for (const auto& c : cases) {
    // Fed whole and one byte at a time, the events are the same.
    for (std::size_t piece : {std::size_t{1} << 20, std::size_t{1}}) {
      EXPECT_EQ(Events(c.xml, piece), c.events) << c.xml << " in pieces of " << piece;
    }
  }
}

TEST(ExpatEventSource, FailuresNameTheLineOrPassThroughTheHandler) {
  EXPECT_EQ(test::MessageOf([] { Events("<a>\n<b></a>", 3); }), "mismatched tag at line 2");
  EXPECT_EQ(test::MessageOf([] { Events("", 1); }), "no element found at line 1");
  // Entity expansion stays bounded: a billion laughs is refused.
  std::string laughs = "<!DOCTYPE a [<!ENTITY l0 'lol'>";
  for (int i = 1; i < 10; ++i)
    laughs += "<!ENTITY l" + std::to_string(i) + " '" + std::string(10, ' ') + "'>";
  for (int i = 1; i < 10; ++i) {
    std::string refs;
    for (int j = 0; j < 10; ++j) refs += "&l" + std::to_string(i - 1) + ";";
    laughs.replace(laughs.find("'" + std::string(10, ' ') + "'"), 12, "'" + refs + "'");
  }
  laughs += "]><a>&l9;</a>";
  EXPECT_NE(test::MessageOf([&] { Events(laughs, 4096); }), "no exception");

  class CThrowing : public CEventLog {
    void OnComment(std::string_view) override { throw COvException("handler says no"); }
  } handler;
  detail::CExpatEventSource source(handler);
  const std::string xml = "<a><!--x--></a>";
  EXPECT_EQ(test::MessageOf([&] {
              source.Parse(reinterpret_cast<const unsigned char*>(xml.data()), xml.size(), true);
            }),
            "handler says no");
}
