# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.ntfs partclone.ntfs ntfscp ntfscat
# NTFS: its second boot sector is in the last sector of the device.
head -c 2000000 /dev/urandom >noise
device source 64M
device target 64M
mkfs.ntfs -q -F -L KESTRO "$source" 2>/dev/null
ntfscp -f -q "$source" noise noise
round_trip "$source" "$target"
reader
ntfsfix -n "$target" >/dev/null && echo clean
cmp <(ntfscat "$target" noise) noise && echo identical
cmp <(tail -c 512 "$source") <(tail -c 512 "$target") && echo "same last sector"
