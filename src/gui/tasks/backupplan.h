// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/job.h"

#include <QJsonArray>
#include <QList>
#include <QString>

#include <optional>

/// The arguments of one step of a pending backup.
struct BackupElement
{
    QString sourceUuid;
    QString targetUuid;
    QString directory; ///< relative to the target's mount point
    QString imageName; ///< empty for a step without images
};

/// A job that will be queued.
struct PlannedJob
{
    JobType type = JobType::Clone;
    QString from;
    QString to;
};

/// What one step does: commands that run at once, in order, and then one job.
struct BackupPlan
{
    QList<Command> preparations;
    PlannedJob job;
    QString description; ///< what the image or archive must say about itself in the end
};

/// What is imaged, and the text that says so inside the image.
struct ImageSource
{
    QString device; ///< device node of a partition or a whole disk; empty when it is not known
    QString record; ///< "UUID=…" or "DiskDrive=…"
};

/// An archive source: one directory of a partition.
struct DirectorySource
{
    QString mountPoint;
    QString uuid;
    QString name; ///< "opt" or "var"
};

/// The arguments of a step; nothing when there are fewer than three.
[[nodiscard]] std::optional<BackupElement> parseBackupElement(const QJsonArray& args);

/// Where a step writes to; always ends in "/". The directory follows the mount point as it is.
[[nodiscard]] QString targetDirectory(const QString& targetMountPoint, const QString& directory);

/// One image with its record. The record is registered before the image is written: the image tool takes it up then.
/// @param directory as targetDirectory() gives it
[[nodiscard]] BackupPlan planImage(const ImageSource& source, const QString& directory, const QString& imageName);

/// One archive that begins with its description.
/// @param directory as targetDirectory() gives it
[[nodiscard]] BackupPlan planArchive(const DirectorySource& source, const QString& directory);
