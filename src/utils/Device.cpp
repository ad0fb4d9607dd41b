// SPDX-License-Identifier: GPL-3.0-or-later
#include "Device.h"

#include "utils/core/command.h"
#include "utils/devicesnapshot.h"
#include "utils/devicetree.h"
#include "utils/dfusage.h"
#include "utils/dmdependencies.h"
#include "utils/lsblkpairs.h"
#include "utils/lvmdecision.h"

#include <QDebug>
#include <QDir>
#include <QMutex>
#include <QMutexLocker>
#include <QRegularExpression>
#include <QStorageInfo>

#include <memory>
#include <utility>

using namespace Qt::StringLiterals;

namespace {

using SnapshotPtr = std::shared_ptr<DeviceSnapshot>;

/// The process's list. Commands run outside the lock.
struct SharedList
{
    QMutex mutex;
    SnapshotPtr snapshot;
};

SharedList& sharedList()
{
    static SharedList list;
    return list;
}

/// Puts a whole list in the place of the former one.
void publish(SnapshotPtr snapshot)
{
    // The former list goes after the lock: its end may be long.
    const QMutexLocker lock(&sharedList().mutex);
    sharedList().snapshot.swap(snapshot);
}

SnapshotPtr publishedList()
{
    const QMutexLocker lock(&sharedList().mutex);
    return sharedList().snapshot;
}

SnapshotPtr filledList()
{
    SnapshotPtr snapshot = publishedList();
    if (!snapshot) {
        Device::refreshDevices();
        snapshot = publishedList();
    }
    return snapshot;
}

QList<DfUsage> askDf()
{
    QString output;
    return SpawnCmd(u"df"_s, {u"-T"_s, u"-B1"_s}, output) ? parseDf(output) : QList<DfUsage>();
}

void applyDf(const DeviceSnapshot& snapshot, const QList<DfUsage>& usages)
{
    for (const DfUsage& usage : usages) {
        if (const BlockDevicePtr device = snapshot.find(usage.device)) {
            applyDfUsage(*device, usage);
        }
    }
}

QList<MapperLink> mapperLinks()
{
    QList<MapperLink> links;
    const QDir directory(u"/dev/mapper"_s);
    // A link whose device has just gone is "System", not "Files".
    const QFileInfoList entries =
        directory.entryInfoList(QDir::Files | QDir::Dirs | QDir::System | QDir::Hidden | QDir::NoDotAndDotDot);
    for (const QFileInfo& entry : entries) {
        if (entry.fileName() != "control"_L1 && entry.isSymLink()) {
            links.append({entry.fileName(), entry.absoluteFilePath(), entry.symLinkTarget()});
        }
    }
    return links;
}

bool isPartition(const BlockDevicePtr& device)
{
    return device && device->type == "part"_L1;
}

QString mountPointOf(const BlockDeviceInfo& device)
{
    const QMutexLocker lock(&sharedList().mutex);
    return device.mountPoint;
}

void setMountPoint(BlockDeviceInfo& device, const QString& mountPoint)
{
    const QMutexLocker lock(&sharedList().mutex);
    device.mountPoint = mountPoint;
    if (sharedList().snapshot) {
        sharedList().snapshot->rebuildIndex();
    }
}

/// Whether a UUID may become part of a command line: no blank, no quote, no option.
bool isPlainUuid(const QString& uuid)
{
    static const QRegularExpression pattern(uR"(\A[0-9A-Za-z][0-9A-Za-z:-]*\z)"_s);
    return pattern.match(uuid).hasMatch();
}

} // namespace

Device::Device(BlockDevicePtr info)
    : m_info(std::move(info))
{ }

bool Device::mount(const QString& target)
{
    if (!isPartition(m_info)) {
        return false;
    }
    const QString mountPoint = mountPointOf(*m_info);
    if (!mountPoint.isEmpty() && mountPoint != target) {
        return false;
    }
    QString out;
    QString err;
    if (!SpawnCmd(u"mount"_s, {m_info->path, target}, out, err)) {
        return false;
    }
    setMountPoint(*m_info, target);
    return true;
}

bool Device::umount()
{
    if (!isPartition(m_info)) {
        return false;
    }
    const QString mountPoint = mountPointOf(*m_info);
    if (mountPoint.isEmpty()) {
        return true;
    }
    QString out;
    QString err;
    if (!SpawnCmd(u"umount"_s, {mountPoint}, out, err)) {
        return false;
    }
    setMountPoint(*m_info, {});
    return true;
}

void Device::refreshDevices()
{
    BlockDeviceList devices;
    collectDevices(devices);
    publish(std::make_shared<DeviceSnapshot>(devices));
}

void Device::collectDevices(BlockDeviceList& list)
{
    QString out;
    if (SpawnCmd(u"lsblk"_s, lsblkPairsArguments(), out)) {
        list += parseLsblkPairs(out);
    }
    applyMapperLinks(list, mapperLinks());
    applyDmDependencies(list);
}

BlockDeviceList Device::parseLsblkPairs(const QString& output)
{
    return ::parseLsblkPairs(output);
}

void Device::applyDmDependencies(BlockDeviceList& list)
{
    QString out;
    if (SpawnCmd(u"dmsetup"_s, {u"deps"_s, u"-o"_s, u"blkdevname"_s}, out)) {
        ::applyDmDependencies(list, parseDmDependencies(out));
    }
}

void Device::updateUsageFromDf()
{
    const SnapshotPtr snapshot = filledList();
    const QList<DfUsage> usages = askDf();
    const QMutexLocker lock(&sharedList().mutex);
    applyDf(*snapshot, usages);
}

DeviceClasses Device::classifyDevices(const BlockDeviceList& devices)
{
    return ::classifyDevices(devices);
}

void Device::linkDeviceTree(const DeviceClasses& classes)
{
    ::linkDeviceTree(classes);
}

BlockDevicePtr Device::lookupDevice(const QString& key)
{
    const SnapshotPtr snapshot = filledList();
    const QMutexLocker lock(&sharedList().mutex);
    return snapshot->find(key);
}

bool Device::isLvm(const QStringList& uuids, bool& isEncrypted, bool& flag)
{
    // The list is whole, usage and links included, before another thread can see it.
    BlockDeviceList devices;
    collectDevices(devices);
    const auto snapshot = std::make_shared<DeviceSnapshot>(devices);
    applyDf(*snapshot, askDf());
    const DeviceClasses classes = classifyDevices(devices);
    linkDeviceTree(classes);
    publish(snapshot);

    const LvmDecision decision = decideLvm(classes, uuids);
    isEncrypted = decision.isEncrypted;
    flag = decision.isEncryptedFileSystem;
    return decision.isOnLvm;
}

bool Device::getAllMediaMountPoint(QList<QString>& mountPoints)
{
    const QStringList args{u"-c"_s, u"lsblk --output MOUNTPOINT | grep /media/"_s};
    QString out;
    if (!SpawnCmd(u"/bin/bash"_s, args, out)) {
        qInfo() << Q_FUNC_INFO << ", spawnCmd failed, args = " << args << ", out = " << out;
        return false;
    }
    const QStringList lines = out.split(u'\n');
    for (const QString& line : lines) {
        const QString mountPoint = line.trimmed();
        if (!mountPoint.isEmpty()) {
            mountPoints.append(mountPoint);
        }
    }
    return true;
}

bool Device::getMountPointByUUID(const QString& uuid, QString& mountPoint)
{
    const QStringList args{u"-c"_s, u"lsblk --output UUID,PATH | grep "_s + uuid};
    QString out;
    if (!isPlainUuid(uuid) || !SpawnCmd(u"/bin/bash"_s, args, out)) {
        qInfo() << Q_FUNC_INFO << ", spawnCmd failed, args = " << args << ", out = " << out;
        return false;
    }
    const QString line = out.split(u'\n', Qt::SkipEmptyParts).value(0).trimmed();
    const QString devicePath = line.mid(line.indexOf(u'/'));
    const QList<QStorageInfo> volumes = QStorageInfo::mountedVolumes();
    for (const QStorageInfo& volume : volumes) {
        if (QString::fromUtf8(volume.device()) == devicePath) {
            mountPoint = volume.rootPath();
            return true;
        }
    }
    return false;
}
