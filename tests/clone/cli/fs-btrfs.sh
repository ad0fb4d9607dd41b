# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.btrfs partclone.btrfs setcap
# btrfs through partclone's map.
device source 128M
device target 160M
mkfs.btrfs -q "$source" >/dev/null
mounted "$source" m
fill m
listing m >before
umount m
round_trip "$source" "$target"
reader
btrfs check "$target" >/dev/null 2>&1 && echo clean
# Apart from its source: the same file system may not be mounted twice.
losetup -d "$source"
mounted "$target" m ro
listing m | diff before - && echo identical
