#!/usr/bin/env bash
# Builds everything and runs every test: the Qt of the installed OBS (Qt 5 on
# Debian 12) with the host tests in the real libobs, then the Qt 6 build that the
# Windows target uses (compile and unit tests), so the two never drift apart.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -eq 0 ]; then
  bash scripts/setup.sh
fi

jobs=$(nproc)
cmake --preset ci >/dev/null
cmake --build --preset ci -j "$jobs"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --preset ci -j "$jobs"

cmake --preset qt6 >/dev/null
cmake --build --preset qt6 -j "$jobs"
xvfb-run -a -s "-screen 0 1280x1024x24" ctest --preset qt6 -j "$jobs"
