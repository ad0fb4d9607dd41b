#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Checks Qt Linguist files: every message is finished, not empty, and has the placeholders of its source text."""
import pathlib
import re
import sys
import xml.etree.ElementTree as ElementTree

PLACEHOLDER = re.compile(r"%(?:L?\d+|n)")


def faults(message: ElementTree.Element) -> list[str]:
    source = message.findtext("source") or ""
    translation = message.find("translation")
    text = "".join(translation.itertext()) if translation is not None else ""
    found = []
    if not text.strip() or translation.get("type") is not None:
        found.append("not translated")
    if sorted(PLACEHOLDER.findall(source)) != sorted(PLACEHOLDER.findall(text)):
        found.append("other placeholders than the source text")
    if text != text.strip():
        found.append("begins or ends with a blank")
    return [f"{fault}: {source!r}" for fault in found]


def main() -> int:
    failed = 0
    for name in sys.argv[1:]:
        for context in ElementTree.parse(name).getroot().iter("context"):
            for message in context.iter("message"):
                for fault in faults(message):
                    print(f"{pathlib.Path(name).name}: {context.findtext('name')}: {fault}")
                    failed += 1
    return 1 if failed else 0


sys.exit(main())
