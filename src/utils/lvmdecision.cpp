// SPDX-License-Identifier: GPL-3.0-or-later
#include "lvmdecision.h"

#include <QSet>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isInContainer(const BlockDeviceInfo& volume)
{
    return volume.parent && volume.parent->type == "crypt"_L1 && volume.parent->fsType == "lvm2"_L1;
}

} // namespace

LvmDecision decideLvm(const DeviceClasses& classes, const QStringList& uuids)
{
    const QSet<QString> wanted(uuids.cbegin(), uuids.cend());
    const auto isWanted = [&wanted](const BlockDevicePtr& device) { return wanted.contains(device->uuid); };
    LvmDecision decision;
    QSet<QString> found;
    for (const BlockDevicePtr& volume : classes.logicalVolumes) {
        if (isWanted(volume)) {
            found.insert(volume->uuid);
            decision.isOnLvm = true;
            decision.isEncrypted = decision.isEncrypted || isInContainer(*volume);
        }
    }
    if (std::any_of(classes.openedFileSystems.cbegin(), classes.openedFileSystems.cend(), isWanted)) {
        decision.isEncrypted = decision.isEncryptedFileSystem = true;
        return decision;
    }
    if (classes.encryptedContainers.isEmpty()) {
        return decision;
    }
    for (const BlockDevicePtr& partition : classes.partitions) {
        if (isWanted(partition)) {
            found.insert(partition->uuid);
        }
    }
    // Some of the system's file systems are nowhere to be seen although there are containers: they lie in one.
    // Duplicates of the list count, deliberately.
    if (!found.isEmpty() && found.size() < uuids.size()) {
        decision.isEncrypted = decision.isEncryptedFileSystem = true;
    }
    return decision;
}
