#!/usr/bin/env bash
# Builds build-asan and runs each fuzz target for SECONDS (default 60), from
# its seed corpus (fuzz/corpus/NAME) and past crashes (fuzz/regressions/NAME).
# New corpus entries go to a scratch folder; an input that crashes a target
# is written to fuzz/regressions/NAME/, where the ordinary test suite replays
# it from then on: commit it with the fix.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
tools/build-asan.sh
source tools/sanitizer-env.sh
scratch="$(mktemp -d)"
trap 'rm -rf "$scratch"' EXIT
failed=()
for target in build-asan/fuzz/*_fuzz; do
  name="$(basename "$target" _fuzz)"
  mkdir -p "$scratch/$name" "fuzz/regressions/$name"
  echo "== fuzzing $name for ${seconds}s"
  "$target" -max_total_time="$seconds" -timeout=20 -rss_limit_mb=2560 -print_final_stats=1 \
    -artifact_prefix="fuzz/regressions/$name/" "$scratch/$name" "fuzz/corpus/$name" "fuzz/regressions/$name" \
    > "$scratch/$name.log" 2>&1 || failed+=("$name")
  tail -n 12 "$scratch/$name.log"
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzzing found crashes in: ${failed[*]} (inputs kept in fuzz/regressions/)" >&2
  exit 1
fi
