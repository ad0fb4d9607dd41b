// SPDX-License-Identifier: GPL-3.0-or-later
#include "fstype.h"

#include <QMap>

using namespace Qt::StringLiterals;

namespace {

/// LinuxSwap has no row: its name has endings ("linux-swap(v1)").
const QMap<FsType, QString>& nameTable()
{
    static const QMap<FsType, QString> names = {
        {FsType::None, u""_s},
        {FsType::Btrfs, u"btrfs"_s},
        {FsType::Efi, u"efi"_s},
        {FsType::Ext2, u"ext2"_s},
        {FsType::Ext3, u"ext3"_s},
        {FsType::Ext4, u"ext4"_s},
        {FsType::F2fs, u"f2fs"_s},
        {FsType::Fat16, u"fat16"_s},
        {FsType::Fat32, u"fat32"_s},
        {FsType::Vfat, u"vfat"_s},
        {FsType::Hfs, u"hfs"_s},
        {FsType::HfsPlus, u"hfsplus"_s},
        {FsType::Jfs, u"jfs"_s},
        {FsType::Lvm2Pv, u"lvm2 pv"_s},
        {FsType::Nilfs2, u"nilfs2"_s},
        {FsType::Ntfs, u"ntfs"_s},
        {FsType::Reiser4, u"reiser4"_s},
        {FsType::Reiserfs, u"reiserfs"_s},
        {FsType::Xfs, u"xfs"_s},
        {FsType::Recovery, u"recovery"_s},
        {FsType::Unknown, u"unknown"_s},
    };
    return names;
}

} // namespace

QString fsTypeName(FsType type)
{
    return type == FsType::LinuxSwap ? u"linux-swap"_s : nameTable().value(type);
}

FsType fsTypeFromName(const QString& name)
{
    const QString lower = name.toLower();
    if (lower == "unused"_L1) {
        return FsType::None;
    }
    if (lower.startsWith("linux-swap"_L1)) {
        return FsType::LinuxSwap;
    }
    return nameTable().key(lower, FsType::Unknown);
}
