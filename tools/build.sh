#!/usr/bin/env bash
# Configures and builds the project into build/ (incremental).
set -euo pipefail
cd "$(dirname "$0")/.."
mkdir -p build
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" > build/configure.log 2>&1 \
  || { cat build/configure.log; exit 1; }
cmake --build build
