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

# The 32-bit tests run natively where this kernel starts 32-bit programs, else through qemu-i386.
# Where they ran natively they run once more through qemu-i386, so that the emulated way, which
# CI machines without 32-bit support depend on, is proven on every machine.
run_x86() {
  local way
  echo "=== x86 ==="
  scripts/build.sh x86
  way="$(cmake/run32.sh build-x86/run32_probe --way)"
  echo "32-bit tests: $way"
  ctest --preset x86 --timeout 900
  if [ "$way" = native ]; then
    echo "32-bit tests: through qemu-i386 (second pass)"
    SPATIOLA_RUN32=qemu-i386 ctest --preset x86 --timeout 900
  fi
}

scripts/lint.sh --format-only
run_preset default
run_x86
run_preset asan
run_preset tsan
scripts/build.sh noeditor
scripts/fuzz.sh 60
echo "All tests passed in $((SECONDS / 60)) min $((SECONDS % 60)) s."
