# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace
# Killed at a random moment, a backup leaves an image that is good or one that nobody takes for good.
rounds=8
[ "${KESTRO_LONG:-0}" = 0 ] || rounds=50
noisy_source 96M 60000000
took=$(microseconds "$KESTRO_CLONE" --tui "$source" a.kim)
missing=0 incomplete=0 good=0 bad=0
for ((round = 0; round < rounds; round++)); do
    rm -f b.kim
    "$KESTRO_CLONE" --tui "$source" b.kim >/dev/null 2>&1 &
    tool=$!
    random_moment "$took"
    { kill -KILL "$tool"; wait "$tool"; } 2>/dev/null || true
    if ! [ -e b.kim ]; then
        missing=$((missing + 1))
    elif ! "$KESTRO_CLONE" --kim-info b.kim >/dev/null 2>&1; then
        incomplete=$((incomplete + 1))
    elif "$KESTRO_CLONE" --verify b.kim >/dev/null; then
        good=$((good + 1))
    else
        bad=$((bad + 1))
    fi
done
figures "$rounds kills within $took µs: $missing left no image, $incomplete an invalid one, $good a good one"
echo "good-looking bad images: $bad"
[ "$good" -lt "$rounds" ] && echo "killed at work"
# What a killed run left is no obstacle.
kc --tui "$source" b.kim
kc --verify b.kim
# An older image stays in force until the new one is complete.
before=$(stat -c %i a.kim)
slowly --tui "$source" a.kim
begun_beside() { larger "$(compgen -G 'a.kim.new-*')" 2000000; }
awaited "$tool" begun_beside
{ kill -KILL "$tool"; wait "$tool"; } 2>/dev/null || true
[ "$before" = "$(stat -c %i a.kim)" ] && begun_beside && echo "killed beside the older one"
kc --verify a.kim
