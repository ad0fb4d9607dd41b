# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# Killed at a random moment, a restore leaves a device that is as it was, one that is whole, or one that looks like
# nothing.
rounds=6
[ "${KESTRO_LONG:-0}" = 0 ] || rounds=50
noisy_source 96M 60000000
device target 96M
kc --tui "$source" a.kim
took=$(microseconds "$KESTRO_CLONE" --tui a.kim "$target")
old=0 nothing=0 whole=0 bad=0
for ((round = 0; round < rounds; round++)); do
    mkfs.ext4 -q -F -L old "$target"
    "$KESTRO_CLONE" --tui a.kim "$target" >/dev/null 2>&1 &
    tool=$!
    random_moment "$took"
    { kill -KILL "$tool"; wait "$tool"; } 2>/dev/null || true
    if [ -z "$(blkid -p -o value -s TYPE "$target" || true)" ]; then
        nothing=$((nothing + 1))
    elif ! e2fsck -fn "$target" >/dev/null 2>&1; then
        bad=$((bad + 1))
    elif [ "$(e2label "$target")" = old ]; then
        old=$((old + 1))
    elif cmp -s "$source" "$target"; then
        whole=$((whole + 1))
    else
        bad=$((bad + 1))
    fi
done
figures "$rounds kills within $took µs: $old left the device as it was, $nothing looking like nothing, $whole whole"
echo "good-looking bad devices: $bad"
[ "$whole" -lt "$rounds" ] && echo "killed at work"
kc --tui a.kim "$target"
e2fsck -fn "$target" >/dev/null 2>&1 && echo clean
