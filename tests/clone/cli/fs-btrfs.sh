# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.btrfs partclone.btrfs setcap
# btrfs through partclone's map.
device source 128M
device target 160M
mkfs.btrfs -q "$source" >/dev/null
same_after ro btrfs check
