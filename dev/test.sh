#!/usr/bin/env bash
# Installs what is missing, builds Sorrelin and runs every test offscreen,
# two at a time.
set -euo pipefail
cd "$(dirname "$0")/.."
./dev/setup-debian.sh
./dev/build.sh
cd build
QT_QPA_PLATFORM=offscreen ctest -j2 --output-on-failure
