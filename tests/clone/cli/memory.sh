# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root python3
# At any size no run takes more than 64 MiB of memory, and telling what an image holds takes no time. The largest sources
# have the largest chunks and tables; they are begun here, not finished.
"$KESTRO_CLONE_PROGRAMS/make_large_image" large.kim 14
device source 15T
# Whatever the target is asked to keep, it gets no more room than this.
device small 1G
mkfs.ext4 -q "$small"
mounted "$small" m
truncate -s 15T m/target.disk
attach target m/target.disk

# bounded NAME ARGUMENTS…: runs the program for four seconds at most and looks at the most memory that it had. A sanitizer
# needs memory of its own.
bounded() {
    local name=$1 most=65536 peak
    shift
    ! grep -qaE '__(asan|tsan)_init' "$KESTRO_CLONE" || most=1048576
    peak=$(timeout 60 python3 - "$KESTRO_CLONE" "$@" <<'PY'
import resource, subprocess, sys
with open("out", "w") as out, open("err", "w") as err:
    tool = subprocess.Popen(sys.argv[1:], stdout=out, stderr=err)
    try:
        tool.wait(4)
    except subprocess.TimeoutExpired:
        tool.terminate()
        tool.wait()
print(resource.getrusage(resource.RUSAGE_CHILDREN).ru_maxrss)
PY
    )
    figures "$name: $peak KiB, $(tail -n 1 out), $(cat err)"
    [ "$(wc -l <out)" -gt 0 ] && [ "$peak" -lt "$most" ] && echo "$name: bounded" || echo "$name: $peak KiB"
}

took=$(microseconds "$KESTRO_CLONE" --kim-info large.kim)
figures "told in $took µs"
[ "$took" -lt 3000000 ] && echo "told in no time"
bounded backup --tui "$source" a.kim
bounded verify --verify large.kim
bounded restore --tui large.kim "$target"
detach "$target"
