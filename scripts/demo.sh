#!/usr/bin/env bash
# The main job: builds the plug-in and the host, then renders the demo scene into build/demo
# (another place with --dir DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
# Only what the demo runs: the 64-bit plug-in and the spatiola command, not the tests. The build's
# progress goes to standard error, the demo's report to standard output.
if [ ! -x build/spatiola ] || [ ! -f build/spatiola.so ]; then
  echo "Building the plug-in and the spatiola command in build/; a first build takes about" \
    "4 minutes on 2 cores." >&2
fi
scripts/build.sh default spatiola spatiola_command >&2
exec build/spatiola demo --dir build/demo "$@"
