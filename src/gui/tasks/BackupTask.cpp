// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/BackupTask.h"

#include "gui/tasks/backupcheck.h"
#include "gui/tasks/ondisk.h"
#include "gui/tasks/taskarguments.h"
#include "gui/tasks/tasktype.h"
#include "utils/core/command.h"
#include "utils/utils.h"

#include <QCoreApplication>
#include <QDebug>
#include <QDir>
#include <QJsonObject>

#include <algorithm>

using namespace Qt::StringLiterals;

BackupTask::BackupTask(const QJsonArray& tasks, const int& actionType, QObject* parent)
    : Task(parent)
    , m_actionType(actionType)
{
    setTasks(tasks);
    if (m_actionType == ManualBackup) {
        unmountDeviceFromUUID(m_dataUUID);
    }
    start();
    connect(this, &Task::taskFinished, this, &BackupTask::verifyImages);
}

void BackupTask::setTasks(const QJsonArray& tasks)
{
    for (const auto& value : tasks) {
        const QString command = value[u"command"_s].toString();
        const bool isDirectory = command == "create-backup-directory"_L1;
        if (!isDirectory && command != "create-backup-image"_L1) {
            continue;
        }
        if (isDirectory) {
            qDebug() << "set opt and var directory backup!";
        }
        const std::optional<BackupElement> element = parseBackupElement(value[u"args"_s].toArray());
        if (!element) {
            qDebug() << "args size is empty or less 3";
        } else if (isDirectory) {
            addDirectoryBackup(*element);
        } else {
            addImageBackup(*element);
        }
    }
    // A backup that will never run must not replace what the one before has left.
    if (!isFailed()) {
        std::ranges::for_each(m_plans, [this](const BackupPlan& plan) { carryOut(plan); });
    }
    checkJobs();
}

void BackupTask::addImageBackup(const BackupElement& element)
{
    const ImageSource source = imageSource(element.sourceUuid);
    if (source.device.isEmpty()) {
        qDebug() << "from path is empty";
        return;
    }
    const QString directory = mountedDirectory(element);
    if (directory.isEmpty()) {
        qDebug() << "to path is empty";
        return;
    }
    if (m_backupDir.isEmpty()) {
        m_backupDir = directory;
    }
    const BackupPlan plan = planImage(source, directory, element.imageName);
    if (wouldRelabel(plan)) {
        refuseDirectory();
    } else {
        m_plans.append(plan);
    }
}

ImageSource BackupTask::imageSource(const QString& uuid) const
{
    if (m_actionType == SystemBackup) {
        return {devicePathFromUUID(uuid), "UUID="_L1 + uuid};
    }
    const auto [drive, device] = diskFromUUID(uuid);
    // An image of a disk without a drive identifier could never be restored: its record would name nothing.
    return {drive.isEmpty() ? QString() : device, "DiskDrive="_L1 + drive};
}

QString BackupTask::mountedDirectory(const BackupElement& element) const
{
    if (leadsUpwards(element.directory) || leadsUpwards(element.imageName)) {
        return {};
    }
    const QString mountPoint = mountDeviceFromUUID(element.targetUuid);
    return mountPoint.isEmpty() ? QString() : targetDirectory(mountPoint, element.directory);
}

void BackupTask::addDirectoryBackup(const BackupElement& element)
{
    const QString directory = mountedDirectory(element);
    if (directory.isEmpty()) {
        qDebug() << "to path is empty";
    } else {
        backupOptAndVar(element.sourceUuid, directory);
    }
}

void BackupTask::backupOptAndVar(const QString& sourceUuid, const QString& backupDirectory)
{
    const QString mountPoint = mountDeviceFromUUID(sourceUuid);
    if (mountPoint.isEmpty()) {
        qDebug() << "from path is empty";
        return;
    }
    const QStringList names{u"opt"_s, u"var"_s};
    // In a mount point that holds such a name ("/media/var") tar would find another directory.
    if (!std::ranges::all_of(names, [&](const QString& name) { return isNameOnlyAtEnd(mountPoint + u'/' + name); })) {
        qWarning() << "directories cannot be told apart in" << mountPoint;
        refuse();
        return;
    }
    // A restore would clear the backup away with what it makes room in.
    if (std::ranges::any_of(
            names, [&](const QString& name) { return liesWithin(backupDirectory, mountPoint + u'/' + name); })) {
        qWarning() << "backup directory lies in what is backed up:" << backupDirectory;
        refuseDirectory();
        return;
    }
    for (const QString& name : names) {
        backupDataDirectory(mountPoint, sourceUuid, backupDirectory, name);
    }
}

void BackupTask::backupDataDirectory(
    const QString& sourceMountPoint, const QString& sourceUuid, const QString& backupDirectory, const QString& name)
{
    m_plans.append(planArchive({sourceMountPoint, sourceUuid, name}, backupDirectory));
}

void BackupTask::carryOut(const BackupPlan& plan)
{
    for (const Command& command : plan.preparations) {
        SpawnCmd(command.program, command.args);
    }
    addJob(plan.job.from, plan.job.to, plan.job.type);
}

bool BackupTask::areImagesGood() const
{
    const QStringList names = m_backupDir.isEmpty() ? QStringList() : QDir(m_backupDir).entryList({u"*.kim"_s});
    return std::ranges::all_of(
        names, [this](const QString& name) { return Utils::checkImageFile(m_backupDir + u'/' + name); });
}

void BackupTask::refuseDirectory()
{
    setError(QCoreApplication::translate(
        "ErrorType", "This directory cannot be used to store backup files, please select a different directory."));
}

void BackupTask::refuse()
{
    setError(tr("Backup error, please try again"));
}

void BackupTask::verifyImages()
{
    // Deliberate: neither a directory that is gone nor the backup of a task that has failed already is checked.
    const bool isGone = !m_backupDir.isEmpty() && !QDir(m_backupDir).exists();
    if (isFailed() || isGone || (areImagesGood() && std::ranges::all_of(m_plans, isDescribedAsPlanned))) {
        Q_EMIT
        finished();
        return;
    }
    refuse();
}
