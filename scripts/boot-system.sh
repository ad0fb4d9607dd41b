# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# Finding the installed system, mounting it at $system, and running its own GRUB tools. Sourced only.
# shellcheck disable=SC2154  # system, dry_run and efi_target come from the files sourced beside this one

booted_through_uefi() {
    [ -d /sys/firmware/efi ]
}

# Read past every cache: what counts is what is on the disk after a restore.
uuid_of() {
    blkid -c /dev/null -o value -s UUID -- "$1"
}

device_of_uuid() {
    blkid -c /dev/null -l -o device -t "UUID=$1"
}

# The whole disk that holds a partition (or the volume on one); empty when it has none above it.
disk_of() {
    lsblk --noheadings --raw --inverse --paths --output NAME,TYPE -- "$1" |
        awk '$2 == "disk" || $2 == "loop" { name = $1 } END { print name }'
}

# The device that the kernel command line names as the root of the installed system, if it is there.
root_of_command_line() {
    local token value=
    for token in $(</proc/cmdline); do
        [[ $token != root=* ]] || value=${token#root=}
    done
    case $value in
        UUID=* | PARTUUID=* | LABEL=* | PARTLABEL=*) blkid -c /dev/null -l -o device -t "${value//\"/}" || true ;;
        /dev/*) [ ! -b "$value" ] || readlink -f -- "$value" ;;
    esac
}

# Devices on which a system may be installed, the likeliest first.
candidate_devices() {
    {
        root_of_command_line
        blkid -c /dev/null -o export | awk -F= '
            $1 == "DEVNAME" { device = $2 }
            $1 == "TYPE" && $2 ~ /^(ext[234]|xfs|btrfs|f2fs)$/ { print device }'
    } | awk '!seen[$0]++'
}

# Adds to each device a second line with the name that btrfs installations give to the subvolume of the root.
with_subvolumes() {
    local device
    while read -r device; do
        printf '%s\n' "$device"
        [ "$(blkid -c /dev/null -o value -s TYPE -- "$device")" != btrfs ] || printf '%s @\n' "$device"
    done
}

# A look at a file system must not even replay its journal. ext2 has none and refuses to be told so; btrfs has lost its
# option "nologreplay" in Linux 6.x and knows this one since 5.9.
declare -A look_options=(
    [ext2]="ro" [ext3]="ro,noload" [ext4]="ro,noload" [xfs]="ro,norecovery" [btrfs]="ro,rescue=nologreplay"
    [f2fs]="ro,norecovery"
)

# mount_device DEVICE FOLDER look|write [SUBVOLUME]: what is mounted already is shared, because a device that is in
# use cannot be mounted a second time with other options.
mount_device() {
    local existing options=rw type
    existing=$(mount_point_of "$1" "/${4:-}")
    if [ -n "$existing" ]; then
        mount --bind -- "$existing" "$2"
        [ "$3" = look ] || [ -w "$2" ] || mount -o remount,rw -- "$2"
        return
    fi
    if [ "$3" = look ]; then
        type=$(blkid -c /dev/null -o value -s TYPE -- "$1")
        options=${look_options[$type]:-ro}
    fi
    mount -o "$options${4:+,subvol=$4}" -- "$1" "$2"
}

# mount_point_of DEVICE ROOT: where that part of the device is mounted in this namespace; empty when nowhere.
mount_point_of() {
    findmnt --noheadings --list --nofsroot --output FSROOT,TARGET --source "$1" |
        awk -v root="$2" '$1 == root { sub(/^[^ ]+ +/, ""); print; exit }' || true
}

# fstab_uuid MOUNT_POINT: the UUID that the mounted system's fstab mounts there; empty when there is none.
fstab_uuid() {
    awk -v point="$1" '$1 ~ /^UUID=/ && $2 == point { gsub(/UUID=|"/, "", $1); print $1; exit }' "$system/etc/fstab"
}

# fstab_mounts DEVICE MOUNT_POINT: an empty device asks for nothing; a device without UUID is never the one.
fstab_mounts() {
    local uuid
    [ -n "$1" ] || return 0
    uuid=$(uuid_of "$1") && [ -n "$uuid" ] && [ "$(fstab_uuid "$2")" = "$uuid" ]
}

# The identity check: the fstab of what is mounted names exactly the given partitions.
fstab_names() {
    fstab_mounts "$1" /boot/efi && fstab_mounts "$2" /boot
}

# mount_installed_system EFI_DEVICE BOOT_DEVICE: mounts the system that uses these partitions, complete enough to
# run its tools, and sets system_device. Without either only the system that the command line names will do.
mount_installed_system() {
    local device subvolume
    system_device=
    while read -r device subvolume; do
        mount_device "$device" "$system" look "$subvolume" 2>/dev/null || continue
        if [ -f "$system/etc/fstab" ] && fstab_names "$1" "$2"; then
            system_device=$device
            system_subvolume=$subvolume
        fi
        umount -- "$system"
        [ -z "$system_device" ] || break
    done < <(if [ -n "$1$2" ]; then candidate_devices; else root_of_command_line; fi | with_subvolumes)
    [ -n "$system_device" ] || die "no installed system uses these partitions: ${1:-no EFI partition}, ${2:-no boot partition}"
    mount_parts_of_system
}

mount_parts_of_system() {
    local mode=write point uuid folder
    [ -z "$dry_run" ] || mode=look
    mount_device "$system_device" "$system" "$mode" "$system_subvolume"
    for point in /usr /boot /boot/efi; do
        uuid=$(fstab_uuid "$point")
        [ -z "$uuid" ] || mount_device "$(device_of_uuid "$uuid")" "$system$point" "$mode"
    done
    for folder in /dev /proc /sys /run; do
        [ ! -d "$system$folder" ] || mount --rbind -- "$folder" "$system$folder"
    done
}

# system_tool NAME…: the first of these programs that the installed system has; fails when it has none.
system_tool() {
    local name folder
    for name; do
        for folder in /usr/sbin /usr/bin /sbin /bin; do
            [ ! -x "$system$folder/$name" ] || { printf '%s\n' "$name"; return; }
        done
    done
    return 1
}

run_in_system() {
    run chroot "$system" /usr/bin/env -u KESTRO_BOOT_NAMESPACE PATH=/usr/sbin:/usr/bin:/sbin:/bin "$@"
}

# grub_file TARGET/NAME: that file of the installed system's GRUB on its boot file system; empty when it is not there.
grub_file() {
    find "$system/boot/grub" "$system/boot/grub2" -path "*/$1" -print -quit 2>/dev/null || true
}

# Where the recovery partition's GRUB stands in the boot sector, it is written there again and not the system's for a moment:
# a power cut between two that differ would leave a machine that starts nothing.
install_grub_for_bios() {
    local tool options=(--target=i386-pc --recheck)
    [ -n "$1" ] || die "the disk of the installed system was not found"
    tool=$(system_tool grub-install grub2-install) || die "the installed system has no grub-install"
    ! embed_recovery_grub "$1" || options+=(--no-bootsector)
    run_in_system "$tool" "${options[@]}" "$1"
}

# A distribution whose loaders are signed may refuse to build one; what lies on the EFI partition then serves.
install_grub_for_uefi() {
    local tool id
    id=$(entry_id)
    if tool=$(system_tool grub-install grub2-install) &&
        run_in_system "$tool" "--target=$efi_target" --efi-directory=/boot/efi "--bootloader-id=$id" --no-nvram --recheck; then
        return
    fi
    [ -n "$(loader_folder)" ] || die "GRUB could not be installed on $1, and it holds no loader of the system"
    note "GRUB could not be reinstalled; the loader on $1 stays"
}

write_boot_menu() {
    local tool folder
    if tool=$(system_tool grub-mkconfig grub2-mkconfig); then
        folder=/boot/grub
        [ ! -d "$system/boot/grub2" ] || folder=/boot/grub2
        run_in_system "$tool" -o "$folder/grub.cfg"
    elif tool=$(system_tool update-grub); then
        run_in_system "$tool"
    else
        die "the installed system has neither grub-mkconfig nor update-grub"
    fi
}
