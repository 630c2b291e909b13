// A program outside the tree that uses the library only through its umbrella header.
#include <OvXmlLib6.h>
#include <cstdio>

int main() {
  OvXmlLib6::CBinaryData data("Man");
  if (data.GetAsBase64() != "TWFu") return 1;
  try {
    data.SetAsHexString("0G");
  } catch (const OvXmlLib6::COvException& e) {
    std::printf("%s\n", e.GetMessage().c_str());
    return 0;
  }
  return 2;
}
