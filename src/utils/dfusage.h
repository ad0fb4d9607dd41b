// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

struct BlockDeviceInfo;

/// One line of "df -T -B1".
struct DfUsage
{
    QString device;   ///< as df prints it: a device path, or the name of a virtual file system
    qint64 size = 0;  ///< bytes, as the two below; 0 when it is not a number
    qint64 used = 0;  ///< by files
    qint64 avail = 0; ///< for users who are not root
    QString usage;    ///< the percentage, for example "42%"
};

/// The lines that have exactly seven words: neither the header nor mount points with blanks.
[[nodiscard]] QList<DfUsage> parseDf(const QString& output);

/// Overwrites sizes and usage of the device by df's.
void applyDfUsage(BlockDeviceInfo& device, const DfUsage& usage);
