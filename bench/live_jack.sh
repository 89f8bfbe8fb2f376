#!/usr/bin/env bash
# The live callback under load: a private JACK server on the dummy driver at 64 frames per period,
# 64 inputs into 64 speakers, every input's position moved before every block. Prints the
# callback's median and worst time as fractions of the period, and the xruns.
#   bench/live_jack.sh [SECONDS (600)] [FRAMES (64)]
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-600}"
frames="${2:-64}"
server="spatiola-bench-$$"
[ -x build/spatiola ] || scripts/build.sh default spatiola_command spatiola >/dev/null
jackd --no-realtime -n "$server" -d dummy -r 48000 -p "$frames" >/dev/null 2>&1 &
jackd_pid=$!
trap 'kill "$jackd_pid" 2>/dev/null; wait "$jackd_pid" 2>/dev/null || true' EXIT
for _ in $(seq 50); do
  jack_lsp -s "$server" >/dev/null 2>&1 && break
  sleep 0.1
done
echo "load before: $(cut -d' ' -f1-3 /proc/loadavg)"
build/spatiola live --server "$server" --inputs 64 --layout 64 --moving --timing \
  --seconds "$seconds" </dev/null
echo "load after: $(cut -d' ' -f1-3 /proc/loadavg)"
