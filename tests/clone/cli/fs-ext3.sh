# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mke2fs setcap
# ext3.
device source 64M
device target 64M
mke2fs -q -t ext3 -b 2048 "$source"
mounted "$source" m
fill m
listing m >before
umount m
round_trip "$source" "$target"
reader
e2fsck -fn "$target" >/dev/null 2>&1 && echo clean
# Apart from its source: the same file system may not be mounted twice.
losetup -d "$source"
mounted "$target" m ro
listing m | diff before - && echo identical
