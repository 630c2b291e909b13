#!/usr/bin/env bash
# The main job: installs what is missing, builds the library, the ovxml tool and the example
# programs in Release mode (quietly: the build log is shown only when the build fails), then
# - converts the sample document of examples/ with ovxml to gzip-compressed UTF-16, from that to
#   gzip-compressed Fast Infoset (binary XML), and from that back to formatted UTF-8 on standard
#   output;
# - runs the purchase-order demonstration: the sample order of examples/purchase_order/ read into
#   the classes generated for po.xsd, values read back, the order changed and written as XML, and
#   a value that breaks the schema reported with the path to it;
# - runs the short tour of the value types.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
log=$(mktemp)
trap 'rm -f "$log"' EXIT
if ! { cmake -S . -B build/release -DCMAKE_BUILD_TYPE=Release -DOVXML_BUILD_TESTS=OFF \
         -DOVXML_BUILD_BENCHMARKS=OFF &&
       cmake --build build/release -j "$(nproc)" --target ovxml ovxml_example ovxml_po_demo
     } > "$log" 2>&1; then
  cat "$log" >&2
  echo "main.sh: the build failed" >&2
  exit 1
fi
utf16=build/release/sample.utf16.xml.gz
fi=build/release/sample.fi.gz
build/release/tools/ovxml convert --gzip --utf16 examples/sample.xml "$utf16"
build/release/tools/ovxml convert --to fi --gzip "$utf16" "$fi"
build/release/tools/ovxml convert --format "$fi" -
echo
build/release/examples/ovxml_po_demo examples/purchase_order/sample_po.xml
echo
build/release/examples/ovxml_example
