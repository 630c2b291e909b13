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

// The abstract Address: documents name its extension with xsi:type (CPoFactory chooses the
// class). Properties 0 to 2; the extensions go on from 3.
class CAddress : public OvXmlLib6::CXmlGeneratedClass {
 public:
  const std::string& GetName() const { return m_name; }
  void SetName(const std::string& value) { m_name = value; }
  const std::string& GetStreet() const { return m_street; }
  void SetStreet(const std::string& value) { m_street = value; }
  const std::string& GetCity() const { return m_city; }
  void SetCity(const std::string& value) { m_city = value; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  CAddress();
  std::string GetTargetNamespace() const override { return kNamespace; }
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

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;

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

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;

 protected:
  void AttributesToXml_Int(OvXmlLib6::CXmlWriter* writer,
                           const OvXmlLib6::CXmlSerializationContext& context) const override;

 private:
  std::string m_postcode;
};

// The ContactGroup group with the ContactAttributes attribute group: a pseudo element, whose
// elements are part of the order's content and whose attribute is on the order's start tag.
class CContactGroup : public OvXmlLib6::CXmlGeneratedClass {
 public:
  CContactGroup();
  const std::string& GetContactName() const { return m_contactName; }
  void SetContactName(const std::string& value) { m_contactName = value; }
  bool HasPhone() const { return m_hasPhone; }
  const std::string& GetPhone() const { return m_phone; }
  void SetPhone(const std::string& value);
  void ClearPhone();
  const std::string& GetContactLanguage() const { return m_contactLanguage; }
  void SetContactLanguage(const std::string& value) { m_contactLanguage = value; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  std::string m_contactName;
  bool m_hasPhone;
  std::string m_phone;
  std::string m_contactLanguage;
};

class CItem : public OvXmlLib6::CXmlGeneratedClass {
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
  bool HasShipDate() const { return m_hasShipDate; }
  const CDateTime& GetShipDate() const { return m_shipDate; }
  void SetShipDate(const CDateTime& value);
  void ClearShipDate();
  bool HasComment() const { return m_hasComment; }
  const std::string& GetComment() const { return m_comment; }
  void SetComment(const std::string& value);
  void ClearComment();
  // Attributes of other namespaces (anyAttribute ##other).
  const CSmartPtr<OvXmlLib6::CAttributeCol>& GetAnyAttributes() const { return m_anyAttributes; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  std::string m_partNum;
  std::string m_productName;
  std::int32_t m_quantity;
  CDecimal m_unitPrice;
  bool m_hasShipDate;
  CDateTime m_shipDate;
  bool m_hasComment;
  std::string m_comment;
  CSmartPtr<OvXmlLib6::CAttributeCol> m_anyAttributes;
};

using CItemCol = OvXmlLib6::CTypedCollection<CItem>;

class CItems : public OvXmlLib6::CXmlGeneratedClass {
 public:
  CItems();
  // One or more items.
  const CSmartPtr<CItemCol>& GetItem() const { return m_item; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  CSmartPtr<CItemCol> m_item;
};

class CCreditCard : public OvXmlLib6::CXmlGeneratedClass {
 public:
  CCreditCard();
  const std::string& GetHolder() const { return m_holder; }
  void SetHolder(const std::string& value) { m_holder = value; }
  const std::string& GetNumber() const { return m_number; }
  void SetNumber(const std::string& value) { m_number = value; }
  // A gYearMonth.
  const CDateTime& GetExpires() const { return m_expires; }
  void SetExpires(const CDateTime& value) { m_expires = value; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  std::string m_holder;
  std::string m_number;
  CDateTime m_expires;
};

// A choice: one of creditCard and bankTransfer. Setting a branch while the other is set throws
// COvInvalidStateException; clear the other first (SetCreditCard(nullptr), ClearBankTransfer()).
class CPayment : public OvXmlLib6::CXmlGeneratedClass {
 public:
  CPayment();
  // The element name of the branch that is set, empty when none is.
  const std::string& GetSelectedElement() const { return m_selected; }
  const CSmartPtr<CCreditCard>& GetCreditCard() const { return m_creditCard; }
  void SetCreditCard(CCreditCard* value);
  bool HasBankTransfer() const { return m_hasBankTransfer; }
  const std::string& GetBankTransfer() const { return m_bankTransfer; }
  void SetBankTransfer(const std::string& value);
  void ClearBankTransfer();

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  std::string m_selected;
  CSmartPtr<CCreditCard> m_creditCard;
  bool m_hasBankTransfer;
  std::string m_bankTransfer;
};

// An all group: its elements come in any order.
class CDelivery : public OvXmlLib6::CXmlGeneratedClass {
 public:
  CDelivery();
  Priority GetPriority() const { return m_priority; }
  void SetPriority(Priority value) { m_priority = value; }
  bool HasWindow() const { return m_hasWindow; }
  const CDateTime& GetWindow() const { return m_window; }
  void SetWindow(const CDateTime& value);
  void ClearWindow();
  bool HasInstructions() const { return m_hasInstructions; }
  const std::string& GetInstructions() const { return m_instructions; }
  void SetInstructions(const std::string& value);
  void ClearInstructions();

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  Priority m_priority;
  bool m_hasWindow;
  CDateTime m_window;
  bool m_hasInstructions;
  std::string m_instructions;
};

// The document element.
class CPurchaseOrder : public OvXmlLib6::CXmlGeneratedClass {
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
  bool HasSignature() const { return m_hasSignature; }
  const CBinaryData& GetSignature() const { return m_signature; }
  void SetSignature(const CBinaryData& value);
  void ClearSignature();
  // Elements of other namespaces after the order's own (xs:any ##other).
  const CSmartPtr<OvXmlLib6::CElementCol>& GetExtensions() const { return m_extensions; }

  // Required: an order whose date was never set cannot be written.
  bool HasOrderDate() const { return m_hasOrderDate; }
  const CDateTime& GetOrderDate() const { return m_orderDate; }
  void SetOrderDate(const CDateTime& value);
  OrderStatus GetStatus() const { return m_status; }
  void SetStatus(OrderStatus value) { m_status = value; }
  const std::string& GetCurrency() const { return m_currency; }
  void SetCurrency(const std::string& value) { m_currency = value; }

  void AccessProperty(int index, bool read, OvXmlLib6::OvVariant& value) override;
  OvXmlLib6Data::CParentElementInfo* GetClassInfo() const override;
  OvXmlLib6Data::CElementInfo** GetClassElementInfo() const override;
  OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const override;
  void PrepareForRead() override;
  std::string GetNamespace() const override { return kNamespace; }

  // Frees the descriptor tables of every class of the schema. Call it once no thread reads or
  // writes these classes any more (at the end of the program); a later use builds them again.
  static void CleanUp();

 protected:
  std::string GetTargetNamespace() const override { return kNamespace; }

 private:
  CSmartPtr<CAddress> m_shipTo;
  CSmartPtr<CAddress> m_billTo;
  CSmartPtr<CContactGroup> m_contact;
  CSmartPtr<OvXmlLib6::CstringCol> m_comment;
  CSmartPtr<CItems> m_items;
  CSmartPtr<CPayment> m_payment;
  CSmartPtr<CDelivery> m_delivery;
  bool m_hasSignature;
  CBinaryData m_signature;
  CSmartPtr<OvXmlLib6::CElementCol> m_extensions;
  bool m_hasOrderDate;
  CDateTime m_orderDate;
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

#endif  // OVXML_EXAMPLES_PURCHASEORDER_H
