// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QJsonObject>
#include <QString>

/// One partition that the partition check offers.
struct PartitionCheckItem
{
    QString devicePath; ///< for example "/dev/sda3"
    QString label;      ///< of the file system
    QString uuid;       ///< of the file system; empty when there is none
    QString mountPoint; ///< as the installed system's fstab says, "SWAP" for swap; empty when not listed there
    QString fsType;     ///< as blkid names it
    int status = 0;     ///< 0: fsck found nothing; -1: it left errors uncorrected, or there is no file system
    int deviceType = 0; ///< -1: not classified; 1: listed in the installed system's fstab; 0: not listed

    /// All fields, for the log.
    [[nodiscard]] QString toText() const;

    /// All fields, as numbers and texts.
    [[nodiscard]] QJsonObject toJson() const;

    /// The item that the object describes; a key that is absent leaves its field at the default.
    [[nodiscard]] static PartitionCheckItem fromJson(const QJsonObject& object);
};
