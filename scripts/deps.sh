#!/usr/bin/env bash
# Installs the Debian 12 packages the build, the tests and the benchmarks need, skipping those
# already present. Run as root on a fresh machine; a no-op when everything is there.
set -euo pipefail

# libclang-rt-14-dev carries Clang's sanitizer runtimes and libFuzzer (fuzz/).
packages=(cmake make g++ clang libclang-rt-14-dev clang-format pkg-config
          libexpat1-dev zlib1g-dev libgtest-dev libgmock-dev libbenchmark-dev
          libfastinfoset-java)
missing=()
# The interoperability test runs an independent Fast Infoset codec written in Java: any Java 11 or
# later runtime will do (the headless JRE carries the compiler its single-file launcher needs).
command -v java >/dev/null 2>&1 || missing+=(default-jre-headless)
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  echo "Installing: ${missing[*]}"
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
