# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The recovery partition's own GRUB. Sourced only.
# shellcheck disable=SC2154  # variables of the installer and of the files sourced beside this one

# The folder of the installed system's boot menu as GRUB finds it on its file system: from the first root of a btrfs,
# whichever subvolume is mounted.
menu_folder() {
    local name=grub
    [ ! -d "$system/boot/grub2" ] || name=grub2
    grub-mkrelpath "$system/boot/$name"
}

# The commands that start the installed system's own GRUB, with its own modules, menu and remembered choices.
start_system() {
    if booted_through_uefi; then
        local loader
        loader=$(loader_in "$(loader_folder)")
        printf '    search --no-floppy --fs-uuid --set=root %s\n' "$(fstab_uuid /boot/efi)"
        printf '    chainloader %s\n' "${loader#"$system/boot/efi"}"
    else
        # The system's GRUB looks for its modules on the disk that root names when it is started.
        printf '    set root=%s\n    multiboot (%s)%s/i386-pc/core.img\n' "\$menu" "\$menu" "$(menu_folder)"
    fi
}

# The condition that what the installed system's own GRUB needs is there. A power cut while that is reinstalled leaves less.
system_starts() {
    local folder
    folder="(\$menu)$(menu_folder)"
    printf '[ -n "$menu" -a -s "%s/grub.cfg"' "$folder"
    booted_through_uefi || printf ' -a -s "%s/i386-pc/core.img"' "$folder"
    printf ' ]\n'
}

# A menu that shows itself only when a key is pressed, or when the system cannot be started. The fallback is the second
# entry: GRUB 2.06 takes numbers only.
recovery_menu() {
    local title uuid
    title=$(os_release PRETTY_NAME)
    title=${title//[^A-Za-z0-9 ._()+\/-]/}
    uuid=$(fstab_uuid /boot)
    cat <<CFG
# Written by kestro-recovery-install.
for module in part_gpt part_msdos ext2 xfs btrfs f2fs mdraid09 mdraid1x lvm fat; do
    insmod \$module
done
set timeout_style=countdown
set fallback=1
search --no-floppy --fs-uuid --set=menu ${uuid:-$root_uuid}
if $(system_starts); then
    set default=system
    set timeout=2
else
    set default=kestro-recovery
    set timeout=5
fi

menuentry '${title:-Installed system}' --id system {
$(start_system)
}

$(menu_entry)
CFG
}

# The menu comes first: whatever stands in the boot sector is started after a power cut, too.
install_recovery_grub() {
    recovery_menu >"$work/grub.cfg"
    mkdir -p -- "$partition/boot/grub"
    put_file "$work/grub.cfg" "$partition/boot/grub/grub.cfg"
    rm -f -- "$work/grub.cfg"
    sync -f -- "$partition"
    if booted_through_uefi; then
        install_recovery_loader
    else
        grub-install --target=i386-pc "--boot-directory=$partition/boot" --recheck "$boot_disk"
    fi
    sync -f -- "$partition"
    ! booted_through_uefi || keep_recovery_entry_first "$(device_at /boot/efi)"
}

# A signed GRUB reads the installed system's menu instead of the recovery partition's, so it is not used.
install_recovery_loader() {
    local unsigned=()
    [[ $(grub-install --help) != *--no-uefi-secure-boot* ]] || unsigned=(--no-uefi-secure-boot)
    grub-install "--target=$efi_target" "--efi-directory=$system/boot/efi" "--boot-directory=$partition/boot" \
        --bootloader-id=kestro-recovery --no-nvram --recheck "${unsigned[@]}"
}
