"""Reads the lists as their publishers print them; a file's content says which one it is.

Germany: the Bundesbank's bank-code file, fixed width (the extended edition with the IBAN rule, too) or CSV.
Austria: the Oesterreichische Nationalbank's list of banks, CSV. Switzerland: SIX's bank master, JSON. BICs: the
Bundesbank's list of reachable payment service providers, CSV. IBAN rules: "bank code;rule * 100 + version".
"""

import csv
import dataclasses
import datetime
import io
import json
import pathlib
import re

from . import model

RULES = "IBAN rules"

# Columns of the fixed-width bank-code file. The first edition ends before the IBAN rule.
FIXED_WIDTH = {
    "bank_code": (0, 8), "feature": (8, 9), "name": (9, 67), "postcode": (67, 72), "town": (72, 107),
    "bic": (139, 150), "method": (150, 152), "deleted": (159, 160), "successor": (160, 168), "iban_rule": (168, 174),
}
FIXED_WIDTHS = (168, 174)
BANK_CODE_COLUMNS = {
    "Bankleitzahl": "bank_code", "Merkmal": "feature", "Bezeichnung": "name", "PLZ": "postcode", "Ort": "town",
    "BIC": "bic", "Prüfzifferberechnungsmethode": "method", "Bankleitzahllöschung": "deleted",
    "Nachfolge-Bankleitzahl": "successor", "IBAN-Regel": "iban_rule",
}
# Their bits among the flags; card clearing has none.
SCHEMES = {"SERVICE SCT": 1, "SERVICE COR": 2, "SERVICE COR1": 4, "SERVICE B2B": 8, "SERVICE SCC": 0}


@dataclasses.dataclass(frozen=True)
class Published:
    """A list: one of model.LISTS or RULES, its entries by bank code or BIC, and its own date if it has one."""

    list: str
    entries: dict
    date: datetime.date | None = None


def _insert(entries, key, entry):
    if key in entries:
        raise model.DataError(f"{key} is listed twice")
    entries[key] = entry


def _one_of(pattern, text, what):
    if not re.fullmatch(pattern, text):
        raise model.DataError(f"{what} {text!r}")
    return text


def _full_bic(bic):
    """A BIC with its branch; eight characters stand for the head office."""
    return bic + "XXX" if len(bic) == 8 else bic


def _german(rows):
    entries = {}
    for row in rows:
        code = _one_of("[0-9]{8}", row["bank_code"], "not a bank code:")
        if _one_of("[12]", row["feature"], f"{code}: unknown feature") != "1":
            continue  # another office of the same bank
        successor = _one_of("[0-9]{8}", row["successor"], f"{code}: invalid successor")
        rule = row.get("iban_rule")
        _insert(entries, code, model.GermanVersion(
            deleted=int(_one_of("[01]", row["deleted"], f"{code}: unknown deletion mark")),
            method=int(_one_of("[0-9A-F]{2}", row["method"], f"{code}: unknown check method"), 16),
            iban_rule=None if rule is None else int(_one_of("[0-9]{6}", rule, f"{code}: invalid IBAN rule")),
            successor="" if successor == "00000000" else successor,
            bic=_full_bic(row["bic"]), name=row["name"], postcode=row["postcode"], town=row["town"]))
    return Published("Germany", entries)


def _fixed_width_rows(text):
    lines = text.removesuffix("\n").split("\n")
    width = len(lines[0])
    for number, line in enumerate(lines, 1):
        if len(line) != width or width not in FIXED_WIDTHS:
            widths = " or ".join(map(str, FIXED_WIDTHS))
            raise model.DataError(f"line {number} has {len(line)} characters, not {widths}")
        yield {name: " ".join(line[begin:end].split())
               for name, (begin, end) in FIXED_WIDTH.items() if end <= width}


def _table_rows(header, table):
    """Dictionaries of the rows below a header."""
    for row in table:
        if len(row) != len(header):
            raise model.DataError(f"{len(row)} columns instead of {len(header)}: {';'.join(row)}")
        yield {name: " ".join(cell.split()) for name, cell in zip(header, row)}


def _date(text):
    """The first day in a text, as 25.05.2026 or 2026-05-25."""
    for pattern, order in ((r"\b(\d\d)\.(\d\d)\.(\d{4})\b", (3, 2, 1)), (r"\b(\d{4})-(\d\d)-(\d\d)\b", (1, 2, 3))):
        if match := re.search(pattern, text):
            try:
                return datetime.date(*(int(match[group]) for group in order))
            except ValueError as error:
                raise model.DataError(f"impossible date {match[0]}") from error
    return None


def _austrian(rows, preamble):
    entries = {}
    for row in rows:
        if row["Bankleitzahl"]:
            bank = model.Bank(_full_bic(row["SWIFT-Code"]), row["Bankenname"], row["PLZ"], row["Ort"], "AT")
            _insert(entries, row["Bankleitzahl"], bank)
    return Published("Austria", entries, _date(preamble))


def _reachable(rows, preamble):
    entries = {}
    for row in rows:
        bic = _full_bic(_one_of("[A-Z0-9]{8}([A-Z0-9]{3})?", row["BIC"], "not a BIC:"))
        flags = sum(bit * int(_one_of("[01]", row[scheme], f"{bic}: unknown mark")) for scheme, bit in SCHEMES.items())
        # With eight and with eleven characters a BIC may be listed twice; the first entry's name counts.
        if entries.setdefault(bic, model.Reachability(flags, row["Name"])).flags != flags:
            raise model.DataError(f"{bic} is listed twice with different flags")
    return Published("BICs", entries, _date(preamble))


def _rules(table):
    entries = {}
    for row in table:
        if len(row) != 2:
            raise model.DataError(f"not a bank code and its IBAN rule: {';'.join(row)}")
        code = _one_of("[0-9]{8}", row[0].strip(), "not a bank code:")
        _insert(entries, code, int(_one_of("[0-9]{1,6}", row[1].strip(), f"{code}: invalid IBAN rule")))
    return Published(RULES, entries)


def _swiss(text):
    try:
        content = json.loads(text)
    except (ValueError, RecursionError) as error:
        raise model.DataError(f"damaged JSON: {error}") from error
    if not isinstance(content, dict) or not isinstance(content.get("entries"), list):
        raise model.DataError("JSON without a list of entries")
    entries = {}
    for entry in content["entries"]:
        if not isinstance(entry, dict):
            raise model.DataError(f"not an entry: {entry!r}")
        if entry.get("entryType") != "BankMaster":
            continue
        number = _one_of("[0-9]{1,5}", str(entry.get("iid", "")), "not a bank code:")
        bic, name, postcode, town, country = (
            " ".join(str(entry.get(field) or "").split())
            for field in ("bic", "bankOrInstitutionName", "postCode", "townName", "country"))
        _insert(entries, number.zfill(5), model.Bank(_full_bic(bic), name, postcode, town, "" if country == "CH" else country))
    return Published("Switzerland", entries, _date(str(content.get("validOn", ""))))


def _table(text):
    try:
        table = [row for row in csv.reader(io.StringIO(text, newline=""), delimiter=";", strict=True) if row]
    except csv.Error as error:
        raise model.DataError(f"damaged CSV: {error}") from error
    for number, row in enumerate(table[:10]):
        header = [cell.strip() for cell in row]
        rows = _table_rows(header, table[number + 1:])
        preamble = " ".join(" ".join(above) for above in table[:number])
        if {*BANK_CODE_COLUMNS} - {"IBAN-Regel"} <= {*header}:
            return _german({BANK_CODE_COLUMNS.get(name, name): cell for name, cell in row.items()} for row in rows)
        if {"Bankleitzahl", "Bankenname", "PLZ", "Ort", "SWIFT-Code"} <= {*header}:
            return _austrian(rows, preamble)
        if {"BIC", "Name", *SCHEMES} <= {*header}:
            return _reachable(rows, preamble)
        if len(row) == 2 and re.fullmatch("[0-9]{8}", header[0]) and not re.search("[0-9]", preamble):
            return _rules(table[number:])
    raise model.DataError("not one of the known formats")


def parse(data):
    """The list that a file's bytes hold."""
    try:
        text = data.decode("utf-8-sig")
    except UnicodeDecodeError:
        text = data.decode("iso-8859-1")
    if text.lstrip().startswith(("{", "[")):
        published = _swiss(text)
    elif re.match("[0-9]{8}[12][^;]{60}", text):
        published = _german(_fixed_width_rows(text.replace("\r\n", "\n")))
    else:
        published = _table(text)
    if not published.entries:
        raise model.DataError("without entries")
    if published.list != "Switzerland" and not text.endswith("\n"):
        raise model.DataError("the last line is cut off")
    return published


def read(path, wanted):
    """The wanted list (one of model.LISTS or RULES) from a file."""
    try:
        published = parse(pathlib.Path(path).read_bytes())
    except (model.DataError, OSError) as error:
        raise model.DataError(f"{path}: {error}") from error
    if published.list != wanted:
        raise model.DataError(f"{path}: list for {published.list}, not {wanted}")
    return published
