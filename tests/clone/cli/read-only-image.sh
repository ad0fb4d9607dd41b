# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mksquashfs
# An image is restored from a file system that is only ever read, as that of a pressed medium.
device source 24M
device target 24M
mkfs.ext4 -q -L new "$source"
kc --tui "$source" a.kim
mksquashfs a.kim medium.disk -quiet -no-progress >/dev/null
attach medium medium.disk
mounted "$medium" m ro
kc --tui m/a.kim "$target"
e2label "$target"
