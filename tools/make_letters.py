#!/usr/bin/env python3
"""Makes data/letters.inc: which letters are another letter with marks.

The letters and their canonical decompositions come from the Unicode character database (Debian's package
unicode-data installs it). A letter gets a row when it is left as one that src/text/transliteration.cpp knows once
its marks are taken away.
"""

import argparse
import pathlib
import re

ROOT = pathlib.Path(__file__).resolve().parent.parent
DATABASE = "/usr/share/unicode/UnicodeData.txt"
KNOWN = "A-Za-zÆØæøſ" "\u0391-\u03c9" "\u0400-\u045f\u0490\u0491"  # Latin, Greek, Cyrillic
OWN = "\u0400-\u045f"  # Cyrillic letters that are known with their marks, unless they are only half known
HALF_KNOWN = "\u0400\u040d\u040e\u0450\u045d\u045e"


def read(path):
    """The canonical decompositions of all characters, and the combining marks."""
    decompositions, marks = {}, set()
    for line in open(path, encoding="ascii"):
        fields = line.split(";")
        character = chr(int(fields[0], 16))
        if fields[2] == "Mn":
            marks.add(character)
        if fields[5] and not fields[5].startswith("<"):
            decompositions[character] = "".join(chr(int(code, 16)) for code in fields[5].split())
    return decompositions, marks


def without_marks(text, decompositions, marks):
    parts = [without_marks(decompositions[c], decompositions, marks) if c in decompositions else c for c in text]
    return "".join(c for c in "".join(parts) if c not in marks)


def rows(decompositions, marks):
    for letter in sorted(decompositions):
        base = without_marks(letter, decompositions, marks)
        is_own = re.fullmatch(f"[{OWN}]", letter) and letter not in HALF_KNOWN
        if ord(letter) <= 0xFFFF and not is_own and re.fullmatch(f"[{KNOWN}]", base):
            yield f"{{0x{ord(letter):04X}, 0x{ord(base):04X}}}, // {letter} {base}\n"


def main():
    parser = argparse.ArgumentParser(description=__doc__.split("\n", maxsplit=1)[0])
    parser.add_argument("database", nargs="?", default=DATABASE)
    parser.add_argument("--version", default="15.0.0", help="the database's version")
    options = parser.parse_args()
    head = ("// Letters with marks, and the letter that is left without them, in the order of the first.\n"
            f"// Source: Unicode character database {options.version}, UnicodeData.txt (Unicode licence).\n"
            "// Made by tools/make_letters.py; not to be edited.\n\n")
    (ROOT / "data" / "letters.inc").write_text(head + "".join(rows(*read(options.database))), encoding="utf-8")


if __name__ == "__main__":
    main()
