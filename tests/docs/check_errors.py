#!/usr/bin/env python3
"""Compares the error texts in docs/errors.md with those in the sources: none is missing, none is stale."""

import re
import sys
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
FILES = ("src/message/*.cpp", "src/xml/*.cpp", "src/statement/*.cpp", "src/base/file.cpp",
         "src/report/report.cpp", "src/report/reading.cpp", "src/bank/bic.cpp", "src/bank/iban_check.cpp",
         "php/*_class.c", "php/bound_object.c")
LITERAL = r'"((?:[^"\\\n]|\\.)*)"'
# A row of the table of transaction keys: its last two columns are a text and what the value is called in another one.
KEY_ROW = re.compile(r"^    \{" + LITERAL + r",[^}]*?" + LITERAL + r",\s*" + LITERAL + r"\},$", re.MULTILINE)
FORBIDDEN_CHARACTER = "Invalid character '%.*s' in %s"


def texts_of_sources():
    code = "\n".join(path.read_text() for pattern in FILES for path in sorted(SOURCE.glob(pattern)))
    code = re.sub(r"^\s*(?:#include|//|/?\*).*$", "", code, flags=re.MULTILINE)
    called = {row[3] for row in KEY_ROW.finditer(code) if row[3]}
    texts = {text for text in re.findall(LITERAL, code)
             # A text has words; fragments of documents, patterns and formats of numbers have other characters.
             if re.match(r"[A-Za-z_]+[^<>]* [^<>]*$", text) and "\\" not in text and text not in called}
    texts.discard(FORBIDDEN_CHARACTER)
    texts |= {FORBIDDEN_CHARACTER.replace("%s", name) for name in called}
    return {re.sub(r"%(?:\.\*)?\w+", "…", text) for text in texts}


def main():
    document = (SOURCE / "docs/errors.md").read_text()
    mentioned = set(re.findall(r"`([^`]+)`", document))
    rows = re.findall(r"^\| `([^`]+)` \|", document, re.MULTILINE)
    texts = texts_of_sources()
    problems = [f"not in docs/errors.md: {text}" for text in sorted(texts - mentioned)]
    problems += [f"in docs/errors.md only: {text}" for text in sorted(set(rows) - texts)]
    problems += [f"twice in docs/errors.md: {text}" for text in sorted(set(rows)) if rows.count(text) > 1]
    if len(texts) < 80:
        problems.append(f"only {len(texts)} texts found in the sources")
    print(f"{len(texts)} texts, {len(rows)} rows")
    sys.exit("\n".join(problems) or 0)


if __name__ == "__main__":
    main()
