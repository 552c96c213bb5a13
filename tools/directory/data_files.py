"""Writes the directory as the file data/directory.inc, and reads it back from it."""

import datetime
import os
import pathlib
import re

from . import model

FILE = "directory.inc"

LAYOUT = """\
// One record a line: bank codes by country, then BICs, ascending. Before the texts, each ended by a zero byte, stand
//   of a bank: its code, filled up with zeros, and country; the texts' sizes, the successor's first; in Germany deletion
//       mark (2 more when a second version follows), check method and IBAN rule (number * 100 + version, two bytes)
//   of a BIC: the BIC, the size of its text, flags (1 SCT, 2 SDD core, 4 COR1, 8 SDD B2B)
// The texts are, of a bank: successor (Germany; ended by nothing), name, postal code, town, country, BIC; of a BIC:
// name. Two Austrian bank codes are too short; the first letters of their BIC complete them.
"""


def _literal(part):
    """A C++ string literal of a text or of binary bytes."""
    if isinstance(part, bytes):
        return '"' + "".join(f"\\x{byte:02x}" for byte in part) + '"'
    return '"' + re.sub(r'(["\\])', r"\\\1", part).replace("??", r"?\?") + '"'


def _part(literal):
    """The text or the bytes of a literal, without its quotation marks."""
    if literal.startswith("\\x"):
        return bytes(int(byte, 16) for byte in literal[2:].split("\\x"))
    return re.sub(r"\\(.)", r"\1", literal.removesuffix("\\0"))


def _lines(record):
    """The lines of a record, one a version."""
    for prefix, texts, remark in record.versions:
        # Only a successor is ended by nothing.
        literals = [_literal(record.key), *map(_literal, prefix),
                    *(_literal(text).removesuffix('"') + '\\0"' for text in texts)]
        yield f"    {' '.join(literals)}{'  // ' + remark if remark else ''}\n"


def _date(directory, name):
    """The day that a list's source names; of a month its first one."""
    found = re.search(r"\d{4}-\d\d(-\d\d)?", directory.sources.get(name, ""))
    if not found:
        raise model.DataError(f"the source of {name} names no date")
    return found[0] if found[1] else f"{found[0]}-01"


def render(directory):
    """The file's content."""
    model.check(directory)
    date = directory.change_date
    lines = ["// The bank directory.\n// Made by tools/make_directory.py; not to be edited.\n//\n"]
    lines += [f"// {title}: {source}\n" for title, source in directory.sources.items()]
    lines += ["\n// Second versions hold from ", f"{date} 00:00 in Germany on.\n",
              f"constexpr std::int64_t change_date = {model.change_seconds(date)};\n\n",
              "// The day from which each country's bank codes hold.\n",
              "constexpr struct {\n    char key_end[4];\n    char date[11];\n} data_dates[] = {",
              f'{{"_AT", "{_date(directory, "Austria")}"}}, {{"_CH", "{_date(directory, "Switzerland")}"}}, ',
              f'{{"_DE", "{date}"}}}};\n\n',
              LAYOUT, "constexpr char directory_text[] =\n"]
    for record in model.records(directory):
        lines += _lines(record)
    return "".join(lines).removesuffix("\n") + "\n    ;\n"


def write(folder, text):
    """Replaces the file if it differs, and says whether it did. Whoever reads meets the old file or the new one."""
    path = pathlib.Path(folder, FILE)
    if path.exists() and path.read_text(encoding="utf-8") == text:
        return False
    draft = path.with_suffix(".new")
    try:
        draft.write_text(text, encoding="utf-8")
        os.replace(draft, path)
    finally:
        draft.unlink(missing_ok=True)
    return True


def _add_line(directory, key, parts):
    code, country = key[:8], key[8:]
    if not country.startswith("_"):
        directory.bics[key] = model.Reachability(parts[1][0], parts[2])
    elif country == "_DE":
        _, header, successor, name, postcode, town, _, bic = parts
        version = model.GermanVersion(header[0] & 1, header[1], int.from_bytes(header[2:], "big"), successor, bic, name,
                                      postcode, town)
        directory.german[code] = directory.german.get(code, ()) + (version,)
    else:
        _, name, postcode, town, bank_country, bic = parts
        banks = directory.austrian if country == "_AT" else directory.swiss
        digits = re.match("[0-9]+", code[3:])[0]
        banks[digits] = model.Bank(code[3:].removeprefix(digits) + bic, name, postcode, town, bank_country)


def read(folder):
    """The directory that the file in a folder holds."""
    text = pathlib.Path(folder, FILE).read_text(encoding="utf-8")
    change_date = datetime.date.fromisoformat(re.search(r"from ([0-9-]{10}) 00:00 in Germany", text)[1])
    sources = dict(re.findall(rf"^// ({'|'.join(model.LISTS)}): (.*)$", text, re.MULTILINE))
    directory = model.Directory({}, {}, {}, {}, change_date, sources)
    for line in re.findall(r'^    (".*)$', text, re.MULTILINE):
        key, *literals = re.findall(r'"((?:[^"\\]|\\.)*)"', line)
        _add_line(directory, key, [_part(literal) for literal in literals])
    return directory
