#!/usr/bin/env python3
"""Makes tests/data/check_methods.tsv, the published test accounts of the check-digit methods.

The input is a tab-separated list whose first line names its columns: method, bank_code ("-" for none), account,
expected. The output has one line a method, result and bank code, with its accounts in ascending order.
"""

import argparse
import collections
import csv
import pathlib
import sys

OUTPUT = pathlib.Path(__file__).resolve().parent.parent / "tests" / "data" / "check_methods.tsv"
HEAD = """\
# Accounts that the Deutsche Bundesbank publishes as examples of its check-digit methods, and what the whole method
# says of them: 1 valid, 2 valid without its sub-account, 0 not checkable, -1 invalid.
# Source: Deutsche Bundesbank, descriptions of the check-digit methods, edition of {edition}.
# Made by tools/make_check_method_cases.py; not to be edited.
# method, result, bank code ("-" for none), accounts
"""


def main():
    parser = argparse.ArgumentParser(description=__doc__.splitlines()[0])
    parser.add_argument("cases", type=pathlib.Path, help="tab-separated list of the published accounts")
    parser.add_argument("--edition", required=True, help="year of the published descriptions")
    arguments = parser.parse_args()

    accounts = collections.defaultdict(list)
    with arguments.cases.open(encoding="ascii", newline="") as file:
        for row in csv.DictReader(file, delimiter="\t"):
            account = row["account"]
            if not (account.isdigit() and len(account) <= 10 and row["expected"] in ("-1", "0", "1", "2")):
                sys.exit(f"{arguments.cases}: no usable case: {row}")
            accounts[row["method"], row["expected"], row["bank_code"]].append(account)
    lines = ["\t".join((*key, " ".join(sorted(found, key=int)))) for key, found in sorted(accounts.items())]
    OUTPUT.write_text(HEAD.format(edition=arguments.edition) + "\n".join(lines) + "\n", encoding="ascii")


if __name__ == "__main__":
    main()
