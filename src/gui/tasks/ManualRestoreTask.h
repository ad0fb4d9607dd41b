// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/RestoreTask.h"

#include <QJsonArray>
#include <QString>
#include <QStringList>

class VBlockDevice;

/// Restores a backup directory: proves first that every image in it belongs to this machine, then writes the images
/// and extracts the archives.
class ManualRestoreTask : public RestoreTask
{
    Q_OBJECT

public:
    /// Builds and starts the task from the steps of the pending task as soon as the event loop runs.
    ManualRestoreTask(const QJsonArray& tasks, QObject* parent = nullptr);

    /// Builds and starts the task for one backup directory, given by its absolute path, as soon as the event loop runs.
    ManualRestoreTask(const QString& fromPath, QObject* parent = nullptr);

private Q_SLOTS:
    void onTaskFinished();

private:
    void setTasks(const QJsonArray& tasks);
    void setJobs(const QString& fromPath);
    bool addImage(const QString& filePath);
    bool addDiskImage(const QString& filePath);
    bool addPartitionImage(const QString& filePath);
    void addArchives(const QString& directory, const QStringList& names);
    void beginWhenComplete();
    [[nodiscard]] bool wouldLoseFiles() const;
    void begin() override;
    void refuseBrokenFile() override;
    void refuseMismatch();
    void unmountDrive();
    void unmountDriveDevice(VBlockDevice& device);
    void aboutToStart(const Job& job) override;
    [[nodiscard]] QString targetDiskOf(const QString& filePath) const;
    bool fetchImageRecord(const QString& filePath);
    bool fetchDiskInfo(const QString& filePath);
    [[nodiscard]] QString fetchDataInfo(const QString& archive) const;
    [[nodiscard]] bool checkFromPathIsExists() const;
    void waitForDisk() const;
    void restoreSwapUuid();
    void lookForSwap(VBlockDevice& device, QString& swapDevice, QString& swapUuid) const;
    [[nodiscard]] QString swapUuidOn(VBlockDevice& device) const;

    bool m_checksJobs = true;    ///< an empty list is a failure
    QString m_diskDrive;         ///< drive of the last image; a description of one line sets only what it names
    QString m_uuid;              ///< partition of the last image; likewise
    QString m_version;           ///< version of the last record
    QString m_fromPath;          ///< the backup directory
    QStringList m_mountsToClear; ///< where "opt" and "var" make room for what the archives hold
    QStringList m_restored;      ///< the directories that the archives bring back
    QStringList m_sources;       ///< all backup directories
};
