// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/velk/mountedmedia.h"

#include <QFileInfo>
#include <QStorageInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isUnder(const QString& path, QLatin1StringView folder)
{
    return path.startsWith(folder) && path.size() > folder.size();
}

bool isMedia(const QString& path)
{
    return isUnder(path, "/media/"_L1) || isUnder(path, "/run/media/"_L1) || isUnder(path, "/mnt/"_L1)
        || path == "/mnt"_L1;
}

bool isOffered(const MountedVolume& volume)
{
    const bool boot = volume.rootPath == "/boot"_L1 || isUnder(volume.rootPath, "/boot/"_L1);
    return volume.device.startsWith("/dev/"_L1) && volume.fsType != "squashfs"_L1 && !boot;
}

QString titleOf(const MountedVolume& volume)
{
    if (!volume.name.isEmpty()) {
        return volume.name;
    }
    const QString last = QFileInfo(volume.rootPath).fileName();
    return last.isEmpty() ? volume.rootPath : last;
}

} // namespace

QList<MountedVolume> mountedVolumes()
{
    QList<MountedVolume> volumes;
    for (const QStorageInfo& info : QStorageInfo::mountedVolumes()) {
        if (info.isValid() && info.isReady()) {
            volumes.append({info.rootPath(), QString::fromUtf8(info.device()), info.name(),
                QString::fromLatin1(info.fileSystemType())});
        }
    }
    return volumes;
}

QList<MediaPlace> placesOf(const QList<MountedVolume>& volumes)
{
    QList<MediaPlace> places;
    const auto add = [&places, &volumes](bool media) {
        for (const MountedVolume& volume : volumes) {
            const bool known = std::any_of(places.cbegin(), places.cend(),
                [&volume](const MediaPlace& place) { return place.path == volume.rootPath; });
            if (!known && isOffered(volume) && isMedia(volume.rootPath) == media) {
                places.append({volume.rootPath, titleOf(volume)});
            }
        }
    };
    add(true);
    add(false);
    return places;
}
