// The namespace restrictions of wildcard objects as shared strings. The four keywords are few and
// repeated in every object of a document, so they are permanent strings whose copies cost no
// reference counting; any other restriction (a list of URIs) gets a string of its own.
#ifndef OVXMLLIB6_SRC_METADATA_RESTRICTION_H
#define OVXMLLIB6_SRC_METADATA_RESTRICTION_H

#include "OvXmlLib6/core/SharedString.h"

#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// "##any", "##other", "##local" or "##targetNamespace".
bool IsNamespaceKeyword(std::string_view text);

// Whether the restriction of a wildcard admits the namespace. The restriction is split at blanks
// and admits the namespace if any token does: "##any" every namespace; "##other" any namespace
// but the target namespace (the empty one too, when the target namespace is not empty);
// "##local" the empty namespace; "##targetNamespace" the target namespace; any other token a
// namespace equal to the whole restriction, so of a list of several URIs none matches.
bool NamespaceSatisfies(std::string_view ns, std::string_view restriction,
                        std::string_view targetNamespace);
// Throws COvInvalidNamespaceException "Invalid namespace [%s]. The namespace must be one of [%s]
// where the target namespace is [%s]" when NamespaceSatisfies is false.
void RequireNamespace(std::string_view ns, std::string_view restriction,
                      std::string_view targetNamespace);

// The restriction as a shared string; null is taken as the empty string.
CSharedString SharedRestriction(const char* restriction);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_RESTRICTION_H
