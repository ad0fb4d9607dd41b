// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "gui/tasks/imagerecord.h"
#include "gui/tasks/job.h"
#include "gui/tasks/mountoptions.h"
#include "utils/FsTab.h"
#include "utils/core/applicationproperties.h"

#include <QJsonObject>
#include <QList>
#include <QMap>
#include <QObject>
#include <QPair>
#include <QProcess>
#include <QSharedPointer>
#include <QString>
#include <QStringList>

class TreeViewModel;

/// A queue of jobs, run one after the other as child processes through "sudo", and what is known about the installed
/// system that they serve.
///
/// The instance of start-up only answers questions about the installed system; the subclasses build and run jobs.
/// Everything happens on the GUI thread, and a job runs until it ends by itself, even when its task is deleted.
class Task : public QObject
{
    Q_OBJECT

public:
    /// Inspects the installed system at once: this mounts and unmounts its root and recovery partitions.
    explicit Task(QObject* parent = nullptr);
    ~Task() override;

    /// Appends a job. Its process is a child of this task.
    void addJob(const QString& from, const QString& to, JobType type);

    /// Fails the task for good: keeps the message and emits failed(). Once failed the run never resumes.
    void setError(const QString& message);

    /// Fails the task when nothing was added to it, unless it has failed already.
    void checkJobs();

    /// Runs the next job; with none left, reports the end of all jobs. Does nothing after a failure.
    void start();

    /// Whether start() was ever called, or what comes before it is under way. A task that has neither started nor
    /// failed once its zero-delay timers have run can never report anything.
    [[nodiscard]] bool isStarted() const { return m_isStarted; }
    [[nodiscard]] bool isFailed() const { return m_isError; }

    /// The text of the latest failure, for those who connect to a task that failed while it was being made.
    [[nodiscard]] QString errorMessage() const { return m_errorMessage; }

    /// Reads and deletes the pending task file and publishes it, the recorded manual backups and whether there is an
    /// initial image, as application properties. The properties are set in every case.
    void getRecoveryJson();

    /// Keeps this run's log on the recovery partition, paths below "/home" shortened, and beside it the log of the run
    /// before; nothing when that partition cannot be mounted. May be called again when there is more to keep.
    void saveLogToRecovery();

    /// Whether the part of @p ver1 before its first "." sorts, as text, before or equal to that of @p ver2;
    /// false when either is empty.
    [[nodiscard]] bool compareVersion(const QString& ver1, const QString& ver2) const;

    /// The installed system's edition, "Professional" when unknown.
    [[nodiscard]] QString edition() const { return m_edition; }
    /// The installed system's locale as its configuration has it, quotes included; empty when unknown.
    [[nodiscard]] QString locale() const { return m_locale; }
    /// The installed system's fstab; empty when its root partition is unknown.
    [[nodiscard]] FSTabInfoList fstabEntries() const { return m_fstabEntries; }

Q_SIGNALS:
    /// All jobs have run successfully and all file systems are flushed; for the subclass, which completes the task.
    void taskFinished();
    /// The whole task is done; emitted by the subclass.
    void finished();
    /// The task failed; @p error is for the person.
    void failed(const QString& error);
    /// The percentage done. It can exceed 100 while an archive of a short mixed task is written.
    void progressChanged(int value);
    /// For handing over a filled backup list; never emitted by this class.
    void processTreeViewListItem(TreeViewModel* model);

protected:
    /// The mount point of the partition with that file-system UUID, mounted when needed; empty on failure and for an
    /// empty UUID.
    [[nodiscard]] QString mountDeviceFromUUID(const QString& uuid) const;
    void unmountDeviceFromUUID(const QString& uuid);

    /// The device node with that file-system UUID, for example "/dev/sda3"; empty when there is none.
    [[nodiscard]] QString devicePathFromUUID(const QString& uuid) const;

    /// The drive identifier and the device node of the whole disk that holds the partition with that file-system UUID;
    /// two empty strings when there is none.
    [[nodiscard]] QPair<QString, QString> diskFromUUID(const QString& uuid) const;

    /// The whole-disk device node of the first partition on the drive with that identifier; empty when there is none.
    [[nodiscard]] QString diskDeviceFromDrive(const QString& drive) const;

    /// The same for every partition on the drive, so usually the same node several times.
    [[nodiscard]] QStringList getDevicePathsFromDrive(const QString& drive) const;

    /// Mount point to UUID in the fstab of the installed system. Reads the system's minor version, too.
    QMap<QString, QString> getUUIDFromFstab();

    /// Repairs the boot loader of the installed system; failures are only logged.
    void resetGrub();
    /// Repairs the boot entry of the installed system where the system does not do so itself; failures are only logged.
    void resetEFI();

    /// Deletes "opt" and "var" under @p rootPath, also what is immutable; nothing for an empty path.
    void deleteOptAndVar(const QString& rootPath);

    /// For work before start() that will lead to it or to a failure.
    void setStarted() { m_isStarted = true; }

    /// Called before each job's process is started.
    virtual void aboutToStart(const Job& job);

    const QString m_tmpMountPath = QStringLiteral("/tmp/arx"); ///< base of temporary mount points
    const QString m_diskInfoName = ImageRecord::name;          ///< the record's name inside every image
    const QString m_diskInfoVersion = ImageRecord::version;    ///< the version of that record
    QString m_rootUUID;                                        ///< the installed system's root file system
    QString m_recoveryUUID;                                    ///< the recovery partition
    QString m_dataUUID;                                        ///< the data partition; may be the root partition
    QString m_edition = QStringLiteral("Professional");
    QString m_locale;
    FSTabInfoList m_fstabEntries;
    FSTabByUuid m_fstabByUuid;
    bool m_isUEFI = false;
    int m_osMinorVersion = 0;

private Q_SLOTS:
    void onJobFinished(int exitCode, QProcess::ExitStatus status);
    void onJobError(QProcess::ProcessError error);
    void onJobErrorOutput();
    void onCloneOutput();

private:
    void getSystemUUID();
    [[nodiscard]] QString findRootUUID() const;
    [[nodiscard]] QString findUUIDOfDevice(const QString& path) const;
    void readRecoveryUUID(const QString& rootMountPoint);
    void readDataUUID();
    [[nodiscard]] QJsonObject takeRecoveryJson(const QString& path);
    [[nodiscard]] QList<SavedBackup> findSavedBackups(const QString& recordPath);
    [[nodiscard]] float fraction() const;
    void startJob(const Job& job);
    void resetUEFIEntry(const QMap<QString, QString>& uuids);
    void resetLegacyBoot(const QMap<QString, QString>& uuids);

    QSharedPointer<QProcess> m_process; ///< of the job that runs now
    QList<Job> m_jobs;                  ///< those still to run, the current one first
    float m_currentIndex = 0;           ///< of the job that runs now, counted from 1
    float m_taskCount = 0;              ///< jobs ever added
    bool m_isError = false;
    bool m_isStarted = false;
    bool m_isFormerLogKept = false; ///< the log of the run before lies beside this one's
    QString m_errorMessage;
};
