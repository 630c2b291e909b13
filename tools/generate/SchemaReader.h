// The schema reader: loads XML Schema documents (following include and import to local files),
// resolves their components and builds the class model that the code emitter writes.
#ifndef OVXML_TOOLS_GENERATE_SCHEMAREADER_H
#define OVXML_TOOLS_GENERATE_SCHEMAREADER_H

#include "generate/SchemaModel.h"

#include <string>
#include <vector>

namespace ovxml_generate {

struct CNaming {
  std::string classPrefix = "C";
  std::string classSuffix;
  std::vector<std::string> reserved;  // names no class or enumeration may take
};

// Reads the schemas named on the command line, in that order. A component goes to the output of
// the first named schema that reaches its document. Throws CSchemaError.
CSchemaSet ReadSchemas(const std::vector<std::string>& schemaFiles, const CNaming& naming);

// The C++ identifier made of an XML name: its parts (split at characters an identifier cannot
// hold) each with a capital first letter.
std::string PascalCase(const std::string& xmlName);

}  // namespace ovxml_generate

#endif  // OVXML_TOOLS_GENERATE_SCHEMAREADER_H
