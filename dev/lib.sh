# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What every developer command shares. Source it; it runs nothing by itself.

project_root() {
    cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd
}

die() {
    printf '%s: %s\n' "${0##*/}" "$1" >&2
    exit 1
}

# listed_packages [GROUP…]: the packages of dev/packages.txt: the common ones and those of the groups.
listed_packages() {
    awk -v groups=" $* " '
        { sub(/#.*/, ""); gsub(/[[:space:]]/, "") }
        /^\[.*\]$/ { group = substr($0, 2, length($0) - 2); next }
        NF && (group == "" || index(groups, " " group " "))
    ' "$(project_root)/dev/packages.txt"
}

# The listed packages that are not installed, one a line.
missing_packages() {
    local package
    while read -r package; do
        [ "$(dpkg-query -W -f '${db:Status-Status}' "$package" 2>/dev/null)" = installed ] || printf '%s\n' "$package"
    done < <(listed_packages "$@")
}

# install_packages [GROUP…]: installs what is missing; KESTRO_SKIP_INSTALL=1 skips it.
install_packages() {
    [ "${KESTRO_SKIP_INSTALL:-0}" != 1 ] || return 0
    local missing
    mapfile -t missing < <(missing_packages "$@")
    [ "${#missing[@]}" -gt 0 ] || return 0
    [ "$(id -u)" = 0 ] || die "these packages are missing (install them or run as root): ${missing[*]}"
    printf 'Installing %s\n' "${missing[*]}"
    apt-get update -qq
    DEBIAN_FRONTEND=noninteractive apt-get install -y -qq --no-install-recommends "${missing[@]}" >/dev/null
}

# configure_preset NAME: configures build/NAME.
configure_preset() {
    local log
    log=$(project_root)/build/$1.configure.log
    (cd -- "$(project_root)" && cmake --preset "$1" -Wno-dev) >"$log" 2>&1 || { cat "$log"; return 1; }
}

# build_preset NAME [TARGET…]: configures build/NAME and builds it.
build_preset() {
    local preset=$1
    shift
    configure_preset "$preset"
    (cd -- "$(project_root)" && cmake --build --preset "$preset" ${1:+--target "$@"})
}
