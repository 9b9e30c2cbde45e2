#!/usr/bin/env bash
# Runs tools/install-deps.sh twice. The second run, with everything installed
# by the first, must exit 0 without touching apt or sudo: stand-ins for both
# that record a call and fail sit first on PATH.
set -euo pipefail
script="$1/tools/install-deps.sh"
shims=$(mktemp -d)
trap 'rm -rf "$shims"' EXIT
"$script"
for tool in apt-get sudo; do
  printf '#!/bin/sh\necho "%s $*" >> "%s/calls"\nexit 1\n' "$tool" "$shims" > "$shims/$tool"
  chmod +x "$shims/$tool"
done
PATH="$shims:$PATH" "$script" || { echo "second run failed"; exit 1; }
if [ -e "$shims/calls" ]; then
  echo "second run called:"; cat "$shims/calls"; exit 1
fi
