# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# A complete image is replaced by one that is made beside it under a name of its own: nothing else there is touched but
# what a killed run left.
noisy_source 40M 3000000
kc --tui "$source" a.kim
echo mine >a.kim.new
cp a.kim a.kim.new-abcdef
echo mine >a.kim.new-ghijkl
kc --write-custom-file kim://a.kim.new-mnopqr/DiskInfo a.kim.new
kc --write-custom-file kim://a.kim.new-longer-name/DiskInfo a.kim.new
before=$(stat -c %i a.kim)
kc --tui "$source" a.kim
[ "$before" != "$(stat -c %i a.kim)" ] && echo replaced
cat a.kim.new a.kim.new-ghijkl
kc --verify a.kim.new-abcdef
printf '%s\n' a.kim*
# A backup and a custom file at once, of which one waits for the other or gives up: what was reported as written is there.
for i in 1 2 3 4 5 6; do
    echo "$i" >"file$i"
    "$KESTRO_CLONE" --tui "$source" a.kim >/dev/null 2>err1 &
    tool=$!
    status=0
    "$KESTRO_CLONE" --write-custom-file "kim://a.kim/file$i" "file$i" 2>err2 || status=$?
    wait "$tool" || grep -v 'in use by another run' err1 || true
    if [ "$status" = 0 ]; then
        "$KESTRO_CLONE" --read-custom-file "kim://a.kim/file$i" copy
        cmp copy "file$i"
    else
        grep -v 'in use by another run' err2 || true
    fi
done
kc --verify a.kim
