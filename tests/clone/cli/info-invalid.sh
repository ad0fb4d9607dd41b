# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# Whatever is no good image: "invalid file" on both streams, and a failure.
: >empty
echo text >foreign
mkdir folder
mkfifo pipe
for file in missing empty foreign folder pipe "odd
name"; do
    kc --kim-info "$file"
    cat out
    kc --verify "$file"
done
