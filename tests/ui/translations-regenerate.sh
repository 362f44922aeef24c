#!/usr/bin/env bash
# The Japanese translation source regenerates from the interface's code without
# losing an entry or leaving one untranslated: lupdate over ui/ into a copy of
# it must mark nothing vanished and nothing unfinished.
#   translations-regenerate.sh LUPDATE SOURCE_DIR
set -euo pipefail
lupdate=$1 src=$2
copy=$(mktemp --suffix=.ts)
trap 'rm -f "$copy"' EXIT
cp "$src/data/translations/lumora_ja.ts" "$copy"
(cd "$src" && "$lupdate" -silent -I . ui/*.cpp -ts "$copy")
status=0
for kind in vanished obsolete unfinished; do
  n=$(grep -c "type=\"$kind\"" "$copy" || true)
  if [ "$n" -ne 0 ]; then
    echo "regenerating the translation source leaves $n $kind entries:"
    grep -B3 "type=\"$kind\"" "$copy" | grep "<source>" | head -10
    status=1
  fi
done
[ "$status" -eq 0 ] && echo "ok: lumora_ja.ts regenerates with every entry kept and translated"
exit $status
