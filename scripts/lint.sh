#!/usr/bin/env bash
# Formatting check (clang-format), the include layers (scripts/check_layers.py) and clang-tidy on
# the project's sources. --format-only and --layers run one check alone, in seconds.
set -euo pipefail
cd "$(dirname "$0")/.."
if [ "${1:-}" = "--layers" ]; then
  exec python3 scripts/check_layers.py
fi
mapfile -t files < <(git ls-files '*.h' '*.cpp' | grep -v '^tests/data/')
if [ ${#files[@]} -gt 0 ]; then
  clang-format --dry-run --Werror "${files[@]}"
fi
if [ "${1:-}" = "--format-only" ]; then
  exit 0
fi
python3 scripts/check_layers.py
[ -f build/compile_commands.json ] || scripts/build.sh default >/dev/null
mapfile -t sources < <(git ls-files 'model/*.cpp' 'engine/*.cpp' 'plugin/*.cpp' 'editor/*.cpp' 'host/*.cpp')
if [ ${#sources[@]} -gt 0 ]; then
  run-clang-tidy -quiet -p build "${sources[@]}" 2>/dev/null | grep -E 'error:|warning:' && exit 1
fi
exit 0
