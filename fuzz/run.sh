#!/usr/bin/env bash
# Builds the fuzz targets (Clang, libFuzzer, AddressSanitizer + UndefinedBehaviorSanitizer) in
# build/fuzz and runs each one, one after the other, for SECONDS (default 60, or
# $OVXML_FUZZ_SECONDS) on a scratch copy of its seed corpus, after replaying the inputs of
# fuzz/regressions/<target>/ once. Without target names every target runs.
#
#   fuzz/run.sh [SECONDS] [TARGET...]
#
# With $OVXML_FUZZ_RUNS set, each target instead makes that many runs from a fixed seed, so that
# the result is the same on every machine and every run (the CI's check); searching for new
# findings is what the timed runs are for.
#
# A finding is a crash, a sanitizer report, a leak, an exception other than the library's own, a
# broken round trip, an input that runs longer than 10 s, an allocation above 2 GB or a resident
# size above 2.5 GB. The input that caused it is written to build/fuzz/findings/<target>/ and the
# script exits non-zero once every target has run. Per target it prints the executions, the
# executions per second and the size of the corpus reached. OVXML_FUZZ_PARALLEL=N runs N
# targets at once, for machines with cores to spare.
set -euo pipefail
cd "$(dirname "$0")/.."

seconds=${1:-${OVXML_FUZZ_SECONDS:-60}}
shift || true
build=build/fuzz
jobs=${OVXML_FUZZ_JOBS:-2}

if [ $# -gt 0 ]; then
  targets=("$@")
else
  targets=()
  for source in fuzz/fuzz_*.cpp; do
    targets+=("$(basename "$source" .cpp)")
  done
fi

echo "== building the fuzz targets in $build"
# -O1 without NDEBUG: the library's own assertions stay armed.
cmake -S . -B "$build" -DCMAKE_BUILD_TYPE=RelWithDebInfo -DCMAKE_CXX_COMPILER=clang++ \
  -DCMAKE_C_COMPILER=clang -DCMAKE_CXX_FLAGS_RELWITHDEBINFO="-O1 -g" \
  -DCMAKE_C_FLAGS_RELWITHDEBINFO="-O1 -g" -DOVXML_WERROR=ON -DOVXML_BUILD_FUZZERS=ON \
  -DOVXML_BUILD_TESTS=OFF -DOVXML_BUILD_BENCHMARKS=OFF -DOVXML_BUILD_EXAMPLES=OFF \
  -DOVXML_BUILD_TOOLS=OFF -DOVXML_INSTALL=OFF > /dev/null
cmake --build "$build" -j "$jobs" --target "${targets[@]}" > "$build/build.log" 2>&1 ||
  { cat "$build/build.log"; exit 1; }

export ASAN_OPTIONS=detect_leaks=1:allocator_may_return_null=0:strict_string_checks=1
export UBSAN_OPTIONS=print_stacktrace=1:halt_on_error=1
# OVXML_FUZZ_TIMEOUT raises the 10 s a unit may take, for a machine that is busy with other
# work; units over 10 s are still reported ("Slowest unit") and worth a second look.
limits=(-timeout="${OVXML_FUZZ_TIMEOUT:-10}" -report_slow_units=10 -malloc_limit_mb=2048
  -rss_limit_mb=2560)

# Runs one target; its summary line goes to $build/logs/<target>.summary, and the status says
# whether it found something.
run_target() {
  local target=$1
  local program="$build/fuzz/$target"
  local findings="$build/findings/$target"
  local work="$build/work/$target"
  local log="$build/logs/$target.log"
  local result="$build/logs/$target.summary"
  mkdir -p "$findings" "$(dirname "$log")"
  rm -rf "$work" "$result"
  mkdir -p "$work"
  cp fuzz/corpus/"$target"/* "$work"/ 2>/dev/null || true
  local dict=()
  [ -f "fuzz/$target.dict" ] && dict=(-dict="fuzz/$target.dict")

  local regressions=(fuzz/regressions/"$target"/*)
  if [ -e "${regressions[0]}" ]; then
    echo "== $target: replaying ${#regressions[@]} regression input(s)"
    if ! "$program" "${limits[@]}" "${regressions[@]}" > "$log" 2>&1; then
      tail -n 40 "$log"
      echo "$target: a regression input fails again (see $log)" > "$result"
      return 1
    fi
    cp "${regressions[@]}" "$work"/
  fi

  local budget
  if [ -n "${OVXML_FUZZ_RUNS:-}" ]; then
    echo "== $target: ${OVXML_FUZZ_RUNS} runs from seed 1"
    budget=(-runs="$OVXML_FUZZ_RUNS" -seed=1)
  else
    echo "== $target: fuzzing for ${seconds}s"
    budget=(-max_total_time="$seconds")
  fi
  local status=0
  "$program" "${limits[@]}" "${dict[@]}" "${budget[@]}" -print_final_stats=1 \
    -artifact_prefix="$findings/" "$work" > "$log" 2>&1 || status=$?
  local runs rate corpus line
  runs=$(sed -n 's/^stat::number_of_executed_units: *//p' "$log" | tail -n 1)
  rate=$(sed -n 's/^stat::average_exec_per_sec: *//p' "$log" | tail -n 1)
  slowest=$(sed -n 's/^stat::slowest_unit_time_sec: *//p' "$log" | tail -n 1)
  corpus=$(find "$work" -type f | wc -l)
  line=$(printf '%-24s %12s runs %8s exec/s %6s corpus files, slowest unit %s s' "$target" \
    "${runs:-?}" "${rate:-?}" "$corpus" "${slowest:-?}")
  if [ "$status" -ne 0 ]; then
    tail -n 60 "$log"
    line="$line  FINDING (exit $status, see $findings/ and $log)"
  fi
  echo "$line"
  echo "$line" > "$result"
  return "$status"
}

# OVXML_FUZZ_PARALLEL=N runs up to N targets at once (default 1: one after the other).
parallel=${OVXML_FUZZ_PARALLEL:-1}
for target in "${targets[@]}"; do
  while [ "$(jobs -rp | wc -l)" -ge "$parallel" ]; do wait -n || true; done
  run_target "$target" &
done
wait || true
failed=()
summary=()
for target in "${targets[@]}"; do
  line=$(cat "$build/logs/$target.summary" 2>/dev/null || echo "$target: no result")
  summary+=("$line")
  case "$line" in
    *FINDING* | *"fails again"* | *"no result"*) failed+=("$target") ;;
  esac
done

if [ -n "${OVXML_FUZZ_RUNS:-}" ]; then
  echo "== fuzzing summary (${OVXML_FUZZ_RUNS} runs from seed 1 per target)"
else
  echo "== fuzzing summary (${seconds}s per target)"
fi
printf '%s\n' "${summary[@]}"
if [ ${#failed[@]} -gt 0 ]; then
  echo "== findings in: ${failed[*]}"
  exit 1
fi
echo "== no findings"
