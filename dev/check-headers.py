#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Compiles each header named on standard input by itself, with the flags of its source file, or of one nearby."""
import concurrent.futures
import json
import os
import pathlib
import shlex
import subprocess
import sys


def flags_of(entry: dict) -> list[str]:
    """The compiler call without its launcher, output and input."""
    words = shlex.split(entry["command"])
    compiler = next(i for i, word in enumerate(words) if "++" in os.path.basename(word))
    kept, skip = [], False
    for word in words[compiler:]:
        if skip:
            skip = False
        elif word in ("-o", "-c", "-MF", "-MT"):
            skip = word != "-c"
        elif word != entry["file"] and word != "-MD":
            kept.append(word)
    return kept


def nearest_entry(header: pathlib.Path, entries: list[dict]) -> dict:
    def nearness(entry: dict) -> tuple[int, bool]:
        file = pathlib.Path(entry["file"])
        return len(os.path.commonpath([str(header.resolve()), str(file)])), file.stem == header.stem
    return max(entries, key=nearness)


def compile_alone(header: pathlib.Path, entries: list[dict]) -> str:
    entry = nearest_entry(header, entries)
    call = flags_of(entry) + ["-fsyntax-only", "-x", "c++", "-"]
    result = subprocess.run(call, cwd=entry["directory"], input=f'#include "{header.resolve()}"\n',
                            capture_output=True, text=True, check=False)
    return result.stderr if result.returncode != 0 else ""


def main() -> int:
    entries = [e for e in json.loads(pathlib.Path(sys.argv[1]).read_text()) if e["file"].endswith(".cpp")
               and "_autogen" not in e["file"]]
    headers = [pathlib.Path(line.strip()) for line in sys.stdin if line.strip()]
    failed = 0
    with concurrent.futures.ThreadPoolExecutor(os.cpu_count()) as pool:
        for header, text in zip(headers, pool.map(lambda h: compile_alone(h, entries), headers)):
            if text:
                print(f"{header} does not compile by itself:\n{text}")
                failed += 1
    return 1 if failed else 0


sys.exit(main())
