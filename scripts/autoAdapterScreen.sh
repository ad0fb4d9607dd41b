#!/usr/bin/env bash
# SPDX-License-Identifier: GPL-3.0-or-later
# Gives each connected display its preferred mode and switches displays off that were pulled out.
set -euo pipefail

usage() {
    cat <<'TXT'
Usage: autoAdapterScreen.sh [--dry-run]

Asks xrandr for the displays. Each connected one gets its preferred mode, unless it shows it already; one that
is no longer connected but still has a mode is switched off. Without an X display nothing happens.
  --dry-run   print the xrandr call instead of running it
TXT
}

# xrandr's own report on standard input; the options that correct it on standard output, one a line. In the
# report "*" marks the mode in use and "+" the preferred one:
#   HDMI-1 connected primary 1024x768+0+0 (normal left inverted right x axis y axis) 510mm x 290mm
#      1920x1080     60.00 +  59.94
#      1024x768      60.00*
corrections() {
    awk '
        function settle() {
            if (output == "") return
            if (state == "disconnected") { if (active) print "--output\n" output "\n--off" }
            else if (!active || (preferred && !current)) print "--output\n" output "\n--auto"
        }
        $2 == "connected" || $2 == "disconnected" {
            settle()
            output = $1; state = $2; preferred = current = 0
            active = ($0 ~ / [0-9]+x[0-9]+\+[0-9]+\+[0-9]+/)
            next
        }
        /^[^ \t]/ { settle(); output = ""; next }
        /\+/ { preferred = 1; if ($0 ~ /\* *\+/) current = 1 }
        END { settle() }
    '
}

dry_run=
case ${1:-} in
    -h | --help) usage; exit 0 ;;
    --dry-run) dry_run=1 ;;
    '') ;;
    *) usage >&2; exit 2 ;;
esac

if [ -z "${DISPLAY:-}" ] || ! command -v xrandr >/dev/null || ! report=$(xrandr --query); then
    echo "autoAdapterScreen.sh: no X display to adapt" >&2
    exit 0
fi
mapfile -t options < <(corrections <<<"$report")
[ "${#options[@]}" -gt 0 ] || exit 0
if [ -n "$dry_run" ]; then
    printf 'would run: xrandr %s\n' "${options[*]}"
else
    xrandr "${options[@]}"
fi
