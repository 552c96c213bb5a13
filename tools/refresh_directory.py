#!/usr/bin/env python3
"""Takes newly published bank lists into the directory under data/.

Every list that is not given stays as it is. Nothing is written when a file is damaged, a key occurs twice, the day of
validity lies far ahead or a list has lost a fifth of its entries; with --force, lists may be as small as they are.
"""

import argparse
import datetime
import pathlib
import sys

from directory import data_files, model, publishers, refresh, summary

# Lists are published some weeks before they hold; more than this is a typing error.
FURTHEST = datetime.timedelta(days=366)
DATA = pathlib.Path(__file__).resolve().parent.parent / "data"


def main():
    parser = argparse.ArgumentParser(prog="refresh-directory", description=__doc__,
                                     formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--de", metavar="FILE", help="Bundesbank, bank codes (fixed width or CSV)")
    parser.add_argument("--rules", metavar="FILE", help="IBAN rules: bank code;rule * 100 + version")
    parser.add_argument("--at", metavar="FILE", help="Oesterreichische Nationalbank, list of banks (CSV)")
    parser.add_argument("--ch", metavar="FILE", help="SIX, bank master (JSON)")
    parser.add_argument("--reachable", metavar="FILE", help="Bundesbank, reachable payment service providers (CSV)")
    parser.add_argument("--valid-from", required=True, type=datetime.date.fromisoformat, metavar="YYYY-MM-DD",
                        help="day from which the bank codes hold")
    parser.add_argument("--force", action="store_true", help="accept lists that have become much shorter")
    parser.add_argument("--data", type=pathlib.Path, default=DATA, help="folder of the directory (default: data)")
    arguments = parser.parse_args()

    if arguments.valid_from > datetime.date.today() + FURTHEST:
        raise model.DataError(f"{arguments.valid_from} is more than a year ahead")
    files = {"Germany": arguments.de, "Austria": arguments.at, "Switzerland": arguments.ch, "BICs": arguments.reachable}
    lists = {name: publishers.read(path, name) for name, path in files.items() if path}
    rules = publishers.read(arguments.rules, publishers.RULES).entries if arguments.rules else {}
    if not lists and not rules:
        parser.error("no list is given")

    before = data_files.read(arguments.data)
    if rules and not rules.keys() & (lists["Germany"].entries if "Germany" in lists else before.german).keys():
        raise model.DataError(f"{arguments.rules}: names no bank code of the directory")
    after = refresh.refresh(before, lists, rules, arguments.valid_from)
    rendered = data_files.render(after)
    print("\n".join(summary.lines(before, after, rules)))
    shrunken = refresh.shrunken_lists(before, after)
    if shrunken and not arguments.force:
        raise model.DataError("much shorter than before, which --force would accept: " + "; ".join(shrunken))
    changed = data_files.write(arguments.data, rendered)
    print(f"Written: {data_files.FILE}" if changed else "Nothing has changed.")


if __name__ == "__main__":
    sys.stdout.reconfigure(errors="backslashreplace")  # a terminal without umlauts is no reason to fail
    try:
        main()
    except (model.DataError, OSError) as error:
        sys.exit(f"refresh-directory: {error}")
