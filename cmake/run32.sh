#!/usr/bin/env bash
# Starts a 32-bit x86 program: natively where this kernel starts 32-bit programs, else through
# qemu-i386 (Debian package qemu-user). Every 32-bit program the build or the tests start goes
# through here (CMAKE_CROSSCOMPILING_EMULATOR of a 32-bit build, cmake/Run32.cmake).
#
#   run32.sh PROBE PROGRAM [ARGUMENT...]   runs PROGRAM
#   run32.sh PROBE --way                   prints the way: "native" or "through qemu-i386"
#
# PROBE is cmake/run32_probe.cpp built 32-bit: when it starts, so do the others.
# SPATIOLA_RUN32=native or SPATIOLA_RUN32=qemu-i386 chooses the way instead of the probe;
# scripts/test.sh sets qemu-i386 for a second pass where the first ran natively.
set -euo pipefail
if [ $# -lt 2 ]; then
  echo "usage: run32.sh PROBE PROGRAM [ARGUMENT...] | run32.sh PROBE --way" >&2
  exit 2
fi
probe="$1"
shift
if [ ! -x "$probe" ]; then
  echo "run32.sh: the probe $probe is missing; configure the 32-bit build again" >&2
  exit 2
fi

case "${SPATIOLA_RUN32:-}" in
  native | qemu-i386) way="$SPATIOLA_RUN32" ;;
  "")
    status=0
    "$probe" 2>/dev/null || status=$?
    if [ "$status" -eq 32 ]; then way=native; else way=qemu-i386; fi
    ;;
  *)
    echo "run32.sh: SPATIOLA_RUN32 is '$SPATIOLA_RUN32'; use native or qemu-i386" >&2
    exit 2
    ;;
esac

if [ "${1:-}" = --way ]; then
  if [ "$way" = native ]; then echo native; else echo "through qemu-i386"; fi
  exit 0
fi
if [ "$way" = native ]; then
  exec "$@"
fi
if ! command -v qemu-i386 >/dev/null; then
  echo "run32.sh: this kernel does not start 32-bit programs and qemu-i386 is missing;" \
    "install qemu-user (scripts/deps.sh does)" >&2
  exit 127
fi
exec qemu-i386 "$@"
