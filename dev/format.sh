#!/usr/bin/env bash
# Formats the C++ sources as .clang-format says; with --check changes
# nothing and fails, naming the files, if any file would change.
set -euo pipefail
cd "$(dirname "$0")/.."
if git rev-parse --is-inside-work-tree >/dev/null 2>&1; then
  mapfile -t files < <(git ls-files '*.cpp' '*.h')
else
  mapfile -t files < <(find . -path './build*' -prune -o -path './.git' -prune -o \
                            -type f \( -name '*.cpp' -o -name '*.h' \) -print | sort)
fi
if [ "${1:-}" = --check ]; then
  clang-format --dry-run -Werror "${files[@]}"
else
  clang-format -i "${files[@]}"
fi
