# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# Killed at a random moment, a restore leaves a device that is whole or one that looks like nothing.
rounds=6
[ "${KESTRO_LONG:-0}" = 0 ] || rounds=50
noisy_source 96M 60000000
device target 96M
kc --tui "$source" a.kim
mkfs.xfs -q -f "$target" 2>/dev/null || mkfs.ext4 -q -F -L old "$target"
bad=0
for ((round = 0; round < rounds; round++)); do
    "$KESTRO_CLONE" --tui a.kim "$target" >/dev/null 2>&1 &
    tool=$!
    sleep "$(printf '0.%06d' $((RANDOM * 32768 % 900000)))"
    kill -KILL "$tool" 2>/dev/null || true
    { wait "$tool"; } 2>/dev/null || true
    type=$(blkid -p -o value -s TYPE "$target" || true)
    if [ "$type" = ext4 ] && [ "$(e2label "$target")" != old ]; then
        e2fsck -fn "$target" >/dev/null 2>&1 || bad=$((bad + 1))
    fi
done
echo "good-looking bad devices: $bad"
kc --tui a.kim "$target"
e2fsck -fn "$target" >/dev/null 2>&1 && echo clean
