"""The library as the checks of the documents use it, and the tables of a document."""

import ctypes
import re
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
DIRECT_DEBIT, CREDIT_TRANSFER = 1, 2
MESSAGE_NAMES = {DIRECT_DEBIT: "direct debit", CREDIT_TRANSFER: "credit transfer"}


class Library:
    def __init__(self, path):
        self.so = ctypes.CDLL(str(path))
        self.so.sepa_new.restype = ctypes.c_void_p
        self.so.sepa_toXML.restype = ctypes.c_void_p
        self.so.sepa_getError.restype = ctypes.c_char_p

    def select(self, rulebook):
        assert self.so.sepa_init(3, rulebook.encode()) == 1, rulebook

    def message(self, message_type):
        return Message(self.so, message_type)


class Message:
    """A message with everything in its header that a document needs."""

    def __init__(self, so, message_type):
        self.so, self.handle = so, ctypes.c_void_p(so.sepa_new(message_type))
        for setter, value in (("IBAN", "DE89370400440532013000"), ("BIC", "COBADEFFXXX"), ("Name", "Name"),
                              ("CreditorIdentifier", "DE98ZZZ09999999999"), ("Date", "2027-03-01")):
            assert getattr(so, "sepa_set" + setter)(self.handle, value.encode()) == 1

    def add(self, payment):
        """Null when the payment was taken, otherwise the reason. The values are texts or bytes."""
        texts = [text if isinstance(text, bytes) else text.encode() for pair in payment.items() for text in pair]
        if self.so.sepa_add(self.handle, (ctypes.c_char_p * (len(texts) + 1))(*texts, None)) == 1:
            return None
        return self.so.sepa_getError(self.handle).decode(errors="replace")

    def document(self):
        text = self.so.sepa_toXML(self.handle)
        return ctypes.string_at(text).decode() if text else None

    def __enter__(self):
        return self

    def __exit__(self, *_):
        self.so.sepa_free(self.handle)


def tables(document):
    """The tables of a document under docs/ or the project's root, each a list of rows by column name."""
    found, header = [], None
    for line in (SOURCE / document).read_text().splitlines():
        if not line.startswith("|"):
            header = None
            continue
        cells = [cell.strip().replace("\\|", "|") for cell in re.split(r"(?<!\\)\|", line)[1:-1]]
        if header is None:
            header = cells
            found.append([])
        elif not re.fullmatch(r"[-: ]+", cells[0]):
            found[-1].append(dict(zip(header, cells)))
    return found
