#!/usr/bin/env bash
# Tries every installed Linux VST 2.x plug-in with the host: `info`, a render of one second of
# stereo audio (exit 0, the input's length, no NaN) and `--set` of its first parameter taking effect
# (0 and 1 read back differently). Prints one line per plug-in, then "N of M work" and the failures.
#   scripts/sweep_plugins.sh [--spatiola PROGRAM] [DIR...]
# Default directories: /usr/lib/vst and /usr/lib/lxvst (with their subfolders).
set -uo pipefail
cd "$(dirname "$0")/.." || exit 2
spatiola="$PWD/build/spatiola"
if [ "${1:-}" = "--spatiola" ]; then
  spatiola="$2"
  shift 2
fi
dirs=("$@")
[ ${#dirs[@]} -gt 0 ] || dirs=(/usr/lib/vst /usr/lib/lxvst)
[ -x "$spatiola" ] || { echo "sweep: $spatiola is missing: build it first" >&2; exit 2; }
limit="${SWEEP_TIMEOUT:-120}"  # seconds per command: some synths load for long

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT
sox -q -n -r 48000 -b 24 -c 2 "$work/in.wav" synth 1 pink vol 0.3 ||
  { echo "sweep: sox is needed to make the input" >&2; exit 2; }
expected_frames=48000

# Shared objects that export a VST 2.x entry point, each file once however it is reached.
mapfile -t plugins < <(
  for dir in "${dirs[@]}"; do
    [ -d "$dir" ] && find -L "$dir" -name '*.so' -type f -exec realpath {} \; 2>/dev/null
  done | sort -u | while read -r so; do
    nm -D --defined-only "$so" 2>/dev/null | grep -qE ' (VSTPluginMain|main)$' && echo "$so"
  done)

# The first parameter's value and display text, from info's JSON on standard input.
first_parameter() {
  python3 -c 'import json,sys
p = json.load(sys.stdin)["parameters"]
print("none" if not p else "%.4f|%s" % (p[0]["value"], p[0]["display"].strip()))'
}

try_plugin() {
  local so="$1" out="$work/out.wav" err="$work/err"
  rm -f "$out"
  if ! timeout "$limit" "$spatiola" info --plugin "$so" --json >"$work/info.json" 2>"$err"; then
    echo "info failed: $(tail -1 "$err")"
    return
  fi
  if ! timeout "$limit" "$spatiola" render --plugin "$so" "$work/in.wav" "$out" >/dev/null 2>"$err"
  then
    echo "render failed: $(tail -1 "$err")"
    return
  fi
  local frames
  frames="$(soxi -s "$out" 2>/dev/null)"
  if [ "$frames" != "$expected_frames" ]; then
    echo "render wrote ${frames:-no} samples, not $expected_frames"
    return
  fi
  if grep -q "no number" "$err"; then
    echo "render: NaN or infinity in the output"
    return
  fi
  [ "$(first_parameter <"$work/info.json")" = "none" ] && return  # nothing to set
  local low high
  low="$(timeout "$limit" "$spatiola" info --plugin "$so" --json --set 0=0 2>/dev/null |
    first_parameter 2>/dev/null)"
  high="$(timeout "$limit" "$spatiola" info --plugin "$so" --json --set 0=1 2>/dev/null |
    first_parameter 2>/dev/null)"
  if [ -z "$low" ] || [ "$low" = "$high" ]; then
    echo "--set 0=0 and --set 0=1 read back the same (${low:-nothing})"
  fi
}

failures=()
for so in "${plugins[@]}"; do
  problem="$(try_plugin "$so")"
  if [ -z "$problem" ]; then
    echo "ok    $so"
  else
    echo "FAIL  $so: $problem"
    failures+=("$so: $problem")
  fi
done
echo
echo "$((${#plugins[@]} - ${#failures[@]})) of ${#plugins[@]} work"
if [ ${#failures[@]} -gt 0 ]; then
  echo "failures:"
  printf '  %s\n' "${failures[@]}"
  exit 1
fi
