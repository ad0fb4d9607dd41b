# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root mkfs.ntfs ntfs-3g strace fsfreeze
# A mounted source does not stand still for ever: when the run gives no sign of life the source is set going again, and
# the backup fails.
device source 96M

is_writable() { timeout 5 touch m/new 2>/dev/null; }

# held: what a process sees that holds a file system and says nothing, or says that it goes on.
held() {
    rm -f said
    "$KESTRO_CLONE_PROGRAMS/standstill" "$T/m" silent >said &
    local holder=$!
    awaited "$holder" grep -qx held said
    awaited "$holder" is_writable && kill -0 "$holder" && echo "writable while it says nothing"
    wait "$holder"
    same_every_time <said
    "$KESTRO_CLONE_PROGRAMS/standstill" "$T/m" beating | same_every_time
    is_writable && echo writable
}

mkfs.ntfs -q -F "$source" 2>/dev/null
mkdir m
ntfs-3g "$source" m
mounts+=(m)
held
umount m
mkfs.ext4 -q -F "$source"
mounted "$source" m
head -c 60000000 /dev/urandom >m/noise
held
# The tool itself, stopped for a moment; in the long form for longer than the source may stand still.
seconds=2 wanted=0
[ "${KESTRO_LONG:-0}" = 0 ] || seconds=130 wanted=16
wrong=0
slowly --tui "$source" a.kim
grown a.kim 2000000 "$tool"
kill -STOP "$tool"
! fsfreeze -f m 2>/dev/null || wrong=4
sleep "$seconds"
[ "$wanted" = 0 ] || is_writable || wrong=1
kill -CONT "$tool"
status=0
wait "$tool" || status=$?
[ "$status" = "$wanted" ] || wrong=2
status=0
"$KESTRO_CLONE" --kim-info a.kim >/dev/null 2>&1 || status=3
[ "$status" = $((wanted == 0 ? 0 : 3)) ] || wrong=3
echo "wrong: $wrong"
is_writable && echo writable
