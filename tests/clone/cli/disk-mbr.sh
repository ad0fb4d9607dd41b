# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root sfdisk setcap partx
# A whole disk with an MBR and logical partitions, whose tables stand between them.
device source 200M
device target 200M
sfdisk -q --no-reread --no-tell-kernel "$source" <<'TABLE'
label: dos
start=2048, size=90000, type=83, bootable
start=100000, size=300000, type=5
start=102048, size=90000, type=83
start=210000, size=60000, type=83
TABLE
for part in 1 5 6; do
    mke2fs -q -t ext4 -E offset="$((512 * $(partx -go START -n "$part" "$source")))" "$source" \
        "$(($(partx -go SECTORS -n "$part" "$source") / 2))"
done
parts_listing "$source" "1 5 6" rw >before
round_trip "$source" "$target"
reader
diff <(sfdisk -d "$source" | grep -o 'start=.*') <(sfdisk -d "$target" | grep -o 'start=.*') && echo "same table"
parts_listing "$target" "1 5 6" ro | diff before - && echo identical
