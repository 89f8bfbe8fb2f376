#!/usr/bin/env bash
# spatiola render of a 30 s, 64-channel, 24-bit WAV to a 64-speaker user setup (32-bit float WAV
# out) against sox converting the same file to float WAV: wall time of interleaved runs, medians,
# and their ratio (goal: at most 1.5). The render syncs its file to the disk before naming it, sox
# does not; the ratio to sox followed by a sync of its output is printed as well.
#   bench/render_vs_sox.sh [runs]        (default 7; SPATIOLA=path/to/spatiola, TMPDIR honoured)
# BEFORE=path/to/another/spatiola times that build too, in the same rounds.
set -euo pipefail
cd "$(dirname "$0")/.."
runs="${1:-7}"
spatiola="${SPATIOLA:-build/spatiola}"
[ -x "$spatiola" ] || { echo "no $spatiola: build it first (scripts/build.sh default spatiola)" >&2; exit 1; }
if ! command -v sox >/dev/null; then
  echo "installing sox (Debian package)" >&2
  apt-get install -y -qq sox >/dev/null
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
sox -n -r 48000 -c 64 -b 24 "$work/in.wav" synth 30 sine 300-3000 vol 0.3

seconds() {
  local start end
  start=$(date +%s.%N)
  "$@" >/dev/null 2>&1
  end=$(date +%s.%N)
  awk -v a="$start" -v b="$end" 'BEGIN {printf "%.3f\n", b - a}'
}

median() { sort -g | awk '{v[NR]=$1} END {print (NR % 2) ? v[(NR+1)/2] : (v[NR/2] + v[NR/2+1]) / 2}'; }

render=()
convert=()
synced=()
before=()
# One warm-up of each fills the page cache with the input; then the two alternate, each run
# overwriting its previous output as a user's repeated render would.
for k in $(seq 0 "$runs"); do
  r=$(seconds "$spatiola" render "$work/in.wav" "$work/render.wav" --layout 64)
  s=$(seconds sox "$work/in.wav" -e float -b 32 "$work/sox.wav")
  y=$(seconds sh -c "sox '$work/in.wav' -e float -b 32 '$work/sox.wav' && sync '$work/sox.wav'")
  b=0
  if [ -n "${BEFORE:-}" ]; then b=$(seconds "$BEFORE" render "$work/in.wav" "$work/before.wav" --layout 64); fi
  if [ "$k" -gt 0 ]; then
    before+=("$b")
    render+=("$r")
    convert+=("$s")
    synced+=("$y")
    printf 'run %d: render %.2f s, sox %.2f s, sox and sync %.2f s\n' "$k" "$r" "$s" "$y"
  fi
done
r=$(printf '%s\n' "${render[@]}" | median)
s=$(printf '%s\n' "${convert[@]}" | median)
y=$(printf '%s\n' "${synced[@]}" | median)
printf 'median of %d: render %.2f s, sox %.2f s, sox and sync %.2f s\n' "$runs" "$r" "$s" "$y"
awk -v r="$r" -v s="$s" 'BEGIN {printf "render / sox: %.2f (goal <= 1.5)\n", r / s}'
awk -v r="$r" -v y="$y" 'BEGIN {printf "render / (sox and sync): %.2f\n", r / y}'
if [ -n "${BEFORE:-}" ]; then
  b=$(printf '%s\n' "${before[@]}" | median)
  awk -v r="$r" -v b="$b" 'BEGIN {printf "render / render of %s: %.2f (%.2f s)\n", ENVIRON["BEFORE"], r / b, b}'
fi
