// CXmlGeneratedClass: the base of every class that the code generator emits for a schema type.
// A generated class holds no serialization code: it describes itself with three static tables
// (one CParentElementInfo, a null-terminated array of element descriptors and a null-terminated
// array of attribute descriptors, see metadata/ElementInfo.h and metadata/AttributeInfo.h) and
// gives access to its members through one indexed property accessor. This class is the engine
// that walks the tables: it writes an object as one element with its attributes, children and
// text, and reads an element back, enforcing the content model (sequence, choice or all).
//
// What generated code provides:
//   AccessProperty(index, read, value)  read: copy property `index` into the variant; else
//                                       store the variant into it
//   GetClassInfo, GetClassElementInfo,  the three tables, built once (CleanMetaData frees them)
//   GetClassAttributeInfo
//   PrepareForRead                      called at the start of every read of the object
//   GetNamespace, GetTargetNamespace    the namespace of its element and of its schema
// and a constructor that names the object's element with a shared name made once per class
// (SetElementName(const CSharedString&)), so that objects made in numbers share one name.
//
// Failures: reading wraps every failure in COvValidationException "Failed to process the element
// [%s]" and writing in "Failed to convert the element [%s] to XML", so the full message of a
// failure n levels deep names every element of the path, outermost first.
#ifndef OVXMLLIB6_CORE_XMLGENERATEDCLASS_H
#define OVXMLLIB6_CORE_XMLGENERATEDCLASS_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/PooledObject.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/metadata/AttributeInfo.h"
#include "OvXmlLib6/metadata/ElementInfo.h"
#include "OvXmlLib6/types/Variant.h"

namespace OvXmlLib6 {

// Generated objects are made in numbers while reading: they come from the library's small-object
// memory (CPooledObject).
class OVXML_API CXmlGeneratedClass : public CXmlObjectBase, public CPooledObject {
 public:
  CXmlObjectBase* GetBase() override { return this; }

  // The indexed property accessor: read = true copies property `index` into `value`, read =
  // false stores `value` into the property. Descriptors move every value through it.
  virtual void AccessProperty(int index, bool read, OvVariant& value) = 0;
  virtual OvXmlLib6Data::CParentElementInfo* GetClassInfo() const = 0;
  virtual OvXmlLib6Data::CElementInfo** GetClassElementInfo() const = 0;
  virtual OvXmlLib6Data::CAttributeInfo** GetClassAttributeInfo() const = 0;
  // Called once at the start of every read of the object, before any attribute or child.
  virtual void PrepareForRead() = 0;

  // AccessProperty with read = true on a const object.
  void ReadProperty(int index, OvVariant& value) const;

 protected:
  CXmlGeneratedClass() = default;
  CXmlGeneratedClass(const CXmlGeneratedClass&) = default;
  CXmlGeneratedClass& operator=(const CXmlGeneratedClass&) = default;
  ~CXmlGeneratedClass() override;

  // Every attribute descriptor's AttributeToXml, then every element descriptor's
  // PseudoChildAttributeToXml; a failure becomes COvException "Failed to convert attributes to
  // XML" around the cause.
  void AttributesToXml_Int(CXmlWriter* writer,
                           const CXmlSerializationContext& context) const override;
  // Writes the object: for a class with its own tag the start tag (with the context's root
  // options when isRoot), the attributes, the children by group type, the text property and the
  // end tag; for a pseudo element only children and text.
  void ToXml_Int(CXmlWriter* writer, bool isRoot, const char* namespaceUri,
                 const CXmlSerializationContext& context, bool flag) const override;
  // Reads the object from `element` with `cursor` at its first child element not yet read
  // (for a pseudo element: the enclosing element and the cursor within it) and returns the
  // cursor at which the caller goes on. With a null `element`, `cursor` is the element to read
  // (a document element, which has no parent) and reading starts at its first child.
  CXmlElement* FromXml_Int(CXmlElement* element, CXmlElement* cursor,
                           const CXmlSerializationContext& context, bool flag) override;

  // Whether any element descriptor takes the element.
  bool IsElementInList(const CXmlSerializationContext& context, CXmlElement* element) const;
  // True at the first member that is an optional choice branch, or a choice collection whose
  // collection may be empty.
  bool DoesElementContainOptionalElements() const;

  // Deletes a class's tables: the class descriptor, each element descriptor and the element
  // array, each attribute descriptor and the attribute array (arrays made with new[]); sets the
  // three pointers to null. Null pointers are skipped.
  static void CleanMetaData(OvXmlLib6Data::CParentElementInfo*& classInfo,
                            OvXmlLib6Data::CElementInfo**& elements,
                            OvXmlLib6Data::CAttributeInfo**& attributes);

 private:
  int GetClassElementInfoCount() const;
  // The target namespace handed to the members, empty unless one of them reads with it.
  std::string TargetNamespace(OvXmlLib6Data::CElementInfo* const* elements) const;

  void ReadAttributes(const CXmlSerializationContext& context, CXmlElement* element,
                      bool failIfUnknown);
  CXmlElement* ReadSequence(const CXmlSerializationContext& context, CXmlElement* parent,
                            CXmlElement* cursor, OvXmlLib6Data::XmlElementType elementType);
  CXmlElement* ReadChoice(const CXmlSerializationContext& context, CXmlElement* parent,
                          CXmlElement* cursor, OvXmlLib6Data::XmlElementType elementType,
                          bool flag);
  CXmlElement* ReadAll(const CXmlSerializationContext& context, CXmlElement* parent,
                       CXmlElement* cursor, OvXmlLib6Data::XmlElementType elementType);
  void WriteChoice(const CXmlSerializationContext& context,
                   OvXmlLib6Data::CElementInfo* const* elements, CXmlWriter* writer,
                   bool flag) const;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_XMLGENERATEDCLASS_H
