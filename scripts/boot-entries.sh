# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The loaders on the EFI partition and the firmware's list of boot entries. Sourced only.
# shellcheck disable=SC2154  # system and dry_run come from the files sourced beside this one

# Suffix of loader names and GRUB's name of the target, by machine (UEFI specification, removable media paths).
declare -A efi_suffixes=([x86_64]=x64 [i686]=ia32 [i386]=ia32 [aarch64]=aa64 [riscv64]=riscv64 [loongarch64]=loongarch64)
declare -A efi_targets=([x64]=x86_64-efi [ia32]=i386-efi [aa64]=arm64-efi [riscv64]=riscv64-efi [loongarch64]=loongarch64-efi)

# A 64-bit processor may have 32-bit firmware, which starts 32-bit loaders only.
efi_suffix=${efi_suffixes[$(uname -m)]:-x64}
if [ "$efi_suffix" = x64 ] && [ "$(cat /sys/firmware/efi/fw_platform_size 2>/dev/null || true)" = 32 ]; then
    efi_suffix=ia32
fi
# shellcheck disable=SC2034  # read by boot-system.sh
efi_target=${efi_targets[$efi_suffix]}

# os_release KEY: a value of the installed system's os-release; empty when absent.
os_release() {
    local file
    for file in "$system/etc/os-release" "$system/usr/lib/os-release"; do
        [ -f "$file" ] || continue
        sed -n "s/^$1=//p" "$file" | tr -d "\"'" | head -n 1
        return
    done
}

# find_nocase FOLDER NAME: the entry with that name in any case, as FAT has it; empty when there is none.
find_nocase() {
    find "$1" -mindepth 1 -maxdepth 1 -iname "$2" -print -quit 2>/dev/null || true
}

loader_in() {
    local kind loader
    for kind in shim grub; do
        loader=$(find_nocase "$1" "$kind$efi_suffix.efi")
        [ -z "$loader" ] || { printf '%s\n' "$loader"; return; }
    done
}

# serves_system FOLDER: whether the loader there is the installed system's: the one that its GRUB built, or one whose menu
# leads to the file system with its /boot.
serves_system() {
    local core grub menu uuid
    core=$(grub_file "$efi_target/core.efi")
    grub=$(find_nocase "$1" "grub$efi_suffix.efi")
    if [ -n "$core" ] && [ -n "$grub" ] && cmp -s -- "$core" "$grub"; then return; fi
    menu=$(find_nocase "$1" grub.cfg)
    uuid=$(fstab_uuid /boot)
    uuid=${uuid:-$(uuid_of "$system_device")}
    [ -n "$menu" ] && [ -n "$uuid" ] && grep -qiF -- "$uuid" "$menu"
}

# The folder of the EFI partition that holds the installed system's loader: the one with the system's own name, else one
# of another name that is known to be its own, as derivatives have it. Empty when there is none: other systems' loaders are
# left alone. EFI/BOOT is the fallback and EFI/kestro-recovery the recovery partition's, neither is a system's own.
loader_folder() {
    local efi own folder
    efi=$(find_nocase "$system/boot/efi" EFI)
    [ -n "$efi" ] || return 0
    own=$(find_nocase "$efi" "$(os_release ID)")
    for folder in ${own:+"$own"} "$efi"/*/; do
        folder=${folder%/}
        case ${folder##*/} in [Bb][Oo][Oo][Tt] | [Mm]icrosoft | kestro-recovery) continue ;; esac
        [ -n "$(loader_in "$folder")" ] || continue
        if [ "$folder" = "$own" ] || serves_system "$folder"; then
            printf '%s\n' "$folder"
            return
        fi
    done
}

# The name under which the loader is installed: the one in use, else the system's own.
entry_id() {
    local folder id
    folder=$(loader_folder)
    id=$(os_release ID)
    [ -z "$folder" ] || id=${folder##*/}
    [[ $id =~ ^[A-Za-z0-9._-]+$ ]] || id=linux
    printf '%s\n' "$id"
}

# What names the partition in the firmware's entries, in the words of efibootmgr: the UUID of one in a GPT, number and
# signature of the disk of one in an MBR, like (1,mbr,0x12abcd, for the UUID 0012abcd-01. Empty when it has no UUID.
firmware_partition() {
    local uuid
    uuid=$(partition_entry "$1" UUID)
    if [ -n "$uuid" ] && [ "$(partition_entry "$1" SCHEME)" = dos ]; then
        printf '(%d,mbr,0x%x,\n' "$(partition_entry "$1" NUMBER)" "$((16#${uuid%-*}))"
    else
        printf '%s\n' "$uuid"
    fi
}

# partition_entry DEVICE UUID|SCHEME|NUMBER: from the partition table; empty when it does not have that.
partition_entry() {
    blkid -c /dev/null -p -o value -s "PART_ENTRY_$2" -- "$1" || true
}

# firmware_entries PARTITION LOADER: the numbers of the entries that start that loader, from lines like
#   Boot0001* debian	HD(1,GPT,5a1c…,0x800,0x100000)/File(\EFI\debian\shimx64.efi)      (efibootmgr 17)
#   Boot0001* debian	HD(1,GPT,5a1c…,0x800,0x100000)/\EFI\debian\shimx64.efi            (efibootmgr 18)
# An entry with data behind the loader's path is somebody else's: firmware updates are started that way.
firmware_entries() {
    efibootmgr -v | partition=$1 loader=$2 awk '
        /^Boot[0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f]/ {
            line = tolower($0)
            sub(/\)?[ \t\r]*$/, "", line)
            loader = tolower(ENVIRON["loader"])
            if (index(line, tolower(ENVIRON["partition"])) &&
                substr(line, length(line) - length(loader) + 1) == loader)
                print substr($1, 5, 4)
        }'
}

boot_order() {
    efibootmgr | sed -n 's/^BootOrder: *//p'
}

# put_boot_entry_first EFI_DEVICE: one entry for the installed system's loader, active and first; and the fallback, which is
# a nicety: the partition may have no room for it.
put_boot_entry_first() {
    local folder loader
    folder=$(loader_folder)
    if [ -z "$folder" ] && [ -n "$dry_run" ]; then
        printf 'would put the boot entry "%s" first\n' "$(entry_id)"
        return
    fi
    [ -n "$folder" ] || die "no loader of the installed system was found on $1"
    loader=$(loader_in "$folder")
    if booted_through_uefi; then
        keep_one_entry_first "$1" "${loader#"$system/boot/efi"}" "$(entry_id)"
        keep_recovery_entry_first "$1"
    fi
    write_fallback_loader "$loader" || note "the fallback loader could not be written to $1"
}

# keep_one_entry_first EFI_DEVICE LOADER LABEL: LOADER is a path on the EFI partition.
keep_one_entry_first() {
    local partition loader=${2//\//\\} numbers extra first order
    partition=$(firmware_partition "$1")
    [ -n "$partition" ] || die "$1 has no partition UUID"
    mapfile -t numbers < <(firmware_entries "$partition" "$loader")
    if [ "${#numbers[@]}" -eq 0 ]; then
        run efibootmgr --quiet --create-only --disk "$(disk_of "$1")" --part "$(partition_entry "$1" NUMBER)" \
            --label "$3" --loader "$loader"
        mapfile -t numbers < <(firmware_entries "$partition" "$loader")
        [ "${#numbers[@]}" -gt 0 ] || [ -n "$dry_run" ] || die "the firmware did not keep the new boot entry"
    fi
    first=${numbers[0]:-NEW}
    for extra in "${numbers[@]:1}"; do
        run efibootmgr --quiet --bootnum "$extra" --delete-bootnum
    done
    run efibootmgr --quiet --bootnum "$first" --active
    order=$(order_with_first "$first")
    [ "$order" = "$(boot_order)" ] || run efibootmgr --quiet --bootorder "$order"
}

# The boot order with NUMBER in front and nowhere else. A number may have lost its entry: it is left out, because
# efibootmgr refuses an order that names it.
order_with_first() {
    efibootmgr | awk -v first="$1" '
        /^BootOrder:/ { count = split($2, numbers, ",") }
        /^Boot[0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f][0-9A-Fa-f]/ { listed[toupper(substr($1, 5, 4))] = 1 }
        END {
            order = first
            for (i = 1; i <= count; i++)
                if (toupper(numbers[i]) in listed && toupper(numbers[i]) != toupper(first))
                    order = order "," numbers[i]
            print order
        }'
}

# put_loader SOURCE FILE: FILE appears whole or not at all.
put_loader() {
    if ! { run cp -- "$1" "$2.new" && run mv -f -- "$2.new" "$2"; }; then
        run rm -f -- "$2.new"
        return 1
    fi
}

# Firmware that forgot its entries starts EFI/BOOT. A loader that is there is never replaced. Every step says itself that it
# failed: "set -e" does not hold for a function whose failure is asked for.
write_fallback_loader() {
    local efi fallback companion
    efi=$(find_nocase "$system/boot/efi" EFI)
    fallback=$(find_nocase "$efi" BOOT)
    fallback=${fallback:-$efi/BOOT}
    [ -z "$(find_nocase "$fallback" "boot$efi_suffix.efi")" ] || return 0
    run mkdir -p -- "$fallback" || return
    # shim starts the GRUB that lies beside it.
    for companion in grub mm; do
        companion=$(find_nocase "$(dirname -- "$1")" "$companion$efi_suffix.efi")
        [ -z "$companion" ] || [ "$companion" = "$1" ] ||
            put_loader "$companion" "$fallback/$(basename -- "$companion")" || return
    done
    put_loader "$1" "$fallback/BOOT${efi_suffix^^}.EFI"
}
