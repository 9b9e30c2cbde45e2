#!/usr/bin/env bash
# Runs every benchmark program of a build and prints, for each benchmark that
# has a peer (a benchmark of the same name ending in "_Peer", measured in the
# same run), the ratio of our time to the peer's.
# Each benchmark runs REPETITIONS times (default 3) and the ratios use the
# medians, so that one slow spell of the machine does not make a figure. The
# repetitions run back to back: shuffled among the other benchmarks, the
# load and save ones would each meet a heap left in another state.
# Usage: [REPETITIONS=N] bench/run.sh [BUILD_DIR]   (default: build-bench)
set -euo pipefail
build=${1:-build-bench}
repetitions=${REPETITIONS:-3}
here=$(cd "$(dirname "$0")" && pwd)
found=0
for program in "$build"/bench/*_bench; do
  [ -x "$program" ] || continue
  found=1
  json=$(mktemp)
  "$program" --benchmark_format=console --benchmark_out="$json" --benchmark_out_format=json \
    --benchmark_repetitions="$repetitions" --benchmark_report_aggregates_only=true
  python3 "$here/ratios.py" "$json"
  rm -f "$json"
done
[ "$found" -eq 1 ] || { echo "no benchmark programs in $build/bench (configure with -DLUMATREX_BUILD_BENCH=ON)"; exit 1; }
