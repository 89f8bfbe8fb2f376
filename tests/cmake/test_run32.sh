#!/usr/bin/env bash
# The 32-bit launcher's choice of way, with stand-ins: probes that exit as a started (32) and an
# unstartable (126) 32-bit program would, a program that echoes its arguments and exits 3, and a
# qemu-i386 that names what it runs. PATH holds only bash, plus the stand-in qemu-i386 or not.
set -euo pipefail
launcher="$1"
scratch="$(mktemp -d "${TMPDIR:-/tmp}/run32-test.XXXXXX")"
trap 'rm -rf "$scratch"' EXIT
unset SPATIOLA_RUN32

mkdir "$scratch/no-qemu" "$scratch/qemu"
ln -s "$(command -v bash)" "$scratch/no-qemu/bash"
ln -s "$(command -v bash)" "$scratch/qemu/bash"
printf '#!/bin/sh\nexit 32\n' >"$scratch/starts"
printf '#!/bin/sh\nexit 126\n' >"$scratch/refused"
printf '#!/bin/sh\necho "ran $*"\nexit 3\n' >"$scratch/program"
# shellcheck disable=SC2016 # expanded by the stand-in, not here
printf '#!/bin/sh\necho "qemu-i386 ${1##*/}"\nexec "$@"\n' >"$scratch/qemu/qemu-i386"
chmod +x "$scratch/starts" "$scratch/refused" "$scratch/program" "$scratch/qemu/qemu-i386"

failures=0
# check SPATIOLA_RUN32 PROBE PATH EXPECTED ARGUMENT...: the launcher's output, "|", its status.
check() {
  local override="$1" probe="$2" path="$3" expected="$4" actual status=0
  shift 4
  actual="$(SPATIOLA_RUN32="$override" PATH="$path" "$launcher" "$scratch/$probe" "$@" 2>&1)" ||
    status=$?
  if [ "$actual|$status" != "$expected" ]; then
    echo "FAILED: SPATIOLA_RUN32='$override' probe=$probe PATH=${path##*/} $*" >&2
    echo "  expected: $expected" >&2
    echo "  actual:   $actual|$status" >&2
    failures=$((failures + 1))
  fi
}

qemu="$scratch/qemu"
program="$scratch/program"
check "" starts "$qemu" "native|0" --way
check "" refused "$qemu" "through qemu-i386|0" --way
check "" starts "$qemu" "ran a  b|3" "$program" "a  b"
check "" refused "$qemu" $'qemu-i386 program\nran a  b|3' "$program" "a  b"
check native refused "$qemu" "ran x|3" "$program" x
check qemu-i386 starts "$qemu" $'qemu-i386 program\nran x|3' "$program" x
check qemu-i386 starts "$qemu" "through qemu-i386|0" --way
check 64 starts "$qemu" "run32.sh: SPATIOLA_RUN32 is '64'; use native or qemu-i386|2" --way
check "" refused "$scratch/no-qemu" "run32.sh: this kernel does not start 32-bit programs and \
qemu-i386 is missing; install qemu-user (scripts/deps.sh does)|127" "$program"
check "" starts "$scratch/no-qemu" "ran x|3" "$program" x
check "" missing "$qemu" \
  "run32.sh: the probe $scratch/missing is missing; configure the 32-bit build again|2" --way
check "" starts "$qemu" "usage: run32.sh PROBE PROGRAM [ARGUMENT...] | run32.sh PROBE --way|2"

if [ "$failures" -ne 0 ]; then
  echo "$failures case(s) failed" >&2
  exit 1
fi
echo "run32.sh: all ways chosen as expected"
