#!/usr/bin/env bash
# End to end in Debian's real OBS Studio under Xvfb: switching voices without
# the dialog, measured on what the source outputs (as obs-voice-switch.sh does).
#
# A looping Media Source plays recorded speech through Tindra and a test-only
# tap that records the source's output. The dialog is never opened.
#   1. An OBS hotkey bound in the scene collection (F9 on "Tindra: Up voice", a
#      momentary slot), pressed with OBS's main window focused, changes the
#      output while it is held; its release brings the dry voice back.
#   2. A real obs-websocket client (obs-websocket-js from the npm registry) on
#      loopback: GetVoices lists the built-in voices, SetVoice changes the
#      output, GetState reports it, the VoiceChanged event arrives, and an
#      unknown voice answers an error and changes nothing.
#   3. After a restart the voice is where the key rules put it: the default
#      slot's (none here), no key active.
#   obs-remote.sh MODULE.so DATA_DIR TAP.so MEASURE_TOOL ARTIFACT_DIR NODE_DIR
set -euo pipefail
module=$1 data=$2 tap=$3 measure=$4 artifacts=$5 node_dir=$6
voice=/usr/share/sounds/alsa/Front_Center.wav
e2e=$(cd "$(dirname "$0")" && pwd)
mkdir -p "$artifacts" "$node_dir"
rm -f "$artifacts"/*.png "$artifacts"/*.txt "$artifacts"/*.json "$artifacts"/*.jsonl

# The client, installed once from the npm registry beside its script.
if [ ! -d "$node_dir/node_modules/obs-websocket-js" ]; then
  npm install --prefix "$node_dir" --no-audit --no-fund --loglevel=error obs-websocket-js@5
fi
cp "$e2e/obs-remote-client.mjs" "$node_dir/"

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
config=$home/.config/obs-studio
output=$home/output.f32
. "$e2e/obs-config.sh"
e2e_make_config "$config" "$module" "$data"
e2e_install_plugin "$config" lumora-test-tap "$tap"
# obs-websocket on, on its usual port, without a password or first-run dialog.
cat >> "$config/global.ini" <<INI
[OBSWebSocket]
FirstLoad=false
ServerEnabled=true
ServerPort=4455
AuthRequired=false
AlertsEnabled=false
ServerPassword=
INI
e2e_write_scene "$config" "$voice" "[
  {\"id\": \"lumora_filter\", \"versioned_id\": \"lumora_filter\", \"name\": \"Tindra\", \"settings\": {}},
  {\"id\": \"lumora_test_tap\", \"versioned_id\": \"lumora_test_tap\", \"name\": \"Tap\",
   \"settings\": {\"path\": \"$output\"}}]" \
  '{"lumora.voice.up": [{"key": "OBS_KEY_F9"}]}'

export HOME=$home XDG_CONFIG_HOME=$home/.config LUMORA_SETTINGS_DIR=$home/lumora-settings
export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
export config artifacts output e2e node_dir
cat > "$home/session.sh" <<'RUN'
set -u
. "$e2e/obs-session.sh"
client() { node "$node_dir/obs-remote-client.mjs" "$@"; }
expect() { # FILE TEXT WHAT
  grep -q -- "$2" "$1" && echo "ok: $3" || fail "$3: not in $(cat "$1")"
}

start_obs
cut dry 3
# The hotkey, with OBS's main window focused and no dialog open.
xdotool windowfocus --sync "$win"
xdotool keydown F9
sleep 0.5
cut hotkey-held 3
shot hotkey-held
xdotool keyup F9
sleep 0.5
cut hotkey-released 3

client listen "$artifacts/events.jsonl" &
listener=$!
sleep 2
client call GetVoices > "$artifacts/get-voices.json"
expect "$artifacts/get-voices.json" '"name":"デスゲーム"' "GetVoices lists the built-in voices"
client call SetVoice '{"sourceName": "Voice", "voice": "デスゲーム"}' > "$artifacts/set-voice.json"
sleep 0.5
cut set-voice 3
client call GetState '{"sourceName": "Voice"}' > "$artifacts/get-state.json"
expect "$artifacts/get-state.json" '"soundFxPreset":"デスゲーム"' "GetState reports the voice"
client call SetVoice '{"sourceName": "Voice", "voice": "ない声"}' > "$artifacts/set-unknown.json"
expect "$artifacts/set-unknown.json" '"error":"no voice named' "an unknown voice is an error"
sleep 0.5
cut after-unknown 3
sleep 1
kill "$listener" 2>/dev/null || true
expect "$artifacts/events.jsonl" '"eventType":"VoiceChanged"' "the VoiceChanged event arrived"
expect "$artifacts/events.jsonl" '"soundFxPreset":"デスゲーム"' "the event names the voice"
quit_obs

start_obs
client call GetState '{"sourceName": "Voice"}' > "$artifacts/get-state-after-restart.json"
if grep -q '"activeSlot"\|"soundFxPreset"' "$artifacts/get-state-after-restart.json"; then
  fail "after a restart no key is active and the default slot names no voice: $(cat "$artifacts/get-state-after-restart.json")"
fi
echo "ok: after a restart the voice is the default slot's (none)"
cut after-restart 3
quit_obs
RUN

status=0
xvfb-run -a -s "-screen 0 1600x1000x24 -r" bash "$home/session.sh" || status=$?
e2e_collect_logs "$config" "$artifacts"
cp "$config/basic/scenes/lumora.json" "$artifacts/scene-collection.json" 2>/dev/null || true
[ "$status" -eq 0 ] || { echo "the OBS session failed (status $status)"; exit 1; }
grep -q '\[Lumora\] obs-websocket vendor "Tindra" registered with 5 requests' \
  "$artifacts/obs-log-1.txt" && echo "ok: the vendor registered" ||
  { echo "missing in the log: the vendor's registration"; status=1; }

mapfile -t args < <(e2e_cuts "$artifacts" "$output")
# Held F9 is the Up slot (pitch shift and radio): every octave band moves.
if "$measure" "${args[@]}" \
    --differ dry,hotkey-held,6 --same dry,hotkey-released,2 \
    --differ dry,set-voice,4 --same set-voice,after-unknown,2 \
    --same dry,after-restart,2 \
    | tee "$artifacts/measurements.txt"; then :; else status=1; fi
exit $status
