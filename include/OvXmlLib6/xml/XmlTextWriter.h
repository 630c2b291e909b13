// CXmlTextWriter: writes XML text to a CTextStream. Text, comments and attribute values are
// escaped; line ends and, when formatted, a line end after each tag and one tab per nesting level
// follow the settings. The stream is flushed whenever 4,096 bytes or more are buffered.
#ifndef OVXMLLIB6_XML_XMLTEXTWRITER_H
#define OVXMLLIB6_XML_XMLTEXTWRITER_H

#include "OvXmlLib6/core/Export.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "OvXmlLib6/xml/XmlWriter.h"

#include <cstddef>
#include <string>
#include <string_view>

namespace OvXmlLib6 {

class OVXML_API CXmlTextWriter : public CXmlWriter {
 public:
  // The stream is not owned and must outlive the writer. Throws COvInvalidParamException for null.
  explicit CXmlTextWriter(CTextStream* stream);
  ~CXmlTextWriter() override;

  // Has the stream begin its output (a memory stream empties, a file stream creates its file).
  void Open() override;
  // Has the stream finish its output, then throws "An Element has not been closed." while an
  // element is still open.
  void Close() override;

  void WriteComment(const char* text) override;
  void WriteRawBlock(const char* text) override;
  void WriteRawLine(const char* text) override;
  void WriteStartElement(const char* localName, const char* ns) override;
  void WriteText(const char* text, int itemType = 0) override;
  void WriteEndElement() override;
  void WriteAttribute(const char* localName, const char* ns, const char* value,
                      int itemType = 0) override;
  void WriteXsiType(const char* typeName, const char* typeNamespace, int itemType = 0) override;
  // "<?target data?>" ("<?target?>" without data), closing an open start tag first as a comment
  // does. The target must be a non-empty name and the data must not contain "?>": either fails
  // with COvInvalidParamException, since the output would not be XML.
  void WriteProcessingInstruction(std::string_view target, std::string_view data) override;
  void WriteStartElement(std::string_view localName, std::string_view ns) override;
  // The declarations are written on the start tag, before the attributes, and bound in the
  // element's scope before its name is chosen.
  void WriteStartElement(std::string_view localName, std::string_view ns,
                         const NamespaceDeclaration* declarations, std::size_t count) override;
  void WriteText(std::string_view text, int itemType = 0) override;
  void WriteAttribute(std::string_view localName, std::string_view ns, std::string_view value,
                      int itemType = 0) override;
  // Inside an element, for a namespace that is the default one or has a prefix in scope, the
  // element is written without a context of its own; otherwise as the three calls write it.
  void WriteTextElement(std::string_view localName, std::string_view ns, std::string_view text,
                        int itemType = 0) override;

  // EOLType_CRLF writes "\r\n", EOLType_LF "\n"; any other value throws "Invalid EOL type." and
  // leaves the setting as it was.
  void SetEOLType(EOLType type);
  EOLType GetEOLType() const { return m_eolType; }
  // Formatted output (the default) ends each tag's line and indents with tabs.
  void SetFormatted(bool formatted) { m_formatted = formatted; }
  bool GetFormatted() const { return m_formatted; }
  // Exact output writes carriage returns in text, and tabs, line feeds and carriage returns in
  // attribute values, as character references, so that a parser reads back the very text given
  // (a converter needs this). By default carriage returns are dropped and the others written as
  // they are.
  void SetExact(bool exact) { m_exact = exact; }

  // The XML declaration, naming the stream's encoding when it is UTF-8 or UTF-16.
  void WriteHeader();
  // Closes an open start tag and writes the text unescaped (raw XML held by wildcard elements).
  void WriteRawContent(const char* text);
  void WriteRawContent(std::string_view text);
  // "<!--text-->" with the text as it is, where WriteComment escapes it; placed and followed by a
  // line end as a processing instruction is. Text that contains "--" or ends with "-" fails with
  // COvInvalidParamException, since the output would not be XML.
  void WriteVerbatimComment(std::string_view text);

 private:
  // Appends to the stream (inline, in the implementation).
  void Put(const char* text, std::size_t length);
  void Put(std::string_view text);
  void Put(char c);
  void PutLineEnd();
  void PutIndent(std::int32_t depth);
  // Escapes the text up to its end or a NUL byte; plain runs are copied in bulk.
  void PutEscaped(std::string_view text);
  // An element's text: a text kept as one CDATA section goes out as it is, any other escaped.
  void PutText(std::string_view text);
  // Closes the current start tag with ">" when it is still open.
  void CloseStartTag();
  // Closes an open start tag before a comment or processing instruction, as a child element would.
  void CloseStartTagForChild();
  void StartElement(std::string_view localName, std::string_view ns,
                    const NamespaceDeclaration* declarations, std::size_t count);
  void PutDeclaration(std::string_view prefix, std::string_view ns);
  void CheckAttributeAllowed(const char* what);
  void PutAttribute(std::string_view localName, std::string_view ns, std::string_view value);
  void FlushIfNeeded() {
    if (m_stream->GetLength() >= CTextStream::kFlushThreshold) m_stream->FlushBuffer();
  }

  std::string m_lineEnd;
  // The bytes text escaping stops at: a line feed only when it becomes CR LF.
  const bool* m_escapeStops;
  EOLType m_eolType;
  bool m_formatted;
  bool m_exact;
  CTextStream* m_stream;
  std::string m_scratch;  // reused for composed values such as xsi:type's qualified name
};

}  // namespace OvXmlLib6

#endif  // OVXMLLIB6_XML_XMLTEXTWRITER_H
