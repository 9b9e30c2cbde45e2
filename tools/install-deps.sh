#!/usr/bin/env bash
# Installs the Debian 12 packages the project builds and tests with, when any
# is missing; with everything present it only asks dpkg and exits 0. Needs
# root (or sudo) only when something is missing. Names must be real packages:
# dpkg never reports a virtual one as installed, which would reinstall on
# every run.
set -euo pipefail

packages=(
  cmake ninja-build g++ ccache pkg-config
  qt6-base-dev qt6-svg-dev qt6-tools-dev qt6-tools-dev-tools libgl1-mesa-dev
  designer-qt6 libqt6uitools6
  libgtest-dev libgmock-dev libbenchmark-dev libboost-dev
  python3 python3-ezdxf
  poppler-utils  # pdftoppm and pdftotext read the PDF output in tests
  clang libclang-rt-14-dev llvm  # the sanitizer and fuzzing build; llvm gives llvm-symbolizer
)
# The DXF benchmarks measure against these; only wanted with LUMATREX_BENCH=1.
if [ "${LUMATREX_BENCH:-0}" = 1 ]; then
  packages+=(libdxflib-dev libdime-dev)
fi

# One dpkg query for all of them keeps the common case fast; a package dpkg
# does not know prints nothing and so counts as missing.
installed=$(dpkg-query -W -f='${Package} ${Status}\n' "${packages[@]}" 2>/dev/null \
  | awk '$NF == "installed" { print $1 }' || true)
missing=()
for p in "${packages[@]}"; do
  grep -qx "$p" <<<"$installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
