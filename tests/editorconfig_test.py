#!/usr/bin/env python3
"""Checks the project's files against .editorconfig: charset, line ends, last line, trailing white space, tabs."""

import configparser
import fnmatch
import os
import re
import sys
from pathlib import Path

SOURCE = Path(__file__).resolve().parent.parent
CHARSETS = {"utf-8": "utf-8", "latin1": "iso-8859-1"}
NOT_OURS = (".git", "__pycache__")
LINE_ENDS = {"lf": b"\n", "crlf": b"\r\n"}


def read_sections():
    parser = configparser.ConfigParser(delimiters="=")
    parser.read_string("[top]\n" + (SOURCE / ".editorconfig").read_text())
    return [(pattern, dict(parser[pattern])) for pattern in parser.sections()[1:]]


def matches(name, pattern):
    """Whether a pattern of .editorconfig is for a file: one without a slash is for its name in any folder."""
    alternatives = re.search(r"\{([^}]*)\}", pattern)
    if alternatives:
        return any(matches(name, pattern.replace(alternatives[0], choice)) for choice in alternatives[1].split(","))
    return fnmatch.fnmatchcase(name if "/" in pattern else name.rpartition("/")[2], pattern)


def problems_of(content, rules):
    if content == b"":
        return
    charset = rules.get("charset", "unset")
    if charset in CHARSETS:
        try:
            content.decode(CHARSETS[charset])
        except UnicodeDecodeError as error:
            yield f"not {charset}: {error}"
    line_end = LINE_ENDS.get(rules.get("end_of_line"))
    if line_end and content.count(line_end) != content.count(b"\n") or line_end == b"\n" and b"\r" in content:
        yield f"line ends are not {rules['end_of_line']}"
    if rules.get("insert_final_newline") == "true" and not content.endswith(b"\n"):
        yield "no line feed at the end"
    for number, line in enumerate(content.splitlines(), 1):
        if rules.get("trim_trailing_whitespace") == "true" and line != line.rstrip():
            yield f"line {number}: trailing white space"
        if rules.get("indent_style") == "space" and line.startswith(b"\t"):
            yield f"line {number}: indented with a tab"


def project_files():
    for folder, subfolders, files in os.walk(SOURCE):
        subfolders[:] = [name for name in subfolders if not name.startswith("build") and name not in NOT_OURS]
        yield from (os.path.relpath(os.path.join(folder, name), SOURCE) for name in files if not name.endswith(".o"))


def main():
    names = sorted(project_files())
    sections, problems = read_sections(), []
    for name in names:
        rules = {}
        for pattern, properties in sections:
            if matches(name, pattern):
                rules |= properties
        problems += [f"{name}: {problem}" for problem in problems_of((SOURCE / name).read_bytes(), rules)]
    print(f"{len(names)} files")
    sys.exit("\n".join(problems) or 0)


if __name__ == "__main__":
    main()
