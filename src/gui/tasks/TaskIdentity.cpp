// SPDX-License-Identifier: GPL-3.0-or-later
// Task: which installed system is served, what the pending task is, and where the log of this run is kept.
#include "gui/tasks/Task.h"

#include "gui/tasks/rootparameter.h"
#include "utils/backuphistory.h"
#include "utils/core/applicationproperties.h"
#include "utils/core/command.h"
#include "utils/installedversion.h"
#include "utils/utils.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <optional>

using namespace Qt::StringLiterals;

namespace {

std::optional<QByteArray> contentOf(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return std::nullopt;
    }
    return file.readAll();
}

quint32 secondsOf(const SavedBackup& backup)
{
    return backup.first.toUInt(); // 0 for what is no unsigned 32-bit number
}

} // namespace

void Task::getSystemUUID()
{
    m_rootUUID = findRootUUID();
    qDebug() << "Root UUID:" << m_rootUUID;
    const QString root = mountDeviceFromUUID(m_rootUUID);
    // Without a mount point these would be the files of this environment.
    if (!root.isEmpty()) {
        m_fstabEntries = FSTab::getFSTabFromFile(root + (root.endsWith(u'/') ? "etc/fstab"_L1 : "/etc/fstab"_L1));
        m_edition = installedEdition(root);
    }
    readRecoveryUUID(root);
    m_fstabByUuid = fstabByUuid(m_fstabEntries);
    const QString efiPath = u"/sys/firmware/efi"_s;
    m_isUEFI = QFileInfo::exists(efiPath);
    qInfo() << "efiPath = " << efiPath << ", m_isUEFI = " << (m_isUEFI ? "true" : "false");
    if (!root.isEmpty()) {
        Utils::getSystemLocale(root, m_locale);
    }
    unmountDeviceFromUUID(m_rootUUID);
    readDataUUID();
}

QString Task::findRootUUID() const
{
    const RootParameter root = parseRootParameter(contentOf(u"/proc/cmdline"_s).value_or(QByteArray()));
    return root.device.isEmpty() ? root.uuid : findUUIDOfDevice(root.device);
}

QString Task::findUUIDOfDevice(const QString& path) const
{
    QString target = path;
    if (const QFileInfo info(path); info.isSymLink()) {
        target = info.symLinkTarget();
        qDebug() << "mapperTarget=" << target;
    }
    QString uuid;
    const QDir links(u"/dev/disk/by-uuid"_s);
    for (const QFileInfo& link : links.entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot)) {
        const QString linkTarget = link.symLinkTarget();
        qDebug() << "uuidTarget=" << linkTarget;
        if (linkTarget == target) {
            uuid = link.fileName();
        }
    }
    return uuid;
}

void Task::readRecoveryUUID(const QString& rootMountPoint)
{
    const QString recoveryPath = u"%1/etc/kestro/system-recovery.conf"_s.arg(rootMountPoint);
    if (!QFileInfo::exists(recoveryPath)) {
        qCritical() << "recoveryPath not exist!, recoveryPath: " << recoveryPath;
        // A root that has lost its files is what the initial images are for: the recovery system knows where it came
        // from.
        m_recoveryUUID = Utils::getRecoveryUUID({});
    } else {
        m_recoveryUUID = Utils::getRecoveryUUID(rootMountPoint);
    }
    qDebug() << "recovery UUID:" << m_recoveryUUID;
}

void Task::readDataUUID()
{
    const QString recovery = mountDeviceFromUUID(m_recoveryUUID);
    // An unmounted recovery partition must not make the "/backup" of this environment its own.
    const auto info = recovery.isEmpty() ? std::nullopt : contentOf(u"%1/backup/_nox_data.info"_s.arg(recovery));
    m_dataUUID = QString::fromUtf8(info.value_or(QByteArray())).simplified();
    qDebug() << "data UUID:" << m_dataUUID;
    unmountDeviceFromUUID(m_recoveryUUID);
}

void Task::getRecoveryJson()
{
    QJsonObject recoveryJson;
    QList<SavedBackup> savedBackups;
    bool isHaveInitBackup = false;
    // As in readDataUUID().
    if (const QString recovery = mountDeviceFromUUID(m_recoveryUUID); !recovery.isEmpty()) {
        isHaveInitBackup = Utils::hasImages(u"%1/backup"_s.arg(recovery));
        recoveryJson = takeRecoveryJson(u"%1/backup/recovery.json"_s.arg(recovery));
        savedBackups = findSavedBackups(u"%1/backup/savePath.json"_s.arg(recovery));
    }
    unmountDeviceFromUUID(m_recoveryUUID);
    qDebug() << "isHaveInitBackup:" << (isHaveInitBackup ? "true" : "false");
    ApplicationProperties::setSavePathJson(savedBackups);
    ApplicationProperties::setHaveInitBackup(isHaveInitBackup);
    ApplicationProperties::setRecoveryJson(recoveryJson);
}

QJsonObject Task::takeRecoveryJson(const QString& path)
{
    const std::optional<QByteArray> json = contentOf(path);
    if (!json) {
        return {};
    }
    // Deleted whether it parses or not: a pending task runs once, and a broken one must not come back at every start.
    qDebug() << "delete file: " << path;
    SpawnCmd(u"sudo"_s, {u"rm"_s, u"-f"_s, path});
    if (QFileInfo::exists(path)) {
        // It would come back at every start.
        qCritical() << "pending task cannot be deleted, it is not carried out:" << path;
        return {};
    }
    return QJsonDocument::fromJson(*json).object();
}

QList<SavedBackup> Task::findSavedBackups(const QString& recordPath)
{
    QList<SavedBackup> backups;
    for (const RecordedPartition& partition : parseBackupRecord(contentOf(recordPath).value_or(QByteArray()))) {
        const QString mountPoint = Utils::mountDeviceByUUID(partition.uuid);
        if (mountPoint.isEmpty()) {
            continue;
        }
        for (const RecordedBackup& backup : partition.backups) {
            backups.append({backup.createTime, backupDirectory(mountPoint, backup.directory)});
        }
    }
    std::ranges::stable_sort(backups, std::ranges::greater{}, secondsOf);
    return backups;
}

void Task::saveLogToRecovery()
{
    const QString recovery = mountDeviceFromUUID(m_recoveryUUID);
    const QString log = ApplicationProperties::logFile();
    if (recovery.isEmpty() || log.isEmpty()) {
        return;
    }
    const QString saved = u"%1/kestro-recovery-gui.log"_s.arg(recovery);
    const QString former = u"%1/kestro-recovery-gui-old.log"_s.arg(recovery);
    // Once: what lies there afterwards is this run's own, and would push the log of the run before out.
    if (!m_isFormerLogKept && QFileInfo::exists(saved)) {
        SpawnCmd(u"sudo"_s, {u"cp"_s, u"-a"_s, saved, former});
    }
    m_isFormerLogKept = true;
    // Deliberately greedy: on each line all between the first "/home/" and the last "/" goes.
    SpawnCmd(u"sudo"_s, {u"sed"_s, u"-i"_s, uR"(s?\/home\/.*\/?\/home\/xxx\/?g)"_s, log});
    SpawnCmd(u"sudo"_s, {u"cp"_s, u"-a"_s, log, u"%1/"_s.arg(recovery)});
    unmountDeviceFromUUID(m_recoveryUUID);
    qDebug() << "saved log to recovery gui";
}

bool Task::compareVersion(const QString& ver1, const QString& ver2) const
{
    if (ver1.isEmpty() || ver2.isEmpty()) {
        qDebug() << "ver1 or ver2 is empty, can not compare!";
        return false;
    }
    // Deliberate: only the first parts, as text. "2" is not up to "10", "20.1" is up to "3.0".
    return ver1.simplified().split(u'.').constFirst() <= ver2.simplified().split(u'.').constFirst();
}
