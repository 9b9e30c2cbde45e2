#!/usr/bin/env bash
# Builds an instrumented copy in build-cov/ (incremental), runs every test and
# prints the library's line coverage: tests, apps, benchmarks and the moc files
# Qt generates are left out, so the figure is the library's own code.
# The per-file report stays in build-cov/coverage.info.
set -euo pipefail
cd "$(dirname "$0")/.."
root=$PWD
dir=build-cov
mkdir -p "$dir"
cmake -S . -B "$dir" -G Ninja -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_FLAGS="--coverage -O0" \
  -DCMAKE_EXE_LINKER_FLAGS=--coverage -DCMAKE_SHARED_LINKER_FLAGS=--coverage \
  > "$dir/configure.log" 2>&1 || { cat "$dir/configure.log"; exit 1; }
cmake --build "$dir"
lcov --quiet --zerocounters --directory "$dir"
# The install test only builds a consumer against the installed package; it
# runs no library code worth counting and is the slowest, so it is skipped.
QT_QPA_PLATFORM=offscreen ctest --test-dir "$dir" --output-on-failure -E install_consumer
lcov --quiet --capture --directory "$dir" --output-file "$dir/all.info" 2>/dev/null
lcov --quiet --extract "$dir/all.info" "$root/*" --output-file "$dir/coverage.info"
lcov --quiet --remove "$dir/coverage.info" "$root/tests/*" "$root/apps/*" "$root/bench/*" \
  "$root/fuzz/*" "$root/$dir/*" "*_autogen/*" "*/moc_*" --output-file "$dir/coverage.info"
lcov --summary "$dir/coverage.info" 2>&1 | grep -E 'lines|functions'

tools/test_ratio.sh
