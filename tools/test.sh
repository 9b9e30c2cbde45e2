#!/usr/bin/env bash
# Installs what is missing, builds, and runs every test headless; then the
# second stage: the same tests under ASan and UBSan and a minute of fuzzing
# per reader (tools/sanitize.sh). LUMATREX_QUICK=1 stops after the first.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
tools/build.sh
export QT_QPA_PLATFORM=offscreen
ctest --test-dir build --output-on-failure -j "$(nproc)"
if [ "${LUMATREX_QUICK:-0}" != 1 ]; then
  tools/sanitize.sh
fi
