#!/usr/bin/env bash
# Installs what is missing, builds the program alone (a Release build in
# ./build-release: no tests, no benchmarks), and starts Sorrelin. On the
# first start the profile dialog offers the demo profile on a store made
# from share/demo.json.
set -euo pipefail
cd "$(dirname "$0")/.."
./dev/setup-debian.sh
cmake -S . -B build-release -G Ninja -DCMAKE_BUILD_TYPE=Release -DBUILD_TESTING=OFF -DSORRELIN_BENCH=OFF >/dev/null
cmake --build build-release --target sorrelin
exec ./build-release/sorrelin
