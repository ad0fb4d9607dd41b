// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/core/applicationproperties.h"

#include <QByteArray>
#include <QList>
#include <QString>

/// One entry of the record of manual backups.
struct BackupRecordEntry
{
    QString partitionUuid;
    QString createTime; ///< decimal seconds since the epoch, as recorded
    QString directory;  ///< relative to the partition's root, as recorded
};

/// Reads the record: a JSON object keyed by partition UUID whose values map creation times to directories.
/// Empty when the text is no such object. Entries whose directory would lead out of the partition are left out.
[[nodiscard]] QList<BackupRecordEntry> parseBackupRecord(const QByteArray& json);

/// The mount point and a directory relative to it, with exactly one "/" between them.
[[nodiscard]] QString joinedPath(const QString& mountPoint, const QString& directory);

/// Sorts by creation time, newest first; a time that is no unsigned 32-bit number counts as 0. Equal times keep their
/// order.
void sortNewestFirst(QList<SavedBackup>& backups);
