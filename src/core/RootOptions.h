// The output options of a context that apply to the root element only, written in the order the
// writers expect: before the start tag the processing instructions and the namespace
// declarations (which the writer attaches to the start tag), after it the additional root
// attributes, and before the first child the in-line schema.
#ifndef OVXMLLIB6_SRC_CORE_ROOTOPTIONS_H
#define OVXMLLIB6_SRC_CORE_ROOTOPTIONS_H

namespace OvXmlLib6 {

class CXmlSerializationContext;
class CXmlWriter;

namespace detail {

// A class rather than free functions so that the object base can let it write the additional
// root attributes through their collection's protected operation.
class CRootOptions {
 public:
  static void WritePrologue(CXmlWriter* writer, const CXmlSerializationContext& context);
  static void WriteAttributes(CXmlWriter* writer, const CXmlSerializationContext& context);
  static void WriteInlineSchema(CXmlWriter* writer, const CXmlSerializationContext& context);
};

}  // namespace detail
}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_CORE_ROOTOPTIONS_H
