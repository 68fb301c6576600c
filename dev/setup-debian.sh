#!/usr/bin/env bash
# Installs the Debian 12 packages Sorrelin needs to build, test and run.
set -euo pipefail
packages=(build-essential cmake ninja-build qt6-base-dev qt6-svg-dev libqt6sql6-sqlite libqt6sql6-psql libsqlite3-dev rapidjson-dev
          postgresql
          xvfb xauth fonts-dejavu-core poppler-utils dpkg-dev file python3)
# --format: also the code formatter, which CI and dev/format.sh use.
[ "${1:-}" = --format ] && packages+=(clang-format)
missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if ((${#missing[@]})); then
  sudo=""
  [ "$(id -u)" -eq 0 ] || sudo="sudo"
  $sudo apt-get update
  DEBIAN_FRONTEND=noninteractive $sudo apt-get install -y --no-install-recommends "${missing[@]}"
fi
