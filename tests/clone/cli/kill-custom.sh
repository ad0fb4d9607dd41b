# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace
# Killed at any step of adding a file to a finished image: the image is good, with the old file or the new one.
device source 24M
mkfs.ext4 -q "$source"
echo old >old
kc --write-custom-file kim://a.kim/DiskInfo old
kc --tui "$source" a.kim
kills=0 before=0 after=0 bad=0
for call in pwritev fsync; do
    for ((when = 1; ; when++)); do
        cp a.kim b.kim
        echo "$call $when" >new
        status=0
        { ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null -P "$T/b.kim" -e "inject=$call:signal=KILL:when=$when" \
            "$KESTRO_CLONE" --write-custom-file kim://b.kim/DiskInfo new; } 2>/dev/null || status=$?
        "$KESTRO_CLONE" --verify b.kim >/dev/null && "$KESTRO_CLONE" --read-custom-file kim://b.kim/DiskInfo copy ||
            bad=$((bad + 1))
        if [ "$status" = 0 ]; then
            cmp -s copy new || bad=$((bad + 1))
            break
        fi
        kills=$((kills + 1))
        if cmp -s copy old; then
            before=$((before + 1))
        elif cmp -s copy new; then
            after=$((after + 1))
        else
            bad=$((bad + 1))
        fi
    done
done
figures "$kills kills: $before left the old file, $after the new one"
echo "$kills kills, bad images: $bad"
