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
#include "po.h"

#include <OvXmlLib6.h>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <stdlib.h>
#include <string>
#include <unistd.h>
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

// The Java codec enters attribute values and character chunks of up to 60 characters in its
// tables; the library's default is 6. This context uses the codec's limits, for sizes that
// compare like with like.
const CXmlSerializationContext& TablesLikeJavaContext() {
  static const CXmlSerializationContext context = [] {
    CXmlSerializationContext tuned;
    tuned.GetFIContext().SetAttributeMaxAddLength(60);
    tuned.GetFIContext().SetElementMaxAddLength(60);
    return tuned;
  }();
  return context;
}

// The same, with the numeric, boolean, binary and date types in binary.
const CXmlSerializationContext& TypedContext() {
  static const CXmlSerializationContext context = [] {
    CXmlSerializationContext typed(TablesLikeJavaContext());
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

// The same Fast Infoset into a document tree and released, nothing walked: the decoding alone, to
// set beside BM_RawExpat (expat on the XML text, building nothing).
void BM_LoadTreeFromFi(benchmark::State& state) {
  const CBinaryData& fi = FiDocument();
  for (auto _ : state) {
    CXmlDocument document;
    document.LoadXmlStream(fi.GetData(), fi.GetLength());
    benchmark::DoNotOptimize(document.GetDocumentElement());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * XmlLength());
  state.counters["fi_MB"] = static_cast<double>(fi.GetLength()) / 1e6;
}
BENCHMARK(BM_LoadTreeFromFi)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

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

void BM_WriteFiFromTree(benchmark::State& state, const CXmlSerializationContext* context) {
  EncodeAgainstXml(state, *ReadTree(), *context);
}
BENCHMARK_CAPTURE(BM_WriteFiFromTree, default_tables,
                  &CXmlSerializationContext::GetDefaultContext())
    ->Unit(benchmark::kMillisecond)
    ->MinWarmUpTime(1.0);
BENCHMARK_CAPTURE(BM_WriteFiFromTree, tables_like_java, &TablesLikeJavaContext())
    ->Unit(benchmark::kMillisecond)
    ->MinWarmUpTime(1.0);

void BM_WriteFiFromObjects(benchmark::State& state, const CXmlSerializationContext* context) {
  EncodeAgainstXml(state, *ReadOrder(), *context);
}
BENCHMARK_CAPTURE(BM_WriteFiFromObjects, default_tables,
                  &CXmlSerializationContext::GetDefaultContext())
    ->Unit(benchmark::kMillisecond)
    ->MinWarmUpTime(1.0);
BENCHMARK_CAPTURE(BM_WriteFiFromObjects, tables_like_java, &TablesLikeJavaContext())
    ->Unit(benchmark::kMillisecond)
    ->MinWarmUpTime(1.0);
BENCHMARK_CAPTURE(BM_WriteFiFromObjects, typed, &TypedContext())
    ->Unit(benchmark::kMillisecond)
    ->MinWarmUpTime(1.0);

// ---- The Java codec -----------------------------------------------------------------------------

// libfastinfoset-java on the XML the wildcard tree writes (what BM_WriteFiFromTree encodes), run
// once through bench/FiJavaBench.java when java and the codec are installed. Its medians become
// counters: java_enc_MBps (XML -> FI), java_dec_MBps (FI -> SAX events), both in MB/s of that
// XML, and java_fi_share (its output over that XML). The row's own time means nothing.
void BM_JavaCodec(benchmark::State& state) {
  static const char kJar[] = "/usr/share/java/FastInfoset.jar";
  if (std::system("command -v java > /dev/null 2>&1") != 0 || access(kJar, R_OK) != 0) {
    state.SkipWithError("java or libfastinfoset-java is not installed");
    for (auto _ : state) {
    }
    return;
  }
  const CBinaryData xml =
      ReadTree()->ToXmlStream(false, false, XmlEncoding_UTF8, EOLType_LF,
                              CXmlSerializationContext::GetDefaultContext(), CompressionType_None);
  char path[] = "/tmp/fi_bench_XXXXXX";
  const int fd = mkstemp(path);
  FILE* file = fd < 0 ? nullptr : fdopen(fd, "wb");
  if (file == nullptr || std::fwrite(xml.GetData(), 1, xml.GetLength(), file) != xml.GetLength()) {
    state.SkipWithError("cannot write the document for the Java codec");
    for (auto _ : state) {
    }
    return;
  }
  std::fclose(file);
  const std::string command =
      std::string("java -cp ") + kJar + " " OVXML_BENCH_DIR "/FiJavaBench.java " + path + " 7";
  double encodeMs = 0;
  double decodeMs = 0;
  unsigned long long fiBytes = 0;
  unsigned long long xmlBytes = 0;
  int fields = 0;
  for (auto _ : state) {
    FILE* java = popen(command.c_str(), "r");
    if (java != nullptr) {
      fields = std::fscanf(java, "encode_ms=%lf decode_ms=%lf fi_bytes=%llu xml_bytes=%llu",
                           &encodeMs, &decodeMs, &fiBytes, &xmlBytes);
      pclose(java);
    }
  }
  std::remove(path);
  if (fields != 4) {
    state.SkipWithError("the Java codec did not report its figures");
    return;
  }
  const double megabytes = static_cast<double>(xmlBytes) / (1024.0 * 1024.0);
  state.counters["java_enc_MBps"] = megabytes / (encodeMs / 1e3);
  state.counters["java_dec_MBps"] = megabytes / (decodeMs / 1e3);
  state.counters["java_fi_share"] = static_cast<double>(fiBytes) / static_cast<double>(xmlBytes);
}
BENCHMARK(BM_JavaCodec)->Unit(benchmark::kMillisecond)->Iterations(1);

}  // namespace
