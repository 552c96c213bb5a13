"""Writes the directory as the files under data/, and reads it back from them."""

import datetime
import os
import pathlib
import re

from . import model, perfect_hash

RECORDS = "directory_records.inc"
HASH = "directory_hash.inc"
RELEASE = "directory_release.inc"

TITLE = {
    RECORDS: "The bank directory: one record a line, in slot order, which is the byte order of the keys.",
    HASH: "The minimal perfect hash over the keys of directory_records.inc.",
    RELEASE: "The release of the bank directory.",
}
LAYOUT = """\
// BIC(BIC, flags, name): flags are 1 SCT, 2 SDD core, 4 COR1, 8 SDD B2B.
// AUSTRIAN and SWISS(bank code, BIC, name, postal code, town, country). Two Austrian identifiers are too short; the
//     first letters of their BIC complete them.
// GERMAN(bank code, deletion flag, check method and IBAN rule (number * 100 + version, two bytes), successor, BIC,
//     name, postal code, town).
// CHANGED(the same without bank code): what the German record before it becomes on the change date.
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
    return re.sub(r"\\(.)", r"\1", literal)


def _row(kind, parts):
    # The header's bytes hide the IBAN rule from a reader; the standard rule needs no remark.
    rule = next((int.from_bytes(part[2:], "big") for part in parts if isinstance(part, bytes)), 0)
    remark = f"  // IBAN rule {rule:04}" if rule else ""
    return f"{kind}({', '.join(_literal(part) for part in parts)}){remark}\n"


def _head(name):
    return f"// {TITLE[name]}\n// Made by tools/make_directory.py; not to be edited.\n"


def _records_text(directory, records):
    lines = [_head(RECORDS), "//\n"]
    lines += [f"// {title}: {source}\n" for title, source in directory.sources.items()]
    lines += ["//\n", LAYOUT, "\n"]
    for record in records:
        lines += [_row(kind, parts) for kind, parts in record.rows]
    return "".join(lines)


def _hash_text(records):
    table = perfect_hash.build([record.key for record in records])
    lines = [_head(HASH), "\n", f"constexpr std::uint32_t vertex_count = {len(table.values)};\n\n",
             'constexpr std::uint32_t tabulation[max_key_length * key_characters][numbers_a_character] = {\n']
    lines += ["    {" + ", ".join(f"0x{number:08x}" for number in row) + "},\n" for row in table.tabulation]
    lines += ["};\n\n", "constexpr std::uint32_t vertex_values[vertex_count] = {\n"]
    cells = ["0xffffffff" if value == perfect_hash.UNUSED else str(value) for value in table.values]
    lines += ["    " + ", ".join(cells[start:start + 12]) + ",\n" for start in range(0, len(cells), 12)]
    lines += ["};\n"]
    return "".join(lines)


def _release_text(directory):
    date = directory.change_date
    return (_head(RELEASE) + "\n"
            f"// German records that announce new data give them from {date} 00:00 in Germany on.\n"
            f"constexpr std::int64_t change_date = {model.change_seconds(date)};\n")


def render(directory):
    """The files' contents by name."""
    model.check(directory)
    records = model.records(directory)
    return {
        RECORDS: _records_text(directory, records),
        HASH: _hash_text(records),
        RELEASE: _release_text(directory),
    }


def write(folder, files):
    """Replaces the files that differ, all of them or none; the names of those replaced."""
    paths = {name: pathlib.Path(folder, name) for name in files}
    changed = [name for name, path in paths.items()
               if not path.exists() or path.read_text(encoding="utf-8") != files[name]]
    drafts = {name: paths[name].with_suffix(".new") for name in changed}
    try:
        for name, draft in drafts.items():
            draft.write_text(files[name], encoding="utf-8", newline="\n")
        for name, draft in drafts.items():
            os.replace(draft, paths[name])
    finally:
        for draft in drafts.values():
            draft.unlink(missing_ok=True)
    return changed


def _add_row(directory, kind, parts):
    if kind == "BIC":
        directory.bics[parts[0]] = model.Reachability(parts[1][0], parts[2])
    elif kind in ("AUSTRIAN", "SWISS"):
        code = re.match("[0-9]+", parts[0])[0]
        banks = directory.austrian if kind == "AUSTRIAN" else directory.swiss
        banks[code] = model.Bank(parts[0][len(code):] + parts[1], *parts[2:])
    else:
        code = parts.pop(0) if kind == "GERMAN" else next(reversed(directory.german))
        header, *texts = parts
        version = model.GermanVersion(header[0], header[1], int.from_bytes(header[2:], "big"), *texts)
        directory.german[code] = directory.german.get(code, ()) + (version,)


def read(folder):
    """The directory that the files in a folder hold."""
    release = pathlib.Path(folder, RELEASE).read_text(encoding="utf-8")
    change_date = datetime.date.fromisoformat(re.search(r"from ([0-9-]{10}) 00:00 in Germany", release)[1])
    rows = pathlib.Path(folder, RECORDS).read_text(encoding="utf-8")
    sources = dict(re.findall(rf"^// ({'|'.join(model.LISTS)}): (.*)$", rows, re.MULTILINE))
    directory = model.Directory({}, {}, {}, {}, change_date, sources)
    for line in rows.splitlines():
        row = re.match(r"([A-Z]+)\((.*)\)", line)
        if row:
            literals = re.findall(r'"((?:[^"\\]|\\.)*)"', row[2])
            _add_row(directory, row[1], [_part(literal) for literal in literals])
    return directory
