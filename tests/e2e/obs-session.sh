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
