# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.ntfs mkfs.fat mkfs.ext4 ntfscp ntfsfix
# A file system that is smaller than its device: what stands right behind it, such as the backup boot sector of NTFS,
# comes back too, as does the end of the device.
device source 96M
device target 96M

# same FROM BYTES: source and target are alike there.
same() {
    cmp -n "$2" -i "$1" "$source" "$target" && echo "same at $1"
}

# made MKFS…: a file system of 45 MiB at the beginning of the device, and bytes that it does not know of.
made() {
    rm -f a.kim small
    truncate -s 45M small
    "$@" small >/dev/null 2>&1
    [ ! -e noise ] || ntfscp -f -q small noise noise
    head -c 96M /dev/urandom >"$source"
    dd if=small of="$source" bs=1M conv=notrunc status=none
    round_trip "$source" "$target"
    reader
    same $((45 * 1048576)) $((15 * 1048576))
    same $((95 * 1048576)) 1048576
    head -c 45M "$target" >small
}

head -c 2000000 /dev/urandom >noise
made mkfs.ntfs -q -F
same $((45 * 1048576 - 512)) 512
ntfsfix -n small >/dev/null && echo clean
rm noise
made mkfs.fat -F 32
fsck.fat -n small >/dev/null && echo clean
made mkfs.ext4 -q
e2fsck -fn small >/dev/null 2>&1 && echo clean
