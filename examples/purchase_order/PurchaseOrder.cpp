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

// The tables of a class: built once by `Build` (a function-local static, so the first use is
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

// Moves a member through the variant: read copies it in, write stores the variant's value.
template <class T, class Set, class Get>
void Move(OvVariant& value, bool read, T& member, Set set, Get get) {
  if (read) {
    (value.*set)(member);
  } else {
    member = (value.*get)();
  }
}

// An optional member reads as an invalid variant while it is unset.
template <class T, class Set, class Get>
void Move(OvVariant& value, bool read, COptional<T>& member, Set set, Get get) {
  if (!read) {
    member.Set((value.*get)());
  } else if (member.IsSet()) {
    (value.*set)(member.Get());
  } else {
    value.SetInvalid();
  }
}

// An enumeration travels as its int.
template <class E>
void MoveEnum(OvVariant& value, bool read, E& member) {
  if (read) {
    value.SetI4(member);
  } else {
    member = static_cast<E>(value.GetI4());
  }
}

// A collection is read only: the descriptors fill the collection the member holds.
void ReadCollection(OvVariant& value, bool read, CXmlCollectionBase* collection) {
  if (read) value.SetXmlCollection(collection);
}

[[noreturn]] void NoProperty(const char* className, int index) {
  throw COvInvalidParamException(FormatString("%s has no property %d", className, index));
}

constexpr auto kGetString = &OvVariant::GetString;
// The copying overload: members keep their text.
constexpr void (OvVariant::*kSetString)(const std::string&) = &OvVariant::SetString;

const char* EnumText(const char* const* texts, int count, int value) {
  return value >= 0 && value < count ? texts[value] : "";
}

int EnumValue(const char* const* texts, int count, const char* text, const char* enumeration) {
  for (int i = 0; i < count; ++i) {
    if (text != nullptr && std::strcmp(texts[i], text) == 0) return i;
  }
  throw COvInvalidValueException(FormatString("The value [%s] is not one of the enumeration [%s]",
                                              text != nullptr ? text : "", enumeration));
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

// The three table accessors of a class whose tables `Build` makes.
#define PO_CLASS_TABLES(Class, Build)                                                      \
  CParentElementInfo* Class::GetClassInfo() const { return TablesOf<Build>().info; }       \
  CElementInfo** Class::GetClassElementInfo() const { return TablesOf<Build>().elements; } \
  CAttributeInfo** Class::GetClassAttributeInfo() const { return TablesOf<Build>().attributes; }

CAddress::CAddress() { SetElementName(NameShipTo()); }

void CAddress::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      Move(value, read, m_name, kSetString, kGetString);
      break;
    case 1:
      Move(value, read, m_street, kSetString, kGetString);
      break;
    case 2:
      Move(value, read, m_city, kSetString, kGetString);
      break;
    default:
      NoProperty("Address", index);
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
      Move(value, read, m_state, kSetString, kGetString);
      break;
    case 4:
      Move(value, read, m_zip, kSetString, kGetString);
      break;
    default:
      CAddress::AccessProperty(index, read, value);
  }
}

PO_CLASS_TABLES(CUSAddress, BuildUSAddressTables)

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
    Move(value, read, m_postcode, kSetString, kGetString);
  } else {
    CAddress::AccessProperty(index, read, value);
  }
}

PO_CLASS_TABLES(CUKAddress, BuildUKAddressTables)

void CUKAddress::PrepareForRead() {
  CAddress::PrepareForRead();
  m_postcode.clear();
}

void CUKAddress::AttributesToXml_Int(CXmlWriter* writer,
                                     const CXmlSerializationContext& context) const {
  WriteTypeAndAttributes("UKAddress", writer, context);
}

// ---- CContactGroup ----

CContactGroup::CContactGroup() : m_contactLanguage("en") {
  static const CSharedString name = CSharedString::Permanent("ContactGroup");
  SetElementName(name);
}

void CContactGroup::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      Move(value, read, m_contactName, kSetString, kGetString);
      break;
    case 1:
      Move(value, read, m_phone, kSetString, kGetString);
      break;
    case 2:
      Move(value, read, m_contactLanguage, kSetString, kGetString);
      break;
    default:
      NoProperty("ContactGroup", index);
  }
}

PO_CLASS_TABLES(CContactGroup, BuildContactGroupTables)

void CContactGroup::PrepareForRead() {
  m_contactName.clear();
  m_phone.Clear();
  m_contactLanguage = "en";
}

// ---- CItem ----

CItem::CItem()
    : m_quantity(0), m_anyAttributes(new CAttributeCol("AnyAttribute", "##other", kNamespace)) {
  static const CSharedString name = CSharedString::Permanent("item");
  SetElementName(name);
}

void CItem::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      Move(value, read, m_productName, kSetString, kGetString);
      break;
    case 1:
      Move(value, read, m_quantity, &OvVariant::SetI4, &OvVariant::GetI4);
      break;
    case 2:
      Move(value, read, m_unitPrice, &OvVariant::SetDecimal, &OvVariant::GetDecimal);
      break;
    case 3:
      Move(value, read, m_shipDate, &OvVariant::SetDate, &OvVariant::GetDate);
      break;
    case 4:
      Move(value, read, m_comment, kSetString, kGetString);
      break;
    case 5:
      Move(value, read, m_partNum, kSetString, kGetString);
      break;
    case 6:
      ReadCollection(value, read, m_anyAttributes.get());
      break;
    default:
      NoProperty("Item", index);
  }
}

PO_CLASS_TABLES(CItem, BuildItemTables)

void CItem::PrepareForRead() {
  m_partNum.clear();
  m_productName.clear();
  m_quantity = 0;
  m_unitPrice = CDecimal();
  m_shipDate.Clear();
  m_comment.Clear();
  m_anyAttributes->Clear();
}

// ---- CItems ----

CItems::CItems() : m_item(new CItemCol("item", kNamespace, 1, -1)) {
  static const CSharedString name = CSharedString::Permanent("items");
  SetElementName(name);
}

void CItems::AccessProperty(int index, bool read, OvVariant& value) {
  if (index != 0) NoProperty("Items", index);
  ReadCollection(value, read, m_item.get());
}

PO_CLASS_TABLES(CItems, BuildItemsTables)

void CItems::PrepareForRead() { m_item->Clear(); }

// ---- CCreditCard ----

CCreditCard::CCreditCard() {
  static const CSharedString name = CSharedString::Permanent("creditCard");
  SetElementName(name);
}

void CCreditCard::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      Move(value, read, m_holder, kSetString, kGetString);
      break;
    case 1:
      Move(value, read, m_number, kSetString, kGetString);
      break;
    case 2:
      Move(value, read, m_expires, &OvVariant::SetYearMonth, &OvVariant::GetYearMonth);
      break;
    default:
      NoProperty("CreditCard", index);
  }
}

PO_CLASS_TABLES(CCreditCard, BuildCreditCardTables)

void CCreditCard::PrepareForRead() {
  m_holder.clear();
  m_number.clear();
  m_expires = CDateTime();
}

// ---- CPayment ----

CPayment::CPayment() {
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
  m_bankTransfer.Set(value);
}

void CPayment::ClearBankTransfer() {
  if (m_selected == "bankTransfer") Choice_SetElementValid(false, "bankTransfer", m_selected);
  m_bankTransfer.Clear();
}

void CPayment::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      if (read) {
        value.SetXmlObject(m_creditCard.get());
      } else {
        SetCreditCard(ObjectOf<CCreditCard>(value, "creditCard"));
      }
      break;
    case 1:
      if (read) {
        Move(value, read, m_bankTransfer, kSetString, kGetString);
      } else {
        SetBankTransfer(value.GetString());
      }
      break;
    default:
      NoProperty("Payment", index);
  }
}

PO_CLASS_TABLES(CPayment, BuildPaymentTables)

void CPayment::PrepareForRead() {
  m_selected.clear();
  m_creditCard = nullptr;
  m_bankTransfer.Clear();
}

// ---- CDelivery ----

CDelivery::CDelivery() : m_priority(Priority_standard) {
  static const CSharedString name = CSharedString::Permanent("delivery");
  SetElementName(name);
}

void CDelivery::AccessProperty(int index, bool read, OvVariant& value) {
  switch (index) {
    case 0:
      MoveEnum(value, read, m_priority);
      break;
    case 1:
      Move(value, read, m_window, &OvVariant::SetDateTime, &OvVariant::GetDateTime);
      break;
    case 2:
      Move(value, read, m_instructions, kSetString, kGetString);
      break;
    default:
      NoProperty("Delivery", index);
  }
}

PO_CLASS_TABLES(CDelivery, BuildDeliveryTables)

void CDelivery::PrepareForRead() {
  m_priority = Priority_standard;
  m_window.Clear();
  m_instructions.Clear();
}

// ---- CPurchaseOrder ----

CPurchaseOrder::CPurchaseOrder()
    : m_contact(new CContactGroup()),
      m_comment(new CstringCol("comment", kNamespace, 0, -1)),
      m_items(new CItems()),
      m_payment(new CPayment()),
      m_extensions(new CElementCol("AnyElement", "##other", kNamespace, 0, -1)),
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

void CPurchaseOrder::AccessProperty(int index, bool read, OvVariant& value) {
  // The object members: read hands out the object, write takes the one the descriptor made.
  CXmlObjectBase* object = nullptr;
  switch (index) {
    case 0:
      object = m_shipTo.get();
      break;
    case 1:
      object = m_billTo.get();
      break;
    case 2:
      object = m_contact.get();
      break;
    case 4:
      object = m_items.get();
      break;
    case 5:
      object = m_payment.get();
      break;
    case 6:
      object = m_delivery.get();
      break;
    case 3:
      ReadCollection(value, read, m_comment.get());
      return;
    case 7:
      Move(value, read, m_signature, &OvVariant::SetBase64Binary, &OvVariant::GetBase64Binary);
      return;
    case 8:
      ReadCollection(value, read, m_extensions.get());
      return;
    case 9:
      Move(value, read, m_orderDate, &OvVariant::SetDate, &OvVariant::GetDate);
      return;
    case 10:
      MoveEnum(value, read, m_status);
      return;
    case 11:
      Move(value, read, m_currency, kSetString, kGetString);
      return;
    default:
      NoProperty("PurchaseOrder", index);
  }
  if (read) {
    value.SetXmlObject(object);
    return;
  }
  switch (index) {
    case 0:
      SetShipTo(ObjectOf<CAddress>(value, "shipTo"));
      break;
    case 1:
      SetBillTo(ObjectOf<CAddress>(value, "billTo"));
      break;
    case 2:
      m_contact = ObjectOf<CContactGroup>(value, "ContactGroup");
      break;
    case 4:
      SetItems(ObjectOf<CItems>(value, "items"));
      break;
    case 5:
      SetPayment(ObjectOf<CPayment>(value, "payment"));
      break;
    default:
      m_delivery = ObjectOf<CDelivery>(value, "delivery");
      break;
  }
}

PO_CLASS_TABLES(CPurchaseOrder, BuildPurchaseOrderTables)

#undef PO_CLASS_TABLES

void CPurchaseOrder::PrepareForRead() {
  m_shipTo = nullptr;
  m_billTo = nullptr;
  m_contact = new CContactGroup();
  m_comment->Clear();
  m_items = new CItems();
  m_payment = new CPayment();
  m_delivery = nullptr;
  m_signature.Clear();
  m_extensions->Clear();
  m_orderDate.Clear();
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
