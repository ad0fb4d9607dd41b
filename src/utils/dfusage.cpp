// SPDX-License-Identifier: GPL-3.0-or-later
#include "dfusage.h"

#include "utils/blockdeviceinfo.h"

#include <QStringList>

QList<DfUsage> parseDf(const QString& output)
{
    constexpr qsizetype columns = 7;
    QList<DfUsage> usages;
    const QStringList lines = output.split(u'\n');
    for (const QString& line : lines) {
        const QStringList words = line.trimmed().split(u' ', Qt::SkipEmptyParts);
        if (words.size() == columns) {
            usages.append({words[0], words[2].trimmed().toLongLong(), words[3].trimmed().toLongLong(),
                words[4].trimmed().toLongLong(), words[5]});
        }
    }
    return usages;
}

void applyDfUsage(BlockDeviceInfo& device, const DfUsage& usage)
{
    device.size = usage.size;
    device.fsUsed = usage.used;
    device.fsAvail = usage.avail;
    device.usage = usage.usage;
}
