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
    > "$scratch/$name.log" 2>&1 && status=0 || status=$?
  tail -n 12 "$scratch/$name.log"
  if [ "$status" -ne 0 ]; then
    failed+=("$name")
    # A clean clone's run leaves only its log: print the whole report and
    # the input, so that the crash can be replayed elsewhere.
    sed -n '/fuzz check failed\|ERROR: \|runtime error/,$p' "$scratch/$name.log" | head -n 120
    for crash in $(git ls-files --others --exclude-standard "fuzz/regressions/$name"); do
      echo "input $crash (base64):"
      base64 -w 76 "$crash" | head -n 400
    done
  fi
done
if [ ${#failed[@]} -gt 0 ]; then
  echo "fuzzing found crashes in: ${failed[*]} (inputs kept in fuzz/regressions/)" >&2
  exit 1
fi
