// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/Task.h"
#include "gui/tasks/backupplan.h"

#include <QJsonArray>
#include <QList>
#include <QString>

/// Writes images of the system partition or of its whole disk, and archives of "opt" and "var", to a directory on
/// another partition, and checks the images that it wrote.
class BackupTask : public Task
{
    Q_OBJECT

public:
    /// Builds *and starts* the task: it may have failed before anyone can connect, see errorMessage().
    /// @param tasks the steps of the pending task
    /// @param actionType 3 to image the whole disk that holds the source partition, 4 to image the partition alone
    BackupTask(const QJsonArray& tasks, const int& actionType, QObject* parent = nullptr);

private Q_SLOTS:
    void verifyImages();

private:
    void setTasks(const QJsonArray& tasks);
    void addImageBackup(const BackupElement& element);
    void addDirectoryBackup(const BackupElement& element);
    void backupOptAndVar(const QString& sourceUuid, const QString& backupDirectory);
    void backupDataDirectory(const QString& sourceMountPoint, const QString& sourceUuid, const QString& backupDirectory,
        const QString& name);
    [[nodiscard]] ImageSource imageSource(const QString& uuid) const;
    [[nodiscard]] QString mountedDirectory(const BackupElement& element) const;
    void carryOut(const BackupPlan& plan);
    void refuseDirectory();
    void refuse();
    [[nodiscard]] bool areImagesGood() const;

    int m_actionType = 0;
    QList<BackupPlan> m_plans; ///< all steps, in order
    QString m_backupDir;       ///< the first directory that an image goes to; the images in it are checked at the end
};
