#!/usr/bin/env bash
# Builds the plug-in and its Debian package (obs-lumora_<version>_<arch>.deb) in
# build-ci/package, and prints the package's path. Install it with
#   sudo apt install ./build-ci/package/obs-lumora_<version>_<arch>.deb
set -euo pipefail
cd "$(dirname "$0")/.."

cmake --preset ci >/dev/null
cmake --build build-ci --target lumora -j "$(nproc)"
rm -f build-ci/package/*.deb
if ! log=$(cpack --config build-ci/CPackConfig.cmake -B build-ci/package 2>&1); then
  echo "$log" >&2
  exit 1
fi
ls "$PWD"/build-ci/package/*.deb
