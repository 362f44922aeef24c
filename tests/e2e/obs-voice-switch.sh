#!/usr/bin/env bash
# End to end in Debian's real OBS Studio under Xvfb: switching voices with the
# arrow keys and keeping them across a restart, measured on what the source outputs.
#
# A looping Media Source plays recorded speech through Tindra and then through a
# test-only tap filter that records the source's output. With the dialog open:
#   1. holding Up (a momentary key: pitch shift and radio) changes the output's
#      spectrum, and releasing it brings the dry voice back;
#   2. choosing "デスゲーム" as the default voice on the key-assignment page
#      changes the output at once;
# then OBS quits through its Exit button and starts again:
#   3. without touching the dialog the output is the default voice again;
#   4. holding Up in the new dialog sounds as it did before the restart.
# Cuts of the recording are compared by their octave-band spectra.
#   obs-voice-switch.sh MODULE.so DATA_DIR TAP.so MEASURE_TOOL ARTIFACT_DIR
set -euo pipefail
module=$1 data=$2 tap=$3 measure=$4 artifacts=$5
voice=/usr/share/sounds/alsa/Front_Center.wav
mkdir -p "$artifacts"
rm -f "$artifacts"/*.png "$artifacts"/*.txt

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
config=$home/.config/obs-studio
output=$home/output.f32
. "$(dirname "$0")/obs-config.sh"
e2e_make_config "$config" "$module" "$data"
e2e_install_plugin "$config" lumora-test-tap "$tap"
e2e_write_scene "$config" "$voice" "[
  {\"id\": \"lumora_filter\", \"versioned_id\": \"lumora_filter\", \"name\": \"Tindra\", \"settings\": {}},
  {\"id\": \"lumora_test_tap\", \"versioned_id\": \"lumora_test_tap\", \"name\": \"Tap\",
   \"settings\": {\"path\": \"$output\"}}]"

export HOME=$home XDG_CONFIG_HOME=$home/.config LUMORA_SETTINGS_DIR=$home/lumora-settings
export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
e2e=$(cd "$(dirname "$0")" && pwd)
export config artifacts output e2e
cat > "$home/session.sh" <<'RUN'
set -u
. "$e2e/obs-session.sh"

# A press and a release apart by a human's moment: under Xvfb a release sent
# straight after its press has been seen to go missing, leaving the button held
# down and unclicked.
click_dialog() {
  xdotool mousemove $((dx + $1)) $((dy + $2))
  sleep 0.3
  xdotool mousedown 1
  sleep 0.15
  xdotool mouseup 1
  sleep 1
  [ -z "${3:-}" ] || shot "$3"
}

hold_up() {
  xdotool keydown Up
  sleep 0.5
  cut "$1" 3
  shot "$1"
  xdotool keyup Up
  sleep 0.5
}

# First run: keys switch the voice; the default voice is chosen and saved.
start_obs
cut dry 3
open_dialog
shot dialog-open
hold_up held-up
cut released 3
click_dialog 375 740 presets-page         # "Presets"
click_dialog 440 75 assignments-page      # its key-assignment sub-page
click_dialog 247 240 default-card         # the plate's "Default": shows the default card
# The default card is the page's last: scrolled to the end, it stands in the
# same place however far the click above scrolled.
xdotool mousemove $((dx + 247)) $((dy + 400))
for _ in 1 2 3 4 5 6 7 8; do xdotool click 5; sleep 0.1; done
sleep 0.5
click_dialog 290 662 default-chooser-open # the default card's sound-effect chooser
xdotool key Down Down Return # (none) -> the first built-in -> "デスゲーム"
# The save follows the choice; on a loaded machine it may take a few seconds.
saved=false
for _ in $(seq 20); do
  if grep -A6 '"defaultKey"' "$LUMORA_SETTINGS_DIR/settings.json" |
    grep -q '"soundFxPresetName": "デスゲーム"'; then
    saved=true
    break
  fi
  sleep 0.5
done
$saved || fail "デスゲーム was not saved as the default voice"
# The dialog writes the choice before it hands the voice to the filter, and the
# shifted voice fades in only once its shifters have filled: a cut begun the
# moment the file shows the name can still hold the dry voice's first syllable,
# whose hiss alone moved the top octave by 6 dB.
sleep 1
cut default-voice 3
shot default-chosen
quit_obs

# Second run: the same configuration and settings folder.
start_obs
cut after-restart 3
open_dialog
shot dialog-after-restart
hold_up held-up-after-restart
click_dialog 375 740
click_dialog 440 75 assignments-after-restart
click_dialog 247 240 default-card-after-restart # still "デスゲーム"
quit_obs
RUN

status=0
# -r: no auto-repeat. Qt recognises a held key's repeats by their paired release
# and press arriving together; on a busy virtual display they can come apart and
# read as the key being let go, which a held momentary key must not see here.
xvfb-run -a -s "-screen 0 1600x1000x24 -r" bash "$home/session.sh" || status=$?
e2e_collect_logs "$config" "$artifacts"
[ "$status" -eq 0 ] || { echo "the OBS session failed (status $status)"; exit 1; }

for n in 1 2; do
  log=$artifacts/obs-log-$n.txt
  for line in "\[Lumora\] filter created (sr=48000 ch=2)" "\[Lumora\] filter destroyed" \
              "Number of memory leaks: 0"; do
    if grep -q "$line" "$log"; then echo "ok: run $n logged: $line"
    else echo "missing in the log of run $n: $line"; status=1; fi
  done
done

mapfile -t args < <(e2e_cuts "$artifacts" "$output")
# Held Up, the radio's band-pass and the shifted pitch move every octave band;
# the default voice (a pitch shift an octave up and down) moves them less.
if "$measure" "${args[@]}" \
    --differ dry,held-up,6 --same dry,released,2 \
    --differ dry,default-voice,4 --same default-voice,after-restart,2 \
    --differ dry,after-restart,4 --same held-up,held-up-after-restart,2 \
    | tee "$artifacts/measurements.txt"; then :; else status=1; fi
cp -r "$home/lumora-settings" "$artifacts/" 2>/dev/null || true
exit $status
