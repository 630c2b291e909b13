// The entry points of CXmlObjectBase: each builds the source or sink of one read or write (an XML
// tree, or a text writer over a stream) and hands over to FromXml_Int or ToXml_Int.
#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/fastinfoset/FastInfosetWriter.h"
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "OvXmlLib6/xml/XmlDocument.h"
#include "OvXmlLib6/xml/XmlTextWriter.h"
#include "core/ObjectReader.h"
#include "xml/BinaryTextStream.h"

#include <memory>
#include <string_view>

namespace OvXmlLib6 {

namespace {

bool g_asyncToXmlFile = false;

void RequireFileName(const char* fileName, const char* operation) {
  if (fileName == nullptr || *fileName == '\0') {
    throw COvInvalidParamException(FormatString("%s: no file name was given", operation));
  }
}

}  // namespace

void AsyncToXmlFile(bool on) { g_asyncToXmlFile = on; }

bool IsAsyncToXmlFile() { return g_asyncToXmlFile; }

// ---- Output ---------------------------------------------------------------------------------

void CXmlObjectBase::WriteDocument(CTextStream& stream, bool includeDocumentHeader, bool formatted,
                                   EOLType eolType, const CXmlSerializationContext& context) const {
  CXmlTextWriter writer(&stream);
  writer.Open();
  writer.SetFormatted(formatted);
  writer.SetEOLType(eolType);
  if (includeDocumentHeader) writer.WriteHeader();
  const std::string ns = GetNamespace();
  ToXml_Int(this, &writer, true, ns.c_str(), context, false);
  writer.Close();
}

std::string CXmlObjectBase::ToXml(bool includeDocumentHeader, bool formatted, EOLType eolType,
                                  const CXmlSerializationContext& context) const {
  CTextStream stream(XmlEncoding_UTF8);
  WriteDocument(stream, includeDocumentHeader, formatted, eolType, context);
  // The text is returned as it is, in the internal code page; the blocks are copied straight into
  // the result rather than merged first.
  const CStringBuffer& buffer = stream.GetBuffer();
  std::string text;
  text.reserve(buffer.GetLength());
  for (std::size_t i = 0, blocks = buffer.GetBlockCount(); i < blocks; ++i) {
    const std::string_view block = buffer.GetBlock(i);
    text.append(block.data(), block.size());
  }
  return text;
}

CBinaryData CXmlObjectBase::ToXmlStream(bool includeDocumentHeader, bool formatted,
                                        XmlEncoding encoding, EOLType eolType,
                                        const CXmlSerializationContext& context,
                                        CompressionType compression) const {
  CBinaryStream bytes;
  bytes.Begin();
  // UTF-16 text starts with the byte-order mark, as the file stream writes it, so the bytes are
  // a complete document that any parser recognises.
  if (encoding == XmlEncoding_UTF16 || encoding == XmlEncoding_UTF16NoDeclaration) {
    bytes.Append(static_cast<unsigned char>(0xFF));
    bytes.Append(static_cast<unsigned char>(0xFE));
  }
  // The text is converted into `bytes` as the writer flushes it.
  detail::CBinaryTextStream text(encoding, bytes);
  WriteDocument(text, includeDocumentHeader, formatted, eolType, context);
  bytes.Finish();
  if (compression != CompressionType_None) bytes.Compress(compression);
  return bytes.GetData();
}

void CXmlObjectBase::ToXmlFile(const char* fileName, bool includeDocumentHeader, bool formatted,
                               XmlEncoding encoding, EOLType eolType,
                               const CXmlSerializationContext& context,
                               CompressionType compression) const {
  if (compression == CompressionType_ZLib)
    throw COvException("ZLIB Compression only available for To Stream methods.");
  RequireFileName(fileName, "ToXmlFile");
  if (g_asyncToXmlFile && compression == CompressionType_None) {
    CFileTextStream stream(fileName, encoding);
    WriteDocument(stream, includeDocumentHeader, formatted, eolType, context);
    return;
  }
  const CBinaryData data =
      ToXmlStream(includeDocumentHeader, formatted, encoding, eolType, context, compression);
  CFileBinaryStream file(fileName);
  file.Begin();
  file.Append(data);
  file.Finish();
}

void CXmlObjectBase::WriteFastInfoset(CBinaryStream& stream, FInfoDecl declaration,
                                      const CXmlSerializationContext& context) const {
  CFastInfosetWriter writer(&stream, context, declaration);
  writer.Open();
  const std::string ns = GetNamespace();
  ToXml_Int(this, &writer, true, ns.c_str(), context, false);
  writer.Close();
}

CBinaryData CXmlObjectBase::ToFastInfosetStream(FInfoDecl declaration,
                                                const CXmlSerializationContext& context,
                                                CompressionType compression) const {
  CBinaryStream bytes;
  WriteFastInfoset(bytes, declaration, context);
  if (compression != CompressionType_None) bytes.Compress(compression);
  return bytes.GetData();
}

void CXmlObjectBase::ToFastInfosetFile(const char* fileName, FInfoDecl declaration,
                                       const CXmlSerializationContext& context,
                                       CompressionType compression) const {
  if (compression == CompressionType_ZLib)
    throw COvException("ZLIB Compression only available for To Stream methods.");
  RequireFileName(fileName, "ToFastInfosetFile");
  CFileBinaryStream file(fileName);
  if (compression == CompressionType_None) {
    // The file stream collects the document and writes it when the writer finishes it.
    WriteFastInfoset(file, declaration, context);
    return;
  }
  const CBinaryData data = ToFastInfosetStream(declaration, context, compression);
  file.Begin();
  file.Append(data);
  file.Finish();
}

// ---- Input ----------------------------------------------------------------------------------

void CXmlObjectBase::ReadDocument(const CXmlDocument& document,
                                  const CXmlSerializationContext& bindContext) {
  // The document element has no parent element in the tree.
  FromXml_Int(this, nullptr, document.GetDocumentElement(), bindContext);
}

detail::CObjectReader* CXmlObjectBase::NewObjectReader(
    const CXmlSerializationContext& /*bindContext*/) {
  return nullptr;
}

template <typename Load>
void CXmlObjectBase::LoadAndRead(const CXmlSerializationContext& parseContext,
                                 const CXmlSerializationContext& bindContext, Load load) {
  // The reader outlives the document that reports to it.
  const std::unique_ptr<detail::CObjectReader> reader(NewObjectReader(bindContext));
  CXmlDocument document(parseContext);
  if (reader) {
    detail::CDocumentObserver::Attach(document, reader.get());
    load(document);
    reader->Commit();
  } else {
    load(document);
    ReadDocument(document, bindContext);
  }
}

void CXmlObjectBase::FromXmlFile(const char* fileName, const CXmlSerializationContext& context) {
  RequireFileName(fileName, "FromXmlFile");
  LoadAndRead(context, context, [fileName](CXmlDocument& document) { document.Load(fileName); });
}

void CXmlObjectBase::FromXml(const wchar_t* text, const CXmlSerializationContext& context) {
  LoadAndRead(context, context,
              [text](CXmlDocument& document) { document.LoadXml(text != nullptr ? text : L""); });
}

void CXmlObjectBase::FromXml(const char* text, const CXmlSerializationContext& context) {
  // Binding uses the default context on purpose: the reading options given to this overload
  // shape the tree (schema type, CDATA) but not the binding.
  LoadAndRead(context, CXmlSerializationContext::GetDefaultContext(),
              [text](CXmlDocument& document) { document.LoadXml(text); });
}

void CXmlObjectBase::FromXmlStream(const CBinaryData& data,
                                   const CXmlSerializationContext& context) {
  FromXmlStream(data.GetData(), data.GetLength(), context);
}

void CXmlObjectBase::FromXmlStream(const unsigned char* bytes, std::uint32_t length,
                                   const CXmlSerializationContext& context) {
  LoadAndRead(context, context,
              [bytes, length](CXmlDocument& document) { document.LoadXmlStream(bytes, length); });
}

void CXmlObjectBase::FromXmlElement(const CXmlElement* element,
                                    const CXmlSerializationContext& context) {
  if (element == nullptr) throw COvInvalidParamException("FromXmlElement: the element is NULL");
  CXmlElement* first = element->GetFirstElement();
  if (first == nullptr) {
    throw COvValidationException(
        FormatString("FromXmlElement: element [%s] has no child element to read",
                     element->GetLocalName().c_str()));
  }
  FromXml_Int(this, const_cast<CXmlElement*>(element), first, context);
}

}  // namespace OvXmlLib6
