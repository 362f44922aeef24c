#!/usr/bin/env bash
# End to end in Debian's real OBS Studio under Xvfb: installs the plug-in from its
# Debian package (made by the package test) into a fresh OBS configuration, loads
# a scene collection whose voice source carries the Tindra filter, checks OBS's
# log and keeps screenshots.
#
# Before the dialog is opened, another plug-in (the test tap, from a thread of its
# own) sets a voice through Tindra's apply_sound_fx_preset procedure: an octave up
# in a hall. The dialog must open showing that voice, not its defaults: the log
# line it writes on opening and the FX page's pitch switch in a screenshot.
#   obs-gui.sh PACKAGE_DIR TAP.so ARTIFACT_DIR
set -euo pipefail
package_dir=$1 tap=$2 artifacts=$3
debs=("$package_dir"/*.deb)
if [ ${#debs[@]} -ne 1 ] || [ ! -f "${debs[0]}" ]; then
  echo "expected the one .deb of the package test in $package_dir, found: ${debs[*]}"; exit 1
fi
voice=/usr/share/sounds/alsa/Front_Center.wav
mkdir -p "$artifacts"

home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
config=$home/.config/obs-studio
. "$(dirname "$0")/obs-config.sh"
e2e_make_config_from_deb "$config" "${debs[0]}"
e2e_install_plugin "$config" lumora-test-tap "$tap"
octave_hall='{\"name\": \"Octave up in a hall\", \"pitch\": {\"enabled\": true, \"semitonesA\": 12}, \"reverb\": {\"enabled\": true, \"roomSize\": 0.7, \"wetMix\": 0.4}}'
e2e_write_scene "$config" "$voice" "[
  {\"id\": \"lumora_filter\", \"versioned_id\": \"lumora_filter\", \"name\": \"Tindra\", \"settings\": {}},
  {\"id\": \"lumora_test_tap\", \"versioned_id\": \"lumora_test_tap\", \"name\": \"Tap\",
   \"settings\": {\"path\": \"\", \"voice\": \"$octave_hall\"}}]"

export HOME=$home XDG_CONFIG_HOME=$home/.config LUMORA_SETTINGS_DIR=$home/lumora-settings
export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
cat > "$home/run-obs.sh" <<'RUN'
. "$e2e/obs-session.sh"
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
  open_filters
  import -window root "$artifacts/obs-filters-tindra.png" 2>/dev/null || true
  # "Open" shows the filter's dialog; a second click raises the same one.
  xdotool mousemove 680 456 click 1
  wait_window "^Tindra$" 10 >/dev/null || true
  sleep 1
  xdotool mousemove 680 456 click 1
  sleep 2
  xdotool search --name "^Tindra$" > "$artifacts/tindra-windows.txt" || true
  import -window root "$artifacts/obs-dialog-open.png" 2>/dev/null || true
  # The FX tab: the pitch card's switch is on (its knob to the right, the
  # track's teal showing at its left end).
  dialog=$(xdotool search --name "^Tindra$" | head -1)
  if [ -n "$dialog" ]; then
    # Without a window manager nothing raises a window that is clicked: the
    # Filters window may still cover the dialog.
    # A loaded machine may take the raise before the dialog is mapped: twice.
    for _ in 1 2; do
      xdotool windowraise "$dialog"
      xdotool windowfocus --sync "$dialog" 2>/dev/null || true
      sleep 1
    done
    eval "$(xdotool getwindowgeometry --shell "$dialog")"
    xdotool mousemove $((X + 291)) $((Y + 740)) click 1
    sleep 1
    xdotool windowraise "$dialog"
    sleep 1
    import -window root "$artifacts/obs-dialog-fx.png" 2>/dev/null || true
    convert "$artifacts/obs-dialog-fx.png" -format '%[pixel:p{'$((X + 437))','$((Y + 183))'}]' \
      info: > "$artifacts/pitch-switch-pixel.txt" 2>/dev/null || true
  fi
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
e2e=$(cd "$(dirname "$0")" && pwd)
export config artifacts e2e
status=0
xvfb-run -a -s "-screen 0 1600x1000x24" bash "$home/run-obs.sh" || status=$?
cp "$config"/logs/*.txt "$artifacts/obs-log.txt" 2>/dev/null || true

log=$artifacts/obs-log.txt
check() {
  if grep -q "$1" "$log"; then echo "ok: $1"; else echo "missing in OBS log: $1"; status=1; fi
}
check "\[Lumora\] audio filter registered"
check "\[Lumora\] Plugin loaded (v[0-9]"
check "\[Lumora\] filter created (sr=48000 ch=2)"
check "\[Lumora test tap\] apply_sound_fx_preset from another thread: ok"
check "\[Lumora\] dialog opened; voice effects shown: pitch +12.0 st, reverb$"
# The switch's track is teal (78,205,196) when on, its white knob sits there when off.
pixel=$(cat "$artifacts/pitch-switch-pixel.txt" 2>/dev/null || echo none)
if echo "$pixel" | grep -Eq '\((7[0-9]|8[0-9]),(19[0-9]|2[01][0-9]),(18[0-9]|19[0-9]|20[0-9])'; then
  echo "ok: the FX page shows the pitch switch on ($pixel)"
else echo "the FX page's pitch switch does not show on: $pixel"; status=1; fi
dialogs=$(wc -l < "$artifacts/tindra-windows.txt" 2>/dev/null || echo 0)
if [ "$dialogs" -eq 1 ]; then echo "ok: Open shows one dialog, twice clicked"
else echo "expected one Tindra dialog after two clicks on Open, found $dialogs"; status=1; fi
left=$(wc -l < "$artifacts/tindra-windows-after-remove.txt" 2>/dev/null || echo 1)
if [ "$left" -eq 0 ]; then echo "ok: removing the filter closed its dialog"
else echo "the dialog outlived its filter ($left window(s))"; status=1; fi
check "\[Lumora\] filter destroyed"
[ -s "$artifacts/obs-with-tindra.png" ] && echo "screenshot: $artifacts/obs-with-tindra.png"
exit $status
