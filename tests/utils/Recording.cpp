// SPDX-License-Identifier: GPL-3.0-or-later
#include "Recording.h"

#include "support/files.h"
#include "utils/dmdependencies.h"
#include "utils/lsblkpairs.h"

using namespace Qt::StringLiterals;

BlockDeviceList recordedDevices(const QString& lsblkFile, const QString& dmsetupFile)
{
    BlockDeviceList devices = parseLsblkPairs(recording(lsblkFile));
    for (const BlockDevicePtr& device : devices) {
        if (device->lsblkPath.startsWith("/dev/mapper/"_L1)) {
            applyMapperLinks(devices, {{device->name, device->lsblkPath, device->path}});
        }
    }
    if (!dmsetupFile.isEmpty()) {
        applyDmDependencies(devices, parseDmDependencies(recording(dmsetupFile)));
    }
    return devices;
}
