#!/usr/bin/env bash
# Configures and builds one CMake preset: scripts/build.sh [preset [target...]] (default: the
# default preset, every target).
set -euo pipefail
cd "$(dirname "$0")/.."
preset="${1:-default}"
shift || true
targets=()
if [ $# -gt 0 ]; then targets=(--target "$@"); fi
# Several checkouts of the tree share one compiler cache when ccache is there.
if command -v ccache >/dev/null; then
  export CMAKE_C_COMPILER_LAUNCHER=ccache CMAKE_CXX_COMPILER_LAUNCHER=ccache
  export CCACHE_BASEDIR="${CCACHE_BASEDIR:-$(dirname "$PWD")}" CCACHE_NOHASHDIR=1
fi
cmake --preset "$preset" >/dev/null
cmake --build --preset "$preset" "${targets[@]}"
