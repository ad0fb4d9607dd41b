# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# A disk that fills up at any point: one line, soon, no image that counts as good, and the space comes back.
levels=5
[ "${KESTRO_LONG:-0}" = 0 ] || levels=20
noisy_source 64M 20000000
kc --tui "$source" a.kim
whole=$(($(stat -c %s a.kim) / 1024))
wrong=0 fitted=0
device full 48M
for ((level = 0; level < levels; level++)); do
    mkfs.ext4 -q -F -b 1024 -m 0 -O ^has_journal "$full" $((4096 + whole * level / levels))
    mounted "$full" f
    free=$(df -B1024 --output=avail f | tail -n 1)
    status=0
    timeout 30 "$KESTRO_CLONE" --tui "$source" f/b.kim >/dev/null 2>err || status=$?
    if [ "$free" -gt "$whole" ]; then
        [ "$status" = 0 ] || wrong=$((wrong + 1))
        fitted=$((fitted + 1))
    else
        cp err said
        [ "$status" = 10 ] && [ "$(wc -l <err)" = 1 ] && ! "$KESTRO_CLONE" --kim-info f/b.kim >/dev/null 2>&1 &&
            [ "$(df -B1024 --output=avail f | tail -n 1)" -gt $((free - 200)) ] || wrong=$((wrong + 1))
    fi
    umount f
done
figures "$levels levels, of which $fitted had room enough"
[ "$fitted" -lt 3 ] && echo "wrong: $wrong"
sed "s#[0-9.]* [KM]iB ([0-9]* bytes)#SIZE#" said
