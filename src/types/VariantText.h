// Readers hand the variant a view of a document's text, which is already stored in the document:
// a string value is built from the view under its whitespace rule with one copy, and the other
// types take the conversions of OvVariant::FromString.
#ifndef OVXMLLIB6_SRC_TYPES_VARIANTTEXT_H
#define OVXMLLIB6_SRC_TYPES_VARIANTTEXT_H

#include "OvXmlLib6/types/Variant.h"

#include <string_view>

namespace OvXmlLib6 {
namespace detail {

// What the library asks of a variant beyond its public members.
struct CVariantAccess {
  // The collection GetXmlCollection returns, without a reference of its own: valid while the
  // variant holds it. Writers look at a wildcard's list for every element, and a reference taken
  // and given back costs two atomic operations.
  static CXmlCollectionBase* HeldCollection(const OvVariant& value);
  // SetString from a view, which spares a reader the string it would make only to hand over.
  static void SetString(OvVariant& value, std::string_view text);
};

// What value.FromString(std::string(text), type, rule) does.
void VariantFromText(OvVariant& value, std::string_view text, ItemType type,
                     CWhitespaceUtils::WhitespaceRule rule);

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_TYPES_VARIANTTEXT_H
