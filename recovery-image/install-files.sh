# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The files that the installer writes, on the recovery partition and in the installed system. Sourced only.
# shellcheck disable=SC2154  # variables of the installer and of the files sourced beside this one

# put_file SOURCE FILE: FILE appears whole or not at all.
put_file() {
    cp -- "$1" "$2.new"
    sync -- "$2.new"
    mv -f -- "$2.new" "$2"
}

# put_text FILE [MODE]: the same with standard input.
put_text() {
    cat >"$1.new"
    chmod "${2:-644}" -- "$1.new"
    sync -- "$1.new"
    mv -f -- "$1.new" "$1"
}

# boot.cfg comes last, so that kernel and initial RAM disk change at once. The squashfs has one name for all kernels: in the
# moment between it and boot.cfg, a power cut leaves the kernel of before with the system of now, whose modules do not fit.
# It is replaced directly before boot.cfg therefore, and running the installer again mends it.
copy_recovery_system() {
    mkdir -p -- "$partition"/{backup,kestro,recovery_live,boot}
    printf '%s\n' "$data_uuid" | put_text "$partition/backup/_nox_data.info"
    put_file "$image/vmlinuz" "$partition/kestro/vmlinuz-$kernel"
    put_file "$image/initrd.img" "$partition/kestro/initrd.img-$kernel"
    put_file "$image/filesystem.squashfs" "$partition/recovery_live/filesystem.squashfs"
    boot_commands | put_text "$partition/kestro/boot.cfg"
    find "$partition/kestro" -maxdepth 1 \( -name 'vmlinuz-*' -o -name 'initrd.img-*' \) -not -name "*-$kernel" -delete
}

# What starts the recovery system, for every boot menu. The recovery program knows this system by the path of the kernel
# and by live-media-path; live-media keeps live-boot from a recovery system on another disk; root names the system served.
boot_commands() {
    printf 'linux /kestro/vmlinuz-%s %s\n' "$kernel" "$(kernel_parameters)"
    printf 'initrd /kestro/initrd.img-%s\n' "$kernel"
}

kernel_parameters() {
    printf '%s ' boot=live live-media-path=recovery_live "live-media=/dev/disk/by-uuid/$recovery_uuid" \
        toram=filesystem.squashfs "root=UUID=$root_uuid"
    encrypted_containers | awk '{ printf "cryptopts=source=UUID=%s,target=luks_crypt%d ", $1, NR - 1 }'
    # The person sees no messages of a start that goes well.
    printf 'quiet loglevel=3%s\n' "${append:+ $append}"
}

# The UUIDs of the LUKS containers on which the installed system and its data lie, the root's first.
encrypted_containers() {
    local device
    for device in "$root_device" "$data_device"; do
        lsblk --noheadings --raw --inverse --paths --output NAME -- "$device"
    done | awk '!seen[$0]++' | while read -r device; do
        [ "$(blkid -c /dev/null -p -o value -s TYPE -- "$device")" != crypto_LUKS ] || uuid_of "$device"
    done
}

name_recovery_partition() {
    mkdir -p -- "$system/etc/kestro"
    printf 'UUID=%s\n' "$recovery_uuid" | put_text "$system/etc/kestro/system-recovery.conf"
}

# menu_entry UUID: the commands of the recovery partition are read when the entry is chosen, so that a renewed recovery
# system needs no new boot menu.
menu_entry() {
    cat <<CFG
menuentry 'Kestro Recovery' --class recovery --id kestro-recovery {
    insmod part_gpt
    insmod part_msdos
    insmod ext2
    search --no-floppy --fs-uuid --set=root $recovery_uuid
    source /kestro/boot.cfg
}
CFG
}

add_menu_entry() {
    put_text "$system/etc/grub.d/45_kestro-recovery" 755 <<SCRIPT
#!/bin/sh
# Boot menu entry of the recovery partition, written by kestro-recovery-install.
cat <<'CFG'
$(menu_entry)
CFG
SCRIPT
    write_boot_menu
}
