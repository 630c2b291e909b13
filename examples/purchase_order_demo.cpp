// The purchase-order demonstration: reads the sample document into the generated classes of
// po.xsd, reads values back through the getters, changes the order, writes it as formatted XML
// and shows how a value that breaks the schema is reported.
//
//   ovxml_po_demo [purchase-order.xml]
#include "po.h"

#include <cstdio>
#include <string>

using namespace OvXmlLib6;

namespace {

const auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

std::string Text(const CDecimal& value) { return CConversions::decimalToString(value, nullptr); }
std::string Date(const CDateTime& value) { return CConversions::dateToString(value); }

std::string AddressLine(const po::CAddress& address) {
  std::string line = address.GetName() + ", " + address.GetStreet() + ", " + address.GetCity();
  if (const auto* us = dynamic_cast<const po::CUSAddress*>(&address)) {
    line += " " + us->GetState() + " " + us->GetZip() + " (a USAddress)";
  } else if (const auto* uk = dynamic_cast<const po::CUKAddress*>(&address)) {
    line += " " + uk->GetPostcode() + " (a UKAddress)";
  }
  return line;
}

void PrintOrder(const po::CPurchaseOrder& order) {
  std::printf("The order of %s is %s, in %s, and ships to %s.\n",
              Date(order.GetOrderDate()).c_str(), po::OrderStatusToText(order.GetStatus()),
              order.GetCurrency().c_str(), AddressLine(*order.GetShipTo()).c_str());
  if (order.GetBillTo() != nullptr) {
    std::printf("The bill goes to %s.\n", AddressLine(*order.GetBillTo()).c_str());
  }
  const po::CContactGroup& contact = *order.GetContactGroup();
  std::printf("The contact is %s (%s), who reads %s.\n", contact.GetContactName().c_str(),
              contact.IsPhoneSet() ? contact.GetPhone().c_str() : "no phone",
              order.GetContactLanguage().c_str());
  for (const std::string& comment : *order.GetComment()) {
    std::printf("A comment says: \"%s\"\n", comment.c_str());
  }

  CDecimal total;
  for (const po::CItem* item : *order.GetItems()->GetItem()) {
    const CDecimal amount = item->GetUnitPrice() * CDecimal(item->GetQuantity());
    total += amount;
    std::string extra;
    if (item->IsShipDateSet()) extra += ", shipping on " + Date(item->GetShipDate());
    for (const CAttribute* attribute : *item->GetAnyAttributes()) {
      extra += ", with " + attribute->GetName() + "=\"" + attribute->GetValue() + "\" from " +
               attribute->GetNamespace();
    }
    std::printf("Item %s: %d x %s at %s makes %s%s.\n", item->GetPartNum().c_str(),
                item->GetQuantity(), item->GetProductName().c_str(),
                Text(item->GetUnitPrice()).c_str(), Text(amount).c_str(), extra.c_str());
  }
  std::printf("The items come to %s %s.\n", Text(total).c_str(), order.GetCurrency().c_str());

  const po::CPayment& payment = *order.GetPayment();
  if (payment.GetCreditCard() != nullptr) {
    std::printf("It is paid by the credit card of %s, valid until %s.\n",
                payment.GetCreditCard()->GetHolder().c_str(),
                CConversions::yearMonthToString(payment.GetCreditCard()->GetExpires()).c_str());
  } else if (payment.IsBankTransferSet()) {
    std::printf("It is paid by bank transfer from %s.\n", payment.GetBankTransfer().c_str());
  }
  if (const po::CDelivery* delivery = order.GetDelivery()) {
    std::string details = po::PriorityToText(delivery->GetPriority());
    if (delivery->IsWindowSet()) {
      details += ", from " + CConversions::datetimeToString(delivery->GetWindow());
    }
    if (delivery->IsInstructionsSet()) {
      details += ", with the note \"" + delivery->GetInstructions() + "\"";
    }
    std::printf("Delivery is %s.\n", details.c_str());
  }
  if (order.IsSignatureSet()) {
    const CBinaryData& signature = order.GetSignature();
    std::printf("The signature holds %u bytes: \"%.*s\".\n",
                static_cast<unsigned>(signature.GetLength()),
                static_cast<int>(signature.GetLength()),
                reinterpret_cast<const char*>(signature.GetData()));
  }
  for (const CElement* extension : *order.GetAny()) {
    std::printf("An extension {%s}%s says \"%s\".\n", extension->GetNamespace().c_str(),
                extension->GetName().c_str(), extension->GetText().c_str());
  }
}

void ChangeOrder(po::CPurchaseOrder& order) {
  CSmartPtr<po::CItem> lawnmower = order.GetItems()->GetItem()->Item(0);
  lawnmower->SetQuantity(3);
  CSmartPtr<po::CItem> monitor = order.GetItems()->GetItem()->Item(1);
  monitor->SetShipDate(CConversions::dateFromString("2027-01-04", kCollapse));

  CSmartPtr<po::CItem> hose = order.GetItems()->GetItem()->Add();
  hose->SetPartNum("455-BX");
  hose->SetProductName("Garden hose");
  hose->SetQuantity(1);
  hose->SetUnitPrice(CConversions::decimalFromString("19.50", kCollapse));

  // A choice holds one branch: the card goes before the transfer comes.
  order.GetPayment()->SetCreditCard(nullptr);
  order.GetPayment()->SetBankTransfer("DE89370400440532013000");
  order.SetStatus(po::OrderStatus_open);
}

void ShowValidationFailure(po::CPurchaseOrder& order) {
  CSmartPtr<po::CItem> item = order.GetItems()->GetItem()->Item(2);
  item->SetQuantity(150);
  std::printf(
      "The schema allows 1 to 99 pieces an item; asked to write 150 garden hoses, the order "
      "refuses, and the message names every element on the way:\n");
  try {
    order.ToXml();
    std::printf("(Unexpectedly, the order was written.)\n");
  } catch (const COvException& e) {
    std::printf("%s\n", e.GetFullMessage().c_str());
  }
  item->SetQuantity(1);
}

int Run(const char* path) {
  CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
  try {
    order->FromXmlFile(path);
    std::printf("Read %s into a CPurchaseOrder.\n", path);
    PrintOrder(*order);

    ChangeOrder(*order);
    std::printf(
        "\nNow 3 lawnmowers are ordered, the baby monitor ships on 2027-01-04, a garden hose is "
        "added, payment switches from the credit card to a bank transfer and the order is open "
        "again. Written as formatted XML, with the prefixes \"po\" and \"xsi\" declared on the "
        "root:\n");
    CXmlSerializationContext output;
    output.GetNamespaceAliases().Add("po", "urn:example:po");
    output.GetNamespaceAliases().Add("xsi", "http://www.w3.org/2001/XMLSchema-instance");
    std::printf("%s\n", order->ToXml(true, true, EOLType_LF, output).c_str());

    ShowValidationFailure(*order);
  } catch (const COvException& e) {
    std::printf("The demonstration failed:\n%s\n", e.GetFullMessage().c_str());
    return 1;
  }
  return 0;
}

}  // namespace

int main(int argc, char** argv) {
  const int status = Run(argc > 1 ? argv[1] : OVXML_PO_SAMPLE);
  po::CPoFactory::CleanUp();
  return status;
}
