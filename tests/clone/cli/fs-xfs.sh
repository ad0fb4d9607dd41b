# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.xfs partclone.xfs setcap
# xfs through partclone's map.
device source 320M
device target 352M
mkfs.xfs -q -L rootfs "$source"
same_after ro,nouuid xfs_repair -n
