#include "unit/core/TestSchema.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/xml/XmlElement.h"

#include <cstring>
#include <gtest/gtest.h>
#include <initializer_list>
#include <vector>

namespace test_schema {

namespace {

constexpr auto kKeep = CWhitespaceUtils::WhitespaceRule_Preserve;
constexpr auto kCollapse = CWhitespaceUtils::WhitespaceRule_Collapse;

const char* const kColors[] = {"red", "green", "blue"};
const char* const kStatuses[] = {"open", "closed"};

template <std::size_t N>
const char* ToText(const char* const (&names)[N], int value) {
  return value >= 0 && value < static_cast<int>(N) ? names[value] : "";
}

template <std::size_t N>
int FromText(const char* const (&names)[N], const char* type, const char* text) {
  for (std::size_t i = 0; i < N; ++i) {
    if (std::strcmp(names[i], text) == 0) return static_cast<int>(i);
  }
  throw COvInvalidValueException(FormatString("Invalid %s [%s]", type, text));
}

std::vector<CTables*>& Registry() {
  static std::vector<CTables*> tables;
  return tables;
}

CElementInfo** Elements(std::initializer_list<CElementInfo*> list) {
  CElementInfo** table = new CElementInfo*[list.size() + 1];
  std::size_t i = 0;
  for (CElementInfo* e : list) table[i++] = e;
  table[i] = nullptr;
  return table;
}

CAttributeInfo** Attributes(std::initializer_list<CAttributeInfo*> list) {
  CAttributeInfo** table = new CAttributeInfo*[list.size() + 1];
  std::size_t i = 0;
  for (CAttributeInfo* a : list) table[i++] = a;
  table[i] = nullptr;
  return table;
}

CParentElementInfo* Info(XmlElementGroupType group, const char* name, int textProperty = -1,
                         XmlElementType type = XmlElementType_Element,
                         bool failIfAttributeUnknown = true) {
  return new CParentElementInfo(group, type, name, kNs, textProperty, failIfAttributeUnknown,
                                false);
}

CElementInfoSeqPrimMnd* SeqI4(const char* name, int index) {
  return new CElementInfoSeqPrimMnd(name, kNs, index, ItemType_i4, nullptr, kCollapse,
                                    CPrimitiveRestrictions());
}

// The property accessors of the member kinds, as generated code writes them inline.
void Prop(bool read, OvVariant& v, std::optional<std::int32_t>& p) {
  if (!read) {
    p = v.GetI4();
  } else if (p) {
    v.SetI4(*p);
  } else {
    v.SetInvalid();
  }
}

void Prop(bool read, OvVariant& v, std::optional<std::string>& p) {
  if (!read) {
    p = v.GetString();
  } else if (p) {
    v.SetString(*p);
  } else {
    v.SetInvalid();
  }
}

template <class T>
void Prop(bool read, OvVariant& v, CSmartPtr<T>& p) {
  if (read) {
    v.SetXmlObject(p.get());
    return;
  }
  CSmartPtr<CXmlObjectBase> object = v.GetXmlObject();
  T* typed = dynamic_cast<T*>(object.get());
  if (object && typed == nullptr)
    throw COvInvalidParamException("The property was given an object of another class");
  p = typed;
}

// Collections stay with their owner: reading hands them out, a store is ignored.
template <class C>
void Col(bool read, OvVariant& v, const CSmartPtr<C>& p) {
  if (read) v.SetXmlCollection(p.get());
}

}  // namespace

const char* ColorToText(int value) { return ToText(kColors, value); }
int ColorFromText(const char* text) { return FromText(kColors, "Color", text); }
const char* StatusToText(int value) { return ToText(kStatuses, value); }
int StatusFromText(const char* text) { return FromText(kStatuses, "Status", text); }

CTables::CTables(CParentElementInfo* i, CElementInfo** e, CAttributeInfo** a)
    : info(i), elements(e), attributes(a) {
  Registry().push_back(this);
}

void CTestClass::NameElement(const char* name, const CSharedString& ownName) {
  if (name != nullptr) {
    SetElementName(name);
  } else {
    SetElementName(ownName);
  }
}

void CTestClass::CleanAll() {
  for (CTables* t : Registry()) CleanMetaData(t->info, t->elements, t->attributes);
  Registry().clear();
}

namespace {
// Frees the tables when the test program ends, so that the leak check sees only real leaks.
class CSchemaEnvironment : public ::testing::Environment {
 public:
  void TearDown() override { CTestClass::CleanAll(); }
};
::testing::Environment* const kSchemaEnvironment =
    ::testing::AddGlobalTestEnvironment(new CSchemaEnvironment);
}  // namespace

// ---- address ----
CAddress::CAddress(const char* name) {
  static const CSharedString kOwnName = CSharedString::Permanent("address");
  NameElement(name, kOwnName);
}
CAddress::~CAddress() = default;
const CTables& CAddress::Tables() const {
  static CTables t(Info(XmlElementGroupType_Sequence, "address"),
                   Elements({new CElementInfoSeqPrimMnd("street", kNs, 0, ItemType_string, nullptr,
                                                        kKeep, CPrimitiveRestrictions()),
                             new CElementInfoSeqPrimOpt("zip", kNs, 1, ItemType_i4, nullptr,
                                                        kCollapse, CPrimitiveRestrictions())}),
                   Attributes({}));
  return t;
}
void CAddress::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, street);
    case 1:
      return Prop(read, v, zip);
  }
}
void CAddress::PrepareForRead() {
  street.reset();
  zip.reset();
}

// ---- dims (pseudo element) ----
CDims::CDims(const char* name) {
  static const CSharedString kOwnName = CSharedString::Permanent("dims");
  NameElement(name, kOwnName);
}
CDims::~CDims() = default;
const CTables& CDims::Tables() const {
  static CTables t(
      // A pseudo element reads the attributes of the element that holds it, so unknown ones
      // (the parent's own) must not fail it.
      Info(XmlElementGroupType_Sequence, "dims", -1, XmlElementType_PseudoElement, false),
      Elements({SeqI4("w", 0), new CElementInfoSeqPrimOpt("h", kNs, 1, ItemType_i4, nullptr,
                                                          kCollapse, CPrimitiveRestrictions())}),
      Attributes({new CAttributeInfoPrimitive("unit", "", 2, true, ItemType_string, nullptr, kKeep,
                                              CPrimitiveRestrictions(), nullptr)}));
  return t;
}
void CDims::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, w);
    case 1:
      return Prop(read, v, h);
    case 2:
      return Prop(read, v, unit);
  }
}
void CDims::PrepareForRead() {
  w.reset();
  h.reset();
  unit.reset();
}

// ---- line (simple content) ----
CLine::CLine(const char* name) {
  static const CSharedString kOwnName = CSharedString::Permanent("line");
  NameElement(name, kOwnName);
}
CLine::~CLine() = default;
const CTables& CLine::Tables() const {
  static CTables t(
      Info(XmlElementGroupType_Sequence, "line", 1), Elements({}),
      Attributes({new CAttributeInfoPrimitive("sku", "", 0, false, ItemType_string, nullptr, kKeep,
                                              CPrimitiveRestrictions(), nullptr)}));
  return t;
}
void CLine::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, sku);
    case 1:
      return Prop(read, v, text);
  }
}
void CLine::PrepareForRead() {
  sku.reset();
  text.reset();
}

// ---- shapes ----
namespace {
// The xsi:type attribute a concrete shape writes; its property is the constant type name.
CAttributeInfo* XsiType(int index) {
  return new CAttributeInfoPrimitive("type", kXsi, index, true, ItemType_string, nullptr, kKeep,
                                     CPrimitiveRestrictions(), nullptr);
}
}  // namespace

CCircle::CCircle(const char* name) {
  static const CSharedString kOwnName = CSharedString::Permanent("circle");
  NameElement(name, kOwnName);
}
CCircle::~CCircle() = default;
const CTables& CCircle::Tables() const {
  static CTables t(Info(XmlElementGroupType_Sequence, "circle"), Elements({SeqI4("radius", 0)}),
                   Attributes({XsiType(1)}));
  return t;
}
void CCircle::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, radius);
    case 1:
      if (read) v.SetString("Circle");
      break;
  }
}
void CCircle::PrepareForRead() { radius.reset(); }

CSquare::CSquare(const char* name) {
  static const CSharedString kOwnName = CSharedString::Permanent("square");
  NameElement(name, kOwnName);
}
CSquare::~CSquare() = default;
const CTables& CSquare::Tables() const {
  static CTables t(Info(XmlElementGroupType_Sequence, "square"), Elements({SeqI4("side", 0)}),
                   Attributes({XsiType(1)}));
  return t;
}
void CSquare::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, side);
    case 1:
      if (read) v.SetString("Square");
      break;
  }
}
void CSquare::PrepareForRead() { side.reset(); }

CSmartPtr<CXmlObjectBase> CShapeFactory::Create(CXmlElement* element) {
  if (GetElementTypeNamespaceUri(element) != kNs) return nullptr;
  const std::string type = GetElementType(element);
  const std::string name = element->GetLocalName();
  if (type == "Circle") return CSmartPtr<CXmlObjectBase>(new CCircle(name.c_str()));
  if (type == "Square") return CSmartPtr<CXmlObjectBase>(new CSquare(name.c_str()));
  return nullptr;
}

CXmlElement* CShapeCol::FromXml_Int(CXmlElement* /*parent*/, CXmlElement* current,
                                    const CXmlSerializationContext& context, bool /*flag*/) {
  const std::string ns = GetNamespace();
  while (current != nullptr &&
         DoesElementNameMatch(context, current, GetCollectionElementName().c_str(), ns.c_str())) {
    CSmartPtr<CXmlObjectBase> item = CShapeFactory::Create(current);
    if (!item) {
      throw COvValidationException(
          FormatString("Failed to find a suitable substitution element for [%s]",
                       GetCollectionElementName().c_str()));
    }
    CXmlObjectBase::FromXml_Int(item.get(), current, current->GetFirstElement(), context);
    AppendItem(item.get());
    current = current->GetNextSiblingElement();
  }
  return current;
}

// ---- node (recursive) ----
CNode::CNode(const char* name) {
  static const CSharedString kOwnName = CSharedString::Permanent("node");
  NameElement(name, kOwnName);
}
CNode::~CNode() = default;
const CTables& CNode::Tables() const {
  static CTables t(
      Info(XmlElementGroupType_Sequence, "node"),
      Elements({new CElementInfoSeqClsOpt("node", kNs, 1, XmlElementType_Element, &CreateObject,
                                          ClassId_Node)}),
      Attributes({new CAttributeInfoPrimitive("v", "", 0, true, ItemType_i4, nullptr, kCollapse,
                                              CPrimitiveRestrictions(), nullptr)}));
  return t;
}
void CNode::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, value);
    case 1:
      return Prop(read, v, child);
  }
}
void CNode::PrepareForRead() {
  value.reset();
  child = nullptr;
}

CSmartPtr<CXmlObjectBase> CreateObject(int classId, const char* elementName) {
  switch (classId) {
    case ClassId_Address:
      return CSmartPtr<CXmlObjectBase>(new CAddress(elementName));
    case ClassId_Dims:
      return CSmartPtr<CXmlObjectBase>(new CDims(elementName));
    case ClassId_Picks:
      return CSmartPtr<CXmlObjectBase>(new CPicks());
    case ClassId_Node:
      return CSmartPtr<CXmlObjectBase>(new CNode(elementName));
  }
  return nullptr;
}

// ---- order (sequence) ----
COrder::COrder()
    : anyAttributes(new CAttributeCol("anyAttribute", "##other", kNs)),
      tags(new CstringCol("tag", kNs, 0, 2)),
      marks(new CstringCol("mark", kNs, 0, -1)),
      ship(new CAddress("ship")),
      lines(new CTypedCollection<CLine>("line", kNs, 0, 3)) {
  static const CSharedString kOwnName = CSharedString::Permanent("order");
  SetElementName(kOwnName);
}
COrder::~COrder() = default;
const CTables& COrder::Tables() const {
  static CTables t(
      Info(XmlElementGroupType_Sequence, "order"),
      Elements({
          new CElementInfoSeqPrimMnd(
              "name", kNs, 4, ItemType_string, nullptr, kKeep,
              CPrimitiveRestrictions(nullptr, -1, 8, nullptr, nullptr, nullptr, nullptr, -1)),
          new CElementInfoSeqPrimOpt("qty", kNs, 5, ItemType_i4, nullptr, kCollapse,
                                     CPrimitiveRestrictions()),
          new CElementInfoSeqPrimCol("tag", kNs, 6),
          new CElementInfoSeqEnumMnd("color", kNs, 7, &ColorToText, &ColorFromText),
          new CElementInfoSeqEnumOpt("size", kNs, 8, &ColorToText, &ColorFromText),
          new CElementInfoSeqEnumCol("mark", kNs, 9),
          new CElementInfoSeqClsMnd("ship", kNs, 10, XmlElementType_Element, &CreateObject,
                                    ClassId_Address, true),
          new CElementInfoSeqClsOpt("bill", kNs, 11, XmlElementType_Element, &CreateObject,
                                    ClassId_Address),
          new CElementInfoSeqClsCol("line", kNs, 12, XmlElementType_Element),
      }),
      Attributes({
          new CAttributeInfoPrimitive("id", "", 0, false, ItemType_i4, nullptr, kCollapse,
                                      CPrimitiveRestrictions(), nullptr),
          new CAttributeInfoEnum("status", "", 1, true, &StatusToText, &StatusFromText, "open"),
          new CAttributeInfoPrimitive(
              "note", "", 2, true, ItemType_string, nullptr, kKeep,
              CPrimitiveRestrictions(nullptr, -1, 5, nullptr, nullptr, nullptr, nullptr, -1),
              "none"),
          new CAttributeInfoAny("anyAttribute", "", 3, true, "##other", kNs, nullptr),
      }));
  return t;
}
void COrder::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, id);
    case 1:
      return Prop(read, v, status);
    case 2:
      return Prop(read, v, note);
    case 3:
      return Col(read, v, anyAttributes);
    case 4:
      return Prop(read, v, name);
    case 5:
      return Prop(read, v, qty);
    case 6:
      return Col(read, v, tags);
    case 7:
      return Prop(read, v, color);
    case 8:
      return Prop(read, v, size);
    case 9:
      return Col(read, v, marks);
    case 10:
      return Prop(read, v, ship);
    case 11:
      return Prop(read, v, bill);
    case 12:
      return Col(read, v, lines);
  }
}
void COrder::PrepareForRead() {
  id.reset();
  status.reset();
  note.reset();
  anyAttributes->Clear();
  name.reset();
  qty.reset();
  tags->Clear();
  color.reset();
  size.reset();
  marks->Clear();
  ship = new CAddress("ship");
  bill = nullptr;
  lines->Clear();
}

// ---- drawing (sequence of abstract and wildcard members) ----
CDrawing::CDrawing()
    : more(new CShapeCol("more", kNs, 1, -1)),
      extra(new CElementCol("extra", "##other", kNs, 0, -1)) {
  static const CSharedString kOwnName = CSharedString::Permanent("drawing");
  SetElementName(kOwnName);
}
CDrawing::~CDrawing() = default;
const CTables& CDrawing::Tables() const {
  static CTables t(
      // The attributes of the pseudo-element member sit on this element: not unknown here.
      Info(XmlElementGroupType_Sequence, "drawing", -1, XmlElementType_Element, false),
      Elements({
          new CElementInfoSeqAbsClsMnd("shape", kNs, 0, XmlElementType_Element,
                                       &CShapeFactory::Create),
          new CElementInfoSeqAbsClsOpt("spare", kNs, 1, XmlElementType_Element,
                                       &CShapeFactory::Create),
          new CElementInfoSeqAbsClsCol("more", kNs, 2, XmlElementType_Element),
          new CElementInfoSeqUntpdMnd("memo", kNs, 3, "##targetNamespace", kNs),
          new CElementInfoSeqUntpdOpt("AnyElement", "", 4, "##other", kNs),
          new CElementInfoSeqUntpdCol("extra", "", 5),
          new CElementInfoSeqNonCol("none", kNs, 6),
          new CElementInfoSeqClsOpt("dims", kNs, 7, XmlElementType_PseudoElement, &CreateObject,
                                    ClassId_Dims),
          new CElementInfoSeqClsOpt("picks", kNs, 8, XmlElementType_Element, &CreateObject,
                                    ClassId_Picks),
      }),
      Attributes({}));
  return t;
}
void CDrawing::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, shape);
    case 1:
      return Prop(read, v, spare);
    case 2:
      return Col(read, v, more);
    case 3:
      return Prop(read, v, memo);
    case 4:
      return Prop(read, v, any);
    case 5:
      return Col(read, v, extra);
    case 7:
      return Prop(read, v, dims);
    case 8:
      return Prop(read, v, picks);
  }
}
void CDrawing::PrepareForRead() {
  dims = nullptr;
  picks = nullptr;
  shape = nullptr;
  spare = nullptr;
  more->Clear();
  memo = nullptr;
  any = nullptr;
  extra->Clear();
}

// ---- pick (choice of optional branches) ----
CPick::CPick() {
  static const CSharedString kOwnName = CSharedString::Permanent("pick");
  SetElementName(kOwnName);
}
CPick::~CPick() = default;
const CTables& CPick::Tables() const {
  static CTables t(Info(XmlElementGroupType_Choice, "pick"),
                   Elements({
                       new CElementInfoChoicePrimOpt("num", kNs, 0, ItemType_i4, nullptr, kCollapse,
                                                     CPrimitiveRestrictions()),
                       new CElementInfoChoiceEnumOpt("color", kNs, 1, &ColorToText, &ColorFromText),
                       new CElementInfoChoiceClsOpt("addr", kNs, 2, XmlElementType_Element,
                                                    &CreateObject, ClassId_Address),
                       new CElementInfoChoiceAbsClsOpt("shape", kNs, 3, XmlElementType_Element,
                                                       &CShapeFactory::Create),
                       new CElementInfoChoiceClsOpt("picks", kNs, 5, XmlElementType_Element,
                                                    &CreateObject, ClassId_Picks),
                       new CElementInfoChoiceUntpdOpt("AnyElement", "", 4, "##other", kNs),
                   }),
                   Attributes({}));
  return t;
}
void CPick::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, num);
    case 1:
      return Prop(read, v, color);
    case 2:
      return Prop(read, v, addr);
    case 3:
      return Prop(read, v, shape);
    case 4:
      return Prop(read, v, any);
    case 5:
      return Prop(read, v, picks);
  }
}
void CPick::PrepareForRead() {
  num.reset();
  color.reset();
  addr = nullptr;
  shape = nullptr;
  picks = nullptr;
  any = nullptr;
}

// ---- picks (choice of collection branches) ----
CPicks::CPicks()
    : n(new Ci4Col("n", kNs, 1, 2)),
      c(new CstringCol("c", kNs, 1, -1)),
      lines(new CTypedCollection<CLine>("line", kNs, 1, -1)),
      s(new CShapeCol("s", kNs, 1, 2)),
      any(new CElementCol("any", "##other", kNs, 1, -1)) {
  static const CSharedString kOwnName = CSharedString::Permanent("picks");
  SetElementName(kOwnName);
}
CPicks::~CPicks() = default;
const CTables& CPicks::Tables() const {
  static CTables t(Info(XmlElementGroupType_Choice, "picks"),
                   Elements({
                       new CElementInfoChoicePrimCol("n", kNs, 0),
                       new CElementInfoChoiceEnumCol("c", kNs, 1),
                       new CElementInfoChoiceClsCol("line", kNs, 2, XmlElementType_Element),
                       new CElementInfoChoiceAbsClsCol("s", kNs, 3, XmlElementType_Element),
                       new CElementInfoChoiceUntpdCol("any", "", 4),
                   }),
                   Attributes({}));
  return t;
}
void CPicks::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Col(read, v, n);
    case 1:
      return Col(read, v, c);
    case 2:
      return Col(read, v, lines);
    case 3:
      return Col(read, v, s);
    case 4:
      return Col(read, v, any);
  }
}
void CPicks::PrepareForRead() {
  n->Clear();
  c->Clear();
  lines->Clear();
  s->Clear();
  any->Clear();
}

// ---- bag (all group) ----
CBag::CBag()
    : c(new Ci4Col("c", kNs, 0, 2)),
      g(new CstringCol("g", kNs, 0, -1)),
      addr(new CAddress("addr")),
      lines(new CTypedCollection<CLine>("line", kNs, 0, -1)),
      more(new CShapeCol("more", kNs, 0, -1)),
      extra(new CElementCol("extra", "##other", kNs, 0, -1)) {
  static const CSharedString kOwnName = CSharedString::Permanent("bag");
  SetElementName(kOwnName);
}
CBag::~CBag() = default;
const CTables& CBag::Tables() const {
  static CTables t(Info(XmlElementGroupType_All, "bag"),
                   Elements({
                       new CElementInfoAllPrimMnd("a", kNs, 0, ItemType_i4, nullptr, kCollapse,
                                                  CPrimitiveRestrictions()),
                       new CElementInfoAllPrimOpt("b", kNs, 1, ItemType_string, nullptr, kKeep,
                                                  CPrimitiveRestrictions()),
                       new CElementInfoAllPrimCol("c", kNs, 2),
                       new CElementInfoAllEnumMnd("e", kNs, 3, &ColorToText, &ColorFromText),
                       new CElementInfoAllEnumOpt("f", kNs, 4, &ColorToText, &ColorFromText),
                       new CElementInfoAllEnumCol("g", kNs, 5),
                       new CElementInfoAllClsMnd("addr", kNs, 6, XmlElementType_Element,
                                                 &CreateObject, ClassId_Address, false),
                       new CElementInfoAllClsOpt("bill", kNs, 7, XmlElementType_Element,
                                                 &CreateObject, ClassId_Address),
                       new CElementInfoAllClsCol("line", kNs, 8, XmlElementType_Element),
                       new CElementInfoAllAbsClsCol("more", kNs, 9, XmlElementType_Element),
                       new CElementInfoAllUntpdMnd("memo", kNs, 10, "##targetNamespace", kNs),
                       new CElementInfoAllUntpdOpt("AnyElement", "", 11, "##other", kNs),
                       new CElementInfoAllUntpdCol("extra", "", 12),
                       new CElementInfoAllNonCol("none", kNs, 13),
                   }),
                   Attributes({}));
  return t;
}
void CBag::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, a);
    case 1:
      return Prop(read, v, b);
    case 2:
      return Col(read, v, c);
    case 3:
      return Prop(read, v, e);
    case 4:
      return Prop(read, v, f);
    case 5:
      return Col(read, v, g);
    case 6:
      return Prop(read, v, addr);
    case 7:
      return Prop(read, v, bill);
    case 8:
      return Col(read, v, lines);
    case 9:
      return Col(read, v, more);
    case 10:
      return Prop(read, v, memo);
    case 11:
      return Prop(read, v, any);
    case 12:
      return Col(read, v, extra);
  }
}
void CBag::PrepareForRead() {
  a.reset();
  b.reset();
  c->Clear();
  e.reset();
  f.reset();
  g->Clear();
  addr = new CAddress("addr");
  bill = nullptr;
  lines->Clear();
  more->Clear();
  memo = nullptr;
  any = nullptr;
  extra->Clear();
}

// ---- bagAbs (all group with abstract members) ----
CBagAbs::CBagAbs() {
  static const CSharedString kOwnName = CSharedString::Permanent("bagAbs");
  SetElementName(kOwnName);
}
CBagAbs::~CBagAbs() = default;
const CTables& CBagAbs::Tables() const {
  static CTables t(Info(XmlElementGroupType_All, "bagAbs"),
                   Elements({
                       new CElementInfoAllAbsClsMnd("shape", kNs, 0, XmlElementType_Element,
                                                    &CShapeFactory::Create, 7),
                       new CElementInfoAllAbsClsOpt("spare", kNs, 1, XmlElementType_Element,
                                                    &CShapeFactory::Create),
                   }),
                   Attributes({}));
  return t;
}
void CBagAbs::AccessProperty(int index, bool read, OvVariant& v) {
  switch (index) {
    case 0:
      return Prop(read, v, shape);
    case 1:
      return Prop(read, v, spare);
  }
}
void CBagAbs::PrepareForRead() {
  shape = nullptr;
  spare = nullptr;
}

}  // namespace test_schema
