#!/usr/bin/env bash
# Installs the Debian 12 packages the project builds and tests with, when any
# is missing. Needs root (or sudo).
set -euo pipefail

packages=(
  cmake ninja-build g++ ccache pkg-config
  qt6-base-dev libqt6svg6-dev qt6-tools-dev qt6-tools-dev-tools libgl1-mesa-dev
  libgtest-dev libgmock-dev libbenchmark-dev libboost-dev
  python3 python3-ezdxf
)

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
[ ${#missing[@]} -eq 0 ] && exit 0

sudo=""
[ "$(id -u)" -ne 0 ] && sudo="sudo"
echo "Installing: ${missing[*]}"
$sudo apt-get update -qq
DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y -qq "${missing[@]}"
