// The code emitter: the class model to C++ source text. Each output schema gets a header and a
// source file; the class factory gets a header (with the helpers the classes share) and a source
// file. The text depends only on the model, so the same schemas give the same bytes.
#ifndef OVXML_TOOLS_GENERATE_CODEEMITTER_H
#define OVXML_TOOLS_GENERATE_CODEEMITTER_H

#include "generate/SchemaModel.h"

#include <string>
#include <vector>

namespace ovxml_generate {

struct COutputFile {
  std::string name;  // the file name within the output directory
  std::string text;
};

struct CEmitOptions {
  std::string cppNamespace;
  std::string factoryBase;               // the factory is <factoryBase>Factory
  std::vector<std::string> stems;        // one per output schema, in command-line order
  std::vector<std::string> schemaNames;  // the schema files as named on the command line
};

std::vector<COutputFile> EmitCode(const CSchemaSet& schemas, const CEmitOptions& options);

// The names the emitted code uses unqualified inside the generated namespace (the factory, the
// shared helpers, the library's descriptor and value classes): no class or enumeration of the
// schemas may take them.
std::vector<std::string> ReservedNames(const CEmitOptions& options);

}  // namespace ovxml_generate

#endif  // OVXML_TOOLS_GENERATE_CODEEMITTER_H
