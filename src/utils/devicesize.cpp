// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicesize.h"

#include <QStringList>

std::optional<qint64> parseDeviceSize(const QString& output, const QString& devicePath)
{
    for (const QString& line : output.split(u'\n')) {
        const QStringList pieces = line.split(u' ', Qt::SkipEmptyParts);
        if (pieces.size() >= 2 && pieces.first().trimmed() == devicePath) {
            bool isNumber = false;
            const qint64 size = pieces.last().toLongLong(&isNumber);
            return isNumber ? std::optional(size) : std::nullopt;
        }
    }
    return std::nullopt;
}
