# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
kc
kc --nothing
kc --tui one
kc --tui one two
kc --kim-info
kc --kim-info --rescue x
kc --verify --json x
kc --write-custom-file x.kim/a b
kc --write-custom-file kim://x.kim b
kc --write-custom-file kim://x.kim/.. b
kc --version
cat out
kc --help
grep -c . out
