#!/usr/bin/env bash
# CPU cost, side by side in the real OBS host: our whole cleaning chain (spectral
# noise reduction, gate, full equaliser, compressor, limiter) against OBS's own
# equivalent chain from obs-filters (RNNoise, noise gate, 3-band EQ, compressor,
# limiter), on the same noisy voice, stereo 48 kHz, packets of 480 frames.
# Prints the figures as a Markdown table; each is the best of three runs.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${LUMORA_BUILD:-build}
if [ "${LUMORA_SKIP_BUILD:-0}" != 1 ]; then
  cmake --preset default >/dev/null
  cmake --build "$build" -j "$(nproc)" --target lumora lumora-host lumora-quality >/dev/null
fi
host=$build/tools/lumora-host
quality=$build/tools/lumora-quality
obsfilters=/usr/lib/x86_64-linux-gnu/obs-plugins/obs-filters.so
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LUMORA_SETTINGS_DIR=$work/settings

voices=$(ls /usr/share/sounds/alsa/*.wav | grep -v Noise)
"$quality" speech "$work/speech.wav" $voices
"$quality" mix --speech "$work/speech.wav" --noise pink --snr 10 --noisy "$work/noisy.wav" \
  --noise-take "$work/take.wav"

profile=$(printf -- '-60,%.0s' $(seq 1 63))-60
ours=$(tr -d '\n' <<JSON
{"name": "all on", "inputGainDb": 0,
 "spectral": {"enabled": true, "amount": 0.85, "profileDb": [$profile]},
 "gate": {"enabled": true, "thresholdDb": -50, "attackMs": 3, "holdMs": 100, "releaseMs": 100, "rangeDb": -60},
 "eq": {"enabled": true, "lowCutEnabled": true, "lowCutHz": 90, "highShelfEnabled": true,
        "highShelfHz": 6000, "highShelfGainDb": 2, "highCutEnabled": true, "highCutHz": 16000,
        "highCutQ": 0.707, "notchBands": [
   {"enabled": true, "centerHz": 300, "gainDb": -2, "q": 2.5},
   {"enabled": true, "centerHz": 1200, "gainDb": -2, "q": 1.2},
   {"enabled": true, "centerHz": 2800, "gainDb": 2, "q": 1.4},
   {"enabled": true, "centerHz": 6500, "gainDb": -3.5, "q": 2.5},
   {"enabled": true, "centerHz": 4875, "gainDb": 1.5, "q": 0.9}]},
 "comp": {"enabled": true, "thresholdDb": -20, "ratio": 3.5, "attackMs": 15, "releaseMs": 80, "makeupGainDb": 3},
 "limiter": {"enabled": true, "ceilingDb": -2, "releaseMs": 50}}
JSON
)

measure() { # label, then lumora-host arguments; prints the best CPU share of three runs
  local best=
  for _ in 1 2 3; do
    local share
    share=$(xvfb-run -a "$host" "$@" --in "$work/noisy.wav" --channels 2 --block 480 \
              --repeat 10 --log none | sed -E 's/.*"cpuPercentOfOneCore": ([0-9.]+).*/\1/')
    if [ -z "$best" ] || awk -v a="$share" -v b="$best" 'BEGIN{exit !(a<b)}'; then best=$share; fi
  done
  echo "$best"
}

empty=$(measure)
lumora=$(measure --module "$build/module/lumora.so" --filter lumora_filter \
  --proc apply_effect_preset "$ours")
obs=$(measure --module "$obsfilters" \
  --filter noise_suppress_filter_v2 --settings '{"method": "rnnoise"}' \
  --filter noise_gate_filter --filter basic_eq_filter --filter compressor_filter \
  --filter limiter_filter)
obsNoRnnoise=$(measure --module "$obsfilters" \
  --filter noise_gate_filter --filter basic_eq_filter --filter compressor_filter \
  --filter limiter_filter)

awk -v e="$empty" -v l="$lumora" -v o="$obs" -v d="$obsNoRnnoise" 'BEGIN {
  printf "| chain (stereo 48 kHz, 480-frame packets, in libobs %s) | share of one core | without the host'"'"'s own cost |\n", "'"$(pkg-config --modversion libobs)"'"
  printf "|---|---:|---:|\n"
  printf "| host alone, no filter | %.3f %% | 0 %% |\n", e
  printf "| Lumora: spectral NR, gate, 8-filter EQ, compressor, limiter | %.3f %% | %.3f %% |\n", l, l - e
  printf "| OBS: RNNoise, gate, 3-band EQ, compressor, limiter | %.3f %% | %.3f %% |\n", o, o - e
  printf "| OBS without RNNoise: gate, 3-band EQ, compressor, limiter | %.3f %% | %.3f %% |\n", d, d - e
  printf "\nLumora / OBS (filters only): %.2f\n", (l - e) / (o - e)
}'
