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
// RECORD(key, content) is one of
//   "_DE" and bank code (8), deletion flag, check method, IBAN rule in two bytes (rule number * 100 + version),
//       "successor|BIC|name|postal code|town|DE"; CHANGING(...) has all but the key a second time, from the
//       change date on, after another "|"
//   "_AT" or "_CH" and bank code (5), "BIC|name|postal code|town|country"; two Austrian identifiers are shorter
//       and keep the first letters of their BIC in the key
//   BIC (11), flags (1 SCT, 2 SDD core, 4 COR1, 8 SDD B2B), name
"""


def _literal(data):
    """A C++ string literal that no character before or after it can change."""
    try:
        text = data.decode()
    except UnicodeDecodeError:
        text = ""
    if not text or not text.isprintable():
        return '"' + "".join(f"\\x{byte:02x}" for byte in data) + '"'
    return '"' + re.sub(r'(["\\])', r"\\\1", text).replace("??", r"?\?") + '"'


def _literal_bytes(literal):
    if literal.startswith("\\x"):
        return bytes(int(byte, 16) for byte in literal[2:].split("\\x"))
    return re.sub(r"\\(.)", r"\1", literal).encode()


def _head(name):
    return f"// {TITLE[name]}\n// Made by tools/make_directory.py; not to be edited.\n"


def _records_text(directory, records):
    lines = [_head(RECORDS), "//\n"]
    lines += [f"// {title}: {source}\n" for title, source in directory.sources.items()]
    lines += ["//\n", LAYOUT, "\n"]
    for record in records:
        macro = "CHANGING" if record.versions > 1 else "RECORD"
        literals = " ".join(_literal(part) for part in (record.key,) + record.parts)
        rules = [v.iban_rule for v in directory.german[record.key[3:].decode()]] if record.key[:3] == b"_DE" else []
        comment = f"  // IBAN rule {rules[0]:04}" if any(rules) else ""
        lines.append(f"{macro}({literals}){comment}\n")
    return "".join(lines)


def _hash_text(records):
    table = perfect_hash.build([record.key for record in records])
    lines = [_head(HASH), "\n", f"constexpr std::uint32_t kVertices = {len(table.values)};\n\n",
             'constexpr std::uint32_t kTabulation[kMaxKeyLength * kKeyCharacters][3] = {\n']
    lines += ["    {" + ", ".join(f"0x{number:08x}" for number in row) + "},\n" for row in table.tabulation]
    lines += ["};\n\n", "constexpr std::uint32_t kVertexValues[kVertices] = {\n"]
    cells = ["0xffffffff" if value == perfect_hash.UNUSED else str(value) for value in table.values]
    lines += ["    " + ", ".join(cells[start:start + 12]) + ",\n" for start in range(0, len(cells), 12)]
    lines += ["};\n"]
    return "".join(lines)


def _release_text(directory):
    date = directory.change_date
    return (_head(RELEASE) + "\n"
            f"// German records that announce new data give them from {date} 00:00 in Germany on.\n"
            f"constexpr std::int64_t kChangeDate = {model.change_seconds(date)};\n")


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


def _german_version(header, text):
    fields = text.split("|")
    if len(header) != 4 or len(fields) != 6 or fields[5] != "DE":
        raise model.DataError(f"damaged German record: {text}")
    return model.GermanVersion(header[0], header[1], int.from_bytes(header[2:], "big"), *fields[:5])


def _add_record(directory, macro, parts):
    key = parts[0].decode()
    if key.startswith("_DE"):
        versions = [_german_version(parts[1], parts[2].decode())]
        if macro == "CHANGING":
            versions.append(_german_version(parts[4], parts[5].decode()))
        directory.german[key[3:]] = tuple(versions)
    elif key.startswith("_"):
        content = (parts[0] + parts[1]).decode()
        first, *fields = content[3:].split("|")
        code = re.match("[0-9]+", first)[0][:5]
        banks = directory.austrian if key.startswith("_AT") else directory.swiss
        banks[code] = model.Bank(first[len(code):], *fields)
    else:
        name = parts[2].decode() if len(parts) > 2 else ""
        directory.bics[key] = model.Reachability(parts[1][0], name)


def read(folder):
    """The directory that the files in a folder hold."""
    release = pathlib.Path(folder, RELEASE).read_text(encoding="utf-8")
    change_date = datetime.date.fromisoformat(re.search(r"from ([0-9-]{10}) 00:00 in Germany", release)[1])
    rows = pathlib.Path(folder, RECORDS).read_text(encoding="utf-8")
    sources = dict(re.findall(r"^// (\w+): (.*)$", rows, re.MULTILINE))
    directory = model.Directory({}, {}, {}, {}, change_date, sources)
    for line in rows.splitlines():
        row = re.match(r"(RECORD|CHANGING)\((.*)\)", line)
        if row:
            literals = re.findall(r'"((?:[^"\\]|\\.)*)"', row[2])
            _add_record(directory, row[1], [_literal_bytes(literal) for literal in literals])
    return directory
