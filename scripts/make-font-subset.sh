#!/usr/bin/env bash
# Makes data/fonts/KleeOne-Lumora-Subset.ttf, the interface's hand-written face:
# Klee One Regular cut down to the characters the interface can show (every
# non-ASCII character of the sources and translations, plus fixed ranges: ASCII,
# Latin-1, kana, CJK punctuation, full- and half-width forms; see
# scripts/font_subset_text.py). Run it after adding texts with new characters;
# the ui test FontSubset.* fails when a Japanese text is not covered.
#
# Usage: scripts/make-font-subset.sh [KleeOne-Regular.ttf]
# The default input is Debian's fonts-klee. Needs Debian's python3-fonttools.
# The output depends only on the input font and the sources: running it twice
# gives the same bytes.
set -euo pipefail

root="$(cd "$(dirname "${BASH_SOURCE[0]}")/.." && pwd)"
input="${1:-/usr/share/fonts/truetype/klee/KleeOne-Regular.ttf}"
output="$root/data/fonts/KleeOne-Lumora-Subset.ttf"
# Debian's interpreter, not whichever python3 comes first on PATH: fontTools is
# installed for that one.
python=/usr/bin/python3

if [[ ! -f "$input" ]]; then
    echo "make-font-subset: no $input (install fonts-klee or pass the font file)" >&2
    exit 1
fi
if ! "$python" -c 'import fontTools.subset' 2>/dev/null; then
    echo "make-font-subset: $python has no fontTools (install python3-fonttools)" >&2
    exit 1
fi

work="$(mktemp -d)"
trap 'rm -rf "$work"' EXIT

"$python" "$root/scripts/font_subset_text.py" "$root" "$work/unicodes.txt"

# Kept: the hinting (about half the size, but small text on Windows needs it),
# the default horizontal layout features, and every name record (copyright,
# licence, licence address). Dropped: vertical metrics and forms (the interface
# never sets text vertically) and the now invalid digital signature.
# The 'modified' timestamp is the input's, so the bytes do not depend on the day.
SOURCE_DATE_EPOCH=0 "$python" -m fontTools.subset "$input" \
    --unicodes-file="$work/unicodes.txt" \
    --output-file="$work/subset.ttf" \
    --name-IDs='*' --name-languages='*' --name-legacy \
    --notdef-glyph --notdef-outline \
    --no-recalc-timestamp --canonical-order \
    --layout-features-=vert,vrt2,valt,vhal,vkna,vkrn,vpal \
    --drop-tables+=DSIG,vhea,vmtx

mv "$work/subset.ttf" "$output"

"$python" - "$output" <<'EOF'
import os, sys
from fontTools.ttLib import TTFont
path = sys.argv[1]
font = TTFont(path)
print("%s: %d characters, %d glyphs, %d bytes"
      % (os.path.relpath(path), len(font.getBestCmap()), len(font.getGlyphOrder()),
         os.path.getsize(path)))
EOF
