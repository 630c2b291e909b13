// Per-call cost of the commonest conversions between lexical forms and values. Each benchmark
// cycles through a small set of typical values so that branch prediction cannot learn one input.
// Run with --benchmark_repetitions=5 --benchmark_report_aggregates_only=true for medians.
#include "OvXmlLib6/types/Conversions.h"

#include <benchmark/benchmark.h>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

using OvXmlLib6::CConversions;

namespace {

constexpr auto kCollapse = OvXmlLib6::CWhitespaceUtils::WhitespaceRule_Collapse;

const std::vector<std::string> kI4Texts = {"0",      "42",         "-17",         "123456",
                                           "-99999", "2147483647", "-2147483648", "7000"};
const std::vector<std::int32_t> kI4Values = {0,      42,         -17,         123456,
                                             -99999, 2147483647, -2147483647, 7000};
const std::vector<std::string> kR8Texts = {"0.1",     "-1.5e10",   "3.141592653589793",
                                           "1e-300",  "42",        "-0.000123456789",
                                           "6.02e23", "123456.789"};
const std::vector<double> kR8Values = {0.1,  -1.5e10,         3.141592653589793, 1e-300,
                                       42.0, -0.000123456789, 6.02e23,           123456.789};

const std::vector<std::string> kDateTimeTexts = {"2001-10-26T21:32:52",
                                                 "2004-02-29T00:00:00Z",
                                                 "1999-12-31T23:59:59.999",
                                                 "-0044-03-15T12:00:00+01:00",
                                                 "2024-06-01T08:30:00.123456789-05:00",
                                                 "1970-01-01T00:00:01"};

// Decimals of 20 digits.
const std::vector<std::string> kDecimalTexts = {"12345678901234.567890",  "-9876543210.9876543210",
                                                "0.12345678901234567890", "31415926535897932384",
                                                "-1000000000.0000000001", "55555555555555555.555"};

template <typename T>
const T& Cycle(const std::vector<T>& values, std::size_t& i) {
  const T& value = values[i];
  i = (i + 1) % values.size();
  return value;
}

void BM_i4FromString(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::i4FromString(Cycle(kI4Texts, i), kCollapse));
  }
}
BENCHMARK(BM_i4FromString);

// The C library's strtol on the same texts, for comparison with i4FromString.
void BM_i4FromString_strtol(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(std::strtol(Cycle(kI4Texts, i).c_str(), nullptr, 10));
  }
}
BENCHMARK(BM_i4FromString_strtol);

void BM_i4ToString(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::i4ToString(Cycle(kI4Values, i)));
  }
}
BENCHMARK(BM_i4ToString);

void BM_r8FromString(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::r8FromString(Cycle(kR8Texts, i), kCollapse));
  }
}
BENCHMARK(BM_r8FromString);

void BM_r8ToString(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::r8ToString(Cycle(kR8Values, i), nullptr));
  }
}
BENCHMARK(BM_r8ToString);

// The C library's "%.16g", for comparison with r8ToString.
void BM_r8ToString_snprintf(benchmark::State& state) {
  std::size_t i = 0;
  char buffer[48];
  for (auto _ : state) {
    const int n = std::snprintf(buffer, sizeof buffer, "%.16g", Cycle(kR8Values, i));
    benchmark::DoNotOptimize(std::string(buffer, static_cast<std::size_t>(n)));
  }
}
BENCHMARK(BM_r8ToString_snprintf);

void BM_datetimeFromString(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::datetimeFromString(Cycle(kDateTimeTexts, i), kCollapse));
  }
}
BENCHMARK(BM_datetimeFromString);

void BM_datetimeToString(benchmark::State& state) {
  std::vector<OvXmlLib6::CDateTime> values;
  for (const std::string& text : kDateTimeTexts) {
    values.push_back(CConversions::datetimeFromString(text, kCollapse));
  }
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::datetimeToString(Cycle(values, i)));
  }
}
BENCHMARK(BM_datetimeToString);

void BM_decimalFromString(benchmark::State& state) {
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::decimalFromString(Cycle(kDecimalTexts, i), kCollapse));
  }
}
BENCHMARK(BM_decimalFromString);

void BM_decimalToString(benchmark::State& state) {
  std::vector<OvXmlLib6::CDecimal> values;
  for (const std::string& text : kDecimalTexts) values.emplace_back(text.c_str());
  std::size_t i = 0;
  for (auto _ : state) {
    benchmark::DoNotOptimize(CConversions::decimalToString(Cycle(values, i), nullptr));
  }
}
BENCHMARK(BM_decimalToString);

}  // namespace
