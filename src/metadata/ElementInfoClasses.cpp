// The concrete element descriptors. Each behaviour is written once, below, as a function over the
// descriptor and its kind's fields; the concrete classes only pick the behaviour of their row:
//
//   reading   required (Seq Mnd), optional (Opt; All Prim/Enum Mnd), class, substitution,
//             wildcard, collection
//   writing   Prim, Enum, Cls (in or out of a choice), collection (with or without the count
//             check)
//   Validate  (all group) mandatory check, class check, always true
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlGeneratedClass.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/metadata/ElementInfo.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"
#include "OvXmlLib6/types/Variant.h"
#include "core/Strings.h"
#include "core/Support.h"
#include "types/VariantText.h"
#include "xml/TreeStore.h"

#include <string>
#include <string_view>

namespace OvXmlLib6Data {

using OvXmlLib6::COvException;
using OvXmlLib6::COvValidationException;
using OvXmlLib6::CSmartPtr;
using OvXmlLib6::CXmlCollectionBase;
using OvXmlLib6::CXmlElement;
using OvXmlLib6::CXmlGeneratedClass;
using OvXmlLib6::CXmlObjectBase;
using OvXmlLib6::CXmlSerializationContext;
using OvXmlLib6::CXmlWriter;
using OvXmlLib6::FormatString;
using OvXmlLib6::OvVariant;
using OvXmlLib6::detail::CTreeStore;
using OvXmlLib6::detail::OrEmpty;

namespace {

enum class Group { Seq, Choice, All };
enum class Card { Mnd, Opt };

CXmlElement* Next(const CXmlElement* element) { return element->GetNextSiblingElement(); }

[[noreturn]] void ThrowRequiredMissing(const CElementInfo& info) {
  throw COvValidationException(
      FormatString("Failed to find a required element [%s]", info.GetElementName().c_str()));
}

// ---- Reading one element ------------------------------------------------------------------
// Each reader takes the element that is this member, stores its value and returns the cursor
// after it.

// A primitive value: the element's text under the descriptor's whitespace rule.
struct CPrimReader {
  const CElementInfo& info;
  CXmlGeneratedClass* object;
  CXmlElement* operator()(CXmlElement* element) const {
    OvVariant value;
    OvXmlLib6::detail::VariantFromText(value, CTreeStore::ElementText(element), info.GetItemType(),
                                       info.GetWhitespaceRule());
    info.AccessProperty(object, false, value);
    return Next(element);
  }
};

// An enumeration: the raw text goes to the from-text function, untrimmed.
struct CEnumReader {
  const CElementInfo& info;
  CXmlGeneratedClass* object;
  EnumFromTextFunction fromText;
  CXmlElement* operator()(CXmlElement* element) const {
    const std::string text(CTreeStore::ElementText(element));
    OvVariant value;
    value.SetI4(fromText(text.c_str()));
    info.AccessProperty(object, false, value);
    return Next(element);
  }
};

// The object a class member reads into: a Mnd member reads into the object the generated class
// holds (one is made by the factory and stored when it holds none); an Opt member into a new
// object from the factory.
CSmartPtr<CXmlObjectBase> MemberObject(const CElementInfo& info, const detail::CClsKind& kind,
                                       Card card, const CXmlGeneratedClass* object, bool& isNew) {
  isNew = false;
  if (card == Card::Mnd) {
    OvVariant value;
    info.ReadProperty(object, value);
    CSmartPtr<CXmlObjectBase> held = value.GetXmlObject();
    if (held) return held;
  }
  if (kind.factory == nullptr) {
    throw COvException(FormatString("No class factory is set for the element [%s]",
                                    info.GetElementName().c_str()));
  }
  CSmartPtr<CXmlObjectBase> made = kind.factory(kind.classId, info.GetElementName().c_str());
  if (!made) {
    throw COvException(FormatString("The class factory made no object for the element [%s]",
                                    info.GetElementName().c_str()));
  }
  isNew = true;
  return made;
}

void StoreObject(const CElementInfo& info, CXmlGeneratedClass* object, CXmlObjectBase* member) {
  OvVariant value;
  value.SetXmlObject(member);
  info.AccessProperty(object, false, value);
}

// A class member with its own tag: the object reads the element's content.
struct CClsReader {
  const CElementInfo& info;
  const detail::CClsKind& kind;
  Card card;
  const CXmlSerializationContext& context;
  CXmlGeneratedClass* object;
  CXmlElement* operator()(CXmlElement* element) const {
    bool isNew = false;
    const CSmartPtr<CXmlObjectBase> member = MemberObject(info, kind, card, object, isNew);
    CElementInfo::FromXml_Int(member.get(), element, element->GetFirstElement(), context, false);
    if (isNew) StoreObject(info, object, member.get());
    return Next(element);
  }
};

// ---- Reading one member -------------------------------------------------------------------

// A required member of a sequence. In a pseudo element's content a missing member is no error
// (the enclosing content may go on); otherwise it fails unless the context ignores missing
// mandatory elements. Unknown elements before it are skipped when the context ignores them.
template <typename IsThis, typename Reader>
bool ReadRequired(const CElementInfo& info, const CXmlSerializationContext& context,
                  CXmlElement** cursor, XmlElementType parentType, IsThis isThis, Reader reader) {
  if (isThis(*cursor)) {
    *cursor = reader(*cursor);
    return true;
  }
  if (parentType == XmlElementType_PseudoElement) {
    while (context.GetIgnoreUnknownElements() && *cursor != nullptr) {
      *cursor = Next(*cursor);
      if (isThis(*cursor)) {
        *cursor = reader(*cursor);
        return true;
      }
    }
    return false;
  }
  while (true) {
    if (context.GetIgnoreMissingMandatoryElements()) return true;
    if (!context.GetIgnoreUnknownElements() || *cursor == nullptr) ThrowRequiredMissing(info);
    *cursor = Next(*cursor);
    if (isThis(*cursor)) {
      *cursor = reader(*cursor);
      return true;
    }
  }
}

// An optional member: read when the cursor is at it. Absent, a sequence goes on (true), a choice
// or all group learns that it was not found (false).
template <typename Reader>
bool ReadOptional(const CElementInfo& info, const CXmlSerializationContext& context,
                  CXmlElement** cursor, Group group, Reader reader) {
  if (info.IsThisElement(context, *cursor)) {
    *cursor = reader(*cursor);
    return true;
  }
  return group == Group::Seq;
}

template <typename Reader>
bool ReadRequiredOrOptional(const CElementInfo& info, const CXmlSerializationContext& context,
                            CXmlElement** cursor, XmlElementType parentType, Group group, Card card,
                            Reader reader) {
  if (group == Group::Seq && card == Card::Mnd) {
    return ReadRequired(
        info, context, cursor, parentType,
        [&](const CXmlElement* element) { return info.IsThisElement(context, element); }, reader);
  }
  return ReadOptional(info, context, cursor, group, reader);
}

bool ReadCls(const CElementInfo& info, const detail::CClsKind& kind, Card card, Group group,
             const CXmlSerializationContext& context, CXmlGeneratedClass* object,
             CXmlElement* parent, CXmlElement** cursor, XmlElementType parentType) {
  if (kind.elementType == XmlElementType_Element) {
    return ReadRequiredOrOptional(info, context, cursor, parentType, group, card,
                                  CClsReader{info, kind, card, context, object});
  }
  // A pseudo element reads its content from the parent's children at the cursor; it was found
  // when it consumed something.
  bool isNew = false;
  const CSmartPtr<CXmlObjectBase> member = MemberObject(info, kind, card, object, isNew);
  CXmlElement* next = CElementInfo::FromXml_Int(member.get(), parent, *cursor, context, false);
  if (next == *cursor) return group == Group::Seq;
  if (isNew) StoreObject(info, object, member.get());
  *cursor = next;
  return true;
}

// An element of an abstract or substitutable type: the factory picks the class from the element.
bool ReadSubstitution(const CElementInfo& info, const detail::CAbsClsKind& kind, Card card,
                      Group group, const CXmlSerializationContext& context,
                      CXmlGeneratedClass* object, CXmlElement** cursor, XmlElementType parentType) {
  CXmlElement* element = *cursor;
  CSmartPtr<CXmlObjectBase> member;
  if (info.IsThisElement(context, element) && kind.factory != nullptr) {
    member = kind.factory(element);
  }
  if (!member) {
    if (group == Group::Choice) return false;
    if (card == Card::Opt) return true;
    if (parentType == XmlElementType_PseudoElement) return false;
    throw COvValidationException(FormatString(
        "Failed to find a suitable substitution element for [%s]", info.GetElementName().c_str()));
  }
  // A choice stores its branch before reading it, a sequence after.
  if (group == Group::Choice) StoreObject(info, object, member.get());
  CElementInfo::FromXml_Int(member.get(), element, element->GetFirstElement(), context, false);
  if (group != Group::Choice) StoreObject(info, object, member.get());
  *cursor = Next(element);
  return true;
}

[[noreturn]] void ThrowAllAbstract() {
  throw COvException(
      std::string("AllAbsClsMndElm.ProcessXml, has not been implemented fully, contact ") +
      OvXmlLib6::detail::kSupportAddress);
}

// A wildcard element: a new CElement takes the element when its restriction admits the
// element's namespace.
struct CWildcardReader {
  const CElementInfo& info;
  const detail::CUntpdKind& kind;
  const CXmlSerializationContext& context;
  CXmlGeneratedClass* object;
  CXmlElement* parent;
  const char* targetNamespace;
  CXmlElement* operator()(CXmlElement* element) const {
    const std::string name = info.GetElementName();
    const std::string ns = CElementInfo::GetAnyDefaultNamespace(
        kind.restriction.c_str(), targetNamespace, kind.secondNamespace.c_str());
    // The element's own namespace replaces this one when it is read; the restriction is set
    // without testing the default namespace against it, since of a restriction that lists a
    // namespace URI the default (empty) namespace is not admitted.
    CSmartPtr<OvXmlLib6::CElement> any = new OvXmlLib6::CElement(name.c_str());
    any->SetNamespaceRestrictions(kind.restriction.c_str(), kind.secondNamespace.c_str());
    any->SetNamespace(ns.c_str());
    CXmlElement* next = CElementInfo::FromXml_Int(any.get(), parent, element, context, false);
    if (next != element) StoreObject(info, object, any.get());
    return next;
  }
};

bool IsWildcardElement(const CElementInfo& info, const CXmlElement* element) {
  if (element == nullptr) return false;
  const std::string& name = info.GetElementName();
  return name == "AnyElement" || CTreeStore::LocalName(element) == name;
}

bool ReadWildcard(const CElementInfo& info, const detail::CUntpdKind& kind, Card card, Group group,
                  const CXmlSerializationContext& context, CXmlGeneratedClass* object,
                  CXmlElement* parent, CXmlElement** cursor, const char* targetNamespace,
                  XmlElementType parentType) {
  const CWildcardReader reader{info, kind, context, object, parent, targetNamespace};
  if (group == Group::Seq && card == Card::Mnd) {
    return ReadRequired(
        info, context, cursor, parentType,
        [&](const CXmlElement* element) { return IsWildcardElement(info, element); }, reader);
  }
  if (*cursor == nullptr) return card == Card::Opt;
  if (!IsWildcardElement(info, *cursor)) return group == Group::Seq;
  CXmlElement* before = *cursor;
  *cursor = reader(before);
  return group == Group::Seq || *cursor != before;
}

// A repeated member: the collection reads as many elements as it takes. A sequence checks the
// count and goes on; a choice branch was found when it took something (and checks the count
// then); an all group's collection never counts as found and checks nothing.
bool ReadCollection(const CElementInfo& info, Group group, const CXmlSerializationContext& context,
                    CXmlGeneratedClass* object, CXmlElement* parent, CXmlElement** cursor) {
  OvVariant value;
  info.ReadProperty(object, value);
  const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
  if (!collection) {
    throw COvException(
        FormatString("The collection of the element [%s] is NULL", info.GetElementName().c_str()));
  }
  CXmlElement* before = *cursor;
  *cursor = CElementInfo::FromXml_Int(collection.get(), parent, before, context, false);
  if (group == Group::All) return false;
  if (group == Group::Choice && *cursor == before) return false;
  if (!context.GetIgnoreInvalidCollectionCounts()) collection->ValidateCount(context);
  return true;
}

// ---- Writing ------------------------------------------------------------------------------

bool WriteCollection(const CElementInfo& info, bool checkCount,
                     const CXmlSerializationContext& context, const CXmlGeneratedClass* object,
                     CXmlWriter* writer) {
  if (checkCount && !context.GetIgnoreInvalidCollectionCounts()) {
    OvVariant value;
    info.ReadProperty(object, value);
    const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
    if (collection) collection->ValidateCount(context);
  }
  return info.ElementToXmlCol(context, object, writer);
}

void WritePseudoAttributes(const CElementInfo& info, XmlElementType elementType, bool collection,
                           const CXmlSerializationContext& context,
                           const CXmlGeneratedClass* object, CXmlWriter* writer) {
  if (elementType != XmlElementType_PseudoElement) return;
  OvVariant value;
  info.ReadProperty(object, value);
  if (collection) {
    const CSmartPtr<CXmlCollectionBase> items = value.GetXmlCollection();
    if (items) CElementInfo::AttributesToXml_Int(items.get(), writer, context);
  } else {
    const CSmartPtr<CXmlObjectBase> member = value.GetXmlObject();
    if (member) CElementInfo::AttributesToXml_Int(member.get(), writer, context);
  }
}

// ---- Validate (all group) -----------------------------------------------------------------

bool ValidateMandatory(const CElementInfo& info, bool found, bool check) {
  if (found) return true;
  if (!check) return false;
  throw COvValidationException(
      FormatString("Failed to find the mandatory element [%s]", info.GetElementName().c_str()));
}

}  // namespace

// ---- The concrete classes -----------------------------------------------------------------
// The argument lists of the overrides, and the arguments they pass on.
#define OVXML_TO_XML_ARGS \
  const CXmlSerializationContext &context, const CXmlGeneratedClass *object, CXmlWriter *writer
#define OVXML_FROM_XML_ARGS                                                                 \
  const CXmlSerializationContext &context, CXmlGeneratedClass *object, CXmlElement *parent, \
      CXmlElement **cursor, const char *targetNamespace, XmlElementType parentType
#define OVXML_VALIDATE_ARGS \
  const CXmlSerializationContext &context, const CXmlGeneratedClass *object, bool found, bool check
#define OVXML_UNUSED_FROM_XML_ARGS \
  (void)context, (void)object, (void)parent, (void)cursor, (void)targetNamespace, (void)parentType

// Prim: Mnd and Opt of every group.
#define OVXML_PRIM(Class, Base, GroupValue, CardValue, ChoiceBranchValue)                    \
  Class::Class(const char* name, const char* ns, int propertyIndex, ItemType type,           \
               const char* format, WhitespaceRule rule,                                      \
               const CPrimitiveRestrictions& restrictions)                                   \
      : Base(name, ns, propertyIndex, type, format, rule, restrictions) {                    \
    SetChoiceBranch(ChoiceBranchValue);                                                      \
  }                                                                                          \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {                                        \
    return ElementToXmlPrim(context, object, writer);                                        \
  }                                                                                          \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                                          \
    (void)parent, (void)targetNamespace;                                                     \
    return ReadRequiredOrOptional(*this, context, cursor, parentType, GroupValue, CardValue, \
                                  CPrimReader{*this, object});                               \
  }

// Enum: Mnd and Opt of every group.
#define OVXML_ENUM(Class, Base, GroupValue, CardValue, ChoiceBranchValue)                      \
  Class::Class(const char* name, const char* ns, int propertyIndex, EnumToTextFunction toText, \
               EnumFromTextFunction fromText)                                                  \
      : Base(name, ns, propertyIndex), m_kind{toText, fromText} {                              \
    SetChoiceBranch(ChoiceBranchValue);                                                        \
  }                                                                                            \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {                                          \
    return ElementToXmlEnum(context, object, writer, m_kind.toText);                           \
  }                                                                                            \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                                            \
    (void)parent, (void)targetNamespace;                                                       \
    return ReadRequiredOrOptional(*this, context, cursor, parentType, GroupValue, CardValue,   \
                                  CEnumReader{*this, object, m_kind.fromText});                \
  }

// Cls: Mnd and Opt of every group; a choice branch writes itself as one.
#define OVXML_CLS(Class, Base, GroupValue, CardValue, ChoiceBranchValue, CtorExtra, MustAppear) \
  Class::Class(const char* name, const char* ns, int propertyIndex, XmlElementType elementType, \
               ClassFactoryFunction factory, int classId CtorExtra)                             \
      : Base(name, ns, propertyIndex), m_kind{elementType, factory, classId, MustAppear} {      \
    SetChoiceBranch(ChoiceBranchValue);                                                         \
  }                                                                                             \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {                                           \
    return ElementToXmlCls(context, object, writer, GroupValue == Group::Choice);               \
  }                                                                                             \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                                             \
    (void)targetNamespace;                                                                      \
    return ReadCls(*this, m_kind, CardValue, GroupValue, context, object, parent, cursor,       \
                   parentType);                                                                 \
  }                                                                                             \
  void Class::PseudoChildAttributeToXml(OVXML_TO_XML_ARGS) const {                              \
    WritePseudoAttributes(*this, m_kind.elementType, false, context, object, writer);           \
  }

// AbsCls: Mnd and Opt of every group; the all group cannot read them.
#define OVXML_ABSCLS(Class, Base, GroupValue, CardValue, ChoiceBranchValue, CtorExtra, Extra)   \
  Class::Class(const char* name, const char* ns, int propertyIndex, XmlElementType elementType, \
               SubstitutionFactoryFunction factory CtorExtra)                                   \
      : Base(name, ns, propertyIndex), m_kind{elementType, factory, Extra} {                    \
    SetChoiceBranch(ChoiceBranchValue);                                                         \
  }                                                                                             \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {                                           \
    return ElementToXmlCls(context, object, writer, false);                                     \
  }                                                                                             \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                                             \
    (void)parent, (void)targetNamespace;                                                        \
    if (GroupValue == Group::All) ThrowAllAbstract();                                           \
    return ReadSubstitution(*this, m_kind, CardValue, GroupValue, context, object, cursor,      \
                            parentType);                                                        \
  }                                                                                             \
  void Class::PseudoChildAttributeToXml(OVXML_TO_XML_ARGS) const {                              \
    WritePseudoAttributes(*this, m_kind.elementType, false, context, object, writer);           \
  }

// Untpd: Mnd and Opt of every group.
#define OVXML_UNTPD(Class, Base, GroupValue, CardValue, ChoiceBranchValue)                      \
  Class::Class(const char* name, const char* ns, int propertyIndex, const char* restriction,    \
               const char* secondNamespace)                                                     \
      : Base(name, ns, propertyIndex), m_kind{OrEmpty(restriction), OrEmpty(secondNamespace)} { \
    SetChoiceBranch(ChoiceBranchValue);                                                         \
    SetUsesTargetNamespace();                                                                   \
  }                                                                                             \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {                                           \
    return ElementToXmlCls(context, object, writer, false);                                     \
  }                                                                                             \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                                             \
    return ReadWildcard(*this, m_kind, CardValue, GroupValue, context, object, parent, cursor,  \
                        targetNamespace, parentType);                                           \
  }

// Col of Prim, Enum and Untpd. A choice writes without the count check.
#define OVXML_COL_IO(Class, GroupValue)                                                  \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {                                    \
    return WriteCollection(*this, GroupValue != Group::Choice, context, object, writer); \
  }                                                                                      \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                                      \
    (void)targetNamespace, (void)parentType;                                             \
    return ReadCollection(*this, GroupValue, context, object, parent, cursor);           \
  }
#define OVXML_COL(Class, Base, GroupValue, ChoiceBranchValue)       \
  Class::Class(const char* name, const char* ns, int propertyIndex) \
      : Base(name, ns, propertyIndex) {                             \
    SetChoiceBranch(ChoiceBranchValue);                             \
  }                                                                 \
  OVXML_COL_IO(Class, GroupValue)

// Col of Cls and AbsCls: also the items' attributes when they are pseudo elements.
#define OVXML_CLS_COL(Class, Base, GroupValue, ChoiceBranchValue)                               \
  Class::Class(const char* name, const char* ns, int propertyIndex, XmlElementType elementType) \
      : Base(name, ns, propertyIndex), m_elementType(elementType) {                             \
    SetChoiceBranch(ChoiceBranchValue);                                                         \
  }                                                                                             \
  OVXML_COL_IO(Class, GroupValue)                                                               \
  void Class::PseudoChildAttributeToXml(OVXML_TO_XML_ARGS) const {                              \
    WritePseudoAttributes(*this, m_elementType, true, context, object, writer);                 \
  }

// Non Col: nothing to write or read; a sequence goes on past it.
#define OVXML_NON_COL(Class, Base, GroupValue)                      \
  Class::Class(const char* name, const char* ns, int propertyIndex) \
      : Base(name, ns, propertyIndex) {}                            \
  bool Class::ElementToXml(OVXML_TO_XML_ARGS) const {               \
    (void)context, (void)object, (void)writer;                      \
    return false;                                                   \
  }                                                                 \
  bool Class::ElementFromXml(OVXML_FROM_XML_ARGS) {                 \
    OVXML_UNUSED_FROM_XML_ARGS;                                     \
    return GroupValue == Group::Seq;                                \
  }

#define OVXML_VALIDATE(Class, Body)                        \
  bool Class::Validate(OVXML_VALIDATE_ARGS) const {        \
    (void)context, (void)object, (void)found, (void)check; \
    Body;                                                  \
  }
#define OVXML_VALIDATE_TRUE(Class) OVXML_VALIDATE(Class, return true)
#define OVXML_VALIDATE_MANDATORY(Class) \
  OVXML_VALIDATE(Class, return ValidateMandatory(*this, found, check))

#define OVXML_MUST_APPEAR_ARG , bool mustAppear
#define OVXML_EXTRA_ARG , int extra
#define OVXML_NO_ARG

// The choice-branch marks, named inside the constructors where the enumeration is reachable.
#define kNone ChoiceBranch_None
#define kOptional ChoiceBranch_Optional
#define kCollection ChoiceBranch_Collection

// Sequence.
OVXML_PRIM(CElementInfoSeqPrimMnd, CElementInfoSeq, Group::Seq, Card::Mnd, kNone)
OVXML_PRIM(CElementInfoSeqPrimOpt, CElementInfoSeq, Group::Seq, Card::Opt, kNone)
OVXML_COL(CElementInfoSeqPrimCol, CElementInfoSeqCol, Group::Seq, kNone)
OVXML_ENUM(CElementInfoSeqEnumMnd, CElementInfoSeq, Group::Seq, Card::Mnd, kNone)
OVXML_ENUM(CElementInfoSeqEnumOpt, CElementInfoSeq, Group::Seq, Card::Opt, kNone)
OVXML_COL(CElementInfoSeqEnumCol, CElementInfoSeqCol, Group::Seq, kNone)
OVXML_CLS(CElementInfoSeqClsMnd, CElementInfoSeq, Group::Seq, Card::Mnd, kNone,
          OVXML_MUST_APPEAR_ARG, mustAppear)
OVXML_CLS(CElementInfoSeqClsOpt, CElementInfoSeq, Group::Seq, Card::Opt, kNone, OVXML_NO_ARG, false)
OVXML_CLS_COL(CElementInfoSeqClsCol, CElementInfoSeqCol, Group::Seq, kNone)
OVXML_ABSCLS(CElementInfoSeqAbsClsMnd, CElementInfoSeq, Group::Seq, Card::Mnd, kNone, OVXML_NO_ARG,
             0)
OVXML_ABSCLS(CElementInfoSeqAbsClsOpt, CElementInfoSeq, Group::Seq, Card::Opt, kNone, OVXML_NO_ARG,
             0)
OVXML_CLS_COL(CElementInfoSeqAbsClsCol, CElementInfoSeqCol, Group::Seq, kNone)
OVXML_UNTPD(CElementInfoSeqUntpdMnd, CElementInfoSeq, Group::Seq, Card::Mnd, kNone)
OVXML_UNTPD(CElementInfoSeqUntpdOpt, CElementInfoSeq, Group::Seq, Card::Opt, kNone)
OVXML_COL(CElementInfoSeqUntpdCol, CElementInfoSeqCol, Group::Seq, kNone)
OVXML_NON_COL(CElementInfoSeqNonCol, CElementInfoSeqCol, Group::Seq)

// Choice.
OVXML_PRIM(CElementInfoChoicePrimOpt, CElementInfoChoice, Group::Choice, Card::Opt, kOptional)
OVXML_COL(CElementInfoChoicePrimCol, CElementInfoChoiceCol, Group::Choice, kCollection)
OVXML_ENUM(CElementInfoChoiceEnumOpt, CElementInfoChoice, Group::Choice, Card::Opt, kOptional)
OVXML_COL(CElementInfoChoiceEnumCol, CElementInfoChoiceCol, Group::Choice, kCollection)
OVXML_CLS(CElementInfoChoiceClsOpt, CElementInfoChoice, Group::Choice, Card::Opt, kOptional,
          OVXML_NO_ARG, false)
OVXML_CLS_COL(CElementInfoChoiceClsCol, CElementInfoChoiceCol, Group::Choice, kCollection)
OVXML_ABSCLS(CElementInfoChoiceAbsClsOpt, CElementInfoChoice, Group::Choice, Card::Opt, kOptional,
             OVXML_NO_ARG, 0)
OVXML_CLS_COL(CElementInfoChoiceAbsClsCol, CElementInfoChoiceCol, Group::Choice, kCollection)
OVXML_UNTPD(CElementInfoChoiceUntpdOpt, CElementInfoChoice, Group::Choice, Card::Opt, kOptional)
OVXML_COL(CElementInfoChoiceUntpdCol, CElementInfoChoiceCol, Group::Choice, kCollection)

// All. Prim and Enum Mnd read as optional members; the end-of-class check reports them missing.
OVXML_PRIM(CElementInfoAllPrimMnd, CElementInfoAll, Group::All, Card::Opt, kNone)
OVXML_VALIDATE_MANDATORY(CElementInfoAllPrimMnd)
OVXML_PRIM(CElementInfoAllPrimOpt, CElementInfoAll, Group::All, Card::Opt, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllPrimOpt)
OVXML_COL(CElementInfoAllPrimCol, CElementInfoAllCol, Group::All, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllPrimCol)
OVXML_ENUM(CElementInfoAllEnumMnd, CElementInfoAll, Group::All, Card::Opt, kNone)
OVXML_VALIDATE_MANDATORY(CElementInfoAllEnumMnd)
OVXML_ENUM(CElementInfoAllEnumOpt, CElementInfoAll, Group::All, Card::Opt, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllEnumOpt)
OVXML_COL(CElementInfoAllEnumCol, CElementInfoAllCol, Group::All, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllEnumCol)
OVXML_CLS(CElementInfoAllClsMnd, CElementInfoAll, Group::All, Card::Mnd, kNone,
          OVXML_MUST_APPEAR_ARG, mustAppear)
// A mandatory class member whose element is missing is accepted unless it must appear (or is a
// pseudo element): its object always exists.
bool CElementInfoAllClsMnd::Validate(OVXML_VALIDATE_ARGS) const {
  (void)context, (void)object;
  if (!found && check && m_kind.elementType != XmlElementType_PseudoElement && !m_kind.mustAppear) {
    return true;
  }
  return ValidateMandatory(*this, found, check);
}
OVXML_CLS(CElementInfoAllClsOpt, CElementInfoAll, Group::All, Card::Opt, kNone, OVXML_NO_ARG, false)
OVXML_VALIDATE_TRUE(CElementInfoAllClsOpt)
OVXML_CLS_COL(CElementInfoAllClsCol, CElementInfoAllCol, Group::All, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllClsCol)
OVXML_ABSCLS(CElementInfoAllAbsClsMnd, CElementInfoAll, Group::All, Card::Mnd, kNone,
             OVXML_EXTRA_ARG, extra)
OVXML_VALIDATE_MANDATORY(CElementInfoAllAbsClsMnd)
OVXML_ABSCLS(CElementInfoAllAbsClsOpt, CElementInfoAll, Group::All, Card::Opt, kNone, OVXML_NO_ARG,
             0)
OVXML_VALIDATE_TRUE(CElementInfoAllAbsClsOpt)
OVXML_CLS_COL(CElementInfoAllAbsClsCol, CElementInfoAllCol, Group::All, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllAbsClsCol)
OVXML_UNTPD(CElementInfoAllUntpdMnd, CElementInfoAll, Group::All, Card::Mnd, kNone)
OVXML_VALIDATE_MANDATORY(CElementInfoAllUntpdMnd)
OVXML_UNTPD(CElementInfoAllUntpdOpt, CElementInfoAll, Group::All, Card::Opt, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllUntpdOpt)
OVXML_COL(CElementInfoAllUntpdCol, CElementInfoAllCol, Group::All, kNone)
OVXML_VALIDATE_TRUE(CElementInfoAllUntpdCol)
OVXML_NON_COL(CElementInfoAllNonCol, CElementInfoAllCol, Group::All)
OVXML_VALIDATE_TRUE(CElementInfoAllNonCol)

}  // namespace OvXmlLib6Data
