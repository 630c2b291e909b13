#include "xml/StreamConverter.h"

#include "OvXmlLib6/core/Exceptions.h"
#include "OvXmlLib6/core/SerializationContext.h"
#include "OvXmlLib6/fastinfoset/FastInfosetWriter.h"
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/Compression.h"
#include "OvXmlLib6/xml/TextStream.h"
#include "OvXmlLib6/xml/XmlTextWriter.h"
#include "fastinfoset/FastInfosetReader.h"
#include "xml/Compression.h"
#include "xml/ExpatReader.h"
#include "xml/XmlEvents.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <memory>
#include <string_view>
#include <utility>
#include <vector>

namespace OvXmlLib6 {
namespace detail {

// ---------------------------------------------------------------------------------------------
// C stream ends

std::size_t CStdioSource::Read(unsigned char* buffer, std::size_t capacity) {
  const std::size_t got = std::fread(buffer, 1, capacity, m_file);
  if (got < capacity && std::ferror(m_file) != 0) {
    throw COvException(FormatString("cannot read '%s': %s", m_name.c_str(), std::strerror(errno)));
  }
  return got;
}

void CStdioSink::Write(const unsigned char* data, std::size_t length) {
  if (length != 0 && std::fwrite(data, 1, length, m_file) != length) Fail();
}

void CStdioSink::Finish() {
  if (std::fflush(m_file) != 0) Fail();
}

void CStdioSink::Fail() {
  throw COvException(FormatString("cannot write '%s': %s", m_name.c_str(), std::strerror(errno)));
}

namespace {

// The writers hand the sink their output in pieces of about this size.
constexpr std::size_t kBlock = 64 * 1024;
// Whitespace held back while formatting, to be dropped if markup follows; a longer run is text.
constexpr std::size_t kMaxHeldSpace = 64 * 1024;
// The longest CDATA section written as one for a writer other than the text writer.
constexpr std::size_t kMaxHeldCdata = 64 * 1024;

bool IsWhitespace(std::string_view text) {
  return text.find_first_not_of(" \t\r\n") == std::string_view::npos;
}

// ---------------------------------------------------------------------------------------------
// Input

// Counts the bytes read from the input and reports them.
class CCountingSource : public IByteSource {
 public:
  CCountingSource(IByteSource& input, const std::function<void(std::uint64_t)>& progress)
      : m_input(input), m_progress(progress) {}
  std::size_t Read(unsigned char* buffer, std::size_t capacity) override {
    const std::size_t got = m_input.Read(buffer, capacity);
    count += got;
    if (m_progress) m_progress(count);
    return got;
  }
  std::uint64_t count = 0;

 private:
  IByteSource& m_input;
  const std::function<void(std::uint64_t)>& m_progress;
};

// Enough of the start to find the identification of a Fast Infoset document behind an XML
// declaration.
constexpr std::size_t kHeadSize = 128;

bool IsFastInfoset(CPeekSource& input) {
  const std::vector<unsigned char>& head = input.Peek(kHeadSize);
  return CFastInfosetReader::FindHeader(head.data(), head.size()) >= 0;
}

// ---------------------------------------------------------------------------------------------
// Output

// Counts what reaches the output.
class CCountingSink : public IByteSink {
 public:
  explicit CCountingSink(IByteSink& output) : m_output(output) {}
  void Write(const unsigned char* data, std::size_t length) override {
    m_output.Write(data, length);
    count += length;
  }
  void Finish() override { m_output.Finish(); }
  std::uint64_t count = 0;

 private:
  IByteSink& m_output;
};

// Compresses what it is given on its way to the output.
class CDeflatingSink : public IByteSink {
 public:
  CDeflatingSink(IByteSink& output, int compressionType)
      : m_output(output), m_deflater(compressionType) {}
  void Write(const unsigned char* data, std::size_t length) override { Send(data, length, false); }
  void Finish() override {
    Send(nullptr, 0, true);
    m_output.Finish();
  }

 private:
  void Send(const unsigned char* data, std::size_t length, bool finish) {
    m_packed.clear();
    m_deflater.Write(data, length, finish, m_packed);
    if (!m_packed.empty()) {
      m_output.Write(reinterpret_cast<const unsigned char*>(m_packed.data()), m_packed.size());
    }
  }
  IByteSink& m_output;
  CDeflater m_deflater;
  std::string m_packed;
};

// The text writer's stream: each flush converts the buffered text to the output encoding and
// hands it to the sink once a block has gathered.
class CSinkTextStream : public CTextStream {
 public:
  CSinkTextStream(XmlEncoding encoding, IByteSink& sink)
      : CTextStream(encoding, "CSinkTextStream"), m_sink(sink) {}
  void Begin() override {
    m_buffer.Clear();
    if (m_encoding == XmlEncoding_UTF16) {
      static const unsigned char kByteOrderMark[2] = {0xFF, 0xFE};
      m_sink.Write(kByteOrderMark, sizeof kByteOrderMark);
    }
  }
  void FlushBuffer() override {
    if (m_buffer.GetLength() >= kBlock) Send(false);
  }
  void Finish() override { Send(true); }

 private:
  void Send(bool final) {
    m_converted.clear();
    ConvertAndClear(m_converted, final);
    if (!m_converted.empty()) {
      m_sink.Write(reinterpret_cast<const unsigned char*>(m_converted.data()), m_converted.size());
    }
  }
  IByteSink& m_sink;
  std::string m_converted;
};

// The Fast Infoset writer's stream: each block the writer hands over goes on to the sink.
class CSinkBinaryStream : public CBinaryStream {
 public:
  explicit CSinkBinaryStream(IByteSink& sink) : CBinaryStream("CSinkBinaryStream"), m_sink(sink) {}
  void Begin() override { m_data.Clear(); }
  void FlushBuffer() override {
    if (m_data.GetLength() == 0) return;
    m_sink.Write(m_data.GetData(), m_data.GetLength());
    m_data.Clear();
  }
  void Finish() override { FlushBuffer(); }

 private:
  IByteSink& m_sink;
};

// ---------------------------------------------------------------------------------------------
// Events to a writer

// Writes reader events to a CXmlWriter in their order. For the XML text writer, CDATA sections,
// comments and carriage returns are written as they came; other writers get CDATA content as
// text. With `dropLayout`, whitespace-only text next to markup is left out (a formatting writer
// puts its own), except where it is all an element holds; an element with other text (mixed
// content) is written unformatted, so that no whitespace is added to its text.
class CEventWriter : public IXmlEventHandler {
 public:
  CEventWriter(CXmlWriter& writer, bool dropLayout)
      : m_writer(writer),
        m_text(dynamic_cast<CXmlTextWriter*>(&writer)),
        m_dropLayout(dropLayout) {}

  void OnNamespaceDeclaration(std::string_view prefix, std::string_view uri) override {
    if (m_declaredCount == m_declared.size()) m_declared.emplace_back();
    m_declared[m_declaredCount].first.assign(prefix.data(), prefix.size());
    m_declared[m_declaredCount].second.assign(uri.data(), uri.size());
    ++m_declaredCount;
  }

  void OnStartElement(const CXmlEventName& name, const CXmlEventAttribute* attributes,
                      std::size_t count) override {
    EndRun(false);
    m_declarations.clear();
    for (std::size_t i = 0; i < m_declaredCount; ++i) {
      m_declarations.push_back({m_declared[i].first, m_declared[i].second});
    }
    m_declaredCount = 0;
    m_writer.WriteStartElement(name.localName, name.namespaceURI, m_declarations.data(),
                               m_declarations.size());
    for (std::size_t i = 0; i < count; ++i) {
      m_writer.WriteAttribute(attributes[i].name->localName, attributes[i].name->namespaceURI,
                              attributes[i].value);
    }
    ++elements;
    attributeCount += count;
    ++m_depth;
    m_onlyText = true;
  }

  void OnEndElement() override {
    EndRun(true);
    m_writer.WriteEndElement();
    if (m_depth-- == m_mixedDepth) {
      // Formatting goes on after the mixed content, from a line of its own.
      m_mixedDepth = 0;
      m_text->SetFormatted(true);
      PutLineEnd();
    }
  }

  void OnText(std::string_view text) override {
    if (m_dropLayout && m_runIsLayout && !m_inCdata) {
      if (IsWhitespace(text) && m_space.size() + text.size() <= kMaxHeldSpace) {
        m_space.append(text.data(), text.size());
        return;
      }
      KeepSpace();
    }
    if (!m_inCdata) {
      PutText(text);
    } else if (m_text != nullptr) {
      m_text->WriteRawContent(text);
    } else {
      // Other writers take a CDATA section as one text "<![CDATA[...]]>"; a long one is written
      // as several sections in a row, so that memory stays bounded.
      m_cdata.append(text.data(), text.size());
      if (m_cdata.size() >= kMaxHeldCdata) PutCdata();
    }
  }

  // Text other than layout inside a formatted element: the element is mixed content.
  void EnterMixedContent() {
    if (!m_dropLayout || m_text == nullptr || m_mixedDepth != 0 || m_depth == 0) return;
    m_mixedDepth = m_depth;
    m_text->SetFormatted(false);
  }

  void OnStartCdata() override {
    KeepSpace();
    EnterMixedContent();
    m_inCdata = true;
    if (m_text != nullptr) m_text->WriteRawContent("<![CDATA[");
  }

  void OnEndCdata() override {
    m_inCdata = false;
    if (m_text != nullptr) {
      m_text->WriteRawContent("]]>");
    } else {
      PutCdata();
    }
  }

  void OnComment(std::string_view text) override {
    EndRun(false);
    AfterDocumentElement();
    if (m_text != nullptr) {
      m_text->WriteVerbatimComment(text);
    } else {
      m_writer.WriteComment(std::string(text).c_str());
    }
  }

  void OnProcessingInstruction(std::string_view target, std::string_view data) override {
    EndRun(false);
    AfterDocumentElement();
    m_writer.WriteProcessingInstruction(target, data);
  }

  std::uint64_t elements = 0;
  std::uint64_t attributeCount = 0;

 private:
  // A comment or processing instruction after the document element starts a line of its own,
  // as those before it do.
  void AfterDocumentElement() {
    if (m_depth != 0 || elements == 0 || m_text == nullptr || m_text->GetFormatted() || m_lineEnded)
      return;
    PutLineEnd();
    m_lineEnded = true;
  }

  void PutCdata() {
    if (m_cdata.empty()) return;
    m_cdata.insert(0, "<![CDATA[");
    m_cdata += "]]>";
    m_writer.WriteText(m_cdata);
    m_cdata.clear();
  }

  void PutLineEnd() {
    m_text->WriteRawContent(m_text->GetEOLType() == EOLType_CRLF ? "\r\n" : "\n");
  }

  // The held whitespace is text after all.
  void KeepSpace() {
    m_runIsLayout = false;
    if (m_space.empty()) return;
    PutText(m_space);
    m_space.clear();
  }

  // Markup follows the current text run: held whitespace is dropped, unless the element ends
  // with nothing but it.
  void EndRun(bool endsElement) {
    if (endsElement && m_onlyText) KeepSpace();
    m_space.clear();
    m_runIsLayout = true;
    m_onlyText = false;
  }

  void PutText(std::string_view text) {
    EnterMixedContent();
    // Text that starts like a CDATA section would be taken for one by the text writer.
    static constexpr std::string_view kCdata = "<![CDATA[";
    if (text.substr(0, kCdata.size()) == kCdata) {
      m_writer.WriteText(text.substr(0, 1));
      text.remove_prefix(1);
    }
    m_writer.WriteText(text);
  }

  CXmlWriter& m_writer;
  CXmlTextWriter* m_text;
  const bool m_dropLayout;
  // The declarations of the element that starts next; the strings are reused.
  std::vector<std::pair<std::string, std::string>> m_declared;
  std::size_t m_declaredCount = 0;
  std::vector<CXmlWriter::NamespaceDeclaration> m_declarations;
  std::string m_space;        // whitespace held back
  bool m_runIsLayout = true;  // the current text run is whitespace so far
  bool m_onlyText = false;    // nothing but text since the current element started
  bool m_inCdata = false;
  std::string m_cdata;  // the content of a CDATA section, for writers other than the text writer
  std::size_t m_depth = 0;       // of the current element; 0 outside the document element
  std::size_t m_mixedDepth = 0;  // of the unformatted element with mixed content, or 0
  bool m_lineEnded = false;      // after the document element
};

// Reads the document from `input` with the reader that its first bytes call for.
// A failure of XML text notes where the parser stopped in `failure`.
void ReadDocument(CPeekSource& input, bool fastInfoset, const CXmlSerializationContext& context,
                  IXmlEventHandler& handler, CParseFailure& failure) {
  if (fastInfoset) {
    CFastInfosetReader reader(handler, context);
    reader.Read(input);
    return;
  }
  CExpatEventSource source(handler);
  try {
    source.Read(input);
  } catch (...) {
    failure = source.Failure();
    throw;
  }
}

}  // namespace

CConvertCounts CStreamConverter::Convert(IByteSource& input, IByteSink& output) {
  CConvertCounts counts;
  CCountingSource counted(input, m_progress);
  CPeekSource raw(counted);
  if (raw.Peek(2).empty()) throw COvException("The input is empty");
  // Compressed input is recognised from its first bytes, which no XML text or Fast Infoset
  // document starts with.
  std::unique_ptr<CInflatingSource> inflater;
  std::unique_ptr<CPeekSource> inflated;
  CPeekSource* document = &raw;
  if (LooksCompressed(raw.Peek(2).data(), raw.Peek(2).size())) {
    inflater.reset(new CInflatingSource(raw, GetMaxInflatedSize()));
    inflated.reset(new CPeekSource(*inflater));
    document = inflated.get();
  }
  counts.fastInfosetInput = IsFastInfoset(*document);

  CCountingSink countedOut(output);
  std::unique_ptr<CDeflatingSink> deflating;
  IByteSink* sink = &countedOut;
  if (m_options.compression == CompressionType_GZip ||
      m_options.compression == CompressionType_ZLib) {
    deflating.reset(new CDeflatingSink(countedOut, m_options.compression));
    sink = deflating.get();
  }

  CXmlSerializationContext context;
  // Values and text go into a Fast Infoset vocabulary table, which lives as long as the
  // document, when they are short; a document of any size would fill the tables with them. Only
  // names are indexed, so memory stays bounded by the document's distinct names.
  context.GetFIContext().SetAttributeMaxAddLength(0);
  context.GetFIContext().SetElementMaxAddLength(0);
  std::unique_ptr<CSinkBinaryStream> binary;
  std::unique_ptr<CSinkTextStream> text;
  std::unique_ptr<CXmlWriter> writer;
  if (m_options.fastInfoset) {
    binary.reset(new CSinkBinaryStream(*sink));
    writer.reset(new CFastInfosetWriter(binary.get(), context));
    writer->Open();
  } else {
    text.reset(new CSinkTextStream(m_options.utf16 ? XmlEncoding_UTF16 : XmlEncoding_UTF8, *sink));
    CXmlTextWriter* textWriter = new CXmlTextWriter(text.get());
    writer.reset(textWriter);
    textWriter->SetFormatted(m_options.format);
    textWriter->SetExact(true);
    textWriter->SetEOLType(m_options.crlf ? EOLType_CRLF : EOLType_LF);
    textWriter->Open();
    if (m_options.header) textWriter->WriteHeader();
  }
  CEventWriter events(*writer, m_options.format && !m_options.fastInfoset);
  m_failure = CParseFailure();
  ReadDocument(*document, counts.fastInfosetInput, context, events, m_failure);
  writer->Close();
  sink->Finish();

  counts.elements = events.elements;
  counts.attributes = events.attributeCount;
  counts.bytesIn = counted.count;
  counts.bytesOut = countedOut.count;
  return counts;
}

}  // namespace detail
}  // namespace OvXmlLib6
