// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/savedbackups.h"

#include "gui/tasks/taskarguments.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

QList<BackupRecordEntry> parseBackupRecord(const QByteArray& json)
{
    QList<BackupRecordEntry> entries;
    const QJsonObject partitions = QJsonDocument::fromJson(json).object();
    for (auto partition = partitions.begin(); partition != partitions.end(); ++partition) {
        const QJsonObject backups = partition->toObject();
        for (auto backup = backups.begin(); backup != backups.end(); ++backup) {
            const QString directory = backup->toString();
            if (!leadsUpwards(directory))
                entries.append({partition.key(), backup.key(), directory});
        }
    }
    return entries;
}

QString joinedPath(const QString& mountPoint, const QString& directory)
{
    QString path = mountPoint;
    while (path.endsWith(u'/'))
        path.chop(1);
    const qsizetype begin =
        std::distance(directory.begin(), std::ranges::find_if(directory, [](QChar c) { return c != u'/'; }));
    return path + u'/' + directory.mid(begin);
}

void sortNewestFirst(QList<SavedBackup>& backups)
{
    std::ranges::stable_sort(backups, std::ranges::greater{}, [](const SavedBackup& b) { return b.first.toUInt(); });
}
