#!/usr/bin/env bash
# End to end in Debian's real OBS Studio under Xvfb: installs the built plug-in into
# a fresh OBS configuration, loads a scene collection whose voice source carries
# the Tindra filter, checks OBS's log and keeps a screenshot.
#   obs-gui.sh MODULE.so DATA_DIR ARTIFACT_DIR
set -euo pipefail
module=$1 data=$2 artifacts=$3
voice=/usr/share/sounds/alsa/Front_Center.wav
mkdir -p "$artifacts"

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
config=$home/.config/obs-studio
. "$(dirname "$0")/obs-config.sh"
e2e_make_config "$config" "$module" "$data"
e2e_write_scene "$config" "$voice" \
  '[{"id": "lumora_filter", "versioned_id": "lumora_filter", "name": "Tindra", "settings": {}}]'

export HOME=$home XDG_CONFIG_HOME=$home/.config LUMORA_SETTINGS_DIR=$home/lumora-settings
export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
cat > "$home/run-obs.sh" <<'RUN'
obs --disable-updater --disable-shutdown-check >"$artifacts/obs-stdout.txt" 2>&1 &
pid=$!
ok=1
for _ in $(seq 1 60); do
  sleep 1
  if grep -q "\[Lumora\] filter created" "$config"/logs/*.txt 2>/dev/null; then ok=0; break; fi
  kill -0 $pid 2>/dev/null || break
done
sleep 4
import -window root "$artifacts/obs-with-tindra.png" 2>/dev/null || true
# What a user does next: select the voice source and open its filters, where
# Tindra shows its one button.
win=$(xdotool search --name "OBS [0-9]" | head -1)
if [ -n "$win" ]; then
  xdotool windowmove "$win" 0 0 windowsize "$win" 1600 1000
  sleep 2
  xdotool mousemove 372 803 click 1
  sleep 1
  xdotool mousemove 372 721 click 1
  sleep 3
  import -window root "$artifacts/obs-filters-tindra.png" 2>/dev/null || true
  # "Open" shows the filter's dialog; a second click raises the same one.
  xdotool mousemove 680 456 click 1
  sleep 3
  xdotool mousemove 680 456 click 1
  sleep 2
  xdotool search --name "^Tindra$" > "$artifacts/tindra-windows.txt" || true
  import -window root "$artifacts/obs-dialog-open.png" 2>/dev/null || true
  # Removing the filter closes its dialog.
  xdotool mousemove 423 435 click 1
  sleep 2
  import -window root "$artifacts/obs-remove-confirm.png" 2>/dev/null || true
  xdotool key Return
  sleep 3
  xdotool search --name "^Tindra$" > "$artifacts/tindra-windows-after-remove.txt" || true
  import -window root "$artifacts/obs-filter-removed.png" 2>/dev/null || true
fi
kill $pid 2>/dev/null || true
wait $pid 2>/dev/null || true
exit $ok
RUN
export config artifacts
status=0
xvfb-run -a -s "-screen 0 1600x1000x24" bash "$home/run-obs.sh" || status=$?
cp "$config"/logs/*.txt "$artifacts/obs-log.txt" 2>/dev/null || true

log=$artifacts/obs-log.txt
check() {
  if grep -q "$1" "$log"; then echo "ok: $1"; else echo "missing in OBS log: $1"; status=1; fi
}
check "\[Lumora\] audio filter registered"
check "\[Lumora\] Plugin loaded (v1.0.0)"
check "\[Lumora\] filter created (sr=48000 ch=2)"
dialogs=$(wc -l < "$artifacts/tindra-windows.txt" 2>/dev/null || echo 0)
if [ "$dialogs" -eq 1 ]; then echo "ok: Open shows one dialog, twice clicked"
else echo "expected one Tindra dialog after two clicks on Open, found $dialogs"; status=1; fi
left=$(wc -l < "$artifacts/tindra-windows-after-remove.txt" 2>/dev/null || echo 1)
if [ "$left" -eq 0 ]; then echo "ok: removing the filter closed its dialog"
else echo "the dialog outlived its filter ($left window(s))"; status=1; fi
check "\[Lumora\] filter destroyed"
[ -s "$artifacts/obs-with-tindra.png" ] && echo "screenshot: $artifacts/obs-with-tindra.png"
exit $status
