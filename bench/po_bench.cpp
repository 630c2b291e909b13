// The generated classes of the purchase-order example on a ~10 MB order (PoDocument.h), against
// raw expat parsing of the same bytes, in one run:
//   - the whole read path (FromXmlStream into a new order, every value read back through the
//     getters, the objects released) should cost at most 2.5 times the raw parse (counter
//     x_expat, paired with an expat parse in every iteration so that both see the same load);
//   - writing, to a string and to a gzip stream, should run at 300 MB/s of XML or more;
//   - the bound objects should hold at most 4 times the document's size (counter x_document).
// The ratios only hold within one run on a quiet machine; on a shared one, interleave the
// repetitions so that every benchmark sees the same load:
//   po_bench --benchmark_repetitions=9 --benchmark_enable_random_interleaving=true
//            --benchmark_report_aggregates_only=true
//
// Memory is counted by this program's own malloc, free and their kin, which pass every call on
// to glibc and, while a measurement runs, add up what each block takes: its usable size and
// glibc's size field in front of it. That sees all of the heap: the library's objects and
// strings, its small-object slabs (aligned_alloc) and expat's buffers.
#include "BenchSupport.h"
#include "PoDocument.h"
#include "po.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <string>
#include <time.h>

using namespace OvXmlLib6;

// ---- The counting heap ----
// A sanitizer brings its own malloc, which this one would bypass; the memory figures are left out
// of such builds.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define OVXML_BENCH_COUNTING_HEAP 0
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer) || \
    __has_feature(memory_sanitizer)
#define OVXML_BENCH_COUNTING_HEAP 0
#endif
#endif
#ifndef OVXML_BENCH_COUNTING_HEAP
#define OVXML_BENCH_COUNTING_HEAP 1
#endif

namespace {

// The benchmarks run on one thread, and the counts change only while a measurement runs.
bool g_counting = false;
std::int64_t g_live = 0;
std::int64_t g_peak = 0;

}  // namespace

#if OVXML_BENCH_COUNTING_HEAP
// glibc's own entry points, which the replacements below pass every call to.
extern "C" {
void* __libc_malloc(std::size_t size);
void __libc_free(void* memory);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
}

namespace {

std::int64_t Footprint(void* memory) {
  return static_cast<std::int64_t>(malloc_usable_size(memory) + sizeof(std::size_t));
}

void* Counted(void* memory) {
  if (g_counting && memory != nullptr) {
    g_live += Footprint(memory);
    g_peak = std::max(g_peak, g_live);
  }
  return memory;
}

void Uncount(void* memory) {
  if (g_counting && memory != nullptr) g_live -= Footprint(memory);
}

}  // namespace

extern "C" {
void* malloc(std::size_t size) noexcept { return Counted(__libc_malloc(size)); }
void free(void* memory) noexcept {
  Uncount(memory);
  __libc_free(memory);
}
void* calloc(std::size_t count, std::size_t size) noexcept {
  return Counted(__libc_calloc(count, size));
}
void* realloc(void* memory, std::size_t size) noexcept {
  Uncount(memory);
  return Counted(__libc_realloc(memory, size));
}
void* memalign(std::size_t alignment, std::size_t size) noexcept {
  return Counted(__libc_memalign(alignment, size));
}
void* aligned_alloc(std::size_t alignment, std::size_t size) noexcept {
  return Counted(__libc_memalign(alignment, size));
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) noexcept {
  *memory = Counted(__libc_memalign(alignment, size));
  return *memory == nullptr && size != 0 ? 12 /* ENOMEM */ : 0;
}
}
#endif

namespace {

constexpr std::size_t kDocumentSize = 10 * 1024 * 1024;

const bench::PoDocument& Generated() {
  static const bench::PoDocument document = bench::MakePoDocument(kDocumentSize);
  return document;
}

const unsigned char* Bytes() {
  return reinterpret_cast<const unsigned char*>(Generated().xml.data());
}
std::uint32_t Length() { return static_cast<std::uint32_t>(Generated().xml.size()); }

// Everything the order holds, read back through the getters: numbers summed, strings and
// binary data by length, dates by their fields, decimals through ToDouble. Whatever the classes
// keep lazily has to be produced here.
struct Visit {
  double sum = 0;
  std::size_t items = 0;
  std::size_t orderComments = 0;
};

// The fields the value's kind has (asking a date for its hour throws).
void AddDate(Visit& visit, const CDateTime& date) {
  visit.sum += date.GetYear() + date.GetMonth();
  if (date.GetType() == CDateTime::gYearMonth) return;
  visit.sum += date.GetDay();
  if (date.GetType() == CDateTime::dateTime)
    visit.sum += date.GetHour() + date.GetMinute() + date.GetSecond();
}

void AddAddress(Visit& visit, const po::CAddress* address) {
  if (address == nullptr) return;
  visit.sum += static_cast<double>(address->GetName().size() + address->GetStreet().size() +
                                   address->GetCity().size());
  if (const auto* us = dynamic_cast<const po::CUSAddress*>(address)) {
    visit.sum += static_cast<double>(us->GetState().size() + us->GetZip().size());
  } else if (const auto* uk = dynamic_cast<const po::CUKAddress*>(address)) {
    visit.sum += static_cast<double>(uk->GetPostcode().size());
  }
}

Visit VisitOrder(const po::CPurchaseOrder& order) {
  Visit visit;
  AddDate(visit, order.GetOrderDate());
  visit.sum += order.GetStatus() + static_cast<double>(order.GetCurrency().size());
  AddAddress(visit, order.GetShipTo().get());
  AddAddress(visit, order.GetBillTo().get());
  const po::CContactGroup& contact = *order.GetContactGroup();
  visit.sum += static_cast<double>(contact.GetContactName().size() + contact.GetPhone().size() +
                                   order.GetContactLanguage().size());
  for (const std::string& comment : *order.GetComment()) {
    visit.sum += static_cast<double>(comment.size());
    ++visit.orderComments;
  }
  for (const po::CItem* item : *order.GetItems()->GetItem()) {
    visit.sum += static_cast<double>(item->GetPartNum().size() + item->GetProductName().size()) +
                 item->GetQuantity() + item->GetUnitPrice().ToDouble();
    if (item->IsShipDateSet()) AddDate(visit, item->GetShipDate());
    if (item->IsCommentSet()) visit.sum += static_cast<double>(item->GetComment().size());
    for (const CAttribute* attribute : *item->GetAnyAttributes()) {
      visit.sum +=
          static_cast<double>(attribute->GetName().size() + attribute->GetNamespace().size() +
                              attribute->GetValue().size());
    }
    ++visit.items;
  }
  const po::CPayment& payment = *order.GetPayment();
  if (const po::CCreditCard* card = payment.GetCreditCard().get()) {
    visit.sum += static_cast<double>(card->GetHolder().size() + card->GetNumber().size());
    AddDate(visit, card->GetExpires());
  }
  visit.sum += static_cast<double>(payment.GetBankTransfer().size());
  if (const po::CDelivery* delivery = order.GetDelivery().get()) {
    visit.sum += delivery->GetPriority() + static_cast<double>(delivery->GetInstructions().size());
    if (delivery->IsWindowSet()) AddDate(visit, delivery->GetWindow());
  }
  visit.sum += order.GetSignature().GetLength();
  for (const CElement* extension : *order.GetAny()) {
    visit.sum += static_cast<double>(extension->GetName().size() + extension->GetText().size());
    for (const CAttribute* attribute : *extension->GetAttributes())
      visit.sum += static_cast<double>(attribute->GetValue().size());
  }
  return visit;
}

CSmartPtr<po::CPurchaseOrder> ReadOrder() {
  CSmartPtr<po::CPurchaseOrder> order = new po::CPurchaseOrder();
  order->FromXmlStream(Bytes(), Length());
  return order;
}

// The generated document, checked once: it must read into the classes without error and give
// back every item and comment it was written with, or the figures would measure something else.
const bench::PoDocument& Document() {
  static const bool checked = [] {
    const char* failure = nullptr;
    std::string message;
    try {
      if (bench::ParseWithExpat(Generated().xml.data(), Generated().xml.size()) < 0) {
        failure = "expat finds it malformed";
      } else {
        const Visit visit = VisitOrder(*ReadOrder());
        if (visit.items != static_cast<std::size_t>(Generated().items) ||
            visit.orderComments != static_cast<std::size_t>(Generated().orderComments)) {
          message = "it reads " + std::to_string(visit.items) + " items and " +
                    std::to_string(visit.orderComments) + " comments, written were " +
                    std::to_string(Generated().items) + " and " +
                    std::to_string(Generated().orderComments);
          failure = message.c_str();
        }
      }
    } catch (const COvException& e) {
      message = e.GetMessage();
      failure = message.c_str();
    }
    if (failure != nullptr) {
      std::fprintf(stderr, "po_bench: the generated purchase order does not read: %s\n", failure);
      std::abort();
    }
    return true;
  }();
  benchmark::DoNotOptimize(checked);
  return Generated();
}

// CPU time of this thread: on a shared machine, time spent waiting for a core would otherwise
// land in one side of a ratio and not the other.
double ThreadMilliseconds() {
  timespec now{};
  clock_gettime(CLOCK_THREAD_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) * 1e3 + static_cast<double>(now.tv_nsec) / 1e6;
}

void BM_RawExpat(benchmark::State& state) {
  const std::string& xml = Document().xml;
  long events = 0;
  for (auto _ : state) {
    events = bench::ParseWithExpat(xml.data(), xml.size());
    if (events < 0) state.SkipWithError("expat failed");
  }
  benchmark::DoNotOptimize(events);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * Length());
}
BENCHMARK(BM_RawExpat)->Unit(benchmark::kMillisecond);

// The whole path a user takes: read the order, visit every value, release the objects. Each
// iteration also parses the bytes with raw expat, untimed, so that x_expat compares the two
// under the same load (in CPU time of the thread). The expat parse after the release also settles
// the heap: glibc defers part of freeing many small blocks to the next large allocation, which
// would otherwise land in the next timed read.
void BM_ReadVisitRelease(benchmark::State& state) {
  const std::string& xml = Document().xml;
  double sum = 0;
  double readMs = 0;
  double expatMs = 0;
  for (auto _ : state) {
    const double start = ThreadMilliseconds();
    {
      CSmartPtr<po::CPurchaseOrder> order = ReadOrder();
      sum += VisitOrder(*order).sum;
    }
    const double read = ThreadMilliseconds();
    state.PauseTiming();
    if (bench::ParseWithExpat(xml.data(), xml.size()) < 0) state.SkipWithError("expat failed");
    expatMs += ThreadMilliseconds() - read;
    readMs += read - start;
    state.ResumeTiming();
  }
  benchmark::DoNotOptimize(sum);
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * Length());
  state.counters["x_expat"] = readMs / expatMs;
}
// The first reads of a process also pay for the heap's growth to its working size; the warm-up
// leaves that out, so that repetitions measure the steady state of a program that reads
// document after document.
BENCHMARK(BM_ReadVisitRelease)->Unit(benchmark::kMillisecond)->MinWarmUpTime(2.0);

// Writing the order read from the document, to text without declaration or indentation; MB/s
// of the text written.
void BM_ToXmlString(benchmark::State& state) {
  const CSmartPtr<po::CPurchaseOrder> order = ReadOrder();
  std::size_t written = 0;
  for (auto _ : state) {
    const std::string text = order->ToXml(false, false);
    written = text.size();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * written));
  state.counters["text_MB"] = static_cast<double>(written) / 1e6;
}
BENCHMARK(BM_ToXmlString)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

// The same text gzip-compressed by ToXmlStream; MB/s of the XML before compression, and the
// compressed size as a share of it.
void BM_ToXmlStreamGZip(benchmark::State& state) {
  const CSmartPtr<po::CPurchaseOrder> order = ReadOrder();
  const std::size_t xmlLength = order->ToXml(false, false).size();
  std::uint32_t compressed = 0;
  for (auto _ : state) {
    const CBinaryData out =
        order->ToXmlStream(false, false, XmlEncoding_UTF8, EOLType_LF,
                           CXmlSerializationContext::GetDefaultContext(), CompressionType_GZip);
    compressed = out.GetLength();
  }
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * xmlLength));
  state.counters["gzip_share"] = static_cast<double>(compressed) / static_cast<double>(xmlLength);
}
BENCHMARK(BM_ToXmlStreamGZip)->Unit(benchmark::kMillisecond)->MinWarmUpTime(1.0);

// The heap the bound objects hold once read (counted after the visit, so that anything built
// lazily is in), and the peak while reading, both above the heap in use before the read, in MB
// and as multiples of the document's size. A first order, read uncounted and kept alive, takes up
// the memory the library keeps for reuse from earlier reads (its last free small-object slabs),
// so that the counted order gets all of its memory from the heap. left_MB is what stays after
// the counted order's release: the slabs kept for reuse, anything beyond them is a leak.
void BM_ReadMemory(benchmark::State& state) {
  Document();
  if (!OVXML_BENCH_COUNTING_HEAP) {
    state.SkipWithError("the heap is not counted in a sanitizer build");
    return;
  }
  std::int64_t held = 0;
  std::int64_t peak = 0;
  std::int64_t left = 0;
  for (auto _ : state) {
    const CSmartPtr<po::CPurchaseOrder> first = ReadOrder();
    g_live = 0;
    g_peak = 0;
    g_counting = true;
    {
      CSmartPtr<po::CPurchaseOrder> order = ReadOrder();
      benchmark::DoNotOptimize(VisitOrder(*order).sum);
      held = g_live;
      peak = g_peak;
    }
    left = g_live;
    g_counting = false;
  }
  const double document = Length();
  state.counters["held_MB"] = static_cast<double>(held) / 1e6;
  state.counters["x_document"] = static_cast<double>(held) / document;
  state.counters["peak_MB"] = static_cast<double>(peak) / 1e6;
  state.counters["peak_x_document"] = static_cast<double>(peak) / document;
  state.counters["left_MB"] = static_cast<double>(left) / 1e6;
}
BENCHMARK(BM_ReadMemory)->Unit(benchmark::kMillisecond)->Iterations(3);

}  // namespace
