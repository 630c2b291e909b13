// Reading a ~10 MB document into a tree of wildcard elements with FromXmlStream and writing it
// back with ToXmlStream, against raw expat parsing of the same bytes, in one run. Reading into
// bound objects should cost at most 2.5 times the raw parse, the whole path of reading, visiting
// every value and releasing at most 3 times, and writing should run at 200 MB/s or more. The ratios
// only hold within one run on a quiet machine; on a shared one, interleave the repetitions so that
// every benchmark sees the same load:
//   objects_bench --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
//                 --benchmark_report_aggregates_only=true
#include "BenchSupport.h"
#include "OvXmlLib6/core/SmartPtr.h"
#include "OvXmlLib6/core/XmlObjectBase.h"
#include "OvXmlLib6/metadata/Element.h"
#include "OvXmlLib6/xml/XmlDocument.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdio>
#include <malloc.h>
#include <memory>
#include <string>
#include <vector>

using namespace OvXmlLib6;

namespace {

constexpr std::size_t kDocumentSize = 10 * 1024 * 1024;

// Data-oriented orders with attributes, text, some non-ASCII letters and two namespaces,
// indented as a pretty-printer would.
const std::string& Document() {
  static const std::string document = [] {
    static const char* const kNames[] = {"J\xC3\xBCrgen M\xC3\xBCller", "Li Wei",
                                         "Zo\xC3\xAB Dupont", "Olga Petrova", "Mary Smith"};
    std::string out =
        "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n"
        "<orders xmlns=\"urn:example:orders\" xmlns:x=\"urn:example:ext\">\n";
    unsigned seed = 12345;
    auto next = [&seed] { return (seed = seed * 1103515245u + 12345u) >> 8; };
    char line[320];
    for (unsigned id = 1; out.size() < kDocumentSize; ++id) {
      std::snprintf(line, sizeof line,
                    "  <order id=\"%u\" status=\"open\" x:channel=\"web\">\n"
                    "    <customer>%s</customer>\n"
                    "    <date>2024-%02u-%02u</date>\n"
                    "    <item sku=\"SKU-%05u\" price=\"%u.%02u\">%u</item>\n"
                    "    <item sku=\"SKU-%05u\" price=\"%u.%02u\">%u</item>\n"
                    "    <x:note>Deliver &amp; ring twice</x:note>\n"
                    "  </order>\n",
                    id, kNames[next() % 5], 1 + next() % 12, 1 + next() % 28, next() % 100000,
                    next() % 500, next() % 100, 1 + next() % 20, next() % 100000, next() % 500,
                    next() % 100, 1 + next() % 20);
      out += line;
    }
    out += "</orders>\n";
    return out;
  }();
  return document;
}

const unsigned char* Bytes() { return reinterpret_cast<const unsigned char*>(Document().data()); }
std::uint32_t Length() { return static_cast<std::uint32_t>(Document().size()); }

// Namespace-aware expat with handlers that only count, the floor any tree builder stands on.
void BM_RawExpat(benchmark::State& state) {
  long events = 0;
  for (auto _ : state) {
    events = bench::ParseWithExpat(Document().data(), Document().size());
    if (events < 0) state.SkipWithError("expat failed");
  }
  benchmark::DoNotOptimize(events);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * Length());
}
BENCHMARK(BM_RawExpat)->Unit(benchmark::kMillisecond);

// The intermediate tree alone, for the split of the read's cost.
void BM_LoadXmlStreamTreeOnly(benchmark::State& state) {
  for (auto _ : state) {
    CXmlDocument document;
    document.LoadXmlStream(Bytes(), Length());
    benchmark::DoNotOptimize(document.GetDocumentElement());
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * Length());
}
BENCHMARK(BM_LoadXmlStreamTreeOnly)->Unit(benchmark::kMillisecond);

// The heap after the previous read's teardown, settled while the timer is paused: glibc defers
// part of freeing a million small blocks (merging its fast bins) to the next large allocation,
// which would otherwise land in the timed read.
//   warm (0): the freed memory stays with the process, as in a program that reads document after
//             document; the settling is one large allocation, which makes glibc merge.
//   cold (1): the memory goes back to the system (malloc_trim), so the read pays for fresh pages
//             as the first read of a process does.
void BM_FromXmlStreamIntoElements(benchmark::State& state) {
  const bool cold = state.range(0) != 0;
  for (auto _ : state) {
    CSmartPtr<CElement> root = new CElement("orders");
    root->FromXmlStream(Bytes(), Length());
    state.PauseTiming();
    root = nullptr;
    if (cold) {
      malloc_trim(0);
    } else {
      benchmark::DoNotOptimize(std::unique_ptr<char[]>(new char[100 * 1024]));
    }
    state.ResumeTiming();
  }
  state.SetLabel(cold ? "cold heap" : "warm heap");
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * Length());
}
BENCHMARK(BM_FromXmlStreamIntoElements)->Arg(0)->Arg(1)->Unit(benchmark::kMillisecond);

// The whole path a user takes: read the document into CElements, visit every element's name,
// namespace and text and every attribute's name, namespace and value through GetAttributes,
// GetChildElements and the collections' iterators, then release the tree. Lazy structures only
// move cost into the walk, so this is the figure to compare with raw expat (target: 3x).
std::size_t WalkElements(CElement* root) {
  std::size_t bytes = 0;
  std::vector<CElement*> pending{root};
  while (!pending.empty()) {
    CElement* element = pending.back();
    pending.pop_back();
    bytes += element->GetName().size() + element->GetNamespace().size() + element->GetText().size();
    for (CAttribute* attribute : *element->GetAttributes()) {
      bytes += attribute->GetName().size() + attribute->GetNamespace().size() +
               attribute->GetValue().size();
    }
    for (CElement* child : *element->GetChildElements()) pending.push_back(child);
  }
  return bytes;
}

void BM_ReadWalkRelease(benchmark::State& state) {
  std::size_t bytes = 0;
  std::size_t peak = 0;
  for (auto _ : state) {
    const std::size_t before = bench::HeapInUse();
    CSmartPtr<CElement> root = new CElement("orders");
    root->FromXmlStream(Bytes(), Length());
    bytes += WalkElements(root.get());
    peak = std::max(peak, bench::HeapInUse() - std::min(before, bench::HeapInUse()));
    root = nullptr;
  }
  benchmark::DoNotOptimize(bytes);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * Length());
  // The walked tree's heap, in MB and as a multiple of the document's size.
  state.counters["tree_MB"] = static_cast<double>(peak) / 1e6;
  state.counters["x_document"] = static_cast<double>(peak) / Length();
}
// The first reads of a process also pay for the heap's growth to its working size; the warm-up
// leaves that out, so that repetitions measure the steady state of a program that reads
// document after document.
BENCHMARK(BM_ReadWalkRelease)->Unit(benchmark::kMillisecond)->MinWarmUpTime(2.0);

void BM_ToXmlStreamFromElements(benchmark::State& state) {
  CSmartPtr<CElement> root = new CElement("orders");
  root->FromXmlStream(Bytes(), Length());
  std::uint32_t written = 0;
  for (auto _ : state) {
    const CBinaryData out = root->ToXmlStream(true, false);
    written = out.GetLength();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * written);
}
BENCHMARK(BM_ToXmlStreamFromElements)->Unit(benchmark::kMillisecond);

}  // namespace
