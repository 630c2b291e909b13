// CXmlSerializationContext: the options of one read or write of a bound object, passed by const
// reference through every call; a process-wide default context serves callers that pass none.
// CNamespaceAliasMap: the namespaces to declare on the root element of an output document, each
// with its alias (prefix).
#ifndef OVXMLLIB6_CORE_SERIALIZATIONCONTEXT_H
#define OVXMLLIB6_CORE_SERIALIZATIONCONTEXT_H

#include "OvXmlLib6/core/Enums.h"
#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/fastinfoset/FastInfosetContext.h"

#include <map>
#include <string>
#include <vector>

namespace OvXmlLib6 {

class CAttributeCol;

// Namespace URI -> alias, ordered by the bytes of the URI; that order is the order in which the
// aliases are declared on output. Null string arguments are taken as empty strings.
class OVXML_API CNamespaceAliasMap {
 public:
  using const_iterator = std::map<std::string, std::string>::const_iterator;

  CNamespaceAliasMap();
  CNamespaceAliasMap(const CNamespaceAliasMap&) = default;
  CNamespaceAliasMap& operator=(const CNamespaceAliasMap&) = default;
  virtual ~CNamespaceAliasMap();

  // Sets the alias of the namespace, replacing an earlier alias of the same namespace.
  void Add(const char* alias, const char* namespaceURI);
  // Removes the namespace's entry, if there is one.
  void RemoveNamespace(const char* namespaceURI);

  bool DoesNamespaceExist(const char* namespaceURI) const;
  bool DoesAliasExist(const char* alias) const;

  // The namespace of the first entry, in map order, with this alias. Throws COvException
  // "Namespace alias [%s] not found" when no entry has it.
  std::string GetNamespaceFromAlias(const char* alias) const;
  // The alias of the namespace. A namespace not in the map gets an entry with an empty alias,
  // and the empty alias is returned.
  std::string GetAliasFromNamespace(const char* namespaceURI);

  int GetNamespaceCount() const;
  // The namespace URI of the entry at the 0-based position in map order; a negative index gives
  // the first entry, and an index at or past the end gives an empty string.
  std::string GetNamespaceAt(int index) const;

  // The entries (namespace URI, alias) in map order.
  const_iterator begin() const { return m_aliases.begin(); }
  const_iterator end() const { return m_aliases.end(); }

 private:
  std::map<std::string, std::string> m_aliases;
};

class OVXML_API CXmlSerializationContext {
 public:
  // Every flag false except StripCDATA; schema type 0; everything else empty.
  CXmlSerializationContext();
  CXmlSerializationContext(const CXmlSerializationContext& other);
  // Copies every option. The alias map, the processing instructions, the strings and the Fast
  // Infoset context are copied by value; the additional root attributes are shared.
  CXmlSerializationContext& operator=(const CXmlSerializationContext& other);
  virtual ~CXmlSerializationContext();

  // The process-wide context of callers that pass none. It may be changed, once, at start-up.
  static CXmlSerializationContext& GetDefaultContext();

  // When not empty, declared as the default namespace on the root element of an output document.
  std::string GetDefaultNamespaceURI() const { return m_defaultNamespaceURI; }
  void SetDefaultNamespaceURI(const char* uri);

  // The namespaces declared, with their aliases, on the root element of an output document.
  CNamespaceAliasMap& GetNamespaceAliases() { return m_namespaceAliases; }
  const CNamespaceAliasMap& GetNamespaceAliases() const { return m_namespaceAliases; }

  // Extra attributes written on the root element of an output document. The collection is
  // created on the first call (namespace restriction "##any", empty target namespace) and kept;
  // copies of this context share it.
  CSmartPtr<CAttributeCol> GetAdditionalRootAttributes();
  // The collection if it has been created, else null; a const context creates nothing.
  CSmartPtr<CAttributeCol> GetAdditionalRootAttributes() const;

  // Processing instructions written before the root element, in order.
  std::vector<std::string>& GetProcessingInstructions() { return m_processingInstructions; }
  const std::vector<std::string>& GetProcessingInstructions() const {
    return m_processingInstructions;
  }

  // Schema text written inside the root element of an output document, before its children.
  std::string GetInLineSchema() const { return m_inLineSchema; }
  void SetInLineSchema(const char* schema);

  // Skip the minimum and maximum occurrence checks of collections.
  bool GetIgnoreInvalidCollectionCounts() const { return m_ignoreInvalidCollectionCounts; }
  void SetIgnoreInvalidCollectionCounts(bool ignore) { m_ignoreInvalidCollectionCounts = ignore; }

  // Accept a choice of which no branch is present (reading) or set (writing).
  bool GetIgnoreMissingChoice() const { return m_ignoreMissingChoice; }
  void SetIgnoreMissingChoice(bool ignore) { m_ignoreMissingChoice = ignore; }

  // Accept documents that lack required elements. Cannot be true together with
  // IgnoreUnknownElements: setting it to true while that is true throws
  // COvInvalidStateException and leaves it unchanged.
  bool GetIgnoreMissingMandatoryElements() const { return m_ignoreMissingMandatoryElements; }
  void SetIgnoreMissingMandatoryElements(bool ignore);

  // Skip elements that no descriptor claims. Cannot be true together with
  // IgnoreMissingMandatoryElements (see above).
  bool GetIgnoreUnknownElements() const { return m_ignoreUnknownElements; }
  void SetIgnoreUnknownElements(bool ignore);

  // Skip attributes that no descriptor claims.
  bool GetIgnoreUnknownAttributes() const { return m_ignoreUnknownAttributes; }
  void SetIgnoreUnknownAttributes(bool ignore) { m_ignoreUnknownAttributes = ignore; }

  // Match elements and attributes by local name only. Also true whenever the schema type is
  // SchemaType_DTD, whatever the flag.
  bool GetIgnoreNamespaces() const { return m_ignoreNamespaces || m_schemaType == SchemaType_DTD; }
  void SetIgnoreNamespaces(bool ignore) { m_ignoreNamespaces = ignore; }

  SchemaType GetSchemaType() const { return m_schemaType; }
  void SetSchemaType(SchemaType type) { m_schemaType = type; }

  // Do not write an optional attribute that holds its schema default.
  bool GetNoOptionalAttributeDefaultOutput() const { return m_noOptionalAttributeDefaultOutput; }
  void SetNoOptionalAttributeDefaultOutput(bool noOutput) {
    m_noOptionalAttributeDefaultOutput = noOutput;
  }

  CFastInfosetContext& GetFIContext() { return m_fiContext; }
  const CFastInfosetContext& GetFIContext() const { return m_fiContext; }

  // When true (the default), the content of a CDATA section joins the element text as plain
  // text; when false, the CDATA markers are kept around it.
  bool GetStripCDATA() const { return m_stripCDATA; }
  void SetStripCDATA(bool strip) { m_stripCDATA = strip; }

 private:
  std::string m_defaultNamespaceURI;
  CNamespaceAliasMap m_namespaceAliases;
  // Created on first request and shared by copies of this context. CAttributeCol is only
  // declared here: every member that takes or releases the pointer is defined out of line.
  CSmartPtr<CAttributeCol> m_additionalRootAttributes;
  std::vector<std::string> m_processingInstructions;
  std::string m_inLineSchema;
  bool m_ignoreInvalidCollectionCounts;
  bool m_ignoreMissingChoice;
  bool m_ignoreMissingMandatoryElements;
  bool m_ignoreUnknownElements;
  bool m_ignoreUnknownAttributes;
  bool m_ignoreNamespaces;
  SchemaType m_schemaType;
  bool m_noOptionalAttributeDefaultOutput;
  CFastInfosetContext m_fiContext;
  bool m_stripCDATA;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_SERIALIZATIONCONTEXT_H
