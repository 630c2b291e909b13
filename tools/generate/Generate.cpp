// `ovxml generate`: the command line of the schema compiler and its files. Every schema is read
// and all code is made in memory first; only then are the files written, each under a temporary
// name and renamed into place once all are written, so that a failure leaves no half-written
// output behind.
#include "generate/Generate.h"

#include "generate/CodeEmitter.h"
#include "generate/SchemaReader.h"

#include <OvXmlLib6.h>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace ovxml_generate {

namespace {

const char kGenerateUsage[] =
    "Usage: ovxml generate [options] -o DIR SCHEMA.xsd...\n"
    "\n"
    "Compiles XML Schema documents to C++ classes bound by the library: for each schema named,\n"
    "DIR/<stem>.h and DIR/<stem>.cpp (stem: the file name without .xsd), and one class factory,\n"
    "DIR/<BASE>Factory.h and DIR/<BASE>Factory.cpp. Components of schemas reached through\n"
    "include or import go into the output of the first named schema that reaches them. Only\n"
    "local files are read.\n"
    "\n"
    "Options:\n"
    "  -o DIR               the output directory (made when missing)\n"
    "  --namespace NS       the C++ namespace (default: from the first schema's stem)\n"
    "  --class-prefix P     put before each class name (default: C)\n"
    "  --class-suffix S     put after each class name (default: none)\n"
    "  --name BASE          the factory's file and class stem (default: the first stem)\n"
    "  --depfile FILE       write a Make-style dependency file naming every schema read\n"
    "  -h, --help           show this help\n"
    "\n"
    "Errors go to standard error as 'ovxml: FILE:LINE: what is wrong (the construct)'; the\n"
    "exit status is 0 on success, 1 when a schema cannot be compiled and 2 for a usage error.\n";

struct CUsageError {
  std::string message;
};

struct COptions {
  std::string cppNamespace;
  std::string classPrefix = "C";
  std::string classSuffix;
  std::string name;
  std::string depfile;
  std::string outputDirectory;
  std::vector<std::string> schemas;
  bool help = false;
};

COptions ParseOptions(int argc, char** argv) {
  COptions options;
  bool optionsEnded = false;
  for (int i = 1; i < argc; ++i) {
    std::string argument = argv[i];
    if (optionsEnded || argument.empty() || argument[0] != '-' || argument == "-") {
      options.schemas.push_back(argument);
      continue;
    }
    if (argument == "--") {
      optionsEnded = true;
      continue;
    }
    if (argument == "-h" || argument == "--help") {
      options.help = true;
      continue;
    }
    std::string value;
    const std::size_t equals = argument.find('=');
    bool inlineValue = false;
    if (argument.rfind("--", 0) == 0 && equals != std::string::npos) {
      value = argument.substr(equals + 1);
      argument = argument.substr(0, equals);
      inlineValue = true;
    } else if (argument.size() > 2 && argument.rfind("-o", 0) == 0) {
      value = argument.substr(2);
      argument = "-o";
      inlineValue = true;
    }
    std::string* target = nullptr;
    if (argument == "-o" || argument == "--output") {
      target = &options.outputDirectory;
    } else if (argument == "--namespace") {
      target = &options.cppNamespace;
    } else if (argument == "--class-prefix") {
      target = &options.classPrefix;
    } else if (argument == "--class-suffix") {
      target = &options.classSuffix;
    } else if (argument == "--name") {
      target = &options.name;
    } else if (argument == "--depfile") {
      target = &options.depfile;
    } else {
      throw CUsageError{"unknown option '" + argument + "'; try 'ovxml generate --help'"};
    }
    if (!inlineValue) {
      if (i + 1 >= argc) throw CUsageError{"the option '" + argument + "' needs a value"};
      value = argv[++i];
    }
    *target = value;
  }
  return options;
}

std::string StemOf(const std::string& path) {
  const std::size_t slash = path.rfind('/');
  std::string name = slash == std::string::npos ? path : path.substr(slash + 1);
  if (name.size() > 4 && name.compare(name.size() - 4, 4, ".xsd") == 0) {
    name.resize(name.size() - 4);
  }
  return name;
}

bool IsIdentifier(const std::string& text, bool allowScopes) {
  if (text.empty()) return false;
  bool start = true;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const char c = text[i];
    if (allowScopes && c == ':' && i + 1 < text.size() && text[i + 1] == ':' && !start) {
      ++i;
      start = true;
      continue;
    }
    const bool letter = (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z') || c == '_';
    const bool digit = c >= '0' && c <= '9';
    if (!(letter || (digit && !start))) return false;
    start = false;
  }
  return !start;
}

// The namespace made of a stem: lower case, characters an identifier cannot hold as '_'.
std::string NamespaceOf(const std::string& stem) {
  std::string name;
  for (char c : stem) {
    if (c >= 'A' && c <= 'Z') {
      name += static_cast<char>(c + 32);
    } else if ((c >= 'a' && c <= 'z') || (c >= '0' && c <= '9') || c == '_') {
      name += c;
    } else {
      name += '_';
    }
  }
  if (name.empty() || (name[0] >= '0' && name[0] <= '9')) name = "schema_" + name;
  return name;
}

std::string Absolute(const std::string& path) {
  char* resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) return path;
  std::string result(resolved);
  std::free(resolved);
  return result;
}

// A path in a Make rule: blanks, '#' and '$' escaped.
std::string MakeEscaped(const std::string& path) {
  std::string out;
  for (char c : path) {
    if (c == ' ' || c == '#') out += '\\';
    if (c == '$') out += '$';
    out += c;
  }
  return out;
}

struct CWriteError {
  std::string message;
};

// Makes the directory and the missing directories above it; returns the directories it made,
// deepest last.
std::vector<std::string> MakeDirectories(const std::string& path) {
  std::vector<std::string> made;
  std::string partial;
  std::size_t at = 0;
  while (at != std::string::npos) {
    at = path.find('/', at + 1);
    partial = path.substr(0, at);
    if (partial.empty()) continue;
    struct stat info;
    if (stat(partial.c_str(), &info) == 0) {
      if (!S_ISDIR(info.st_mode)) throw CWriteError{"'" + partial + "' is not a directory"};
      continue;
    }
    if (mkdir(partial.c_str(), 0777) != 0) {
      throw CWriteError{"cannot make the directory '" + partial + "': " + std::strerror(errno)};
    }
    made.push_back(partial);
  }
  return made;
}

void WriteFile(const std::string& path, const std::string& text) {
  std::FILE* file = std::fopen(path.c_str(), "wb");
  if (file == nullptr) {
    throw CWriteError{"cannot write '" + path + "': " + std::strerror(errno)};
  }
  const bool written = std::fwrite(text.data(), 1, text.size(), file) == text.size();
  const bool closed = std::fclose(file) == 0;
  if (!written || !closed) {
    std::remove(path.c_str());
    throw CWriteError{"cannot write '" + path + "'"};
  }
}

// Writes every file under a temporary name, then renames them all; on a failure removes what
// it wrote and the directories it made.
void WriteAll(const std::string& directory, const std::vector<COutputFile>& files,
              const std::string& depfile, const std::string& depText) {
  const std::vector<std::string> made = MakeDirectories(directory);
  std::vector<std::pair<std::string, std::string>> pending;  // temporary, final
  for (const COutputFile& file : files) {
    pending.emplace_back(directory + "/." + file.name + ".tmp", directory + "/" + file.name);
  }
  if (!depfile.empty()) pending.emplace_back(depfile + ".tmp", depfile);
  try {
    for (std::size_t i = 0; i < pending.size(); ++i) {
      WriteFile(pending[i].first, i < files.size() ? files[i].text : depText);
    }
    for (const auto& names : pending) {
      if (std::rename(names.first.c_str(), names.second.c_str()) != 0) {
        throw CWriteError{"cannot rename '" + names.first + "': " + std::strerror(errno)};
      }
    }
  } catch (const CWriteError&) {
    for (const auto& names : pending) std::remove(names.first.c_str());
    for (auto it = made.rbegin(); it != made.rend(); ++it) rmdir(it->c_str());
    throw;
  }
}

int Generate(const COptions& options) {
  std::vector<std::string> stems;
  for (const std::string& schema : options.schemas) {
    const std::string stem = StemOf(schema);
    for (const std::string& other : stems) {
      if (other == stem) {
        throw CUsageError{"two schemas have the stem '" + stem + "': their outputs would clash"};
      }
    }
    if (stem.empty()) throw CUsageError{"the schema '" + schema + "' has no file name"};
    stems.push_back(stem);
  }
  CEmitOptions emit;
  emit.stems = stems;
  emit.schemaNames.reserve(options.schemas.size());
  for (const std::string& schema : options.schemas) {
    const std::size_t slash = schema.rfind('/');
    emit.schemaNames.push_back(slash == std::string::npos ? schema : schema.substr(slash + 1));
  }
  emit.factoryBase = options.name.empty() ? stems[0] : options.name;
  emit.cppNamespace = options.cppNamespace.empty() ? NamespaceOf(stems[0]) : options.cppNamespace;
  if (!IsIdentifier(emit.cppNamespace, true)) {
    throw CUsageError{"the namespace '" + emit.cppNamespace + "' is not a C++ namespace name"};
  }
  if (!options.classPrefix.empty() && !IsIdentifier(options.classPrefix, false)) {
    throw CUsageError{"the class prefix '" + options.classPrefix + "' is not an identifier"};
  }
  if (!options.classSuffix.empty() && !IsIdentifier("C" + options.classSuffix, false)) {
    throw CUsageError{"the class suffix '" + options.classSuffix + "' cannot end an identifier"};
  }
  CNaming naming;
  naming.classPrefix = options.classPrefix;
  naming.classSuffix = options.classSuffix;
  naming.reserved = ReservedNames(emit);
  const CSchemaSet schemas = ReadSchemas(options.schemas, naming);
  const std::vector<COutputFile> files = EmitCode(schemas, emit);
  std::string depText;
  if (!options.depfile.empty()) {
    const std::string directory = options.outputDirectory;
    for (const COutputFile& file : files) depText += MakeEscaped(directory + "/" + file.name) + " ";
    depText.back() = ':';
    for (const std::string& schema : schemas.files)
      depText += " \\\n  " + MakeEscaped(Absolute(schema));
    depText += "\n";
  }
  try {
    WriteAll(options.outputDirectory, files, options.depfile, depText);
  } catch (const CWriteError& e) {
    std::fprintf(stderr, "ovxml: error: %s\n", e.message.c_str());
    return 1;
  }
  return 0;
}

}  // namespace

int RunGenerate(int argc, char** argv) {
  try {
    const COptions options = ParseOptions(argc, argv);
    if (options.help) {
      std::fputs(kGenerateUsage, stdout);
      return 0;
    }
    if (options.outputDirectory.empty()) throw CUsageError{"generate needs -o DIR"};
    if (options.schemas.empty()) throw CUsageError{"generate needs at least one schema"};
    return Generate(options);
  } catch (const CUsageError& e) {
    std::fprintf(stderr, "ovxml: error: %s\n", e.message.c_str());
    return 2;
  } catch (const CSchemaError& e) {
    if (e.line != 0) {
      std::fprintf(stderr, "ovxml: %s:%u: %s\n", e.file.c_str(), e.line, e.what());
    } else {
      std::fprintf(stderr, "ovxml: %s: %s\n", e.file.c_str(), e.what());
    }
    return 1;
  } catch (const OvXmlLib6::COvException& e) {
    std::fprintf(stderr, "ovxml: error: %s\n", e.GetFullMessage().c_str());
    return 1;
  } catch (const std::bad_alloc&) {
    std::fprintf(stderr, "ovxml: error: out of memory\n");
    return 1;
  }
}

}  // namespace ovxml_generate
