// A program outside the tree that uses the library only through its umbrella header and, when
// built through CMake, classes that ovxml_generate made from order.xsd at build time.
#include <OvXmlLib6.h>
#include <cstdio>
#include <string>
#ifdef OVXML_CONSUMER_GENERATED
#include "order.h"
#include "orderFactory.h"
#endif

namespace {

// Reads an order into the generated classes, changes it, writes it and reads it back.
int UseGeneratedClasses() {
#ifdef OVXML_CONSUMER_GENERATED
  OvXmlLib6::CSmartPtr<shop::COrder> order = new shop::COrder();
  order->FromXml(
      "<order xmlns='urn:consumer:order' status='shipped'><customer>Ada</customer>"
      "<line sku='A-1'><qty>2</qty></line></order>");
  if (order->GetCustomer() != "Ada" || order->GetStatus() != shop::Status_shipped ||
      order->GetLine()->GetCount() != 1 || order->GetLine()->Item(0)->GetQty() != 2)
    return 3;
  order->GetLine()->Add()->SetSku("B-2");
  order->GetLine()->Item(1)->SetQty(5);
  order->SetNote("ring twice");
  OvXmlLib6::CSmartPtr<shop::COrder> again = new shop::COrder();
  again->FromXml(order->ToXml().c_str());
  if (again->GetLine()->GetCount() != 2 || !again->IsNoteSet() ||
      again->GetLine()->Item(1)->GetSku() != "B-2")
    return 4;
  // A quantity outside its facet fails when written.
  again->GetLine()->Item(1)->SetQty(100);
  try {
    again->ToXml();
    return 5;
  } catch (const OvXmlLib6::COvException&) {
  }
  shop::COrderFactory::CleanUp();
#endif
  return 0;
}

}  // namespace

int main() {
  OvXmlLib6::CBinaryData data("Man");
  if (data.GetAsBase64() != "TWFu") return 1;
  if (const int failed = UseGeneratedClasses()) return failed;
  try {
    data.SetAsHexString("0G");
  } catch (const OvXmlLib6::COvException& e) {
    std::printf("%s\n", e.GetMessage().c_str());
    return 0;
  }
  return 2;
}
