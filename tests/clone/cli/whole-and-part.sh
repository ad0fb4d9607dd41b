# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root sfdisk partx mkfs.vfat strace
# A run on a disk and one on a partition of it exclude each other; two partitions do not.
device source 64M
printf 'label: gpt\nsize=24M\nsize=24M\n' | sfdisk -q --no-reread --no-tell-kernel "$source"
renew() {
    # A loop device keeps the partitions that an earlier user gave it.
    partx -d "$1" 2>/dev/null || true
    partx -a "$1"
}
renew "$source"
parts=("$source"p1 "$source"p2)
loops+=("${parts[@]}")
names+=(part1 part2)
mkfs.ext4 -q "${parts[0]}"
mkfs.ext4 -q "${parts[1]}"
# held DEVICE KIND COMMAND…: runs the command while somebody else has the device locked.
held() (
    exec 9<"$1"
    flock "-$2" 9
    shift 2
    "$@" 9<&-
)
held "$source" s kc --tui "${parts[0]}" a.kim
held "$source" x kc --tui "${parts[0]}" a.kim
held "$source" s kc --tui "$source" disk.kim
held "${parts[1]}" x kc --tui "${parts[0]}" a.kim
held "$source" x kc --tui a.kim "${parts[1]}"
kc --tui a.kim "${parts[1]}"
e2fsck -fn "${parts[1]}" >/dev/null 2>&1 && echo clean
# An image of a partition is not written over a partition table.
kc --tui a.kim "$source"
# The kernel takes the new partitions for the old ones, or the run says that it did not.
kc --tui "$source" disk.kim
device target 64M
printf 'label: gpt\nsize=8M\nsize=32M\n' | sfdisk -q --no-reread --no-tell-kernel "$target"
renew "$target"
kc --tui disk.kim "$target"
partx -o NR,SECTORS -rg "$target"
for node in "$target"p1 "$target"p2; do blockdev --getsize64 "$node"; done
# One partition stands still; the other comes to be mounted while it is looked at.
mounted "${parts[0]}" m
mkfs.vfat "${parts[1]}" >/dev/null
mkdir m2 programs
mounts+=(m2)
printf '#!/bin/sh\nmkfs.ext4 -q -F "$6"\nmount "$6" m2\nexit 1\n' >programs/partclone.fat
chmod +x programs/partclone.fat
PATH=$T/programs:$PATH kc --tui "$source" late.kim
findmnt -rno FSTYPE m2
timeout 5 touch m/thawed && echo thawed
# And while it is read.
head -c 18M /dev/urandom >m2/noise
umount m2
slowly --tui "$source" later.kim
grown later.kim 2000000 "$tool"
kill -STOP "$tool"
mount "${parts[1]}" m2
kill -CONT "$tool"
wait "$tool" || echo "exit $?"
same_every_time <err
timeout 5 touch m/thawed && echo thawed
umount m m2
# A partition with a table of its own stays the image of a partition.
printf 'label: gpt\nsize=8M\n' | sfdisk -q --no-reread --no-tell-kernel "${parts[0]}"
kc --tui "${parts[0]}" nested.kim
reader nested.kim
kc --tui nested.kim "${parts[1]}"
cmp "${parts[@]}" && echo identical
partx -d "$source"
partx -d "$target"
