# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mke2fs setcap
# ext3.
device source 64M
device target 64M
mke2fs -q -t ext3 -b 2048 "$source"
same_after ro e2fsck -fn
