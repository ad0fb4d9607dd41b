# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.exfat partclone.exfat fsck.exfat
# exFAT.
device source 64M
device target 64M
mkfs.exfat -L KESTRO "$source" >/dev/null
round_trip "$source" "$target"
reader
fsck.exfat -n "$target" >/dev/null && echo clean
