// The generated-class engine: writes and reads an object by its descriptor tables.
#include "OvXmlLib6/core/XmlGeneratedClass.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/metadata/XmlCollectionBase.h"
#include "OvXmlLib6/xml/XmlAttribute.h"
#include "OvXmlLib6/xml/XmlElement.h"
#include "OvXmlLib6/xml/XmlWriter.h"
#include "core/RootOptions.h"
#include "core/SharedNames.h"
#include "core/Strings.h"
#include "xml/TreeStore.h"

#include <memory>
#include <string_view>
#include <utility>

namespace OvXmlLib6 {

using OvXmlLib6Data::CAttributeInfo;
using OvXmlLib6Data::CElementInfo;
using OvXmlLib6Data::CParentElementInfo;
using OvXmlLib6Data::XmlElementGroupType_All;
using OvXmlLib6Data::XmlElementGroupType_Choice;
using OvXmlLib6Data::XmlElementGroupType_Sequence;
using OvXmlLib6Data::XmlElementType;
using OvXmlLib6Data::XmlElementType_Element;
using OvXmlLib6Data::XmlElementType_PseudoElement;

namespace {

// One flag per descriptor for the length of one call; tables of up to 64 entries need no heap.
class CFoundFlags {
 public:
  explicit CFoundFlags(int count) {
    if (count > kInline) {
      m_heap.reset(new bool[count]());
      m_flags = m_heap.get();
    } else {
      for (int i = 0; i < count; ++i) m_inline[i] = false;
      m_flags = m_inline;
    }
  }
  bool& operator[](int index) { return m_flags[index]; }

 private:
  static constexpr int kInline = 64;
  bool m_inline[kInline];
  std::unique_ptr<bool[]> m_heap;
  bool* m_flags;
};

template <typename T>
int CountEntries(T* const* table) {
  int count = 0;
  if (table != nullptr) {
    while (table[count] != nullptr) ++count;
  }
  return count;
}

const CParentElementInfo& RequireClassInfo(const CParentElementInfo* info) {
  if (info == nullptr) throw COvException("The class has no class descriptor (GetClassInfo)");
  return *info;
}

[[noreturn]] void ThrowLeftover(const CXmlElement* parent, const CXmlElement* leftover) {
  throw COvValidationException(FormatString(
      "Failed read all the elements held within the element [%s]. The unexpected element [%s] "
      "remains un processed",
      parent != nullptr ? detail::CTreeStore::LocalName(parent).c_str() : "",
      detail::CTreeStore::LocalName(leftover).c_str()));
}

}  // namespace

CXmlGeneratedClass::~CXmlGeneratedClass() = default;

void CXmlGeneratedClass::ReadProperty(int index, OvVariant& value) const {
  // Reading a property does not change the object; the accessor is one virtual for both ways.
  const_cast<CXmlGeneratedClass*>(this)->AccessProperty(index, true, value);
}

std::string CXmlGeneratedClass::TargetNamespace(CElementInfo* const* elements) const {
  // Worked out only for a class that has a member that reads with it (a wildcard), since it is a
  // virtual call that builds a string for every object read.
  for (int i = 0, count = CountEntries(elements); i < count; ++i) {
    if (elements[i]->m_usesTargetNamespace) return GetTargetNamespace();
  }
  return std::string();
}

int CXmlGeneratedClass::GetClassElementInfoCount() const {
  return CountEntries(GetClassElementInfo());
}

bool CXmlGeneratedClass::IsElementInList(const CXmlSerializationContext& context,
                                         CXmlElement* element) const {
  CElementInfo** elements = GetClassElementInfo();
  for (int i = 0, count = CountEntries(elements); i < count; ++i) {
    if (elements[i]->IsThisElement(context, element)) return true;
  }
  return false;
}

bool CXmlGeneratedClass::DoesElementContainOptionalElements() const {
  CElementInfo** elements = GetClassElementInfo();
  for (int i = 0, count = CountEntries(elements); i < count; ++i) {
    const CElementInfo& info = *elements[i];
    if (info.m_choiceBranch == CElementInfo::ChoiceBranch_Optional) return true;
    if (info.m_choiceBranch == CElementInfo::ChoiceBranch_Collection) {
      OvVariant value;
      info.ReadProperty(this, value);
      const CSmartPtr<CXmlCollectionBase> collection = value.GetXmlCollection();
      if (collection && collection->GetMinOccurs() == 0) return true;
    }
  }
  return false;
}

void CXmlGeneratedClass::CleanMetaData(OvXmlLib6Data::CParentElementInfo*& classInfo,
                                       OvXmlLib6Data::CElementInfo**& elements,
                                       OvXmlLib6Data::CAttributeInfo**& attributes) {
  delete classInfo;
  classInfo = nullptr;
  if (elements != nullptr) {
    for (CElementInfo** entry = elements; *entry != nullptr; ++entry) delete *entry;
    delete[] elements;
    elements = nullptr;
  }
  if (attributes != nullptr) {
    for (CAttributeInfo** entry = attributes; *entry != nullptr; ++entry) delete *entry;
    delete[] attributes;
    attributes = nullptr;
  }
}

// ---- Writing ------------------------------------------------------------------------------

void CXmlGeneratedClass::AttributesToXml_Int(CXmlWriter* writer,
                                             const CXmlSerializationContext& context) const {
  try {
    CAttributeInfo** attributes = GetClassAttributeInfo();
    for (int i = 0, count = CountEntries(attributes); i < count; ++i) {
      attributes[i]->AttributeToXml(context, this, writer);
    }
    CElementInfo** elements = GetClassElementInfo();
    for (int i = 0, count = CountEntries(elements); i < count; ++i) {
      elements[i]->PseudoChildAttributeToXml(context, this, writer);
    }
  } catch (COvException& e) {
    // The caught chain is taken over, not copied: wrapping costs the same at every level.
    throw COvException("Failed to convert attributes to XML", std::move(e));
  }
}

void CXmlGeneratedClass::WriteChoice(const CXmlSerializationContext& context,
                                     CElementInfo* const* elements, CXmlWriter* writer,
                                     bool flag) const {
  // The first branch that writes ends the choice: earlier branches win when several are set.
  for (int i = 0, count = CountEntries(elements); i < count; ++i) {
    if (elements[i]->ElementToXml(context, this, writer)) return;
  }
  if (!DoesElementContainOptionalElements() && !flag && !context.GetIgnoreMissingChoice()) {
    throw COvValidationException(
        "This element is a choice, and as such must have at one (and only one) valid item, "
        "currently there are none set");
  }
}

void CXmlGeneratedClass::ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                                   const CXmlSerializationContext& context, bool flag) const {
  try {
    const CParentElementInfo& info = RequireClassInfo(GetClassInfo());
    const bool ownTag = info.GetElementType() == XmlElementType_Element;
    if (ownTag) {
      if (isRoot) detail::CRootOptions::WritePrologue(writer, context);
      writer->WriteStartElement(std::string_view(GetElementName()),
                                std::string_view(detail::OrEmpty(namespaceUri)));
      if (isRoot) detail::CRootOptions::WriteAttributes(writer, context);
      AttributesToXml_Int(writer, context);
      if (isRoot) detail::CRootOptions::WriteInlineSchema(writer, context);
    }
    CElementInfo** elements = GetClassElementInfo();
    switch (info.GetElementGroupType()) {
      case XmlElementGroupType_Sequence:
      case XmlElementGroupType_All:
        // An all group is written in schema order.
        for (int i = 0, count = CountEntries(elements); i < count; ++i) {
          elements[i]->ElementToXml(context, this, writer);
        }
        break;
      case XmlElementGroupType_Choice:
        WriteChoice(context, elements, writer, flag);
        break;
      default:
        throw COvException("Unknown XML Group Type");
    }
    const int textIndex = info.GetElementTextPropertyIndex();
    if (textIndex != -1) {
      OvVariant text;
      ReadProperty(textIndex, text);
      writer->WriteText(std::string_view(text.ToString()));
    }
    if (ownTag) writer->WriteEndElement();
  } catch (COvException& e) {
    throw COvValidationException(
        FormatString("Failed to convert the element [%s] to XML", GetElementName().c_str()),
        std::move(e));
  }
}

// ---- Reading ------------------------------------------------------------------------------

CXmlElement* CXmlGeneratedClass::FromXml_Int(CXmlElement* element, CXmlElement* cursor,
                                             const CXmlSerializationContext& context, bool flag) {
  if (element == nullptr) {
    // A document element: it has no parent, and its content starts at its first child.
    if (cursor == nullptr) throw COvValidationException("The document has no element to read");
    element = cursor;
    cursor = element->GetFirstElement();
  }
  const std::string& localName = detail::CTreeStore::LocalName(element);
  try {
    const CParentElementInfo& info = RequireClassInfo(GetClassInfo());
    PrepareForRead();
    const XmlElementType elementType = info.GetElementType();
    if (elementType == XmlElementType_Element && GetElementName() != localName) {
      // Names come from the shared table, so objects read in numbers allocate none.
      SetElementName(detail::SharedName(localName));
    }
    ReadAttributes(context, element, info.GetFromXmlFailIfAttributeUnknown());
    switch (info.GetElementGroupType()) {
      case XmlElementGroupType_Sequence:
        cursor = ReadSequence(context, element, cursor, elementType);
        break;
      case XmlElementGroupType_Choice:
        cursor = ReadChoice(context, element, cursor, elementType, flag);
        break;
      case XmlElementGroupType_All:
        cursor = ReadAll(context, element, cursor, elementType);
        break;
      default:
        throw COvException("Unknow Group Type");
    }
    const int textIndex = info.GetElementTextPropertyIndex();
    if (textIndex != -1) {
      OvVariant text;
      text.SetString(std::string(detail::CTreeStore::ElementText(element)));
      AccessProperty(textIndex, false, text);
    }
    return cursor;
  } catch (COvException& e) {
    throw COvValidationException(
        FormatString("Failed to process the element [%s]", localName.c_str()), std::move(e));
  }
}

void CXmlGeneratedClass::ReadAttributes(const CXmlSerializationContext& context,
                                        CXmlElement* element, bool failIfUnknown) {
  CAttributeInfo** descriptors = GetClassAttributeInfo();
  const int count = CountEntries(descriptors);
  CFoundFlags found(count);
  const std::size_t attributeCount = detail::CTreeStore::ElementAttributeCount(element);
  CXmlAttribute* const* attributes = detail::CTreeStore::ElementAttributes(element);
  for (std::size_t a = 0; a < attributeCount; ++a) {
    CXmlAttribute* attribute = attributes[a];
    // Namespace declarations and the schema instance's attributes (xsi:type and the like)
    // belong to no member.
    if (attribute->IsNamespaceAttribute()) continue;
    bool taken = false;
    for (int i = 0; i < count && !taken; ++i) {
      if (descriptors[i]->AttributeFromXml(context, this, attribute)) {
        found[i] = true;
        taken = true;
      }
    }
    if (!taken && failIfUnknown && !context.GetIgnoreUnknownAttributes()) {
      throw COvValidationException(FormatString("Unexpected Attribute [%s] found.",
                                                detail::CTreeStore::LocalName(attribute).c_str()));
    }
  }
  for (int i = 0; i < count; ++i) descriptors[i]->Validate(context, found[i]);
}

CXmlElement* CXmlGeneratedClass::ReadSequence(const CXmlSerializationContext& context,
                                              CXmlElement* parent, CXmlElement* cursor,
                                              XmlElementType elementType) {
  CElementInfo** elements = GetClassElementInfo();
  const std::string targetNamespace = TargetNamespace(elements);
  const bool ignoreUnknown = context.GetIgnoreUnknownElements();
  for (int i = 0, count = CountEntries(elements); i < count; ++i) {
    // A member that stops the sequence is offered the next element again when unknown elements
    // are skipped.
    while (!elements[i]->ElementFromXml(context, this, parent, &cursor, targetNamespace.c_str(),
                                        elementType)) {
      if (!ignoreUnknown || cursor == nullptr) return cursor;
      cursor = cursor->GetNextSiblingElement();
    }
  }
  if (elementType == XmlElementType_Element && cursor != nullptr && !ignoreUnknown) {
    ThrowLeftover(parent, cursor);
  }
  // In a pseudo element the elements left belong to the enclosing content.
  return cursor;
}

CXmlElement* CXmlGeneratedClass::ReadChoice(const CXmlSerializationContext& context,
                                            CXmlElement* parent, CXmlElement* cursor,
                                            XmlElementType elementType, bool flag) {
  CElementInfo** elements = GetClassElementInfo();
  const std::string targetNamespace = TargetNamespace(elements);
  const bool ignoreUnknown = context.GetIgnoreUnknownElements();
  const int count = CountEntries(elements);
  bool chosen = false;
  while (true) {
    for (int i = 0; i < count && !chosen; ++i) {
      chosen = elements[i]->ElementFromXml(context, this, parent, &cursor, targetNamespace.c_str(),
                                           elementType);
    }
    if (chosen || cursor == nullptr || elementType != XmlElementType_Element || !ignoreUnknown) {
      break;
    }
    cursor = cursor->GetNextSiblingElement();
  }
  if (!chosen && !flag) {
    if (elementType == XmlElementType_PseudoElement) {
      if (ignoreUnknown) return cursor;
    } else if (!DoesElementContainOptionalElements() && !context.GetIgnoreMissingChoice()) {
      throw COvValidationException(FormatString(
          "No child elements within the element [%s] were populated. The element represents a "
          "choice, so one and only one element should be populated. The element contained no "
          "sutable child elements",
          detail::CTreeStore::LocalName(parent).c_str()));
    }
  }
  if (elementType == XmlElementType_Element && cursor != nullptr && !ignoreUnknown) {
    ThrowLeftover(parent, cursor);
  }
  return cursor;
}

CXmlElement* CXmlGeneratedClass::ReadAll(const CXmlSerializationContext& context,
                                         CXmlElement* parent, CXmlElement* cursor,
                                         XmlElementType elementType) {
  CElementInfo** elements = GetClassElementInfo();
  const std::string targetNamespace = TargetNamespace(elements);
  const int count = CountEntries(elements);
  CFoundFlags found(count);
  // Passes over the members not yet found, while a pass takes something: members may come in
  // any order, and an element that no member takes (a repeat, or an unknown one) ends them.
  bool moved = true;
  while (cursor != nullptr && moved) {
    CXmlElement* before = cursor;
    for (int i = 0; i < count; ++i) {
      if (!found[i]) {
        found[i] = elements[i]->ElementFromXml(context, this, parent, &cursor,
                                               targetNamespace.c_str(), elementType);
      }
    }
    moved = cursor != before;
  }
  // A missing mandatory member fails in its check, unless the context ignores missing members:
  // then the first one ends reading.
  const bool check = !context.GetIgnoreMissingMandatoryElements();
  for (int i = 0; i < count; ++i) {
    if (!elements[i]->Validate(context, this, found[i], check)) return cursor;
  }
  if (elementType == XmlElementType_Element && cursor != nullptr &&
      !context.GetIgnoreUnknownElements()) {
    ThrowLeftover(parent, cursor);
  }
  return cursor;
}

}  // namespace OvXmlLib6
