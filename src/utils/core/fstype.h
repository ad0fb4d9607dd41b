// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// File-system types by the numbers that the system knows them by. 17 is no type.
enum class FsType : int {
    None = 0,
    Btrfs = 1,
    Efi = 2,
    Ext2 = 3,
    Ext3 = 4,
    Ext4 = 5,
    F2fs = 6,
    Fat16 = 7,
    Fat32 = 8,
    Vfat = 9,
    Hfs = 10,
    HfsPlus = 11,
    Jfs = 12,
    LinuxSwap = 13,
    Lvm2Pv = 14,
    Nilfs2 = 15,
    Ntfs = 16,
    Reiser4 = 18,
    Reiserfs = 19,
    Xfs = 20,
    Recovery = 21,
    Unknown = 22
};

/// The name of a type, in lower case; empty for None and for numbers that are no type.
[[nodiscard]] QString fsTypeName(FsType type);

/// The type of a name, in any case: None for an empty name and "unused", LinuxSwap for whatever starts with
/// "linux-swap", Unknown for every other name that fsTypeName() does not give.
[[nodiscard]] FsType fsTypeFromName(const QString& name);
