# SPDX-License-Identifier: GPL-3.0-or-later
# shellcheck shell=bash
# The initial images, to which a reset goes back. Sourced only.
# shellcheck disable=SC2154  # variables of the installer and of the files sourced beside this one

# Folders that a reset copies from the image of the root file system to the data partition.
readonly data_folders=(opt var)
copied_folders=()
# On the recovery partition while copies are in the root: its UUID and the names of the folders.
readonly copies_note=backup/.copied-folders

# "NAME UUID" of each image. Names have no dots, and that of the root file system is the last of all: by it the recovery
# program knows the system partition. The EFI partition is left out because other systems' loaders lie there.
initial_images() {
    local point
    for point in /boot /usr; do
        [ -z "$(fstab_uuid "$point")" ] || printf 'part-%s %s\n' "${point#/}" "$(fstab_uuid "$point")"
    done
    printf 'system %s\n' "$root_uuid"
}

# Of the mounted installed system.
bytes_to_image() {
    local name uuid folder
    while read -r name uuid; do
        folder=${name#part-}
        df --output=used --block-size=1 -- "$system/${folder#system}" | tail -n 1
    done < <(initial_images) | awk '{ sum += $1 } END { printf "%.0f\n", sum }'
}

has_entries() { [ -n "$(find "$1" -mindepth 1 -maxdepth 1 -print -quit 2>/dev/null)" ]; }

# The folders that lie on the data partition only (mounted at $data), so that an image of the root would not hold them.
folders_to_copy() {
    local name
    for name in "${data_folders[@]}"; do
        has_entries "$system/$name" || ! has_entries "$data/$name" || printf '%s\n' "$name"
    done
}

# Of the mounted installed system.
check_room_for_copies() {
    local needed=0 available name
    [ "$data_uuid" != "$root_uuid" ] || return 0
    mount_device "$data_device" "$data" look
    while read -r name; do
        needed=$((needed + $(du --summarize --one-file-system --block-size=1 -- "$data/$name" | cut -f 1)))
    done < <(folders_to_copy)
    umount -- "$data"
    available=$(df --output=avail --block-size=1 -- "$system" | tail -n 1)
    [ "$available" -ge "$needed" ] ||
        die "$root_device has no room for copies of /opt and /var, which its image must hold: $((needed >> 20)) MiB are needed"
}

copy_folders_from_data() {
    local name
    [ "$data_uuid" != "$root_uuid" ] || return 0
    mount_device "$data_device" "$data" look
    mapfile -t copied_folders < <(folders_to_copy)
    if [ "${#copied_folders[@]}" -gt 0 ]; then
        printf '%s\n' "$root_uuid" "${copied_folders[@]}" | put_text "$partition/$copies_note"
        sync -f -- "$partition"
    fi
    for name in "${copied_folders[@]}"; do
        cp --archive --one-file-system --no-target-directory -- "$data/$name" "$system/$name"
    done
    umount -- "$data"
}

# Only what was copied into folders that were empty. The note goes when the folders are empty on the disk, too.
remove_copied_folders() {
    local name
    [ "${#copied_folders[@]}" -gt 0 ] || return 0
    mountpoint -q -- "$system" || mount_device "$system_device" "$system" write || return
    for name in "${copied_folders[@]}"; do
        [ ! -d "$system/$name" ] || find "$system/$name" -xdev -mindepth 1 -delete || return
    done
    copied_folders=()
    umount --recursive -- "$system" || return
    rm -f -- "$partition/$copies_note"
}

# What a run left that ended in a power cut: half a copy would be taken for the system's own folder.
remove_abandoned_copies() {
    local note=$partition/$copies_note name
    [ -f "$note" ] && [ "$(head -n 1 -- "$note")" = "$root_uuid" ] || return 0
    for name in "${data_folders[@]}"; do
        ! grep -qx -- "$name" "$note" || copied_folders+=("$name")
    done
    remove_copied_folders
}

# What was made but not put in place, in this run or in one that ended in a power cut. Names with a dot are in no list.
remove_new_images() {
    [ ! -d "$partition/backup" ] || find "$partition/backup" -mindepth 1 -maxdepth 1 -name '.new-*' -delete
}

# What removing them gives back.
bytes_of_new_images() {
    find "$partition" -maxdepth 2 -path '*/backup/.new-*' -printf '%b\n' |
        awk '{ sum += $1 * 512 } END { printf "%.0f\n", sum }'
}

# All images are complete before the first is put in place, and that of the root comes last: after a reset from images of
# different moments, or from half a set, the system would not start.
put_new_images_in_place() {
    local name ending
    sync -f -- "$partition"
    for name; do
        for ending in info kim; do
            mv -f -- "$partition/backup/.new-$name.$ending" "$partition/backup/$name.$ending"
        done
    done
    sync -f -- "$partition"
}

make_initial_images() {
    local images line name uuid names=()
    mount_device "$system_device" "$system" write
    copy_folders_from_data
    mapfile -t images < <(initial_images)
    umount -- "$system"
    for line in "${images[@]}"; do
        read -r name uuid <<<"$line"
        kestro-clone --tui "$(device_of_uuid "$uuid")" "$partition/backup/.new-$name.kim"
        printf '%s\n' "$uuid" >"$partition/backup/.new-$name.info"
        names+=("$name")
    done
    put_new_images_in_place "${names[@]}"
    remove_copied_folders
}

# The end of the installer, however it ends.
finish() {
    remove_new_images || note "unfinished images may have stayed on $recovery"
    remove_copied_folders || note "copies of /opt and /var may have stayed in $root_device"
    clean_up
}
