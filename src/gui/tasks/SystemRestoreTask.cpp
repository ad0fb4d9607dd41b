// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/SystemRestoreTask.h"

#include "gui/tasks/initialimages.h"
#include "gui/tasks/ondisk.h"
#include "utils/core/command.h"
#include "utils/utils.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QTimer>

using namespace Qt::StringLiterals;

SystemRestoreTask::SystemRestoreTask(const QJsonArray& tasks, QObject* parent)
    : RestoreTask(parent)
{
    connect(this, &Task::taskFinished, this, &SystemRestoreTask::onTaskFinished);
    QTimer::singleShot(0, this, [this, tasks] { setTasks(tasks); });
}

SystemRestoreTask::SystemRestoreTask(const bool& formatData, QObject* parent)
    : RestoreTask(parent)
    , m_refreshDataPartition(formatData)
{
    connect(this, &Task::taskFinished, this, &SystemRestoreTask::onTaskFinished);
    QTimer::singleShot(0, this, [this] { setJobs(); });
}

void SystemRestoreTask::setTasks(const QJsonArray& tasks)
{
    qDebug() << tasks;
    for (const auto& task : tasks) {
        if (task[u"command"_s].toString() == "refresh-data-partition"_L1) {
            m_refreshDataPartition = true;
        }
    }
    setJobs();
}

void SystemRestoreTask::setJobs()
{
    qDebug() << "in setJobs";
    const QString recovery = mountDeviceFromUUID(m_recoveryUUID);
    if (recovery.isEmpty()) {
        // Deliberately neither checked nor started: whoever shows the task asks isStarted() and isFailed().
        qDebug() << "recoveryMountPoint is empty";
        return;
    }
    const QString directory = u"%1/backup"_s.arg(recovery);
    for (const QString& entry : QDir(directory).entryList({u"*.kim"_s})) {
        if (!addInitialImage(directory, entry)) {
            return;
        }
    }
    beginWhenWhole();
}

void SystemRestoreTask::begin()
{
    checkJobs();
    start();
}

bool SystemRestoreTask::addInitialImage(const QString& directory, const QString& entry)
{
    const InitialImage files = initialImageOf(directory, entry);
    if (!Utils::checkImageFile(files.image)) {
        refuseBrokenFile();
        return false;
    }
    QFile info(files.info);
    if (!info.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return true;
    }
    m_systemUUID = QString::fromUtf8(info.readAll()).simplified();
    const QString target = devicePathFromUUID(m_systemUUID);
    qDebug() << "fromPath:" << files.image << "toPath:" << target;
    if (!target.isEmpty()) {
        addImageJob(files.image, target);
    }
    return true;
}

void SystemRestoreTask::refuseBrokenFile()
{
    setError(tr("There is something wrong with your initial backup file"));
}

void SystemRestoreTask::onTaskFinished()
{
    removeUserData();
    if (hasSeparateDataPartition()) {
        fixDataPartition();
    }
    resetEFI();
    reportFinished();
}

bool SystemRestoreTask::hasSeparateDataPartition() const
{
    // An unknown root partition may be the data partition as well.
    return !m_rootUUID.isEmpty() && m_dataUUID != m_rootUUID;
}

void SystemRestoreTask::fixDataPartition()
{
    const QString system = mountDeviceFromUUID(m_systemUUID);
    const QString data = mountDeviceFromUUID(m_dataUUID);
    if (system.isEmpty() || data.isEmpty()) {
        qDebug() << "system or data uuid is empty!";
        return;
    }
    qDebug() << "system mount point:" << system << "data mount point:" << data;
    if (system == data) {
        qWarning() << "the last initial image is the data partition's own, 'opt' and 'var' stay!";
        return;
    }
    if (!QDir(u"%1/var"_s.arg(system)).exists() && !QDir(u"%1/opt"_s.arg(system)).exists()) {
        qWarning() << "the last initial image holds no 'opt' and 'var', those in the data partition stay!";
        return;
    }
    deleteOptAndVar(data);
    qDebug() << "start cp 'opt' and 'var' directory:";
    const QString destination = u"%1/"_s.arg(data);
    const bool hasVar = SpawnCmd(u"sudo"_s, {u"cp"_s, u"-a"_s, u"%1/var"_s.arg(system), destination});
    const bool hasOpt = SpawnCmd(u"sudo"_s, {u"cp"_s, u"-a"_s, u"%1/opt"_s.arg(system), destination});
    if (hasVar && hasOpt && hasReachedDisk(destination)) {
        deleteOptAndVar(system);
    } else {
        qWarning() << "failed to cp 'opt' and 'var', they stay in the system partition!";
    }
    qDebug() << "fix data partition end!";
}
