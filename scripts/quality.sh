#!/usr/bin/env bash
# Noise-reduction quality, side by side in one run: real speech mixed with
# stationary room noises (pink, brown, 50 Hz mains hum with harmonics) at 0, 5
# and 10 dB SNR, cleaned by Lumora's spectral noise reduction with a profile
# learned from a silence take through the diagnosis, and by OBS's own noise
# suppression (RNNoise and Speex) in the real OBS host. Prints a Markdown table
# of SI-SDR (dB) and the improvement over the noisy input.
set -euo pipefail
cd "$(dirname "$0")/.."
build=${LUMORA_BUILD:-build}
if [ "${LUMORA_SKIP_BUILD:-0}" != 1 ]; then
  cmake --preset default >/dev/null
  cmake --build "$build" -j "$(nproc)" --target lumora lumora-host lumora-quality lumora-cli >/dev/null
fi
host=$build/tools/lumora-host
quality=$build/tools/lumora-quality
cli=$build/tools/lumora-cli
obsfilters=/usr/lib/x86_64-linux-gnu/obs-plugins/obs-filters.so
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
export LUMORA_SETTINGS_DIR=$work/settings
amount=${LUMORA_NR_AMOUNT:-1.0}

"$quality" speech "$work/speech.wav" $(ls /usr/share/sounds/alsa/*.wav | grep -v Noise)

sisdr() { "$quality" score --clean "$work/speech.wav" --test "$1" | sed -E 's/.*"siSdrDb": ([-0-9.]+).*/\1/'; }

echo "| noise | input SNR | noisy | Lumora spectral NR | OBS RNNoise | OBS Speex |"
echo "|---|---:|---:|---:|---:|---:|"
for noise in ${LUMORA_NOISES:-pink brown hum}; do
  for snr in ${LUMORA_SNRS:-0 5 10}; do
    d=$work/$noise-$snr
    mkdir -p "$d"
    "$quality" mix --speech "$work/speech.wav" --noise $noise --snr $snr --seed 7 \
      --noisy "$d/noisy.wav" --noise-take "$d/silence.wav"
    # The five diagnosis takes, as a streamer in this room would give them.
    "$quality" gain "$d/noisy.wav" "$d/loud.wav" 8
    "$quality" gain "$d/noisy.wav" "$d/soft.wav" -10
    "$cli" diagnose --mic condenser --normal "$d/noisy.wav" --loud "$d/loud.wav" \
      --soft "$d/soft.wav" --plosive "$d/noisy.wav" --silence "$d/silence.wav" > "$d/diagnosis.json"
    # The room's noise profile, learned from the silence take.
    preset=$("$cli" learn-noise "$d/silence.wav" --margin "${LUMORA_PROFILE_MARGIN:-3}" |
             tr -d '\n' | sed -E "s/\"amount\": 1/\"amount\": $amount/")
    xvfb-run -a "$host" --module "$build/module/lumora.so" --filter lumora_filter \
      --proc apply_effect_preset "$preset" --in "$d/noisy.wav" --out "$d/lumora.wav" --log none >/dev/null
    for method in rnnoise speex; do
      xvfb-run -a "$host" --module "$obsfilters" --filter noise_suppress_filter_v2 \
        --settings "{\"method\": \"$method\"}" --in "$d/noisy.wav" --out "$d/$method.wav" \
        --log none >/dev/null
    done
    n=$(sisdr "$d/noisy.wav"); l=$(sisdr "$d/lumora.wav")
    r=$(sisdr "$d/rnnoise.wav"); s=$(sisdr "$d/speex.wav")
    awk -v noise=$noise -v snr=$snr -v n=$n -v l=$l -v r=$r -v s=$s 'BEGIN {
      printf "| %s | %d dB | %.1f | %.1f (%+.1f) | %.1f (%+.1f) | %.1f (%+.1f) |\n",
             noise, snr, n, l, l - n, r, r - n, s, s - n }'
  done
done
