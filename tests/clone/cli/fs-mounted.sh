# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mke2fs mkfs.btrfs mkfs.xfs partclone.btrfs partclone.xfs setcap
# File systems that can be mounted, imaged while they are not: every file comes back as it was.

# one_clean SIZE TARGET-SIZE MOUNT-OPTIONS CHECK MKFS…: made, filled, taken to the target, checked and compared there.
one_clean() {
    local sizes=("$1" "$2") options=$3 check
    read -ra check <<<"$4"
    shift 4
    echo "$*"
    device source "${sizes[0]}"
    device target "${sizes[1]}"
    "$@" "$source" >/dev/null
    same_after "$options" "${check[@]}"
    umount m
    detach "$target"
    rm ./*.disk a.kim
}

# With small blocks the boot block is before the first block of the file system.
one_clean 64M 64M ro "e2fsck -fn" mke2fs -q -t ext2 -b 1024 -L one
one_clean 64M 64M ro "e2fsck -fn" mke2fs -q -t ext3 -b 2048
one_clean 128M 160M ro "btrfs check" mkfs.btrfs -q
one_clean 320M 352M ro,nouuid "xfs_repair -n" mkfs.xfs -q -L rootfs
