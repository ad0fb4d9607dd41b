# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.vfat partclone.fat mcopy fsck.vfat
# FAT16 and FAT32, filled and compared without mounting.
mkdir files
seq 1 100000 >files/numbers
head -c 2000000 /dev/urandom >files/noise
for bits in 16 32; do
    device "source$bits" 64M
    device "target$bits" 64M
    from=source$bits
    to=target$bits
    mkfs.vfat -F "$bits" -s "$((bits == 16 ? 4 : 1))" -n KESTRO "${!from}" >/dev/null
    mcopy -i "${!from}" -s files :: 2>/dev/null
    sync
    rm -f a.kim
    round_trip "${!from}" "${!to}"
    reader
    fsck.vfat -n "${!to}" >/dev/null && echo clean
    rm -rf copy
    mcopy -i "${!to}" -s ::files copy 2>/dev/null
    diff -r files copy && echo identical
done
