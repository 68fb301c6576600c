#!/usr/bin/env bash
# Formats the C++ sources as .clang-format says; with --check changes
# nothing and fails, naming the files, if any file would change.
set -euo pipefail
cd "$(dirname "$0")/.."
mapfile -t files < <(git ls-files '*.cpp' '*.h')
if [ "${1:-}" = --check ]; then
  clang-format --dry-run -Werror "${files[@]}"
else
  clang-format -i "${files[@]}"
fi
