// The purchase-order classes of examples/purchase_order against the engine: the sample document
// survives reading and writing with every value, xsi:type picks the class and is written back,
// and failures deep in the document name the path to them.
#include "po.h"
#include "unit/TestSupport.h"

#include <gtest/gtest.h>
#include <regex>
#include <string>
#include <vector>

namespace OvXmlLib6 {
namespace {

using test::ReadFile;

std::string Dec(const CDecimal& value) { return CConversions::decimalToString(value, nullptr); }
std::string Date(const CDateTime& value) { return CConversions::dateToString(value); }

CSmartPtr<po::CPurchaseOrder> ReadOrder(const std::string& xml) {
  CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
  order->FromXml(xml.c_str());
  return order;
}

// Every value of the sample, through the getters.
void ExpectSampleValues(const po::CPurchaseOrder& order) {
  EXPECT_EQ(Date(order.GetOrderDate()), "2026-11-20");
  EXPECT_EQ(order.GetStatus(), po::OrderStatus_shipped);
  EXPECT_EQ(order.GetCurrency(), "EUR");  // absent: the default

  const auto* shipTo = dynamic_cast<const po::CUSAddress*>(order.GetShipTo().get());
  ASSERT_NE(shipTo, nullptr);
  EXPECT_EQ(shipTo->GetName() + "|" + shipTo->GetCity() + "|" + shipTo->GetState() + "|" +
                shipTo->GetZip(),
            "Alice Smith|Mill Valley|CA|90952");
  const auto* billTo = dynamic_cast<const po::CUKAddress*>(order.GetBillTo().get());
  ASSERT_NE(billTo, nullptr);
  EXPECT_EQ(billTo->GetStreet() + "|" + billTo->GetPostcode(), "8 Oak Avenue|OX1 2JD");

  // The pseudo element: its elements in the order's content, its attribute on the order.
  EXPECT_EQ(order.GetContactGroup()->GetContactName(), "Alice Smith");
  EXPECT_EQ(order.GetContactGroup()->GetPhone(), "+1 415 555 0100");
  EXPECT_EQ(order.GetContactLanguage(), "en-GB");

  ASSERT_EQ(order.GetComment()->GetCount(), 2);
  EXPECT_EQ(order.GetComment()->Item(1), "Leave the parcel at the back door.");

  const po::CMemberCollection<po::CItem>& items = *order.GetItems()->GetItem();
  ASSERT_EQ(items.GetCount(), 2);
  const CSmartPtr<po::CItem> first = items.Item(0);
  const CSmartPtr<po::CItem> second = items.Item(1);
  EXPECT_EQ(first->GetPartNum() + "|" + first->GetProductName(), "872-AA|Lawnmower");
  EXPECT_EQ(first->GetQuantity(), 1);
  EXPECT_EQ(Dec(first->GetUnitPrice()), "148.95");
  EXPECT_FALSE(first->IsShipDateSet());
  EXPECT_EQ(first->GetComment(), "Confirm this is electric");
  ASSERT_EQ(first->GetAnyAttributes()->GetCount(), 1);
  const CSmartPtr<CAttribute> giftWrap = first->GetAnyAttributes()->Item(0);
  EXPECT_EQ(giftWrap->GetNamespace() + "|" + giftWrap->GetName() + "|" + giftWrap->GetValue(),
            "urn:example:acme|giftWrap|true");
  EXPECT_EQ(second->GetQuantity(), 2);
  EXPECT_EQ(Dec(second->GetUnitPrice()), "39.98");
  EXPECT_EQ(Date(second->GetShipDate()), "2026-12-21");
  EXPECT_FALSE(second->IsCommentSet());
  EXPECT_EQ(second->GetAnyAttributes()->GetCount(), 0);

  const po::CPayment& payment = *order.GetPayment();
  EXPECT_EQ(payment.GetSelectedElement(), "creditCard");
  ASSERT_NE(payment.GetCreditCard(), nullptr);
  EXPECT_EQ(payment.GetCreditCard()->GetNumber(), "4111111111111111");
  EXPECT_EQ(CConversions::yearMonthToString(payment.GetCreditCard()->GetExpires()), "2028-06");
  EXPECT_FALSE(payment.IsBankTransferSet());

  ASSERT_NE(order.GetDelivery(), nullptr);  // an all group, read in another order
  EXPECT_EQ(order.GetDelivery()->GetPriority(), po::Priority_express);
  EXPECT_EQ(CConversions::datetimeToString(order.GetDelivery()->GetWindow()),
            "2026-12-22T08:00:00Z");
  EXPECT_EQ(order.GetDelivery()->GetInstructions(), "Ring twice.");

  EXPECT_EQ(test::Bytes(order.GetSignature()), "Signed by Alice Smith");
  ASSERT_EQ(order.GetAny()->GetCount(), 1);
  const CSmartPtr<CElement> tracking = order.GetAny()->Item(0);
  EXPECT_EQ(tracking->GetNamespace() + "|" + tracking->GetName() + "|" + tracking->GetText(),
            "urn:example:acme|tracking|1Z999AA10123456784");
}

TEST(PurchaseOrder, SampleKeepsEveryValueThroughWritingAndReadingAgain) {
  const std::string sample = ReadFile(OVXML_PO_SAMPLE);
  ASSERT_FALSE(sample.empty());
  CSmartPtr<po::CPurchaseOrder> order = ReadOrder(sample);
  ExpectSampleValues(*order);

  const std::string written = order->ToXml();
  CSmartPtr<po::CPurchaseOrder> again = ReadOrder(written);
  ExpectSampleValues(*again);
  EXPECT_EQ(again->ToXml(), written);

  // Through Fast Infoset, plain and with typed encodings, the same order comes back.
  CXmlSerializationContext typed;
  typed.GetFIContext().SetSuggestedValues();
  for (const CXmlSerializationContext* context : std::vector<const CXmlSerializationContext*>{
           &CXmlSerializationContext::GetDefaultContext(), &typed}) {
    const CBinaryData fi = order->ToFastInfosetStream(FInfoDecl_None, *context);
    CSmartPtr<po::CPurchaseOrder> viaFi = new po::CPurchaseOrder();
    viaFi->FromXmlStream(fi, *context);
    EXPECT_EQ(viaFi->ToXml(), written);
  }

  // Reading replaces the whole content: nothing of the first document stays behind.
  again->FromXml(written.c_str());
  EXPECT_EQ(again->GetItems()->GetItem()->GetCount(), 2);
  EXPECT_EQ(again->GetComment()->GetCount(), 2);
}

TEST(PurchaseOrder, XsiTypeChoosesTheExtensionAndIsWrittenBack) {
  CSmartPtr<po::CPurchaseOrder> order = ReadOrder(ReadFile(OVXML_PO_SAMPLE));
  const std::string written = order->ToXml(false, false);
  // The type's prefix is the writer's own; it must be bound to the schema's namespace.
  std::smatch match;
  ASSERT_TRUE(std::regex_search(written, match,
                                std::regex(R"(<(\w+):shipTo [^>]*\w+:type="(\w+):USAddress")")))
      << written;
  EXPECT_NE(written.find("xmlns:" + match[2].str() + "=\"urn:example:po\""), std::string::npos);
  EXPECT_TRUE(std::regex_search(written, std::regex(R"(<\w+:billTo [^>]*:type="\w+:UKAddress")")));

  // Swapping the classes swaps the written types.
  CSmartPtr<po::CUKAddress> uk = new po::CUKAddress();
  uk->SetPostcode("EC1A 1BB");
  order->SetShipTo(uk);
  CSmartPtr<po::CPurchaseOrder> again = ReadOrder(order->ToXml());
  ASSERT_NE(dynamic_cast<po::CUKAddress*>(again->GetShipTo().get()), nullptr);
  EXPECT_EQ(static_cast<po::CUKAddress*>(again->GetShipTo().get())->GetPostcode(), "EC1A 1BB");
}

// Failures name every element on their path, outermost first.
TEST(PurchaseOrder, FailuresNameThePathToTheFaultyElement) {
  const std::string sample = ReadFile(OVXML_PO_SAMPLE);
  auto replaced = [&sample](const std::string& from, const std::string& to) {
    std::string text = sample;
    const std::size_t at = text.find(from);
    EXPECT_NE(at, std::string::npos) << from;
    return at == std::string::npos ? text : text.replace(at, from.size(), to);
  };
  auto readFailure = [](const std::string& xml) {
    try {
      ReadOrder(xml);
    } catch (const COvException& e) {
      return e.GetFullMessage();
    }
    return std::string("no exception");
  };

  const std::string order = "Failed to process the element [purchaseOrder]\n";
  const std::string item =
      order + "Failed to process the element [items]\n" + "Failed to process the element [item]\n";
  const struct {
    const char* from;
    const char* to;
    std::string message;
  } cases[] = {
      {"<po:unitPrice>39.98</po:unitPrice>", "",
       item + "Failed to find a required element [unitPrice]"},
      {">express<", ">whenever<",
       order + "Failed to process the element [delivery]\n" +
           "The value [whenever] is not one of the enumeration [Priority]"},
      {"po:USAddress", "po:MarsAddress",
       order + "Failed to find a suitable substitution element for [shipTo]"},
      // The wildcards take other namespaces only.
      {"<acme:tracking", "<po:tracking/><acme:tracking",
       order + "Failed read all the elements held within the element [purchaseOrder]. The "
               "unexpected element [tracking] remains un processed"},
      {"partNum=\"926-AA\"", "partNum=\"926-AA\" po:giftWrap=\"true\"",
       item + "Invalid namespace [urn:example:po]. The namespace must be one of [##other] where "
              "the target namespace is [urn:example:po]"},
      // The all group takes each element once.
      {"<po:window>", "<po:priority>standard</po:priority><po:window>",
       order + "Failed to process the element [delivery]\n" +
           "Failed read all the elements held within the element [delivery]. The unexpected "
           "element [priority] remains un processed"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(readFailure(replaced(c.from, c.to)), c.message) << c.to;
  }

  CSmartPtr<po::CPurchaseOrder> changed = ReadOrder(sample);
  changed->GetItems()->GetItem()->Item(1)->SetQuantity(100);  // maxExclusive 100
  std::string written;
  try {
    written = changed->ToXml();
  } catch (const COvException& e) {
    written = e.GetFullMessage();
  }
  EXPECT_EQ(written,
            "Failed to convert the element [purchaseOrder] to XML\n"
            "Failed to convert the element [items] to XML\n"
            "Failed to convert the element [item] to XML\n"
            "Invalid Value for quantity [100]");

  // The choice keeps one branch: the second is refused until the first is cleared.
  test::ExpectThrowMessage<COvInvalidStateException>(
      [&] { changed->GetPayment()->SetBankTransfer("DE89370400440532013000"); },
      "The Property creditCard is already set. Only one element within this class bay be set at "
      "a time");
  changed->GetPayment()->SetCreditCard(nullptr);
  changed->GetPayment()->SetBankTransfer("DE89370400440532013000");
  EXPECT_EQ(changed->GetPayment()->GetSelectedElement(), "bankTransfer");
}

// The attribute defaults of the tables agree with the members' first values, so an attribute
// left at its default is left out when the context asks; and the tables come back after CleanUp.
TEST(PurchaseOrder, DefaultsAndTablesAfterCleanUp) {
  CSmartPtr<po::CPurchaseOrder> order = ReadOrder(ReadFile(OVXML_PO_SAMPLE));
  CXmlSerializationContext context;
  context.SetNoOptionalAttributeDefaultOutput(true);
  order->SetStatus(po::OrderStatus_open);
  order->SetContactLanguage("en");
  const std::string written = order->ToXml(false, false, EOLType_LF, context);
  EXPECT_EQ(written.substr(0, written.find('>')),
            "<AA:purchaseOrder xmlns:AA=\"urn:example:po\" orderDate=\"2026-11-20\"");

  po::CPoFactory::CleanUp();
  CSmartPtr<po::CPurchaseOrder> again = ReadOrder(written);
  EXPECT_EQ(again->GetCurrency(), "EUR");
  EXPECT_EQ(again->GetContactLanguage(), "en");
  EXPECT_EQ(again->ToXml(false, false, EOLType_LF, context), written);
}

}  // namespace
}  // namespace OvXmlLib6
