#!/usr/bin/env bash
# The test job: installs what is missing, then builds and runs the tests in three builds:
#   1. GCC with -Wall -Wextra -Werror: every test (plus the consumer builds through find_package
#      and add_subdirectory),
#   2. Clang with -Werror under AddressSanitizer and UndefinedBehaviorSanitizer, leaks checked:
#      every test,
#   3. Clang under ThreadSanitizer: the tests whose names say they use threads,
#   4. the libFuzzer targets (fuzz/run.sh), a few seconds each ($OVXML_FUZZ_SECONDS, 0 skips).
# It also checks the formatting of every C++ file against .clang-format.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
jobs=$(nproc)

echo "== format check"
git ls-files -- '*.h' '*.cpp' | xargs -r clang-format --dry-run --Werror

echo "== GCC, warnings as errors"
cmake -S . -B build/ci-gcc -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=g++ \
  -DOVXML_WERROR=ON > /dev/null
cmake --build build/ci-gcc -j "$jobs"
ctest --test-dir build/ci-gcc -j "$jobs" --output-on-failure

echo "== Clang, AddressSanitizer + UndefinedBehaviorSanitizer"
cmake -S . -B build/ci-asan -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_COMPILER=clang -DOVXML_WERROR=ON -DOVXML_SANITIZE=address,undefined \
  -DOVXML_BUILD_BENCHMARKS=OFF > /dev/null
cmake --build build/ci-asan -j "$jobs"
ASAN_OPTIONS=detect_leaks=1:abort_on_error=1:strict_string_checks=1 \
UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1 \
  ctest --test-dir build/ci-asan -j "$jobs" --output-on-failure

echo "== ThreadSanitizer, the tests that share values between threads"
cmake -S . -B build/ci-tsan -DCMAKE_BUILD_TYPE=Debug -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_COMPILER=clang -DOVXML_SANITIZE=thread -DOVXML_BUILD_BENCHMARKS=OFF \
  -DOVXML_BUILD_EXAMPLES=OFF -DOVXML_BUILD_TOOLS=OFF > /dev/null
cmake --build build/ci-tsan -j "$jobs" --target ovxml_unit_tests
TSAN_OPTIONS=halt_on_error=1 build/ci-tsan/tests/ovxml_unit_tests --gtest_filter='*Thread*'

# The fuzz targets, briefly (about a minute in all, besides the build): the regression inputs
# replay and each target meets the seed corpus and a fixed set of mutations of it (the same
# runs from the same seed every time, so the check does not depend on luck; OVXML_FUZZ_RUNS
# changes the count, OVXML_FUZZ_SECONDS=0 skips the stage).
fuzz_seconds=${OVXML_FUZZ_SECONDS:-5}
if [ "$fuzz_seconds" -gt 0 ]; then
  echo "== libFuzzer targets"
  OVXML_FUZZ_JOBS=$jobs OVXML_FUZZ_RUNS=${OVXML_FUZZ_RUNS:-4000} fuzz/run.sh "$fuzz_seconds"
fi

echo "== all tests passed"
