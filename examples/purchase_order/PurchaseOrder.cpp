// The purchase-order classes: descriptor tables, property accessors and the class factory.
#include "PurchaseOrder.h"

#include <cstring>

using namespace OvXmlLib6;
using namespace OvXmlLib6Data;

namespace po {

const char* const kNamespace = "urn:example:po";

namespace {

constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;
constexpr auto kPreserve = CWhitespaceUtils::WhitespaceRule_Preserve;

// The three tables of one class, made on first use and freed by CPurchaseOrder::CleanUp.
struct CClassTables {
  CParentElementInfo* info;
  CElementInfo** elements;
  CAttributeInfo** attributes;
};

// The tables of a class: built once by `build` (a function-local static, so the first use is
// thread-safe), and built again when used after CleanUp.
template <CClassTables (*Build)()>
CClassTables& TablesOf() {
  static CClassTables tables = Build();
  if (tables.info == nullptr) tables = Build();
  return tables;
}

CPrimitiveRestrictions Pattern(const char* pattern) {
  return CPrimitiveRestrictions(pattern, -1, -1, nullptr, nullptr, nullptr, nullptr, -1);
}

CParentElementInfo* SequenceClass(const char* name) {
  return new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element, name,
                                kNamespace, -1, true, false);
}

CAttributeInfo** NoAttributes() {
  return new CAttributeInfo* [1] { nullptr };
}

// The object a variant holds, as the member's class; a variant holding another class throws.
template <class T>
T* ObjectOf(const OvVariant& value, const char* property) {
  const CSmartPtr<CXmlObjectBase> object = value.GetXmlObject();
  T* typed = dynamic_cast<T*>(object.get());
  if (object != nullptr && typed == nullptr) {
    throw COvInvalidParamException(
        FormatString("The property [%s] cannot hold an object of another class", property));
  }
  return typed;
}

// An optional primitive member: the value and whether it is set.
template <class T, class Set>
void ReadOptional(OvVariant& value, bool isSet, const T& member, Set set) {
  if (isSet) {
    (value.*set)(member);
  } else {
    value.SetInvalid();
  }
}

const char* EnumText(const char* const* texts, int count, int value) {
  return value >= 0 && value < count ? texts[value] : "";
}

int EnumValue(const char* const* texts, int count, const char* text, const char* enumeration) {
  for (int i = 0; i < count; ++i) {
    if (std::strcmp(texts[i], text) == 0) return i;
  }
  throw COvInvalidValueException(
      FormatString("The value [%s] is not one of the enumeration [%s]", text, enumeration));
}

const char* const kOrderStatusTexts[] = {"open", "shipped", "cancelled"};
const char* const kPriorityTexts[] = {"standard", "express", "overnight"};

// ---- The tables of each class ----

// Address: name, street, city (properties 0 to 2), then the extension's own elements.
CClassTables BuildUSAddressTables() {
  return {SequenceClass("shipTo"),
          new CElementInfo* [6] {
            new CElementInfoSeqPrimMnd("name", kNamespace, 0, ItemType_string, nullptr, kPreserve,
                                       CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("street", kNamespace, 1, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("city", kNamespace, 2, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("state", kNamespace, 3, ItemType_string, nullptr,
                                           kPreserve,
                                           [] {
                                             CPrimitiveRestrictions length;
                                             length.SetLength(2);
                                             return length;
                                           }()),
                new CElementInfoSeqPrimMnd("zip", kNamespace, 4, ItemType_string, nullptr,
                                           kPreserve, Pattern("[0-9]{5}")),
                nullptr
          },
          NoAttributes()};
}

CClassTables BuildUKAddressTables() {
  return {SequenceClass("shipTo"),
          new CElementInfo* [5] {
            new CElementInfoSeqPrimMnd("name", kNamespace, 0, ItemType_string, nullptr, kPreserve,
                                       CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("street", kNamespace, 1, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("city", kNamespace, 2, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("postcode", kNamespace, 3, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                nullptr
          },
          NoAttributes()};
}

// A pseudo element: no tag of its own, and it leaves the order's other attributes alone.
CClassTables BuildContactGroupTables() {
  return {new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_PseudoElement,
                                 "ContactGroup", kNamespace, -1, false, false),
          new CElementInfo* [3] {
            new CElementInfoSeqPrimMnd("contactName", kNamespace, 0, ItemType_string, nullptr,
                                       kPreserve, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimOpt("phone", kNamespace, 1, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                nullptr
          },
          new CAttributeInfo* [2] {
            new CAttributeInfoPrimitive("contactLanguage", "", 2, true, ItemType_string, nullptr,
                                        kCollapse, CPrimitiveRestrictions(), "en"),
                nullptr
          }};
}

CClassTables BuildItemTables() {
  CPrimitiveRestrictions quantity(nullptr, -1, -1, "1", nullptr, nullptr, "100", -1);
  CPrimitiveRestrictions price(nullptr, -1, -1, "0", nullptr, nullptr, nullptr, 10);
  price.SetFractionDigits(2);
  return {SequenceClass("item"),
          new CElementInfo* [6] {
            new CElementInfoSeqPrimMnd("productName", kNamespace, 0, ItemType_string, nullptr,
                                       kPreserve, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("quantity", kNamespace, 1, ItemType_i4, nullptr,
                                           kCollapse, quantity),
                new CElementInfoSeqPrimMnd("unitPrice", kNamespace, 2, ItemType_decimal, nullptr,
                                           kCollapse, price),
                new CElementInfoSeqPrimOpt("shipDate", kNamespace, 3, ItemType_date, nullptr,
                                           kCollapse, CPrimitiveRestrictions()),
                new CElementInfoSeqPrimOpt("comment", kNamespace, 4, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                nullptr
          },
          new CAttributeInfo* [3] {
            new CAttributeInfoPrimitive("partNum", "", 5, false, ItemType_string, nullptr,
                                        kCollapse, Pattern("\\d{3}-[A-Z]{2}"), nullptr),
                new CAttributeInfoAny("AnyAttribute", "", 6, true, "##other", kNamespace, nullptr),
                nullptr
          }};
}

CClassTables BuildItemsTables() {
  return {SequenceClass("items"),
          new CElementInfo* [2] {
            new CElementInfoSeqClsCol("item", kNamespace, 0, XmlElementType_Element), nullptr
          },
          NoAttributes()};
}

CClassTables BuildCreditCardTables() {
  return {SequenceClass("creditCard"),
          new CElementInfo* [4] {
            new CElementInfoSeqPrimMnd("holder", kNamespace, 0, ItemType_string, nullptr, kPreserve,
                                       CPrimitiveRestrictions()),
                new CElementInfoSeqPrimMnd("number", kNamespace, 1, ItemType_string, nullptr,
                                           kCollapse, Pattern("[0-9]{16}")),
                new CElementInfoSeqPrimMnd("expires", kNamespace, 2, ItemType_yearMonth, nullptr,
                                           kCollapse, CPrimitiveRestrictions()),
                nullptr
          },
          NoAttributes()};
}

CClassTables BuildPaymentTables() {
  return {new CParentElementInfo(XmlElementGroupType_Choice, XmlElementType_Element, "payment",
                                 kNamespace, -1, true, false),
          new CElementInfo* [3] {
            new CElementInfoChoiceClsOpt("creditCard", kNamespace, 0, XmlElementType_Element,
                                         &CPoFactory::Create, CPoFactory::ClassId_CreditCard),
                new CElementInfoChoicePrimOpt("bankTransfer", kNamespace, 1, ItemType_string,
                                              nullptr, kCollapse,
                                              Pattern("[A-Z]{2}[0-9]{2}[A-Z0-9]{10,30}")),
                nullptr
          },
          NoAttributes()};
}

CClassTables BuildDeliveryTables() {
  return {new CParentElementInfo(XmlElementGroupType_All, XmlElementType_Element, "delivery",
                                 kNamespace, -1, true, false),
          new CElementInfo* [4] {
            new CElementInfoAllEnumMnd("priority", kNamespace, 0, &PriorityToText,
                                       &PriorityFromText),
                new CElementInfoAllPrimOpt("window", kNamespace, 1, ItemType_datetime, nullptr,
                                           kCollapse, CPrimitiveRestrictions()),
                new CElementInfoAllPrimOpt("instructions", kNamespace, 2, ItemType_string, nullptr,
                                           kPreserve, CPrimitiveRestrictions()),
                nullptr
          },
          NoAttributes()};
}

// The order's start tag also carries the contact group's attribute, which the order's own
// descriptors do not know: unknown attributes therefore do not fail the order.
CClassTables BuildPurchaseOrderTables() {
  return {new CParentElementInfo(XmlElementGroupType_Sequence, XmlElementType_Element,
                                 "purchaseOrder", kNamespace, -1, false, false),
          new CElementInfo* [10] {
            new CElementInfoSeqAbsClsMnd("shipTo", kNamespace, 0, XmlElementType_Element,
                                         &CPoFactory::CreateAddress),
                new CElementInfoSeqAbsClsOpt("billTo", kNamespace, 1, XmlElementType_Element,
                                             &CPoFactory::CreateAddress),
                new CElementInfoSeqClsMnd("ContactGroup", kNamespace, 2,
                                          XmlElementType_PseudoElement, &CPoFactory::Create,
                                          CPoFactory::ClassId_ContactGroup, true),
                new CElementInfoSeqPrimCol("comment", kNamespace, 3),
                new CElementInfoSeqClsMnd("items", kNamespace, 4, XmlElementType_Element,
                                          &CPoFactory::Create, CPoFactory::ClassId_Items, true),
                new CElementInfoSeqClsMnd("payment", kNamespace, 5, XmlElementType_Element,
                                          &CPoFactory::Create, CPoFactory::ClassId_Payment, true),
                new CElementInfoSeqClsOpt("delivery", kNamespace, 6, XmlElementType_Element,
                                          &CPoFactory::Create, CPoFactory::ClassId_Delivery),
                new CElementInfoSeqPrimOpt("signature", kNamespace, 7, ItemType_base64Binary,
                                           nullptr, kCollapse, CPrimitiveRestrictions()),
                new CElementInfoSeqUntpdCol("AnyElement", "", 8), nullptr
          },
          new CAttributeInfo* [4] {
            new CAttributeInfoPrimitive("orderDate", "", 9, false, ItemType_date, nullptr,
                                        kCollapse, CPrimitiveRestrictions(), nullptr),
                new CAttributeInfoEnum("status", "", 10, true, &OrderStatusToText,
                                       &OrderStatusFromText, "open"),
                new CAttributeInfoPrimitive("currency", "", 11, true, ItemType_string, nullptr,
                                            kCollapse, Pattern("[A-Z]{3}"), "EUR"),
                nullptr
          }};
}

// The element names given to new objects, one shared string per name.
const CSharedString& NameShipTo() {
  static const CSharedString name = CSharedString::Permanent("shipTo");
  return name;
}

}  // namespace

const char* OrderStatusToText(int value) { return EnumText(kOrderStatusTexts, 3, value); }
int OrderStatusFromText(const char* text) {
  return EnumValue(kOrderStatusTexts, 3, text, "OrderStatus");
}
const char* PriorityToText(int value) { return EnumText(kPriorityTexts, 3, value); }
int PriorityFromText(const char* text) { return EnumValue(kPriorityTexts, 3, text, "Priority"); }

// ---- CAddress and its extensions ----

CAddress::CAddress() { SetElementName(NameShipTo()); }

void CAddress::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetString(m_name);
      else
        m_name = value.GetString();
      break;
    case 1:
      if (read)
        value.SetString(m_street);
      else
        m_street = value.GetString();
      break;
    case 2:
      if (read)
        value.SetString(m_city);
      else
        m_city = value.GetString();
      break;
    default:
      throw COvInvalidParamException(FormatString("Address has no property %d", index));
  }
}

void CAddress::PrepareForRead() {
  m_name.clear();
  m_street.clear();
  m_city.clear();
}

void CAddress::WriteTypeAndAttributes(const char* typeName, CXmlWriter* writer,
                                      const CXmlSerializationContext& context) const {
  writer->WriteXsiType(typeName, kNamespace);
  CXmlGeneratedClass::AttributesToXml_Int(writer, context);
}

CUSAddress::CUSAddress() = default;

void CUSAddress::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 3:
      if (read)
        value.SetString(m_state);
      else
        m_state = value.GetString();
      break;
    case 4:
      if (read)
        value.SetString(m_zip);
      else
        m_zip = value.GetString();
      break;
    default:
      CAddress::AccessProperty(index, read, value);
  }
}

CParentElementInfo* CUSAddress::GetClassInfo() const {
  return TablesOf<BuildUSAddressTables>().info;
}
CElementInfo** CUSAddress::GetClassElementInfo() const {
  return TablesOf<BuildUSAddressTables>().elements;
}
CAttributeInfo** CUSAddress::GetClassAttributeInfo() const {
  return TablesOf<BuildUSAddressTables>().attributes;
}

void CUSAddress::PrepareForRead() {
  CAddress::PrepareForRead();
  m_state.clear();
  m_zip.clear();
}

void CUSAddress::AttributesToXml_Int(CXmlWriter* writer,
                                     const CXmlSerializationContext& context) const {
  WriteTypeAndAttributes("USAddress", writer, context);
}

CUKAddress::CUKAddress() = default;

void CUKAddress::AccessProperty(int index, bool read, OvVariant& value) {
  if (index == 3) {
    if (read)
      value.SetString(m_postcode);
    else
      m_postcode = value.GetString();
  } else {
    CAddress::AccessProperty(index, read, value);
  }
}

CParentElementInfo* CUKAddress::GetClassInfo() const {
  return TablesOf<BuildUKAddressTables>().info;
}
CElementInfo** CUKAddress::GetClassElementInfo() const {
  return TablesOf<BuildUKAddressTables>().elements;
}
CAttributeInfo** CUKAddress::GetClassAttributeInfo() const {
  return TablesOf<BuildUKAddressTables>().attributes;
}

void CUKAddress::PrepareForRead() {
  CAddress::PrepareForRead();
  m_postcode.clear();
}

void CUKAddress::AttributesToXml_Int(CXmlWriter* writer,
                                     const CXmlSerializationContext& context) const {
  WriteTypeAndAttributes("UKAddress", writer, context);
}

// ---- CContactGroup ----

CContactGroup::CContactGroup() : m_hasPhone(false), m_contactLanguage("en") {
  static const CSharedString name = CSharedString::Permanent("ContactGroup");
  SetElementName(name);
}

void CContactGroup::SetPhone(const std::string& value) {
  m_phone = value;
  m_hasPhone = true;
}

void CContactGroup::ClearPhone() {
  m_phone.clear();
  m_hasPhone = false;
}

void CContactGroup::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetString(m_contactName);
      else
        m_contactName = value.GetString();
      break;
    case 1:
      if (read)
        ReadOptional(value, m_hasPhone, m_phone, &OvVariant::SetString);
      else
        SetPhone(value.GetString());
      break;
    case 2:
      if (read)
        value.SetString(m_contactLanguage);
      else
        m_contactLanguage = value.GetString();
      break;
    default:
      throw COvInvalidParamException(FormatString("ContactGroup has no property %d", index));
  }
}

CParentElementInfo* CContactGroup::GetClassInfo() const {
  return TablesOf<BuildContactGroupTables>().info;
}
CElementInfo** CContactGroup::GetClassElementInfo() const {
  return TablesOf<BuildContactGroupTables>().elements;
}
CAttributeInfo** CContactGroup::GetClassAttributeInfo() const {
  return TablesOf<BuildContactGroupTables>().attributes;
}

void CContactGroup::PrepareForRead() {
  m_contactName.clear();
  ClearPhone();
  m_contactLanguage = "en";
}

// ---- CItem ----

CItem::CItem()
    : m_quantity(0),
      m_hasShipDate(false),
      m_hasComment(false),
      m_anyAttributes(new CAttributeCol("AnyAttribute", "##other", kNamespace)) {
  static const CSharedString name = CSharedString::Permanent("item");
  SetElementName(name);
}

void CItem::SetShipDate(const CDateTime& value) {
  m_shipDate = value;
  m_hasShipDate = true;
}

void CItem::ClearShipDate() {
  m_shipDate = CDateTime();
  m_hasShipDate = false;
}

void CItem::SetComment(const std::string& value) {
  m_comment = value;
  m_hasComment = true;
}

void CItem::ClearComment() {
  m_comment.clear();
  m_hasComment = false;
}

void CItem::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetString(m_productName);
      else
        m_productName = value.GetString();
      break;
    case 1:
      if (read)
        value.SetI4(m_quantity);
      else
        m_quantity = value.GetI4();
      break;
    case 2:
      if (read)
        value.SetDecimal(m_unitPrice);
      else
        m_unitPrice = value.GetDecimal();
      break;
    case 3:
      if (read)
        ReadOptional(value, m_hasShipDate, m_shipDate, &OvVariant::SetDate);
      else
        SetShipDate(value.GetDate());
      break;
    case 4:
      if (read)
        ReadOptional(value, m_hasComment, m_comment, &OvVariant::SetString);
      else
        SetComment(value.GetString());
      break;
    case 5:
      if (read)
        value.SetString(m_partNum);
      else
        m_partNum = value.GetString();
      break;
    case 6:
      if (read) value.SetXmlCollection(m_anyAttributes.get());
      break;
    default:
      throw COvInvalidParamException(FormatString("Item has no property %d", index));
  }
}

CParentElementInfo* CItem::GetClassInfo() const { return TablesOf<BuildItemTables>().info; }
CElementInfo** CItem::GetClassElementInfo() const { return TablesOf<BuildItemTables>().elements; }
CAttributeInfo** CItem::GetClassAttributeInfo() const {
  return TablesOf<BuildItemTables>().attributes;
}

void CItem::PrepareForRead() {
  m_partNum.clear();
  m_productName.clear();
  m_quantity = 0;
  m_unitPrice = CDecimal();
  ClearShipDate();
  ClearComment();
  m_anyAttributes->Clear();
}

// ---- CItems ----

CItems::CItems() : m_item(new CItemCol("item", kNamespace, 1, -1)) {
  static const CSharedString name = CSharedString::Permanent("items");
  SetElementName(name);
}

void CItems::AccessProperty(int index, bool read, OvVariant& value) {
  if (index != 0) throw COvInvalidParamException(FormatString("Items has no property %d", index));
  if (read) value.SetXmlCollection(m_item.get());
}

CParentElementInfo* CItems::GetClassInfo() const { return TablesOf<BuildItemsTables>().info; }
CElementInfo** CItems::GetClassElementInfo() const { return TablesOf<BuildItemsTables>().elements; }
CAttributeInfo** CItems::GetClassAttributeInfo() const {
  return TablesOf<BuildItemsTables>().attributes;
}

void CItems::PrepareForRead() { m_item->Clear(); }

// ---- CCreditCard ----

CCreditCard::CCreditCard() {
  static const CSharedString name = CSharedString::Permanent("creditCard");
  SetElementName(name);
}

void CCreditCard::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetString(m_holder);
      else
        m_holder = value.GetString();
      break;
    case 1:
      if (read)
        value.SetString(m_number);
      else
        m_number = value.GetString();
      break;
    case 2:
      if (read)
        value.SetYearMonth(m_expires);
      else
        m_expires = value.GetYearMonth();
      break;
    default:
      throw COvInvalidParamException(FormatString("CreditCard has no property %d", index));
  }
}

CParentElementInfo* CCreditCard::GetClassInfo() const {
  return TablesOf<BuildCreditCardTables>().info;
}
CElementInfo** CCreditCard::GetClassElementInfo() const {
  return TablesOf<BuildCreditCardTables>().elements;
}
CAttributeInfo** CCreditCard::GetClassAttributeInfo() const {
  return TablesOf<BuildCreditCardTables>().attributes;
}

void CCreditCard::PrepareForRead() {
  m_holder.clear();
  m_number.clear();
  m_expires = CDateTime();
}

// ---- CPayment ----

CPayment::CPayment() : m_hasBankTransfer(false) {
  static const CSharedString name = CSharedString::Permanent("payment");
  SetElementName(name);
}

void CPayment::SetCreditCard(CCreditCard* value) {
  Choice_SelectElement("creditCard", value, m_selected);
  m_creditCard = value;
}

void CPayment::SetBankTransfer(const std::string& value) {
  // Selects the branch when none is selected; refuses it when the other one is.
  if (m_selected.empty()) {
    Choice_SelectElement("bankTransfer", nullptr, m_selected);
  } else {
    Choice_SetElementValid(true, "bankTransfer", m_selected);
  }
  m_bankTransfer = value;
  m_hasBankTransfer = true;
}

void CPayment::ClearBankTransfer() {
  if (m_selected == "bankTransfer") Choice_SetElementValid(false, "bankTransfer", m_selected);
  m_bankTransfer.clear();
  m_hasBankTransfer = false;
}

void CPayment::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetXmlObject(m_creditCard.get());
      else
        SetCreditCard(ObjectOf<CCreditCard>(value, "creditCard"));
      break;
    case 1:
      if (read)
        ReadOptional(value, m_hasBankTransfer, m_bankTransfer, &OvVariant::SetString);
      else
        SetBankTransfer(value.GetString());
      break;
    default:
      throw COvInvalidParamException(FormatString("Payment has no property %d", index));
  }
}

CParentElementInfo* CPayment::GetClassInfo() const { return TablesOf<BuildPaymentTables>().info; }
CElementInfo** CPayment::GetClassElementInfo() const {
  return TablesOf<BuildPaymentTables>().elements;
}
CAttributeInfo** CPayment::GetClassAttributeInfo() const {
  return TablesOf<BuildPaymentTables>().attributes;
}

void CPayment::PrepareForRead() {
  m_selected.clear();
  m_creditCard = nullptr;
  m_bankTransfer.clear();
  m_hasBankTransfer = false;
}

// ---- CDelivery ----

CDelivery::CDelivery()
    : m_priority(Priority_standard), m_hasWindow(false), m_hasInstructions(false) {
  static const CSharedString name = CSharedString::Permanent("delivery");
  SetElementName(name);
}

void CDelivery::SetWindow(const CDateTime& value) {
  m_window = value;
  m_hasWindow = true;
}

void CDelivery::ClearWindow() {
  m_window = CDateTime();
  m_hasWindow = false;
}

void CDelivery::SetInstructions(const std::string& value) {
  m_instructions = value;
  m_hasInstructions = true;
}

void CDelivery::ClearInstructions() {
  m_instructions.clear();
  m_hasInstructions = false;
}

void CDelivery::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetI4(m_priority);
      else
        m_priority = static_cast<Priority>(value.GetI4());
      break;
    case 1:
      if (read)
        ReadOptional(value, m_hasWindow, m_window, &OvVariant::SetDateTime);
      else
        SetWindow(value.GetDateTime());
      break;
    case 2:
      if (read)
        ReadOptional(value, m_hasInstructions, m_instructions, &OvVariant::SetString);
      else
        SetInstructions(value.GetString());
      break;
    default:
      throw COvInvalidParamException(FormatString("Delivery has no property %d", index));
  }
}

CParentElementInfo* CDelivery::GetClassInfo() const { return TablesOf<BuildDeliveryTables>().info; }
CElementInfo** CDelivery::GetClassElementInfo() const {
  return TablesOf<BuildDeliveryTables>().elements;
}
CAttributeInfo** CDelivery::GetClassAttributeInfo() const {
  return TablesOf<BuildDeliveryTables>().attributes;
}

void CDelivery::PrepareForRead() {
  m_priority = Priority_standard;
  ClearWindow();
  ClearInstructions();
}

// ---- CPurchaseOrder ----

CPurchaseOrder::CPurchaseOrder()
    : m_contact(new CContactGroup()),
      m_comment(new CstringCol("comment", kNamespace, 0, -1)),
      m_items(new CItems()),
      m_payment(new CPayment()),
      m_hasSignature(false),
      m_extensions(new CElementCol("AnyElement", "##other", kNamespace, 0, -1)),
      m_hasOrderDate(false),
      m_status(OrderStatus_open),
      m_currency("EUR") {
  static const CSharedString name = CSharedString::Permanent("purchaseOrder");
  SetElementName(name);
}

void CPurchaseOrder::SetShipTo(CAddress* value) {
  Throw_IfPropertyIsNull(value, "shipTo");
  SetElementName(value, "shipTo");
  m_shipTo = value;
}

void CPurchaseOrder::SetBillTo(CAddress* value) {
  if (value != nullptr) SetElementName(value, "billTo");
  m_billTo = value;
}

void CPurchaseOrder::SetItems(CItems* value) {
  Throw_IfPropertyIsNull(value, "items");
  m_items = value;
}

void CPurchaseOrder::SetPayment(CPayment* value) {
  Throw_IfPropertyIsNull(value, "payment");
  m_payment = value;
}

void CPurchaseOrder::SetSignature(const CBinaryData& value) {
  m_signature = value;
  m_hasSignature = true;
}

void CPurchaseOrder::ClearSignature() {
  m_signature.Clear();
  m_hasSignature = false;
}

void CPurchaseOrder::SetOrderDate(const CDateTime& value) {
  m_orderDate = value;
  m_hasOrderDate = true;
}

void CPurchaseOrder::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read)
        value.SetXmlObject(m_shipTo.get());
      else
        SetShipTo(ObjectOf<CAddress>(value, "shipTo"));
      break;
    case 1:
      if (read)
        value.SetXmlObject(m_billTo.get());
      else
        SetBillTo(ObjectOf<CAddress>(value, "billTo"));
      break;
    case 2:
      if (read)
        value.SetXmlObject(m_contact.get());
      else
        m_contact = ObjectOf<CContactGroup>(value, "ContactGroup");
      break;
    case 3:
      if (read) value.SetXmlCollection(m_comment.get());
      break;
    case 4:
      if (read)
        value.SetXmlObject(m_items.get());
      else
        SetItems(ObjectOf<CItems>(value, "items"));
      break;
    case 5:
      if (read)
        value.SetXmlObject(m_payment.get());
      else
        SetPayment(ObjectOf<CPayment>(value, "payment"));
      break;
    case 6:
      if (read)
        value.SetXmlObject(m_delivery.get());
      else
        m_delivery = ObjectOf<CDelivery>(value, "delivery");
      break;
    case 7:
      if (read)
        ReadOptional(value, m_hasSignature, m_signature, &OvVariant::SetBase64Binary);
      else
        SetSignature(value.GetBase64Binary());
      break;
    case 8:
      if (read) value.SetXmlCollection(m_extensions.get());
      break;
    case 9:
      if (read)
        ReadOptional(value, m_hasOrderDate, m_orderDate, &OvVariant::SetDate);
      else
        SetOrderDate(value.GetDate());
      break;
    case 10:
      if (read)
        value.SetI4(m_status);
      else
        m_status = static_cast<OrderStatus>(value.GetI4());
      break;
    case 11:
      if (read)
        value.SetString(m_currency);
      else
        m_currency = value.GetString();
      break;
    default:
      throw COvInvalidParamException(FormatString("PurchaseOrder has no property %d", index));
  }
}

CParentElementInfo* CPurchaseOrder::GetClassInfo() const {
  return TablesOf<BuildPurchaseOrderTables>().info;
}
CElementInfo** CPurchaseOrder::GetClassElementInfo() const {
  return TablesOf<BuildPurchaseOrderTables>().elements;
}
CAttributeInfo** CPurchaseOrder::GetClassAttributeInfo() const {
  return TablesOf<BuildPurchaseOrderTables>().attributes;
}

void CPurchaseOrder::PrepareForRead() {
  m_shipTo = nullptr;
  m_billTo = nullptr;
  m_contact = new CContactGroup();
  m_comment->Clear();
  m_items = new CItems();
  m_payment = new CPayment();
  m_delivery = nullptr;
  ClearSignature();
  m_extensions->Clear();
  m_hasOrderDate = false;
  m_orderDate = CDateTime();
  m_status = OrderStatus_open;
  m_currency = "EUR";
}

void CPurchaseOrder::CleanUp() {
  for (CClassTables* tables : {&TablesOf<BuildUSAddressTables>(), &TablesOf<BuildUKAddressTables>(),
                               &TablesOf<BuildContactGroupTables>(), &TablesOf<BuildItemTables>(),
                               &TablesOf<BuildItemsTables>(), &TablesOf<BuildCreditCardTables>(),
                               &TablesOf<BuildPaymentTables>(), &TablesOf<BuildDeliveryTables>(),
                               &TablesOf<BuildPurchaseOrderTables>()}) {
    CleanMetaData(tables->info, tables->elements, tables->attributes);
  }
}

// ---- CPoFactory ----

CSmartPtr<CXmlObjectBase> CPoFactory::Create(int classId, const char* /*elementName*/) {
  switch (classId) {
    case ClassId_ContactGroup:
      return new CContactGroup();
    case ClassId_Item:
      return new CItem();
    case ClassId_Items:
      return new CItems();
    case ClassId_CreditCard:
      return new CCreditCard();
    case ClassId_Payment:
      return new CPayment();
    case ClassId_Delivery:
      return new CDelivery();
    case ClassId_PurchaseOrder:
      return new CPurchaseOrder();
    default:
      return nullptr;
  }
}

CSmartPtr<CXmlObjectBase> CPoFactory::CreateAddress(CXmlElement* element) {
  if (GetElementTypeNamespaceUri(element) != kNamespace) return nullptr;
  const std::string type = GetElementType(element);
  if (type == "USAddress") return new CUSAddress();
  if (type == "UKAddress") return new CUKAddress();
  return nullptr;
}

}  // namespace po
