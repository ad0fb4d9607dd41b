# SPDX-License-Identifier: GPL-3.0-or-later
"""What is built once and kept under build/vm/cache, in folders named by what it was built from."""
import contextlib
import fcntl
import hashlib
import os
import pathlib
import re
import shutil
import time

from kestrolab.process import run

PROJECT = pathlib.Path(__file__).resolve().parents[2]
WORK = PROJECT / "build/vm"
CACHE = WORK / "cache"
LOCKS = WORK / "locks"


def digest(*parts) -> str:
    """A short name for the values of PARTS; the content counts where a part is a path."""
    total = hashlib.sha256()
    for part in parts:
        total.update((checksum(part) if isinstance(part, pathlib.Path) else str(part)).encode() + b"\0")
    return total.hexdigest()[:12]


def checksum(file: pathlib.Path) -> str:
    with open(file, "rb") as content:
        return hashlib.file_digest(content, "sha256").hexdigest()


def sources(*names: str) -> list[pathlib.Path]:
    """The files below these names of the project that belong to it, also those that are not committed yet."""
    listed = run("git", "-C", PROJECT, "ls-files", "-z", "-co", "--exclude-standard", "--", *names).stdout
    return [path for path in (PROJECT / name for name in sorted(filter(None, listed.split("\0")))) if path.exists()]


def stage(name: str, key: str, build) -> pathlib.Path:
    """The folder that BUILD(folder) filled, now or earlier; older ones of the same name go. It appears whole or not at all.

    Of two runs that want the same one, the second waits for the first.
    """
    done = CACHE / f"{name}-{key}"
    if not done.exists():
        with alone(name):
            make(name, done, build)
    return done


@contextlib.contextmanager
def alone(name: str):
    LOCKS.mkdir(parents=True, exist_ok=True)
    with open(LOCKS / name, "w", encoding="utf-8") as lock:
        fcntl.flock(lock, fcntl.LOCK_EX)
        yield


def make(name: str, done: pathlib.Path, build):
    if not done.exists():
        begun = time.monotonic()
        print(f"building {name} …", flush=True)
        draft = done.with_name(f"{name}-draft-{os.getpid()}")
        shutil.rmtree(draft, ignore_errors=True)
        draft.mkdir(parents=True)
        try:
            build(draft)
            for old in done.parent.iterdir():
                if re.fullmatch(f"{re.escape(name)}-[0-9a-f]+", old.name):
                    shutil.rmtree(old)
            draft.rename(done)
        finally:
            shutil.rmtree(draft, ignore_errors=True)
        print(f"built {name} in {time.monotonic() - begun:.0f} s", flush=True)
