# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# The reader of the progress goes away: a backup stops and is incomplete, a restore goes on to its end.
device source 200M
device target 200M
head -c 150000000 /dev/urandom | dd of="$source" bs=1M iflag=fullblock conv=notrunc status=none
{ "$KESTRO_CLONE" --tui "$source" a.kim 2>err || echo $? >status; } | head -c 1 >/dev/null
cat status err
kc --kim-info a.kim
kc --tui "$source" a.kim
{ "$KESTRO_CLONE" --tui a.kim "$target" 2>err && echo "came to its end" >status; } | head -c 1 >/dev/null
cat status err
cmp "$source" "$target" && echo identical
# Terminated: a restore leaves nothing that looks like a finished one.
mkfs.ext4 -q "$source"
kc --tui "$source" b.kim
kc --tui b.kim "$target"
"$KESTRO_CLONE" --tui a.kim "$target" >/dev/null 2>err &
tool=$!
awaited "$tool" holds_nothing "$target"
kill -TERM "$tool"
wait "$tool" || echo "exit $?"
cat err
cmp -n 1048576 "$target" /dev/zero && echo "nothing at its beginning"
