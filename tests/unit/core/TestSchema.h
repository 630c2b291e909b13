// A small schema (target namespace "urn:t", elements qualified, attributes unqualified) written
// by hand the way the code generator emits it: classes derived from CXmlGeneratedClass with typed
// members, an AccessProperty switch over the property indexes, static descriptor tables built
// once, PrepareForRead resetting the members, and constructors that name the element with a
// permanent shared name. Between them the classes use every concrete element descriptor.
//
//   order     sequence: Prim, Enum and Cls members as Mnd/Opt/Col, primitive, enum and
//             wildcard attributes
//   drawing   sequence: AbsCls Mnd/Opt/Col, Untpd Mnd/Opt/Col, Non Col, a pseudo-element member,
//             a choice-class member
//   pick      choice of optional branches (Prim, Enum, Cls, AbsCls, Untpd, a choice class)
//   picks     choice of collection branches, each needing at least one item
//   bag       all group: Prim, Enum, Cls, Untpd as Mnd/Opt/Col, AbsCls Col, Non Col
//   bagAbs    all group with AbsCls Mnd/Opt (not readable by design)
//   line      simple content: an attribute and a text property
//   node      recursive: a node holds an optional node
//   address   a plain sequence; dims a pseudo element
//   circle, square  concrete classes of the abstract shape, chosen by xsi:type
#ifndef OVXMLLIB6_TESTS_UNIT_CORE_TESTSCHEMA_H
#define OVXMLLIB6_TESTS_UNIT_CORE_TESTSCHEMA_H

#include "OvXmlLib6/core/ClassFactory.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/core/XmlGeneratedClass.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/metadata/TypedCollection.h"
#include "OvXmlLib6/metadata/TypedCollections.h"

#include <cstdint>
#include <optional>
#include <string>

namespace test_schema {

using namespace OvXmlLib6;
using namespace OvXmlLib6Data;

constexpr const char* kNs = "urn:t";
constexpr const char* kXsi = "http://www.w3.org/2001/XMLSchema-instance";

// The enumerations: Color (red, green, blue) for elements, Status (open, closed) for an attribute.
// The from-text functions throw COvInvalidValueException "Invalid Color [%s]" / "Invalid Status
// [%s]" for any other text, untrimmed text included.
const char* ColorToText(int value);
int ColorFromText(const char* text);
const char* StatusToText(int value);
int StatusFromText(const char* text);

// One class's tables; made once per class, freed by CTestClass::CleanAll.
struct CTables {
  CTables(CParentElementInfo* info, CElementInfo** elements, CAttributeInfo** attributes);
  CParentElementInfo* info;
  CElementInfo** elements;
  CAttributeInfo** attributes;
};

// The generated classes' common base: the tables' accessors, the namespaces, and access to the
// element name for the tests.
class CTestClass : public CXmlGeneratedClass {
 public:
  using CXmlObjectBase::GetElementName;
  std::string GetNamespace() const override { return GetClassInfo()->GetElementNamespace(); }
  CParentElementInfo* GetClassInfo() const override { return Tables().info; }
  CElementInfo** GetClassElementInfo() const override { return Tables().elements; }
  CAttributeInfo** GetClassAttributeInfo() const override { return Tables().attributes; }
  // Frees every class's tables (at the end of the test program).
  static void CleanAll();

 protected:
  std::string GetTargetNamespace() const override { return kNs; }
  virtual const CTables& Tables() const = 0;
  // Names the element: the name a factory gives, or the class's own permanent name.
  void NameElement(const char* name, const CSharedString& ownName);
};

#define TEST_SCHEMA_CLASS(Class)                                    \
 public:                                                            \
  void AccessProperty(int index, bool read, OvVariant& v) override; \
  void PrepareForRead() override;                                   \
                                                                    \
 protected:                                                         \
  const CTables& Tables() const override;                           \
  ~Class() override;                                                \
                                                                    \
 public:

class CAddress : public CTestClass {
  TEST_SCHEMA_CLASS(CAddress)
  explicit CAddress(const char* name = nullptr);
  std::optional<std::string> street;
  std::optional<std::int32_t> zip;
};

// A pseudo element: its w and h elements sit in the parent's content, its unit attribute on the
// parent's start tag.
class CDims : public CTestClass {
  TEST_SCHEMA_CLASS(CDims)
  explicit CDims(const char* name = nullptr);
  std::optional<std::int32_t> w, h;
  std::optional<std::string> unit;
};

// Simple content: <line sku="...">text</line>.
class CLine : public CTestClass {
  TEST_SCHEMA_CLASS(CLine)
  explicit CLine(const char* name = nullptr);
  std::optional<std::string> sku, text;
};

// The abstract shape and its two concrete types. Each concrete class writes its xsi:type through
// a required attribute descriptor whose property is constant (reading skips xsi attributes).
class CShape : public CTestClass {
 protected:
  ~CShape() override = default;
};

class CCircle : public CShape {
  TEST_SCHEMA_CLASS(CCircle)
  explicit CCircle(const char* name = nullptr);
  std::optional<std::int32_t> radius;
};

class CSquare : public CShape {
  TEST_SCHEMA_CLASS(CSquare)
  explicit CSquare(const char* name = nullptr);
  std::optional<std::int32_t> side;
};

// Picks the shape class by the element's xsi:type ("Circle", "Square" in urn:t); null for any
// other type.
class CShapeFactory : public CClassfactoryBase {
 public:
  static CSmartPtr<CXmlObjectBase> Create(CXmlElement* element);
};

// Makes the objects of complex-type members: class ids below.
enum ClassId { ClassId_Address = 1, ClassId_Dims = 2, ClassId_Node = 3, ClassId_Picks = 4 };
CSmartPtr<CXmlObjectBase> CreateObject(int classId, const char* elementName);

// A collection of shapes: each element becomes the class its xsi:type names.
class CShapeCol : public CXmlCollection {
 public:
  using CXmlCollection::CXmlCollection;
  void Add(CShape* shape) { AppendItem(shape); }
  CSmartPtr<CShape> Item(int index) const {
    return static_cast<CShape*>(GetNodeAtIndex(index)->GetItem());
  }

 protected:
  CXmlElement* FromXml_Int(CXmlElement* parent, CXmlElement* current,
                           const CXmlSerializationContext& context, bool flag) override;
};

class CPicks;

class CNode : public CTestClass {
  TEST_SCHEMA_CLASS(CNode)
  explicit CNode(const char* name = nullptr);
  std::optional<std::int32_t> value;  // attribute v
  CSmartPtr<CNode> child;
};

class COrder : public CTestClass {
  TEST_SCHEMA_CLASS(COrder)
  COrder();
  // attributes: id (required i4), status (optional enum, default "open"), note (optional string
  // of at most 5 characters, default "none"), any attribute from another namespace.
  std::optional<std::int32_t> id;
  std::optional<std::int32_t> status;
  std::optional<std::string> note;
  CSmartPtr<CAttributeCol> anyAttributes;
  // elements: name (string of at most 8 characters), qty?, tag{0,2}, color, size?, mark*, ship,
  // bill?, line{0,3}.
  std::optional<std::string> name;
  std::optional<std::int32_t> qty;
  CSmartPtr<CstringCol> tags;
  std::optional<std::int32_t> color;
  std::optional<std::int32_t> size;
  CSmartPtr<CstringCol> marks;
  CSmartPtr<CAddress> ship;
  CSmartPtr<CAddress> bill;
  CSmartPtr<CTypedCollection<CLine>> lines;
};

class CDrawing : public CTestClass {
  TEST_SCHEMA_CLASS(CDrawing)
  CDrawing();
  // shape, spare?, more+ (all abstract), memo (any element named memo in urn:t), any element of
  // another namespace?, extra elements of other namespaces*, none (a Non member), dims? (pseudo).
  // Unknown attributes are ignored.
  CSmartPtr<CShape> shape, spare;
  CSmartPtr<CShapeCol> more;
  CSmartPtr<CElement> memo, any;
  CSmartPtr<CElementCol> extra;
  CSmartPtr<CDims> dims;
  CSmartPtr<CPicks> picks;  // picks?, a choice class
};

class CPick : public CTestClass {
  TEST_SCHEMA_CLASS(CPick)
  CPick();
  // One of: num, color, addr, shape, picks (a choice class), an element of another namespace.
  std::optional<std::int32_t> num, color;
  CSmartPtr<CAddress> addr;
  CSmartPtr<CShape> shape;
  CSmartPtr<CPicks> picks;
  CSmartPtr<CElement> any;
};

class CPicks : public CTestClass {
  TEST_SCHEMA_CLASS(CPicks)
  CPicks();
  // One of: n{1,2}, c+, line+, s{1,2} (shapes), any+ (elements of other namespaces).
  CSmartPtr<Ci4Col> n;
  CSmartPtr<CstringCol> c;
  CSmartPtr<CTypedCollection<CLine>> lines;
  CSmartPtr<CShapeCol> s;
  CSmartPtr<CElementCol> any;
};

class CBag : public CTestClass {
  TEST_SCHEMA_CLASS(CBag)
  CBag();
  // In any order: a, b?, c{0,2}, e, f?, g*, addr (may be left out), bill?, line*, more* (shapes),
  // memo, any element of another namespace?, extra*, none (a Non member).
  std::optional<std::int32_t> a;
  std::optional<std::string> b;
  CSmartPtr<Ci4Col> c;
  std::optional<std::int32_t> e, f;
  CSmartPtr<CstringCol> g;
  CSmartPtr<CAddress> addr, bill;
  CSmartPtr<CTypedCollection<CLine>> lines;
  CSmartPtr<CShapeCol> more;
  CSmartPtr<CElement> memo, any;
  CSmartPtr<CElementCol> extra;
};

class CBagAbs : public CTestClass {
  TEST_SCHEMA_CLASS(CBagAbs)
  CBagAbs();
  CSmartPtr<CShape> shape, spare;
};

#undef TEST_SCHEMA_CLASS

}  // namespace test_schema

#endif  // OVXMLLIB6_TESTS_UNIT_CORE_TESTSCHEMA_H
