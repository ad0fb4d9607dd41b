// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils.h"

#include "FsTab.h"
#include "bootenvironment.h"
#include "devicelinks.h"
#include "devicesize.h"
#include "systemlocale.h"
#include "uuidmount.h"

#include "platform/udisks/VBlockDevice.h"
#include "utils/core/command.h"
#include "utils/core/inifile.h"

#include <QDebug>
#include <QDir>
#include <QFile>
#include <QJsonDocument>
#include <QStorageInfo>
#include <QUuid>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace Utils {

namespace {

QByteArray readFile(const QString& path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

QString trimmedOutput(const QString& program, const QStringList& args)
{
    QString output;
    return SpawnCmd(program, args, output) ? output.trimmed() : QString();
}

bool isProcessId(const QString& text)
{
    return !text.isEmpty() && std::ranges::all_of(text, [](QChar c) { return c >= u'0' && c <= u'9'; });
}

/// Deliberate: read once and kept for the whole process.
const FSTabInfoList& runningSystemFstab()
{
    static const FSTabInfoList fstab = FSTab::getFSTabFromFile(u"/etc/fstab"_s);
    return fstab;
}

} // namespace

bool getBlkIdInfoList(QList<BlkIdInfo>& list, QString& error)
{
    QString out;
    QString blkidError;
    const bool succeeded = SpawnCmd(u"/bin/bash"_s, {u"-c"_s, u"sudo blkid"_s}, out, blkidError);
    error += blkidError;
    if (!succeeded) {
        qDebug() << "getBlkid failed, error: " << blkidError;
        return false;
    }
    QList<BlkIdInfo> found;
    for (const QString& piece : out.split(u'\n', Qt::SkipEmptyParts)) {
        const QString line = piece.trimmed();
        qDebug() << "getBlkIdInfoList line: " << line;
        found.append(parseBlkIdLine(line));
    }
    list += found;
    if (!hasLvmMember(found)) {
        return true;
    }
    QString lvmOutput;
    QString lvmError;
    const QString listLinks = u"ls -l /dev/mapper/ | grep dm- | awk '{print $9}'"_s;
    const bool isListed = SpawnCmd(u"/bin/bash"_s, {u"-c"_s, listLinks}, lvmOutput, lvmError);
    error += lvmError;
    if (!isListed) {
        qWarning() << "ls -l /dev/mapper/ failed, error: " << lvmError;
        return true;
    }
    qDebug() << "lvmOutput: " << lvmOutput;
    for (const QString& path : unlistedMapperPaths(found, lvmOutput)) {
        BlkIdInfo volume;
        volume.devicePath = path;
        list.append(volume);
    }
    return true;
}

bool getCmdLineInfo(CmdLineInfo& info)
{
    QFile file(u"/proc/cmdline"_s);
    if (!file.exists()) {
        qDebug() << "getCmdLineInfo /proc/cmdline not exists!";
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << "getCmdLineInfo open /proc/cmdline failed";
        return false;
    }
    for (const KernelParameter& parameter : parseKernelParameters(file.readAll())) {
        if (!parameter.isDevicePath) {
            info.*parameter.field = parameter.value;
            continue;
        }
        const LinkedDevice device = resolveDeviceLink(parameter.value);
        if (!device.target.isEmpty()) {
            qDebug() << "getCmdLineInfo mapperTarget=" << device.target;
        }
        if (!device.uuid.isEmpty()) {
            info.rootUuid = device.uuid;
            qDebug() << "getCmdLineInfo uuidTarget=" << device.uuid;
        }
    }
    return true;
}

bool getLiveRootUUIDAndBootTypeByCmdLine(QString& uuid, QString& bootType)
{
    uuid.clear();
    bootType.clear();
    QFile file(u"/proc/cmdline"_s);
    if (!file.exists()) {
        qDebug() << "getLiveRootUUIDByCmdLine /proc/cmdline not exists!";
        return false;
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug() << "getLiveRootUUIDByCmdLine open /proc/cmdline failed";
        return false;
    }
    for (const KernelParameter& parameter : parseKernelParameters(file.readAll())) {
        if (parameter.field == &CmdLineInfo::bootFrom) {
            bootType = parameter.value;
        } else if (parameter.isDevicePath) {
            const LinkedDevice device = resolveDeviceLink(parameter.value);
            if (!device.target.isEmpty()) {
                qDebug() << "getLiveRootUUIDByCmdLine mapperTarget=" << device.target;
            }
            if (!device.uuid.isEmpty()) {
                uuid = device.uuid;
                qDebug() << "getLiveRootUUIDByCmdLine uuidTarget=" << device.uuid;
            }
        } else if (parameter.field == &CmdLineInfo::rootUuid) {
            uuid = parameter.value;
        }
        if (!uuid.isEmpty() && !bootType.isEmpty()) {
            break;
        }
    }
    return true;
}

int getBootEnvironment(const QString& fstabFile)
{
    CmdLineInfo info;
    if (!getCmdLineInfo(info)) {
        return static_cast<int>(BootEnvironment::Unknown);
    }
    const bool needsFstab = !isLiveBoot(info) && !info.rootUuid.isEmpty();
    const FSTabInfoList fstab = needsFstab ? FSTab::getFSTabFromFile(fstabFile) : FSTabInfoList();
    return static_cast<int>(bootEnvironment(info, fstab));
}

bool getSystemLocale(const QString& rootDir, QString& locale)
{
    const auto found = readSystemLocale(rootDir.endsWith(u'/') ? rootDir : rootDir + u'/');
    locale = found.value_or(locale);
    return found.has_value();
}

void getHistoryBackup(QList<BackupFileInfo>& list, const QString& recordFile, bool umountAfter)
{
    QList<QPair<QString, QString>> mountedHere;
    for (const RecordedPartition& partition : parseBackupRecord(readFile(recordFile))) {
        const auto device = findBlockDevice(partition.uuid);
        const DeviceMount mount = device ? mountBlockDevice(*device) : DeviceMount();
        if (mount.mountPoint.isEmpty()) {
            continue;
        }
        if (mount.isMountedNow) {
            mountedHere.append({partition.uuid, mount.mountPoint});
        }
        for (const RecordedBackup& backup : partition.backups) {
            // Deliberately without a slash of our own: the backup was written to just this place.
            const QString backupFilePath = mount.mountPoint + backup.directory;
            const BackupFiles files = listBackupFiles(backupFilePath);
            qInfo() << "backupFilePath = " << backupFilePath << ", kimList = " << files.images
                    << ", tarFileList = " << files.archives;
            if (files.isComplete()) {
                list.append({partition.uuid, backup.directory, backupDay(backup.createTime), backup.createTime});
            }
        }
    }
    sortNewestFirst(list);
    if (!umountAfter) {
        return;
    }
    for (const auto& [uuid, mountPoint] : mountedHere) {
        qDebug() << "getHistoryBackup, umount uuid: " << uuid << ", mountPoint: " << mountPoint;
        umountDeviceByUUID(uuid);
    }
}

bool getRecoveryJsonInfo(QJsonObject& object, const QString& recoveryJsonPath)
{
    qDebug() << "getRecoveryJsonInfo, recoveryJsonPath = " << recoveryJsonPath;
    QFile file(recoveryJsonPath);
    if (!file.exists() || !file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        return false;
    }
    const QJsonDocument document = QJsonDocument::fromJson(file.readAll());
    file.close();
    qDebug() << "delete file: " << recoveryJsonPath;
    SpawnCmd(u"sudo"_s, {u"rm"_s, u"-f"_s, recoveryJsonPath});
    object = document.object();
    return true;
}

QString mountDeviceByUUID(const QString& uuid)
{
    const auto device = findBlockDevice(uuid);
    if (!device) {
        qDebug() << "mountDeviceByUUID device is null, uuid = " << uuid << ", path = " << QString();
        return {};
    }
    return mountBlockDevice(*device).mountPoint;
}

void umountDeviceByUUID(const QString& uuid)
{
    if (const auto device = findBlockDevice(uuid)) {
        device->unmount({});
    }
}

bool getSwapPartitionSize(const QString& devicePath, qint64& size)
{
    QString out;
    QString err;
    if (!SpawnCmd(u"lsblk"_s, {u"--bytes"_s, u"--output"_s, u"PATH,SIZE"_s}, out, err)) {
        qDebug() << "getSwapPartitionSize call lsblk failed, err = " << err << ", out: " << out;
        return false;
    }
    const auto found = parseDeviceSize(out, devicePath);
    size = found.value_or(size);
    return found.has_value();
}

QString getRecoveryUUID(const QString& rootDir)
{
    const QString path = u"%1/etc/kestro/system-recovery.conf"_s.arg(rootDir);
    return readIni(path).value(u"UUID"_s);
}

bool isWritable(const QString& path)
{
    if (path.isEmpty() || QStorageInfo(path).isReadOnly()) {
        return false;
    }
    QFile probe(path + u"/.writeable_"_s + QUuid::createUuid().toString());
    if (!probe.open(QIODevice::WriteOnly)) {
        return false;
    }
    probe.remove();
    return true;
}

bool checkImageFile(const QString& path)
{
    constexpr auto badMark = "invalid file"_L1;
    QString out;
    QString err;
    // A tool that could not run has found nothing out, so its silence is no proof.
    return SpawnCmd(u"kestro-clone"_s, {u"--kim-info"_s, path}, out, err) && !out.contains(badMark)
        && !err.contains(badMark);
}

bool hasBackupImages(const QString& uuid)
{
    const FSTabInfoPtr entry = FSTab::findByUUID(runningSystemFstab(), uuid);
    return entry && entry->mountPoint.startsWith(u'/') && hasImages(u"%1/backup"_s.arg(entry->mountPoint));
}

bool hasImages(const QString& directory)
{
    return !directory.isEmpty() && !QDir(directory).entryList({u"*.kim"_s}).isEmpty();
}

bool removePath(const QString& path)
{
    return !path.isEmpty() && SpawnCmd(u"sudo"_s, {u"rm"_s, u"-rf"_s, path});
}

QString getUtcTime()
{
    return trimmedOutput(u"date"_s, {u"-u"_s, u"+%Y-%m-%dT%H:%M:%SZ"_s});
}

QString getArchitecture()
{
    return trimmedOutput(u"dpkg"_s, {u"--print-architecture"_s});
}

QString getProcessName(const QString& pid)
{
    if (!isProcessId(pid)) {
        return {};
    }
    const QString pipeline = uR"sh(cat /proc/%1/stat | awk -F")" '{print $1}' | awk -F"(" '{print $2}')sh"_s.arg(pid);
    return trimmedOutput(u"/bin/bash"_s, {u"-c"_s, pipeline});
}

} // namespace Utils
