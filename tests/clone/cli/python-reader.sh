# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root zstd
# The reader in the documents understands what the program writes, and sees damage.
reader=$(dirname -- "$KESTRO_CLONE_CASE")/../../../docs/read-image.py
device source 24M
mkfs.ext4 -q "$source"
mounted "$source" m
head -c 300000 /dev/urandom >m/noise
umount m
echo record >record
kc --write-custom-file kim://a.kim/DiskInfo record
kc --tui "$source" a.kim
kc --write-custom-file kim://a.kim/later record
mkdir files
python3 "$reader" files a.kim files
cat files/*
python3 "$reader" info a.kim | grep -E '"type"|custom'
python3 "$reader" extract a.kim copy
cmp "$source" copy && echo identical
e2fsck -fn copy >/dev/null 2>&1 && echo clean
for position in 0 100 4200 9000 17000 "$(($(stat -c %s a.kim) - 100))"; do
    cp a.kim damaged
    flip damaged "$position"
    # Where the last part lies depends on how well the file system's own random bytes were packed.
    python3 "$reader" extract damaged copy 2>&1 | sed -E 's/at [0-9]{6}$/at the last part/' || true
done
