# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root strace
# Lines come at least once a second, each in one write, also while a device takes long.
noisy_source 40M 20000000
gaps() {
    local last=$EPOCHREALTIME line now longest=0 all=()
    while IFS= read -r line; do
        now=$EPOCHREALTIME
        ((${now/./} - ${last/./} <= longest)) || longest=$((${now/./} - ${last/./}))
        last=$now
        # Kept in memory: a busy disk must not hold up who looks at the clock.
        all+=("$line")
    done
    printf '%s\n' "${all[@]}" >lines
    figures "${#all[@]} lines, at most $longest µs apart"
    # More than promised, as the machine may be busy, but less than the device takes.
    [ "${#all[@]}" -gt 4 ] && [ "$longest" -lt 2300000 ] && echo "at least once a second"
}
ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o /dev/null -P "$source" -e inject=preadv:delay_enter=2500000:when=2 \
    "$KESTRO_CLONE" --tui "$source" a.kim | gaps
progress_holds lines && tail -n 1 lines | grep -o ' 100.00%$'
ASAN_OPTIONS=detect_leaks=0 strace -f -qq -o writes -e trace=write "$KESTRO_CLONE" --verify a.kim | cat >lines
echo "$(($(grep -c 'write(1, ".' writes) - $(wc -l <lines))) writes more than lines"
