# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace
# Killed at any step of adding a file to a finished image: the image is good, with the old file or the new one. Killed at
# any step of beginning one: what is left is no obstacle.

# killed PATH CALL WHEN ARGUMENTS…: a run that is killed when it uses the call on that file for the so-manieth time.
killed() {
    ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null -P "$1" -e "inject=$2:signal=KILL:when=$3" \
        "$KESTRO_CLONE" "${@:4}" >/dev/null
}

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
        { killed "$T/b.kim" "$call" "$when" --write-custom-file kim://b.kim/DiskInfo new; } 2>/dev/null || status=$?
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
# An image that is begun, or begun once more.
kills=0 stuck=0
for start in missing begun; do
    for call in ftruncate pwritev fsync; do
        for when in 1 2 3 4; do
            rm -f b.kim
            [ "$start" = missing ] || "$KESTRO_CLONE" --write-custom-file kim://b.kim/DiskInfo old
            { killed "$T/b.kim" "$call" "$when" --tui "$source" b.kim; } 2>/dev/null || kills=$((kills + 1))
            if ! "$KESTRO_CLONE" --tui "$source" b.kim >/dev/null 2>err || ! "$KESTRO_CLONE" --verify b.kim >/dev/null; then
                stuck=$((stuck + 1))
                figures "$start, $call $when: $(cat err)"
            fi
        done
    done
done
figures "$kills kills at the beginning"
[ "$kills" -gt 12 ] && echo "obstacles: $stuck"
