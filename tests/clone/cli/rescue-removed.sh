# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace
# A device that is pulled out while it is read is no rescue with many holes, but a failure. The kernel's answers are
# given by strace, to each thread from its second chunk on.
device source 40M
head -c 40M /dev/urandom >"$source"
program=$KESTRO_CLONE

# answered ERROR WHEN: a rescue whose reads fail so.
answered() {
    # The leak check of a sanitized build cannot work under strace.
    printf '#!/bin/sh\nexport ASAN_OPTIONS=detect_leaks=0\nexec strace -f -qq -o /dev/null -P %s -e inject=preadv:error=%s:when=%s %s "$@"\n' \
        "$source" "$1" "$2" "$program" >wrapped
    chmod +x wrapped
    KESTRO_CLONE=./wrapped
    echo "$1"
    kc --rescue --tui "$source" a.kim | sed 's/at byte [0-9]*/at byte …/'
    KESTRO_CLONE=$program
    "$KESTRO_CLONE" --kim-info a.kim 2>/dev/null | grep -E "invalid|Unreadable" || true
}

answered ENODEV 2+
answered ENXIO 2+
answered ENOMEDIUM 2+
# One bad transfer, and then its blocks can be read.
answered EIO 2
