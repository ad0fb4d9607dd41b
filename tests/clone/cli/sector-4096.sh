# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root setcap
# Devices with sectors of 4096 bytes, and what may go where.
device source 64M --sector-size 4096
device target 64M --sector-size 4096
device small 64M
mkfs.ext4 -q "$source"
mounted "$source" m
fill m
listing m >before
umount m
round_trip "$source" "$target"
e2fsck -fn "$target" >/dev/null 2>&1 && echo clean
mounted "$target" m ro
listing m | diff before - && echo identical
umount m
kc --tui a.kim "$small"
kc --tui "$small" b.kim
kc --tui b.kim "$target"
sgdisk -n 1:0:+8M "$source" >/dev/null
kc --tui "$source" c.kim
kc --tui c.kim "$small"
# A size that images do not know is refused before anything is copied.
device odd 24M --sector-size 2048
head -c 24M /dev/urandom >"$odd"
kc --tui "$odd" d.kim
[ "$(stat -c %s d.kim)" -lt 100000 ] && echo "nothing copied"
