#!/usr/bin/env bash
# Builds the fuzz preset and runs every fuzzer for the given time: scripts/fuzz.sh [seconds]
# (default 60). Each starts from a scratch copy of its seed corpus and regressions, under ASan and
# UBSan. Fails on any finding (crash, failed check, leak, a unit slower than 30 s); the input that
# found it is kept in build-fuzz/findings/<fuzzer>/. Ends with executions and coverage per fuzzer.
set -euo pipefail
cd "$(dirname "$0")/.."
seconds="${1:-60}"
fuzzers=(fuzz_state_chunk fuzz_dispatcher fuzz_scene_import)

scripts/build.sh fuzz
root="$PWD"
scratch="$(mktemp -d "${TMPDIR:-/tmp}/spatiola-fuzz.XXXXXX")"
trap 'rm -rf "$scratch"' EXIT

# Copies the seeds and the regressions of one fuzzer into its scratch corpus.
seed() {
  local fuzzer="$1" folder
  mkdir -p "$scratch/$fuzzer"
  for folder in "fuzz/corpus/$fuzzer" "fuzz/regressions/$fuzzer"; do
    if [ -d "$folder" ]; then cp "$folder"/* "$scratch/$fuzzer/"; fi
  done
}

# One of libFuzzer's final "stat::name: value" lines.
stat_of() {
  awk -v key="stat::$1:" '$1 == key {print $2}' "$2"
}

# "cov: 1064 ft: 2485 corp: 1062/13106b" of the last status line, as three fields.
coverage() {
  awk '/ cov: [0-9]+ ft: / {
    for (i = 1; i < NF; ++i) {
      if ($i == "cov:") c = $(i + 1)
      if ($i == "ft:") f = $(i + 1)
      if ($i == "corp:") { split($(i + 1), n, "/"); p = n[1] }
    }
  } END { print c, f, p }' "$1"
}

summary=()
failed=()
for fuzzer in "${fuzzers[@]}"; do
  seed "$fuzzer"
  log="$scratch/$fuzzer.log"
  echo "=== $fuzzer: ${seconds} s ==="
  status=0
  (cd "$scratch" && "$root/build-fuzz/$fuzzer" -max_total_time="$seconds" -timeout=30 \
    -print_final_stats=1 -artifact_prefix="$scratch/$fuzzer-" "$fuzzer" >"$log" 2>&1) || status=$?
  runs="$(stat_of number_of_executed_units "$log")"
  rate="$(stat_of average_exec_per_sec "$log")"
  read -r cov ft corpus <<<"$(coverage "$log")"
  summary+=("$(printf '%-18s %10s %8s %6s %7s %7s' "$fuzzer" "${runs:-?}" "${rate:-?}" \
    "${cov:-?}" "${ft:-?}" "${corpus:-?}")")
  if [ "$status" -ne 0 ]; then
    failed+=("$fuzzer")
    mkdir -p "build-fuzz/findings/$fuzzer"
    cp "$scratch/$fuzzer"-* "build-fuzz/findings/$fuzzer/" 2>/dev/null || true
    grep -E -A12 'ERROR|check failed|runtime error|Test unit written' "$log" | head -40 >&2 || true
  fi
done

echo
printf '%-18s %10s %8s %6s %7s %7s\n' fuzzer executions exec/s cov ft corpus
printf '%s\n' "${summary[@]}"
if [ ${#failed[@]} -ne 0 ]; then
  echo "Findings in: ${failed[*]} (inputs in build-fuzz/findings/)" >&2
  exit 1
fi
echo "No findings."
