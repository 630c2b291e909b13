#include "OvXmlLib6/core/Exceptions.h"
#include "unit/TestSupport.h"
#include "unit/xml/EventRecorder.h"
#include "xml/ExpatReader.h"

#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;

namespace {

std::string Events(const std::string& xml, std::size_t pieceSize) {
  test::CEventRecorder log;
  log.joinText = true;
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
      {"<p>Hello <b>big</b> world<b/></p>", "<p#1>'Hello '<b#2>'big'</>' world'<b#2></></>"},
      {"<?a x?><!--c--><r><!--in--><?b?>t<![CDATA[<&>]]></r><!--after-->",
       "<?a x?><!--c--><r#1><!--in--><?b ?>'t'[['<&>']]</><!--after-->"},
      {"<p:r xmlns:p='urn:p' xmlns='urn:d' p:a='1' b='2'><c xmlns=''/></p:r>",
       "ns(p=urn:p)ns(=urn:d)<p:r{urn:p}#1 p:a{urn:p}#2='1' b#3='2'>ns(=)<c#4></></>"},
      {"<?xml version='1.0' encoding='ISO-8859-1'?><a b='\xE9'>caf\xE9</a>",
       "<a#1 b#2='\xC3\xA9'>'caf\xC3\xA9'</>"},
      {"<!DOCTYPE a [<!ENTITY e 'ent'>]><a>&e;&#65;</a>", "<a#1>'entA'</>"},
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

  class CThrowing : public test::CEventRecorder {
    void OnComment(std::string_view) override { throw COvException("handler says no"); }
  } handler;
  detail::CExpatEventSource source(handler);
  const std::string xml = "<a><!--x--></a>";
  EXPECT_EQ(test::MessageOf([&] {
              source.Parse(reinterpret_cast<const unsigned char*>(xml.data()), xml.size(), true);
            }),
            "handler says no");
}
