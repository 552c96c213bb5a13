#!/usr/bin/env python3
"""Measures the command line tool beside a bare loop around the library.

    tool_bench.py TOOL BARE_FILTER

Processor time is what the process and its children used; the others are by the clock. Medians of five runs, in which
the programs take turns.
"""
import random
import resource
import statistics
import subprocess
import sys
import tempfile
import time
from pathlib import Path

TOOL, BARE = sys.argv[1:]
RUNS, LINES, PAYMENTS = 5, 1_000_000, 100_000
OWN = ["--name", "Muster GmbH", "--iban", "DE02120300000000202051"]


def measure(command, path):
    before, began = resource.getrusage(resource.RUSAGE_CHILDREN), time.perf_counter()
    with open(path, "rb") as data:
        subprocess.run(command, stdin=data, stdout=subprocess.DEVNULL, stderr=subprocess.DEVNULL)
    elapsed, after = time.perf_counter() - began, resource.getrusage(resource.RUSAGE_CHILDREN)
    return elapsed, after.ru_utime + after.ru_stime - before.ru_utime - before.ru_stime


def medians(commands, path):
    runs = [[measure(command, path) for command in commands] for _ in range(RUNS)]
    return [[statistics.median(run[i][j] for run in runs) for j in range(2)] for i in range(len(commands))]


def write_ibans(path):
    """IBANs of all banks, one in twenty with a wrong digit."""
    chance = random.Random(1)
    banks = subprocess.run([TOOL, "bank", "--search", "", "--country", "DE", "--fields", "code", "--no-header"],
                           stdout=subprocess.PIPE, check=True, text=True).stdout.split()
    accounts = "".join(f"{chance.choice(banks)}\t{chance.randrange(10**10)}\n" for _ in range(4 * LINES))
    built = subprocess.run([TOOL, "convert", "--filter", "--fields", "iban"], input=accounts, stdout=subprocess.PIPE,
                           text=True).stdout.split()
    codes = subprocess.run([TOOL, "check", "iban", "--filter", "--output", "code"], input="\n".join(built) + "\n",
                           stdout=subprocess.PIPE, text=True).stdout.split()
    built = [iban for iban, code in zip(built, codes) if code in ("0", "15")][:LINES]
    for i in range(0, len(built), 20):
        place = chance.randrange(4, 22)
        built[i] = built[i][:place] + str((int(built[i][place]) + 1) % 10) + built[i][place + 1:]
    path.write_text("\n".join(built) + "\n")
    return len(built), built


def main():
    with tempfile.TemporaryDirectory() as folder:
        lines, payments = Path(folder) / "ibans.txt", Path(folder) / "payments.csv"
        count, ibans = write_ibans(lines)
        valid = subprocess.run([TOOL, "check", "iban", "--filter", "--output", "code"], stdin=lines.open(),
                               stdout=subprocess.PIPE, text=True).stdout.split()
        check = [TOOL, "check", "iban", "--filter"]
        print(f"Command line tool: {count:,} IBANs, {sum(code in ('0', '15') for code in valid):,} of them valid")
        bare, code, bare_columns, full, two = medians([[BARE], check + ["--output", "code"], [BARE, "columns"], check,
                                                       check + ["--jobs", "2", "-"]], lines)
        for name, (elapsed, cpu), peer in (("bare loop", bare, bare), ("--filter --output code", code, bare),
                                           ("bare loop, all columns", bare_columns, bare_columns),
                                           ("--filter", full, bare_columns), ("--filter --jobs 2", two, bare_columns)):
            print(f"{name:30} {count / elapsed / 1e6:6.2f} million lines/s, {cpu / count * 1e9:5.0f} ns of processor time, "
                  f"{peer[1] / cpu:.2f} of the bare loop")

        rows = [iban for iban, code in zip(ibans, valid) if code in ("0", "15")][:PAYMENTS]
        payments.write_text("iban;amount;name;id;ref\n" + "".join(
            f"{iban};{i // 100 + 1},{i % 100:02};Anna Beispiel;ID-{i};Rechnung {i}, danke\n" for i, iban in enumerate(rows)))
        out = str(Path(folder) / "pay.xml")
        for name, options in (("pay --dry-run", ["--dry-run"]), ("pay --out", ["--out", out])):
            (elapsed, cpu), = medians([[TOOL, "pay", *OWN, *options, str(payments)]], payments)
            print(f"{name:30} {elapsed:6.2f} s, {cpu:.2f} s of processor time for {len(rows):,} payments")

        starts = []
        for _ in range(200):
            began = time.perf_counter()
            subprocess.run([TOOL, "bank", "37040044"], stdout=subprocess.DEVNULL)
            starts.append(time.perf_counter() - began)
        print(f"{'bank 37040044':30} {statistics.median(starts) * 1000:6.2f} ms, the start of a process included")


if __name__ == "__main__":
    main()
