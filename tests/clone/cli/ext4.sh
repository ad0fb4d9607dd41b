# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root setcap setfattr setfacl
# ext4 to an image and to a larger device and back, with the custom file that was there first.
device source 96M
device target 112M
mkfs.ext4 -q -L 'UUID=x' "$source"
mounted "$source" m
fill m
listing m >before
umount m
echo record >record
kc --write-custom-file "kim://$T/a.kim/DiskInfo" record
kc --tui "$source" a.kim
stat -c '%a' a.kim
kc --kim-info a.kim
grep -cE 'UUID=|DiskDrive=|invalid file' out || true
grep -E '^(Image|Size|Partition|Content|Custom)' out | sed 's/used [^ ]* MiB/used …/'
kc --kim-info --json a.kim
grep -cE 'UUID=|DiskDrive=|invalid file' out || true
kc --verify a.kim
kc --write-custom-file "kim://a.kim/later" record
kc --read-custom-file "kim://a.kim/later" copy
poison "$target"
kc --tui a.kim "$target"
e2fsck -fn "$target" >/dev/null 2>&1 && echo clean
mounted "$target" m ro
listing m | diff before - && echo identical
umount m
# A second image takes the place of the first and keeps its custom files.
kc --tui "$source" a.kim
kc --read-custom-file "kim://a.kim/later" copy
cat copy
ls ./*.kim*
