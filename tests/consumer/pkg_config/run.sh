#!/usr/bin/env bash
# Builds the consumer program through pkg-config alone against an installed library, after
# moving the installed tree elsewhere (the .pc file must find its prefix by itself), and runs it.
#   run.sh static PREFIX WORKDIR CXX          the library installed at PREFIX (a static build)
#   run.sh shared SOURCE_DIR WORKDIR CXX      builds and installs a shared library first
set -euo pipefail
mode=$1 arg=$2 work=$3 cxx=$4
here=$(cd "$(dirname "$0")" && pwd)
rm -rf "$work"
mkdir -p "$work"
if [ "$mode" = shared ]; then
  cmake -S "$arg" -B "$work/build" -DBUILD_SHARED_LIBS=ON -DCMAKE_BUILD_TYPE=Debug \
    -DCMAKE_CXX_COMPILER="$cxx" -DOVXML_BUILD_TESTS=OFF -DOVXML_BUILD_BENCHMARKS=OFF \
    -DOVXML_BUILD_EXAMPLES=OFF -DOVXML_BUILD_TOOLS=OFF > /dev/null
  cmake --build "$work/build" -j "${CMAKE_BUILD_PARALLEL_LEVEL:-2}" > /dev/null
  cmake --install "$work/build" --prefix "$work/installed" > /dev/null
else
  cp -a "$arg" "$work/installed"
fi
# The tree is moved after the install: nothing may still point at the install prefix.
mv "$work/installed" "$work/moved"
pc=$(find "$work/moved" -name ovxmllib6.pc)
export PKG_CONFIG_PATH=$(dirname "$pc")
prefix=$(pkg-config --variable=prefix ovxmllib6)
case $(cd "$prefix" && pwd) in
  "$work/moved") ;;
  *) echo "pkg-config prefix is $prefix, not the moved tree $work/moved"; exit 1 ;;
esac
libdir=$(pkg-config --variable=libdir ovxmllib6)
# shellcheck disable=SC2046
"$cxx" -std=c++17 "$here/../consumer.cpp" -o "$work/consumer" \
  $(pkg-config --cflags --libs ovxmllib6) -Wl,-rpath,"$libdir"
"$work/consumer"
