// Writing a data-oriented document of about 10 MB with CXmlTextWriter: to a memory stream in
// UTF-8 and UTF-16 (taking the encoded text), and gzip-compressed. The writer calls are prepared
// once, so the figures measure the writer and the streams only. Bytes per second are counted over
// the document's UTF-8 size; the "output" counter gives the rate of encoded bytes.
#include "OvXmlLib6/xml/BinaryStream.h"
#include "OvXmlLib6/xml/XmlTextWriter.h"

#include <benchmark/benchmark.h>
#include <deque>
#include <string>
#include <vector>

using namespace OvXmlLib6;

namespace {

struct Call {
  enum Kind { kStart, kAttribute, kText, kEnd } kind;
  const char* a;
  const char* b;
  const char* c;
};

class Document {
 public:
  Document() {
    const char* ns = "urn:example:orders:2024";
    const char* customers[] = {"Zo\xC3\xAB M\xC3\xBCller", "Jan Kowalski",
                               "\xC5\x81ucja \xC5\xBB\xC3\xB3\xC5\x82w",
                               "Ana Pe\xC3\xB1"
                               "a",
                               "Sm\xC3\xA5 & Co"};
    const char* statuses[] = {"open", "shipped", "paid", "returned"};
    calls_.push_back({Call::kStart, "orders", ns, nullptr});
    for (int i = 0; size_ < 10'000'000; ++i) {
      Start("order", ns);
      Attribute("id", Keep(std::to_string(100000 + i)));
      Attribute("date", Keep("2024-" + Two(1 + i % 12) + "-" + Two(1 + i % 28) + "T" + Two(i % 24) +
                             ":" + Two(i % 60) + ":" + Two(i * 7 % 60) + "Z"));
      Attribute("status", statuses[i % 4]);
      Element("customer", ns, customers[i % 5]);
      for (int k = 0; k < 3; ++k) {
        Start("item", ns);
        Attribute("sku", Keep("SKU-" + std::to_string(10000 + (i * 3 + k) % 90000)));
        Attribute("qty", Keep(std::to_string(1 + (i + k) % 9)));
        Attribute("price", Keep(std::to_string(1 + (i * 13 + k) % 500) + "." + Two(i % 100)));
        End();
      }
      Element("total", ns, Keep(std::to_string(100 + i % 900) + ".50"));
      if (i % 4 == 0) Element("note", ns, "Deliver <before> noon & ring twice");
      End();
    }
    calls_.push_back({Call::kEnd, nullptr, nullptr, nullptr});
  }

  void WriteTo(CXmlTextWriter& w) const {
    for (const Call& call : calls_) {
      switch (call.kind) {
        case Call::kStart:
          w.WriteStartElement(call.a, call.b);
          break;
        case Call::kAttribute:
          w.WriteAttribute(call.a, call.b, call.c);
          break;
        case Call::kText:
          w.WriteText(call.a);
          break;
        case Call::kEnd:
          w.WriteEndElement();
          break;
      }
    }
  }

 private:
  static std::string Two(int n) { return std::string(1, char('0' + n / 10)) + char('0' + n % 10); }
  const char* Keep(std::string s) { return strings_.emplace_back(std::move(s)).c_str(); }
  void Start(const char* name, const char* ns) {
    calls_.push_back({Call::kStart, name, ns, nullptr});
    size_ += 2 * std::char_traits<char>::length(name) + 6;
  }
  void Attribute(const char* name, const char* value) {
    calls_.push_back({Call::kAttribute, name, "", value});
    size_ += std::char_traits<char>::length(name) + std::char_traits<char>::length(value) + 4;
  }
  void End() { calls_.push_back({Call::kEnd, nullptr, nullptr, nullptr}); }
  void Element(const char* name, const char* ns, const char* text) {
    Start(name, ns);
    calls_.push_back({Call::kText, text, nullptr, nullptr});
    size_ += std::char_traits<char>::length(text);
    End();
  }

  std::vector<Call> calls_;
  std::deque<std::string> strings_;
  std::size_t size_ = 0;  // a rough running estimate of the output, to stop near 10 MB
};

const Document& TheDocument() {
  static const Document document;
  return document;
}

// Writes the document to a memory stream; returns the internal text's size.
std::size_t WriteDocument(CTextStream& stream) {
  CXmlTextWriter w(&stream);
  w.Open();
  w.SetDefaultNamespace("urn:example:orders:2024");
  w.WriteHeader();
  TheDocument().WriteTo(w);
  w.Close();
  return stream.GetLength();
}

void Report(benchmark::State& state, std::size_t document, std::size_t output) {
  state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations() * document));
  state.counters["output"] =
      benchmark::Counter(static_cast<double>(state.iterations() * output),
                         benchmark::Counter::kIsRate, benchmark::Counter::kIs1024);
  state.counters["doc_MB"] = static_cast<double>(document) / 1e6;
}

void BM_WriteMemory(benchmark::State& state, XmlEncoding encoding) {
  TheDocument();
  std::size_t document = 0;
  std::size_t output = 0;
  for (auto _ : state) {
    CTextStream stream(encoding);
    document = WriteDocument(stream);
    const std::string encoded = stream.GetEncodedText();
    output = encoded.size();
    benchmark::DoNotOptimize(encoded.data());
  }
  Report(state, document, output);
}

void BM_WriteUtf8(benchmark::State& state) { BM_WriteMemory(state, XmlEncoding_UTF8); }
void BM_WriteUtf16(benchmark::State& state) { BM_WriteMemory(state, XmlEncoding_UTF16); }

void BM_WriteGzip(benchmark::State& state) {
  TheDocument();
  std::size_t document = 0;
  std::size_t output = 0;
  for (auto _ : state) {
    CTextStream stream(XmlEncoding_UTF8);
    document = WriteDocument(stream);
    CBinaryStream packed;
    packed.Append(stream.GetEncodedText());
    packed.Compress(CompressionType_GZip);
    output = packed.GetLength();
    benchmark::DoNotOptimize(packed.GetData().GetData());
  }
  Report(state, document, output);
}

}  // namespace

BENCHMARK(BM_WriteUtf8)->Unit(benchmark::kMillisecond)->MinTime(0.5);
BENCHMARK(BM_WriteUtf16)->Unit(benchmark::kMillisecond)->MinTime(0.5);
BENCHMARK(BM_WriteGzip)->Unit(benchmark::kMillisecond)->MinTime(0.5);
