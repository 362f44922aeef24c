#!/usr/bin/env bash
# Installs every Debian package that building, testing and demonstrating Lumora
# needs. Safe to run again: apt-get skips what is already there.
set -euo pipefail

packages=(
  # toolchain
  build-essential cmake ninja-build pkg-config clang-format git
  # the real host: libobs headers, OBS Studio itself and its stock filters
  libobs-dev obs-studio obs-plugins
  # Qt 5 (what Debian's OBS 29 uses) and Qt 6 (what OBS 31 on Windows uses)
  qtbase5-dev qttools5-dev qttools5-dev-tools libqt5svg5-dev
  qt6-base-dev qt6-tools-dev qt6-tools-dev-tools qt6-l10n-tools qt6-svg-dev libgl-dev
  # audio libraries
  libsoundtouch-dev libebur128-dev libsndfile1-dev
  # tests and benchmarks
  googletest libgtest-dev libgmock-dev libbenchmark-dev
  # fuzzing: clang with libFuzzer
  clang libclang-rt-dev
  # the Windows build of the settings and platform code, and Wine to run its tests
  g++-mingw-w64-x86-64 wine wine64
  # the interface font's subset (scripts/make-font-subset.sh) and the .deb package
  python3-fonttools dpkg-dev
  # a display for libobs and OBS, and tools to drive and photograph it
  xvfb xauth xdotool x11-utils x11-apps imagemagick
  # real recorded speech (alsa-utils: one speaker; pocketsphinx-testdata: a
  # LibriVox reader, the CMU test speaker, a card-game and a digits speaker;
  # codec2-examples: six more talkers) and synthetic voices in Japanese and
  # English for the diagnosis corpus; fonts for Japanese text and emoji
  alsa-utils pocketsphinx-testdata codec2-examples espeak-ng
  fonts-klee fonts-noto-cjk fonts-noto-color-emoji
)

if [ "$(id -u)" -ne 0 ]; then
  echo "setup.sh must run as root (it installs Debian packages)" >&2
  exit 1
fi

# Node.js runs the obs-websocket client of the remote-control test (its
# package comes from the npm registry); a machine that has it keeps its own.
if ! command -v node >/dev/null || ! command -v npm >/dev/null; then
  packages+=(nodejs npm)
fi

missing=()
for p in "${packages[@]}"; do
  dpkg-query -W -f='${Status}' "$p" 2>/dev/null | grep -q "install ok installed" || missing+=("$p")
done
if [ ${#missing[@]} -gt 0 ]; then
  export DEBIAN_FRONTEND=noninteractive
  apt-get update -qq
  apt-get install -y -qq --no-install-recommends "${missing[@]}"
fi
