# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# What has no reader is imaged whole, to the last odd sector; zeros take no room. Swap space is only its header.
device source 33555968
device target 40M
printf 'some bytes' | dd of="$source" bs=1 seek=20000000 conv=notrunc status=none
printf 'the last bytes' | dd of="$source" bs=1 seek=33555950 conv=notrunc status=none
round_trip "$source" "$target"
reader
cmp -n 33555968 "$source" "$target" && echo identical
cmp <(tail -c +33555969 "$target") <(head -c 8387072 /dev/zero | tr '\0' '\245') && echo "nothing behind it"
[ "$(stat -c %s a.kim)" -lt 40000 ] && echo small
mkswap -q -L swap "$source"
kc --tui "$source" swap.kim
grep -c UUID_ <("$KESTRO_CLONE" --kim-info swap.kim) || true
grep Content <("$KESTRO_CLONE" --kim-info swap.kim)
