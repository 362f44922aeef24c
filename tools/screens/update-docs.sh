#!/usr/bin/env bash
# Photographs every page and diagnosis state in Japanese and English and keeps a
# compressed copy of each in docs/screenshots (8-bit PNG, about 90 KB each).
# tools/screens/obs-screens.sh does the same inside OBS.
# Usage: tools/screens/update-docs.sh [build dir, default build]
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${1:-build}
cmake --build "$build" --target lumora-screens
raw=$(mktemp -d)
trap 'rm -rf "$raw"' EXIT
xvfb-run -a -s "-screen 0 1280x1024x24" "$build/tools/screens/lumora-screens" "$raw" ja en
mkdir -p docs/screenshots
# Every page, sub-page and diagnosis state; the small-screen picture is taken by
# hand and kept.
find docs/screenshots -maxdepth 1 -name '*.png' ! -name '*small-screen*' -delete
for f in "$raw"/*.png; do
  convert "$f" -dither FloydSteinberg -colors 256 "PNG8:docs/screenshots/$(basename "$f")"
done
du -sh docs/screenshots
