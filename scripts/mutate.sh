#!/usr/bin/env bash
# Mutation score of one file, at low priority and one job at a time (not part of CI):
#   scripts/mutate.sh host/cli/automation_csv.cpp test_host_cli [--count 16 --seed 1 --rev main]
# Builds a private copy of the tree in build-mutants/; see scripts/mutate.py --help.
set -euo pipefail
cd "$(dirname "$0")/.."
export CMAKE_BUILD_PARALLEL_LEVEL=1
mkdir -p build-mutants
exec nice -n 10 flock build-mutants/lock python3 scripts/mutate.py "$@"
