// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QList>
#include <QString>
#include <QStringList>

/// One backup found on disk.
struct BackupFileInfo
{
    QString backupUUID; ///< the partition that holds it
    QString backupPath; ///< its directory relative to that partition's root, as recorded
    QString backupTime; ///< day for display, "yyyy/MM/dd" in local time
    QString createTime; ///< decimal seconds since the epoch, as recorded
};

/// One line of the backup record: when a backup was made and where it lies on its partition.
struct RecordedBackup
{
    QString createTime; ///< decimal seconds since the epoch, as recorded
    QString directory;  ///< relative to the partition's root, as recorded, with or without a leading "/"
};

/// The recorded backups of one partition, by the text of their creation times.
struct RecordedPartition
{
    QString uuid;
    QList<RecordedBackup> backups;
};

/// The images and archives in one backup directory.
struct BackupFiles
{
    QStringList images;   ///< entries "*.kim"
    QStringList archives; ///< entries "*.tar"

    /// Whether they make a backup: at least one image and exactly the two archives.
    [[nodiscard]] bool isComplete() const;
};

/// The backups that a record file ("savePath.json") names, by partition UUID in key order; empty for what is no JSON
/// object. A directory that is no text or that climbs out of its partition with ".." is left out.
[[nodiscard]] QList<RecordedPartition> parseBackupRecord(const QByteArray& json);

/// The recorded directory under the mount point of its partition, with exactly one slash between the two.
[[nodiscard]] QString backupDirectory(const QString& mountPoint, const QString& recordedDirectory);

/// What the directory holds, in the order of its listing; nothing for an empty path.
[[nodiscard]] BackupFiles listBackupFiles(const QString& directory);

/// A recorded creation time as the local day, "yyyy/MM/dd"; what is no unsigned 32-bit number counts as 0, in 1970.
[[nodiscard]] QString backupDay(const QString& createTime);

/// Puts the newest backup first; backups of equal time are in no particular order.
void sortNewestFirst(QList<BackupFileInfo>& list);
