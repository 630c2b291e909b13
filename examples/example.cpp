// A tour of what the library does today: XML Schema value types and their lexical forms, binary
// data, the XML tree and the text writer, and the exception family with its chained messages.
#include <OvXmlLib6.h>
#include <cstdio>
#include <string>

using namespace OvXmlLib6;

namespace {

void ValueTypes() {
  const auto collapse = CWhitespaceUtils::WhitespaceRule_Collapse;

  // A dateTime with a zone, moved on by a duration; the zone is kept.
  const CDateTime when = CConversions::datetimeFromString("  2026-11-22T09:30:00+01:00 ", collapse);
  const CDateTimeSpan span = CConversions::durationFromString("P1M2DT3H", collapse);
  std::printf("dateTime  %s + %s = %s\n", CConversions::datetimeToString(when).c_str(),
              CConversions::durationToString(span).c_str(),
              CConversions::datetimeToString(when + span).c_str());

  // Decimals are exact: 0.1 + 0.2 is 0.3.
  const CDecimal a = CConversions::decimalFromString("0.1", collapse);
  const CDecimal b = CConversions::decimalFromString("0.2", collapse);
  std::printf("decimal   0.1 + 0.2 = %s\n", CConversions::decimalToString(a + b, nullptr).c_str());

  // Arbitrary-precision integers.
  const CBigInteger big =
      CConversions::integerFromString("123456789012345678901234567890", collapse);
  std::printf("integer   %s squared = %s\n", CConversions::integerToString(big).c_str(),
              CConversions::integerToString(big * big).c_str());
}

void BinaryData() {
  CBinaryData data("Hello, XML");
  std::printf("base64    %s\n", data.GetAsBase64().c_str());
  std::printf("hex       %s\n", data.GetAsHexString().c_str());
  CBinaryData copy = data;  // shares the bytes until one of them changes
  copy.Append("!");
  std::printf("copy      %s (the original keeps %u bytes)\n", copy.GetAsHexString().c_str(),
              static_cast<unsigned>(data.GetLength()));
}

const char kOrders[] =
    "<?xml version=\"1.0\"?>\n"
    "<o:orders xmlns:o=\"urn:example:orders\" xmlns:n=\"urn:example:notes\">\n"
    "  <o:order id=\"1001\" placed=\"2026-11-22T09:30:00Z\">\n"
    "    <o:total>129.95</o:total>\n"
    "    <n:note><![CDATA[Fish & chips]]> for Zo\xC3\xAB</n:note>\n"
    "  </o:order>\n"
    "</o:orders>\n";

// Writes an element and its subtree with the text writer, as it was read (prefixes are not kept
// in the tree, so the writer generates its own).
void WriteElement(CXmlTextWriter& writer, const CXmlElement* element) {
  writer.WriteStartElement(element->GetLocalName().c_str(), element->GetNamespaceURI().c_str());
  for (const CXmlAttribute* a : element->GetAttributes()) {
    writer.WriteAttribute(a->GetLocalName().c_str(), a->GetNamespaceURI().c_str(),
                          a->GetValue().c_str());
  }
  if (element->GetFirstElement() == nullptr) writer.WriteText(element->GetText().c_str());
  for (const CXmlElement* c = element->GetFirstElement(); c; c = c->GetNextSiblingElement()) {
    WriteElement(writer, c);
  }
  writer.WriteEndElement();
}

std::string WriteDocument(const CXmlDocument& doc, XmlEncoding encoding) {
  CTextStream stream(encoding);
  CXmlTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(true);
  writer.SetEOLType(EOLType_LF);
  writer.WriteHeader();
  WriteElement(writer, doc.GetDocumentElement());
  writer.Close();
  return stream.GetEncodedText();
}

void XmlTree() {
  CXmlDocument doc;
  doc.LoadXml(kOrders);
  const CXmlElement* root = doc.GetDocumentElement();
  std::printf("tree      {%s}%s\n", root->GetNamespaceURI().c_str(), root->GetLocalName().c_str());
  for (const CXmlElement* order = root->GetFirstElement(); order;
       order = order->GetNextSiblingElement()) {
    for (const CXmlAttribute* a : order->GetAttributes()) {
      std::printf("            @%s = %s\n", a->GetLocalName().c_str(), a->GetValue().c_str());
    }
    for (const CXmlElement* e = order->GetFirstElement(); e; e = e->GetNextSiblingElement()) {
      std::printf("            {%s}%s = \"%s\"\n", e->GetNamespaceURI().c_str(),
                  e->GetLocalName().c_str(), e->GetText().c_str());
    }
  }

  const std::string utf8 = WriteDocument(doc, XmlEncoding_UTF8);
  std::printf("written back, formatted UTF-8:\n%s\n", utf8.c_str());
  const std::string utf16 = WriteDocument(doc, XmlEncoding_UTF16);
  CBinaryStream packed;
  packed.Append(utf8 + std::string(2000, ' '));  // long enough for gzip to pay off
  packed.Compress(CompressionType_GZip);
  std::printf("sizes     UTF-8 %zu bytes, UTF-16 %zu bytes, gzip of 2 KB more %u bytes\n",
              utf8.size(), utf16.size(), static_cast<unsigned>(packed.GetLength()));

  // gzip input is recognised from its content and inflated before parsing.
  CXmlDocument again;
  again.LoadXmlStream(packed.GetData().GetData(), packed.GetLength());
  std::printf("gzip in   root {%s}%s\n", again.GetDocumentElement()->GetNamespaceURI().c_str(),
              again.GetDocumentElement()->GetLocalName().c_str());
}

void Errors() {
  // A failure deep inside is wrapped by each enclosing step, so the full message is a path.
  try {
    try {
      CConversions::i4FromString("2147483648", CWhitespaceUtils::WhitespaceRule_Collapse);
    } catch (const COvException& e) {
      throw COvValidationException("Failed to process the element [quantity]", e);
    }
  } catch (const COvValidationException& e) {
    std::printf("error     %s\n", e.GetFullMessage().c_str());
  }
  try {
    CXmlDocument doc;
    doc.LoadXml("<a><b></a>");
  } catch (const COvException& e) {
    std::printf("error     %s\n", e.GetFullMessage().c_str());
  }
}

}  // namespace

int main() {
  ValueTypes();
  BinaryData();
  XmlTree();
  Errors();
  return 0;
}
