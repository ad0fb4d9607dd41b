# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.xfs mkfs.btrfs mkfs.ext2 partclone.xfs partclone.btrfs setcap
# Mounted file systems of several kinds: only their used blocks are taken, with all that was written just before, and
# nothing is written to them, not even when temporary files would be.

# one_mounted MKFS OPTIONS: imaged while it is mounted for writing, then while read-only; restored and compared.
one_mounted() {
    echo "$1"
    device source 352M
    device target 352M
    "$1" -q "$source" >/dev/null
    mounted "$source" m
    fill m
    head -c 20M /dev/urandom >m/new
    rm -f a.kim b.kim
    poison "$target"
    TMPDIR=$T/m kc --tui "$source" a.kim
    reader
    "$KESTRO_CLONE" --kim-info --json a.kim | grep -oE '"(frozen|needsRecovery)": .*'
    [ "$(stat -c %s a.kim)" -lt 60000000 ] && echo "only what is used"
    timeout 5 touch m/new && echo "thawed"
    mount -o remount,ro m
    listing m >before
    TMPDIR=$T/m kc --tui "$source" b.kim
    reader b.kim
    "$KESTRO_CLONE" --kim-info --json b.kim | grep -oE '"(frozen|needsRecovery)": .*'
    umount m
    detach "$source"
    local image
    for image in a b; do
        kc --tui $image.kim "$target"
        mounted "$target" m "$2"
        listing m | grep -v '^\./new f' | diff <(grep -v '^\./new f' before) - && echo identical
        umount m
    done
    detach "$target"
    rm ./*.disk
}

one_mounted mkfs.xfs nouuid
one_mounted mkfs.btrfs ro
one_mounted mkfs.ext2 ro
one_mounted mkfs.ext4 ro
