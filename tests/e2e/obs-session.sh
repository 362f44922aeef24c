# Shared by the end-to-end sessions that run inside Xvfb: starting and quitting
# OBS, and cutting the tap's recording into named pieces.
# Needs: $config (OBS's configuration), $artifacts, $output (the tap's file).
marks=$artifacts/cuts.txt
: > "$marks"
pid=

# Samples recorded so far (one float per sample of the first channel).
position() { echo $(( $(stat -c %s "$output" 2>/dev/null || echo 0) / 4 )); }
# Records SECONDS of output as the cut NAME.
cut() {
  local from; from=$(position)
  sleep "$2"
  echo "$1 $from $(position)" >> "$marks"
}
shot() { import -window root "$artifacts/$1.png" 2>/dev/null || true; }
fail() { echo "$1"; shot failure; kill "$pid" 2>/dev/null; exit 1; }

start_obs() {
  local before; before=$(ls "$config"/logs | wc -l)
  obs --disable-updater --disable-shutdown-check >>"$artifacts/obs-stdout.txt" 2>&1 &
  pid=$!
  for _ in $(seq 1 90); do
    sleep 1
    kill -0 "$pid" 2>/dev/null || fail "OBS ended while starting"
    local log; log=$(ls -t "$config"/logs/*.txt 2>/dev/null | head -1)
    if [ "$(ls "$config"/logs | wc -l)" -gt "$before" ] &&
       grep -q "\[Lumora\] filter created" "$log"; then
      # Let the media source play for a while before anything is measured.
      local start; start=$(position)
      sleep 4
      [ $(( $(position) - start )) -gt 96000 ] || fail "the voice source is not playing"
      win=$(xdotool search --name "OBS [0-9]" | head -1)
      xdotool windowmove "$win" 0 0 windowsize "$win" 1600 1000
      sleep 2
      return
    fi
  done
  fail "Tindra was not created within 90 s"
}

# Waits up to SECONDS for a shown window whose name matches PATTERN and prints
# its id; fails quietly when none came.
wait_window() {
  local id
  for _ in $(seq $(( $2 * 4 ))); do
    id=$(xdotool search --onlyvisible --name "$1" 2>/dev/null | head -1)
    [ -z "$id" ] || { echo "$id"; return 0; }
    sleep 0.25
  done
  return 1
}

# What a user does: select the voice source and open its filters. Each step
# waits for the window it opens rather than for a fixed time, and a click lost
# on a loaded virtual display is tried again.
open_filters() {
  for _ in 1 2 3; do
    xdotool search --onlyvisible --name "^Filters for" >/dev/null 2>&1 && return 0
    xdotool mousemove 372 803 click 1; sleep 1
    xdotool mousemove 372 721 click 1
    if wait_window "^Filters for" 10 >/dev/null; then
      sleep 2 # the filter's properties are laid out after the window is shown
      return 0
    fi
  done
  fail "the Filters window did not open"
}

# Then Tindra's "Open". Sets $dialog, and $dx $dy to the dialog's corner.
open_dialog() {
  dialog=
  for _ in 1 2 3; do
    open_filters
    xdotool mousemove 680 456 sleep 0.3 mousedown 1 sleep 0.15 mouseup 1
    dialog=$(wait_window "^Tindra$" 10) && break
  done
  [ -n "$dialog" ] || fail "the dialog did not open"
  # Without a window manager nothing raises a clicked window: the Filters
  # window may still cover the dialog.
  xdotool windowraise "$dialog"
  xdotool windowfocus --sync "$dialog"
  sleep 1
  eval "$(xdotool getwindowgeometry --shell "$dialog")"
  dx=$X dy=$Y
}

quit_obs() {
  # The Controls dock's "Exit". A click that lands while OBS is still busy
  # with the last step (a combo box closing, the settings being written) is
  # sometimes lost on this loaded machine, so it is tried up to three times.
  for _ in 1 2 3; do
    kill -0 "$pid" 2>/dev/null || break
    xdotool windowfocus --sync "$win" 2>/dev/null || true
    xdotool mousemove 1453 955 click 1
    for _ in $(seq 1 10); do
      kill -0 "$pid" 2>/dev/null || { wait "$pid"; return; }
      sleep 1
    done
  done
  kill -0 "$pid" 2>/dev/null || { wait "$pid"; return; }
  fail "OBS did not quit"
}
