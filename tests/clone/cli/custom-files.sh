# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root
# A custom file goes into an image that does not exist yet; such an image is not a good one.
printf 'UUID=1\nVersion=1.1\n' >DiskInfo
kc --write-custom-file "kim://$T//a.kim/DiskInfo" DiskInfo
stat -c '%a' a.kim
kc --kim-info a.kim
cat out
kc --read-custom-file "kim://$T/a.kim/DiskInfo" copy
device source 4M
kc --tui "$source" a.kim
kc --read-custom-file "kim://$T/a.kim/DiskInfo" copy
cmp copy DiskInfo
stat -c '%a' copy
echo two >second
kc --write-custom-file "kim://a.kim/a b" second
echo replaced >DiskInfo
kc --write-custom-file "kim://a.kim/DiskInfo" DiskInfo
kc --read-custom-file "kim://a.kim/DiskInfo" copy
cat copy
kc --read-custom-file "kim://a.kim/a b" copy
cat copy
kc --read-custom-file "kim://a.kim/none" copy
cat copy
: >empty
kc --write-custom-file "kim://a.kim/empty" empty
kc --read-custom-file "kim://a.kim/empty" empty
head -c 1048577 /dev/zero >large
kc --write-custom-file "kim://a.kim/large" large
kc --write-custom-file "kim://a.kim/missing" missing
kc --write-custom-file "kim://none/a.kim/DiskInfo" DiskInfo
echo text >text
kc --write-custom-file "kim://text/DiskInfo" DiskInfo
cat text
kc --read-custom-file "kim://text/DiskInfo" copy
ls
