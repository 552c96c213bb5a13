#!/usr/bin/env python3
"""Makes the lists of the IBAN rules under data/.

Without --lists it makes them again from what they hold, which changes nothing unless this tool did. With --lists
they come from a folder of tab-separated lists, one file a list: the first two-digit number in the name is the rule
(rule-04.tsv, ranges-31.tsv), the first line names the columns, and the columns say what kind of list it is.
Accounts have ten digits, bank codes eight. Bank codes that a rule puts in place of all others are no list; they
stand in the rule table in src/bank/iban_rules.cpp.
"""

import argparse
import csv
import dataclasses
import datetime
import os
import pathlib
import re
import sys

ROOT = pathlib.Path(__file__).resolve().parent.parent
CASES = "iban_rules.tsv"
NOT_LISTS = ("fixed-bank-codes.tsv", "conditional-bank-codes.tsv", "rule-42-patterns.tsv")
SOURCE = ("// Source: Deutsche Bundesbank, published IBAN rules, each in the version that the bank codes valid from\n"
          "// {date} name; rules that none of them names in the last version published.\n"
          "// Made by tools/make_iban_rules.py; not to be edited.\n")


class DataError(Exception):
    """Input or data that must not become a list of the library."""


@dataclasses.dataclass(frozen=True)
class Kind:
    """One file under data/: rows of the same columns, unique and ascending in the key columns."""

    title: str
    columns: tuple
    keys: int

    def head(self, date):
        return f"// {self.title}\n// {{{', '.join(self.columns)}}}\n{SOURCE.format(date=date)}"


KINDS = {
    "iban_rules_accounts.inc": Kind("Accounts that a rule replaces.", ("rule", "account", "new account"), 2),
    "iban_rules_bank_accounts.inc": Kind(
        "Accounts that a rule replaces under one bank code, some of them with the bank code.",
        ("rule", "bank code", "account", "new bank code", "new account"), 3),
    "iban_rules_ibans.inc": Kind("Accounts that have an IBAN of their own.", ("rule", "account", "IBAN"), 2),
    "iban_rules_ranges.inc": Kind("Ranges of accounts and the bank code that keeps them (rules 31 to 35).",
                                  ("lowest account", "highest account", "bank code"), 1),
    "iban_rules_refused_bank_codes.inc": Kind(
        "Bank codes whose accounts 998,000,000 to 999,499,999 get no IBAN (rule 5).", ("bank code",), 1),
    "iban_rules_refused_ranges.inc": Kind("Ranges of accounts that get no IBAN (rule 36).",
                                          ("lowest account", "highest account"), 1),
    "iban_rules_valid_accounts.inc": Kind("Accounts that count as valid whatever their check digit says.",
                                          ("rule", "account"), 2),
}

# The file that a list belongs to by its columns, and the row that a line of it becomes.
IMPORTS = {
    ("account", "new_account"): ("iban_rules_accounts.inc", lambda r, a, new: (r, a, new)),
    ("bank_code", "account", "new_account"):
        ("iban_rules_bank_accounts.inc", lambda r, bank, a, new: (r, bank, a, bank, new)),
    ("bank_code", "account", "new_bank_code", "new_account"):
        ("iban_rules_bank_accounts.inc", lambda r, bank, a, new_bank, new: (r, bank, a, new_bank, new)),
    ("account", "iban"): ("iban_rules_ibans.inc", lambda r, a, iban: (r, a, iban)),
    ("account", "new_account", "iban"): ("iban_rules_ibans.inc", lambda r, a, new, iban: (r, a, iban)),
    ("lowest_account", "highest_account", "bank_code"):
        ("iban_rules_ranges.inc", lambda r, low, high, bank: (int(low), int(high), bank)),
    ("bank_code",): ("iban_rules_refused_bank_codes.inc", lambda r, bank: (bank,)),
    ("lowest_account", "highest_account"):
        ("iban_rules_refused_ranges.inc", lambda r, low, high: (int(low), int(high))),
    ("account",): ("iban_rules_valid_accounts.inc", lambda r, a: (r, a)),
}
RULE_WITHOUT_COLUMN = {"iban_rules_ranges.inc": 31, "iban_rules_refused_bank_codes.inc": 5,
                       "iban_rules_refused_ranges.inc": 36}

VALID = {
    "rule": lambda value: 0 <= value <= 57,
    "account": lambda value: re.fullmatch("[0-9]{10}", value),
    "new account": lambda value: re.fullmatch("[0-9]{10}", value),
    "bank code": lambda value: re.fullmatch("[0-9]{8}", value),
    "new bank code": lambda value: re.fullmatch("[0-9]{8}", value),
    "lowest account": lambda value: 0 <= value < 10**10,
    "highest account": lambda value: 0 <= value < 10**10,
    "IBAN": lambda value: re.fullmatch("DE[0-9]{20}", value) and int(value[4:] + "1314" + value[2:4]) % 97 == 1,
}


def _tsv(path):
    with open(path, encoding="utf-8", newline="") as file:
        rows = list(csv.reader(file, delimiter="\t", quoting=csv.QUOTE_NONE))
    if not rows:
        raise DataError(f"{path.name} is empty")
    if any(len(row) != len(rows[0]) for row in rows):
        raise DataError(f"{path.name}: a line does not have the columns of the first")
    return tuple(rows[0]), rows[1:]


def from_tsv(folder):
    """The rows of every file under data/, from a folder of lists."""
    lists = {name: [] for name in KINDS}
    for path in sorted(pathlib.Path(folder).glob("*.tsv")):
        if path.name in NOT_LISTS:
            continue
        columns, lines = _tsv(path)
        number = re.search("-([0-9]{2})[-.]", path.name)
        if columns not in IMPORTS or not number:
            raise DataError(f"{path.name}: no list of this kind is known")
        name, row = IMPORTS[columns]
        rule = int(number[1])
        if RULE_WITHOUT_COLUMN.get(name, rule) != rule:
            raise DataError(f"{path.name}: no rule but {RULE_WITHOUT_COLUMN[name]} has such a list")
        # The library takes the new account of a listed IBAN from the IBAN.
        for line in lines if "iban" in columns else ():
            if dict(zip(columns, line)).get("new_account", line[0]) != line[-1][12:]:
                raise DataError(f"{path.name}: account and IBAN differ: {line}")
        lists[name] += [row(rule, *line) for line in lines]
    return lists


def from_data(folder):
    """The rows of every file under data/, from these files themselves, and their date."""
    lists, dates = {}, set()
    for name in KINDS:
        text = pathlib.Path(folder, name).read_text(encoding="utf-8")
        dates.add(re.search("^// ([0-9-]{10}) name", text, re.MULTILINE)[1])
        lists[name] = [tuple(quoted or int(number) for quoted, number in re.findall(r'"(\w+)"|(\d+)', row))
                       for row in re.findall(r"^\{(.*)\},$", text, re.MULTILINE)]
    if len(dates) != 1:
        raise DataError("the lists are of different dates")
    return lists, datetime.date.fromisoformat(dates.pop())


def check(lists):
    for name, kind in KINDS.items():
        if not lists[name]:
            raise DataError(f"{name}: empty")
        for row in lists[name]:
            if len(row) != len(kind.columns) or not all(VALID[c](v) for c, v in zip(kind.columns, row)):
                raise DataError(f"{name}: unusable: {row}")
        keys = [row[:kind.keys] for row in lists[name]]
        if len(keys) != len(set(keys)):
            raise DataError(f"{name}: entries with the same {' and '.join(kind.columns[:kind.keys])}")
        if kind.columns[0] == "lowest account":
            rows = sorted(lists[name])
            if any(row[0] > row[1] for row in rows) or any(a[1] >= b[0] for a, b in zip(rows, rows[1:])):
                raise DataError(f"{name}: ranges that are empty or overlap")


def entries(lists):
    """The number of list entries that each rule has; the ranges count for rule 31."""
    count = {}
    for name, rows in lists.items():
        for row in rows:
            rule = RULE_WITHOUT_COLUMN.get(name, row[0])
            count[rule] = count.get(rule, 0) + 1
    return dict(sorted(count.items()))


def render(lists, date):
    """The files' contents by name."""
    check(lists)
    files = {}
    for name, kind in KINDS.items():
        rows = [", ".join(str(value) if isinstance(value, int) else f'"{value}"' for value in row)
                for row in sorted(lists[name])]
        files[name] = kind.head(date) + "\n" + "".join(f"{{{row}}},\n" for row in rows)
    return files


def cases(path):
    """Published test cases in the form that tests/iban_convert_test.cpp reads."""
    columns, lines = _tsv(path)
    text = ["# Test cases that the Deutsche Bundesbank prints with its IBAN rules, or that follow from the rules' lists.\n"
            "# Rule, check-digit method and successor are what the bank code's record said at that time.\n"
            "# Made by tools/make_iban_rules.py; not to be edited.\n"
            "#\n"
            "# bank_code account rule method successor result status iban\n"]
    for line in lines:
        case = dict(zip(columns, line))
        text.append(" ".join((case["bank_code"], case["account"], str(int(case["rule"])), case["method"], case["successor"],
                              case["result"], case["status"], case["iban"])) + "\n")
    return "".join(text)


def write(folder, files):
    """Replaces the files that differ; a file is either the old or the new one. The names of those replaced."""
    changed = []
    for name, text in files.items():
        path = pathlib.Path(folder, name)
        if not path.exists() or path.read_text(encoding="utf-8") != text:
            path.with_suffix(".new").write_text(text, encoding="utf-8", newline="\n")
            changed.append(name)
    for name in changed:
        path = pathlib.Path(folder, name)
        os.replace(path.with_suffix(".new"), path)
    return changed


def main():
    parser = argparse.ArgumentParser(description=__doc__, formatter_class=argparse.RawDescriptionHelpFormatter)
    parser.add_argument("--data", type=pathlib.Path, default=ROOT / "data", help="folder of the lists")
    parser.add_argument("--lists", type=pathlib.Path, help="folder of tab-separated lists")
    parser.add_argument("--valid-from", type=datetime.date.fromisoformat, metavar="YYYY-MM-DD",
                        help="with --lists: day from which the bank codes are valid that these rules belong to")
    parser.add_argument("--cases", type=pathlib.Path, help=f"tab-separated test cases that become tests/data/{CASES}")
    parser.add_argument("--count", action="store_true", help="print the number of list entries of each rule, write nothing")
    arguments = parser.parse_args()
    if bool(arguments.lists) != bool(arguments.valid_from):
        parser.error("--lists and --valid-from belong together")

    if arguments.lists:
        lists, date = from_tsv(arguments.lists), arguments.valid_from
    else:
        lists, date = from_data(arguments.data)
    if arguments.count:
        print("\n".join(f"{rule}\t{count}" for rule, count in entries(lists).items()))
        return
    changed = write(arguments.data, render(lists, date))
    if arguments.cases:
        changed += write(ROOT / "tests" / "data", {CASES: cases(arguments.cases)})
    print("\n".join(changed) if changed else "nothing to change")


if __name__ == "__main__":
    try:
        main()
    except DataError as error:
        sys.exit(f"make_iban_rules: {error}")
