#!/usr/bin/env python3
"""script/refresh-directory: a small directory and lists of its own, and today's directory as it would be published."""

import csv
import datetime
import difflib
import io
import json
import os
import pathlib
import random
import re
import shutil
import subprocess
import sys
import tempfile
import unittest

ROOT = pathlib.Path(__file__).resolve().parent.parent
LISTS = ROOT / "tests/data/refresh"
sys.path.insert(0, str(ROOT / "tools"))

from directory import data_files, model, summary  # noqa: E402

ALL_LISTS = ("--de", LISTS / "bank-codes.txt", "--at", LISTS / "banks-austria.csv", "--ch", LISTS / "bank-master.json",
             "--reachable", LISTS / "reachable-banks.csv")


def table(rows):
    text = io.StringIO()
    csv.writer(text, delimiter=";").writerows(rows)
    return text.getvalue()


def published(directory):
    """A directory as its publishers would print it, by the tool's option for each list."""
    german = ""
    for code, versions in directory.german.items():
        v = versions[-1]
        for feature, bic in ("1", v.bic), ("2", ""):  # every bank has a second office
            german += (f"{code}{feature}{v.name:58}{v.postcode:5}{v.town:35}{v.name[:27]:27}     {bic:11}{v.method:02X}"
                       f"000000U{v.deleted}{v.successor or '00000000'}{v.iban_rule:06}\r\n")
    austrian = [("Hauptanstalt", code, b.name, b.postcode, b.town, b.bic) for code, b in directory.austrian.items()]
    swiss = [{"entryType": "BankMaster", "iid": int(code), "bankOrInstitutionName": b.name, "postCode": b.postcode,
              "townName": b.town, "country": b.country or "CH", **({"bic": b.bic} if b.bic else {})}
             for code, b in directory.swiss.items()]
    bics = [(bic.removesuffix("XXX"), entry.name, *(entry.flags >> bit & 1 for bit in range(4)), 0)
            for bic, entry in directory.bics.items()]
    return {"--de": german,
            "--at": table([[], ["SEPA-Verzeichnis-Abfrage vom 01.12.2026"],
                           ["Kennzeichen", "Bankleitzahl", "Bankenname", "PLZ", "Ort", "SWIFT-Code"], *austrian]),
            "--ch": json.dumps({"entries": swiss}, ensure_ascii=False),
            "--reachable": table([["Gueltig ab / valid from 23.11.2026"],
                                  ["BIC", "Name", *(f"SERVICE {name}" for name in "SCT COR COR1 B2B SCC".split())],
                                  *bics])}


class RefreshTest(unittest.TestCase):
    maxDiff = None

    def setUp(self):
        folder = tempfile.TemporaryDirectory()
        self.addCleanup(folder.cleanup)
        self.folder = pathlib.Path(folder.name)
        self.data = self.folder / "data"
        self.start_from(LISTS)

    def start_from(self, source):
        shutil.rmtree(self.data, ignore_errors=True)
        self.data.mkdir()
        for path in source.glob("directory.inc"):
            shutil.copy(path, self.data)

    def content(self):
        return {path.name: path.read_text(encoding="utf-8") for path in self.data.iterdir()}

    def changed_list(self, name, change):
        """A copy of one of the lists, its text changed."""
        path = self.folder / f"changed-{name}"
        path.write_bytes(change((LISTS / name).read_bytes().decode("iso-8859-1")).encode("iso-8859-1"))
        return path

    def run_tool(self, *arguments, valid_from="2026-12-07"):
        return subprocess.run([ROOT / "script/refresh-directory", "--data", self.data, "--valid-from", valid_from,
                               *arguments], capture_output=True, text=True, check=False)

    def refresh(self, *arguments, **options):
        result = self.run_tool(*arguments, **options)
        self.assertEqual(result.returncode, 0, result.stderr)
        return result.stdout

    def after(self, *runs):
        self.start_from(LISTS)
        for arguments in runs:
            self.refresh(*arguments)
        return self.content()

    def test_what_each_list_changes(self):
        cases = {"all-lists": ALL_LISTS, "austria": ALL_LISTS[2:4], "iban-rules": ("--rules", LISTS / "rules.csv"),
                 "extended": ("--de", LISTS / "bank-codes-extended.txt", "--rules", LISTS / "rules.csv")}
        for name, arguments in cases.items():
            self.start_from(LISTS)
            before = self.content()
            report = self.refresh(*arguments)
            texts = (content["directory.inc"].splitlines(keepends=True) for content in (before, self.content()))
            report += "".join(difflib.unified_diff(*texts, "before", "after", n=0))
            expected = LISTS / "expected" / f"{name}.diff"
            with self.subTest(name):
                self.assertEqual(report, expected.read_text(encoding="utf-8"))

    def test_edition_order_and_earlier_runs_do_not_matter(self):
        def shuffled(text):
            lines = text.splitlines(keepends=True)
            random.Random(1).shuffle(lines)
            return "".join(lines)

        def corrected(text):
            return text.replace("50448", "50447").replace("20454", "20457")

        german = ALL_LISTS[:2]
        once = self.after(german)
        self.assertEqual(self.after(("--de", LISTS / "bank-codes.csv")), once)
        self.assertEqual(self.after(("--de", self.changed_list("bank-codes.txt", shuffled))), once)
        correction = ("--de", self.changed_list("bank-codes.txt", corrected))
        self.assertEqual(self.after(german, correction), self.after(correction))

    def test_todays_directory_as_published_changes_nothing(self):
        self.start_from(ROOT / "data")
        before, directory = self.content(), data_files.read(self.data)
        arguments = []
        for option, text in published(directory).items():
            path = self.folder / option
            path.write_text(text, encoding="iso-8859-1" if option != "--ch" else "utf-8", newline="")
            arguments += [option, path]
        printed = self.refresh(*arguments, valid_from=directory.change_date.isoformat())
        self.assertIn("Nothing has changed.", printed)
        self.assertEqual(self.content(), before)
        later = directory.change_date + datetime.timedelta(days=91)
        self.refresh(*arguments, valid_from=later.isoformat())  # what was announced then holds alone
        self.assertEqual(data_files.read(self.data).german,
                         {code: versions[-1:] for code, versions in directory.german.items()})

    def test_bad_files_change_nothing(self):
        before = self.content()
        with open(LISTS / "damages.tsv", encoding="utf-8", newline="") as file:
            rows = [line.rstrip("\n").split("\t") for line in file if not line.startswith("#")]
        self.assertEqual(len(rows), 26)
        for option, name, pattern, replacement, problem in rows:
            damaged = self.changed_list(name, lambda text: re.sub(pattern, replacement, text, count=1))
            result = self.run_tool("--force", option, damaged)
            with self.subTest(option=option, problem=problem):
                self.assertNotEqual(result.returncode, 0)
                self.assertIn(problem, result.stderr)
                self.assertNotIn("Traceback", result.stderr)
                self.assertEqual(self.content(), before)
        result = self.run_tool(*ALL_LISTS, valid_from="2026-06-07")
        self.assertIn("already announces changes for 2026-06-08", result.stderr)
        self.assertIn("more than a year ahead", self.run_tool(*ALL_LISTS, valid_from="2126-12-07").stderr)
        self.assertIn("No such file", self.run_tool("--de", "/nowhere").stderr)
        self.assertEqual(self.content(), before)

    def test_lists_that_lose_a_fifth_need_force(self):
        before = self.content()
        short = self.changed_list("reachable-banks.csv", lambda text: "".join(text.splitlines(keepends=True)[:-3]))
        result = self.run_tool("--reachable", short)  # 4 of 5 BICs
        self.assertEqual(result.returncode, 1)
        self.assertIn("BICs has", result.stderr)
        self.assertEqual(self.content(), before)
        self.refresh("--reachable", short, "--force")
        self.assertEqual(len(data_files.read(self.data).bics), 3)

    def test_library_with_the_new_data_changes_on_the_day(self):
        self.refresh(*ALL_LISTS)
        (self.folder / "main.cpp").write_text("""
            #include <cstdio>
            #include <cstdlib>
            #include <ctime>
            #include "velmora.h"
            std::time_t time(std::time_t*) { return std::atol(std::getenv("TIME")); }
            int main(int, char** codes) {
                sepa_bank_t* bank;
                while (*++codes)
                    if (sepa_bankid_check("DE", *codes, &bank) == 1)
                        std::printf("%s %s %s\\n", bank->name, bank->postcode, bank->city);
            }""", encoding="utf-8")
        sources = [ROOT / "src/bank" / name for name in ("directory.cpp", "bank_record.cpp", "bank_codes.cpp")]
        program = self.folder / "main"
        subprocess.run([os.environ.get("CXX", "c++"), "-std=c++20", "-D_GNU_SOURCE", "-I", self.folder,
                        "-I", ROOT / "src", "-I", ROOT / "include", self.folder / "main.cpp", *sources, "-o", program],
                       check=True)
        for time, postcode in (1796597999, "50447"), (1796598000, "50448"):  # midnight in Germany
            output = subprocess.run([program, "37040044", "83050000", "90090042", "50050222"], env={"TIME": str(time)},
                                    capture_output=True, text=True, check=True).stdout
            self.assertEqual(output, f"Commerzbank {postcode} Köln\nBürgerbank Würzburg 97070 Würzburg\n"
                             'Frankfurter Sparkasse 1822 "direkt" 60255 Frankfurt am Main\n')

    def test_midnight_in_germany(self):
        for day, midnight in {"2026-06-08": "2026-06-07 22", "2026-12-07": "2026-12-06 23",
                              "2026-03-29": "2026-03-28 23", "2026-03-30": "2026-03-29 22",
                              "2026-10-25": "2026-10-24 22", "2026-10-26": "2026-10-25 23"}.items():
            seconds = model.change_seconds(datetime.date.fromisoformat(day))
            self.assertEqual(str(datetime.datetime.fromtimestamp(seconds, datetime.timezone.utc)),
                             f"{midnight}:00:00+00:00")

    def test_methods_and_rules_of_the_library_are_known(self):
        used = {version.method for bank in data_files.read(ROOT / "data").german.values() for version in bank}
        self.assertLessEqual(used, summary.implemented_methods())
        self.assertNotIn(0x12, summary.implemented_methods())
        self.assertEqual(summary.implemented_rules(), set(range(58)))


if __name__ == "__main__":
    unittest.main()
