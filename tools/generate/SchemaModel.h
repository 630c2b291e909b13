// The schema compiler's model: the classes, members and enumerations that the code emitter
// writes, as the schema reader resolves them from XML Schema documents.
#ifndef OVXML_TOOLS_GENERATE_SCHEMAMODEL_H
#define OVXML_TOOLS_GENERATE_SCHEMAMODEL_H

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace ovxml_generate {

// A failure of the compiler: the file and line it concerns (line 0: none) and what is wrong.
struct CSchemaError : std::runtime_error {
  CSchemaError(std::string file, std::uint32_t line, const std::string& message)
      : std::runtime_error(message), file(std::move(file)), line(line) {}
  std::string file;
  std::uint32_t line;
};

// The facets of a simple type. Empty strings and negative numbers are absent facets.
struct CFacets {
  std::string pattern;
  int length = -1;
  int minLength = -1;
  int maxLength = -1;
  std::string minInclusive;
  std::string maxInclusive;
  std::string minExclusive;
  std::string maxExclusive;
  int totalDigits = -1;
  int fractionDigits = -1;
  std::vector<std::string> enumerations;
};

// An enumerated simple type, emitted as a C++ enum with its text functions.
struct CEnumModel {
  std::string name;                      // the C++ enum, also the stem of its functions
  std::vector<std::string> values;       // the schema's texts, in schema order
  std::vector<std::string> identifiers;  // the enumerators, one per text
  int output = 0;                        // the output file that defines it
};

// How a value of a simple type is held and converted.
struct CSimpleType {
  std::string tag;       // the item type's suffix: string, i4, datetime, ...
  std::string cppType;   // the member's C++ type
  std::string variant;   // the OvVariant accessor stem: String, I4, DateTime, ...
  std::string rule;      // Preserve, Replace or Collapse
  bool byValue = false;  // passed by value (numbers, bool) rather than by const reference
  CFacets facets;
  const CEnumModel* enumeration = nullptr;  // set for an enumerated type
};

struct CClassModel;

enum class Cardinality { Mandatory, Optional, Collection };
enum class GroupKind { Sequence, Choice, All };

// One property of a class: a child element, an attribute, a wildcard or the element's text.
struct CMemberModel {
  enum class Kind { Primitive, Enum, Class, Substitution, AnyElement, AnyAttribute, Text };
  Kind kind = Kind::Primitive;
  bool attribute = false;
  Cardinality cardinality = Cardinality::Mandatory;
  std::string xmlName;   // element or attribute name ("AnyElement"/"AnyAttribute" for wildcards)
  std::string xmlNs;     // its namespace, empty when unqualified
  std::string accessor;  // the stem of GetX/SetX
  std::string field;     // the C++ member
  int minOccurs = 1;
  int maxOccurs = 1;            // -1: unbounded
  CSimpleType simple;           // Primitive, Enum, Text
  CClassModel* type = nullptr;  // Class, Substitution
  bool pseudo = false;          // a group without a tag of its own
  std::string restriction;      // wildcard namespace constraint
  bool hasDefault = false;      // an attribute's default or fixed value, which the tables hold
  std::string defaultValue;
  // An element's default or fixed value ("default" or "fixed", empty for neither): the value of
  // the element when it is present and empty, which the engine does not apply.
  std::string valueConstraintKind;
  std::string valueConstraint;
  bool nillable = false;  // an element that documents may mark xsi:nil
  int index = 0;          // the property index
};

struct CClassModel {
  std::string name;         // the C++ class
  std::string stem;         // the name without the class prefix and suffix
  std::string elementName;  // the element name new objects get
  std::string typeName;     // the schema type's name for xsi:type, empty when anonymous
  std::string targetNamespace;
  std::string file;  // where it is declared, for messages
  std::uint32_t line = 0;
  int output = 0;
  CClassModel* base = nullptr;
  std::vector<CClassModel*> derived;  // direct extensions
  bool abstract = false;
  bool pseudo = false;     // a model group: no tag of its own
  bool complete = false;   // members resolved
  bool resolving = false;  // members being resolved (a base cycle is an error)
  GroupKind group = GroupKind::Sequence;
  // Every element and attribute member, inherited ones first (the tables list them all); the
  // class's own members are those with index >= firstOwnIndex.
  std::vector<CMemberModel> elements;
  std::vector<CMemberModel> attributes;
  std::vector<CMemberModel> text;  // the element's own text (simple content, mixed): 0 or 1
  int firstOwnIndex = 0;
  int propertyCount = 0;
  int classId = -1;
  bool elementClass = false;  // a global element's class deriving from its named type
  bool Substitutable() const { return abstract || !derived.empty(); }
};

// A global element that a document may have as its document element, and its class.
struct CGlobalElementModel {
  std::string name;
  std::string targetNamespace;
  const CClassModel* type = nullptr;
};

// What the reader hands to the emitter.
struct CSchemaSet {
  std::vector<std::unique_ptr<CClassModel>> classes;  // in a deterministic order
  std::vector<CGlobalElementModel> globalElements;    // of a class type, not abstract
  std::vector<std::unique_ptr<CEnumModel>> enums;
  std::vector<std::string> files;             // every schema file read, in reading order
  std::vector<std::string> targetNamespaces;  // of each output
};

}  // namespace ovxml_generate

#endif  // OVXML_TOOLS_GENERATE_SCHEMAMODEL_H
