# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash disable=SC2154
# needs: root setpriv
# An image that the user may not read is asked for once more through "sudo -n", and once only.
device source 8M
kc --tui "$source" a.kim
chmod 755 .
mkdir bin
install -m 755 "$KESTRO_CLONE" bin/tool
cat >bin/sudo <<'TXT'
#!/bin/sh
printf "%s\\n" "$*" >>"$(dirname "$0")/calls"
cat "$(dirname "$0")/answer"
TXT
chmod 755 bin/sudo
: >bin/calls
chmod 666 bin/calls
as_nobody() {
    local status=0
    setpriv --reuid=65534 --regid=65534 --clear-groups env PATH="$T/bin:$PATH" bin/tool "$@" 2>err || status=$?
    echo "exit $status"
    same_every_time <err
}
echo "Image: as root tells it" >bin/answer
as_nobody --kim-info a.kim
as_nobody --kim-info --json a.kim
same_every_time <bin/calls
# What fails as root too.
rm bin/answer
as_nobody --kim-info a.kim
# Nothing to be asked for: the file is not there.
as_nobody --kim-info none.kim
grep -c . bin/calls
