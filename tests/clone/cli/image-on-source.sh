# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# An image may not lie on its source, also by a loop device's file or an overlay; nor among the devices.
device source 60M
device upper 20M
mkfs.ext4 -q "$source"
mounted "$source" m
truncate -s 20M m/inner.disk
attach inner m/inner.disk
mkfs.ext4 -q "$inner"
mounted "$inner" n
kc --tui "$source" n/a.kim
mkdir "m/up per" m/work m/low o
mount -t overlay -o "lowerdir=m/low,upperdir=$T/m/up per,workdir=m/work" none o
mounts+=(o)
kc --tui "$source" o/a.kim
umount o
# Written to another device: all is well.
mkfs.ext4 -q "$upper"
mounted "$upper" u
mkdir u/up u/work
mount -t overlay -o "lowerdir=m/low,upperdir=u/up,workdir=u/work" none o
kc --tui "$source" o/a.kim
umount o n
detach "$inner"
# Whoever still looks at the inner device keeps its file open for a moment.
timeout 20 bash -c 'until umount m 2>/dev/null; do sleep 0.2; done'
kc --tui "$source" /dev/kestro-no-such-device
echo x >DiskInfo
kc --write-custom-file kim:///dev/kestro-no-such-device/DiskInfo DiskInfo
ls /dev/kestro* 2>/dev/null || echo nothing
# The progress goes to a file on the frozen source: the run does not wait for itself.
mounted "$source" m
timeout 60 "$KESTRO_CLONE" --tui "$source" a.kim >m/log && tail -c 9 m/log
# Standard descriptors that are closed are not taken for files.
timeout 60 "$KESTRO_CLONE" --tui "$source" b.kim <&- >&- 2>&- || echo "exit $?"
timeout 60 "$KESTRO_CLONE" --verify a.kim 0<&- 2>&- | grep -o '100.00%'
