# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# A mounted target is unmounted, and mounted again with its options; one that cannot be is left alone.
device source 40M
device target 40M
mkfs.ext4 -q -L new "$source"
mkfs.ext4 -q -L old "$target"
kc --tui "$source" a.kim
mkdir "odd dir"
mounted "$target" "odd dir" noatime,nodev
mounted "$target" m2 noatime
mount -o remount,bind,ro m2
kc --tui a.kim "$target"
e2label "$target"
findmnt -rno VFS-OPTIONS "odd dir"
findmnt -rno VFS-OPTIONS m2
umount "odd dir" m2
mounted "$target" m
exec 9>m/open
kc --tui a.kim "$target"
findmnt -rno TARGET m >/dev/null && echo "still mounted"
exec 9>&-
umount m
e2label "$target"
# Swap space that is in use.
mkswap -q "$target"
swapon "$target"
kc --tui a.kim "$target"
swapoff "$target"
# Somebody else claims the device.
wipefs -qa "$target"
python3 - "$target" <<'PY' &
import os, sys, time
os.open(sys.argv[1], os.O_RDONLY | os.O_EXCL)
open("claimed", "w").close()
time.sleep(60)
PY
holder=$!
awaited "$holder" test -e claimed
kc --tui a.kim "$target"
kill "$holder"
