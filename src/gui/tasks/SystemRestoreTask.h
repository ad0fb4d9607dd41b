// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/RestoreTask.h"

#include <QJsonArray>
#include <QString>

/// Puts the initial system images of the recovery partition back, then wipes the users' data or only cleans their
/// desktops, and moves "opt" and "var" to the data partition where there is a separate one.
///
/// When the recovery partition cannot be mounted the task neither starts nor fails: see Task::isStarted().
class SystemRestoreTask : public RestoreTask
{
    Q_OBJECT

public:
    /// Builds and starts the task from the steps of the pending task as soon as the event loop runs.
    SystemRestoreTask(const QJsonArray& tasks, QObject* parent = nullptr);

    /// Builds and starts the task as soon as the event loop runs.
    /// @param formatData true wipes the users' data
    SystemRestoreTask(const bool& formatData, QObject* parent = nullptr);

private Q_SLOTS:
    void onTaskFinished();

private:
    void setTasks(const QJsonArray& tasks);
    void setJobs();
    bool addInitialImage(const QString& directory, const QString& entry);
    void begin() override;
    void refuseBrokenFile() override;
    void removeUserData();
    void cleanDesktops(const QString& dataMountPoint);
    void cleanDesktop(const QString& desktop);
    void wipeUserData(const QString& dataMountPoint);
    void wipeHome(const QString& dataMountPoint);
    void wipeTopLevel(const QString& dataMountPoint);
    void wipeUnreadableNames(const QString& directory);
    [[nodiscard]] bool hasSeparateDataPartition() const;
    void fixDataPartition();
    bool forceRemove(const QString& path);
    void removeStubborn(const QString& path);
    void removeInode(const QString& directory, quint64 inode);

    bool m_refreshDataPartition = false; ///< wipe the users' data
    QString m_systemUUID;                ///< the partition that the info file of the last image names; may be empty
};
