#!/usr/bin/env bash
# Photographs every page and diagnosis state in Japanese and English and keeps a
# compressed copy of each in docs/screenshots (8-bit PNG, about 90 KB each).
# Usage: tools/screens/update-docs.sh [build dir, default build]
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${1:-build}
cmake --build "$build" --target lumora-screens
raw=$(mktemp -d)
trap 'rm -rf "$raw"' EXIT
xvfb-run -a -s "-screen 0 1280x1024x24" "$build/tools/screens/lumora-screens" "$raw" ja en
mkdir -p docs/screenshots
rm -f docs/screenshots/*.png
keep=(
  tab0-diagnose tab1-results tab2-sound tab3-fx tab4-presets tab5-keys menu
  wizard-0-mic wizard-1-prompt wizard-2-countdown-step1 wizard-3-recording-step1
  wizard-4-done-step1 wizard-5-analysing wizard-6-result wizard-7-offer-save wizard-8-end
)
for lang in ja en; do
  for name in "${keep[@]}"; do
    convert "$raw/$lang-$name.png" -dither FloydSteinberg -colors 256 \
      "PNG8:docs/screenshots/$lang-$name.png"
  done
done
convert "$raw/ja-tab1-results-empty.png" -dither FloydSteinberg -colors 256 \
  PNG8:docs/screenshots/ja-tab1-results-empty.png
convert "$raw/en-menu-language.png" -dither FloydSteinberg -colors 256 \
  PNG8:docs/screenshots/en-menu-language.png
du -sh docs/screenshots
