# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The recovery partition's own GRUB. It stands before the installed system's: it starts that, or the recovery system when
# there is nothing left of the other. Whoever reinstalls the system's GRUB puts it back there. Sourced only.
# shellcheck disable=SC2154  # system, work and efi_suffix come from the files sourced beside this one

# keep_recovery_entry_first EFI_DEVICE: nothing happens where the EFI partition holds no loader of the recovery partition.
keep_recovery_entry_first() {
    local loader
    loader=$(find_nocase "$system/boot/efi/EFI/kestro-recovery" "grub$efi_suffix.efi")
    [ -z "$loader" ] || keep_one_entry_first "$1" "${loader#"$system/boot/efi"}" "Kestro Recovery"
}

# The recovery partition that the installed system names; fails when it names none or it is not there.
recovery_device() {
    local uuid
    uuid=$(sed -n 's/^UUID=//p' "$system/etc/kestro/system-recovery.conf" 2>/dev/null) && [ -n "$uuid" ] &&
        device_of_uuid "$uuid"
}

# embed_recovery_grub DISK: for BIOS. Fails where the recovery partition has no GRUB, or it cannot be written to the disk.
embed_recovery_grub() {
    local device folder=$work/recovery tool embedded=1
    device=$(recovery_device) || return
    mkdir -p -- "$folder"
    mount_device "$device" "$folder" look || return
    if [ -f "$folder/boot/grub/i386-pc/core.img" ]; then
        tool=$(PATH=$PATH:/usr/sbin:/usr/lib/grub/i386-pc command -v grub-bios-setup || echo grub-bios-setup)
        if run "$tool" --directory="$folder/boot/grub/i386-pc" "$1"; then
            embedded=0
        else
            note "the GRUB of $device could not be written to $1; the system's own comes there"
        fi
    fi
    umount -- "$folder"
    return "$embedded"
}
