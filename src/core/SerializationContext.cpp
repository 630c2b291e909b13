#include "OvXmlLib6/core/SerializationContext.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/metadata/Attribute.h"

namespace OvXmlLib6 {

namespace {

// Reading cannot tell an unknown element from a required one that is out of place when it may
// skip both, so the two options exclude each other.
const char kIgnoreBothMessage[] =
    "The parser can only ignore additional elements, or ignore the fact that some required ones "
    "are missing, you can not ignore both\n";

}  // namespace

CXmlSerializationContext::CXmlSerializationContext()
    : m_ignoreInvalidCollectionCounts(false),
      m_ignoreMissingChoice(false),
      m_ignoreMissingMandatoryElements(false),
      m_ignoreUnknownElements(false),
      m_ignoreUnknownAttributes(false),
      m_ignoreNamespaces(false),
      m_schemaType(SchemaType_XSD),
      m_noOptionalAttributeDefaultOutput(false),
      m_stripCDATA(true) {}

CXmlSerializationContext::CXmlSerializationContext(const CXmlSerializationContext& other)
    : CXmlSerializationContext() {
  *this = other;
}

CXmlSerializationContext& CXmlSerializationContext::operator=(
    const CXmlSerializationContext& other) {
  m_defaultNamespaceURI = other.m_defaultNamespaceURI;
  m_namespaceAliases = other.m_namespaceAliases;
  // Shared, not duplicated: both contexts write the same extra root attributes.
  m_additionalRootAttributes = other.m_additionalRootAttributes;
  m_processingInstructions = other.m_processingInstructions;
  m_inLineSchema = other.m_inLineSchema;
  m_ignoreInvalidCollectionCounts = other.m_ignoreInvalidCollectionCounts;
  m_ignoreMissingChoice = other.m_ignoreMissingChoice;
  m_ignoreMissingMandatoryElements = other.m_ignoreMissingMandatoryElements;
  m_ignoreUnknownElements = other.m_ignoreUnknownElements;
  m_ignoreUnknownAttributes = other.m_ignoreUnknownAttributes;
  m_ignoreNamespaces = other.m_ignoreNamespaces;
  m_schemaType = other.m_schemaType;
  m_noOptionalAttributeDefaultOutput = other.m_noOptionalAttributeDefaultOutput;
  m_fiContext = other.m_fiContext;
  m_stripCDATA = other.m_stripCDATA;
  return *this;
}

CXmlSerializationContext::~CXmlSerializationContext() = default;

CXmlSerializationContext& CXmlSerializationContext::GetDefaultContext() {
  // Built on first use rather than as a namespace-scope static, so that static initialisers in
  // other translation units (generated code among them) can already reach it.
  static CXmlSerializationContext defaultContext;
  return defaultContext;
}

void CXmlSerializationContext::SetDefaultNamespaceURI(const char* uri) {
  m_defaultNamespaceURI = uri == nullptr ? "" : uri;
}

void CXmlSerializationContext::SetInLineSchema(const char* schema) {
  m_inLineSchema = schema == nullptr ? "" : schema;
}

void CXmlSerializationContext::SetIgnoreMissingMandatoryElements(bool ignore) {
  if (ignore && m_ignoreUnknownElements) {
    throw COvInvalidStateException(
        std::string(kIgnoreBothMessage) +
        "Set IgnoreUnknownElements to false before setting IgnoreMissingMandatoryElements to "
        "true");
  }
  m_ignoreMissingMandatoryElements = ignore;
}

void CXmlSerializationContext::SetIgnoreUnknownElements(bool ignore) {
  if (ignore && m_ignoreMissingMandatoryElements) {
    throw COvInvalidStateException(
        std::string(kIgnoreBothMessage) +
        "Set IgnoreMissingMandatoryElements to false before setting IgnoreUnknownElements to "
        "true");
  }
  m_ignoreUnknownElements = ignore;
}

CSmartPtr<CAttributeCol> CXmlSerializationContext::GetAdditionalRootAttributes() {
  if (!m_additionalRootAttributes) {
    m_additionalRootAttributes = new CAttributeCol("AdditionalRootAttributes", "##any", "");
  }
  return m_additionalRootAttributes;
}

CSmartPtr<CAttributeCol> CXmlSerializationContext::GetAdditionalRootAttributes() const {
  return m_additionalRootAttributes;
}

}  // namespace OvXmlLib6
