#!/usr/bin/env bash
# The main job: installs what is missing, builds the library and the ovxml tool in Release mode,
# and converts the sample document shipped in examples/: to gzip-compressed UTF-16, and from that
# back to formatted UTF-8 on standard output. Then the example program tours the API.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DOVXML_BUILD_TESTS=OFF \
  -DOVXML_BUILD_BENCHMARKS=OFF > /dev/null
cmake --build build/release -j "$(nproc)" --target ovxml ovxml_example
out=build/release/sample.utf16.xml.gz
build/release/tools/ovxml convert --gzip --utf16 examples/sample.xml "$out"
build/release/tools/ovxml convert --format "$out" -
echo
build/release/examples/ovxml_example
