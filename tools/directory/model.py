"""What the bank directory holds, and how each record looks in the library."""

import dataclasses
import datetime
import re

LISTS = ("Germany", "Austria", "Switzerland", "BICs")

# A byte says how long a text is, with the zero byte behind it.
LONGEST_TEXT = 254


class DataError(Exception):
    """Input or data that must not become a directory."""


@dataclasses.dataclass(frozen=True)
class Bank:
    """An Austrian or Swiss bank code."""

    bic: str
    name: str
    postcode: str
    town: str
    country: str

    def texts(self):
        return (self.name, self.postcode, self.town)


@dataclasses.dataclass(frozen=True)
class GermanVersion:
    """What holds for a German bank code, from the start or from the change date on."""

    deleted: int
    method: int
    iban_rule: int  # rule number * 100 + version
    successor: str
    bic: str
    name: str
    postcode: str
    town: str

    def texts(self):
        return (self.name, self.postcode, self.town)


@dataclasses.dataclass(frozen=True)
class Reachability:
    """The payment schemes in which a BIC is reachable: 1 SCT, 2 SDD core, 4 COR1, 8 SDD B2B."""

    flags: int
    name: str


@dataclasses.dataclass
class Directory:
    """All lists, each a dictionary by bank code or BIC; `sources` says where each list comes from."""

    german: dict  # bank code -> one GermanVersion, or two: now and from the change date on
    austrian: dict
    swiss: dict
    bics: dict
    change_date: datetime.date
    sources: dict

    def list(self, name):
        return dict(zip(LISTS, (self.german, self.austrian, self.swiss, self.bics)))[name]


@dataclasses.dataclass(frozen=True)
class Record:
    """One record of the library: its key, and of each version what stands before its texts, the texts and a remark."""

    key: str
    versions: tuple


def _sizes(*texts):
    return bytes(len(text.encode()) + 1 for text in texts)


def _bank(key, bank, country):
    texts = (bank.name, bank.postcode, bank.town, country, bank.bic)
    return Record(key, (((b"\0" + _sizes(*texts),), texts, ""),))


def _german(code, versions):
    result = []
    for number, version in enumerate(versions, 1):
        texts = (version.name, version.postcode, version.town, "DE", version.bic)
        deleted = version.deleted + (2 if number < len(versions) else 0)
        header = bytes((deleted, version.method)) + version.iban_rule.to_bytes(2, "big")
        prefix = (bytes((len(version.successor),)) + _sizes(*texts), header, version.successor)
        # The header's bytes hide the IBAN rule from a reader; the standard rule needs no remark.
        result.append((prefix, texts, f"IBAN rule {version.iban_rule:04}" if version.iban_rule else ""))
    return Record(f"{code}_DE", tuple(result))


def records(directory):
    """The records in the order of the file."""
    result = []
    for suffix, banks in (("_AT", directory.austrian), ("_CH", directory.swiss)):
        for code, bank in banks.items():
            # A bank code has five characters: a shorter one is filled from its BIC.
            start = code + bank.bic
            bank = dataclasses.replace(bank, bic=start[5:])
            result.append(_bank(start[:5].rjust(8, "0") + suffix, bank, bank.country))
    result += [_german(code, versions) for code, versions in directory.german.items()]
    result += [Record(bic, (((_sizes(entry.name), bytes((entry.flags,))), (entry.name,), ""),))
               for bic, entry in directory.bics.items()]
    return sorted(result, key=lambda record: (record.key[8] != "_", record.key[8:] if record.key[8] == "_" else "",
                                              record.key))


def change_seconds(date):
    """The first second of a day in Germany, in seconds since the epoch."""
    def last_sunday(month):
        last = datetime.date(date.year, month, 31)
        return last - datetime.timedelta(days=last.isoweekday() % 7)

    summer = last_sunday(3) < date <= last_sunday(10)
    midnight = datetime.datetime(date.year, date.month, date.day, tzinfo=datetime.timezone.utc)
    return int(midnight.timestamp()) - 3600 * (2 if summer else 1)


def check(directory):
    """Refuses data that the library could not find or would cut."""
    def require(condition, key, problem):
        if not condition:
            raise DataError(f"{key}: {problem}")

    def check_texts(key, texts):
        for text in texts:
            # "|" separates columns in some lists.
            require(text.isprintable() and "|" not in text, key, f"unusable text {text!r}")
            require(len(text.encode()) <= LONGEST_TEXT, key, "text too long")

    def check_bic(key, bic, optional=True):
        require(re.fullmatch("[A-Z0-9]{11}", bic) or (optional and not bic), key, f"invalid BIC {bic!r}")

    for code, versions in directory.german.items():
        require(re.fullmatch("[0-9]{8}", code), code, "not a German bank code")
        require(len(versions) in (1, 2), code, "more than two versions")
        for version in versions:
            require(version.deleted in (0, 1), code, "deletion flag is neither 0 nor 1")
            require(0 <= version.method <= 0xFF, code, "invalid check method")
            require(0 <= version.iban_rule <= 0xFFFF, code, "invalid IBAN rule")
            require(re.fullmatch("([0-9]{8})?", version.successor), code, "invalid successor")
            check_bic(code, version.bic)
            check_texts(code, version.texts())
    for banks, codes in ((directory.austrian, "[0-9]{3,5}"), (directory.swiss, "[0-9]{5}")):
        for code, bank in banks.items():
            require(re.fullmatch(codes, code), code, "not a bank code")
            require(re.fullmatch("([A-Z]{2})?", bank.country), code, "invalid country")
            check_bic(code, bank.bic, optional=len(code) == 5)
            check_texts(code, bank.texts())
    for bic, entry in directory.bics.items():
        check_bic(bic, bic, optional=False)
        require(0 <= entry.flags <= 0xF, bic, "invalid scheme flags")
        check_texts(bic, (entry.name,))
    keys = [record.key for record in records(directory)]
    for before, key in zip(keys, keys[1:]):
        require(before != key, key, "two records with this key")
