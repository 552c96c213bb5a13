#!/usr/bin/env python3
"""Makes the bank directory, data/directory.inc.

Without --tables it makes it again from the records it holds, which changes nothing unless this tool did.
With --tables it comes from de.tsv, at.tsv, ch.tsv and bic.tsv in a folder.
"""

import argparse
import datetime
import pathlib
import sys

from directory import data_files, model, tsv

DATA = pathlib.Path(__file__).resolve().parent.parent / "data"


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--data", type=pathlib.Path, default=DATA, help="folder of the file that is read")
    parser.add_argument("--output", type=pathlib.Path, help="folder of the file that is written (default: --data)")
    parser.add_argument("--tables", type=pathlib.Path, help="folder of tab-separated lists")
    parser.add_argument("--change-date", type=datetime.date.fromisoformat, metavar="YYYY-MM-DD",
                        help="with --tables: day from which second versions count")
    parser.add_argument("--source", action="append", default=[], metavar="LIST:TEXT",
                        help="with --tables: where a list comes from, for instance 'Austria: ...'")
    arguments = parser.parse_args()
    if bool(arguments.tables) != bool(arguments.change_date):
        parser.error("--tables and --change-date belong together")

    if arguments.tables:
        sources = dict(source.split(": ", 1) for source in arguments.source)
        directory = tsv.read(arguments.tables, arguments.change_date, sources)
    else:
        directory = data_files.read(arguments.data)
    changed = data_files.write(arguments.output or arguments.data, data_files.render(directory))
    print("written" if changed else "nothing to change")


if __name__ == "__main__":
    try:
        main()
    except model.DataError as error:
        sys.exit(f"make_directory: {error}")
