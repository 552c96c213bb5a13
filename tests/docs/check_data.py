#!/usr/bin/env python3
"""Compares what docs/data.md and README.md say about the bank data with the data themselves."""

import re
import sys

from library import SOURCE, tables

# How a row of the table is called, and how the data call their source and their records.
LISTS = {"Germany": ("Germany", "GERMAN"), "IBAN rules of the German bank codes": ("Germany", None),
         "Austria": ("Austria", "AUSTRIAN"), "Switzerland and Liechtenstein": ("Switzerland", "SWISS"),
         "BICs with their schemes, 49 countries": ("BICs", "BIC")}


def main():
    data = (SOURCE / "data/directory_records.inc").read_text()
    sources = dict(re.findall(r"^// (\w+): (.*)$", data, re.MULTILINE))
    readme = (SOURCE / "README.md").read_text()
    rows = {row["List"]: row for row in tables("docs/data.md")[0]}
    problems = [f"docs/data.md has no row or an unknown row: {name}" for name in rows.keys() ^ LISTS.keys()]
    for name, (source, kind) in LISTS.items():
        row = rows[name]
        if row["Edition"] not in re.findall(r"\d{4}-\d\d(?:-\d\d)?", sources[source]):
            problems.append(f"docs/data.md says '{row['Edition']}' about {name}, the data '{sources[source]}'")
        if kind and row["Edition"] not in readme:
            problems.append(f"README.md does not say that {name} is of {row['Edition']}")
        records = len(re.findall(rf"^{kind}\(", data, re.MULTILINE))
        if kind and row["Entries"] != str(records):
            problems.append(f"docs/data.md says {row['Entries']} about {name}, the data have {records}")

    prose = (SOURCE / "docs/data.md").read_text()
    countries = len(set(re.findall(r'^BIC\("\w{4}(\w\w)', data, re.MULTILINE)))
    versions = len(re.findall(r"^CHANGED\(", data, re.MULTILINE))
    change_date = re.search(r"from (\S+) 00:00 in Germany", (SOURCE / "data/directory_release.inc").read_text())[1]
    for fact in (f"{countries} countries", f"{versions} German bank codes hold two versions", f"since {change_date}"):
        if fact not in prose:
            problems.append(f"docs/data.md does not say '{fact}'")
    print(f"{len(LISTS)} lists")
    sys.exit("\n".join(problems) or 0)


if __name__ == "__main__":
    main()
