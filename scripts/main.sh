#!/usr/bin/env bash
# The main job: installs what is missing, builds the library in Release mode and runs the
# example program that shows what the library does today.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DOVXML_BUILD_TESTS=OFF \
  -DOVXML_BUILD_BENCHMARKS=OFF > /dev/null
cmake --build build/release -j "$(nproc)" --target ovxml_example
build/release/examples/ovxml_example "$@"
