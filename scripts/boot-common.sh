# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What the scripts that change how a machine starts need of a script: options, a mount namespace of their own, clean-up. Sourced only.

die() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit 1
}

note() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
}

# Runs the script again in a mount namespace of its own, so that no mount of it is ever seen by others. Asking
# for help needs none.
enter_private_namespace() {
    case ${1:-} in -h | --help) usage; exit 0 ;; esac
    [ "$(id -u)" = 0 ] || die "only root can do this"
    if [ "${KESTRO_BOOT_NAMESPACE:-}" != private ]; then
        KESTRO_BOOT_NAMESPACE=private exec unshare --mount --propagation private -- "$(readlink -f -- "$0")" "$@"
    fi
    mount --make-rprivate /
    work=$(mktemp -d -- "${TMPDIR:-/tmp}/kestro-boot.XXXXXXXXXX")
    trap clean_up EXIT
    trap 'exit 129' HUP
    trap 'exit 130' INT
    trap 'exit 143' TERM
    system=$work/system
    mkdir -- "$system"
}

# rmdir, not rm: whatever could not be unmounted must not be emptied.
clean_up() {
    local point
    for point in "$work"/*/; do
        point=${point%/}
        if mountpoint -q -- "$point"; then
            sync -f -- "$point" || true
            umount --recursive -- "$point" || umount --recursive --lazy -- "$point" || true
        fi
        rmdir -- "$point" || true
    done
    rmdir -- "$work" || true
}

# Sets dry_run, and arguments to the words that are left.
take_dry_run() {
    dry_run=
    if [ "${1:-}" = --dry-run ]; then
        dry_run=1
        shift
    fi
    # shellcheck disable=SC2034  # read by the scripts
    arguments=("$@")
}

# run WORD…: the one door for everything that writes.
run() {
    if [ -n "$dry_run" ]; then
        printf 'would run: %s\n' "${*@Q}"
    else
        "$@"
    fi
}

require_block_device() {
    [[ $1 =~ ^/dev/[A-Za-z0-9/._+:-]+$ && $1 != *..* ]] || die "not the path of a device: '$1'"
    [ -b "$1" ] || die "$1 is not a block device"
}
