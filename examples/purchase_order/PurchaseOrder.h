// The classes of the purchase-order schema (po.xsd, namespace urn:example:po), written as the
// code generator emits them: each class holds plain typed members with getters and setters,
// describes itself with three static tables (class, elements, attributes) and moves its members
// through AccessProperty by property index. CXmlGeneratedClass does all reading and writing.
//
//   CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
//   order->FromXmlFile("sample_po.xml");
//   order->GetItems()->GetItem()->Item(0)->SetQuantity(3);
//   std::string xml = order->ToXml();
//   ...
//   po::CPurchaseOrder::CleanUp();  // at the end of the program: frees the tables
//
// Unset optional members read as an invalid variant and are not written. Optional attributes
// with a default start at that default.
#ifndef OVXML_EXAMPLES_PURCHASEORDER_H
#define OVXML_EXAMPLES_PURCHASEORDER_H

#include <OvXmlLib6.h>
#include <cstdint>
#include <string>

namespace po {

using OvXmlLib6::CBinaryData;
using OvXmlLib6::CDateTime;
using OvXmlLib6::CDecimal;
using OvXmlLib6::CSmartPtr;

// The schema's target namespace.
extern const char* const kNamespace;

enum OrderStatus : std::int32_t {
  OrderStatus_open = 0,
  OrderStatus_shipped = 1,
  OrderStatus_cancelled = 2
};
enum Priority : std::int32_t {
  Priority_standard = 0,
  Priority_express = 1,
  Priority_overnight = 2
};

// The enumerations' texts. A text that is not a value of the enumeration throws
// COvInvalidValueException naming the text and the enumeration.
const char* OrderStatusToText(int value);
int OrderStatusFromText(const char* text);
const char* PriorityToText(int value);
int PriorityFromText(const char* text);

// An optional member of a primitive type: its value and whether it is set. An unset member is
// not written.
template <class T>
class COptional {
 public:
  COptional() : m_value(), m_set(false) {}
  bool IsSet() const { return m_set; }
  const T& Get() const { return m_value; }
  void Set(const T& value) {
    m_value = value;
    m_set = true;
  }
  void Clear() {
    m_value = T();
    m_set = false;
  }

 private:
  T m_value;
  bool m_set;
};

// The base of the schema's classes: the namespace they share.
class CPoClass : public OvXmlLib6::CXmlGeneratedClass {
 public:
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }
};

// What every concrete class of the schema overrides.
#define PO_GENERATED_CLASS_MEMBERS                                                 \
  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override; \
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;                \
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;              \
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;          \
  void PrepareForRead() override

// The abstract Address: documents name its extension with xsi:type (CPoFactory chooses the
// class). Properties 0 to 2; the extensions go on from 3.
class CAddress : public CPoClass {
 public:
  const std::string& GetName() const { return m_name; }
  void SetName(const std::string& value) { m_name = value; }
  const std::string& GetStreet() const { return m_street; }
  void SetStreet(const std::string& value) { m_street = value; }
  const std::string& GetCity() const { return m_city; }
  void SetCity(const std::string& value) { m_city = value; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  void PrepareForRead() override;

 protected:
  CAddress();
  // Writes xsi:type with the extension's type name before the attributes.
  void WriteTypeAndAttributes(const char* typeName, OvXmlLib6::CXmlWriter* writer,
                              const OvXmlLib6::CXmlSerializationContext& context) const;

 private:
  std::string m_name;
  std::string m_street;
  std::string m_city;
};

class CUSAddress : public CAddress {
 public:
  CUSAddress();
  const std::string& GetState() const { return m_state; }
  void SetState(const std::string& value) { m_state = value; }
  const std::string& GetZip() const { return m_zip; }
  void SetZip(const std::string& value) { m_zip = value; }

  PO_GENERATED_CLASS_MEMBERS;

 protected:
  void AttributesToXml_Int(OvXmlLib6::CXmlWriter* writer,
                           const OvXmlLib6::CXmlSerializationContext& context) const override;

 private:
  std::string m_state;
  std::string m_zip;
};

class CUKAddress : public CAddress {
 public:
  CUKAddress();
  const std::string& GetPostcode() const { return m_postcode; }
  void SetPostcode(const std::string& value) { m_postcode = value; }

  PO_GENERATED_CLASS_MEMBERS;

 protected:
  void AttributesToXml_Int(OvXmlLib6::CXmlWriter* writer,
                           const OvXmlLib6::CXmlSerializationContext& context) const override;

 private:
  std::string m_postcode;
};

// The ContactGroup group with the ContactAttributes attribute group: a pseudo element, whose
// elements are part of the order's content and whose attribute is on the order's start tag.
class CContactGroup : public CPoClass {
 public:
  CContactGroup();
  const std::string& GetContactName() const { return m_contactName; }
  void SetContactName(const std::string& value) { m_contactName = value; }
  bool HasPhone() const { return m_phone.IsSet(); }
  const std::string& GetPhone() const { return m_phone.Get(); }
  void SetPhone(const std::string& value) { m_phone.Set(value); }
  void ClearPhone() { m_phone.Clear(); }
  const std::string& GetContactLanguage() const { return m_contactLanguage; }
  void SetContactLanguage(const std::string& value) { m_contactLanguage = value; }

  PO_GENERATED_CLASS_MEMBERS;

 private:
  std::string m_contactName;
  COptional<std::string> m_phone;
  std::string m_contactLanguage;
};

class CItem : public CPoClass {
 public:
  CItem();
  const std::string& GetPartNum() const { return m_partNum; }
  void SetPartNum(const std::string& value) { m_partNum = value; }
  const std::string& GetProductName() const { return m_productName; }
  void SetProductName(const std::string& value) { m_productName = value; }
  std::int32_t GetQuantity() const { return m_quantity; }
  void SetQuantity(std::int32_t value) { m_quantity = value; }
  const CDecimal& GetUnitPrice() const { return m_unitPrice; }
  void SetUnitPrice(const CDecimal& value) { m_unitPrice = value; }
  bool HasShipDate() const { return m_shipDate.IsSet(); }
  const CDateTime& GetShipDate() const { return m_shipDate.Get(); }
  void SetShipDate(const CDateTime& value) { m_shipDate.Set(value); }
  void ClearShipDate() { m_shipDate.Clear(); }
  bool HasComment() const { return m_comment.IsSet(); }
  const std::string& GetComment() const { return m_comment.Get(); }
  void SetComment(const std::string& value) { m_comment.Set(value); }
  void ClearComment() { m_comment.Clear(); }
  // Attributes of other namespaces (anyAttribute ##other).
  const CSmartPtr<OvXmlLib6::CAttributeCol>& GetAnyAttributes() const { return m_anyAttributes; }

  PO_GENERATED_CLASS_MEMBERS;

 private:
  std::string m_partNum;
  std::string m_productName;
  std::int32_t m_quantity;
  CDecimal m_unitPrice;
  COptional<CDateTime> m_shipDate;
  COptional<std::string> m_comment;
  CSmartPtr<OvXmlLib6::CAttributeCol> m_anyAttributes;
};

using CItemCol = OvXmlLib6::CTypedCollection<CItem>;

class CItems : public CPoClass {
 public:
  CItems();
  // One or more items.
  const CSmartPtr<CItemCol>& GetItem() const { return m_item; }

  PO_GENERATED_CLASS_MEMBERS;

 private:
  CSmartPtr<CItemCol> m_item;
};

class CCreditCard : public CPoClass {
 public:
  CCreditCard();
  const std::string& GetHolder() const { return m_holder; }
  void SetHolder(const std::string& value) { m_holder = value; }
  const std::string& GetNumber() const { return m_number; }
  void SetNumber(const std::string& value) { m_number = value; }
  // A gYearMonth.
  const CDateTime& GetExpires() const { return m_expires; }
  void SetExpires(const CDateTime& value) { m_expires = value; }

  PO_GENERATED_CLASS_MEMBERS;

 private:
  std::string m_holder;
  std::string m_number;
  CDateTime m_expires;
};

// A choice: one of creditCard and bankTransfer. Setting a branch while the other is set throws
// COvInvalidStateException; clear the other first (SetCreditCard(nullptr), ClearBankTransfer()).
class CPayment : public CPoClass {
 public:
  CPayment();
  // The element name of the branch that is set, empty when none is.
  const std::string& GetSelectedElement() const { return m_selected; }
  const CSmartPtr<CCreditCard>& GetCreditCard() const { return m_creditCard; }
  void SetCreditCard(CCreditCard* value);
  bool HasBankTransfer() const { return m_bankTransfer.IsSet(); }
  const std::string& GetBankTransfer() const { return m_bankTransfer.Get(); }
  void SetBankTransfer(const std::string& value);
  void ClearBankTransfer();

  PO_GENERATED_CLASS_MEMBERS;

 private:
  std::string m_selected;
  CSmartPtr<CCreditCard> m_creditCard;
  COptional<std::string> m_bankTransfer;
};

// An all group: its elements come in any order.
class CDelivery : public CPoClass {
 public:
  CDelivery();
  Priority GetPriority() const { return m_priority; }
  void SetPriority(Priority value) { m_priority = value; }
  bool HasWindow() const { return m_window.IsSet(); }
  const CDateTime& GetWindow() const { return m_window.Get(); }
  void SetWindow(const CDateTime& value) { m_window.Set(value); }
  void ClearWindow() { m_window.Clear(); }
  bool HasInstructions() const { return m_instructions.IsSet(); }
  const std::string& GetInstructions() const { return m_instructions.Get(); }
  void SetInstructions(const std::string& value) { m_instructions.Set(value); }
  void ClearInstructions() { m_instructions.Clear(); }

  PO_GENERATED_CLASS_MEMBERS;

 private:
  Priority m_priority;
  COptional<CDateTime> m_window;
  COptional<std::string> m_instructions;
};

// The document element.
class CPurchaseOrder : public CPoClass {
 public:
  CPurchaseOrder();

  // Mandatory: null throws COvInvalidParamException. The address is renamed to the member's
  // element name ("shipTo", "billTo").
  const CSmartPtr<CAddress>& GetShipTo() const { return m_shipTo; }
  void SetShipTo(CAddress* value);
  // Optional: null clears it.
  const CSmartPtr<CAddress>& GetBillTo() const { return m_billTo; }
  void SetBillTo(CAddress* value);
  const CSmartPtr<CContactGroup>& GetContact() const { return m_contact; }
  const CSmartPtr<OvXmlLib6::CstringCol>& GetComment() const { return m_comment; }
  const CSmartPtr<CItems>& GetItems() const { return m_items; }
  void SetItems(CItems* value);
  const CSmartPtr<CPayment>& GetPayment() const { return m_payment; }
  void SetPayment(CPayment* value);
  const CSmartPtr<CDelivery>& GetDelivery() const { return m_delivery; }
  void SetDelivery(CDelivery* value) { m_delivery = value; }
  bool HasSignature() const { return m_signature.IsSet(); }
  const CBinaryData& GetSignature() const { return m_signature.Get(); }
  void SetSignature(const CBinaryData& value) { m_signature.Set(value); }
  void ClearSignature() { m_signature.Clear(); }
  // Elements of other namespaces after the order's own (xs:any ##other).
  const CSmartPtr<OvXmlLib6::CElementCol>& GetExtensions() const { return m_extensions; }

  // Required: an order whose date was never set cannot be written.
  bool HasOrderDate() const { return m_orderDate.IsSet(); }
  const CDateTime& GetOrderDate() const { return m_orderDate.Get(); }
  void SetOrderDate(const CDateTime& value) { m_orderDate.Set(value); }
  OrderStatus GetStatus() const { return m_status; }
  void SetStatus(OrderStatus value) { m_status = value; }
  const std::string& GetCurrency() const { return m_currency; }
  void SetCurrency(const std::string& value) { m_currency = value; }

  PO_GENERATED_CLASS_MEMBERS;

  // Frees the descriptor tables of every class of the schema. Call it once no thread reads or
  // writes these classes any more (at the end of the program); a later use builds them again.
  static void CleanUp();

 private:
  CSmartPtr<CAddress> m_shipTo;
  CSmartPtr<CAddress> m_billTo;
  CSmartPtr<CContactGroup> m_contact;
  CSmartPtr<OvXmlLib6::CstringCol> m_comment;
  CSmartPtr<CItems> m_items;
  CSmartPtr<CPayment> m_payment;
  CSmartPtr<CDelivery> m_delivery;
  COptional<CBinaryData> m_signature;
  CSmartPtr<OvXmlLib6::CElementCol> m_extensions;
  COptional<CDateTime> m_orderDate;
  OrderStatus m_status;
  std::string m_currency;
};

// Creates the classes of the schema for the descriptors: by class id for complex-type members,
// and by xsi:type for the abstract Address.
class CPoFactory : public OvXmlLib6::CClassfactoryBase {
 public:
  enum ClassId : int {
    ClassId_ContactGroup,
    ClassId_Item,
    ClassId_Items,
    ClassId_CreditCard,
    ClassId_Payment,
    ClassId_Delivery,
    ClassId_PurchaseOrder
  };
  // A new object of the class; null for an unknown id.
  static CSmartPtr<OvXmlLib6::CXmlObjectBase> Create(int classId, const char* elementName);
  // The Address extension that the element's xsi:type names (USAddress or UKAddress in the
  // schema's namespace); null when it names none.
  static CSmartPtr<OvXmlLib6::CXmlObjectBase> CreateAddress(OvXmlLib6::CXmlElement* element);
};

}  // namespace po

#undef PO_GENERATED_CLASS_MEMBERS

#endif  // OVXML_EXAMPLES_PURCHASEORDER_H
