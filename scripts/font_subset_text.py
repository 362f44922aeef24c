#!/usr/bin/python3
"""Lists the code points the interface font subset must hold.

Usage: font_subset_text.py SOURCE_ROOT OUTPUT_FILE

Writes one code point per line ("U+3042 あ"), sorted, in the form
pyftsubset's --unicodes-file reads. The set is:
  * every non-ASCII character of the interface's sources: ui/*.cpp and *.h,
    data/translations/*.ts, data/locale/*.ini, and every other *.cpp / *.h of
    the project (texts the core hands to the interface: verdicts, preset
    names), outside build folders and tests;
  * fixed ranges, so that a small new text rarely needs a new subset:
    printable ASCII, Latin-1, common punctuation, CJK punctuation, hiragana,
    katakana (with the long-vowel mark), half-width and full-width forms.
Prints the number of code points and of scanned files to stderr.
"""

import os
import sys

FIXED_RANGES = [
    (0x0020, 0x007E),  # printable ASCII
    (0x00A0, 0x00FF),  # Latin-1 supplement: punctuation, signs, accented letters
    (0x2010, 0x2027),  # dashes, quotation marks, bullet, ellipsis
    (0x2030, 0x203B),  # per mille, primes, guillemets, reference mark
    (0x3000, 0x303F),  # CJK symbols and punctuation
    (0x3040, 0x309F),  # hiragana
    (0x30A0, 0x30FF),  # katakana, the middle dot and the long-vowel mark
    (0xFF00, 0xFFEF),  # half-width katakana and full-width forms
]

SKIPPED_TOP_FOLDERS = {"tests", "demo-output"}


def is_skipped_folder(relative):
    top = relative.split(os.sep, 1)[0]
    return top.startswith(".") or top.startswith("build") or top in SKIPPED_TOP_FOLDERS


def source_files(root):
    """Every file whose texts may reach the interface, in a fixed order."""
    found = []
    for folder, subfolders, files in os.walk(root):
        relative = os.path.relpath(folder, root)
        if relative != "." and is_skipped_folder(relative):
            subfolders[:] = []
            continue
        subfolders.sort()
        for name in sorted(files):
            path = os.path.join(folder, name)
            rel = os.path.relpath(path, root)
            if name.endswith((".cpp", ".h")):
                found.append(path)
            elif rel.startswith(os.path.join("data", "translations")) and name.endswith(".ts"):
                found.append(path)
            elif rel.startswith(os.path.join("data", "locale")) and name.endswith(".ini"):
                found.append(path)
    return found


def wanted_code_points(root):
    points = set()
    for low, high in FIXED_RANGES:
        points.update(range(low, high + 1))
    files = source_files(root)
    for path in files:
        with open(path, encoding="utf-8", errors="strict") as handle:
            text = handle.read()
        points.update(ord(ch) for ch in text if ord(ch) > 0x7E and ch.isprintable())
    return points, files


def main(argv):
    if len(argv) != 3:
        sys.stderr.write(__doc__)
        return 2
    root, output = argv[1], argv[2]
    points, files = wanted_code_points(root)
    with open(output, "w", encoding="utf-8", newline="\n") as handle:
        for cp in sorted(points):
            handle.write("U+%04X  # %s\n" % (cp, chr(cp)))
    sys.stderr.write("%d code points from %d source files and the fixed ranges\n"
                     % (len(points), len(files)))
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv))
