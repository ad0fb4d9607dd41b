# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# Killed at a random moment, a backup leaves an image that is good or one that nobody takes for good.
rounds=8
[ "${KESTRO_LONG:-0}" = 0 ] || rounds=50
noisy_source 96M 60000000
begin=$(date +%s%N)
"$KESTRO_CLONE" --tui "$source" a.kim >/dev/null
took=$((($(date +%s%N) - begin) / 1000))
bad=0
for ((round = 0; round < rounds; round++)); do
    rm -f b.kim
    "$KESTRO_CLONE" --tui "$source" b.kim >/dev/null 2>&1 &
    tool=$!
    sleep "$(printf '%d.%06d' 0 $((RANDOM * 32768 % (took < 900000 ? took * 11 / 10 : 990000))))"
    kill -KILL "$tool" 2>/dev/null || true
    { wait "$tool"; } 2>/dev/null || true
    if "$KESTRO_CLONE" --kim-info b.kim >/dev/null 2>&1; then
        "$KESTRO_CLONE" --verify b.kim >/dev/null || bad=$((bad + 1))
    fi
done
echo "good-looking bad images: $bad"
# What a killed run left is no obstacle.
kc --tui "$source" b.kim
kc --verify b.kim
# An older image stays in force until the new one is complete.
"$KESTRO_CLONE" --tui "$source" a.kim >/dev/null 2>&1 &
tool=$!
sleep 0.1
kill -KILL "$tool"
{ wait "$tool"; } 2>/dev/null || true
kc --verify a.kim
