// SPDX-License-Identifier: GPL-3.0-or-later
#include "Recording.h"

#include "utils/dmdependencies.h"
#include "utils/lsblkpairs.h"

#include <QFile>

using namespace Qt::StringLiterals;

QString recording(const QString& file)
{
    QFile recorded(QStringLiteral(KESTRO_SOURCE_DIR "/tests/utils/data/") + file);
    if (!recorded.open(QIODevice::ReadOnly)) {
        qFatal("there is no recording %s", qPrintable(file));
    }
    return QString::fromUtf8(recorded.readAll());
}

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
