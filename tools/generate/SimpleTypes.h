// The built-in XML Schema simple types and the facets of derived ones.
#ifndef OVXML_TOOLS_GENERATE_SIMPLETYPES_H
#define OVXML_TOOLS_GENERATE_SIMPLETYPES_H

#include "generate/SchemaModel.h"

#include <string>

namespace ovxml_generate {

// The mapping of a built-in type by its local name (string, int, dateTime, ...), with the
// facets the type implies (positiveInteger: at least 1); false for an unknown name.
bool BuiltinType(const std::string& localName, CSimpleType* type);

// Adds the facets of a restriction to those of its base: a facet given replaces the base's.
void MergeFacets(const CFacets& added, CFacets* facets);

}  // namespace ovxml_generate

#endif  // OVXML_TOOLS_GENERATE_SIMPLETYPES_H
