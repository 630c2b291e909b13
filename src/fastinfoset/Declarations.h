// The XML declarations that may precede the binary header of a Fast Infoset document, byte for
// byte: the reader recognises exactly these, and the writer writes the one FInfoDecl chooses.
#ifndef OVXMLLIB6_SRC_FASTINFOSET_DECLARATIONS_H
#define OVXMLLIB6_SRC_FASTINFOSET_DECLARATIONS_H

namespace OvXmlLib6 {
namespace detail {

// In FInfoDecl order: entry n - 1 is the text of FInfoDecl value n.
inline constexpr const char* kFInfoDeclarations[] = {
    "<?xml encoding='finf'?>",
    "<?xml version='1.0' encoding='finf'?>",
    "<?xml version='1.1' encoding='finf'?>",
    "<?xml encoding='finf' standalone='no'?>",
    "<?xml encoding='finf' standalone='yes'?>",
    "<?xml version='1.0' encoding='finf' standalone='no'?>",
    "<?xml version='1.1' encoding='finf' standalone='no'?>",
    "<?xml version='1.0' encoding='finf' standalone='yes'?>",
    "<?xml version='1.1' encoding='finf' standalone='yes'?>",
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_FASTINFOSET_DECLARATIONS_H
