#include "core/RootOptions.h"

#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/metadata/Attribute.h"
#include "OvXmlLib6/xml/XmlTextWriter.h"
#include "OvXmlLib6/xml/XmlWriter.h"

#include <string>

namespace OvXmlLib6 {
namespace detail {

void CRootOptions::WritePrologue(CXmlWriter* writer, const CXmlSerializationContext& context) {
  for (const std::string& instruction : context.GetProcessingInstructions()) {
    writer->WriteRawBlock(instruction.c_str());
  }
  for (const auto& entry : context.GetNamespaceAliases()) {
    writer->AddNamespace(entry.second.c_str(), entry.first.c_str());
  }
  const std::string defaultNamespace = context.GetDefaultNamespaceURI();
  if (!defaultNamespace.empty()) writer->SetDefaultNamespace(defaultNamespace.c_str());
}

void CRootOptions::WriteAttributes(CXmlWriter* writer, const CXmlSerializationContext& context) {
  CSmartPtr<CAttributeCol> extra = context.GetAdditionalRootAttributes();
  if (extra) CXmlObjectBase::AttributesToXml_Int(extra.get(), writer, context);
}

void CRootOptions::WriteInlineSchema(CXmlWriter* writer, const CXmlSerializationContext& context) {
  const std::string schema = context.GetInLineSchema();
  if (schema.empty()) return;
  // The schema is content of the root element: the text writer closes the start tag first. Other
  // writers place raw lines themselves.
  if (auto* text = dynamic_cast<CXmlTextWriter*>(writer)) {
    text->WriteRawContent(schema.c_str());
  } else {
    writer->WriteRawLine(schema.c_str());
  }
}

}  // namespace detail
}  // namespace OvXmlLib6
