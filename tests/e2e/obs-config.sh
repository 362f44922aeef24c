# Shared by the end-to-end scripts: a fresh OBS Studio configuration in a
# throw-away home, with the plug-in installed as a user plug-in: the built one,
# or the one its Debian package ships.
#   e2e_make_config CONFIG MODULE.so DATA_DIR
#   e2e_make_config_from_deb CONFIG PACKAGE.deb
#   e2e_write_scene CONFIG MEDIA_FILE FILTERS_JSON [HOTKEYS_JSON]
#   e2e_install_plugin CONFIG NAME FILE.so

# After a session: OBS's logs, oldest first, as obs-log-1.txt, obs-log-2.txt...
e2e_collect_logs() {
  local config=$1 artifacts=$2 n=0 log
  while IFS= read -r log; do
    n=$((n + 1))
    cp "$config/logs/$log" "$artifacts/obs-log-$n.txt"
  done < <(ls -tr "$config"/logs)
}

# The tap's recording cut as the session marked it, for the measuring tool:
# prints one NAME=FILE:FROM:TO argument per line.
e2e_cuts() {
  local artifacts=$1 output=$2 name from to
  while read -r name from to; do echo "$name=$output:$from:$to"; done < "$artifacts/cuts.txt"
}

e2e_install_plugin() {
  local config=$1 name=$2 file=$3
  mkdir -p "$config/plugins/$name/bin/64bit" "$config/plugins/$name/data"
  cp "$file" "$config/plugins/$name/bin/64bit/$name.so"
}

e2e_make_config() {
  local config=$1 module=$2 data=$3
  mkdir -p "$config/basic/scenes" "$config/basic/profiles/Lumora" "$config/logs"
  e2e_install_plugin "$config" lumora "$module"
  cp -r "$data/." "$config/plugins/lumora/data/"
  cat > "$config/global.ini" <<INI
[General]
FirstRun=true
LastVersion=486539264
[Basic]
Profile=Lumora
ProfileDir=Lumora
SceneCollection=Lumora
SceneCollectionFile=lumora
[BasicWindow]
geometry=AdnQywADAAAAAAAAAAAAAAAAB38AAAQ3AAAAAAAAAAAAAAAAAAAAAAAAAAAAAAIAAAAHgA==
INI
  cat > "$config/basic/profiles/Lumora/basic.ini" <<INI
[General]
Name=Lumora
[Audio]
SampleRate=48000
ChannelSetup=Stereo
INI
}

# The package is unpacked (not installed: the system stays as it is) and its
# module and data folder, from where Debian's OBS reads them, become the user
# plug-in, so OBS loads byte for byte what the package ships.
e2e_make_config_from_deb() {
  local config=$1 deb=$2 root
  root=$(mktemp -d)
  dpkg-deb -x "$deb" "$root"
  e2e_make_config "$config" \
    "$root/usr/lib/$(dpkg-architecture -qDEB_HOST_MULTIARCH)/obs-plugins/lumora.so" \
    "$root/usr/share/obs/obs-plugins/lumora"
  rm -rf "$root"
}

# One scene holding a looping Media Source named "Voice" with the given filters.
e2e_write_scene() {
  local config=$1 media=$2 filters=$3 hotkeys=${4:-}
  [ -n "$hotkeys" ] || hotkeys='{}'
  cat > "$config/basic/scenes/lumora.json" <<JSON
{
  "name": "Lumora",
  "current_scene": "Scene",
  "current_program_scene": "Scene",
  "scene_order": [{"name": "Scene"}],
  "sources": [
    {
      "id": "scene", "versioned_id": "scene", "name": "Scene", "uuid": "",
      "settings": {"items": [{"name": "Voice", "visible": true, "id": 1}], "id_counter": 1}
    },
    {
      "id": "ffmpeg_source", "versioned_id": "ffmpeg_source", "name": "Voice",
      "settings": {"local_file": "$media", "is_local_file": true, "looping": true},
      "filters": $filters,
      "hotkeys": $hotkeys
    }
  ]
}
JSON
}
