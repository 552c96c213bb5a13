#!/usr/bin/env python3
"""Tests of the command line tool: tables of command lines (tests/data/tool/*.tsv), and what holds for any input.

    tool_test.py TOOL
"""
import codecs
import json
import os
import random
import shlex
import signal
import struct
import subprocess
import sys
import tempfile
import time
import unittest
import zipfile
from pathlib import Path

DATA = Path(__file__).resolve().parent / "data/tool"
TOOL = ""


def run(arguments, data=b"", **options):
    return subprocess.run([TOOL, *shlex.split(arguments)], input=data, stdout=subprocess.PIPE, stderr=subprocess.PIPE,
                          env=os.environ | {"TZ": "Europe/Berlin"}, timeout=120, **options)


class Program(unittest.TestCase):
    def test_needs(self):
        """The library, libc and zlib: no C++ library."""
        dynamic = subprocess.run(["readelf", "-d", TOOL], stdout=subprocess.PIPE, check=True, text=True).stdout
        if b"__asan_init" in Path(TOOL).read_bytes():
            self.skipTest("sanitizers may need it")
        needed = {line.split("[")[1].split(".so")[0] for line in dynamic.splitlines() if "(NEEDED)" in line}
        self.assertLessEqual(needed, {"libvelmora", "libc", "libz", "libgcc_s", "libm"})


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


class Rulebooks(unittest.TestCase):
    def test_limits(self):
        """What velmora rulebooks says of a key is what the library does."""
        rulebooks = [row["rulebook"] for row in json.loads(run("rulebooks --output json").stdout)]
        self.assertEqual(len(rulebooks), 11)
        tried = 0
        for rulebook in rulebooks:
            keys = json.loads(run(f"rulebooks {rulebook} --output json").stdout)
            names = [key["key"] for key in keys]
            for command, flag, more in (("pay", "credit_transfer", ""), ("collect", "direct_debit",
                                        "--creditor-id DE98ZZZ09999999999 --seq RCUR")):
                for key in keys:
                    least, dash, most = key["limit"].partition("-")
                    if not key[flag] or not dash or not most.isdigit():
                        continue
                    row = {"iban": "DE89370400440532013000", "bic": "COBADEFFXXX", "amount": "1", "name": "A"}
                    if command == "collect":
                        row |= {"mref": "M", "mdate": "2025-01-31"}
                    if "addrTown" in names and key["key"].startswith("addr"):
                        row |= {"addrTown": "Bonn", "addrCC": "DE"}
                    for length in (int(most), int(most) + 1):
                        row[key["key"]] = "A" * length
                        table = ",".join(row) + "\n" + ",".join(row.values()) + "\n"
                        result = run(f"{command} --name A --iban DE02120300000000202051 --rulebook {rulebook} {more} "
                                     "--dry-run -", table.encode())
                        self.assertEqual(result.returncode, int(length > int(most)), (rulebook, row, result.stderr))
                        if length > int(most):
                            self.assertIn(f"standard input:2: {key['key']}: ".encode(), result.stderr)
                        tried += 1
        self.assertGreater(tried, 300)


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

    @unittest.skipIf(b"__asan_init" in Path(sys.argv[1]).read_bytes(), "sanitizers take memory")
    def test_memory_is_flat(self):
        block = b"DE89370400440532013000\n" * 40_000 + b"x" * 100_000
        with subprocess.Popen([TOOL, "check", "iban", "--filter"], stdin=subprocess.PIPE,
                              stdout=subprocess.DEVNULL) as process:
            for _ in range(200):
                process.stdin.write(block)
            process.stdin.flush()
            status = Path(f"/proc/{process.pid}/status").read_text()
            process.stdin.close()
        self.assertLess(int(status.partition("VmHWM:")[2].split()[0]), 20_000, status)

    def test_rows_with_quoted_line_ends(self):
        rows = [f'{i},"line {i}\n""quoted"" {"x" * self.random.randint(0, 60)}",DE89370400440532013000\n'
                for i in range(60_000)]
        table = Path(self.folder.name) / "table.csv"
        table.write_text("id,text,iban\n" + "".join(rows))
        one = run(f"check iban --column IBAN {table}")
        self.assertEqual(one.returncode, 0, one.stderr)
        self.assertEqual(one.stdout.count(b",true,"), len(rows))
        for form in ("csv", "tsv", "table", "json", "jsonl", "code"):
            command = f"check iban --column IBAN {table} --output {form} --jobs"
            self.assertEqual(run(f"{command} 1").stdout, run(f"{command} 4").stdout, form)
        for cut in (b'"open\n', b'1,"a" b,c\n'):
            damaged = Path(self.folder.name) / "damaged.csv"
            damaged.write_bytes(table.read_bytes() + cut + b"1,2,3\n" * 300_000)
            one, four = (run(f"check iban --column 3 {damaged} --jobs {jobs}") for jobs in (1, 4))
            self.assertEqual((one.returncode, one.stdout, one.stderr), (four.returncode, four.stdout, four.stderr))
            self.assertEqual(one.returncode, 3)


class AnyBytes(unittest.TestCase):
    """Damaged input of every kind: one of the promised ends, and JSON that is some."""
    OWN = "--name A --iban DE02120300000000202051"
    BASES = (
        (f"pay {OWN} --dry-run --errors json -", 'name;iban;amount;ref\nA;DE89370400440532013000;1,50;"x ""y"""\n'),
        (f"collect {OWN} --creditor-id DE98ZZZ09999999999 --seq RCUR --skip-invalid --errors json --input tsv -",
         "name\tiban\tamount\tmref\tmdate\nA\tDE89370400440532013000\t1.50\tM\t2024-01-01\n"),
        ("check iban --column iban --input csv --output json -", 'id,iban\n1,DE89370400440532013000\n"2\n",x\n'),
        ("check iban --filter --encoding UTF-16 --output jsonl", "DE89370400440532013000\nabc\n"),
        ("statement --output json --pending --plot /dev/null -", (DATA / "pages.xml").read_text()),
        ("statement --merge-pages --check --output jsonl -", (DATA.parents[2] / "examples/statement.mt940").read_text()),
        ("report --output jsonl -", (DATA.parent / "reports/partly.xml").read_text()),
    )

    def test_ends_and_json(self):
        chance = random.Random(7)
        for number in range(700):
            arguments, text = self.BASES[number % len(self.BASES)]
            data = bytearray(text.encode("utf-16" if "UTF-16" in arguments else "utf-8"))
            for _ in range(chance.randint(0, 5)):
                place = chance.randrange(len(data))
                if chance.random() < .4:
                    data[place] = chance.randrange(256)
                else:
                    data[place:place + chance.randint(0, 20)] = bytes(chance.choices(b'\n\r\t";,\0\\<>&x9\xc3\xff',
                                                                                   k=chance.randint(1, 4)))
            result = run(arguments, bytes(data))
            # A table without the column that was asked for is the caller's mistake.
            ends = (0, 1, 2, 3) if "--column" in arguments else (0, 1, 3)
            self.assertIn(result.returncode, ends, (arguments, data, result.stderr))
            if "--output json " in arguments and result.returncode < 2:
                json.loads(result.stdout)
            for line in result.stdout.splitlines() if "jsonl" in arguments else ():
                json.loads(line)
            for line in result.stderr.splitlines() if "--errors json" in arguments else ():
                json.loads(line)


class Archives(unittest.TestCase):
    """ZIP files of statements: read in the order of their names, and refused when they mean harm."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.path = Path(self.folder.name) / "c53.zip"
        self.statement = (DATA / "pages.xml").read_bytes()

    def pack(self, members, **options):
        with zipfile.ZipFile(self.path, "w", zipfile.ZIP_DEFLATED, **options) as archive:
            for name, content in members:
                archive.writestr(name, content)
        return bytearray(self.path.read_bytes())

    def read(self, data):
        self.path.write_bytes(data)
        result = run(f"statement --check --no-header {self.path}")
        self.assertIn(result.returncode, (0, 1, 3), result.stderr)
        return result

    def test_order_and_names(self):
        other = self.statement.replace(b"DE02120300000000202051", b"DE16701900000376033458")
        result = self.read(self.pack([("b.xml", self.statement), ("folder/", b""), ("../../a.xml", other),
                                      ("__MACOSX/._b.xml", b"x")]))
        self.assertEqual([line[:4] for line in result.stdout.splitlines()], [b"DE16"] * 2 + [b"DE02"] * 2)
        self.assertEqual(os.listdir(self.folder.name), ["c53.zip"])
        self.assertEqual(self.read(self.pack([("stored.xml", self.statement)], compresslevel=0)).returncode, 0)

    def test_refusals(self):
        one = self.pack([("a.xml", self.statement)])
        record, end = one.index(b"PK\1\2"), one.index(b"PK\5\6")

        def changed(at, content):
            return one[:at] + content + one[at + len(content):]

        zero, two = (0).to_bytes(4, "little"), struct.pack("<I", 3 << 30)
        for data, text in ((changed(record + 8, b"\1"), "encrypted"), (changed(record + 10, b"\x0c"), "only deflate"),
                           (changed(record + 16, zero), "checksum"), (changed(record + 24, two), "larger than 2 GiB"),
                           (changed(record + 24, b"\1"), "damaged"), (changed(record + 42, b"\1"), "damaged"),
                           (changed(end + 10, b"\xff\xff"), "ZIP64"), (changed(end + 10, b"\2"), "several parts"),
                           (changed(end + 8, b"\x11\x27\x11\x27"), "10,000"),
                           (one[:-1], "list of members is missing"),
                           (self.pack([("bomb.xml", bytes(30 << 20))]), "1,000 times"),
                           (self.pack([("a.zip", bytes(one))]), "inside of a ZIP")):
            with self.subTest(text=text):
                result = self.read(data)
                self.assertEqual((result.returncode, result.stdout), (3, b""))
                self.assertIn(text, result.stderr.decode())
        # Two members that share one content.
        twice = one[:end] + one[record:end] + one[end:]
        twice[-12:-8], twice[-14:-10] = struct.pack("<I", 2 * (end - record)), b"\2\0\2\0"
        twice[-10:-6] = struct.pack("<I", 2 * (end - record))
        self.assertIn("overlap", self.read(twice).stderr.decode())

    def test_damage(self):
        one = self.pack([("a.xml", self.statement), ("b.xml", self.statement)])
        chance = random.Random(5)
        for _ in range(300):
            data = bytearray(one)
            for _ in range(chance.randint(1, 3)):
                data[chance.randrange(len(data))] = chance.randrange(256)
            self.read(data[:chance.choice([len(data)] * 3 + [chance.randrange(4, len(data))])])


class WrittenFiles(unittest.TestCase):
    """Whatever ends the program, a file is there whole or not at all."""

    def setUp(self):
        self.folder = tempfile.TemporaryDirectory()
        self.addCleanup(self.folder.cleanup)
        self.out = Path(self.folder.name) / "out"
        self.out.mkdir()
        self.payments = Path(self.folder.name) / "payments.csv"
        self.payments.write_text("iban,amount,name,id\n" + "".join(
            f"DE89370400440532013000,{i // 100}.{i % 100:02},Anna Beispiel,ID-{i}\n" for i in range(100, 30_100)))
        self.command = [TOOL, "pay", "--name", "Muster", "--iban", "DE02120300000000202051", "--id", "M", "--no-progress",
                        "--out", str(self.out / "pay.xml"), str(self.payments)]

    def files(self):
        return {path.name: path.read_text() for path in self.out.iterdir()}

    def test_kill(self):
        begin = time.monotonic()
        subprocess.run(self.command, check=True, capture_output=True)
        duration = time.monotonic() - begin
        whole = self.files()["pay.xml"]
        self.assertEqual(whole.count("<CdtTrfTxInf>"), 30_000)
        (self.out / "pay.xml").unlink()
        chance = random.Random(1)
        for number in range(40):
            with subprocess.Popen(self.command, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL) as process:
                time.sleep(duration * chance.uniform(0.5, 1.1))
                process.send_signal(chance.choice([signal.SIGKILL, signal.SIGTERM, signal.SIGINT]))
            for name, text in self.files().items():
                self.assertEqual((name, len(text), text.endswith("</Document>\n")), ("pay.xml", len(whole), True), number)

    def test_several_files_and_what_was_there(self):
        existing = self.out / "pay.xml"
        existing.write_text("before")
        existing.chmod(0o640)
        subprocess.run([*self.command, "--max-payments", "12000"], check=True, capture_output=True)
        files = self.files()
        self.assertEqual(sorted(files), ["pay-2.xml", "pay-3.xml", "pay.xml"])
        self.assertEqual([files[name].count("<CdtTrfTxInf>") for name in sorted(files)], [12000, 6000, 12000])
        self.assertIn("<MsgId>M-2</MsgId>", files["pay-2.xml"])
        self.assertEqual(existing.stat().st_mode & 0o777, 0o640)
        self.payments.write_text("iban,amount\nDE89,1\n")
        self.assertEqual(subprocess.run(self.command, capture_output=True).returncode, 1)
        self.assertEqual(self.files(), files)
        with open("/dev/full", "w") as full:
            self.assertEqual(subprocess.run([TOOL, "help"], stdout=full, stderr=subprocess.DEVNULL).returncode, 4)


if __name__ == "__main__":
    TOOL = os.path.abspath(sys.argv.pop(1))
    unittest.main(verbosity=2)
