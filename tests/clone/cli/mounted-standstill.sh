# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.ntfs ntfs-3g partclone.ntfs fsfreeze strace
# How mounted sources are held: read-only where they cannot be frozen, and set going again on every way out; what
# somebody else froze stays frozen; a mount that another one hides is found at its other place, or refused.
device source 96M
device target 96M
mkfs.ntfs -q -F "$source" 2>/dev/null
mkdir m
ntfs-3g "$source" m
mounts+=(m)
head -c 60M /dev/urandom >m/noise
kc --tui "$source" a.kim
reader
"$KESTRO_CLONE" --kim-info --json a.kim | grep -oE '"(frozen|needsRecovery)": .*'
[ "$(stat -c %s a.kim)" -lt 75000000 ] && echo "only what is used"
touch m/new && echo writable
is_writable() { touch m/new 2>/dev/null; }
for signal in TERM KILL; do
    rm -f b.kim
    slowly --tui "$source" b.kim
    grown b.kim 2000000 "$tool"
    is_writable || echo "read-only"
    kill "-$signal" -- "-$tool"
    { wait "$tool" || echo "ended by $signal"; } 2>/dev/null
    awaited $$ is_writable && echo writable
done
# Somebody makes it writable again meanwhile.
rm -f b.kim
slowly --tui "$source" b.kim
grown b.kim 2000000 "$tool"
mount -i -o remount,rw m
wait "$tool" || echo "exit $?"
same_every_time <err
exec 8>m/open
kc --tui "$source" b.kim | sed "s#$T#T#"
exec 8>&-
touch m/new && echo writable
sha256sum <m/noise >before
umount m
poison "$target"
kc --tui a.kim "$target"
ntfsfix -n "$target" >/dev/null && echo clean
ntfscat "$target" noise | sha256sum | diff before - && echo identical
device other 32M
mkfs.ext4 -q "$other"
mounted "$other" m
fsfreeze -f m
kc --tui "$other" c.kim
fsfreeze -f m 2>/dev/null || echo "still frozen"
fsfreeze -u m
mount -t tmpfs none m
mounts+=(m)
kc --tui "$other" c.kim
mounted "$other" m2
kc --tui "$other" c.kim
touch m2/new && echo writable
