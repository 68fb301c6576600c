#!/usr/bin/env bash
# Installs what is missing, builds, and starts Sorrelin. On the first start
# the profile dialog offers the demo profile on a store made from share/demo.json.
set -euo pipefail
cd "$(dirname "$0")/.."
./dev/setup-debian.sh
./dev/build.sh
exec ./build/sorrelin
