#!/usr/bin/env python3
"""script/refresh-directory: a small directory and lists of its own, and today's directory as it would be published."""

import csv
import dataclasses
import datetime
import json
import os
import pathlib
import random
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
LISTS = ROOT / "tests/data/refresh"
sys.path.insert(0, str(ROOT / "tools"))

from directory import data_files, model, publishers, summary  # noqa: E402

ALL_LISTS = ("--de", LISTS / "bank-codes.txt", "--at", LISTS / "banks-austria.csv", "--ch", LISTS / "bank-master.json",
             "--reachable", LISTS / "reachable-banks.csv")


class Publisher:
    """Writes a directory as its publishers would print it."""

    def __init__(self, directory, folder):
        self.directory = directory
        self.folder = pathlib.Path(folder)

    def german(self):
        return [(code, versions[-1]) for code, versions in self.directory.german.items()]

    def bank_codes(self, extended=False):
        lines = []
        for code, v in self.german():
            for feature, bic in ("1", v.bic), ("2", ""):  # every bank has a second office
                rule = f"{v.iban_rule:06}" if extended else ""
                lines.append(f"{code}{feature}{v.name:58}{v.postcode:5}{v.town:35}{v.name[:27]:27}     {bic:11}"
                             f"{v.method:02X}{len(lines):06}U{v.deleted}{v.successor or '00000000'}{rule}")
        return self.write("bank_codes.txt", "".join(line + "\r\n" for line in lines), "iso-8859-1")

    def bank_code_table(self):
        header = (LISTS / "bank-codes.csv").read_text(encoding="iso-8859-1").splitlines()[0].split(";")
        rows = [(code, "1", v.name, v.postcode, v.town, v.name[:27], "", v.bic, f"{v.method:02X}", "000001", "U",
                 v.deleted, v.successor or "00000000") for code, v in self.german()]
        return self.table("bank_codes.csv", [header, *rows], csv.QUOTE_ALL)

    def rules(self):
        return self.table("rules.csv", [(code, v.iban_rule) for code, v in self.german()])

    def austrian(self):
        header = ["Kennzeichen", "Bankleitzahl", "Bankenname", "PLZ", "Ort", "SWIFT-Code"]
        rows = [("Hauptanstalt", code, bank.name, bank.postcode, bank.town, bank.bic)
                for code, bank in self.directory.austrian.items()]
        return self.table("austria.csv", [[], ["SEPA-Verzeichnis-Abfrage vom 01.12.2026"], header, *rows])

    def swiss(self):
        entries = []
        for code, bank in self.directory.swiss.items():
            entries.append({"entryType": "BankMaster", "iid": int(code), "bankOrInstitutionName": bank.name,
                            "postCode": bank.postcode, "townName": bank.town, "country": bank.country or "CH",
                            **({"bic": bank.bic} if bank.bic else {})})
        return self.write("switzerland.json", json.dumps({"entries": entries}))

    def reachable(self):
        header = ["BIC", "Name", "SERVICE SCT", "SERVICE COR", "SERVICE COR1", "SERVICE B2B", "SERVICE SCC"]
        rows = [(bic.removesuffix("XXX"), entry.name, *(entry.flags >> bit & 1 for bit in range(4)), 0)
                for bic, entry in self.directory.bics.items()]
        return self.table("reachable.csv", [["Gueltig ab / valid from 23.11.2026", *[""] * 6], header, *rows])

    def table(self, name, rows, quoting=csv.QUOTE_MINIMAL):
        with open(self.folder / name, "w", encoding="iso-8859-1", newline="") as file:
            csv.writer(file, delimiter=";", quoting=quoting).writerows(rows)
        return self.folder / name

    def write(self, name, text, encoding="utf-8"):
        (self.folder / name).write_bytes(text.encode(encoding))
        return self.folder / name


class RefreshTest(unittest.TestCase):
    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.data = self.folder / "data"
        self.start_from(LISTS)

    def start_from(self, source):
        shutil.rmtree(self.data, ignore_errors=True)
        self.data.mkdir()
        for path in source.glob("directory_*.inc"):
            shutil.copy(path, self.data)

    def content(self):
        return {path.name: path.read_bytes() for path in self.data.iterdir()}

    def run_tool(self, *arguments, valid_from="2026-12-07"):
        return subprocess.run([ROOT / "script/refresh-directory", "--data", self.data, "--valid-from", valid_from,
                               *arguments], capture_output=True, text=True, check=False)

    def refresh(self, *arguments, **options):
        result = self.run_tool(*arguments, **options)
        self.assertEqual(result.returncode, 0, result.stderr)
        return data_files.read(self.data), result.stdout

    def test_all_editions_of_the_bank_codes_say_the_same(self):
        plain = publishers.read(LISTS / "bank-codes.txt", "Germany").entries
        self.assertEqual(plain, publishers.read(LISTS / "bank-codes.csv", "Germany").entries)
        extended = publishers.read(LISTS / "bank-codes-extended.txt", "Germany").entries
        self.assertEqual([entry.iban_rule for entry in extended.values()], [4201, 0, 0, 2800, 503, 0, 5800, 0])
        self.assertEqual({code: (entry.successor, entry.town) for code, entry in plain.items()},
                         {code: (entry.successor, entry.town) for code, entry in extended.items()})
        self.assertEqual(plain["25050299"], model.GermanVersion(
            1, 0xA3, None, "25050180", "", "Sparkasse Hannover -alt-", "30056", "Hannover"))

    def test_new_lists_replace_what_is_in_force(self):
        before = data_files.read(self.data)
        after, printed = self.refresh(*ALL_LISTS)
        self.assertEqual(after.change_date, datetime.date(2026, 12, 7))
        self.assertEqual(after.german.keys() ^ before.german.keys(), {"83050000", "90090042"})
        self.assertEqual(after.german["50050222"], before.german["50050222"][1:])  # announced, and not changed since
        self.assertEqual(after.german["10000000"], before.german["10000000"])
        for code, change in {"20050550": {"deleted": 1}, "37040044": {"postcode": "50448"},
                             "70150000": {"method": 0xF7}}.items():
            present = before.german[code][-1]
            self.assertEqual(after.german[code], (present, dataclasses.replace(present, **change)))
        self.assertEqual(after.german["90090042"][0].iban_rule, 0)
        self.assertEqual(after.austrian["100"], before.austrian["100"])
        self.assertEqual(after.austrian["15000"],
                         model.Bank("MUOSAT2LXXX", "Österreichische Musterbank", "4020", "Linz", "AT"))
        self.assertEqual(after.swiss["30999"], model.Bank("BDGECHGGXXX", "Banque de Genève", "1204", "Genève", ""))
        self.assertEqual(after.swiss["08800"].country, "LI")
        self.assertNotIn("30997", after.swiss)
        self.assertEqual(after.bics["COBADEFFXXX"], model.Reachability(11, "COMMERZBANK AG"))
        self.assertEqual(after.bics["UNBEDE22XXX"].flags, 5)
        self.assertEqual(after.sources["Austria"], "Oesterreichische Nationalbank, bank list of 2026-12-01")
        for line in ("90090042 Bürgerbank Würzburg", "83050000 Sparkasse Gera-Greiz", "F7: 1 bank codes (70150000)",
                     "37040044 Commerzbank: postcode '50447' -> '50448'", "UNBEDE22XXX UNBEKANNTE BANK"):
            self.assertIn(line, printed)

    def test_iban_rules_come_from_the_extended_edition_or_a_list(self):
        after, printed = self.refresh("--de", LISTS / "bank-codes-extended.txt", "--rules", LISTS / "rules.csv")
        rules = {code: versions[-1].iban_rule for code, versions in after.german.items()}
        self.assertEqual({code: rule for code, rule in rules.items() if rule},
                         {"10000000": 4201, "20050550": 800, "25050299": 2800, "37040044": 504, "70150000": 5800})
        for line in ("5800: 1 bank codes (70150000)", "0504: 1 bank codes (37040044)", "99999999: 0100"):
            self.assertIn(line, printed)

        self.start_from(LISTS)  # without a list of banks the rules change only themselves
        before = data_files.read(self.data)
        after, _ = self.refresh("--rules", LISTS / "rules.csv")
        changed = [code for code, versions in after.german.items() if len(versions) == 2]
        self.assertEqual(changed, ["20050550", "37040044"])
        self.assertEqual(after.german.keys(), before.german.keys())
        self.assertEqual(after.swiss, before.swiss)

    def test_lists_that_are_not_given_stay(self):
        before = data_files.read(self.data)
        after, _ = self.refresh("--at", LISTS / "banks-austria.csv")
        self.assertEqual((after.german, after.swiss, after.bics, after.change_date),
                         (before.german, before.swiss, before.bics, before.change_date))
        self.assertNotEqual(after.austrian, before.austrian)

    def test_the_same_day_once_more_replaces_its_announcements(self):
        self.refresh("--de", LISTS / "bank-codes.txt")
        before = data_files.read(self.data)
        corrected = self.folder / "corrected.txt"
        text = (LISTS / "bank-codes.txt").read_bytes().replace(b"50448", b"50447").replace(b"20454", b"20457")
        corrected.write_bytes(text)
        after, _ = self.refresh("--de", corrected)
        self.assertEqual(after.german["37040044"], before.german["37040044"][:1])
        self.assertEqual(after.german["20050550"][0], before.german["20050550"][0])
        self.assertEqual(after.german["20050550"][1].postcode, "20457")

    def test_todays_directory_as_published_changes_nothing(self):
        self.start_from(ROOT / "data")
        before, directory = self.content(), data_files.read(self.data)
        publisher = Publisher(directory, self.folder)
        others = ("--at", publisher.austrian(), "--ch", publisher.swiss(), "--reachable", publisher.reachable())
        for arguments in (("--de", publisher.bank_codes(), *others), ("--de", publisher.bank_codes(extended=True)),
                          ("--de", publisher.bank_code_table(), "--rules", publisher.rules())):
            _, printed = self.refresh(*arguments, valid_from=directory.change_date.isoformat())
            self.assertIn("Nothing has changed.", printed)
            self.assertEqual(self.content(), before)
        # On a later day what was announced holds alone.
        after, _ = self.refresh("--de", publisher.bank_code_table(), valid_from="2040-01-01")
        self.assertEqual(after.german, {code: versions[-1:] for code, versions in directory.german.items()})

    def test_the_order_of_a_list_does_not_matter(self):
        self.refresh(*ALL_LISTS)
        expected = self.content()
        self.start_from(LISTS)
        lines = (LISTS / "bank-codes.txt").read_bytes().splitlines(keepends=True)
        random.Random(1).shuffle(lines)
        (self.folder / "shuffled.txt").write_bytes(b"".join(lines))
        self.refresh(*ALL_LISTS, "--de", self.folder / "shuffled.txt")
        self.assertEqual(self.content(), expected)

    def test_bad_files_change_nothing(self):
        def damaged(name, change):
            data = change((LISTS / name).read_bytes())
            path = self.folder / f"damaged-{name}"
            path.write_bytes(data)
            return path

        def replaced(old, new):
            return lambda data: data.replace(old.encode("iso-8859-1"), new.encode("iso-8859-1"), 1)

        twice = lambda data: data + data.splitlines(keepends=True)[-1]  # noqa: E731
        cases = [
            ("--de", "bank-codes.txt", lambda data: data[:-20], "line 9 has 150 characters"),
            ("--de", "bank-codes.txt", lambda data: b"", "not one of the known formats"),
            ("--de", "bank-codes.txt", twice, "90090042 is listed twice"),
            ("--de", "bank-codes.txt", replaced("A000000000", "A200000000"), "90090042: unknown deletion mark"),
            ("--de", "bank-codes.txt", replaced("Bundesbank ", "Bundesbank\a"), "unusable text"),
            ("--de", "bank-codes.txt", replaced("MARKDEF1100", "MARKDEF110 "), "invalid BIC"),
            ("--de", "bank-codes.txt", replaced("Bundesbank ", "Bundes|bank"), "unusable text"),
            ("--de", "bank-codes.csv", lambda data: data[:-6], "damaged CSV"),
            ("--de", "bank-codes.csv", replaced('"A3"', '"3"'), "unknown check method"),
            ("--de", "bank-codes.csv", replaced(';"10591"', ""), "12 columns instead of 13"),
            ("--de", "banks-austria.csv", bytes, "list for Austria, not Germany"),
            ("--at", "banks-austria.csv", lambda data: data[:-30], "columns instead of 22"),
            ("--at", "banks-austria.csv", twice, "12000 is listed twice"),
            ("--at", "reachable-banks.csv", bytes, "list for BICs, not Austria"),
            ("--ch", "bank-master.json", lambda data: data[:-4], "damaged JSON"),
            ("--ch", "bank-master.json", replaced('"iid": 30196', '"iid": 8800'), "08800 is listed twice"),
            ("--ch", "bank-master.json", lambda data: b"{}", "JSON without a list of entries"),
            ("--ch", "bank-master.json", replaced("30196", "301960"), "not a bank code"),
            ("--reachable", "reachable-banks.csv", lambda data: data[:-4], "columns instead of 7"),
            ("--reachable", "reachable-banks.csv", replaced("AABAFI22", "AABAFI2"), "not a BIC"),
            ("--reachable", "reachable-banks.csv", replaced(";1;1;0;1;0", ";1;1;0;x;0"), "unknown mark"),
            ("--rules", "rules.csv", replaced("504", "5o4"), "37040044: invalid IBAN rule"),
            ("--rules", "rules.csv", twice, "99999999 is listed twice"),
            ("--rules", "rules.csv", replaced("504", "65536"), "invalid IBAN rule"),
        ]
        before = self.content()
        for option, name, change, problem in cases:
            result = self.run_tool("--force", option, damaged(name, change))
            with self.subTest(option=option, problem=problem):
                self.assertNotEqual(result.returncode, 0)
                self.assertIn(problem, result.stderr)
                self.assertNotIn("Traceback", result.stderr)
                self.assertTrue(self.content() == before)
            self.start_from(LISTS)
        result = self.run_tool(*ALL_LISTS, valid_from="2026-06-07")
        self.assertIn("already announces changes for 2026-06-08", result.stderr)
        self.assertIn("No such file", self.run_tool("--de", "/nowhere").stderr)
        self.assertEqual(self.content(), before)

    def test_lists_that_lose_a_fifth_need_force(self):
        short = self.folder / "short.csv"
        lines = (LISTS / "reachable-banks.csv").read_bytes().splitlines(keepends=True)
        short.write_bytes(b"".join(lines[:-3]))  # 4 of 5 BICs
        before = self.content()
        result = self.run_tool("--reachable", short)
        self.assertEqual(result.returncode, 1)
        self.assertIn("BICs has", result.stderr)
        self.assertEqual(self.content(), before)
        after, _ = self.refresh("--reachable", short, "--force")
        self.assertEqual(len(after.bics), 3)

    def test_library_with_the_new_data_changes_on_the_day(self):
        self.refresh(*ALL_LISTS)
        (self.folder / "main.cpp").write_text("""
            #include <cstdio>
            #include "velmora.h"
            int main(int, char** codes) {
                while (*++codes) {
                    sepa_bank_t* bank = nullptr;
                    if (sepa_bankid_check("DE", *codes, &bank) == 1)
                        std::printf("%s %s %s\\n", bank->name, bank->postcode, bank->city);
                }
            }""", encoding="utf-8")
        sources = [ROOT / "src/bank" / name for name in ("directory.cpp", "bank_record.cpp", "bankid_check.cpp")]
        program = self.folder / "main"
        subprocess.run([os.environ.get("CXX", "c++"), "-std=c++20", "-D_GNU_SOURCE", "-I", self.folder,
                        "-I", ROOT / "src", "-I", ROOT / "include", self.folder / "main.cpp", *sources, "-o", program],
                       check=True)

        def banks(time):
            environment = {**os.environ, "TZ": "UTC0", "FAKETIME": time, "LD_PRELOAD": os.environ["FAKETIME_LIBRARY"]}
            return subprocess.run([program, "37040044", "83050000", "90090042", "50050222"], env=environment,
                                  capture_output=True, text=True, check=True).stdout.splitlines()

        others = ["Bürgerbank Würzburg 97070 Würzburg",
                  'Frankfurter Sparkasse 1822 "direkt" 60255 Frankfurt am Main']
        self.assertEqual(banks("2026-12-06 22:59:59"), ["Commerzbank 50447 Köln", *others])
        self.assertEqual(banks("2026-12-06 23:00:00"), ["Commerzbank 50448 Köln", *others])

    def test_midnight_in_germany(self):
        for day, hour in {"2026-06-08": 22, "2026-12-07": 23, "2026-03-29": 23, "2026-03-30": 22, "2026-10-25": 22,
                          "2026-10-26": 23}.items():
            date = datetime.date.fromisoformat(day)
            time = datetime.datetime.fromtimestamp(model.change_seconds(date), datetime.timezone.utc)
            self.assertEqual(time.date(), date - datetime.timedelta(days=1))
            self.assertEqual((time.hour, time.minute, time.second), (hour, 0, 0), day)

    def test_methods_and_rules_of_the_library_are_known(self):
        used = data_files.read(ROOT / "data").german.values()
        self.assertLessEqual({version.method for versions in used for version in versions},
                             summary.implemented_methods())
        self.assertNotIn(0x12, summary.implemented_methods())
        self.assertEqual(summary.implemented_rules(), set(range(58)))


if __name__ == "__main__":
    unittest.main()
