// Parsing and printing of a 20-digit CDecimal, the work behind decimalFromString and
// decimalToString, and, for information, CBigInteger multiplication, division and square root
// on operands of a few hundred and of 50,000 digits. Each figure is the median of five
// repetitions.
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

// Operands of state.range(0) digits: a few hundred, as values of documents have, and 50,000,
// half the digit limit, where the cost of the schoolbook algorithms shows.
void BM_BigIntegerMultiply(benchmark::State& state) {
  std::mt19937 rng(1);
  const auto digits = static_cast<std::size_t>(state.range(0));
  const CBigInteger a(RandomDigits(rng, digits).c_str());
  const CBigInteger b(RandomDigits(rng, digits).c_str());
  for (auto _ : state) {
    CBigInteger product = a * b;
    benchmark::DoNotOptimize(product);
  }
}
BENCHMARK(BM_BigIntegerMultiply)->Arg(300)->Arg(50000)->Repetitions(5)->ReportAggregatesOnly(true);

// A dividend of twice the divisor's digits.
void BM_BigIntegerDivide(benchmark::State& state) {
  std::mt19937 rng(2);
  const auto digits = static_cast<std::size_t>(state.range(0));
  const CBigInteger a(RandomDigits(rng, 2 * digits).c_str());
  const CBigInteger b(RandomDigits(rng, digits).c_str());
  for (auto _ : state) {
    CBigInteger quotient = a / b;
    benchmark::DoNotOptimize(quotient);
  }
}
BENCHMARK(BM_BigIntegerDivide)->Arg(300)->Arg(50000)->Repetitions(5)->ReportAggregatesOnly(true);

void BM_BigIntegerSquareRoot(benchmark::State& state) {
  std::mt19937 rng(3);
  const CBigInteger a(RandomDigits(rng, static_cast<std::size_t>(state.range(0))).c_str());
  for (auto _ : state) {
    CBigInteger root = a.SquareRoot();
    benchmark::DoNotOptimize(root);
  }
}
BENCHMARK(BM_BigIntegerSquareRoot)
    ->Arg(300)
    ->Arg(50000)
    ->Unit(benchmark::kMillisecond)
    ->Repetitions(5)
    ->ReportAggregatesOnly(true);

}  // namespace
