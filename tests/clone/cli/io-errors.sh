# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.btrfs
# A place that cannot be read. The source is a loop device over a file on a damaged btrfs, which reads as an error; the
# target later stands on a file system that is full, so that writes to it fail.
device damaged 320M
mkfs.btrfs -q -d single -m single "$damaged" >/dev/null
mounted "$damaged" d
head -c 40M /dev/urandom >content
printf 'KESTRO-MARK-OF-A-BLOCK' | dd of=content bs=4096 seek=5000 conv=notrunc status=none
cp content d/disk
sync -f d
umount d
at=$(grep -abo 'KESTRO-MARK-OF-A-BLOCK' damaged.disk | head -n 1 | cut -d: -f1)
flip damaged.disk "$((at + 100))"
blockdev --flushbufs "$damaged"
mounted "$damaged" d
attach bad d/disk
kc --tui "$bad" a.kim
kc --kim-info a.kim
kc --rescue --tui "$bad" a.kim
"$KESTRO_CLONE" --kim-info --json a.kim | python3 -c '
import json, sys
print(json.load(sys.stdin)["holes"])'
device target 40M
poison "$target"
kc --tui a.kim "$target"
is_poison "$target" && echo untouched
kc --tui --rescue a.kim "$target"
dd if=/dev/zero of=content bs=4096 seek=5000 count=1 conv=notrunc status=none
cmp "$target" content && echo "identical but for the hole"
detach "$bad"
umount d
# Writing fails.
device full 24M
mkfs.ext4 -q -m 0 "$full"
mounted "$full" f
truncate -s 40M f/disk
attach small f/disk
rm a.kim
device source 40M
head -c 40M /dev/urandom >"$source"
kc --tui "$source" a.kim
status=0
timeout 20 "$KESTRO_CLONE" --tui a.kim "$small" >/dev/null 2>err || status=$?
echo "$status, $(wc -l <err) line"
grep -oE 'no space left|cannot (write|make)' err
[ -z "$(blkid -p "$small")" ] && echo "looks like nothing"
detach "$small"
