// Bytes read into the purchase-order classes generated from examples/purchase_order/po.xsd,
// written as XML text and as Fast Infoset, each read again: both must read and write the same
// text as the first write.
#include "FuzzSupport.h"
#include "po.h"

using namespace OvXmlLib6;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::ObjectRoundTrip<po::CPurchaseOrder>(
      data, size, [] { return CSmartPtr<po::CPurchaseOrder>(new po::CPurchaseOrder()); });
  return 0;
}
