#!/usr/bin/env python3
"""Every document is run by a test, and every link and file name in the documents leads somewhere."""

import re
import sys

from library import SOURCE

DOCUMENTS = [SOURCE / "README.md", SOURCE / "CONTRIBUTING.md", *sorted((SOURCE / "docs").glob("*.md"))]
RUN = re.findall(r"[\w./]+\.md", (SOURCE / "tests/docs/CMakeLists.txt").read_text())
FOLDERS = "bench|cmake|data|docs|examples|fuzz|include|php|script|src|tests|tools"


def anchors(document):
    titles = re.findall(r"^#+ (.*)$", document.read_text(), re.MULTILINE)
    return {re.sub(r"[^\w -]", "", title).lower().replace(" ", "-") for title in titles}


def problems_of(document):
    text = document.read_text()
    for target in re.findall(r"\]\(([^)]+)\)", text):
        name, _, anchor = target.partition("#")
        file = (document.parent / name).resolve() if name else document
        if not file.exists() or anchor and anchor not in anchors(file):
            yield f"link to {target}"
    for name in re.findall(rf"`((?:{FOLDERS})/[\w./-]*)`", text):
        if not (SOURCE / name).exists():
            yield f"file {name}"
    if "```" in text and document.relative_to(SOURCE).as_posix() not in RUN:
        yield "its blocks are not run"


def main():
    problems = [f"{document.name}: {problem}" for document in DOCUMENTS for problem in problems_of(document)]
    print(f"{len(DOCUMENTS)} documents")
    sys.exit("\n".join(problems) or 0)


if __name__ == "__main__":
    main()
