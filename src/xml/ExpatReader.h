// CExpatReader: the adapter that turns expat's callbacks into the tree of a CXmlDocument. The
// only file that includes expat is its implementation.
#ifndef OVXMLLIB6_SRC_XML_EXPATREADER_H
#define OVXMLLIB6_SRC_XML_EXPATREADER_H

#include "OvXmlLib6/core/InstanceMonitor.h"
#include "OvXmlLib6/xml/XmlDocument.h"

#include <cstddef>
#include <exception>
#include <string>

struct XML_ParserStruct;

namespace OvXmlLib6 {

namespace detail {
class CTreeStore;
}

class CExpatReader : private CInstanceMonitor {
 public:
  // A namespace-aware parser (expanded names "uri|local") unless `namespaces` is false. With
  // `keepCDATA` the markers of CDATA sections stay in the element text around their content.
  CExpatReader(CXmlDocument* document, bool namespaces, bool keepCDATA);
  CExpatReader(const CExpatReader&) = delete;
  CExpatReader& operator=(const CExpatReader&) = delete;
  ~CExpatReader();

  // Feeds one piece of the document. Throws COvException "<expat's message> at line <n>" when
  // the text is not well-formed, or rethrows what a callback threw.
  void Parse(const unsigned char* data, std::size_t length, bool isFinal);

 private:
  static void StartElementHandler(void* self, const char* name, const char** attributes);
  static void EndElementHandler(void* self, const char* name);
  static void CharacterDataHandler(void* self, const char* text, int length);
  static void StartCdataHandler(void* self);
  static void EndCdataHandler(void* self);
  static void StartNamespaceHandler(void* self, const char* prefix, const char* uri);
  static void EndNamespaceHandler(void* self, const char* prefix);

  void OnStartElement(const char* name, const char** attributes);
  void OnCharacterData(const char* text, std::size_t length);
  void OnNamespace(const char* prefix, const char* uri);
  // Parser text in the internal encoding, into `out` (replaced).
  void Convert(const char* text, std::size_t length, std::string& out);
  // Keeps the exception in flight and stops the parser; it is rethrown once expat has returned.
  void Fail();

  CXmlDocument* m_document;
  detail::CTreeStore* m_store;
  XML_ParserStruct* m_parser;
  std::string m_scratch;  // conversions of text pieces reuse it instead of allocating
  std::exception_ptr m_error;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_SRC_XML_EXPATREADER_H
