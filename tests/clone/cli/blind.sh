# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2016,SC2154
# needs: root strace
# Where the kernel does not tell what is mounted, or what a device is, nothing is read or written: everything would look
# as if nobody used it.
noisy_source 16M 1000000
device target 16M
mkfs.ext2 -q "$target"
before=$(sha256sum <"$target")

# without PATH ARGUMENTS…: a run that cannot open this file.
without() {
    # The first line of standard error is strace's: what it takes the path for.
    printf '%s\n' '#!/bin/sh' "ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null -P $1 -e inject=openat:error=ENOENT \
        $KESTRO_CLONE \"\$@\" 2>said" 'status=$?' 'tail -n +2 said >&2' 'exit $status' >blind
    chmod +x blind
    KESTRO_CLONE=$T/blind kc "${@:2}"
}
without /proc/self/mountinfo --tui "$source" a.kim
"$KESTRO_CLONE" --tui "$source" a.kim >/dev/null
without /proc/self/mountinfo --tui a.kim "$target"
[ "$before" = "$(sha256sum <"$target")" ] && echo untouched
