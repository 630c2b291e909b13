// Element descriptors: one static, read-only object per child element of a generated class, in
// namespace OvXmlLib6Data. A descriptor knows the element's name and namespace, the index of the
// property that holds its value, and how to move that value between the XML tree or a writer and
// the object. It never touches the object's members: every value passes through an OvVariant and
// the generated class's AccessProperty.
//
// Class names compose group, kind and cardinality:
//   group        Seq (sequence), Choice, All
//   kind         Prim (primitive simple type), Enum (enumerated simple type), Cls (complex type),
//                AbsCls (abstract or substitutable type, created by a factory from the element),
//                Untpd (wildcard element), Non (a collection member with nothing of its own to do)
//   cardinality  Mnd (exactly one), Opt (zero or one), Col (many; the property is a collection)
// A choice has no Mnd members and no Non member. Every ...Col class derives from its group's Col
// base, every other class from its group base.
//
// Generated code builds descriptors once, on the heap, and keeps them in static arrays that end
// with null (see CXmlGeneratedClass::CleanMetaData):
//
//   static CElementInfo* elements[] = {
//       new CElementInfoSeqPrimMnd("sku", "urn:po", 0, ItemType_string, nullptr,
//                                  CWhitespaceUtils::WhitespaceRule_Collapse,
//                                  CPrimitiveRestrictions("[0-9]{3}-[A-Z]{2}", -1, -1, nullptr,
//                                                         nullptr, nullptr, nullptr, -1)),
//       new CElementInfoSeqClsOpt("shipTo", "urn:po", 1, XmlElementType_Element,
//                                 &CPoFactory::Create, kClassAddress),
//       new CElementInfoSeqPrimCol("comment", "urn:po", 2),
//       nullptr};
//
// Descriptors are immutable once built and may be shared by any number of threads.
#ifndef OVXMLLIB6_METADATA_ELEMENTINFO_H
#define OVXMLLIB6_METADATA_ELEMENTINFO_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/types/ItemType.h"
#include "OvXmlLib6/types/PrimitiveRestrictions.h"
#include "OvXmlLib6/types/WhitespaceUtils.h"

#include <cstdint>
#include <string>

namespace OvXmlLib6 {
class CXmlElement;
class CXmlGeneratedClass;
class CXmlObjectBase;
class CXmlWriter;
struct OvVariant;
}  // namespace OvXmlLib6

namespace OvXmlLib6Data {

// How a member or a class shows in XML.
enum XmlElementType : std::int32_t {
  // An element with its own start and end tag.
  XmlElementType_Element = 0,
  // No tag of its own: the class's child elements are read from and written into the parent
  // element's content, and its attributes are written on the parent element.
  XmlElementType_PseudoElement = 1
};

// The content model of a class.
enum XmlElementGroupType : std::int32_t {
  XmlElementGroupType_Sequence = 0,
  XmlElementGroupType_Choice = 1,
  XmlElementGroupType_All = 2
};

// Creates the object of a complex-type member: (class id, element name).
using ClassFactoryFunction = OvXmlLib6::CSmartPtr<OvXmlLib6::CXmlObjectBase> (*)(int, const char*);
// Creates the object of the concrete class that fits an element of an abstract or substitutable
// type (usually chosen by its xsi:type), or returns null when no class fits.
using SubstitutionFactoryFunction =
    OvXmlLib6::CSmartPtr<OvXmlLib6::CXmlObjectBase> (*)(OvXmlLib6::CXmlElement*);
// The enumeration's text of a value, and the value of a text.
using EnumToTextFunction = const char* (*)(int);
using EnumFromTextFunction = int (*)(const char*);

class CParentElementInfo;

class OVXML_API CElementInfo {
 public:
  using ItemType = OvXmlLib6::ItemType;
  using WhitespaceRule = OvXmlLib6::CWhitespaceUtils::WhitespaceRule;
  using Context = OvXmlLib6::CXmlSerializationContext;
  using CXmlElement = OvXmlLib6::CXmlElement;
  using CXmlGeneratedClass = OvXmlLib6::CXmlGeneratedClass;
  using CXmlObjectBase = OvXmlLib6::CXmlObjectBase;
  using CXmlWriter = OvXmlLib6::CXmlWriter;
  using OvVariant = OvXmlLib6::OvVariant;
  using CPrimitiveRestrictions = OvXmlLib6::CPrimitiveRestrictions;

  // A descriptor without primitive information (no item type, no facets). Null strings are
  // taken as empty ones.
  CElementInfo(const char* name, const char* ns, int propertyIndex);
  // A descriptor of a primitive value. `format` is not copied: it must live as long as the
  // descriptor (generated code passes string literals).
  CElementInfo(const char* name, const char* ns, int propertyIndex, ItemType type,
               const char* format, WhitespaceRule rule, const CPrimitiveRestrictions& restrictions);
  CElementInfo(const CElementInfo& other);
  CElementInfo& operator=(const CElementInfo& other);
  virtual ~CElementInfo();

  // Writes the member; true when something was written.
  virtual bool ElementToXml(const Context& context, const CXmlGeneratedClass* object,
                            CXmlWriter* writer) const = 0;
  // Reads the member from the child elements of `parent`, starting at *cursor (the next child
  // element not yet consumed, null at the end), and moves *cursor past what it took. For
  // choice and all members the result says whether the member was found; for sequence members
  // whether reading may go on.
  virtual bool ElementFromXml(const Context& context, CXmlGeneratedClass* object,
                              CXmlElement* parent, CXmlElement** cursor,
                              const char* targetNamespace, XmlElementType parentType) = 0;
  // The all group's end-of-class check of a member; false stops the checks.
  virtual bool Validate(const Context& context, const CXmlGeneratedClass* object, bool found,
                        bool check) const = 0;
  // Writes the attributes that a pseudo-element member puts on the parent's start tag. Nothing
  // here.
  virtual void PseudoChildAttributeToXml(const Context& context, const CXmlGeneratedClass* object,
                                         CXmlWriter* writer) const;

  std::string GetElementName() const { return m_elementName; }
  std::string GetElementNamespace() const { return m_elementNamespace; }
  int GetPropertyIndex() const { return m_propertyIndex; }
  const CPrimitiveRestrictions& GetRestrictions() const { return m_restrictions; }
  ItemType GetItemType() const { return m_itemType; }
  const char* GetFormat() const { return m_format; }
  WhitespaceRule GetWhitespaceRule() const { return m_whitespaceRule; }
  bool HasPrimitiveInfo() const { return m_hasPrimitiveInfo; }

  // False for null; true when the local name equals the element name and the namespace URI
  // equals the element namespace or the context ignores namespaces.
  bool IsThisElement(const Context& context, const CXmlElement* element) const;
  // Runs the facet checks on the value; throws COvException "Cannot CheckRestriction for type: "
  // + type word for a descriptor without primitive information.
  void CheckRestriction(const OvVariant& value) const;
  // The object's AccessProperty with this descriptor's property index.
  void AccessProperty(CXmlGeneratedClass* object, bool read, OvVariant& value) const;
  void ReadProperty(const CXmlGeneratedClass* object, OvVariant& value) const;

  // Forward to the object's FromXml_Int and AttributesToXml_Int.
  static CXmlElement* FromXml_Int(CXmlObjectBase* object, CXmlElement* parent, CXmlElement* cursor,
                                  const Context& context, bool flag);
  static void AttributesToXml_Int(const CXmlObjectBase* object, CXmlWriter* writer,
                                  const Context& context);

  // The namespace a new wildcard element gets: the target namespace for "##any"; for "##other"
  // "DefaultNamespace" when the target namespace is empty, else empty; empty for "##local";
  // `otherNamespace` for "##targetNamespace"; for a blank-separated list starting with "##" the
  // result of its first token; otherwise empty.
  static std::string GetAnyDefaultNamespace(const char* restriction, const char* targetNamespace,
                                            const char* otherNamespace);

  // The writing routines that the concrete classes share. Each returns whether it wrote.
  // Prim: an unset property writes nothing; else the facets are checked and the value written as
  // the element's text, with the variant's item type.
  bool ElementToXmlPrim(const Context& context, const CXmlGeneratedClass* object,
                        CXmlWriter* writer) const;
  bool ElementToXmlPrimOpt(const Context& context, const CXmlGeneratedClass* object,
                           CXmlWriter* writer) const;
  // Enum: an unset property writes nothing; else the to-text form of GetI4().
  bool ElementToXmlEnum(const Context& context, const CXmlGeneratedClass* object,
                        CXmlWriter* writer, EnumToTextFunction toText) const;
  bool ElementToXmlEnumOpt(const Context& context, const CXmlGeneratedClass* object,
                           CXmlWriter* writer, EnumToTextFunction toText) const;
  // The object held by the property writes itself (its element, or for a pseudo element its
  // content); a null object writes nothing.
  bool ElementToXmlCls(const Context& context, const CXmlGeneratedClass* object, CXmlWriter* writer,
                       bool inChoice) const;
  // The collection writes its items; an empty collection writes nothing.
  bool ElementToXmlCol(const Context& context, const CXmlGeneratedClass* object,
                       CXmlWriter* writer) const;

 protected:
  // What a member means to the choice check of CXmlGeneratedClass: an optional choice branch,
  // or a choice collection (optional when its collection may be empty).
  enum ChoiceBranch : std::uint8_t {
    ChoiceBranch_None = 0,
    ChoiceBranch_Optional = 1,
    ChoiceBranch_Collection = 2
  };
  void SetChoiceBranch(ChoiceBranch branch) { m_choiceBranch = branch; }
  // Set by members that read with the target namespace (wildcards); the engine works it out for
  // classes that have one.
  void SetUsesTargetNamespace() { m_usesTargetNamespace = true; }

 private:
  friend class OvXmlLib6::CXmlGeneratedClass;

  std::string m_elementName;
  std::string m_elementNamespace;
  std::int32_t m_propertyIndex;
  CPrimitiveRestrictions m_restrictions;
  ItemType m_itemType;
  const char* m_format;
  WhitespaceRule m_whitespaceRule;
  bool m_hasPrimitiveInfo;
  ChoiceBranch m_choiceBranch;
  bool m_usesTargetNamespace;
};

// The group bases. Validate of the sequence and choice bases throws COvException "Not
// implemented, should never be called": only the all group's reading calls Validate.
class OVXML_API CElementInfoSeq : public CElementInfo {
 public:
  using CElementInfo::CElementInfo;
  bool Validate(const Context& context, const CXmlGeneratedClass* object, bool found,
                bool check) const override;
};

class OVXML_API CElementInfoChoice : public CElementInfo {
 public:
  using CElementInfo::CElementInfo;
  bool Validate(const Context& context, const CXmlGeneratedClass* object, bool found,
                bool check) const override;
};

class OVXML_API CElementInfoAll : public CElementInfo {
 public:
  using CElementInfo::CElementInfo;
};

// The collection bases: the property is a collection (CXmlCollectionBase) that reads and writes
// its items itself.
class OVXML_API CElementInfoSeqCol : public CElementInfoSeq {
 public:
  using CElementInfoSeq::CElementInfoSeq;
};

class OVXML_API CElementInfoChoiceCol : public CElementInfoChoice {
 public:
  using CElementInfoChoice::CElementInfoChoice;
};

class OVXML_API CElementInfoAllCol : public CElementInfoAll {
 public:
  using CElementInfoAll::CElementInfoAll;
};

// The fields of each kind, held by the concrete classes.
namespace detail {
struct CClsKind {
  XmlElementType elementType;
  ClassFactoryFunction factory;
  int classId;
  bool mustAppear;
};
struct CAbsClsKind {
  XmlElementType elementType;
  SubstitutionFactoryFunction factory;
  int extra;  // the further int of the all group's Mnd class; stored, not used
};
struct CEnumKind {
  EnumToTextFunction toText;
  EnumFromTextFunction fromText;
};
struct CUntpdKind {
  std::string restriction;
  std::string secondNamespace;
};
}  // namespace detail

// The overrides that the concrete classes declare. Each concrete class adds no virtual function
// of its own, so the virtual slots stay those of CElementInfo.
#define OVXML_ELEMENT_INFO_IO                                                                     \
  bool ElementToXml(const Context& context, const CXmlGeneratedClass* object, CXmlWriter* writer) \
      const override;                                                                             \
  bool ElementFromXml(const Context& context, CXmlGeneratedClass* object, CXmlElement* parent,    \
                      CXmlElement** cursor, const char* targetNamespace,                          \
                      XmlElementType parentType) override
#define OVXML_ELEMENT_INFO_VALIDATE                                                               \
  bool Validate(const Context& context, const CXmlGeneratedClass* object, bool found, bool check) \
      const override
#define OVXML_ELEMENT_INFO_PSEUDO                                                          \
  void PseudoChildAttributeToXml(const Context& context, const CXmlGeneratedClass* object, \
                                 CXmlWriter* writer) const override

// Constructors. Prim: (name, ns, index, item type, format, whitespace rule, restrictions). Enum:
// (name, ns, index, to-text, from-text). Cls: (name, ns, index, element type, factory, class id),
// Mnd adds must-appear. AbsCls: (name, ns, index, element type, substitution factory), the all
// group's Mnd adds an int that is stored and not used. Untpd: (name, ns, index, namespace
// restriction, second namespace); one named "AnyElement" takes an element of any name. Col:
// (name, ns, index), and for Cls and AbsCls the items' element type; the collection property
// carries its own limits and facets.
//
// Sequence: a missing Mnd member fails with "Failed to find a required element [%s]" unless the
// context ignores missing mandatory elements. Choice: the first member in schema order that
// finds its element is the chosen branch. All: members in any order, each at most once; a
// missing Mnd member fails at the end with "Failed to find the mandatory element [%s]";
// abstract-class members cannot be read in an all group (reading one throws COvException).

class OVXML_API CElementInfoSeqPrimMnd : public CElementInfoSeq {
 public:
  CElementInfoSeqPrimMnd(const char* name, const char* ns, int propertyIndex, ItemType type,
                         const char* format, WhitespaceRule rule,
                         const CPrimitiveRestrictions& restrictions);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoSeqPrimOpt : public CElementInfoSeq {
 public:
  CElementInfoSeqPrimOpt(const char* name, const char* ns, int propertyIndex, ItemType type,
                         const char* format, WhitespaceRule rule,
                         const CPrimitiveRestrictions& restrictions);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoSeqPrimCol : public CElementInfoSeqCol {
 public:
  CElementInfoSeqPrimCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoSeqEnumMnd : public CElementInfoSeq {
 public:
  CElementInfoSeqEnumMnd(const char* name, const char* ns, int propertyIndex,
                         EnumToTextFunction toText, EnumFromTextFunction fromText);
  EnumToTextFunction GetToText() const { return m_kind.toText; }
  EnumFromTextFunction GetFromText() const { return m_kind.fromText; }
  OVXML_ELEMENT_INFO_IO;

 private:
  detail::CEnumKind m_kind;
};

class OVXML_API CElementInfoSeqEnumOpt : public CElementInfoSeq {
 public:
  CElementInfoSeqEnumOpt(const char* name, const char* ns, int propertyIndex,
                         EnumToTextFunction toText, EnumFromTextFunction fromText);
  EnumToTextFunction GetToText() const { return m_kind.toText; }
  EnumFromTextFunction GetFromText() const { return m_kind.fromText; }
  OVXML_ELEMENT_INFO_IO;

 private:
  detail::CEnumKind m_kind;
};

class OVXML_API CElementInfoSeqEnumCol : public CElementInfoSeqCol {
 public:
  CElementInfoSeqEnumCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoSeqClsMnd : public CElementInfoSeq {
 public:
  CElementInfoSeqClsMnd(const char* name, const char* ns, int propertyIndex,
                        XmlElementType elementType, ClassFactoryFunction factory, int classId,
                        bool mustAppear);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  ClassFactoryFunction GetFactory() const { return m_kind.factory; }
  int GetClassId() const { return m_kind.classId; }
  bool GetMustAppear() const { return m_kind.mustAppear; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CClsKind m_kind;
};

class OVXML_API CElementInfoSeqClsOpt : public CElementInfoSeq {
 public:
  CElementInfoSeqClsOpt(const char* name, const char* ns, int propertyIndex,
                        XmlElementType elementType, ClassFactoryFunction factory, int classId);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  ClassFactoryFunction GetFactory() const { return m_kind.factory; }
  int GetClassId() const { return m_kind.classId; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CClsKind m_kind;
};

class OVXML_API CElementInfoSeqClsCol : public CElementInfoSeqCol {
 public:
  CElementInfoSeqClsCol(const char* name, const char* ns, int propertyIndex,
                        XmlElementType elementType);
  XmlElementType GetElementType() const { return m_elementType; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  XmlElementType m_elementType;
};

class OVXML_API CElementInfoSeqAbsClsMnd : public CElementInfoSeq {
 public:
  CElementInfoSeqAbsClsMnd(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType, SubstitutionFactoryFunction factory);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  SubstitutionFactoryFunction GetFactory() const { return m_kind.factory; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CAbsClsKind m_kind;
};

class OVXML_API CElementInfoSeqAbsClsOpt : public CElementInfoSeq {
 public:
  CElementInfoSeqAbsClsOpt(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType, SubstitutionFactoryFunction factory);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  SubstitutionFactoryFunction GetFactory() const { return m_kind.factory; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CAbsClsKind m_kind;
};

class OVXML_API CElementInfoSeqAbsClsCol : public CElementInfoSeqCol {
 public:
  CElementInfoSeqAbsClsCol(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType);
  XmlElementType GetElementType() const { return m_elementType; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  XmlElementType m_elementType;
};

class OVXML_API CElementInfoSeqUntpdMnd : public CElementInfoSeq {
 public:
  CElementInfoSeqUntpdMnd(const char* name, const char* ns, int propertyIndex,
                          const char* restriction, const char* secondNamespace);
  const std::string& GetNamespaceRestriction() const { return m_kind.restriction; }
  const std::string& GetSecondNamespace() const { return m_kind.secondNamespace; }
  OVXML_ELEMENT_INFO_IO;

 private:
  detail::CUntpdKind m_kind;
};

class OVXML_API CElementInfoSeqUntpdOpt : public CElementInfoSeq {
 public:
  CElementInfoSeqUntpdOpt(const char* name, const char* ns, int propertyIndex,
                          const char* restriction, const char* secondNamespace);
  const std::string& GetNamespaceRestriction() const { return m_kind.restriction; }
  const std::string& GetSecondNamespace() const { return m_kind.secondNamespace; }
  OVXML_ELEMENT_INFO_IO;

 private:
  detail::CUntpdKind m_kind;
};

class OVXML_API CElementInfoSeqUntpdCol : public CElementInfoSeqCol {
 public:
  CElementInfoSeqUntpdCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoSeqNonCol : public CElementInfoSeqCol {
 public:
  CElementInfoSeqNonCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoChoicePrimOpt : public CElementInfoChoice {
 public:
  CElementInfoChoicePrimOpt(const char* name, const char* ns, int propertyIndex, ItemType type,
                            const char* format, WhitespaceRule rule,
                            const CPrimitiveRestrictions& restrictions);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoChoicePrimCol : public CElementInfoChoiceCol {
 public:
  CElementInfoChoicePrimCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoChoiceEnumOpt : public CElementInfoChoice {
 public:
  CElementInfoChoiceEnumOpt(const char* name, const char* ns, int propertyIndex,
                            EnumToTextFunction toText, EnumFromTextFunction fromText);
  EnumToTextFunction GetToText() const { return m_kind.toText; }
  EnumFromTextFunction GetFromText() const { return m_kind.fromText; }
  OVXML_ELEMENT_INFO_IO;

 private:
  detail::CEnumKind m_kind;
};

class OVXML_API CElementInfoChoiceEnumCol : public CElementInfoChoiceCol {
 public:
  CElementInfoChoiceEnumCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoChoiceClsOpt : public CElementInfoChoice {
 public:
  CElementInfoChoiceClsOpt(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType, ClassFactoryFunction factory, int classId);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  ClassFactoryFunction GetFactory() const { return m_kind.factory; }
  int GetClassId() const { return m_kind.classId; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CClsKind m_kind;
};

class OVXML_API CElementInfoChoiceClsCol : public CElementInfoChoiceCol {
 public:
  CElementInfoChoiceClsCol(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType);
  XmlElementType GetElementType() const { return m_elementType; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  XmlElementType m_elementType;
};

class OVXML_API CElementInfoChoiceAbsClsOpt : public CElementInfoChoice {
 public:
  CElementInfoChoiceAbsClsOpt(const char* name, const char* ns, int propertyIndex,
                              XmlElementType elementType, SubstitutionFactoryFunction factory);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  SubstitutionFactoryFunction GetFactory() const { return m_kind.factory; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CAbsClsKind m_kind;
};

class OVXML_API CElementInfoChoiceAbsClsCol : public CElementInfoChoiceCol {
 public:
  CElementInfoChoiceAbsClsCol(const char* name, const char* ns, int propertyIndex,
                              XmlElementType elementType);
  XmlElementType GetElementType() const { return m_elementType; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  XmlElementType m_elementType;
};

class OVXML_API CElementInfoChoiceUntpdOpt : public CElementInfoChoice {
 public:
  CElementInfoChoiceUntpdOpt(const char* name, const char* ns, int propertyIndex,
                             const char* restriction, const char* secondNamespace);
  const std::string& GetNamespaceRestriction() const { return m_kind.restriction; }
  const std::string& GetSecondNamespace() const { return m_kind.secondNamespace; }
  OVXML_ELEMENT_INFO_IO;

 private:
  detail::CUntpdKind m_kind;
};

class OVXML_API CElementInfoChoiceUntpdCol : public CElementInfoChoiceCol {
 public:
  CElementInfoChoiceUntpdCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
};

class OVXML_API CElementInfoAllPrimMnd : public CElementInfoAll {
 public:
  CElementInfoAllPrimMnd(const char* name, const char* ns, int propertyIndex, ItemType type,
                         const char* format, WhitespaceRule rule,
                         const CPrimitiveRestrictions& restrictions);
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
};

class OVXML_API CElementInfoAllPrimOpt : public CElementInfoAll {
 public:
  CElementInfoAllPrimOpt(const char* name, const char* ns, int propertyIndex, ItemType type,
                         const char* format, WhitespaceRule rule,
                         const CPrimitiveRestrictions& restrictions);
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
};

class OVXML_API CElementInfoAllPrimCol : public CElementInfoAllCol {
 public:
  CElementInfoAllPrimCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
};

class OVXML_API CElementInfoAllEnumMnd : public CElementInfoAll {
 public:
  CElementInfoAllEnumMnd(const char* name, const char* ns, int propertyIndex,
                         EnumToTextFunction toText, EnumFromTextFunction fromText);
  EnumToTextFunction GetToText() const { return m_kind.toText; }
  EnumFromTextFunction GetFromText() const { return m_kind.fromText; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;

 private:
  detail::CEnumKind m_kind;
};

class OVXML_API CElementInfoAllEnumOpt : public CElementInfoAll {
 public:
  CElementInfoAllEnumOpt(const char* name, const char* ns, int propertyIndex,
                         EnumToTextFunction toText, EnumFromTextFunction fromText);
  EnumToTextFunction GetToText() const { return m_kind.toText; }
  EnumFromTextFunction GetFromText() const { return m_kind.fromText; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;

 private:
  detail::CEnumKind m_kind;
};

class OVXML_API CElementInfoAllEnumCol : public CElementInfoAllCol {
 public:
  CElementInfoAllEnumCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
};

class OVXML_API CElementInfoAllClsMnd : public CElementInfoAll {
 public:
  CElementInfoAllClsMnd(const char* name, const char* ns, int propertyIndex,
                        XmlElementType elementType, ClassFactoryFunction factory, int classId,
                        bool mustAppear);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  ClassFactoryFunction GetFactory() const { return m_kind.factory; }
  int GetClassId() const { return m_kind.classId; }
  bool GetMustAppear() const { return m_kind.mustAppear; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CClsKind m_kind;
};

class OVXML_API CElementInfoAllClsOpt : public CElementInfoAll {
 public:
  CElementInfoAllClsOpt(const char* name, const char* ns, int propertyIndex,
                        XmlElementType elementType, ClassFactoryFunction factory, int classId);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  ClassFactoryFunction GetFactory() const { return m_kind.factory; }
  int GetClassId() const { return m_kind.classId; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CClsKind m_kind;
};

class OVXML_API CElementInfoAllClsCol : public CElementInfoAllCol {
 public:
  CElementInfoAllClsCol(const char* name, const char* ns, int propertyIndex,
                        XmlElementType elementType);
  XmlElementType GetElementType() const { return m_elementType; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  XmlElementType m_elementType;
};

class OVXML_API CElementInfoAllAbsClsMnd : public CElementInfoAll {
 public:
  CElementInfoAllAbsClsMnd(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType, SubstitutionFactoryFunction factory,
                           int extra);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  SubstitutionFactoryFunction GetFactory() const { return m_kind.factory; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CAbsClsKind m_kind;
};

class OVXML_API CElementInfoAllAbsClsOpt : public CElementInfoAll {
 public:
  CElementInfoAllAbsClsOpt(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType, SubstitutionFactoryFunction factory);
  XmlElementType GetElementType() const { return m_kind.elementType; }
  SubstitutionFactoryFunction GetFactory() const { return m_kind.factory; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  detail::CAbsClsKind m_kind;
};

class OVXML_API CElementInfoAllAbsClsCol : public CElementInfoAllCol {
 public:
  CElementInfoAllAbsClsCol(const char* name, const char* ns, int propertyIndex,
                           XmlElementType elementType);
  XmlElementType GetElementType() const { return m_elementType; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
  OVXML_ELEMENT_INFO_PSEUDO;

 private:
  XmlElementType m_elementType;
};

class OVXML_API CElementInfoAllUntpdMnd : public CElementInfoAll {
 public:
  CElementInfoAllUntpdMnd(const char* name, const char* ns, int propertyIndex,
                          const char* restriction, const char* secondNamespace);
  const std::string& GetNamespaceRestriction() const { return m_kind.restriction; }
  const std::string& GetSecondNamespace() const { return m_kind.secondNamespace; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;

 private:
  detail::CUntpdKind m_kind;
};

class OVXML_API CElementInfoAllUntpdOpt : public CElementInfoAll {
 public:
  CElementInfoAllUntpdOpt(const char* name, const char* ns, int propertyIndex,
                          const char* restriction, const char* secondNamespace);
  const std::string& GetNamespaceRestriction() const { return m_kind.restriction; }
  const std::string& GetSecondNamespace() const { return m_kind.secondNamespace; }
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;

 private:
  detail::CUntpdKind m_kind;
};

class OVXML_API CElementInfoAllUntpdCol : public CElementInfoAllCol {
 public:
  CElementInfoAllUntpdCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
};

class OVXML_API CElementInfoAllNonCol : public CElementInfoAllCol {
 public:
  CElementInfoAllNonCol(const char* name, const char* ns, int propertyIndex);
  OVXML_ELEMENT_INFO_IO;
  OVXML_ELEMENT_INFO_VALIDATE;
};

#undef OVXML_ELEMENT_INFO_IO
#undef OVXML_ELEMENT_INFO_VALIDATE
#undef OVXML_ELEMENT_INFO_PSEUDO

}  // namespace OvXmlLib6Data

#endif  // OVXMLLIB6_METADATA_ELEMENTINFO_H
