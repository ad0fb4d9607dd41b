# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.btrfs sfdisk partx
# A source that somebody writes to without a mount of it that could be frozen is not read at all.
device first 128M
device second 128M
mkfs.btrfs -q -d raid1 -m raid1 "$first" "$second" >/dev/null
btrfs device scan "$first" "$second" >/dev/null
mounted "$first" m
kc --tui "$second" a.kim
kc --kim-info a.kim
umount m
kc --tui "$second" a.kim
# A program that keeps one partition for itself, while another one is mounted and stands still.
device source 64M
printf 'label: gpt\nsize=24M\nsize=24M\n' | sfdisk -q --no-reread --no-tell-kernel "$source"
partx -a "$source"
loops+=("$source"p1 "$source"p2)
names+=(part1 part2)
mkfs.ext4 -q "$source"p1
mounted "$source"p1 m
# kept DEVICE SECONDS COMMAND…: runs the command while the device is kept for so long.
kept() {
    python3 -c 'import os, sys, time
os.open(sys.argv[1], os.O_RDONLY | os.O_EXCL)
print(flush=True)
time.sleep(float(sys.argv[2]))' "$1" "$2" >kept &
    local keeper=$!
    awaited "$keeper" test -s kept
    shift 2
    "$@"
    kill "$keeper" 2>/dev/null || true
    wait "$keeper" 2>/dev/null || true
    rm kept
}
kept "$source"p2 60 kc --tui "$source" b.kim
timeout 5 touch m/thawed && echo thawed
kept "$source"p2 0.5 kc --tui "$source" b.kim
umount m
partx -d "$source"
# The mount of a btrfs tells of one of its devices only; here the other one is built on a device below it. As not every
# kernel can build one, the two are loop devices of which /sys tells the same.
device below 64M
for pair in "$second holders" "$below slaves"; do
    read -r node kind <<<"$pair"
    name=${node#/dev/}
    mkdir -p "sys/$name" "sys/$kind"
    cp "/sys/block/$name/dev" "sys/$name/dev"
    ln -s "$name" "sys/$(cat "sys/$name/dev")"
    ln -s "../../$name" "sys/$kind/$name"
done
mv sys/holders "sys/${below#/dev/}/"
mv sys/slaves "sys/${second#/dev/}/"
mounted "$first" m
mounted sys /sys/dev/block bind
kept "$below" 60 kc --tui "$below" c.kim
umount m
kept "$below" 60 kc --tui "$below" c.kim
umount /sys/dev/block
