# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root sgdisk setcap partx
# A whole disk with a GPT: boot code, two file systems, unknown content, gaps.
device source 256M
device target 300M
head -c 440 /dev/urandom | dd of="$source" conv=notrunc status=none
sgdisk -n 1:2048:+48M -n 2:0:+64M -n 3:0:+8M -n 4:260000:+4M "$source" >/dev/null
head -c 100000 /dev/urandom | dd of="$source" bs=512 seek=260100 conv=notrunc status=none
mke2fs -q -t ext4 -E offset=1048576 "$source" 48M
mke2fs -q -t ext4 -E offset="$((512 * $(partx -go START -n 2 "$source")))" "$source" 64M
parts_listing "$source" "1 2" rw >before
poison "$target"
kc --tui "$source" a.kim
reader
kc --tui a.kim "$target"
cmp -n 1048576 "$source" "$target" && echo "same boot code and table"
sgdisk -e "$target" >/dev/null
sgdisk -v "$target" | grep -o 'No problems found'
parts_listing "$target" "1 2" ro | diff before - && echo identical
cmp <(tail -c +133120001 "$source" | head -c 4194304) <(tail -c +133120001 "$target" | head -c 4194304) &&
    echo "same unknown content"
losetup -l -n -O BACK-FILE | grep -cx "$source" || true
