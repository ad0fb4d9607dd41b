#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Holds which folder may include which: a source file includes project headers only from the folders listed here."""
import pathlib
import re
import sys

ALLOWED = {
    "src/utils/core": [],
    "src/platform/udisks": [],
    "src/platform/velk": [],
    "src/utils": ["src/utils/core", "src/platform/udisks"],
    "src/utils/widget": ["src/utils", "src/utils/core", "src/platform/velk"],
    "src/gui/tasks": ["src/utils", "src/utils/core", "src/platform/udisks"],
    "src/gui/widgets": ["src/gui/tasks", "src/utils/widget", "src/utils", "src/utils/core", "src/platform/velk"],
    "src/gui": ["src/gui/widgets", "src/gui/tasks", "src/utils/widget", "src/utils", "src/utils/core",
                "src/platform/velk"],
    "src/clone": [],
}

INCLUDE = re.compile(r'^\s*#\s*include\s+"([^"]+)"')


def layer_of(folder: str) -> str | None:
    """The longest listed folder that holds the given one."""
    while folder:
        if folder in ALLOWED:
            return folder
        folder = str(pathlib.PurePosixPath(folder).parent)
        if folder == ".":
            return None
    return None


def included_file(source: pathlib.Path, name: str) -> pathlib.Path | None:
    for candidate in (source.parent / name, pathlib.Path("src") / name):
        if candidate.is_file():
            return candidate
    return None


def main() -> int:
    errors = 0
    for source in sorted(p for p in pathlib.Path("src").rglob("*") if p.suffix in (".cpp", ".h")):
        own = layer_of(str(source.parent))
        if own is None:
            print(f"{source}: its folder is in no layer")
            errors += 1
            continue
        for number, line in enumerate(source.read_text(encoding="utf-8").splitlines(), 1):
            match = INCLUDE.match(line)
            header = included_file(source, match[1]) if match else None
            if header is None:
                continue
            other = layer_of(str(header.parent))
            if other != own and other not in ALLOWED[own]:
                print(f"{source}:{number}: {own} must not include {header}")
                errors += 1
    return 1 if errors else 0


sys.exit(main())
