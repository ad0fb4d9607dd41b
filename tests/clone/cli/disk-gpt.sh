# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root sgdisk setcap partx
# A whole disk with a GPT: boot code, two file systems, unknown content, gaps.
listing_of_partitions() {
    local part name
    for part in 1 $2; do
        name=$(losetup -f --show -o "$(($(partx -go START -n "$part" "$1") * 512))" \
            --sizelimit "$(($(partx -go SECTORS -n "$part" "$1") * 512))" "$1")
        loops+=("$name")
        names+=("part$part")
        e2fsck -fn "$name" >/dev/null 2>&1 && echo clean
        mounted "$name" m "$3"
        [ "$3" = ro ] || fill m
        listing m
        umount m
        losetup -d "$name"
    done
}

device source 256M
device target 300M
head -c 440 /dev/urandom | dd of="$source" conv=notrunc status=none
sgdisk -n 1:2048:+48M -n 2:0:+64M -n 3:0:+8M -n 4:260000:+4M "$source" >/dev/null
head -c 100000 /dev/urandom | dd of="$source" bs=512 seek=260100 conv=notrunc status=none
mke2fs -q -t ext4 -E offset=1048576 "$source" 48M
mke2fs -q -t ext4 -E offset="$((512 * $(partx -go START -n 2 "$source")))" "$source" 64M
listing_of_partitions "$source" 2 rw >before
poison "$target"
kc --tui "$source" a.kim
reader
kc --tui a.kim "$target"
cmp -n 1048576 "$source" "$target" && echo "same boot code and table"
sgdisk -e "$target" >/dev/null
sgdisk -v "$target" | grep -o 'No problems found'
listing_of_partitions "$target" 2 ro | diff before - && echo identical
cmp <(tail -c +133120001 "$source" | head -c 4194304) <(tail -c +133120001 "$target" | head -c 4194304) &&
    echo "same unknown content"
losetup -l -n -O BACK-FILE | grep -c "^$source" || true
