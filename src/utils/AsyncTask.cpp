// SPDX-License-Identifier: GPL-3.0-or-later
#include "AsyncTask.h"

#include "Device.h"
#include "backuplistjson.h"
#include "bootenvironment.h"
#include "fsck.h"
#include "fstabuuids.h"
#include "installedversion.h"
#include "partitionchecklist.h"
#include "utils.h"

#include "utils/core/command.h"

#include <QDebug>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>

#include <array>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

QString jsonText(const QJsonObject& object)
{
    return QString::fromUtf8(QJsonDocument(object).toJson(QJsonDocument::Indented));
}

/// Deliberate: the first list that a worker collects serves the process for its whole life.
const QStringList& systemUuids(const FSTabInfoList& fstab)
{
    static const QStringList uuids = collectFstabUUIDs(fstab);
    return uuids;
}

bool isLiveSystem(int kind)
{
    return kind == static_cast<int>(BootEnvironment::LiveSystem)
        || kind == static_cast<int>(BootEnvironment::RecoveryLive);
}

} // namespace

AsyncTask::AsyncTask(int mode)
    : m_mode(mode)
{ }

AsyncTask::~AsyncTask()
{
    stop();
    wait();
}

void AsyncTask::run()
{
    using Job = void (AsyncTask::*)();
    static constexpr std::array<std::pair<Mode, Job>, 5> jobs{{
        {FixPartition, &AsyncTask::fixPartition},
        {PartitionCheckList, &AsyncTask::getPartitionCheckItems},
        {WaitForRestoreGui, &AsyncTask::waitForStartedFlag},
        {LiveRestorePage, &AsyncTask::initLiveRestorePageInfo},
        {SystemRepairTool, &AsyncTask::initSystemRepairToolPage},
    }};
    for (const auto& [jobMode, job] : jobs) {
        if (jobMode == m_mode) {
            (this->*job)();
        }
    }
}

void AsyncTask::fixPartition()
{
    QString output;
    QString error;
    if (Utils::fixPartitionByFsck(m_devicePath, output, error)) {
        Q_EMIT
        fixPartitionSuccess();
    } else {
        Q_EMIT
        fixPartitionFailed(error);
    }
}

void AsyncTask::getPartitionCheckItems()
{
    // Deliberate: a kind that nobody set stays -1.
    if (m_bootEnvKind != static_cast<int>(BootEnvironment::Unknown)) {
        m_bootEnvKind = Utils::getBootEnvironment(u"/etc/fstab"_s);
    }
    QList<Utils::BlkIdInfo> blkidList;
    QString error;
    QList<PartitionCheckItem> items;
    if (Utils::getBlkIdInfoList(blkidList, error)) {
        GetPartitionCheckItemList(items, m_bootEnvKind, blkidList);
    }
    QJsonArray array;
    for (const PartitionCheckItem& item : std::as_const(items)) {
        array.append(item.toJson());
    }
    Q_EMIT
    getPartitionCheckItemFinish(jsonText({{u"PartitionCheckItemList"_s, array}}));
}

bool AsyncTask::GetPartitionCheckItemList(
    QList<PartitionCheckItem>& items, int kind, const QList<Utils::BlkIdInfo>& blkidList)
{
    const PartitionCheckCandidates candidates = choosePartitionsToCheck(blkidList);
    for (PartitionCheckItem item : candidates.fileSystems) {
        if (Utils::checkPartitionErrorByFsck(item.devicePath)) {
            item.status = -1;
            const QString text = u"partition error, devicePath: "_s + item.devicePath + u", uuid: "_s + item.uuid;
            qWarning().noquote() << text;
        }
        items.append(item);
    }
    if (!isLiveSystem(kind)) {
        if (!loadSystemFstab()) {
            qWarning() << "GetPartitionCheckItemList rootMountPoint isEmpty";
            return false;
        }
        classifyPartitions(items, systemUuids(m_fstabList), m_fstabList);
    }
    items += candidates.blanks;
    return true;
}

QString AsyncTask::fstabPath() const
{
    return m_rootMountPoint + (m_rootMountPoint.endsWith(u'/') ? u"etc/fstab"_s : u"/etc/fstab"_s);
}

/// @return false when the installed system's root is not mounted and cannot be
bool AsyncTask::loadSystemFstab()
{
    if (m_rootMountPoint.isEmpty()) {
        m_rootMountPoint = Utils::mountDeviceByUUID(m_systemUUID);
        m_mountedByMe = !m_rootMountPoint.isEmpty();
    }
    if (m_rootMountPoint.isEmpty()) {
        return false;
    }
    if (m_fstabList.isEmpty()) {
        m_fstabList = FSTab::getFSTabFromFile(fstabPath());
    }
    if (m_mountedByMe) {
        Utils::umountDeviceByUUID(m_systemUUID);
        m_mountedByMe = false;
        m_rootMountPoint.clear();
    }
    return true;
}

void AsyncTask::waitForStartedFlag()
{
    QFile startedFlag(u"/home/kestro/kestro-recovery-gui.startedFlag"_s);
    while (!m_stopFlag) {
        if (!startedFlag.exists()) {
            sleep(1);
            continue;
        }
        m_stopFlag = true;
        startedFlag.remove();
        sleep(3);
        Q_EMIT
        showSystemRestoreFinish();
    }
}

void AsyncTask::initLiveRestorePageInfo()
{
    const QString mountPoint = Utils::mountDeviceByUUID(m_systemUUID);
    m_rootMountPoint = mountPoint.isEmpty() ? u"/"_s : mountPoint;

    RestoreBaseInfo info;
    addSystemFacts(info);
    addRecoveryFacts(info);
    const QString data = jsonText(info.toJson());
    qDebug() << "RestoreBaseInfo data: " << data;
    Utils::umountDeviceByUUID(m_systemUUID);
    Q_EMIT
    initLiveRestorePageFinish(data);
}

void AsyncTask::addSystemFacts(RestoreBaseInfo& info)
{
    info.osType = installedEdition(m_rootMountPoint);
    info.osVersion = installedMinorVersion(m_rootMountPoint);
    info.isDeviceOS = info.osType == "Device"_L1;
    m_fstabList = FSTab::getFSTabFromFile(fstabPath());
    m_fstabUUIDs = collectFstabUUIDs(m_fstabList);
    info.isLvm = Device::isLvm(m_fstabUUIDs, info.isEncrypted, info.isFileManagerEncrypted);
}

void AsyncTask::addRecoveryFacts(RestoreBaseInfo& info)
{
    QList<BackupFileInfo> backups;
    m_recoveryUUID = Utils::getRecoveryUUID(m_rootMountPoint);
    info.recoveryUUID = m_recoveryUUID;
    const QString mountPoint = m_recoveryUUID.isEmpty() ? QString() : Utils::mountDeviceByUUID(m_recoveryUUID);
    if (!mountPoint.isEmpty()) {
        const QString backupDir = u"%1/backup"_s.arg(mountPoint);
        info.isExitsInitBackup = Utils::hasImages(backupDir);
        QJsonObject task;
        if (Utils::getRecoveryJsonInfo(task, backupDir + u"/recovery.json"_s)) {
            info.recoveryInfo = jsonText(task);
        }
        Utils::getHistoryBackup(backups, backupDir + u"/savePath.json"_s, true);
        Utils::umountDeviceByUUID(m_recoveryUUID);
    }
    info.backupInfo = jsonText(backupListToJson(backups));
}

void AsyncTask::initSystemRepairToolPage()
{
    const QString command = u"/usr/bin/kestro-repair-pkexec"_s;
    QString output;
    QString error;
    const bool succeeded = SpawnCmd(command, {}, output, error);
    const QString result = succeeded ? u"true"_s : u"false"_s;
    const QString outcome = u"kestro-repair, cmd = "_s + command + u", ret = "_s + result + u", err = "_s + error;
    qDebug().noquote() << outcome;
    if (succeeded) {
        Q_EMIT
        initSystemRepairToolPageFinish();
        return;
    }
    const QString printed = u"kestro-repair, cmd = "_s + command + u", output = "_s + output;
    qDebug().noquote() << printed;
    Q_EMIT
    initSystemRepairToolPageFailed(error);
}
