// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

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

} // namespace Utils
