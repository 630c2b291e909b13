// Parsing and printing of a 20-digit CDecimal, the work behind decimalFromString and
// decimalToString, and, for information, CBigInteger multiplication and division on operands of
// a few hundred digits. Each figure is the median of five repetitions.
#include "OvXmlLib6/types/BigInteger.h"
#include "OvXmlLib6/types/Decimal.h"

#include <benchmark/benchmark.h>
#include <random>
#include <string>

using OvXmlLib6::CBigInteger;
using OvXmlLib6::CDecimal;

namespace {

// Twenty digits: twelve integral and eight fraction digits, with a sign.
const char kTwentyDigits[] = "-123456789012.34567890";

std::string RandomDigits(std::mt19937& rng, std::size_t length) {
  std::string text(1, static_cast<char>('1' + rng() % 9));
  while (text.size() < length) text += static_cast<char>('0' + rng() % 10);
  return text;
}

void BM_DecimalParse20Digits(benchmark::State& state) {
  for (auto _ : state) {
    CDecimal value(kTwentyDigits);
    benchmark::DoNotOptimize(value);
  }
}
BENCHMARK(BM_DecimalParse20Digits)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_DecimalToString20Digits(benchmark::State& state) {
  const CDecimal value(kTwentyDigits);
  for (auto _ : state) {
    std::string text = value.ToString();
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(BM_DecimalToString20Digits)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_DecimalToStringRounded(benchmark::State& state) {
  const CDecimal value(kTwentyDigits);
  for (auto _ : state) {
    std::string text = value.ToString(4);
    benchmark::DoNotOptimize(text.data());
  }
}
BENCHMARK(BM_DecimalToStringRounded)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_BigIntegerMultiply300Digits(benchmark::State& state) {
  std::mt19937 rng(1);
  const CBigInteger a(RandomDigits(rng, 300).c_str());
  const CBigInteger b(RandomDigits(rng, 300).c_str());
  for (auto _ : state) {
    CBigInteger product = a * b;
    benchmark::DoNotOptimize(product);
  }
}
BENCHMARK(BM_BigIntegerMultiply300Digits)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_BigIntegerDivide600By300Digits(benchmark::State& state) {
  std::mt19937 rng(2);
  const CBigInteger a(RandomDigits(rng, 600).c_str());
  const CBigInteger b(RandomDigits(rng, 300).c_str());
  for (auto _ : state) {
    CBigInteger quotient = a / b;
    benchmark::DoNotOptimize(quotient);
  }
}
BENCHMARK(BM_BigIntegerDivide600By300Digits)->Repetitions(5)->ReportAggregatesOnly(true);

}  // namespace
