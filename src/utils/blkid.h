// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>
#include <QStringList>

namespace Utils {

/// One line of blkid(8); every field is empty when the line has no such key.
struct BlkIdInfo
{
    QString devicePath; ///< the device node, for example "/dev/sda2"
    QString partUuid;
    QString partLabel;
    QString label;
    QString uuid; ///< of the file system or container
    QString type; ///< file-system or container type
    QString labelFatboot;
    QString ptUuid; ///< of the partition table: the line is a whole disk
    QString ptType;
};

/// What one line of blkid's full format says, for example `/dev/sda1: UUID="AB12" TYPE="vfat"`.
///
/// A value ends at its first inner quote: blkid writes a quote inside a label as `\"`.
[[nodiscard]] BlkIdInfo parseBlkIdLine(const QString& line);

/// Whether some device holds an LVM physical volume.
[[nodiscard]] bool hasLvmMember(const QList<BlkIdInfo>& list);

/// The "/dev/mapper/" paths of the named device-mapper links that the list leaves out, opened LUKS mappings ("luks…")
/// apart.
/// @param linkNames one name a line
[[nodiscard]] QStringList unlistedMapperPaths(const QList<BlkIdInfo>& list, const QString& linkNames);

} // namespace Utils
