#!/usr/bin/env bash
# The demo: builds Lumora and runs its filter in the real OBS host (libobs, no
# window) on a real voice recording, printing the plug-in's log and the levels.
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -eq 0 ]; then
  bash scripts/setup.sh
fi
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" --target lumora lumora-host lumora-cli >/dev/null

out=${LUMORA_DEMO_OUT:-demo-output}
mkdir -p "$out"
voice=/usr/share/sounds/alsa/Front_Center.wav
export LUMORA_SETTINGS_DIR=$PWD/$out/settings

echo "== Tindra in libobs $(pkg-config --modversion libobs), on $voice"
xvfb-run -a build/tools/lumora-host --module build/module/lumora.so \
  --filter lumora_filter --in "$voice" --out "$out/voice-through-tindra.wav" --channels 2
echo "== wrote $out/voice-through-tindra.wav"
