#!/bin/bash
# Every colour of the dialog comes from the palette in ui/Theme.h: a colour typed
# anywhere else is one the contrast checks never see and the palette cannot change.
set -euo pipefail
src=${1:?usage: colours-from-palette.sh SOURCE_DIR}/ui
found=$(grep -nE '"[^"]*(#[0-9A-Fa-f]{3}([0-9A-Fa-f]{3})?([0-9A-Fa-f]{2})?\b|rgba?\(|:\s*(white|black|gr[ae]y)\b)|QColor\s*[A-Za-z_]*\s*[({]\s*(0x|[0-9])' \
    "$src"/*.cpp "$src"/*.h | grep -v -e "^$src/Theme\.h:" -e "^$src/Theme\.cpp:" || true)
if [ -n "$found" ]; then
    echo "colours typed outside ui/Theme.h:"
    echo "$found"
    exit 1
fi
echo "every colour comes from the palette"
