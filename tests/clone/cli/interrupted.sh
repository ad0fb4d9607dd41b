# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace mkfs.vfat
# Terminated while it waits for something else than the data: it ends soon, and leaves the device as it was.

# ended PID: how it ended; it is killed when that takes long.
ended() {
    local status=0
    for ((i = 0; i < 3000; i++)); do kill -0 "$1" 2>/dev/null || break; sleep 0.01; done
    kill -KILL "$1" 2>/dev/null && echo "had to be killed"
    wait "$1" || status=$?
    echo "exit $status"
    cat err
}

# While another program tells what is in use.
device source 40M
mkfs.vfat -F 32 -s 1 "$source" >/dev/null
mkdir programs
printf '#!/bin/sh\ntouch asked\nsleep 1\nseq 1 100000\n' >programs/partclone.fat
chmod +x programs/partclone.fat
PATH=$T/programs:$PATH "$KESTRO_CLONE" --tui "$source" a.kim >/dev/null 2>err &
tool=$!
awaited "$tool" test -e asked
sleep 0.2
kill -TERM "$tool"
ended "$tool"

# unmounting IMAGE DEVICE: a restore, in the variable tool, that stays for seconds at unmounting the device.
unmounting() {
    rm -f calls
    ASAN_OPTIONS=detect_leaks=0 strace -D -f -qq -o calls -e trace=umount2 -e inject=umount2:delay_enter=3000000 \
        "$KESTRO_CLONE" --tui "$@" >/dev/null 2>err &
    tool=$!
    awaited "$tool" grep -qs umount2 calls
}

# Between the check of the image and the first write.
device target 40M
mkfs.ext4 -q -L new "$source"
kc --tui "$source" b.kim
mkfs.ext4 -q -L old "$target"
mounted "$target" m
unmounting b.kim "$target"
kill -TERM "$tool"
ended "$tool"
e2label "$target"
findmnt -rno TARGET m >/dev/null && echo "mounted again"
# A link that leads to another device by then.
device other 40M
poison "$other"
ln -s "$target" link
unmounting b.kim link
ln -sfn "$other" link
ended "$tool"
is_poison "$other" && echo untouched
e2label "$target"
findmnt -rno TARGET m >/dev/null && echo "mounted again"
