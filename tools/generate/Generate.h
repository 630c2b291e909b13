// `ovxml generate`: compiles XML Schema documents to C++ classes bound by the library.
#ifndef OVXML_TOOLS_GENERATE_GENERATE_H
#define OVXML_TOOLS_GENERATE_GENERATE_H

namespace ovxml_generate {

// Runs the command with its own arguments (argv[0] is "generate"); returns the exit status.
int RunGenerate(int argc, char** argv);

}  // namespace ovxml_generate

#endif  // OVXML_TOOLS_GENERATE_GENERATE_H
