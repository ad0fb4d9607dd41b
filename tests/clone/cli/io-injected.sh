# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace
# Every call that reads, writes or makes durable fails once, in every thread at its first, second, third… use: one line
# and a failure each time, no image that counts as good, no device that looks restored. strace gives the kernel's answers.
noisy_source 40M 12000000
device target 40M

# failing PATH CALL WHEN ARGUMENTS…: a run in which the call on that file fails; its status in $status, its words in err.
failing() {
    status=0
    ASAN_OPTIONS=detect_leaks=0 timeout 60 strace -f -qq -o /dev/null -P "$1" -e "inject=$2:error=EIO:when=$3" \
        "$KESTRO_CLONE" "${@:4}" >/dev/null 2>err || status=$?
}

# one_line: the run failed, and said so in one line that is the tool's.
one_line() {
    [ "$status" != 0 ] && [ "$(wc -l <err)" = 1 ] && grep -q '^kestro-clone: ' err
}

# every_failure NAME PATH CALL JUDGE ARGUMENTS…: until the call is not used so often any more.
every_failure() {
    local name=$1 path=$2 call=$3 judge=$4 when wrong=0
    shift 4
    for ((when = 1; when < 100; when++)); do
        prepare
        failing "$path" "$call" "$when" "$@"
        [ "$status" != 0 ] || break
        if ! { one_line && "$judge"; }; then
            wrong=$((wrong + 1))
            figures "$name, $call $when: $status, $(cat err)"
        fi
    done
    figures "$name, $call: $((when - 1)) failures"
    [ "$when" -gt 1 ] && [ "$when" -lt 100 ] && echo "$name, $call: wrong $wrong"
}

prepare() { rm -f b.kim; }
no_good_image() { ! "$KESTRO_CLONE" --kim-info b.kim >/dev/null 2>&1; }
every_failure backup "$T/b.kim" pwritev no_good_image --tui "$source" b.kim
every_failure backup "$T/b.kim" preadv no_good_image --tui "$source" b.kim
every_failure backup "$T/b.kim" fsync no_good_image --tui "$source" b.kim
every_failure backup "$T/b.kim" ftruncate no_good_image --tui "$source" b.kim
every_failure backup "$T" fsync no_good_image --tui "$source" b.kim

# The kernel gives the progress, the reading back and one that works a thread, and no more: that one does it all.
ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null -e inject=clone3:error=EAGAIN:when=4+ \
    "$KESTRO_CLONE" --tui "$source" b.kim >/dev/null && echo "backup with few threads"

# What a failure at the very end leaves is begun anew by the next run, although it has a custom file.
printf 'UUID=1\n' >record
prepare() {
    rm -f b.kim
    "$KESTRO_CLONE" --write-custom-file "kim://$T/b.kim/record" record
}
no_obstacle() { no_good_image && "$KESTRO_CLONE" --tui "$source" b.kim >/dev/null; }
every_failure 'backup with a record' "$T/b.kim" fsync no_obstacle --tui "$source" b.kim

"$KESTRO_CLONE" --tui "$source" a.kim >/dev/null
prepare() {
    wipefs -qa "$target"
    mkfs.ext2 -q -F -L old "$target"
}
looks_like_nothing() { [ -z "$(blkid -p "$target")" ] || [ "$(e2label "$target")" = old ]; }
every_failure restore "$target" pwritev looks_like_nothing --tui a.kim "$target"
every_failure restore "$target" preadv looks_like_nothing --tui a.kim "$target"
every_failure restore "$target" fsync looks_like_nothing --tui a.kim "$target"
every_failure restore "$T/a.kim" preadv looks_like_nothing --tui a.kim "$target"
