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

// The restriction as a shared string; null is taken as the empty string.
CSharedString SharedRestriction(const char* restriction);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_METADATA_RESTRICTION_H
