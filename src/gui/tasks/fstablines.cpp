// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/fstablines.h"

#include <QStringList>

using namespace Qt::StringLiterals;

QMap<QString, QString> parseMountPointUuids(const QString& fstab)
{
    QMap<QString, QString> uuids;
    for (const QString& line : fstab.split(u'\n')) {
        const QStringList fields = line.simplified().split(u' ');
        if (fields.size() >= 2 && fields.constFirst().startsWith("UUID"_L1)) {
            uuids.insert(fields[1], QString(fields[0]).remove("UUID="_L1));
        }
    }
    return uuids;
}

QString parseSwapUuid(const QString& fstab)
{
    for (const QString& line : fstab.split(u'\n')) {
        // Deliberate: a comment that mentions swap counts as well, and then its first word is the answer.
        if (line.contains("swap"_L1)) {
            return line.simplified().split(u' ').constFirst().split(u'=').constLast();
        }
    }
    return {};
}
