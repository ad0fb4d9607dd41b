# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root setcap python3 strace fsfreeze
# A source that is mounted read-write stands still while it is read, and is thawed on every way out.
device source 160M
device target 160M
mkfs.ext4 -q "$source"
mounted "$source" m
fill m
head -c 60000000 /dev/urandom >m/large
sync -f m
listing m >before
round_trip "$source" "$target"
"$KESTRO_CLONE" --kim-info --json a.kim | grep -oE '"(frozen|needsRecovery)": .*'
touch m/thawed && echo thawed
rm m/thawed
e2fsck -fn "$target" >/dev/null 2>&1 && echo clean
mkdir m2
mounted "$target" m2 ro
listing m2 | grep -v '^\. ' | diff <(grep -v '^\. ' before) - && echo identical
umount m2
# Killed at once, and with its whole group: somebody else thaws.
for signal in TERM KILL; do
    rm -f b.kim
    slowly --tui "$source" b.kim
    grown b.kim 2000000 "$tool"
    fsfreeze -f m 2>/dev/null || echo "stands still"
    kill "-$signal" -- "-$tool"
    { wait "$tool" || echo "ended by $signal"; } 2>/dev/null
    cat err
    timeout 5 touch m/thawed && echo thawed
    "$KESTRO_CLONE" --kim-info b.kim 2>/dev/null || true
done
mount -o remount,ro m
kc --tui "$source" c.kim
"$KESTRO_CLONE" --kim-info --json c.kim | grep -oE '"(frozen|needsRecovery)": .*'
# Only this mount may not write; the file system is writable all the same.
mount -o remount,rw m
mount -o remount,bind,ro m
kc --tui "$source" d.kim
"$KESTRO_CLONE" --kim-info --json d.kim | grep -oE '"(frozen|needsRecovery)": .*'
mount -o remount,bind,rw m
timeout 5 touch m/thawed && echo thawed
