// SPDX-License-Identifier: GPL-3.0-or-later
#include "partitionchecklist.h"

using namespace Qt::StringLiterals;
using Utils::BlkIdInfo;

namespace {

constexpr int notClassified = -1;
constexpr int faulty = -1;

bool isLeftOut(const BlkIdInfo& device)
{
    return device.devicePath.startsWith("/dev/loop"_L1) || device.type.contains("crypto_LUKS"_L1)
        || device.type.contains("LVM2_member"_L1);
}

bool isRecoveryPartition(const BlkIdInfo& device)
{
    return device.type == "vfat"_L1 && device.label == "recovery"_L1;
}

bool isWholeDisk(const BlkIdInfo& device)
{
    return !device.ptUuid.isEmpty() && !device.ptType.isEmpty();
}

/// "/dev/sda" of "/dev/sda3". Deliberate: every NVMe disk is "/dev/nvm".
QString diskPrefix(const BlkIdInfo& device)
{
    return device.devicePath.left(8);
}

/// "02" of "1a2b3c4d-02"; empty when there is no "-".
QString partUuidTail(const BlkIdInfo& device)
{
    return device.partUuid.section(u'-', 1);
}

PartitionCheckItem fileSystemItem(const BlkIdInfo& device)
{
    return {device.devicePath, device.label, device.uuid, {}, device.type, 0, notClassified};
}

PartitionCheckItem blankItem(const BlkIdInfo& device)
{
    return {device.devicePath, {}, {}, {}, {}, faulty, notClassified};
}

QString shownMountPoint(const FSTabInfo& entry)
{
    const bool isSwap = entry.mountPoint == "none"_L1 && entry.type == "swap"_L1;
    return isSwap ? u"SWAP"_s : entry.mountPoint;
}

} // namespace

PartitionCheckCandidates choosePartitionsToCheck(const QList<BlkIdInfo>& devices)
{
    PartitionCheckCandidates candidates;
    QString recoveryDisk;
    QString lastTail;
    for (const BlkIdInfo& device : devices) {
        if (isLeftOut(device)) {
            continue;
        }
        if (!device.uuid.isEmpty()) {
            if (isRecoveryPartition(device)) {
                recoveryDisk = diskPrefix(device);
            } else {
                candidates.fileSystems.append(fileSystemItem(device));
            }
            continue;
        }
        if (isWholeDisk(device) || (!recoveryDisk.isEmpty() && diskPrefix(device) == recoveryDisk)) {
            continue;
        }
        const QString tail = partUuidTail(device);
        if (tail.isEmpty() || tail != lastTail) {
            candidates.blanks.append(blankItem(device));
        }
        lastTail = tail.isEmpty() ? lastTail : tail;
    }
    return candidates;
}

void classifyPartitions(QList<PartitionCheckItem>& items, const QStringList& systemUuids, const FSTabInfoList& fstab)
{
    for (PartitionCheckItem& item : items) {
        const bool isListed = systemUuids.contains(item.uuid);
        item.deviceType = isListed ? 1 : 0;
        const FSTabInfoPtr entry = isListed ? FSTab::findByUUID(fstab, item.uuid) : FSTabInfoPtr();
        item.mountPoint = entry ? shownMountPoint(*entry) : QString();
    }
}
