// CFastInfosetWriter: writes the calls of CXmlWriter as a Fast Infoset document (ITU-T X.891,
// binary XML) to a CBinaryStream.
//
// Names, namespaces and short values go into the document's vocabulary tables the first time they
// are written and are referred to by index afterwards. Values whose item type the context maps to
// a restricted alphabet or an encoding algorithm are written in that form when they parse as their
// type (and as plain text otherwise, so nothing is lost). Prefixes are chosen as the text writer
// chooses them, and declared where it would declare them.
//
// The writer collects its output in a buffer of its own and hands it to the stream in blocks of
// about kBlockSize bytes, calling the stream's FlushBuffer after each one, so that a stream may
// pass the blocks on as they come. Every failure throws COvException with a message that begins
// "Failed to write FastInfoset.".
#ifndef OVXMLLIB6_FASTINFOSET_FASTINFOSETWRITER_H
#define OVXMLLIB6_FASTINFOSET_FASTINFOSETWRITER_H

#include "OvXmlLib6/core/Enums.h"
#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/XmlWriter.h"

#include <cstddef>
#include <memory>
#include <string_view>

namespace OvXmlLib6 {

namespace detail {
class CFastInfosetEncoder;
}  // namespace detail

class OVXML_API CFastInfosetWriter : public CXmlWriter {
 public:
  // The size of the blocks handed to the stream.
  static constexpr std::size_t kBlockSize = 64 * 1024;

  // The stream is not owned and must outlive the writer; the context is read when the writer is
  // made (encodings, add lengths, vocabulary) and must outlive it too. `declaration` chooses the
  // XML declaration, if any, that the document starts with. Throws COvInvalidParamException for a
  // null stream, and the writer's failure for a declaration outside FInfoDecl.
  CFastInfosetWriter(CBinaryStream* stream, const CXmlSerializationContext& context,
                     FInfoDecl declaration = FInfoDecl_None);
  ~CFastInfosetWriter() override;

  // Has the stream begin its output. The header is written with the first item.
  void Open() override;
  // Ends the document, hands the rest of the output to the stream and has it finish. Fails while
  // an element is open or when no element was written.
  void Close() override;

  void WriteComment(const char* text) override;
  // Only processing instructions, "<?target data?>", can be carried; other raw text fails.
  void WriteRawBlock(const char* text) override;
  // Fails: raw XML text (the in-line schema) cannot be carried in a Fast Infoset document.
  void WriteRawLine(const char* text) override;
  void WriteStartElement(const char* localName, const char* ns) override;
  void WriteText(const char* text, int itemType = 0) override;
  void WriteEndElement() override;
  void WriteAttribute(const char* localName, const char* ns, const char* value,
                      int itemType = 0) override;
  void WriteXsiType(const char* typeName, const char* typeNamespace, int itemType = 0) override;
  void WriteProcessingInstruction(std::string_view target, std::string_view data) override;
  void WriteStartElement(std::string_view localName, std::string_view ns) override;
  // The declarations are written on the element, before any the writer adds, and bound in its
  // scope before its name is chosen.
  void WriteStartElement(std::string_view localName, std::string_view ns,
                         const NamespaceDeclaration* declarations, std::size_t count) override;
  void WriteText(std::string_view text, int itemType = 0) override;
  void WriteAttribute(std::string_view localName, std::string_view ns, std::string_view value,
                      int itemType = 0) override;

 private:
  friend class detail::CFastInfosetEncoder;
  std::unique_ptr<detail::CFastInfosetEncoder> m_encoder;
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_FASTINFOSET_FASTINFOSETWRITER_H
