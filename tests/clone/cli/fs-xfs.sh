# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.xfs partclone.xfs setcap
# xfs through partclone's map.
device source 320M
device target 352M
mkfs.xfs -q -L rootfs "$source"
mounted "$source" m
fill m
listing m >before
umount m
round_trip "$source" "$target"
reader
xfs_repair -n "$target" >/dev/null 2>&1 && echo clean
# Apart from its source: the same file system may not be mounted twice.
losetup -d "$source"
mounted "$target" m ro,nouuid
listing m | diff before - && echo identical
