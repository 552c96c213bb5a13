#!/usr/bin/env python3
"""Tests of the command line tool: tables of command lines (tests/data/tool/*.tsv), and what holds for any input.

    tool_test.py TOOL
"""
import codecs
import os
import random
import shlex
import subprocess
import sys
import tempfile
import unittest
from pathlib import Path

DATA = Path(__file__).resolve().parent / "data/tool"
TOOL = ""


def run(arguments, data=b"", **options):
    return subprocess.run([TOOL, *shlex.split(arguments)], input=data, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          env=os.environ | {"TZ": "Europe/Berlin"}, timeout=120, **options)


class Tables(unittest.TestCase):
    def test_command_lines(self):
        for table in sorted(DATA.glob("*.tsv")):
            for number, line in enumerate(table.read_bytes().splitlines(), 1):
                if line.startswith(b"#") or not line:
                    continue
                fields = [codecs.escape_decode(field)[0] for field in line.split(b"\t")]
                arguments, data, code, output, errors = fields
                with self.subTest(table=table.name, line=number, arguments=arguments.decode()):
                    result = run(arguments.decode(), data, cwd=DATA)
                    self.assertEqual((result.stdout.decode(), result.stderr.decode(), result.returncode),
                                     (output.decode(), errors.decode(), int(code)))


class Filters(unittest.TestCase):
    """As many lines as came in, whatever they hold; several processes say what one says."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.random = random.Random(20261121)
        pieces = [b"DE89370400440532013000", b"AT611904300234573201", b"\t", b"/", b"\r", b"\0", b"\\", b"\\N", b'"',
                  b"a" * 70_000, b"37040044/532013000", b"13\t532013000", b"\xff\xfe", "Köln".encode(), b""]
        self.lines = [b"".join(self.random.choices(pieces, [9, 2, 1, 1, 1, 1, 1, 1, 1, .05, 5, 5, 1, 1, 3],
                                                   k=self.random.choice([1, 1, 1, 2, 3]))) for _ in range(100_000)]
        self.path = Path(self.folder.name) / "lines"
        self.path.write_bytes(b"\n".join(self.lines))

    def test_line_for_line(self):
        for what in ("check iban", "check bic", "check account", "check reference", "check creditor", "convert", "bank",
                     "methods"):
            for form in ("tsv", "csv", "jsonl", "code", "tsv --escape", "tsv --mask"):
                with self.subTest(what=what, form=form):
                    command = f"{what} --filter --output {form} {self.path}"
                    one = run(command)
                    self.assertLessEqual(one.returncode, 1, one.stderr)
                    self.assertEqual(one.stdout.count(b"\n"), len(self.lines))
                    self.assertEqual(one.stdout, run(command + " --jobs 3").stdout)

    def test_answers_before_the_input_ends(self):
        with subprocess.Popen([TOOL, "check", "iban", "--filter", "--output", "code"], stdin=subprocess.PIPE,
                              stdout=subprocess.PIPE) as process:
            for line in (b"DE89370400440532013000\n", b"DE89370400440532013001\n"):
                process.stdin.write(line)
                process.stdin.flush()
                self.assertRegex(process.stdout.readline(), rb"^\d+\n$")

    def test_rows_with_quoted_line_ends(self):
        rows = [f'{i},"line {i}\n""quoted"" {"x" * self.random.randint(0, 60)}",DE89370400440532013000\n'
                for i in range(60_000)]
        table = Path(self.folder.name) / "table.csv"
        table.write_text("id,text,iban\n" + "".join(rows))
        one = run(f"check iban --column IBAN {table}")
        self.assertEqual(one.returncode, 0, one.stderr)
        self.assertEqual(one.stdout.count(b",true,"), len(rows))
        self.assertEqual(one.stdout, run(f"check iban --column IBAN {table} --jobs 4").stdout)
        for cut in (b'"open\n', b'1,"a" b,c\n'):
            damaged = Path(self.folder.name) / "damaged.csv"
            damaged.write_bytes(table.read_bytes() + cut + b"1,2,3\n" * 300_000)
            one, four = (run(f"check iban --column 3 {damaged} --jobs {jobs}") for jobs in (1, 4))
            self.assertEqual((one.returncode, one.stdout, one.stderr), (four.returncode, four.stdout, four.stderr))
            self.assertEqual(one.returncode, 3)


if __name__ == "__main__":
    TOOL = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=2)
