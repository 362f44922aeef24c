#!/usr/bin/env bash
# The demo: a streamer in a noisy room runs Tindra's diagnosis and applies what
# it recommends, in the real OBS host.
#  1. From real recorded speech (Debian's alsa-utils), five takes of a streamer
#     with a PC fan and mains hum in the room: normal, loud, soft, plosives, silence.
#  2. The diagnosis on those takes, its verdicts in Japanese and in English.
#  3. The recommended settings applied to the noisy voice by the Tindra filter
#     running inside libobs (lumora-host), before and after written as WAV files.
#  4. What changed: level, noise floor, loudness, and a spectrum chart (PNG).
set -euo pipefail
cd "$(dirname "$0")/.."

if [ "$(id -u)" -eq 0 ]; then
  bash scripts/setup.sh
fi
cmake --preset default >/dev/null
cmake --build --preset default -j "$(nproc)" \
  --target lumora lumora-host lumora-cli lumora-demo >/dev/null

out=${LUMORA_DEMO_OUT:-demo-output}
rm -rf "$out" && mkdir -p "$out/takes"
export LUMORA_SETTINGS_DIR=$PWD/$out/settings
bin=build/tools

"$bin/lumora-demo" takes "$out/takes"
takes=(--mic usb --normal "$out/takes/normal.wav" --loud "$out/takes/loud.wav"
       --soft "$out/takes/soft.wav" --plosive "$out/takes/plosive.wav"
       --silence "$out/takes/silence.wav")

echo "=================== 診断結果 (日本語) ==================="
"$bin/lumora-cli" diagnose "${takes[@]}" --lang ja | tee "$out/report-ja.txt"
echo
echo "=================== Diagnosis (English) ==================="
"$bin/lumora-cli" diagnose "${takes[@]}" --lang en | tee "$out/report-en.txt"
"$bin/lumora-cli" diagnose "${takes[@]}" > "$out/diagnosis.json"

recommended=$(python3 -c 'import json,sys; print(json.dumps(json.load(open(sys.argv[1]))["recommended"], ensure_ascii=False))' "$out/diagnosis.json")
cp "$out/takes/voice-noisy.wav" "$out/before.wav"
echo
echo "=================== Tindra in OBS (libobs $(pkg-config --modversion libobs)) ==================="
xvfb-run -a "$bin/lumora-host" --module build/module/lumora.so --filter lumora_filter \
  --proc apply_effect_preset "$recommended" --in "$out/before.wav" --out "$out/after.wav" \
  --channels 2 > "$out/host.json"
cat "$out/host.json"

"$bin/lumora-demo" plot "$out/before.wav" "$out/after.wav" "$out/spectrum.png"
echo
echo "=================== What changed ==================="
"$bin/lumora-demo" stats "$out/before.wav" "$out/after.wav" | python3 -c '
import json, sys
before, after = json.load(sys.stdin)
host = json.load(open(sys.argv[1]))
print("%-24s%10s%10s" % ("", "before", "after"))
for key, label in (("levelDb", "level (dBFS)"), ("noiseFloorDb", "noise floor (dBFS)"),
                   ("loudnessLufs", "loudness (LUFS)")):
    print("%-24s%10.1f%10.1f" % (label, before[key], after[key]))
print("%-24s%10.1f%10.1f" % ("voice over noise (dB)", before["levelDb"] - before["noiseFloorDb"],
                             after["levelDb"] - after["noiseFloorDb"]))
print("CPU in the OBS host: %.2f %% of one core (stereo, %d Hz)" %
      (host["cpuPercentOfOneCore"], host["sampleRate"]))
' "$out/host.json"
echo
echo "Files: $out/before.wav, $out/after.wav, $out/spectrum.png, $out/diagnosis.json"
