#!/usr/bin/env bash
# Configures and builds Sorrelin in ./build; arguments go to cmake's
# configure step (CI passes -DSORRELIN_WERROR=ON).
set -euo pipefail
cd "$(dirname "$0")/.."
cmake -S . -B build -G Ninja -DCMAKE_BUILD_TYPE=RelWithDebInfo "$@" >/dev/null
cmake --build build
