#!/usr/bin/env python3
"""Runs the code blocks of documents, so that none can rot.

    run_blocks.py --php PHP [--installed BUILD_DIR] DOCUMENT.md...

The blocks run one after the other at the root of a copy of the project. With --installed it is as on a machine where
the library and the extension are; without, a block of the documents builds them. ```c is compiled without a warning and run, ```php and ```sh are run, ```cmake is taken as the
CMakeLists.txt of a project and built. A block whose first line is a comment with a file name is kept under that name
for the blocks after it. A ```text or ```xml block is what the block before it prints; "..." in it stands for anything,
on a line of its own for any number of lines. Anything else is an error, and so is a block that fails.
"""

import argparse
import os
import re
import shutil
import subprocess
import sys
import tempfile
from pathlib import Path

SOURCE = Path(__file__).resolve().parents[2]
OUTPUT_LANGUAGES = ("text", "xml")
FILE_NAME = re.compile(r"(?:/\*|//|#)\s*([\w.-]+\.(?:c|php|sh))\b")

# What is not run from here, but has to be there.
NOT_RUN = {"script/test": "runs this very test", "script/bench": "takes minutes", "script/fuzz": "takes minutes",
           "script/matrix": "takes an hour"}

# What a document may install on the machine. If it is there already, the document is skipped.
PACKAGES = ("php-sepa", "velmora", "libvelmora-dev", "libvelmora2")
SKIPPED = 77


class Block:
    def __init__(self, language, line):
        self.language, self.line, self.lines = language, line, []

    @property
    def text(self):
        return "".join(self.lines)


def read_blocks(document):
    blocks, block = [], None
    for number, line in enumerate(document.read_text().splitlines(keepends=True), 1):
        fence = re.match(r"( *)```(\w*)\s*$", line)
        if not fence:
            if block:
                block.lines.append(line.removeprefix(block.indent))
        elif block:
            blocks.append(block)
            block = None
        else:
            block = Block(fence[2], number)
            block.indent = fence[1]
    if block:
        sys.exit(f"{document}:{block.line}: block without an end")
    return blocks


def output_pattern(text):
    """A regular expression for an expected output, in which "..." stands for anything."""
    pattern = ""
    for line in text.splitlines(keepends=True):
        if line.strip() == "...":
            pattern += r"(?:.*\n)*?"
        else:
            pattern += ".*?".join(re.escape(part) for part in line.split("..."))
    return re.compile(pattern)


class Machine:
    """A copy of the project, and an environment in which a build of it is installed or only built."""

    def __init__(self, folder, php):
        self.folder, self.tree = folder, folder / "tree"
        copy_project(self.tree)
        self.php = [php, "-n", "-d", f"extension={self.tree}/build/libvelmora.so"]
        self.c_flags = [f"-I{self.tree}/include", f"-L{self.tree}/build", f"-Wl,-rpath,{self.tree}/build"]
        tools = folder / "bin"
        tools.mkdir()
        self.environment = os.environ | {"CMAKE_GENERATOR": "Ninja", "HOME": str(folder), "LC_ALL": "C.UTF-8",
                                         "MAKEFLAGS": f"-j{os.cpu_count()}",
                                         "PATH": f"{tools}:{os.environ['PATH']}"}
        if os.geteuid() == 0:
            (tools / "sudo").write_text('#!/bin/sh\nexec "$@"\n')
            (tools / "sudo").chmod(0o755)

    def install(self, build):
        prefix = self.folder / "prefix"
        subprocess.run(["cmake", "--install", build, "--prefix", prefix], check=True, stdout=subprocess.DEVNULL)
        library_dir = next(prefix.glob("lib*/**/libvelmora.so")).parent
        self.php, self.c_flags = self.php[:1], []
        self.environment |= {
            "CMAKE_PREFIX_PATH": str(prefix),
            "CPATH": str(prefix / "include"),
            "LD_LIBRARY_PATH": str(library_dir),
            "LIBRARY_PATH": str(library_dir),
            "PATH": f"{prefix}/bin:{self.environment['PATH']}",
            "PHP_INI_SCAN_DIR": f":{next(prefix.rglob('*sepa.ini')).parent}",
            "PKG_CONFIG_PATH": str(library_dir / "pkgconfig"),
        }

    def run(self, *command):
        return subprocess.run([str(word) for word in command], cwd=self.tree, env=self.environment, text=True,
                              stdin=subprocess.DEVNULL, stdout=subprocess.PIPE, stderr=subprocess.STDOUT)


def copy_project(target):
    shutil.copytree(SOURCE, target, ignore=shutil.ignore_patterns(".git", "build*", "__pycache__"))
    schemas = SOURCE / "build/schemas"  # so that script/demo needs no network
    if schemas.is_dir():
        shutil.copytree(schemas, target / "build/schemas")


def run_c(machine, path):
    program = path.with_suffix("")
    result = machine.run(os.environ.get("CC", "cc"), "-std=c11", "-Wall", "-Wextra", "-pedantic", "-Werror",
                         "-D_POSIX_C_SOURCE=200809L", path, "-o", program, *machine.c_flags, "-lvelmora", "-pthread")
    return machine.run(program) if result.returncode == 0 else result


def run_php(machine, path):
    return machine.run(*machine.php, path)


def run_sh(machine, path):
    text = path.read_text()
    if "sudo " in text and os.geteuid() != 0:
        print("  SKIPPED: only root may do this")
        return None
    kept = []
    for line in text.splitlines(keepends=True):
        command = line.partition(" ")[0].strip()
        if command in NOT_RUN:
            if not os.access(SOURCE / command, os.X_OK):
                sys.exit(f"there is no {command}")
            print(f"  not run: {command} ({NOT_RUN[command]})")
        else:
            kept.append(line)
    path.write_text("".join(kept))
    return machine.run("bash", "-euo", "pipefail", path)


def run_cmake(machine, path):
    (machine.tree / "project").mkdir(exist_ok=True)
    path.rename(machine.tree / "project/CMakeLists.txt")
    for source in machine.tree.glob("*.c"):
        shutil.copy(source, machine.tree / "project")
    result = machine.run("cmake", "-S", "project", "-B", "project/build")
    return machine.run("cmake", "--build", "project/build") if result.returncode == 0 else result


RUNNERS = {"c": run_c, "php": run_php, "sh": run_sh, "cmake": run_cmake}


def run_block(machine, document, block):
    """Runs a block; the result is null when it was skipped."""
    named = FILE_NAME.search("".join(block.lines[:2]))
    path = machine.tree / (named[1] if named else f"block{block.line}.{block.language}")
    path.write_text(block.text)
    result = RUNNERS[block.language](machine, path)
    if result is not None and result.returncode != 0:
        sys.exit(f"{document}:{block.line}: ends with {result.returncode}\n{result.stdout}")
    return result


def main():
    parser = argparse.ArgumentParser()
    parser.add_argument("--php", required=True)
    parser.add_argument("--installed", type=Path, metavar="BUILD_DIR")
    parser.add_argument("documents", type=Path, nargs="+")
    arguments = parser.parse_args()

    blocks = {document: read_blocks(document) for document in arguments.documents}
    installs = any("sudo apt-get" in block.text for some in blocks.values() for block in some)
    if installs and any(is_package_installed(package) for package in PACKAGES):
        print("SKIPPED: the packages are installed")
        sys.exit(SKIPPED)
    try:
        with tempfile.TemporaryDirectory() as folder:
            os.chmod(folder, 0o755)  # servers of other users read there
            machine = Machine(Path(folder), arguments.php)
            if arguments.installed:
                machine.install(arguments.installed)
            for document, some in blocks.items():
                run_document(machine, document, some)
    finally:
        for package in PACKAGES:
            if installs and is_package_installed(package):
                subprocess.run(["dpkg", "--purge", package])


def is_package_installed(package):
    return subprocess.run(["dpkg-query", "--show", package], capture_output=True).returncode == 0


def run_document(machine, document, blocks):
    result, previous = None, None
    for block in blocks:
        print(f"{document.name}:{block.line}: {block.language}", flush=True)
        if block.language in RUNNERS:
            result, previous = run_block(machine, document, block), block
        elif block.language in OUTPUT_LANGUAGES and previous:
            if result is not None and not output_pattern(block.text).fullmatch(result.stdout):
                sys.exit(f"{document}:{block.line}: the block of line {previous.line} prints\n{result.stdout}")
            previous = None
        else:
            sys.exit(f"{document}:{block.line}: what is this block, '{block.language}'?")


if __name__ == "__main__":
    main()
