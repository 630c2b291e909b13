// Parse and print of an xsd:dateTime with a fraction and a zone, and of an xsd:duration: the work
// behind the dateTime and duration conversions. Each runs five times; compare the medians.
#include "OvXmlLib6/types/DateTime.h"
#include "OvXmlLib6/types/DateTimeSpan.h"

#include <benchmark/benchmark.h>
#include <string>

using OvXmlLib6::CDateTime;
using OvXmlLib6::CDateTimeSpan;

namespace {

const char kDateTime[] = "2001-10-26T21:32:52.123456789+02:00";
const char kDuration[] = "-P1Y2M3DT4H5M6.123456789S";

void BM_DateTimeParse(benchmark::State& state) {
  CDateTime value;
  for (auto _ : state) {
    value.ParseXSDDateTime(kDateTime);
    benchmark::DoNotOptimize(value);
  }
}

void BM_DateTimeToString(benchmark::State& state) {
  const CDateTime value(kDateTime);
  for (auto _ : state) {
    std::string text = value.ToString();
    benchmark::DoNotOptimize(text.data());
  }
}

void BM_DurationParse(benchmark::State& state) {
  CDateTimeSpan value;
  for (auto _ : state) {
    value.ParseXSDDuration(kDuration);
    benchmark::DoNotOptimize(value);
  }
}

void BM_DurationToString(benchmark::State& state) {
  CDateTimeSpan value;
  value.ParseXSDDuration(kDuration);
  for (auto _ : state) {
    std::string text = value.ToString();
    benchmark::DoNotOptimize(text.data());
  }
}

// A construction from text as CConversions does it: a fresh value per call.
void BM_DateTimeConstruct(benchmark::State& state) {
  for (auto _ : state) {
    CDateTime value(kDateTime);
    benchmark::DoNotOptimize(value);
  }
}

void BM_DateTimeCompareZoned(benchmark::State& state) {
  const CDateTime a(kDateTime);
  const CDateTime b("2001-10-26T19:32:52.123456789");
  for (auto _ : state) benchmark::DoNotOptimize(a.CompareTo(b));
}

#define OVXML_DATETIME_BENCH(fn) \
  BENCHMARK(fn)->Repetitions(5)->ReportAggregatesOnly(true)->MinTime(0.2)

OVXML_DATETIME_BENCH(BM_DateTimeParse);
OVXML_DATETIME_BENCH(BM_DateTimeToString);
OVXML_DATETIME_BENCH(BM_DateTimeConstruct);
OVXML_DATETIME_BENCH(BM_DurationParse);
OVXML_DATETIME_BENCH(BM_DurationToString);
OVXML_DATETIME_BENCH(BM_DateTimeCompareZoned);

}  // namespace
