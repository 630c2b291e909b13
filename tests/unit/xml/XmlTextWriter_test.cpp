#include "OvXmlLib6/xml/XmlTextWriter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "unit/xml/StreamTestSupport.h"

#include <cerrno>
#include <functional>
#include <gtest/gtest.h>
#include <string>

using namespace OvXmlLib6;
using test::MessageOf;

namespace {

// A small document touching every kind of content: attributes, an empty element, text, nesting.
void WriteSample(CXmlTextWriter& w) {
  w.WriteHeader();
  w.WriteStartElement("root", "");
  w.WriteAttribute("id", "", "1");
  w.WriteStartElement("empty", "");
  w.WriteEndElement();
  w.WriteStartElement("name", "");
  w.WriteText("Ann\nLee");
  w.WriteEndElement();
  w.WriteStartElement("list", nullptr);
  w.WriteStartElement("item", "");
  w.WriteEndElement();
  w.WriteEndElement();
  w.WriteEndElement();
}

// Runs `body` between Open and Close of a writer over a memory stream; returns the output.
std::string Write(const std::function<void(CXmlTextWriter&)>& body) {
  CTextStream stream;
  CXmlTextWriter w(&stream);
  w.Open();
  body(w);
  w.Close();
  return stream.GetText();
}

}  // namespace

TEST(CXmlTextWriter, FormatsWithEitherLineEndAndDeclaresTheEncoding) {
  const std::string formatted =
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<root "
      "id=\"1\">\n\t<empty/>\n\t<name>Ann\nLee</name>\n\t<list>\n\t\t<item/>\n\t</list>\n</root>\n";
  std::string crlf;
  for (char c : formatted) crlf += c == '\n' ? std::string("\r\n") : std::string(1, c);
  const struct {
    EOLType eol;
    bool formatted;
    std::string expected;
  } cases[] = {
      {EOLType_LF, true, formatted},
      {EOLType_CRLF, true, crlf},
      {EOLType_LF, false,
       "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
       "<root id=\"1\"><empty/><name>Ann\nLee</name><list><item/></list></root>"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Write([&](CXmlTextWriter& w) {
                w.SetEOLType(c.eol);
                w.SetFormatted(c.formatted);
                WriteSample(w);
              }),
              c.expected);
  }

  // A refused line end leaves the one set before.
  CTextStream stream;
  CXmlTextWriter w(&stream);
  w.SetEOLType(EOLType_CRLF);
  EXPECT_EQ(MessageOf([&] { w.SetEOLType(static_cast<EOLType>(2)); }), "Invalid EOL type.");
  EXPECT_EQ(w.GetEOLType(), EOLType_CRLF);

  const std::pair<int, const char*> declarations[] = {
      {1, "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"},
      {2, "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"},
      {3, "<?xml version=\"1.0\"?>\n"},
      {0, "<?xml version=\"1.0\"?>\n"}};
  for (const auto& [encoding, expected] : declarations) {
    CTextStream s(static_cast<XmlEncoding>(encoding));
    CXmlTextWriter header(&s);
    header.WriteHeader();
    EXPECT_EQ(std::string(s.GetText()), expected);
  }
  EXPECT_THROW(CXmlTextWriter(nullptr), COvInvalidParamException);
}

TEST(CXmlTextWriter, EscapesTextAttributesAndComments) {
  const char* text = "a&b<c>d\"e'f\tg]]>hi\r\nj";
  EXPECT_EQ(Write([&](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.WriteComment("x<y & \"z\"");
              w.WriteStartElement("r", "");
              w.WriteAttribute("q", "", "it's \"q\" <&>\r\nnext");
              w.WriteText(text);
              w.WriteText("");
              w.WriteText(nullptr);
              w.WriteText("<![CDATA[raw <&> ]]>");
              // Only text that is one whole CDATA section goes out raw: no text carries markup.
              w.WriteText("<![CDATA[a]]><evil/>");
              w.WriteText("<![CDATA[a]]>b<![CDATA[c]]>");
              w.WriteEndElement();
            }),
            "<!--x&lt;y &amp; &quot;z&quot;-->\n"
            "<r q=\"it's &quot;q&quot; &lt;&amp;&gt;\nnext\">"
            "a&amp;b&lt;c&gt;d&quot;e'f\tg]]&gt;hi\nj"
            "<![CDATA[raw <&> ]]>&lt;![CDATA[a]]&gt;&lt;evil/&gt;"
            "&lt;![CDATA[a]]&gt;b&lt;![CDATA[c]]&gt;</r>");
  EXPECT_EQ(Write([&](CXmlTextWriter& w) {
              w.SetEOLType(EOLType_CRLF);
              w.WriteStartElement("r", "");
              w.WriteText("\r\n1\n2\r");
              w.WriteEndElement();
            }),
            "<r>\r\n1\r\n2</r>\r\n");
  // Control characters other than tab and line ends cannot be written in XML 1.0.
  EXPECT_EQ(MessageOf([] {
              Write([](CXmlTextWriter& w) {
                w.WriteStartElement("r", "");
                w.WriteText("a\x01");
              });
            }),
            "The control character [0x01] cannot be written: XML 1.0 does not allow it");
}

// Escaping tests 16 bytes at a time and shorter rests with overlapping loads: a character to
// replace must be found at any offset of any length, in text and values, for either line end.
TEST(CXmlTextWriter, EscapesAtEveryOffsetAndLength) {
  const auto reference = [](const std::string& text, const std::string& eol) {
    std::string out;
    for (char c : text) {
      switch (c) {
        case '&':
          out += "&amp;";
          break;
        case '<':
          out += "&lt;";
          break;
        case '>':
          out += "&gt;";
          break;
        case '"':
          out += "&quot;";
          break;
        case '\n':
          out += eol;
          break;
        case '\r':
          break;
        default:
          out += c;
      }
    }
    return out;
  };
  const std::string plain = "abcdefghijklmnopqrstuvwxyz0123456789ABCDEFGHIJ\xC3\xA9";
  for (EOLType eol : {EOLType_LF, EOLType_CRLF}) {
    for (char special : {'&', '<', '>', '"', '\n', '\r', '\t', '\x1F'}) {
      // Every length up to three vectors, with the character at every offset.
      for (std::size_t length = 1; length <= plain.size(); ++length) {
        for (std::size_t at = 0; at < length; ++at) {
          std::string text = plain.substr(0, length);
          text[at] = special;
          const auto write = [&] {
            return Write([&](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.SetEOLType(eol);
              w.WriteStartElement("r", "");
              w.WriteAttribute(std::string_view("a"), std::string_view(), std::string_view(text));
              w.WriteText(std::string_view(text));
              w.WriteText((text + special).c_str());  // and one at the very end
              w.WriteEndElement();
            });
          };
          if (special == '\x1F') {  // refused wherever it stands
            ASSERT_THROW(write(), COvException) << at << " of " << length;
            continue;
          }
          const std::string out = write();
          const std::string eolText = eol == EOLType_CRLF ? "\r\n" : "\n";
          const std::string escaped = reference(text, eolText);
          ASSERT_EQ(out, "<r a=\"" + escaped + "\">" + escaped +
                             reference(text + special, eolText) + "</r>")
              << "special " << int(special) << " at " << at << " of " << length;
        }
      }
    }
  }

  // As with C strings, a text or value given with its length ends at a NUL byte.
  const std::string withNul("0123456789abcdef<x\0tail&", 25);
  EXPECT_EQ(Write([&](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.WriteStartElement(std::string_view("r"), std::string_view());
              w.WriteAttribute(std::string_view("a"), std::string_view(), withNul);
              w.WriteText(withNul);
              w.WriteText(std::string("<![CDATA[x\0y", 12));
              w.WriteEndElement();
            }),
            "<r a=\"0123456789abcdef&lt;x\">0123456789abcdef&lt;x&lt;![CDATA[x</r>");
}

TEST(CXmlTextWriter, DeclaresNestedNamespaces) {
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetDefaultNamespace("urn:d");
              w.AddNamespace("z", "urn:z");
              w.AddNamespace("b", "urn:b");
              w.WriteStartElement("root", "urn:d");
              w.WriteStartElement("a", "urn:z");
              w.WriteStartElement("c", "urn:x");
              w.WriteAttribute("at", "urn:y", "1");
              w.WriteAttribute("bt", "urn:x", "2");
              w.WriteAttribute("ct", "urn:d", "3");
              w.WriteEndElement();
              // The binding of urn:x went with <c>: its sibling declares it again.
              w.WriteStartElement("c2", "urn:x");
              w.WriteText("t");
              w.WriteEndElement();
              w.WriteEndElement();
              w.WriteStartElement("d", "urn:d");
              w.WriteAttribute("lang", "http://www.w3.org/XML/1998/namespace", "en");
              w.WriteEndElement();
              w.WriteEndElement();
            }),
            "<root xmlns=\"urn:d\" xmlns:b=\"urn:b\" xmlns:z=\"urn:z\">\n"
            "\t<z:a>\n"
            "\t\t<AA:c xmlns:AA=\"urn:x\" xmlns:AB=\"urn:y\" AB:at=\"1\" AA:bt=\"2\""
            " xmlns:AC=\"urn:d\" AC:ct=\"3\"/>\n"
            "\t\t<AA:c2 xmlns:AA=\"urn:x\">t</AA:c2>\n"
            "\t</z:a>\n"
            "\t<d xml:lang=\"en\"/>\n"
            "</root>\n");

  // A namespaced document element without declarations gets a generated prefix.
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.WriteStartElement("r", "urn:r");
              w.WriteStartElement("s", "urn:r");
              w.WriteEndElement();
              w.WriteEndElement();
            }),
            "<AA:r xmlns:AA=\"urn:r\"><AA:s/></AA:r>");
}

TEST(CXmlTextWriter, BindingsInsideElementsAreCopiedOnWrite) {
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.WriteStartElement("r", "");
              w.WriteStartElement("e", "");
              w.AddNamespace("p", "urn:p");  // binds without writing a declaration
              w.SetDefaultNamespace("urn:q");
              w.WriteStartElement("f", "urn:p");
              w.WriteStartElement("g", "urn:q");
              w.WriteEndElement();
              w.WriteEndElement();
              w.WriteEndElement();
              // The sibling does not see e's bindings.
              w.WriteStartElement("h", "urn:p");
              w.WriteEndElement();
              w.WriteEndElement();
            }),
            "<r><e><p:f><g/></p:f></e><AA:h xmlns:AA=\"urn:p\"/></r>");

  // The end tag repeats the start tag's prefix even when the binding changes in between.
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.WriteStartElement("r", "urn:r");
              w.AddNamespace("other", "urn:r");
              w.SetDefaultNamespace("urn:r");
              w.WriteText("x");
              w.WriteEndElement();
            }),
            "<AA:r xmlns:AA=\"urn:r\">x</AA:r>");
}

// Bindings live on one stack: a namespace bound again inside an element hides the outer binding
// there, which frees the outer prefix for a new namespace, and both come back when it ends.
TEST(CXmlTextWriter, InnerBindingsHideOuterOnesUntilTheElementEnds) {
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.AddNamespace("AA", "urn:a");
              w.WriteStartElement("r", "urn:a");
              w.WriteStartElement("e", "urn:a");
              w.AddNamespace("p", "urn:a");
              w.AddNamespace("q", "urn:a");  // the same element binds it again: q replaces p
              w.WriteAttribute("x", "urn:new", "1");
              w.WriteStartElement("f", "urn:a");
              w.WriteEndElement();
              w.WriteEndElement();
              w.WriteStartElement("g", "urn:a");
              w.WriteAttribute("y", "urn:new", "2");
              w.WriteEndElement();
              w.WriteEndElement();
            }),
            "<AA:r xmlns:AA=\"urn:a\"><AA:e xmlns:AA=\"urn:new\" AA:x=\"1\"><q:f/></AA:e>"
            "<AA:g xmlns:AB=\"urn:new\" AB:y=\"2\"/></AA:r>");

  // Names of open elements are kept for their end tags however deep and long they get.
  const std::string out = Write([](CXmlTextWriter& w) {
    w.SetFormatted(false);
    for (int i = 0; i < 60; ++i) {
      w.WriteStartElement(("element" + std::to_string(i) + std::string(i, 'x')).c_str(),
                          i % 2 == 0 ? "" : "urn:odd");
    }
    for (int i = 0; i < 60; ++i) w.WriteEndElement();
  });
  EXPECT_NE(out.find("<AA:element59" + std::string(59, 'x') + "/></element58"), std::string::npos);
  EXPECT_NE(out.find("</AA:element1x></element0>"), std::string::npos);

  // A child may be named with a view of its parent's name, kept by the writer, while the storage
  // of the names grows.
  const std::string name(100, 'n');
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.WriteStartElement(std::string(100, 'n').c_str(), "");
              for (int i = 0; i < 5; ++i) {
                w.WriteStartElement(w.GetCurrentContext()->GetLocalName(), std::string_view());
              }
              for (int i = 0; i < 6; ++i) w.WriteEndElement();
            }),
            "<" + name + "><" + name + "><" + name + "><" + name + "><" + name + "><" + name +
                "/></" + name + "></" + name + "></" + name + "></" + name + "></" + name + ">");
}

// An element of text alone, written in one call, is the same text as the start, text and end
// calls write: in every namespace form, for every kind of text, first child or not, with each
// setting.
TEST(CXmlTextWriter, TextElementsWriteAsTheThreeCallsDo) {
  const struct {
    const char* ns;
    std::string text;
  } cases[] = {
      {"urn:r", "plain"},                               // a prefix in scope
      {"urn:d", "default & <escaped>"},                 // the default namespace
      {"", "no namespace"},                             // none (undeclares nothing)
      {"urn:e", "empty prefix"},                        // bound to the empty prefix
      {"urn:new", "declared"},                          // a prefix declared on the element
      {"http://www.w3.org/XML/1998/namespace", "xml"},  // XML's own
      {"urn:r", ""},
      {"urn:r", std::string("\0after", 6)},
      {"urn:r", "<![CDATA[a<b]]>"},
      {"urn:r", "line\r\nend\n"},
  };
  for (const bool formatted : {true, false}) {
    for (const EOLType eol : {EOLType_LF, EOLType_CRLF}) {
      auto document = [&](bool oneCall) {
        return Write([&](CXmlTextWriter& w) {
          w.SetFormatted(formatted);
          w.SetEOLType(eol);
          w.SetDefaultNamespace("urn:d");
          w.WriteStartElement("root", "urn:d");
          w.AddNamespace("", "urn:e");
          w.WriteStartElement("inner", "urn:r");
          for (const auto& c : cases) {
            if (oneCall) {
              w.WriteTextElement("v", c.ns, c.text);
            } else {
              w.CXmlWriter::WriteTextElement("v", c.ns, c.text);
            }
          }
          w.WriteEndElement();
          if (oneCall) {
            w.WriteTextElement("last", "urn:d", "t");
          } else {
            w.CXmlWriter::WriteTextElement("last", "urn:d", "t");
          }
          w.WriteEndElement();
        });
      };
      EXPECT_EQ(document(true), document(false)) << formatted << eol;
    }
  }
  const std::string refused = MessageOf([] {
    Write([](CXmlTextWriter& w) {
      w.WriteStartElement("root", "");
      w.WriteTextElement("a b", "", "x");
    });
  });
  EXPECT_EQ(refused, "The element name 'a b' cannot be written: it is not an XML name");
  EXPECT_EQ(MessageOf([] { Write([](CXmlTextWriter& w) { w.WriteTextElement("", "", "x"); }); }),
            "An element's local name must not be empty");
}

TEST(CXmlTextWriter, ContextsDescribeTheOpenElements) {
  Write([](CXmlTextWriter& w) {
    EXPECT_EQ(w.GetCurrentContext(), nullptr);
    w.WriteStartElement("root", "");
    const CXmlWriter::CXmlWriterContext* root = w.GetCurrentContext();
    w.WriteStartElement("child", "urn:c");
    w.WriteStartElement("leaf", "urn:c");
    const CXmlWriter::CXmlWriterContext* leaf = w.GetCurrentContext();
    const CXmlWriter::CXmlWriterContext* child = leaf->GetParent();
    const struct {
      const CXmlWriter::CXmlWriterContext* context;
      const char* qualified;
      const char* prefix;
      const char* local;
      int depth;
      int children;
      bool open;
    } expected[] = {
        {root, "root", "", "root", 0, 1, false},
        {child, "AA:child", "AA", "child", 1, 1, false},
        {leaf, "AA:leaf", "AA", "leaf", 2, 0, true},
    };
    for (const auto& e : expected) {
      EXPECT_EQ(e.context->GetQualifiedName(), e.qualified);
      EXPECT_EQ(e.context->GetPrefix(), e.prefix);
      EXPECT_EQ(e.context->GetLocalName(), e.local);
      EXPECT_EQ(e.context->GetDepth(), e.depth);
      EXPECT_EQ(e.context->GetChildCount(), e.children);
      EXPECT_EQ(e.context->IsStartTagOpen(), e.open) << e.qualified;
    }
    EXPECT_EQ(child->GetParent(), root);
    EXPECT_EQ(root->GetParent(), nullptr);
    for (int i = 0; i < 3; ++i) w.WriteEndElement();
    EXPECT_EQ(w.GetCurrentContext(), nullptr);
  });
}

TEST(CXmlTextWriter, GeneratesPrefixesPastAZ) {
  const std::string out = Write([](CXmlTextWriter& w) {
    w.AddNamespace("AB", "urn:taken");
    w.WriteStartElement("r", "");
    for (int i = 0; i < 27; ++i) {
      w.WriteAttribute("a", ("urn:" + std::to_string(i)).c_str(), "v");
    }
    w.WriteEndElement();
  });
  EXPECT_NE(out.find(" xmlns:AA=\"urn:0\" AA:a=\"v\" xmlns:AC=\"urn:1\" AC:a"), std::string::npos);
  EXPECT_NE(out.find(" xmlns:BA=\"urn:25\" BA:a=\"v\" xmlns:BB=\"urn:26\" BB:a=\"v\"/>"),
            std::string::npos);
}

TEST(CXmlTextWriter, WritesXsiType) {
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.SetFormatted(false);
              w.SetDefaultNamespace("urn:d");
              w.WriteStartElement("r", "urn:d");
              w.WriteXsiType("T", "urn:t");
              w.WriteStartElement("c", "urn:d");
              w.WriteXsiType("U", "urn:d");
              w.WriteEndElement();
              w.WriteStartElement("c", "urn:d");
              w.WriteXsiType("V", "urn:t");
              w.WriteXsiType("string", nullptr);
              w.WriteEndElement();
              w.WriteEndElement();
            }),
            "<r xmlns=\"urn:d\" xmlns:AA=\"urn:t\"  "
            "xmlns:AB=\"http://www.w3.org/2001/XMLSchema-instance\" AB:type=\"AA:T\">"
            "<c AB:type=\"U\"/><c AB:type=\"AA:V\" AB:type=\"string\"/></r>");
}

TEST(CXmlTextWriter, WritesRawContent) {
  EXPECT_EQ(Write([](CXmlTextWriter& w) {
              w.WriteRawBlock("<!DOCTYPE r>");
              w.WriteRawLine("<!-- line -->");
              w.WriteStartElement("r", "");
              w.WriteRawContent("<any a='1'>&amp;</any>");
              w.WriteEndElement();
              w.WriteStartElement("s", "");
              w.WriteComment("c");
              w.WriteVerbatimComment("a<b&c");
              w.WriteEndElement();
            }),
            "<!DOCTYPE r>\n\n \n<!-- line -->\n<r><any a='1'>&amp;</any></r>\n<s>\n<!--c-->\n"
            "<!--a<b&c-->\n</s>\n");
  // A comment is written as it is only when it is one.
  for (const char* bad : {"a--b", "a-", "--"}) {
    CTextStream stream;
    CXmlTextWriter w(&stream);
    EXPECT_EQ(MessageOf<COvInvalidParamException>([&] { w.WriteVerbatimComment(bad); }),
              "A comment must not contain \"--\" or end with \"-\".");
  }
}

TEST(CXmlTextWriter, RefusesCallsOutOfOrder) {
  CTextStream stream;
  CXmlTextWriter w(&stream);
  w.Open();
  EXPECT_THROW(w.WriteAttribute("a", "", "1"), COvInvalidStateException);
  EXPECT_THROW(w.WriteEndElement(), COvInvalidStateException);
  w.WriteStartElement("r", "");
  EXPECT_THROW(w.WriteStartElement("", ""), COvInvalidParamException);
  EXPECT_THROW(w.WriteAttribute(nullptr, "", "1"), COvInvalidParamException);
  w.WriteStartElement("child", "");
  w.WriteEndElement();
  EXPECT_EQ(MessageOf([&] { w.WriteAttribute("late", "", "1"); }),
            "Attributes must be added before elements");
  w.WriteStartElement("t", "");
  w.WriteText("text");
  EXPECT_EQ(MessageOf([&] { w.WriteXsiType("T", "urn:t"); }),
            "Attributes must be added before elements");
  w.WriteEndElement();
  EXPECT_EQ(MessageOf([&] { w.Close(); }), "An Element has not been closed.");
  // What was written stays in the stream.
  EXPECT_EQ(std::string(stream.GetText()), "<r>\n\t<child/>\n\t<t>text</t>\n");
  w.WriteEndElement();
  EXPECT_THROW(w.WriteEndElement(), COvInvalidStateException);
  w.Close();
}

TEST(CXmlTextWriter, StreamsLargeDocumentsToFiles) {
  test::CFailingFileSystem fs;
  auto writeDocument = [](CXmlTextWriter& w) {
    w.WriteHeader();
    w.WriteStartElement("rows", "urn:rows");
    for (int i = 0; i < 3000; ++i) {
      w.WriteStartElement("row", "urn:rows");
      w.WriteAttribute("n", "", std::to_string(i).c_str());
      w.WriteText("caf\xC3\xA9 & more");
      w.WriteEndElement();
    }
    w.WriteEndElement();
  };
  for (XmlEncoding encoding : {XmlEncoding_UTF8, XmlEncoding_UTF16}) {
    CTextStream memory(encoding);
    CXmlTextWriter toMemory(&memory);
    toMemory.Open();
    writeDocument(toMemory);
    toMemory.Close();
    const std::string expected = memory.GetEncodedText();
    ASSERT_GT(expected.size(), 100000u);

    CFileTextStream file("doc.xml", encoding);
    CXmlTextWriter toFile(&file);
    const int callsBefore = fs.writeCalls;
    toFile.Open();
    writeDocument(toFile);
    EXPECT_LE(file.GetLength(), 4096u + 200u);  // flushed as it goes, not held to the end
    toFile.Close();
    EXPECT_GT(fs.writeCalls - callsBefore, 20);
    const std::string mark = encoding == XmlEncoding_UTF16 ? "\xFF\xFE" : "";
    EXPECT_EQ(fs.Content("doc.xml"), mark + expected);
  }

  // A file that fills up mid-document fails the writer call that flushed.
  fs.writeError = ENOSPC;
  fs.writeLimit = 10000;
  CFileTextStream full("full.xml", XmlEncoding_UTF8);
  CXmlTextWriter w(&full);
  w.Open();
  EXPECT_EQ(MessageOf([&] { writeDocument(w); }),
            "Failed to write data to the file. Error [0x0000001C]");
}
