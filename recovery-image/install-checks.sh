# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# What must hold before the installer writes anything. Sourced only.
# shellcheck disable=SC2154,SC2034  # variables of the installer and of the files sourced beside this one

check_image() {
    local name
    for name in vmlinuz initrd.img filesystem.squashfs manifest.txt; do
        [ -s "$image/$name" ] || die "$image/$name is missing"
    done
    kernel=$(sed -n 's/^linux-image-\([0-9][^ ]*\) .*/\1/p' "$image/manifest.txt" | sort -V | tail -n 1)
    [ -n "$kernel" ] || die "$image/manifest.txt names no kernel"
}

# partition_with_uuid UUID: the one device with it.
partition_with_uuid() {
    local devices
    [[ $1 =~ ^[A-Za-z0-9-]+$ ]] || die "not the UUID of a file system: '$1'"
    mapfile -t devices < <(blkid -c /dev/null -o device -t "UUID=$1")
    [ "${#devices[@]}" -gt 0 ] || die "no file system has the UUID $1"
    [ "${#devices[@]}" -eq 1 ] || die "several file systems have the UUID $1: ${devices[*]}"
    printf '%s\n' "${devices[0]}"
}

check_devices() {
    local device
    require_block_device "$recovery"
    recovery=$(readlink -f -- "$recovery")
    root_device=$(partition_with_uuid "$root_uuid")
    data_device=$(partition_with_uuid "$data_uuid")
    for device in "$root_device" "$data_device"; do
        [ "$device" != "$recovery" ] || die "$recovery belongs to the installed system, it cannot be the recovery partition"
    done
    for device in "$recovery" "$root_device" "$data_device"; do
        [ -z "$(findmnt --noheadings --source "$device" --output TARGET)" ] || die "$device is mounted"
    done
    [ "$(lsblk --noheadings --nodeps --output TYPE -- "$recovery")" = part ] || die "$recovery is not a partition"
    [ "$(blkid -c /dev/null -p -o value -s TYPE -- "$recovery")" = ext4 ] || die "$recovery holds no ext4 file system"
    recovery_uuid=$(uuid_of "$recovery")
}

# Sets system_device and system_subvolume, as finding a system by its EFI and boot partitions does.
find_root() {
    local device subvolume
    while read -r device subvolume; do
        mount_device "$device" "$system" look "$subvolume" 2>/dev/null || continue
        if [ "$(fstab_uuid / 2>/dev/null)" = "$root_uuid" ]; then
            system_device=$device
            system_subvolume=$subvolume
        fi
        umount -- "$system"
        [ -z "$system_device" ] || return 0
    done < <(printf '%s\n' "$root_device" | with_subvolumes)
    die "$root_device holds no installed system whose fstab mounts UUID=$root_uuid at /"
}

# A reset lays /opt and /var on the data partition, and looks for the home directories there: on a partition that is
# mounted at /home it would do the one among the users' folders and miss the other.
check_data_partition() {
    [ "$data_uuid" != "$root_uuid" ] || return 0
    mount_device "$data_device" "$data" look
    [ -d "$data/home" ] || die "$data_device has no folder 'home', so it is not a data partition"
    umount -- "$data"
}

# Leaves the installed system mounted, read-only.
check_system() {
    local point uuid device
    system_device=
    find_root
    [ -z "$system_subvolume" ] ||
        die "the system lies in the subvolume $system_subvolume of $root_device, which the recovery program cannot see"
    mount_device "$system_device" "$system" look
    for point in /usr /boot /boot/efi; do
        uuid=$(fstab_uuid "$point")
        [ -n "$uuid" ] || continue
        device=$(partition_with_uuid "$uuid")
        [ "$device" != "$recovery" ] || die "the installed system mounts $recovery at $point"
    done
    umount -- "$system"
    dry_run=1 mount_parts_of_system
    check_layers
    if [ ! -d "$system/etc/grub.d" ] || ! system_tool grub-mkconfig grub2-mkconfig update-grub >/dev/null; then
        die "the installed system does not start through GRUB"
    fi
    boot_disk=$(disk_of "$(device_at /boot)")
    [ -n "$boot_disk" ] || die "the disk of the installed system was not found"
    if booted_through_uefi; then check_uefi; else check_bios; fi
    check_boot_folder
    check_data_partition
    [ -n "$keep_images" ] || command -v kestro-clone >/dev/null || die "kestro-clone is missing here"
}

# The recovery system can assemble none of these, and GRUB would be written to one of the disks of a mirror only.
check_layers() {
    local device point devices=("$data_device")
    for point in / /usr /boot /boot/efi; do
        devices+=("$(device_at "$point")")
    done
    for device in "${devices[@]}"; do
        case $(lsblk --inverse --noheadings --raw --output TYPE -- "$device") in
            *raid*) die "$device lies on a software RAID, which the recovery system cannot assemble" ;;
            *mpath*) die "$device is reached on several paths (multipath), which the recovery system cannot assemble" ;;
        esac
    done
}

# A GRUB that does not find the system's menu takes the system for destroyed and starts the recovery system every time.
check_boot_folder() {
    local layers
    layers=$(grub-probe --target=abstraction "$system/boot") ||
        die "the recovery partition's GRUB could not read /boot of the installed system: grub-probe does not know where it lies"
    [[ $layers != *cryptodisk* ]] ||
        die "the recovery partition's GRUB could not read /boot of the installed system, which is encrypted"
    menu_folder >/dev/null || die "the folder of the installed system's boot menu was not found"
}

# device_at MOUNT_POINT: the partition that the installed system's fstab mounts there, else that of the root.
device_at() {
    local uuid
    uuid=$(fstab_uuid "$1")
    if [ -n "$uuid" ]; then device_of_uuid "$uuid"; else printf '%s\n' "$system_device"; fi
}

require_grub() {
    command -v grub-install >/dev/null || die "grub-install is missing here"
    [ -d "${KESTRO_GRUB_MODULES:-/usr/lib/grub}/$1" ] || die "the modules of GRUB for $1 are missing here"
}

check_uefi() {
    require_grub "$efi_target"
    command -v efibootmgr >/dev/null || die "efibootmgr is missing here"
    [ -n "$(fstab_uuid /boot/efi)" ] || die "the installed system mounts no EFI partition, but this machine was started through UEFI"
    [ -n "$(loader_folder)" ] || die "the EFI partition holds no loader of the installed system"
}

# On a GPT there is room for GRUB only in a partition of its own, "21686148-6449-6E6F-744E-656564454649" (GRUB manual,
# "BIOS installation").
check_bios() {
    require_grub i386-pc
    [ -n "$(grub_file i386-pc/core.img)" ] || die "GRUB of the installed system is not installed for BIOS"
    [ "$(blkid -c /dev/null -p -o value -s PTTYPE -- "$boot_disk")" != gpt ] ||
        [[ $(sfdisk --dump -- "$boot_disk") == *type=21686148-6449-6E6F-744E-656564454649* ]] ||
        die "$boot_disk has no partition for GRUB (BIOS boot partition)"
}

# GRUB's modules, and what copies need beside their content.
readonly room_for_grub=$((64 << 20))

# Used blocks shrink to less than half as a rule; an image that does not fit all the same fails without harm.
check_space() {
    local needed=$room_for_grub available name
    for name in vmlinuz initrd.img filesystem.squashfs; do
        needed=$((needed + $(stat -c %s -- "$image/$name")))
    done
    if [ -z "$keep_images" ]; then
        needed=$((needed + $(bytes_to_image) / 3))
        check_room_for_copies
    fi
    umount --recursive -- "$system"
    mount_device "$recovery" "$partition" look
    available=$(($(df --output=avail --block-size=1 -- "$partition" | tail -n 1) + $(bytes_of_new_images)))
    umount -- "$partition"
    [ "$available" -ge "$needed" ] ||
        die "$recovery is too small: $((available >> 20)) MiB are free, at least $((needed >> 20)) MiB are needed"
}
