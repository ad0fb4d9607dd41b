# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.jfs fsck.jfs mkfs.nilfs2 nilfs-tune mkreiserfs reiserfsck mkfs.minix fsck.minix
# File systems whose used blocks nobody tells are imaged whole, byte by byte.
device source 160M
device target 160M

# whole MKFS… -- CHECK…: made, given some bytes in the middle, imaged, restored, compared and checked.
whole() {
    local make=()
    while [ "$1" != -- ]; do
        make+=("$1")
        shift
    done
    shift
    head -c 160M /dev/zero >"$source"
    "${make[@]}" "$source" >/dev/null 2>&1
    head -c 1M /dev/urandom | dd of="$source" bs=1M seek=90 conv=notrunc status=none
    rm -f a.kim
    round_trip "$source" "$target"
    reader
    cmp "$source" "$target" && echo identical
    "$@" "$target" >/dev/null 2>&1 </dev/null && echo clean
}

whole mkfs.jfs -q -- fsck.jfs -n
whole mkfs.nilfs2 -q -- nilfs-tune -l
whole mkreiserfs -q -f -- reiserfsck --check -y -q
whole mkfs.minix -3 -- fsck.minix
