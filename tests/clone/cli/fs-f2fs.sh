# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.f2fs partclone.f2fs sload.f2fs fsck.f2fs
# F2FS, filled without mounting.
mkdir files
seq 1 100000 >files/numbers
head -c 2000000 /dev/urandom >files/noise
device source 128M
device target 128M
mkfs.f2fs -q "$source"
sload.f2fs -f files "$source" >/dev/null
round_trip "$source" "$target"
reader
fsck.f2fs --dry-run "$target" >/dev/null && echo clean
