# SPDX-License-Identifier: GPL-3.0-or-later
"""File by file comparison of two trees: content, mode, owner, times, extended attributes, ACLs, links, sparse holes.

A tree is taken down as a manifest (path -> facts), so that it can be compared with what is there later.
"""
import collections
import hashlib
import os
import stat

KINDS = {stat.S_IFREG: "file", stat.S_IFDIR: "directory", stat.S_IFLNK: "link", stat.S_IFIFO: "pipe",
         stat.S_IFSOCK: "socket", stat.S_IFBLK: "block device", stat.S_IFCHR: "character device"}


def manifest(root) -> dict[str, dict]:
    """The facts of every entry under ROOT, itself included as "."; names that are no UTF-8 are escaped."""
    entries, names_of_inode = {}, collections.defaultdict(list)
    for path, name in walk(os.fspath(root)):
        status = os.lstat(path)
        entries[name] = facts(path, status)
        if not stat.S_ISDIR(status.st_mode) and status.st_nlink > 1:
            names_of_inode[status.st_ino].append(name)
    for names in names_of_inode.values():
        for name in names:
            entries[name]["names of the same file"] = sorted(names)
    return entries


def walk(root: str):
    """Pairs (path, name below ROOT), ROOT first."""
    yield root, "."
    for folder, directories, files in os.walk(root, onerror=raise_error):
        for name in directories + files:
            path = os.path.join(folder, name)
            yield path, os.path.relpath(path, root)


def raise_error(error: OSError):
    raise error


def facts(path: str, status: os.stat_result) -> dict:
    kind = KINDS[stat.S_IFMT(status.st_mode)]
    entry = {"kind": kind, "mode": oct(stat.S_IMODE(status.st_mode)), "owner": f"{status.st_uid}:{status.st_gid}",
             "modified": status.st_mtime_ns,
             "attributes": {name: os.getxattr(path, name, follow_symlinks=False).hex()
                            for name in sorted(os.listxattr(path, follow_symlinks=False))}}
    if kind == "file":
        entry |= {"size": status.st_size, "content": checksum(path), "holes": has_holes(path, status.st_size)}
    elif kind == "link":
        entry["target"] = os.readlink(path)
    elif kind.endswith("device"):
        entry["device"] = f"{os.major(status.st_rdev)}:{os.minor(status.st_rdev)}"
    return entry


def checksum(path: str) -> str:
    with open(path, "rb") as file:
        return hashlib.file_digest(file, "sha256").hexdigest()


def has_holes(path: str, size: int) -> bool:
    with open(path, "rb") as file:
        return size > 0 and os.lseek(file.fileno(), 0, os.SEEK_HOLE) < size


def differences(expected: dict, actual: dict, ignored=lambda name, fact: False) -> list[str]:
    """One line for each entry that is missing or too much and for each fact that differs.

    IGNORED(name, fact) tells what need not be equal.
    """
    lines = [f"{name!r} is missing" for name in sorted(expected.keys() - actual.keys())]
    lines += [f"{name!r} should not be there" for name in sorted(actual.keys() - expected.keys())]
    for name in sorted(expected.keys() & actual.keys()):
        for fact in expected[name].keys() | actual[name].keys():
            wanted, found = expected[name].get(fact), actual[name].get(fact)
            if wanted != found and not ignored(name, fact):
                lines.append(f"{name!r}: {fact} is {found!r} instead of {wanted!r}")
    return lines


def subtree(entries: dict, folder: str) -> dict:
    """The part of a manifest that lies in FOLDER, itself as "."."""
    def below(name):
        return os.path.relpath(name, folder)

    picked = {below(name): dict(entry) for name, entry in entries.items()
              if name == folder or name.startswith(folder + "/")}
    for entry in picked.values():
        if "names of the same file" in entry:
            entry["names of the same file"] = sorted(map(below, entry["names of the same file"]))
    return picked
