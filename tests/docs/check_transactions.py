#!/usr/bin/env python3
"""Tries every cell of the tables in docs/transactions.md and the rulebooks in README.md on the library.

    check_transactions.py LIBRARY
"""

import re
import sys

from library import CREDIT_TRANSFER, DIRECT_DEBIT, MESSAGE_NAMES, Library, tables

# A value of each key whose form is tested.
VALID = {"iban": "DE89370400440532013000", "old_iban": "DE89370400440532013000", "amount": "1.00", "seq": "FRST",
         "bic": "COBADEFFXXX", "smnda": "1", "addrCC": "DE"}
KINDS = ("identifiers", "text", "names")
REFUSED_EVERYWHERE = ("é", "\\", "`", "\n", "\x01", "\x7f", "ÿ", "\x80")


class Check:
    def __init__(self, library):
        self.library, self.tried, self.problems = library, 0, []

    def expect(self, accepted, message_type, payment, what):
        self.tried += 1
        with self.library.message(message_type) as message:
            reason = message.add(payment)
        if (reason is None) != accepted:
            self.problems.append(f"{what}: {reason or 'accepted'}")


def base_payment(message_type):
    payment = {"iban": VALID["iban"], "amount": "1.00", "bic": "COBADEFFXXX"}
    return payment | {"seq": "FRST"} if message_type == DIRECT_DEBIT else payment


def lengths(row):
    shortest, _, longest = row["Bytes"].partition("-")
    return int(shortest), int(longest or shortest)


def check_key(check, row, state, message_type, what):
    key, base = row["Key"], base_payment(message_type)
    knows = row["Messages"] in ("both", MESSAGE_NAMES[message_type])
    if not knows or state == "unknown":
        # Credit transfers ignore what they do not know, whatever it is.
        check.expect(message_type == CREDIT_TRANSFER, message_type, base | {key: "x" * 500}, what)
        return
    if state == "refused":
        check.expect(False, message_type, base | {key: "x"}, what)
        return
    without = {name: value for name, value in base.items() if name != key}
    check.expect(state == "optional", message_type, without, f"{what} left out")
    if key in VALID:
        check.expect(True, message_type, without | {key.swapcase(): VALID[key]}, what)
        check.expect(False, message_type, without | {key: "x"}, f"{what} with a wrong value")
    else:
        shortest, longest = lengths(row)
        check.expect(True, message_type, without | {key.swapcase(): "x" * shortest}, f"{what}, {shortest} bytes")
        check.expect(True, message_type, without | {key: "x" * longest}, f"{what}, {longest} bytes")
        check.expect(False, message_type, without | {key: "x" * (longest + 1)}, f"{what}, {longest + 1} bytes")
        if shortest > 0:
            check.expect(False, message_type, without | {key: "x" * (shortest - 1)}, f"{what}, {shortest - 1} bytes")


def kind_of(row, rulebook):
    """How the table names the characters of a key, under one rulebook."""
    former, _, later = row["Characters"].partition("; from DE-3.0 on ")
    return later if later and rulebook >= "DE-3.0" and rulebook.startswith("DE") else former


def permitted(cell, rulebook):
    condition = re.fullmatch(r"(not|only) under (\S+)", cell)
    if condition:
        return (rulebook == condition[2]) == (condition[1] == "only")
    return {"yes": True, "no": False}[cell]


def check_characters(check, row, character_rows, rulebook, message_type, what):
    kind, key, base = kind_of(row, rulebook), row["Key"], base_payment(message_type)
    if kind not in KINDS:
        if kind == "any":
            check.expect(True, message_type, base | {key: "\\" * lengths(row)[1]}, f"{what} with any character")
        return
    for characters in character_rows:
        samples = [" "] if characters["Characters"] == "space" else characters["Characters"].strip("`").split()
        for sample in samples:
            check.expect(permitted(characters[kind], rulebook), message_type, base | {key: f"x{sample}x"},
                         f"{what} with '{sample}'")
    for sample in REFUSED_EVERYWHERE:
        check.expect(False, message_type, base | {key: f"x{sample}x"}, f"{what} with '{sample!r}'")
    for sample in (b"\xa7", b"\xb0"):
        check.expect(rulebook == "AT-6", message_type, base | {key: b"x" + sample}, f"{what} with {sample}")


def check_schemas(check, rulebooks):
    for row in rulebooks:
        check.library.select(row["Rulebook"])
        for message_type, column in ((DIRECT_DEBIT, "Direct debit"), (CREDIT_TRANSFER, "Credit transfer")):
            with check.library.message(message_type) as message:
                message.add(base_payment(message_type))
                check.tried += 1
                if f'xmlns="urn:iso:std:iso:20022:tech:xsd:{row[column]}"' not in message.document():
                    check.problems.append(f"README.md: {row['Rulebook']} does not write {row[column]}")


def main():
    check = Check(Library(sys.argv[1]))
    rulebooks = next(table for table in tables("README.md") if "Rulebook" in table[0])
    check_schemas(check, rulebooks)

    keys, character_rows = tables("docs/transactions.md")
    columns = {rulebook: column for column in keys[0] for rulebook in column.split(", ")}
    for rulebook in (row["Rulebook"] for row in rulebooks):
        check.library.select(rulebook)
        for row in keys:
            row = row | {"Key": row["Key"].strip("`")}
            state = row[columns[rulebook]]
            for message_type, message_name in MESSAGE_NAMES.items():
                what = f"{rulebook}, {message_name}, {row['Key']}"
                check_key(check, row, state, message_type, what)
                if state in ("required", "optional") and row["Messages"] in ("both", message_name):
                    check_characters(check, row, character_rows, rulebook, message_type, what)
    print(f"{len(keys)} keys under {len(rulebooks)} rulebooks, {check.tried} payments tried")
    sys.exit("\n".join(check.problems) or 0)


if __name__ == "__main__":
    main()
