// A data-oriented purchase order of a given size for the benchmarks: one purchaseOrder of the
// example schema (urn:example:po) whose items carry the bulk. The items mix every kind of value
// the classes bind: an attribute with a pattern (partNum), a foreign attribute on some items,
// names with escaped characters (&amp; &lt;) and non-ASCII letters (UTF-8), ints, decimals,
// dates, and optional members present on some items and absent on others. The order around them
// has both address kinds, repeated comments, a payment, a delivery in any order, a signature and
// extension elements. Indented as a pretty-printer would; the same bytes on every call.
#ifndef OVXML_BENCH_PODOCUMENT_H
#define OVXML_BENCH_PODOCUMENT_H

#include <cstddef>
#include <cstdio>
#include <string>

namespace bench {

struct PoDocument {
  std::string xml;
  int items = 0;          // item elements written
  int orderComments = 0;  // comment elements of the order itself
};

inline PoDocument MakePoDocument(std::size_t targetSize) {
  static const char* const kProducts[] = {
      "Lawnmower",
      "Baby Monitor &amp; Camera",
      "Cr\xC3\xA8me br\xC3\xBBl\xC3\xA9\x65 torch",
      "Garden hose &lt;25 m&gt;",
      "M\xC3\xBCller &amp; S\xC3\xB6hne shears",
      "\xE6\x97\xA5\xE6\x9C\xAC\xE8\x8C\xB6 tea set",
      "Wheelbarrow, galvanised",
      "Z\xC5\x82ota r\xC4\x85\x63zka \xE2\x80\x94 brass handle"};
  static const char* const kComments[] = {
      "Confirm this is electric", "Fragile: &lt;glass&gt; &amp; ceramics",
      "Livraison apr\xC3\xA8s 18h, s\xE2\x80\x99il vous pla\xC3\xAEt"};
  PoDocument document;
  std::string& out = document.xml;
  out.reserve(targetSize + 4096);
  out +=
      "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
      "<po:purchaseOrder xmlns:po=\"urn:example:po\"\n"
      "                  xmlns:xsi=\"http://www.w3.org/2001/XMLSchema-instance\"\n"
      "                  xmlns:acme=\"urn:example:acme\"\n"
      "                  orderDate=\"2026-11-20\" status=\"shipped\" currency=\"USD\""
      " contactLanguage=\"en-GB\">\n"
      "  <po:shipTo xsi:type=\"po:USAddress\">\n"
      "    <po:name>Alice Smith</po:name>\n"
      "    <po:street>123 Maple Street</po:street>\n"
      "    <po:city>Mill Valley</po:city>\n"
      "    <po:state>CA</po:state>\n"
      "    <po:zip>90952</po:zip>\n"
      "  </po:shipTo>\n"
      "  <po:billTo xsi:type=\"po:UKAddress\">\n"
      "    <po:name>Robert Sm\xC3\xADth</po:name>\n"
      "    <po:street>8 Oak Avenue</po:street>\n"
      "    <po:city>Old Town</po:city>\n"
      "    <po:postcode>OX1 2JD</po:postcode>\n"
      "  </po:billTo>\n"
      "  <po:contactName>Alice Smith</po:contactName>\n"
      "  <po:phone>+1 415 555 0100</po:phone>\n";
  for (; document.orderComments < 16; ++document.orderComments) {
    out += "  <po:comment>Delivery note ";
    out += std::to_string(document.orderComments);
    out += ": leave parcels at the back door &amp; ring twice</po:comment>\n";
  }
  out += "  <po:items>\n";

  // The tail after the items, written last but counted against the size from the start.
  std::string tail =
      "  </po:items>\n"
      "  <po:payment>\n"
      "    <po:creditCard>\n"
      "      <po:holder>Alice Smith</po:holder>\n"
      "      <po:number>4111111111111111</po:number>\n"
      "      <po:expires>2028-06</po:expires>\n"
      "    </po:creditCard>\n"
      "  </po:payment>\n"
      "  <po:delivery>\n"
      "    <po:instructions>Ring twice &amp; wait.</po:instructions>\n"
      "    <po:priority>express</po:priority>\n"
      "    <po:window>2026-12-22T08:00:00Z</po:window>\n"
      "  </po:delivery>\n"
      "  <po:signature>";
  for (int i = 0; i < 64; ++i) tail += "U2lnbmVkIGJ5IEFsaWNlIFNtaXRo";
  tail +=
      "</po:signature>\n"
      "  <acme:tracking carrier=\"ACME Freight\">1Z999AA10123456784</acme:tracking>\n"
      "  <acme:tracking carrier=\"Post &amp; Parcel\">RR123456785GB</acme:tracking>\n"
      "</po:purchaseOrder>\n";

  unsigned seed = 12345;
  auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 8; };
  char line[768];
  while (out.size() + tail.size() < targetSize) {
    const unsigned pick = next();
    int length = std::snprintf(line, sizeof line,
                               "    <po:item partNum=\"%03u-%c%c\"%s>\n"
                               "      <po:productName>%s</po:productName>\n"
                               "      <po:quantity>%u</po:quantity>\n"
                               "      <po:unitPrice>%u.%02u</po:unitPrice>\n",
                               next() % 1000, 'A' + next() % 26, 'A' + next() % 26,
                               pick % 5 == 0 ? " acme:giftWrap=\"true\"" : "",
                               kProducts[next() % 8], 1 + next() % 99, next() % 2000, next() % 100);
    out.append(line, static_cast<std::size_t>(length));
    if (pick % 3 != 0) {
      length = std::snprintf(line, sizeof line, "      <po:shipDate>2026-%02u-%02u</po:shipDate>\n",
                             1 + next() % 12, 1 + next() % 28);
      out.append(line, static_cast<std::size_t>(length));
    }
    if (pick % 4 == 1) {
      out += "      <po:comment>";
      out += kComments[next() % 3];
      out += "</po:comment>\n";
    }
    out += "    </po:item>\n";
    ++document.items;
  }
  out += tail;
  return document;
}

}  // namespace bench

#endif  // OVXML_BENCH_PODOCUMENT_H
