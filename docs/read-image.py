#!/usr/bin/env python3
# SPDX-License-Identifier: GPL-3.0-or-later
"""Reads an image of kestro-clone with nothing but Python's standard library and the program zstd.

    read-image.py info IMAGE             what it holds
    read-image.py files IMAGE FOLDER     its custom files
    read-image.py extract IMAGE FILE     the source, as a file with holes where nothing was in use

Every hash is checked. This is slow, and meant to be: each line shows what docs/image-format.md says.
"""
import json
import os
import struct
import subprocess
import sys

BLOCK = 4096
MASK = (1 << 64) - 1
PRIME32 = (0x9E3779B1, 0x85EBCA77, 0xC2B2AE3D)
PRIME64 = (0x9E3779B185EBCA87, 0xC2B2AE3D27D4EB4F, 0x165667B19E3779F9, 0x85EBCA77C2B2AE63, 0x27D4EB2F165667C5)
SECRET = bytes.fromhex(
    "b8fe6c3923a44bbe7c01812cf721ad1c"
    "ded46de9839097db7240a4a4b7b3671f"
    "cb79e64eccc0e578825ad07dccff7221"
    "b8084674f743248ee03590e6813a264c"
    "3c2852bb91c300cb88d0658b1b532ea3"
    "71644897a20df94e3819ef46a9deacd8"
    "a8fa763fe39c343ff9dcbbc7c70b4f1d"
    "8a51e04bcdb45931c89f7ec9d9787364"
    "eac5ac8334d3ebc3c581a0fffa1363eb"
    "170ddd51b7f0da49d316552629d4689e"
    "2b16be587d47a1fc8ff8b8d17ad031ce"
    "45cb3a8f95160428afd7fbcabb4b407e")


def fold(a, b):
    product = a * b
    return (product & MASK) ^ (product >> 64)


def xxh3(data):
    """XXH3 with 64 bits for more than 240 bytes; the format hashes nothing shorter."""
    assert len(data) > 240
    acc = [PRIME32[2], *PRIME64[:4], PRIME32[1], PRIME64[4], PRIME32[0]]
    keys = [struct.unpack_from("<8Q", SECRET, 8 * n) for n in range(16)]
    last_key = struct.unpack_from("<8Q", SECRET, 192 - 64 - 7)

    def stripe(position, key):
        values = struct.unpack_from("<8Q", data, position)
        for i in range(8):
            mixed = values[i] ^ key[i]
            acc[i ^ 1] = (acc[i ^ 1] + values[i]) & MASK
            acc[i] = (acc[i] + (mixed & 0xFFFFFFFF) * (mixed >> 32)) & MASK

    blocks = (len(data) - 1) // 1024
    scramble = struct.unpack_from("<8Q", SECRET, 192 - 64)
    for block in range(blocks):
        for n in range(16):
            stripe(block * 1024 + n * 64, keys[n])
        for i in range(8):
            acc[i] = ((acc[i] ^ (acc[i] >> 47) ^ scramble[i]) * PRIME32[0]) & MASK
    for n in range((len(data) - 1 - 1024 * blocks) // 64):
        stripe(blocks * 1024 + n * 64, keys[n])
    stripe(len(data) - 64, last_key)

    merge = struct.unpack_from("<8Q", SECRET, 11)
    value = (len(data) * PRIME64[0]) & MASK
    for i in range(4):
        value = (value + fold(acc[2 * i] ^ merge[2 * i], acc[2 * i + 1] ^ merge[2 * i + 1])) & MASK
    value = ((value ^ (value >> 37)) * 0x165667919E3779F9) & MASK
    return value ^ (value >> 32)


def need(condition, what):
    if not condition:
        sys.exit(f"read-image.py: {what}")


def sealed(block, magic, size, what):
    """A block whose first bytes end in a hash of their own; the others are zeros."""
    stored = struct.unpack_from("<Q", block, size - 8)[0]
    need(block[:8] == magic and stored == xxh3(block[:size - 8]) and not any(block[size:]), f"damaged {what}")
    return block


class Image:
    def __init__(self, path):
        self.file = open(path, "rb")
        header = sealed(self.read(0, BLOCK), b"KESTROIM", BLOCK, "header")
        need(struct.unpack_from("<I", header, 8)[0] == 2, "another version of the format")
        self.id = header[16:32]
        roots = [sealed(self.read(at, BLOCK), b"KIMROOT\0", 512, "root record")
                 for at in struct.unpack_from("<QQ", header, 32)]
        need(all(root[8:24] == self.id for root in roots), "the root record of another image")
        root = max(roots, key=lambda record: struct.unpack_from("<Q", record, 24)[0])
        self.complete, size = struct.unpack_from("<QQ", root, 32)
        need(os.fstat(self.file.fileno()).st_size >= size, "the file is cut off")
        self.index, self.table, self.description, self.custom = (
            self.section(*struct.unpack_from("<QQQ", root, at)) for at in (48, 72, 96, 120))

    def read(self, position, size):
        self.file.seek(position)
        data = self.file.read(size)
        need(len(data) == size, "the file is cut off")
        return data

    def section(self, position, size, value):
        data = self.read(position, size)
        need(size == 0 or xxh3(data) == value, f"damage at {position}")
        return data

    def custom_files(self):
        position, files = 12, {}
        for _ in range(struct.unpack_from("<I", self.custom, 8)[0] if self.custom else 0):
            name, content = struct.unpack_from("<II", self.custom, position)
            position += 8
            files[self.custom[position:position + name].decode()] = self.custom[position + name:position + name + content]
            position += name + content
        return files

    def numbers(self):
        need(self.complete == 1, "the image is incomplete")
        return struct.unpack_from("<QIIQQQ", self.index, 24)

    def extents(self):
        return [struct.unpack_from("<QQ", self.index, 64 + 16 * n) for n in range(self.numbers()[3])]

    def chunks(self):
        """The contents of the chunks, one after the other."""
        _, chunk_size, _, _, chunks, left = self.numbers()
        for n in range(chunks):
            position, stored, codec, content_hash, stored_hash = struct.unpack_from("<QIIQQ", self.table, 32 * n)
            size = min(chunk_size, left)
            left -= size
            data = bytes(size)
            if codec != 0:
                padded = self.read(position, (stored + BLOCK - 1) // BLOCK * BLOCK)
                need(xxh3(padded) == stored_hash, f"damage at {position}")
                data = padded[:stored]
            if codec == 2:
                data = subprocess.run(["zstd", "-dcq"], input=data, stdout=subprocess.PIPE, check=True).stdout
            need(len(data) == size and xxh3(data) == content_hash, f"chunk {n} does not unpack")
            yield data


def info(path):
    image = Image(path)
    print(json.dumps(json.loads(image.description), indent=1) if image.complete else "incomplete")
    print("custom files:", ", ".join(image.custom_files()) or "none")


def files(path, folder):
    for name, content in Image(path).custom_files().items():
        need("/" not in name and name not in ("", ".", ".."), "a wrong name")
        with open(os.path.join(folder, name), "wb") as file:
            file.write(content)


def extract(path, target):
    image = Image(path)
    with open(target, "wb") as file:
        file.truncate(image.numbers()[0])
        chunks, data = image.chunks(), b""
        for offset, length in image.extents():
            while length > 0:
                data = data or next(chunks)
                step = min(length, len(data))
                file.seek(offset)
                file.write(data[:step])
                data, offset, length = data[step:], offset + step, length - step


COMMANDS = {"info": (info, 3), "files": (files, 4), "extract": (extract, 4)}
if len(sys.argv) < 2 or sys.argv[1] not in COMMANDS or len(sys.argv) != COMMANDS[sys.argv[1]][1]:
    sys.exit(__doc__)
COMMANDS[sys.argv[1]][0](*sys.argv[2:])
