// Parsing into the tree against raw expat on the same bytes, the file modes and gzip input, with
// a generated data-oriented document of about 10 MB; and the memory held by the tree of a
// 100 MB document (peak resident size, from /proc/self/status).
#include "OvXmlLib6/xml/XmlDocument.h"
#include "xml/Compression.h"

#include <expat.h>

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <malloc.h>
#include <string>
#include <unistd.h>
#include <vector>

using namespace OvXmlLib6;

namespace {

// Orders with attributes, names with some non-ASCII letters, numbers, dates and date-times,
// indented as a pretty-printer would.
class DocumentGenerator {
 public:
  // Appends records to `out` until it holds at least `size` bytes (closing the root).
  void Generate(std::string& out, std::size_t size) {
    out += "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";
    out += "<orders xmlns=\"urn:example:orders\" xmlns:x=\"urn:example:extensions\">\n";
    while (out.size() < size) AppendOrder(out);
    out += "</orders>\n";
  }

  void AppendOrder(std::string& out) {
    static const char* const kNames[] = {"J\xC3\xBCrgen M\xC3\xBCller",
                                         "Ana Garc\xC3\xAD"
                                         "a",
                                         "Li Wei",
                                         "Zo\xC3\xAB Dupont",
                                         "Olga Petrova",
                                         "Bj\xC3\xB6rn Sj\xC3\xB6"
                                         "berg",
                                         "Mary Smith"};
    static const char* const kStatus[] = {"open", "shipped", "paid", "cancelled"};
    const unsigned id = m_next++;
    char line[256];
    std::snprintf(line, sizeof line,
                  "  <order id=\"%u\" status=\"%s\" currency=\"EUR\">\n"
                  "    <customer>%s</customer>\n"
                  "    <date>2024-%02u-%02u</date>\n"
                  "    <created>2024-%02u-%02uT%02u:%02u:%02uZ</created>\n",
                  id, kStatus[Random() % 4], kNames[Random() % 7], 1 + Random() % 12,
                  1 + Random() % 28, 1 + Random() % 12, 1 + Random() % 28, Random() % 24,
                  Random() % 60, Random() % 60);
    out += line;
    const unsigned items = 1 + Random() % 4;
    for (unsigned i = 0; i < items; ++i) {
      std::snprintf(line, sizeof line, "    <item sku=\"SKU-%05u\" price=\"%u.%02u\">%u</item>\n",
                    Random() % 100000, Random() % 500, Random() % 100, 1 + Random() % 20);
      out += line;
    }
    std::snprintf(line, sizeof line, "    <amount>%u.%02u</amount>\n", Random() % 100000,
                  Random() % 100);
    out += line;
    if (Random() % 4 == 0) out += "    <x:note>Deliver before noon, ring twice.</x:note>\n";
    out += "  </order>\n";
  }

 private:
  unsigned Random() {
    m_state = m_state * 1103515245u + 12345u;
    return (m_state >> 8) & 0xFFFFFF;
  }
  unsigned m_state = 12345;
  unsigned m_next = 100000;
};

const std::string& Document() {
  static const std::string doc = [] {
    std::string text;
    DocumentGenerator().Generate(text, 10u << 20);
    return text;
  }();
  return doc;
}

const unsigned char* Bytes(const std::string& s) {
  return reinterpret_cast<const unsigned char*>(s.data());
}

void SetBytes(benchmark::State& state, std::size_t perIteration) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * perIteration));
}

void XMLCALL NoStart(void*, const XML_Char*, const XML_Char**) {}
void XMLCALL NoEnd(void*, const XML_Char*) {}
void XMLCALL NoText(void*, const XML_Char*, int) {}

// The floor: expat alone, set up as the tree's reader sets it up (namespace processing with the
// '|' separator, fed in the same 256 KiB pieces) but with handlers that do nothing.
void BM_RawExpat(benchmark::State& state) {
  const std::string& doc = Document();
  for (auto _ : state) {
    XML_Parser parser = XML_ParserCreateNS(nullptr, '|');
    XML_SetElementHandler(parser, &NoStart, &NoEnd);
    XML_SetCharacterDataHandler(parser, &NoText);
    const std::size_t piece = 256 * 1024;
    for (std::size_t at = 0; at < doc.size(); at += piece) {
      const std::size_t n = std::min(piece, doc.size() - at);
      if (XML_Parse(parser, doc.data() + at, static_cast<int>(n), at + n == doc.size()) !=
          XML_STATUS_OK) {
        state.SkipWithError("parse failed");
      }
    }
    XML_ParserFree(parser);
  }
  SetBytes(state, doc.size());
}
BENCHMARK(BM_RawExpat)->Unit(benchmark::kMillisecond);

// Parsing into the tree; each load first releases the tree of the previous one.
void BM_LoadXmlStream(benchmark::State& state) {
  const std::string& doc = Document();
  CXmlDocument document;
  for (auto _ : state) {
    document.LoadXmlStream(Bytes(doc), static_cast<std::uint32_t>(doc.size()));
    benchmark::DoNotOptimize(document.GetDocumentElement());
  }
  SetBytes(state, doc.size());
}
BENCHMARK(BM_LoadXmlStream)->Unit(benchmark::kMillisecond);

std::string TempFile(const char* name, const std::string& content) {
  std::string path = std::string("/tmp/ovxml_bench_") + std::to_string(::getpid()) + "_" + name;
  std::ofstream(path, std::ios::binary).write(content.data(), std::streamsize(content.size()));
  return path;
}

void LoadFile(benchmark::State& state, bool async) {
  const std::string& doc = Document();
  const std::string path = TempFile(async ? "async.xml" : "sync.xml", doc);
  AsyncFromXmlFile(async);
  CXmlDocument document;
  for (auto _ : state) {
    document.Load(path.c_str());
    benchmark::DoNotOptimize(document.GetDocumentElement());
  }
  AsyncFromXmlFile(false);
  std::remove(path.c_str());
  SetBytes(state, doc.size());
}
void BM_LoadFileAsync(benchmark::State& state) { LoadFile(state, true); }
void BM_LoadFileSync(benchmark::State& state) { LoadFile(state, false); }
BENCHMARK(BM_LoadFileAsync)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_LoadFileSync)->Unit(benchmark::kMillisecond);

// gzip input: inflation, then the tree. Bytes are counted as the inflated size.
void BM_LoadGzipStream(benchmark::State& state) {
  const std::string& doc = Document();
  const CBinaryData packed = detail::Deflate(Bytes(doc), doc.size(), 1);
  CXmlDocument document;
  for (auto _ : state) {
    document.LoadXmlStream(packed.GetData(), packed.GetLength());
    benchmark::DoNotOptimize(document.GetDocumentElement());
  }
  state.counters["packed_MB"] = packed.GetLength() / 1e6;
  SetBytes(state, doc.size());
}
BENCHMARK(BM_LoadGzipStream)->Unit(benchmark::kMillisecond);

// ---- Memory ------------------------------------------------------------------------------

long StatusKiB(const char* field) {
  std::ifstream status("/proc/self/status");
  std::string line;
  const std::size_t n = std::strlen(field);
  while (std::getline(status, line)) {
    if (line.compare(0, n, field) == 0) return std::atol(line.c_str() + n + 1);
  }
  return -1;
}

// Returns freed memory to the system and restarts the peak from the current resident size.
long ResetPeak() {
  malloc_trim(0);
  std::ofstream("/proc/self/clear_refs") << "5";
  return StatusKiB("VmRSS");
}

std::size_t TouchAll(const CXmlElement* root) {
  std::size_t bytes = 0;
  std::vector<const CXmlElement*> stack{root};
  while (!stack.empty()) {
    const CXmlElement* e = stack.back();
    stack.pop_back();
    bytes += e->GetText().size();
    for (const CXmlAttribute* a : e->GetAttributes()) bytes += a->GetValue().size();
    for (const CXmlElement* c = e->GetFirstElement(); c; c = c->GetNextSiblingElement()) {
      stack.push_back(c);
    }
  }
  return bytes;
}

// Peak resident memory added by loading a 100 MB document, as a multiple of its size: from a
// file in each file mode, from a block the caller holds (which the figure then includes), and
// from a gzip file.
void BM_PeakMemory100MB(benchmark::State& state) {
  // 0 async file, 1 sync file, 2 stream, 3 gzip file
  const int mode = static_cast<int>(state.range(0));
  const std::string path = std::string("/tmp/ovxml_bench_") + std::to_string(::getpid()) + "_big";
  std::size_t size = 0;
  {
    std::ofstream file(path, std::ios::binary);
    std::string chunk;
    DocumentGenerator generator;
    chunk =
        "<?xml version=\"1.0\"?>\n<orders xmlns=\"urn:example:orders\" "
        "xmlns:x=\"urn:example:extensions\">\n";
    while (size + chunk.size() < (100u << 20)) {
      generator.AppendOrder(chunk);
      if (chunk.size() > (1u << 20)) {
        file << chunk;
        size += chunk.size();
        chunk.clear();
      }
    }
    chunk += "</orders>\n";
    file << chunk;
    size += chunk.size();
  }
  if (mode == 3) {
    std::string text;
    {
      std::ifstream in(path, std::ios::binary);
      text.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
    }
    const CBinaryData packed = detail::Deflate(Bytes(text), text.size(), 1);
    std::ofstream(path, std::ios::binary)
        .write(reinterpret_cast<const char*>(packed.GetData()), packed.GetLength());
  }
  for (auto _ : state) {
    long peakKiB = 0;
    long baseKiB = 0;
    {
      CXmlDocument document;
      std::string block;
      if (mode == 2) {
        std::ifstream in(path, std::ios::binary);
        block.assign(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
      }
      baseKiB = ResetPeak() - (mode == 2 ? long(block.size() / 1024) : 0);
      AsyncFromXmlFile(mode == 0);
      if (mode == 2) {
        document.LoadXmlStream(Bytes(block), static_cast<std::uint32_t>(block.size()));
      } else {
        document.Load(path.c_str());
      }
      AsyncFromXmlFile(false);
      peakKiB = StatusKiB("VmHWM");
      state.counters["tree_resident_MB"] = (StatusKiB("VmRSS") - baseKiB) / 1024.0;
      // What the tree grows to once every text, attribute list and value has been asked for
      // as a std::string or std::vector, as the serialization engine does.
      benchmark::DoNotOptimize(TouchAll(document.GetDocumentElement()));
      state.counters["read_resident_MB"] = (StatusKiB("VmRSS") - baseKiB) / 1024.0;
    }
    state.counters["peak_MB"] = (peakKiB - baseKiB) / 1024.0;
    state.counters["peak_ratio"] = (peakKiB - baseKiB) * 1024.0 / double(size);
    state.counters["doc_MB"] = size / 1048576.0;
  }
  std::remove(path.c_str());
}
BENCHMARK(BM_PeakMemory100MB)
    ->Arg(0)
    ->Arg(1)
    ->Arg(2)
    ->Arg(3)
    ->Iterations(1)
    ->Unit(benchmark::kMillisecond);

}  // namespace
