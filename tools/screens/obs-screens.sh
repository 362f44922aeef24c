#!/usr/bin/env bash
# Photographs the dialog inside Debian's real OBS Studio under Xvfb: every tab
# and presets sub-page, in Japanese (the dialog's first language) and in
# English (chosen from its menu), and the menu itself. OBS's own style and
# fonts apply there, which the standalone pictures cannot show.
#   tools/screens/obs-screens.sh [build dir, default build-ci] [output dir]
# Without an output dir the pictures refresh docs/screenshots/obs/.
set -euo pipefail
cd "$(dirname "$0")/../.."
build=${1:-build-ci}
out=${2:-docs/screenshots/obs}
cmake --build "$build" --target lumora >/dev/null
mkdir -p "$out"
out=$(cd "$out" && pwd)
home=$(mktemp -d)
trap 'rm -rf "$home"' EXIT
config=$home/.config/obs-studio
. tests/e2e/obs-config.sh
e2e_make_config "$config" "$build/module/lumora.so" "$build/plugin-data/lumora"
e2e_write_scene "$config" /usr/share/sounds/alsa/Front_Center.wav "[
  {\"id\": \"lumora_filter\", \"versioned_id\": \"lumora_filter\", \"name\": \"Tindra\", \"settings\": {}}]"
export HOME=$home XDG_CONFIG_HOME=$home/.config LUMORA_SETTINGS_DIR=$home/lumora-settings
export LIBGL_ALWAYS_SOFTWARE=1 QT_QPA_PLATFORM=xcb
export config out raw=$home/raw
mkdir -p "$home/raw"
cat > "$home/run.sh" <<'RUN'
set -u
obs --disable-updater --disable-shutdown-check >/dev/null 2>&1 &
pid=$!
for _ in $(seq 1 60); do
  sleep 1
  grep -q "\[Lumora\] filter created" "$config"/logs/*.txt 2>/dev/null && break
done
sleep 3
win=$(xdotool search --name "OBS [0-9]" | head -1)
xdotool windowmove "$win" 0 0 windowsize "$win" 1600 1000
sleep 2
# The voice source's filters, then Tindra's "Open".
xdotool mousemove 372 803 click 1; sleep 1
xdotool mousemove 372 721 click 1; sleep 3
import -window root "$raw/obs-filters.png"
xdotool mousemove 680 456 click 1; sleep 4
dialog=$(xdotool search --name "^Tindra$" | head -1)
[ -n "$dialog" ] || { echo "the dialog did not open"; kill $pid; exit 1; }
raise() {
  for _ in 1 2; do xdotool windowraise "$dialog"; sleep 0.5; done
  eval "$(xdotool getwindowgeometry --shell "$dialog")"
}
click() { xdotool mousemove $((X + $1)) $((Y + $2)) click 1; sleep 1.5; }
shoot() { raise; import -window "$dialog" "$raw/$1.png"; }
pages() {
  local lang=$1 tab sub
  for tab in 0 1 2 3 4 5; do
    raise; click $((41 + tab * 83)) 740
    if [ $tab -eq 4 ]; then
      for sub in 0 1 2 3; do
        raise; click $((63 + sub * 125)) 75
        shoot "obs-$lang-tab4-presets-sub$sub"
      done
    else
      shoot "obs-$lang-tab$tab"
    fi
  done
  # The menu, photographed with the screen around it (it is a window of its own).
  raise; click 463 31
  import -window root -crop 520x420+$((X + 100))+$((Y - 10)) "$raw/obs-$lang-menu.png"
}
raise
pages ja
# English from the menu: clicking the language entry opens its list, English
# first in it.
xdotool mousemove $((X + 480)) $((Y + 70)); sleep 0.3
xdotool mousemove $((X + 495)) $((Y + 78)) click 1; sleep 1.5
xdotool mousemove $((X + 739)) $((Y + 78)) click 1; sleep 2
pages en
xdotool key Escape
kill $pid 2>/dev/null; wait $pid 2>/dev/null
exit 0
RUN
xvfb-run -a -s "-screen 0 1600x1000x24" bash "$home/run.sh"
for f in "$raw"/*.png; do
  convert "$f" -dither FloydSteinberg -colors 256 "PNG8:$out/$(basename "$f")"
done
ls "$out"
