# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mke2fs setcap
# ext2 with small blocks; the boot block is before the first block of the file system.
device source 64M
device target 64M
mke2fs -q -t ext2 -b 1024 -L one "$source"
same_after ro e2fsck -fn
