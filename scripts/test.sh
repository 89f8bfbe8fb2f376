#!/usr/bin/env bash
# Every test of the project, from a fresh checkout: installs what is missing, builds each preset
# and runs its tests. Fails when any step fails.
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh

run_preset() {
  local preset="$1"
  echo "=== $preset ==="
  scripts/build.sh "$preset"
  ctest --preset "$preset" --timeout 900
}

scripts/lint.sh --format-only
scripts/lint.sh --layers
run_preset default
run_preset x86
run_preset asan
run_preset tsan
scripts/build.sh noeditor
scripts/fuzz.sh 60
echo "All tests passed."
