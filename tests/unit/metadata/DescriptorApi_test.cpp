// Compile-time check of the descriptor classes that generated code builds: each exists, takes
// its documented constructor arguments, derives from its fixed base and can be copied.
#include "OvXmlLib6/core/ClassFactory.h"
#include "OvXmlLib6/core/XmlGeneratedClass.h"
#include "OvXmlLib6/metadata/AttributeInfo.h"
#include "OvXmlLib6/metadata/ElementInfo.h"

#include <type_traits>

namespace {

using namespace OvXmlLib6;
using namespace OvXmlLib6Data;

template <class... A>
struct Args {};

template <class T, class Base, class... A>
constexpr bool IsDescriptor(Args<A...> /*arguments*/) {
  return std::is_base_of_v<Base, T> && std::is_constructible_v<T, A...> &&
         std::is_copy_constructible_v<T> && std::is_copy_assignable_v<T> &&
         std::has_virtual_destructor_v<T>;
}

using Rule = CWhitespaceUtils::WhitespaceRule;
using Factory = CSmartPtr<CXmlObjectBase> (*)(int, const char*);
using Substitution = CSmartPtr<CXmlObjectBase> (*)(CXmlElement*);
using ToText = const char* (*)(int);
using FromText = int (*)(const char*);

using Short = Args<const char*, const char*, int>;
using Prim =
    Args<const char*, const char*, int, ItemType, const char*, Rule, const CPrimitiveRestrictions&>;
using Enum = Args<const char*, const char*, int, ToText, FromText>;
using ClsMnd = Args<const char*, const char*, int, XmlElementType, Factory, int, bool>;
using ClsOpt = Args<const char*, const char*, int, XmlElementType, Factory, int>;
using ClsCol = Args<const char*, const char*, int, XmlElementType>;
using AbsCls = Args<const char*, const char*, int, XmlElementType, Substitution>;
using AllAbsClsMnd = Args<const char*, const char*, int, XmlElementType, Substitution, int>;
using Untpd = Args<const char*, const char*, int, const char*, const char*>;

// The group bases and their collection bases: abstract, each derived from the one above.
template <class T, class Base>
constexpr bool IsAbstractBase() {
  return std::is_base_of_v<Base, T> && std::is_abstract_v<T> && std::has_virtual_destructor_v<T>;
}
static_assert(IsAbstractBase<CElementInfoSeq, CElementInfo>());
static_assert(IsAbstractBase<CElementInfoChoice, CElementInfo>());
static_assert(IsAbstractBase<CElementInfoAll, CElementInfo>());
static_assert(IsAbstractBase<CElementInfoSeqCol, CElementInfoSeq>());
static_assert(IsAbstractBase<CElementInfoChoiceCol, CElementInfoChoice>());
static_assert(IsAbstractBase<CElementInfoAllCol, CElementInfoAll>());
static_assert(std::is_abstract_v<CElementInfo> && std::is_abstract_v<CAttributeInfo>);

// Sequence.
static_assert(IsDescriptor<CElementInfoSeqPrimMnd, CElementInfoSeq>(Prim()));
static_assert(IsDescriptor<CElementInfoSeqPrimOpt, CElementInfoSeq>(Prim()));
static_assert(IsDescriptor<CElementInfoSeqPrimCol, CElementInfoSeqCol>(Short()));
static_assert(IsDescriptor<CElementInfoSeqEnumMnd, CElementInfoSeq>(Enum()));
static_assert(IsDescriptor<CElementInfoSeqEnumOpt, CElementInfoSeq>(Enum()));
static_assert(IsDescriptor<CElementInfoSeqEnumCol, CElementInfoSeqCol>(Short()));
static_assert(IsDescriptor<CElementInfoSeqClsMnd, CElementInfoSeq>(ClsMnd()));
static_assert(IsDescriptor<CElementInfoSeqClsOpt, CElementInfoSeq>(ClsOpt()));
static_assert(IsDescriptor<CElementInfoSeqClsCol, CElementInfoSeqCol>(ClsCol()));
static_assert(IsDescriptor<CElementInfoSeqAbsClsMnd, CElementInfoSeq>(AbsCls()));
static_assert(IsDescriptor<CElementInfoSeqAbsClsOpt, CElementInfoSeq>(AbsCls()));
static_assert(IsDescriptor<CElementInfoSeqAbsClsCol, CElementInfoSeqCol>(ClsCol()));
static_assert(IsDescriptor<CElementInfoSeqUntpdMnd, CElementInfoSeq>(Untpd()));
static_assert(IsDescriptor<CElementInfoSeqUntpdOpt, CElementInfoSeq>(Untpd()));
static_assert(IsDescriptor<CElementInfoSeqUntpdCol, CElementInfoSeqCol>(Short()));
static_assert(IsDescriptor<CElementInfoSeqNonCol, CElementInfoSeqCol>(Short()));

// Choice: no mandatory members, no Non member.
static_assert(IsDescriptor<CElementInfoChoicePrimOpt, CElementInfoChoice>(Prim()));
static_assert(IsDescriptor<CElementInfoChoicePrimCol, CElementInfoChoiceCol>(Short()));
static_assert(IsDescriptor<CElementInfoChoiceEnumOpt, CElementInfoChoice>(Enum()));
static_assert(IsDescriptor<CElementInfoChoiceEnumCol, CElementInfoChoiceCol>(Short()));
static_assert(IsDescriptor<CElementInfoChoiceClsOpt, CElementInfoChoice>(ClsOpt()));
static_assert(IsDescriptor<CElementInfoChoiceClsCol, CElementInfoChoiceCol>(ClsCol()));
static_assert(IsDescriptor<CElementInfoChoiceAbsClsOpt, CElementInfoChoice>(AbsCls()));
static_assert(IsDescriptor<CElementInfoChoiceAbsClsCol, CElementInfoChoiceCol>(ClsCol()));
static_assert(IsDescriptor<CElementInfoChoiceUntpdOpt, CElementInfoChoice>(Untpd()));
static_assert(IsDescriptor<CElementInfoChoiceUntpdCol, CElementInfoChoiceCol>(Short()));

// All.
static_assert(IsDescriptor<CElementInfoAllPrimMnd, CElementInfoAll>(Prim()));
static_assert(IsDescriptor<CElementInfoAllPrimOpt, CElementInfoAll>(Prim()));
static_assert(IsDescriptor<CElementInfoAllPrimCol, CElementInfoAllCol>(Short()));
static_assert(IsDescriptor<CElementInfoAllEnumMnd, CElementInfoAll>(Enum()));
static_assert(IsDescriptor<CElementInfoAllEnumOpt, CElementInfoAll>(Enum()));
static_assert(IsDescriptor<CElementInfoAllEnumCol, CElementInfoAllCol>(Short()));
static_assert(IsDescriptor<CElementInfoAllClsMnd, CElementInfoAll>(ClsMnd()));
static_assert(IsDescriptor<CElementInfoAllClsOpt, CElementInfoAll>(ClsOpt()));
static_assert(IsDescriptor<CElementInfoAllClsCol, CElementInfoAllCol>(ClsCol()));
static_assert(IsDescriptor<CElementInfoAllAbsClsMnd, CElementInfoAll>(AllAbsClsMnd()));
static_assert(IsDescriptor<CElementInfoAllAbsClsOpt, CElementInfoAll>(AbsCls()));
static_assert(IsDescriptor<CElementInfoAllAbsClsCol, CElementInfoAllCol>(ClsCol()));
static_assert(IsDescriptor<CElementInfoAllUntpdMnd, CElementInfoAll>(Untpd()));
static_assert(IsDescriptor<CElementInfoAllUntpdOpt, CElementInfoAll>(Untpd()));
static_assert(IsDescriptor<CElementInfoAllUntpdCol, CElementInfoAllCol>(Short()));
static_assert(IsDescriptor<CElementInfoAllNonCol, CElementInfoAllCol>(Short()));

// Attribute and class descriptors.
static_assert(IsDescriptor<CAttributeInfoPrimitive, CAttributeInfo>(
    Args<const char*, const char*, int, bool, ItemType, const char*, Rule,
         const CPrimitiveRestrictions&, const char*>()));
static_assert(IsDescriptor<CAttributeInfoEnum, CAttributeInfo>(
    Args<const char*, const char*, int, bool, ToText, FromText, const char*>()));
static_assert(IsDescriptor<CAttributeInfoAny, CAttributeInfo>(
    Args<const char*, const char*, int, bool, const char*, const char*, const char*>()));
static_assert(IsDescriptor<CParentElementInfo, CParentElementInfo>(
    Args<XmlElementGroupType, XmlElementType, const char*, const char*, int, bool, bool>()));

// The enumerations are plain ones over the stated numbers.
static_assert(XmlElementType_Element == 0 && XmlElementType_PseudoElement == 1);
static_assert(XmlElementGroupType_Sequence == 0 && XmlElementGroupType_Choice == 1 &&
              XmlElementGroupType_All == 2);
static_assert(std::is_convertible_v<XmlElementGroupType, int>);

// The bases of generated code.
static_assert(std::is_base_of_v<CXmlObjectBase, CXmlGeneratedClass> &&
              std::is_abstract_v<CXmlGeneratedClass>);
static_assert(std::is_default_constructible_v<CClassfactoryBase> &&
              std::is_copy_constructible_v<CClassfactoryBase> &&
              std::is_copy_assignable_v<CClassfactoryBase> &&
              std::has_virtual_destructor_v<CClassfactoryBase>);

}  // namespace
