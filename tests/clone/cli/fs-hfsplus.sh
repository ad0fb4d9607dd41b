# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root xorriso partclone.hfsplus partx
# HFS+ through partclone's map. Debian has no mkfs for it: the file system is the one in a hybrid disc image, with the
# blocks of one file given back.
device source 64M
device target 64M
mkdir files
seq 1 200000 >files/numbers
head -c 3000000 /dev/urandom >files/noise
{ printf 'THE-BLOCKS-THAT-ARE-FREE'; head -c 2000000 /dev/urandom; } >files/free
xorriso -as mkisofs -quiet -hfsplus -o hybrid files 2>/dev/null
read -r start sectors < <(partx -go START,SECTORS -n 3 hybrid)
head -c 64M /dev/urandom >"$source"
dd if=hybrid of="$source" bs=512 skip="$start" count="$sectors" conv=notrunc status=none
at=$(grep -abo 'THE-BLOCKS-THAT-ARE-FREE' "$source" | head -n 1 | cut -d: -f1)
# Technical Note 1150: the volume header at 1024 has the size of a block at 40, the number of free blocks at 48, and the
# first block of the allocation file at 128, whose bits begin with the highest of a byte.
python3 - "$source" "$at" 2000000 <<'PY'
import struct, sys
begin, length = int(sys.argv[2]), int(sys.argv[3])
with open(sys.argv[1], "r+b") as disk:
    header = bytearray(disk.seek(1024) and disk.read(512))
    block, = struct.unpack_from(">I", header, 40)
    first, count = begin // block, length // block
    bitmap = struct.unpack_from(">I", header, 128)[0] * block
    disk.seek(bitmap)
    bits = bytearray(disk.read(4096))
    for number in range(first, first + count):
        bits[number // 8] &= ~(0x80 >> number % 8)
    disk.seek(bitmap)
    disk.write(bits)
    struct.pack_into(">I", header, 48, struct.unpack_from(">I", header, 48)[0] + count)
    disk.seek(1024)
    disk.write(header)
PY
round_trip "$source" "$target"
reader
"$KESTRO_CLONE" --kim-info --json a.kim | grep -oE '"needsRecovery": .*'
cmp -n "$at" "$source" "$target" && echo "the same before the free blocks"
behind=$((at / 4096 * 4096 + 2000000 + 4096))
cmp -n $((sectors * 512 - behind)) -i "$behind" "$source" "$target" && echo "the same behind them"
# The first MiB of a device is always stored.
cmp -n 900000 -i 1048576:0 "$target" <(head -c 900000 /dev/zero | tr '\0' '\245') && echo "not stored"
# One that was not left in order is imaged whole.
flip "$source" 1030 1
kc --tui "$source" b.kim
reader b.kim
"$KESTRO_CLONE" --kim-info --json b.kim | grep -oE '"needsRecovery": .*'
