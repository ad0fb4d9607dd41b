// SPDX-License-Identifier: GPL-3.0-or-later
#include "backuphistory.h"

#include <QDateTime>
#include <QDir>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

constexpr int archivesOfBackup = 2; // opt.tar and var.tar

/// What does not fit or is no number counts as 0.
quint32 secondsOf(const QString& createTime)
{
    return createTime.toUInt();
}

bool isInsidePartition(const QString& directory)
{
    return !directory.split(u'/').contains(".."_L1);
}

QList<RecordedBackup> parseBackups(const QJsonObject& directories)
{
    QList<RecordedBackup> backups;
    for (auto it = directories.begin(); it != directories.end(); ++it) {
        if (it->isString() && isInsidePartition(it->toString())) {
            backups.append({it.key(), it->toString()});
        }
    }
    return backups;
}

} // namespace

bool BackupFiles::isComplete() const
{
    return !images.isEmpty() && archives.size() == archivesOfBackup;
}

QList<RecordedPartition> parseBackupRecord(const QByteArray& json)
{
    const QJsonObject record = QJsonDocument::fromJson(json).object();
    QList<RecordedPartition> partitions;
    for (auto it = record.begin(); it != record.end(); ++it) {
        partitions.append({it.key(), parseBackups(it->toObject())});
    }
    return partitions;
}

QString backupDirectory(const QString& mountPoint, const QString& recordedDirectory)
{
    QString first = mountPoint;
    QString second = recordedDirectory;
    while (first.endsWith(u'/')) {
        first.chop(1);
    }
    while (second.startsWith(u'/')) {
        second.remove(0, 1);
    }
    return first + u'/' + second;
}

BackupFiles listBackupFiles(const QString& directory)
{
    // QDir takes an empty path for the working directory.
    if (directory.isEmpty()) {
        return {};
    }
    const QDir dir(directory);
    return {dir.entryList({u"*.kim"_s}), dir.entryList({u"*.tar"_s})};
}

QString backupDay(const QString& createTime)
{
    return QDateTime::fromSecsSinceEpoch(secondsOf(createTime)).toString(u"yyyy/MM/dd"_s);
}

void sortNewestFirst(QList<BackupFileInfo>& list)
{
    std::ranges::sort(list, std::greater{}, [](const BackupFileInfo& info) { return secondsOf(info.createTime); });
}
