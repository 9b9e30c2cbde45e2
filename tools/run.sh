#!/usr/bin/env bash
# Installs what is missing, builds, and starts the demo editor. Without a
# display the editor renders its sample drawing to out/lumatrex-sample.png.
set -euo pipefail
cd "$(dirname "$0")/.."
tools/install-deps.sh
tools/build.sh
exec build/apps/editor/lumatrex-editor "$@"
