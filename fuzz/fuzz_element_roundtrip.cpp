// Bytes read into a wildcard CElement, written as XML text and as Fast Infoset, each read again:
// both must read and write the same text as the first write.
#include "FuzzSupport.h"
#include "OvXmlLib6/metadata/Element.h"

using namespace OvXmlLib6;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ObjectRoundTrip<CElement>(data, size,
                                  [] { return CSmartPtr<CElement>(new CElement("root")); });
  return 0;
}
