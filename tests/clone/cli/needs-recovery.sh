# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.xfs mkfs.btrfs mkfs.f2fs mkfs.ntfs mkfs.exfat xfs_logprint dump.f2fs ntfsfix debugfs
# File systems that were not left in order: what their journal holds is not in their own map of used blocks, so they are
# imaged whole, and the image says so.

# imaged DEVICE: its image, who read it, and what is said of its journal.
imaged() {
    rm -f a.kim
    kc --tui "$1" a.kim
    grep -o 'whole because.*recovery' out || true
    reader
    "$KESTRO_CLONE" --kim-info a.kim | grep Needs
}

# recovered MKFS…: a file is made durable, the power goes, and the device is imaged, restored and mounted.
recovered() {
    device source 320M
    "$@" "$source" >/dev/null
    mounted "$source" m
    head -c 20M /dev/urandom >base
    cp base m/file
    sync -f m
    head -c 4M /dev/urandom >content
    # Of this, only the file's data and the journal reach the device.
    dd if=content of=m/file bs=1M oflag=append conv=notrunc,fsync status=none
    cp --sparse=always source.disk cut.disk
    umount m
    detach "$source"
    attach cut cut.disk
    device target 352M
    poison "$target"
    imaged "$cut"
    detach "$cut"
    kc --tui a.kim "$target"
    mounted "$target" m
    cat base content | cmp - m/file && echo "the file is there"
    umount m
    detach "$target"
    rm ./*.disk
}

# As a crash leaves F2FS: neither checkpoint says that it was unmounted.
f2fs_in_use() {
    python3 - "$1" <<'PY'
import struct, sys, zlib
MAGIC, UNMOUNTED = 0xF2F52010, 1
with open(sys.argv[1], "r+b") as disk:
    for block in (512, 1024):
        disk.seek(block * 4096)
        pack = bytearray(disk.read(4096))
        flags, blocks = struct.unpack_from("<II", pack, 132)
        end, = struct.unpack_from("<I", pack, 164)
        struct.pack_into("<I", pack, 132, flags & ~UNMOUNTED)
        checksum = zlib.crc32(pack[:end], ~MAGIC & 0xFFFFFFFF) ^ 0xFFFFFFFF
        struct.pack_into("<I", pack, end, checksum)
        for copy in (block, block + blocks - 1):
            if blocks > 0:
                disk.seek(copy * 4096)
                disk.write(pack)
PY
}

for make in mkfs.ext3 mkfs.ext4 mkfs.xfs mkfs.btrfs; do recovered "$make" -q; done
device other 128M
mkfs.ext2 -q "$other"
imaged "$other"
debugfs -w -R 'set_super_value state 0' "$other" 2>/dev/null
imaged "$other"
mkfs.ext4 -q -F "$other"
debugfs -w -R 'set_super_value state 3' "$other" 2>/dev/null
imaged "$other"
wipefs -qa "$other" >/dev/null 2>&1
mkfs.exfat "$other" >/dev/null
flip "$other" 106 2
imaged "$other"
wipefs -qa "$other" >/dev/null 2>&1
mkfs.ntfs -q -F "$other" 2>/dev/null
ntfsfix "$other" >/dev/null
imaged "$other"
# A log with anything in it.
mkfs.ntfs -q -F "$other" 2>/dev/null
log=$(ntfsinfo -fi 2 -v "$other" 2>/dev/null | awk 'runs { print $2; exit } /Runlist:/ { runs = 1 }')
printf 'RSTR\036\000\011' | dd of="$other" bs=4096 seek="$((log))" conv=notrunc status=none
imaged "$other"
wipefs -qa "$other" >/dev/null 2>&1
mkfs.f2fs -q "$other"
imaged "$other"
f2fs_in_use "$other"
imaged "$other"
