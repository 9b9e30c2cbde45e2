#!/usr/bin/env bash
# Configures and builds build-asan (incremental): clang with ASan, UBSan and
# libFuzzer's coverage hooks in every object file, used both for the
# sanitizer test run and for the fuzz targets. Optimised lightly (-O1, line
# tables only) so that it builds quickly.
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build-asan
cmake -S . -B build-asan -G Ninja -DCMAKE_CXX_COMPILER=clang++ -DCMAKE_BUILD_TYPE=Sanitize \
  -DCMAKE_CXX_FLAGS_SANITIZE="-O1 -gline-tables-only" -DLUMATREX_SANITIZE=ON -DLUMATREX_BUILD_FUZZ=ON \
  > build-asan/configure.log 2>&1 || { cat build-asan/configure.log; exit 1; }
cmake --build build-asan
