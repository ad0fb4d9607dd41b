#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Runs the case $KESTRO_CLONE_CASE in a new folder $T. What the case makes with the functions here is removed at the
# end, whatever happens: mounts first, then loop devices, then the folder.
set -euo pipefail

T=$(mktemp -d "${TMPDIR:-/tmp}/kestro-clone-case.XXXXXX")
loops=()
names=()
mounts=()
# Only what is still attached is detached at the end: a number that was given back may be somebody else's by then.
declare -A attached=()

clean_up() {
    local item last
    end_jobs
    for item in "${!attached[@]}"; do swapoff "$item" 2>/dev/null || true; done
    # Twice: a loop device may stand for a file on one of the mounts, and who was killed may not be gone yet.
    for last in "" --lazy; do
        for ((item = ${#mounts[@]} - 1; item >= 0; item--)); do
            # A frozen file system keeps its device for ever.
            ! mountpoint -q -- "${mounts[item]}" || fsfreeze -u "${mounts[item]}" 2>/dev/null || true
            umount -q ${last:+"$last"} -- "${mounts[item]}" 2>/dev/null || true
        done
        for item in "${!attached[@]}"; do
            # Once only: the number may be somebody else's by the second time.
            if losetup -d "$item" 2>/dev/null; then unset "attached[$item]"; fi
        done
    done
    rm -rf --one-file-system -- "$T"
}
trap clean_up EXIT

# What a case that failed left in the background, stopped or not, would keep its devices busy.
end_jobs() {
    local job
    for job in $(jobs -rp); do
        # Else the shell would tell of its end where the case's output is.
        disown "$job"
        kill -KILL "$job" 2>/dev/null || true
    done
}

# Names of this run become names that are the same in every run.
same_every_time() {
    local script="s#$T#T#g" i
    # The latest first: a number that was given back may be in use again.
    for ((i = ${#loops[@]} - 1; i >= 0; i--)); do script="$script;s#${loops[i]}\\b#<${names[i]}>#g"; done
    sed "$script"
}

# device NAME SIZE [LOSETUP OPTIONS…]: a loop device over a new sparse file, in the variable NAME.
device() {
    local name=$1 size=$2
    shift 2
    truncate -s "$size" "$T/$name.disk"
    attach "$name" "$@" "$T/$name.disk"
}

# attach NAME LOSETUP-ARGUMENTS…: a loop device in the variable NAME.
attach() {
    local name=$1 node
    shift
    node=$(losetup -f --show "$@")
    # A loop device keeps the partitions that an earlier user gave it.
    partx -d "$node" 2>/dev/null || true
    attached[$node]=1
    loops+=("$node")
    names+=("$name")
    printf -v "$name" %s "$node"
}

# detach NODE: ends a loop device before the end of the case.
detach() {
    losetup -d "$1"
    unset "attached[$1]"
}

# poison DEVICE: fills it with 0xA5.
poison() {
    local size
    size=$(blockdev --getsize64 "$1")
    head -c "$size" /dev/zero | tr '\0' '\245' | dd of="$1" bs=1M iflag=fullblock conv=fsync status=none
}

# is_poison DEVICE: true when no byte of it was changed since.
is_poison() {
    cmp -s "$1" <(head -c "$(blockdev --getsize64 "$1")" /dev/zero | tr '\0' '\245')
}

# holds_nothing DEVICE: true when nobody would take its content for anything.
holds_nothing() {
    [ -z "$(blkid -p "$1")" ]
}

# flip FILE POSITION [MASK]: changes bits of one byte.
flip() {
    python3 - "$@" <<'PY'
import sys
position, mask = int(sys.argv[2]), int(sys.argv[3]) if len(sys.argv) > 3 else 1
with open(sys.argv[1], "r+b") as file:
    file.seek(position)
    old = file.read(1)[0]
    file.seek(position)
    file.write(bytes([old ^ mask]))
PY
}

# mounted DEVICE FOLDER [OPTIONS]
mounted() {
    mkdir -p "$2"
    mount ${3:+-o "$3"} "$1" "$2"
    mounts+=("$2")
}

# fill FOLDER: files of the kinds that a copy loses most easily.
fill() (
    cd -- "$1"
    seq 1 200000 >numbers
    head -c 3000000 /dev/urandom >noise
    mkdir -p deep/er "odd name $(printf '\001')"
    ln -s numbers link
    for i in $(seq 300); do echo "$i" >"deep/er/$i"; done
    rm -f deep/er/*7
    if ln numbers hard 2>/dev/null; then
        truncate -s 5M sparse
        printf x | dd of=sparse bs=1 seek=3000000 conv=notrunc status=none
        chmod 4711 noise
        chown 123:456 deep
        setfattr -n user.kestro -v value numbers
        setfacl -m u:77:rx deep
        setcap cap_net_raw+p noise
    fi
    sync -f .
)

# listing FOLDER: everything about its files, to be compared as text.
listing() (
    cd -- "$1"
    find . -printf '%p %y %m %U:%G %s %T@ %C@ %n %l\n' | sort
    find . -type f -print0 | sort -z | xargs -0r sha256sum
    getfacl -pnR . 2>/dev/null
    getfattr -dR -m - . 2>/dev/null
)

# figures TEXT…: what is worth knowing of a run and differs from one to the next. Goes to the test's own output, which is
# not compared.
figures() {
    printf '%s\n' "$*" >&3
}

# progress_holds FILE: every line ends in a percentage with two decimals that never goes backwards.
progress_holds() {
    awk '$NF !~ /^[0-9]+\.[0-9][0-9]%$/ || $NF + 0 < last { bad = 1 }
         { last = $NF + 0 }
         END { exit bad }' "$1"
}

# given_up TEXT…: ends the case as failed.
given_up() {
    echo "given up: $*"
    exit 1
}

# awaited PID COMMAND…: returns when the command succeeds. The case fails when the process ends before, or a minute has
# passed.
awaited() {
    local process=$1 deadline=$((SECONDS + 60))
    shift
    until "$@"; do
        kill -0 "$process" 2>/dev/null || given_up "the process ended before: $*"
        [ "$SECONDS" -lt "$deadline" ] || given_up "waited too long for: $*"
        sleep 0.005
    done
}

# larger FILE BYTES
larger() {
    [ "$(stat -c %s -- "$1" 2>/dev/null || echo 0)" -gt "$2" ]
}

# grown FILE BYTES PID: returns when the process, which still runs, has made the file larger than that.
grown() {
    awaited "$3" larger "$1" "$2"
    kill -0 "$3" 2>/dev/null || given_up "the process ended too early: $1"
}

# slowly ARGUMENTS…: starts the program in a process group of its own, with its standard error in err and its process in
# the variable tool. Each thread's second write takes seconds, so that what happens next finds it at work.
# shellcheck disable=SC2034 # cases use the variable
slowly() {
    # The tracer stands apart, where no signal to that group reaches it, and says nothing where the program does.
    # shellcheck disable=SC2016 # for the inner shell
    ASAN_OPTIONS=detect_leaks=0 setsid strace -DD -f -qq -o /dev/null -e trace=pwritev \
        -e inject=pwritev:delay_enter=5000000:when=2 sh -c 'exec "$@" 2>err' sh "$KESTRO_CLONE" "$@" >/dev/null 2>&1 &
    tool=$!
}

# random_moment MICROSECONDS: sleeps for a random time that is a little longer than that at most.
random_moment() {
    local moment=$(((RANDOM * 32768 + RANDOM) % ($1 * 11 / 10)))
    sleep "$(printf '%d.%06d' $((moment / 1000000)) $((moment % 1000000)))"
}

# microseconds COMMAND…: how long the command takes; its output is thrown away.
microseconds() {
    local begin
    begin=$(date +%s%N)
    "$@" >/dev/null
    echo $((($(date +%s%N) - begin) / 1000))
}

# kc ARGUMENTS…: runs the program; prints its exit status, the percentage that it ended with when it succeeded, and its
# standard error.
kc() {
    local status=0
    # A tool that waits for its own frozen source would hold up the whole machine; ended, it thaws it.
    timeout -k 10 200 "$KESTRO_CLONE" "$@" >"$T/out" 2>"$T/err" || status=$?
    printf '%s -> %s%s\n' "$*" "$status" "$(tail -n 1 "$T/out" | grep -oE ' [0-9.]+%$' || true)" |
        sed '/-> 0 /!s/ [0-9.]*%$//' | same_every_time
    same_every_time <"$T/err"
    case " $* " in
        *' --tui '* | *' --verify '*) progress_holds "$T/out" || echo "bad progress" ;;
    esac
}

# round_trip SOURCE TARGET: to a.kim and to a poisoned device.
round_trip() {
    poison "$2"
    kc --tui "$1" a.kim
    kc --tui a.kim "$2"
}

# same_after MOUNT-OPTIONS CHECK…: fills the device $source, takes it to the device $target and compares file by file.
same_after() {
    local options=$1
    shift
    mounted "$source" m
    fill m
    listing m >before
    umount m
    round_trip "$source" "$target"
    reader
    "$@" "$target" >/dev/null 2>&1 && echo clean
    # Apart from its source: the same file system may not be mounted twice.
    detach "$source"
    mounted "$target" m "$options"
    listing m | diff before - && echo identical
}

# noisy_source SIZE BYTES: an ext4 device $source that holds so many random bytes.
noisy_source() {
    device source "$1"
    mkfs.ext4 -q "$source"
    mounted "$source" m
    head -c "$2" /dev/urandom >m/noise
    umount m
}

# parts_listing DEVICE NUMBERS OPTIONS: checks, fills when it may write, and lists the ext file systems of partitions.
parts_listing() {
    local part partition
    for part in $2; do
        attach partition -o "$(($(partx -go START -n "$part" "$1") * 512))" \
            --sizelimit "$(($(partx -go SECTORS -n "$part" "$1") * 512))" "$1"
        e2fsck -fn "$partition" >/dev/null 2>&1 && echo clean
        mounted "$partition" m "$3"
        [ "$3" = ro ] || fill m
        listing m
        umount m
        detach "$partition"
    done
}

# shellcheck disable=SC2120 # cases give the argument
# reader [IMAGE]: who found the used blocks of an image, a.kim by default.
reader() {
    local image=${1:-a.kim}
    "$KESTRO_CLONE" --kim-info --json "$image" | python3 -c '
import json, sys
for part in json.load(sys.stdin)["parts"]:
    print(part["partition"], part["type"] or "-", part["label"] or "-", part["reader"])'
}

# The functions above use devices that cases name.
source=
target=
cd -- "$T"
# shellcheck source=/dev/null
. "$KESTRO_CLONE_CASE"
