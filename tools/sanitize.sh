#!/usr/bin/env bash
# The sanitizer and fuzzing stage of CI: builds build-asan, runs the whole
# test suite under ASan and UBSan (leaks included), then every fuzz target.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/build-asan.sh
source tools/sanitizer-env.sh
ctest --test-dir build-asan --output-on-failure -j "$(nproc)"
tools/fuzz.sh "${FUZZ_SECONDS:-60}"
