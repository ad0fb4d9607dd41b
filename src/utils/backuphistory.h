// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// One backup found on disk.
struct BackupFileInfo
{
    QString backupUUID; ///< the partition that holds it
    QString backupPath; ///< its directory relative to that partition's root, as recorded
    QString backupTime; ///< day for display, "yyyy/MM/dd" in local time
    QString createTime; ///< decimal seconds since the epoch, as recorded
};
