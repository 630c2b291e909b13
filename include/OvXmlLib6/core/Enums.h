// Enumerations shared across the library: the output encoding, line ends and compression of the
// writers and streams, the Fast Infoset document's XML declaration, and the kind of schema the
// generated classes came from. They are plain enums holding fixed numbers, so a number read from
// elsewhere can be cast to them.
#ifndef OVXMLLIB6_CORE_ENUMS_H
#define OVXMLLIB6_CORE_ENUMS_H

#include <cstdint>

namespace OvXmlLib6 {

// Encoding of XML text output.
enum XmlEncoding : std::int32_t {
  XmlEncoding_UTF8 = 1,
  XmlEncoding_UTF16 = 2,
  // UTF-16, but the XML declaration names no encoding.
  XmlEncoding_UTF16NoDeclaration = 3
};

// Line ends written by the text writer.
enum EOLType : std::int32_t { EOLType_CRLF = 0, EOLType_LF = 1 };

// Compression of stream and file output.
enum CompressionType : std::int32_t {
  CompressionType_None = 0,
  CompressionType_GZip = 1,
  CompressionType_ZLib = 2
};

// The XML declaration, if any, that a Fast Infoset document starts with. Each value stands for
// one of the declarations that mark a Fast Infoset document, written exactly as in the comment.
enum FInfoDecl : std::int32_t {
  FInfoDecl_None = 0,
  FInfoDecl_Encoding = 1,                // <?xml encoding='finf'?>
  FInfoDecl_Version10 = 2,               // <?xml version='1.0' encoding='finf'?>
  FInfoDecl_Version11 = 3,               // <?xml version='1.1' encoding='finf'?>
  FInfoDecl_StandaloneNo = 4,            // <?xml encoding='finf' standalone='no'?>
  FInfoDecl_StandaloneYes = 5,           // <?xml encoding='finf' standalone='yes'?>
  FInfoDecl_Version10StandaloneNo = 6,   // <?xml version='1.0' encoding='finf' standalone='no'?>
  FInfoDecl_Version11StandaloneNo = 7,   // <?xml version='1.1' encoding='finf' standalone='no'?>
  FInfoDecl_Version10StandaloneYes = 8,  // <?xml version='1.0' encoding='finf' standalone='yes'?>
  FInfoDecl_Version11StandaloneYes = 9   // <?xml version='1.1' encoding='finf' standalone='yes'?>
};

// The kind of schema the generated classes came from. Only SchemaType_DTD changes behaviour: a
// schema of that kind has no namespaces, so names are matched by local name alone and the parser
// is not namespace-aware. Every other value behaves the same.
enum SchemaType : std::int32_t { SchemaType_XSD = 0, SchemaType_XDR = 1, SchemaType_DTD = 2 };

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_CORE_ENUMS_H
