// Fast Infoset beside XML text on the same 10 MiB purchase order, in one run: size of the binary
// form (from a wildcard tree, and from the generated classes with plain and with typed encodings,
// each with and without gzip), encoding speed from a tree and from generated classes, and
// decoding speed into a document tree, each with the XML path it replaces as the baseline.
//
// Speeds are MB/s of the XML text the document has (so that the XML and the Fast Infoset figures
// are comparable), and the x_xml counters are ratios of CPU time of this thread against the XML
// path run untimed in the same iteration, which keeps the noise of a shared machine out of them.
#include "BenchSupport.h"
#include "PoDocument.h"
#include "PurchaseOrder.h"

#include <OvXmlLib6.h>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string>
#include <utility>
#include <vector>

using namespace OvXmlLib6;

namespace {

constexpr std::size_t kDocumentSize = 10 * 1024 * 1024;

const std::string& Xml() {
  static const std::string xml = bench::MakePoDocument(kDocumentSize).xml;
  return xml;
}

const unsigned char* XmlBytes() { return reinterpret_cast<const unsigned char*>(Xml().data()); }
std::uint32_t XmlLength() { return static_cast<std::uint32_t>(Xml().size()); }

double ThreadMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

// A context whose numeric, boolean, binary and date types travel in binary.
const CXmlSerializationContext& TypedContext() {
  static const CXmlSerializationContext context = [] {
    CXmlSerializationContext typed;
    typed.GetFIContext().SetSuggestedValues();
    return typed;
  }();
  return context;
}

CSmartPtr<CElement> ReadTree() {
  CSmartPtr<CElement> root = new CElement("purchaseOrder", "urn:example:po");
  root->FromXmlStream(XmlBytes(), XmlLength());
  return root;
}

CSmartPtr<po::CPurchaseOrder> ReadOrder() {
  CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
  order->FromXmlStream(XmlBytes(), XmlLength());
  return order;
}

CBinaryData ToFi(const CXmlObjectBase& object, const CXmlSerializationContext& context,
                 CompressionType compression = CompressionType_None) {
  return object.ToFastInfosetStream(FInfoDecl_None, context, compression);
}

// The document as Fast Infoset, written from the wildcard tree with the default context.
const CBinaryData& FiDocument() {
  static const CBinaryData fi = ToFi(*ReadTree(), CXmlSerializationContext::GetDefaultContext());
  return fi;
}

// Every name, text and attribute value of a loaded document, through the public getters: what a
// reader of the tree pays for whatever is kept lazily.
std::size_t WalkTree(const CXmlDocument& document) {
  std::size_t sum = 0;
  std::vector<const CXmlElement*> pending{document.GetDocumentElement()};
  while (!pending.empty()) {
    const CXmlElement* element = pending.back();
    pending.pop_back();
    sum += element->GetLocalName().size() + element->GetNamespaceURI().size() +
           element->GetText().size();
    for (const CXmlAttribute* attribute : element->GetAttributes())
      sum += attribute->GetLocalName().size() + attribute->GetValue().size();
    for (const CXmlElement* child = element->GetFirstElement(); child != nullptr;
         child = child->GetNextSiblingElement())
      pending.push_back(child);
  }
  return sum;
}

// Load, walk and release; returns the walk's sum so that nothing is optimised away.
std::size_t LoadAndWalk(const unsigned char* data, std::uint32_t length) {
  CXmlDocument document;
  document.LoadXmlStream(data, length);
  return WalkTree(document);
}

// ---- Decoding -----------------------------------------------------------------------------------

void BM_RawExpat(benchmark::State& state) {
  long events = 0;
  for (auto _ : state) events = bench::ParseWithExpat(Xml().data(), Xml().size());
  benchmark::DoNotOptimize(events);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * XmlLength());
}
BENCHMARK(BM_RawExpat)->Unit(benchmark::kMillisecond);

// XML text into the document tree, every node walked, released: the baseline of the next one.
void BM_ReadTreeFromXml(benchmark::State& state) {
  std::size_t sum = 0;
  for (auto _ : state) sum += LoadAndWalk(XmlBytes(), XmlLength());
  benchmark::DoNotOptimize(sum);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * XmlLength());
}
BENCHMARK(BM_ReadTreeFromXml)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

// The same document as Fast Infoset into the tree, walked and released. x_xml: its CPU time over
// that of the XML path, run untimed in each iteration.
void BM_ReadTreeFromFi(benchmark::State& state) {
  const CBinaryData& fi = FiDocument();
  std::size_t sum = 0;
  double fiMs = 0;
  double xmlMs = 0;
  for (auto _ : state) {
    const double start = ThreadMilliseconds();
    sum += LoadAndWalk(fi.GetData(), fi.GetLength());
    const double read = ThreadMilliseconds();
    state.PauseTiming();
    sum += LoadAndWalk(XmlBytes(), XmlLength());
    xmlMs += ThreadMilliseconds() - read;
    fiMs += read - start;
    state.ResumeTiming();
  }
  benchmark::DoNotOptimize(sum);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * XmlLength());
  state.counters["x_xml"] = fiMs / xmlMs;
  state.counters["fi_MB"] = static_cast<double>(fi.GetLength()) / 1e6;
}
BENCHMARK(BM_ReadTreeFromFi)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

// The same order-shaped document built octet by octet (names by index after their first use,
// repeated values and chunks through the tables), so that reading Fast Infoset can be measured
// without a writer: {XML text, Fast Infoset}.
const std::pair<std::string, std::string>& HandMadeOrders() {
  static const std::pair<std::string, std::string> documents = [] {
    const auto name = [](std::string& fi, const std::string& s) {  // at most 64 octets
      fi += static_cast<char>(s.size() - 1);
      fi += s;
    };
    const auto value = [](std::string& fi, const std::string& s, bool add) {  // 1 to 264
      const int flag = add ? 0x40 : 0;
      if (s.size() <= 8) {
        fi += static_cast<char>(flag | static_cast<int>(s.size() - 1));
      } else {
        fi += static_cast<char>(flag | 0x08);
        fi += static_cast<char>(s.size() - 9);
      }
      fi += s;
    };
    const auto chunk = [](std::string& fi, const std::string& s, bool add) {  // 3 to 258
      fi += static_cast<char>(add ? 0x92 : 0x82);
      fi += static_cast<char>(s.size() - 3);
      fi += s;
    };
    const std::string note = "Deliver before noon, ring twice.";
    std::string xml = "<orders>";
    std::string fi = std::string("\xE0\x00\x00\x01\x00\x3C", 6);
    name(fi, "orders");
    for (int n = 0; xml.size() < kDocumentSize; ++n) {
      const std::string id = std::to_string(n);
      const std::string sku = "SKU-" + std::to_string(n * 7 + 1000);
      const std::string text = "Widget number " + id;
      xml += "<order id=\"" + id + "\" status=\"open\"><item sku=\"" + sku + "\" qty=\"3\">" +
             text + "</item><note>" + note + "</note></order>";
      const bool first = n == 0;
      if (first) {
        fi += '\x7C';
        name(fi, "order");
        fi += '\x78';
        name(fi, "id");
      } else {
        fi += "\x41";
        fi += '\x00';
      }
      value(fi, id, false);
      if (first) {
        fi += '\x78';
        name(fi, "status");
        value(fi, "open", true);
        fi += "\xF0\x7C";
        name(fi, "item");
        fi += '\x78';
        name(fi, "sku");
      } else {
        fi += "\x01\x80\xF0\x42\x02";
      }
      value(fi, sku, false);
      if (first) {
        fi += '\x78';
        name(fi, "qty");
        value(fi, "3", true);
      } else {
        fi += "\x03\x81";
      }
      fi += '\xF0';
      chunk(fi, text, false);
      fi += '\xF0';
      if (first) {
        fi += '\x3C';
        name(fi, "note");
        chunk(fi, note, true);
      } else {
        fi += "\x03\xA0";
      }
      fi += "\xF0\xF0";
    }
    xml += "</orders>";
    fi += "\xF0\xF0";
    return std::make_pair(xml, fi);
  }();
  return documents;
}

void BM_RawExpatHandMade(benchmark::State& state) {
  const std::string& xml = HandMadeOrders().first;
  long events = 0;
  for (auto _ : state) events = bench::ParseWithExpat(xml.data(), xml.size());
  benchmark::DoNotOptimize(events);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * xml.size());
}
BENCHMARK(BM_RawExpatHandMade)->Unit(benchmark::kMillisecond);

// Fast Infoset into a document tree and released, nothing walked: the decoding alone. MB/s of
// the XML text, so that it compares with expat on that text.
void LoadTree(benchmark::State& state, const unsigned char* fi, std::uint32_t length,
              std::size_t xmlLength) {
  for (auto _ : state) {
    CXmlDocument document;
    document.LoadXmlStream(fi, length);
    benchmark::DoNotOptimize(document.GetDocumentElement());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * xmlLength));
  state.counters["fi_MB"] = static_cast<double>(length) / 1e6;
}

void BM_LoadTreeFromFi(benchmark::State& state) {
  LoadTree(state, FiDocument().GetData(), FiDocument().GetLength(), XmlLength());
}
BENCHMARK(BM_LoadTreeFromFi)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

void BM_LoadTreeFromHandMadeFi(benchmark::State& state) {
  const auto& [xml, fi] = HandMadeOrders();
  const auto* fiBytes = reinterpret_cast<const unsigned char*>(fi.data());
  if (LoadAndWalk(fiBytes, static_cast<std::uint32_t>(fi.size())) !=
      LoadAndWalk(reinterpret_cast<const unsigned char*>(xml.data()),
                  static_cast<std::uint32_t>(xml.size()))) {
    state.SkipWithError("the Fast Infoset document is not the XML one");
  }
  LoadTree(state, fiBytes, static_cast<std::uint32_t>(fi.size()), xml.size());
}
BENCHMARK(BM_LoadTreeFromHandMadeFi)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

// ---- Encoding -----------------------------------------------------------------------------------

// Writes `object` as Fast Infoset with `context`, timing it against ToXmlStream of the same object
// run untimed in each iteration. Counters: x_xml (CPU time over the XML writer's), fi_share (the
// binary size over the XML written from the same object) and gz_share (both gzip-compressed, the
// Fast Infoset over the XML's own gzip size: what the binary form still saves once compressed).
void EncodeAgainstXml(benchmark::State& state, const CXmlObjectBase& object,
                      const CXmlSerializationContext& context) {
  const CBinaryData xml =
      object.ToXmlStream(false, false, XmlEncoding_UTF8, EOLType_LF, context, CompressionType_None);
  std::uint32_t written = 0;
  double fiMs = 0;
  double xmlMs = 0;
  for (auto _ : state) {
    const double start = ThreadMilliseconds();
    written = ToFi(object, context).GetLength();
    const double encoded = ThreadMilliseconds();
    state.PauseTiming();
    benchmark::DoNotOptimize(object.ToXmlStream(false, false, XmlEncoding_UTF8, EOLType_LF, context,
                                                CompressionType_None));
    xmlMs += ThreadMilliseconds() - encoded;
    fiMs += encoded - start;
    state.ResumeTiming();
  }
  const double xmlLength = xml.GetLength();
  const double fiGzip = ToFi(object, context, CompressionType_GZip).GetLength();
  const double xmlGzip =
      object.ToXmlStream(false, false, XmlEncoding_UTF8, EOLType_LF, context, CompressionType_GZip)
          .GetLength();
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * xml.GetLength());
  state.counters["x_xml"] = fiMs / xmlMs;
  state.counters["fi_share"] = written / xmlLength;
  state.counters["fi_gz_share"] = fiGzip / xmlLength;
  state.counters["gz_vs_xml_gz"] = fiGzip / xmlGzip;
}

void BM_WriteFiFromTree(benchmark::State& state) {
  EncodeAgainstXml(state, *ReadTree(), CXmlSerializationContext::GetDefaultContext());
}
BENCHMARK(BM_WriteFiFromTree)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

void BM_WriteFiFromObjects(benchmark::State& state) {
  EncodeAgainstXml(state, *ReadOrder(), CXmlSerializationContext::GetDefaultContext());
}
BENCHMARK(BM_WriteFiFromObjects)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

void BM_WriteFiFromObjectsTyped(benchmark::State& state) {
  EncodeAgainstXml(state, *ReadOrder(), TypedContext());
}
BENCHMARK(BM_WriteFiFromObjectsTyped)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

}  // namespace
