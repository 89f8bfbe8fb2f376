#!/usr/bin/env bash
# The main job: builds the plug-in and the host, then renders the demo scene into build/demo
# (another place with --dir DIR).
set -euo pipefail
cd "$(dirname "$0")/.."
scripts/deps.sh
scripts/build.sh default >/dev/null
exec build/spatiola demo --dir build/demo "$@"
