// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/ManualRestoreTask.h"

#include "gui/tasks/blockdevices.h"
#include "gui/tasks/datainfo.h"
#include "gui/tasks/fstablines.h"
#include "gui/tasks/ondisk.h"
#include "gui/tasks/restorerules.h"
#include "gui/tasks/taskarguments.h"
#include "platform/udisks/VBlockDevice.h"
#include "utils/core/command.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QThread>
#include <QTimer>

#include <algorithm>

using namespace Qt::StringLiterals;

ManualRestoreTask::ManualRestoreTask(const QJsonArray& tasks, QObject* parent)
    : RestoreTask(parent)
{
    QTimer::singleShot(0, this, [this, tasks] { setTasks(tasks); });
    connect(this, &Task::taskFinished, this, &ManualRestoreTask::onTaskFinished);
}

ManualRestoreTask::ManualRestoreTask(const QString& fromPath, QObject* parent)
    : RestoreTask(parent)
    , m_fromPath(fromPath)
{
    // Deliberately without checkJobs(): a directory that holds nothing to restore is restored at once.
    m_checksJobs = false;
    QTimer::singleShot(0, this, [this] {
        setJobs(m_fromPath);
        beginWhenComplete();
    });
    connect(this, &Task::taskFinished, this, &ManualRestoreTask::onTaskFinished);
}

void ManualRestoreTask::setTasks(const QJsonArray& tasks)
{
    for (const auto& task : tasks) {
        // A restore that will never run must not make room for itself.
        if (isFailed()) {
            break;
        }
        if (task[u"command"_s].toString() != "restore-partitions"_L1) {
            continue;
        }
        const QJsonArray args = task[u"args"_s].toArray();
        const QString directory = args[1].toString(); // args[2], the system that was backed up, decides nothing
        const QString mountPoint = mountDeviceFromUUID(uuidOfArgument(args[0].toString()));
        const bool isInside = !mountPoint.isEmpty() && !leadsUpwards(directory);
        m_fromPath = isInside ? mountPoint + directory : QString();
        setJobs(m_fromPath);
    }
    beginWhenComplete();
}

void ManualRestoreTask::beginWhenComplete()
{
    if (!isFailed() && wouldLoseFiles()) {
        refuseBrokenFile();
    }
    beginWhenWhole();
}

// Room is made in both directories, whatever the archives hold and wherever they lie: of half a backup only half would
// come back, and nothing of one that is cleared away itself.
bool ManualRestoreTask::wouldLoseFiles() const
{
    constexpr auto everything = QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot;
    for (const QString& mountPoint : m_mountsToClear) {
        for (const QString& name : {u"opt"_s, u"var"_s}) {
            const QString directory = mountPoint + u'/' + name;
            if (!m_restored.contains(directory) && !QDir(directory).isEmpty(everything)) {
                qWarning() << "no archive brings back:" << directory;
                return true;
            }
            if (std::ranges::any_of(m_sources, [&](const QString& source) { return liesWithin(source, directory); })) {
                qWarning() << "the backup lies in:" << directory;
                return true;
            }
        }
    }
    return false;
}

void ManualRestoreTask::begin()
{
    if (m_checksJobs) {
        checkJobs();
    }
    start();
}

void ManualRestoreTask::setJobs(const QString& fromPath)
{
    qDebug() << "setJobs from path:" << fromPath;
    QDir directory(fromPath);
    directory.setFilter(QDir::Files | QDir::NoSymLinks | QDir::NoDotAndDotDot);
    // An empty path would be the working directory.
    const bool exists = !fromPath.isEmpty() && directory.exists();
    m_sources.append(fromPath);
    if (!exists) {
        qDebug() << "dir is not exist : " << fromPath;
    }
    for (const QString& name : exists ? directory.entryList({u"*.kim"_s}) : QStringList()) {
        const QString filePath = directory.path() + u'/' + name;
        qDebug() << "filePath:" << filePath;
        if (!addImage(filePath)) {
            return;
        }
    }
    if (m_diskDrive.isEmpty()) {
        addArchives(directory.path(), exists ? directory.entryList({u"*.tar"_s}) : QStringList());
    } else {
        unmountDrive();
    }
}

bool ManualRestoreTask::addImage(const QString& filePath)
{
    // A record that names neither a disk nor a partition would leave its image out without a word.
    if (!fetchImageRecord(filePath) || (m_diskDrive.isEmpty() && m_uuid.isEmpty())) {
        refuseBrokenFile();
        return false;
    }
    qDebug() << "current version:" << m_version;
    if (!m_version.isEmpty() && !compareVersion(m_version, m_diskInfoVersion)) {
        setError(tr("Your system version does not match the backup file, please update the system and restore again"));
        return false;
    }
    if ((!m_diskDrive.isEmpty() && !addDiskImage(filePath)) || (!m_uuid.isEmpty() && !addPartitionImage(filePath))) {
        refuseMismatch();
        return false;
    }
    return true;
}

void ManualRestoreTask::refuseBrokenFile()
{
    setError(tr("There is something wrong with your backup file"));
}

void ManualRestoreTask::refuseMismatch()
{
    setError(tr("Your disk info and the backup info do not match, so you cannot restore now"));
}

bool ManualRestoreTask::addDiskImage(const QString& filePath)
{
    const QString disk = targetDiskOf(filePath);
    if (disk.isEmpty()) {
        return false;
    }
    addImageJob(filePath, disk);
    return true;
}

QString ManualRestoreTask::targetDiskOf(const QString& filePath) const
{
    const QString rootDevice = RestoreRules::isSystemImage(filePath) ? devicePathFromUUID(m_rootUUID) : QString();
    QString disk = diskDeviceFromDrive(m_diskDrive);
    qDebug() << "rootDevicePath = " << rootDevice << ", devicePath = " << disk;
    if (RestoreRules::isAccepted(rootDevice, disk)) {
        return disk;
    }
    if (disk.isEmpty()) {
        return {};
    }
    const QStringList disks = getDevicePathsFromDrive(m_diskDrive);
    for (const QString& node : disks) {
        qDebug() << "getDevicePathsFromDrive, devPath = " << node << ", rootDevicePath = " << rootDevice;
    }
    return RestoreRules::lastDiskOfRoot(rootDevice, disks);
}

bool ManualRestoreTask::addPartitionImage(const QString& filePath)
{
    const QString rootDisk = diskFromUUID(m_rootUUID).second;
    const QString device = devicePathFromUUID(m_uuid);
    qDebug() << "rootDevPath = " << rootDisk << ", device_path = " << device << "m_rootUUID = " << m_rootUUID
             << ", m_uuid = " << m_uuid << ", file_path = " << filePath;
    if (device.isEmpty()) {
        return false;
    }
    if (RestoreRules::isSystemImage(filePath) && RestoreRules::isMisdirected({m_uuid, device, m_rootUUID, rootDisk})) {
        return false;
    }
    addImageJob(filePath, device);
    return true;
}

void ManualRestoreTask::unmountDrive()
{
    qDebug() << "don't restore the opt and var directory!";
    BlockDevices::forEachOnDrive(m_diskDrive, [this](VBlockDevice& device) { unmountDriveDevice(device); });
}

void ManualRestoreTask::unmountDriveDevice(VBlockDevice& device)
{
    qDebug() << "drive:" << device.drive() << "m_diskDrive:" << m_diskDrive;
    device.unmount({});
}

void ManualRestoreTask::addArchives(const QString& directory, const QStringList& names)
{
    QString mountPoint;
    for (const QString& name : names) {
        const QString archive = directory + u'/' + name;
        const DataInfo info = parseDataInfo(fetchDataInfo(archive));
        if (info.uuid.isEmpty() || info.directory.isEmpty()) {
            addArchiveToCheck(archive);
            continue;
        }
        if (!isSafeDirectory(info.directory)) {
            refuseBrokenFile();
            return;
        }
        // Computed once: all archives of a backup come from one partition.
        if (mountPoint.isEmpty()) {
            mountPoint = mountDeviceFromUUID(info.uuid);
        }
        if (mountPoint.isEmpty()) {
            refuseMismatch();
            return;
        }
        const QString target = u"%1/%2"_s.arg(mountPoint, info.directory);
        // A mount point that holds the directory's name ("/media/var") would send the archive elsewhere.
        if (!isNameOnlyAtEnd(target)) {
            refuseMismatch();
            return;
        }
        addArchiveJob(archive, target);
        m_restored.append(target);
    }
    if (!mountPoint.isEmpty()) {
        m_mountsToClear.append(mountPoint);
    }
}

// Not before the images are back: an image job that is refused or fails must not cost what is still there.
void ManualRestoreTask::aboutToStart(const Job& job)
{
    const auto mountPoint = std::ranges::find_if(
        m_mountsToClear, [&job](const QString& candidate) { return job.to.startsWith(candidate + u'/'); });
    if (job.type == JobType::TarExtract && mountPoint != m_mountsToClear.end()) {
        deleteOptAndVar(*mountPoint);
        m_mountsToClear.removeAll(QString(*mountPoint));
    }
}

void ManualRestoreTask::onTaskFinished()
{
    if (!checkFromPathIsExists()) {
        setError(tr("Cannot find the target location"));
        return;
    }
    waitForDisk();
    restoreSwapUuid();
    resetEFI();
    reportFinished();
}

bool ManualRestoreTask::checkFromPathIsExists() const
{
    const bool exists = !m_fromPath.isEmpty() && QDir(m_fromPath).exists();
    qDebug() << "backupDir:" << m_fromPath;
    qDebug() << "backupDir is exists" << (exists ? "true" : "false");
    return exists;
}

void ManualRestoreTask::waitForDisk() const
{
    constexpr int attempts = 50;
    constexpr unsigned long pause = 200; // ms
    if (m_diskDrive.isEmpty() || m_rootUUID.isEmpty()) {
        return;
    }
    // The kernel has read the restored partition table just now; the daemon that is asked hears of it a little later.
    for (int attempt = 0; attempt < attempts && devicePathFromUUID(m_rootUUID).isEmpty(); ++attempt) {
        QThread::msleep(pause);
    }
}

void ManualRestoreTask::restoreSwapUuid()
{
    qDebug() << "begin restore swap:" << m_diskDrive;
    QString swapDevice;
    QString swapUuid;
    BlockDevices::forEachOnDrive(m_diskDrive, [&](VBlockDevice& device) { lookForSwap(device, swapDevice, swapUuid); });
    if (swapDevice.isEmpty() || swapUuid.isEmpty()) {
        return;
    }
    qDebug() << "sudo mkswap" << swapDevice << "-U" << swapUuid;
    SpawnCmd(u"sudo"_s, {u"mkswap"_s, swapDevice, u"-U"_s, swapUuid});
}

void ManualRestoreTask::lookForSwap(VBlockDevice& device, QString& swapDevice, QString& swapUuid) const
{
    if (device.idType() == "swap"_L1) {
        swapDevice = device.device();
        qDebug() << "Swap file path:" << swapDevice;
        return;
    }
    const QString uuid = swapUuidOn(device);
    if (swapUuid.isEmpty()) {
        swapUuid = uuid;
    }
}

QString ManualRestoreTask::swapUuidOn(VBlockDevice& device) const
{
    device.setWatchChanges(true);
    device.mount({});
    const QString mountPoint = BlockDevices::mountPointOf(device);
    QFile fstab(u"%1/etc/fstab"_s.arg(mountPoint));
    if (mountPoint.isEmpty() || !fstab.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return {};
    }
    qDebug() << "find fstab!";
    QString uuid = parseSwapUuid(QString::fromUtf8(fstab.readAll()));
    if (!uuid.isEmpty()) {
        qDebug() << "swap uuid:" << uuid;
    }
    return uuid;
}
