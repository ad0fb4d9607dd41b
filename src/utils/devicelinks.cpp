// SPDX-License-Identifier: GPL-3.0-or-later
#include "devicelinks.h"

#include <QDir>
#include <QFileInfo>

#include <algorithm>

using namespace Qt::StringLiterals;

QString linkTarget(const QString& path)
{
    const QFileInfo info(path);
    return info.isSymLink() ? info.symLinkTarget() : QString();
}

QString linkNameOf(const QString& directory, const QString& target)
{
    // A link whose device is gone is listed with System only.
    const QFileInfoList entries = QDir(directory).entryInfoList(QDir::AllEntries | QDir::System | QDir::NoDotAndDotDot);
    const auto found = std::ranges::find_if(
        entries, [&target](const QFileInfo& entry) { return entry.isSymLink() && entry.symLinkTarget() == target; });
    return found == entries.end() ? QString() : found->fileName();
}

LinkedDevice resolveDeviceLink(const QString& path)
{
    const QString target = linkTarget(path);
    return {target, target.isEmpty() ? QString() : linkNameOf(u"/dev/disk/by-uuid"_s, target)};
}
