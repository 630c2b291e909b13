// What the library can do today: binary values in their hexadecimal and base64 forms, shared
// copies, and the exception family with its chained messages.
#include <OvXmlLib6.h>
#include <cstdio>

using namespace OvXmlLib6;

int main() {
  CBinaryData data("Hello, XML");
  std::printf("base64: %s\n", data.GetAsBase64().c_str());
  std::printf("hex:    %s\n", data.GetAsHexString().c_str());

  CBinaryData copy = data;  // shares the bytes until one of them changes
  copy.Append("!");
  std::printf("copy:   %s (original still %u bytes)\n", copy.GetAsHexString().c_str(),
              static_cast<unsigned>(data.GetLength()));

  try {
    try {
      data.SetAsHexString("4G");
    } catch (const COvException& e) {
      throw COvValidationException("Failed to process the element [payload]", e);
    }
  } catch (const COvValidationException& e) {
    std::printf("error chain:\n%s\n", e.GetFullMessage().c_str());
  }
  return 0;
}
