#!/usr/bin/env bash
# Runs the Windows build of the settings and platform tests, and lumora-cli's
# settings and presets commands, under Wine, as a Japanese user would meet them:
# the application-data folder is "C:\users\配信者\AppData\Roaming" (set in a
# throw-away Wine prefix's registry), and a preset with a Japanese name goes out
# to a Japanese file name and back.
#   run-under-wine.sh BUILD_DIR
# Prints "wine: N passed, M failed" last; exits non-zero on any failure.
set -euo pipefail
build=$(realpath "$1")
tests="$build/tests/test-windows.exe"
cli="$build/tools/lumora-cli.exe"

export LANG=C.UTF-8 LC_ALL=C.UTF-8 WINEDEBUG=-all WINEDLLOVERRIDES="mscoree,mshtml="
export WINEPREFIX
WINEPREFIX=$(mktemp -d /tmp/lumora-wine-XXXXXX)
trap 'wineserver -k >/dev/null 2>&1 || true; rm -rf "$WINEPREFIX"' EXIT
wine wineboot -i >/dev/null 2>&1

appdata='C:\users\配信者\AppData\Roaming'
mkdir -p "$WINEPREFIX/drive_c/users/配信者/AppData/Roaming"
wine reg add 'HKCU\Software\Microsoft\Windows\CurrentVersion\Explorer\User Shell Folders' \
  /v AppData /t REG_EXPAND_SZ /d "$appdata" /f >/dev/null 2>&1
wineserver -w

failed=0
log=$(mktemp)
LUMORA_EXPECT_APPDATA="$appdata" wine "$tests" --gtest_color=no >"$log" 2>&1 || failed=1
grep -E '^\[  (FAILED|SKIPPED) ' "$log" || true
passed=$(sed -n 's/^\[  PASSED  \] \([0-9]*\) tests\?\..*/\1/p' "$log")
unit_failed=$(sed -n 's/^ *\([0-9]*\) FAILED TESTS\?$/\1/p' "$log")
if [ -z "$passed" ]; then
  tail -20 "$log"
  passed=0
  unit_failed=${unit_failed:-1}
fi
unit_failed=${unit_failed:-0}

# lumora-cli: a Japanese preset in and out through Japanese file names, in the
# default settings folder, which the unit tests above created under 配信者.
cli_passed=0
cli_failed=0
check() {
  local what=$1
  shift
  if "$@"; then cli_passed=$((cli_passed + 1)); else echo "wine cli: FAILED: $what"; cli_failed=$((cli_failed + 1)); fi
}
work="$WINEPREFIX/drive_c/users/配信者/Documents"
mkdir -p "$work"
cat >"$work/声.json" <<'JSON'
{"name": "ロボット声＋ラジオ", "description": "配信の締めに", "pitch": {"enabled": true, "semitonesA": 3.5}}
JSON
run() { wine "$cli" "$@" 2>&1 | tr -d '\r'; }
imports() { run presets import 'C:\users\配信者\Documents\声.json' | grep -q "ロボット声＋ラジオ"; }
lists() { run presets list --fx | grep -q 'ロボット声＋ラジオ'; }
exports() {
  run presets export 'ロボット声＋ラジオ' 'C:\users\配信者\Documents\書き出し.json' --fx >/dev/null &&
    grep -q '配信の締めに' "$work/書き出し.json"
}
verifies() { run settings verify | grep -q 'loaded: live'; }
refuses_audio() {
  local out
  out=$(wine "$cli" process a.wav b.wav 2>&1 || true)
  grep -q 'not part of this build' <<<"$out"
}
check "import from a Japanese file name" imports
check "list shows the Japanese name" lists
check "export to a Japanese file name" exports
check "the file is in the Japanese user's AppData" \
  test -f "$WINEPREFIX/drive_c/users/配信者/AppData/Roaming/Lumora/settings.json"
check "settings verify loads the live file" verifies
check "the audio commands say they are not in this build" refuses_audio

total_passed=$((passed + cli_passed))
total_failed=$((unit_failed + cli_failed))
echo "wine: $total_passed passed, $total_failed failed ($passed unit tests, $cli_passed lumora-cli checks)"
[ "$failed" -eq 0 ] && [ "$total_failed" -eq 0 ]
