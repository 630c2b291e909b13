// Throughput of the hexadecimal and base64 forms of CBinaryData over 1 MiB of random bytes.
// Bytes per second are counted on the binary side, so encode and decode figures compare.
#include "OvXmlLib6/types/BinaryData.h"
#include "types/Base16And64.h"

#include <benchmark/benchmark.h>
#include <malloc.h>
#include <random>
#include <string>
#include <vector>

using OvXmlLib6::CBinaryData;

namespace {

constexpr std::uint32_t kSize = 1 << 20;

// glibc serves blocks of a few MiB with fresh mmap()s, so every iteration would pay for page
// faults that dwarf the codec. Keeping them on the heap measures the code, not the kernel.
const bool kHeapTuned = [] {
  mallopt(M_MMAP_THRESHOLD, 256 << 20);
  mallopt(M_TRIM_THRESHOLD, 512 << 20);
  return true;
}();

CBinaryData RandomData() {
  std::vector<unsigned char> raw(kSize);
  std::mt19937 rng(42);
  for (auto& b : raw) b = static_cast<unsigned char>(rng());
  return CBinaryData(raw.data(), kSize, false);
}

// A plain memory copy of the same size: the floor every codec is compared with.
void BM_Memcpy(benchmark::State& state) {
  const CBinaryData data = RandomData();
  for (auto _ : state) {
    std::string copy(reinterpret_cast<const char*>(data.GetData()), data.GetLength());
    benchmark::DoNotOptimize(copy.data());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_Memcpy);

void BM_Base64Encode(benchmark::State& state) {
  const CBinaryData data = RandomData();
  for (auto _ : state) {
    std::string text = data.GetAsBase64();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_Base64Encode);

void BM_Base64Decode(benchmark::State& state) {
  const std::string text = RandomData().GetAsBase64();
  CBinaryData out;
  for (auto _ : state) {
    out.SetAsBase64(text.c_str());
    benchmark::DoNotOptimize(out.GetData());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_Base64Decode);

// MIME-style text with a line break every 76 characters, which leaves the four-at-a-time path.
void BM_Base64DecodeWrapped(benchmark::State& state) {
  const std::string plain = RandomData().GetAsBase64();
  std::string text;
  for (std::size_t i = 0; i < plain.size(); i += 76) text += plain.substr(i, 76) + "\r\n";
  CBinaryData out;
  for (auto _ : state) {
    out.SetAsBase64(text.c_str());
    benchmark::DoNotOptimize(out.GetData());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_Base64DecodeWrapped);

void BM_HexEncode(benchmark::State& state) {
  const CBinaryData data = RandomData();
  for (auto _ : state) {
    std::string text = data.GetAsHexString();
    benchmark::DoNotOptimize(text.data());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_HexEncode);

void BM_HexDecode(benchmark::State& state) {
  const std::string text = RandomData().GetAsHexString();
  CBinaryData out;
  for (auto _ : state) {
    out.SetAsHexString(text.c_str());
    benchmark::DoNotOptimize(out.GetData());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_HexDecode);

// The codec loops alone, into buffers allocated once: what the table-driven code costs without
// the allocation and zero-filling of the strings and arrays that the API returns.
void BM_CodecBase64Encode(benchmark::State& state) {
  const CBinaryData data = RandomData();
  std::string out(OvXmlLib6::detail::Base64EncodedLength(kSize), '\0');
  for (auto _ : state) {
    OvXmlLib6::detail::Base64Encode(data.GetData(), kSize, out.data());
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_CodecBase64Encode);

void BM_CodecBase64Decode(benchmark::State& state) {
  const std::string text = RandomData().GetAsBase64();
  std::vector<unsigned char> out(text.size());
  for (auto _ : state) {
    benchmark::DoNotOptimize(OvXmlLib6::detail::Base64Decode(text.data(), text.size(), out.data()));
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_CodecBase64Decode);

void BM_CodecHexEncode(benchmark::State& state) {
  const CBinaryData data = RandomData();
  std::string out(2 * kSize, '\0');
  for (auto _ : state) {
    OvXmlLib6::detail::HexEncode(data.GetData(), kSize, out.data());
    benchmark::DoNotOptimize(out.data());
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_CodecHexEncode);

void BM_CodecHexDecode(benchmark::State& state) {
  const std::string text = RandomData().GetAsHexString();
  std::vector<unsigned char> out(kSize);
  for (auto _ : state) {
    benchmark::DoNotOptimize(OvXmlLib6::detail::HexDecode(text.data(), text.size(), out.data()));
  }
  state.SetBytesProcessed(state.iterations() * kSize);
}
BENCHMARK(BM_CodecHexDecode);

}  // namespace
