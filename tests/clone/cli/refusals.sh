# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# What is refused, and that a refusal changes nothing.
device source 24M
device target 20M
device same 24M
mkfs.ext4 -q "$source"
kc --tui "$source" "$target"
echo text >text
kc --tui "$source" text
cat text
kc --tui "$source" none/a.kim
kc --tui text "$target"
kc --tui missing "$target"
kc --tui "$source" a.kim
poison "$target"
kc --tui a.kim "$target"
is_poison "$target" && echo untouched
poison "$same"
cp a.kim flipped.kim
flip flipped.kim 20000
kc --tui flipped.kim "$same"
kc --verify flipped.kim
head -c -1 a.kim >short.kim
kc --tui short.kim "$same"
kc --kim-info short.kim
echo record >record
kc --write-custom-file kim://begun.kim/DiskInfo record
kc --tui begun.kim "$same"
# A drive without a medium: the image of another one stays as it is.
device empty 0 2>/dev/null
kc --tui "$empty" a.kim
kc --verify a.kim
# The image on the source, and on the target.
mounted "$source" m
kc --tui "$source" m/a.kim
cp a.kim m/a.kim
kc --tui m/a.kim "$source"
umount m
# Somebody else holds the device, or the image.
exec 9<"$source"
flock 9
kc --tui "$source" b.kim
exec 9<a.kim
flock 9
kc --tui a.kim "$same"
kc --tui "$source" a.kim
exec 9<&-
is_poison "$same" && echo untouched
ls ./*.kim*
