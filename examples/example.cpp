// A short tour of the value types: XML Schema dates, durations, decimals and big integers with
// their lexical forms, binary data, and an error as the library reports it. The purchase-order
// demonstration (purchase_order_demo.cpp) shows generated classes reading and writing XML.
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

void Errors() {
  // Every failure is one of the library's exceptions, with a message that says what failed.
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
  Errors();
  return 0;
}
