# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.xfs
# What a mount forbade stays forbidden when another kind of file system comes to stand there, what is half written is not
# mounted, and a mount that covers the target's is left alone.
device source 320M
device target 320M
device other 40M
mkfs.xfs -q -f "$source" >/dev/null
kc --tui "$source" a.kim
mkfs.ext4 -q "$target"
mounted "$target" m ro,nosuid,nodev,data=journal
kc --tui a.kim "$target"
findmnt -rno FSTYPE,VFS-OPTIONS m
umount m
mkfs.ext4 -q "$other"
mkfs.ext4 -q "$target"
mounted "$target" m
mounted "$other" m
kc --tui a.kim "$target"
findmnt -rno SOURCE m | same_every_time
blkid -o value -s TYPE "$target"
umount m
# Terminated while it writes.
head -c 200000000 /dev/urandom | dd of="$source" bs=1M iflag=fullblock conv=notrunc status=none
kc --tui "$source" b.kim
"$KESTRO_CLONE" --tui b.kim "$target" >/dev/null 2>err &
tool=$!
awaited "$tool" holds_nothing "$target"
kill -TERM "$tool"
wait "$tool" || echo "exit $?"
cat err
findmnt -rn m || echo "not mounted"
# One mount that cannot be made again does not keep the others away; udevadm is called between writing and mounting.
mkfs.ext4 -q -F "$target"
mounted "$target" first
mounted "$target" second
mkdir programs
printf '#!/bin/sh\nrmdir first && touch first\n' >programs/udevadm
chmod +x programs/udevadm
PATH=$T/programs:$PATH kc --tui a.kim "$target" | sed "s#$T#T#"
findmnt -rno FSTYPE second
