"""Reads lists that were brought into tables: tab-separated, column names in the first line, no quoting."""

import pathlib

from . import model


def _rows(path):
    header, *lines = pathlib.Path(path).read_text(encoding="utf-8").splitlines()
    names = header.split("\t")
    for line in lines:
        cells = line.split("\t")
        if len(cells) != len(names):
            raise model.DataError(f"{path}: wrong number of columns: {line}")
        yield dict(zip(names, cells))


def _insert(table, key, value):
    if key in table:
        raise model.DataError(f"{key} is listed twice")
    table[key] = value


def read(folder, change_date, sources):
    """The directory of de.tsv, at.tsv, ch.tsv and bic.tsv."""
    directory = model.Directory({}, {}, {}, {}, change_date, sources)
    versions = {}
    for row in _rows(pathlib.Path(folder, "de.tsv")):
        version = model.GermanVersion(int(row["deleted"]), int(row["method"], 16), int(row["iban_rule"]),
                                      row["successor"], row["bic"], row["name"], row["postcode"], row["town"])
        _insert(versions.setdefault(row["bank_code"], {}), int(row["version"]), version)
    for code, numbered in versions.items():
        directory.german[code] = tuple(numbered[number] for number in range(1, len(numbered) + 1))
    for name, banks in (("at.tsv", directory.austrian), ("ch.tsv", directory.swiss)):
        for row in _rows(pathlib.Path(folder, name)):
            _insert(banks, row["bank_code"],
                    model.Bank(row["bic"], row["name"], row["postcode"], row["town"], row["country"]))
    for row in _rows(pathlib.Path(folder, "bic.tsv")):
        _insert(directory.bics, row["bic"], model.Reachability(int(row["flags"]), row["name"]))
    return directory
