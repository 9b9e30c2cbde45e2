#!/usr/bin/env bash
# Prints the tests' size against the code's, in non-blank, non-comment lines
# of the files git tracks: tests/ against everything else (library, apps,
# benchmarks, fuzz targets, tools, build files). Keep it at most 0.35.
# With -v it also lists the test folders, largest first.
set -euo pipefail
cd "$(dirname "$0")/.."
lines() { xargs -r cat | grep -c -v -E "^\s*(\$|$1)" || true; }
counted() {
  local cxx scripts
  cxx=$(git ls-files -- "$@" | grep -E '\.(cpp|cc|h|hpp)$' | lines '//')
  scripts=$(git ls-files -- "$@" | grep -E '\.(py|sh|cmake)$|CMakeLists\.txt$' | lines '#')
  echo $((cxx + scripts))
}
if [ "${1:-}" = -v ]; then
  for d in tests/*/; do echo "$(counted "$d") $d"; done | sort -rn
fi
tests=$(counted tests)
code=$(counted . ':!tests')
awk -v t="$tests" -v c="$code" \
  'BEGIN { printf "test lines %d, code lines %d, ratio %.2f (keep it at most 0.35)\n", t, c, t / c }'
