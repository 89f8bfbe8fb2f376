#!/usr/bin/env bash
# Installs the Debian packages the build, the tests and the demo need. Idempotent: when every
# package is present it only checks and returns.
set -euo pipefail

packages=(
  cmake ninja-build g++ g++-multilib clang libclang-rt-14-dev clang-format clang-tidy
  googletest libgtest-dev libbenchmark-dev libopenblas-dev
  libsndfile1-dev libcli11-dev nlohmann-json3-dev libcairo2-dev libsdl2-dev
  fonts-liberation2 fontconfig sox iem-plugin-suite-vst python3
  ccache     # the compiler cache that every checkout on the machine shares (scripts/build.sh)
  qemu-user  # qemu-i386: the 32-bit tests run through it where the kernel refuses 32-bit programs,
             # and once more on every machine (scripts/test.sh)
  xvfb xauth xdotool x11-apps  # the window system's end-to-end test: an X server, xdotool
  libx11-dev  # the spatiola edit window test closes its window as a window manager does
)

missing=()
for p in "${packages[@]}"; do
  if ! dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed"; then
    missing+=("$p")
  fi
done

if [ ${#missing[@]} -eq 0 ]; then
  exit 0
fi

echo "Installing ${#missing[@]} Debian packages and what they need (a few minutes on a fresh" \
  "machine): ${missing[*]}" >&2
if [ "$(id -u)" -ne 0 ]; then
  echo "Packages are missing and this is not root: install them with apt-get as root." >&2
  exit 1
fi
export DEBIAN_FRONTEND=noninteractive
apt-get update -qq
apt-get install -y -qq --no-install-recommends "${missing[@]}"
