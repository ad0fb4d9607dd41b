// SPDX-License-Identifier: GPL-3.0-or-later
#include "fstabuuids.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isMount(const FSTabInfoPtr& entry)
{
    return entry && !entry->isComment && !entry->isEmpty && !entry->device.isEmpty();
}

FSTabInfoPtr entryMountedAt(const FSTabInfoList& list, const QString& mountPoint)
{
    const auto found = std::find_if(list.cbegin(), list.cend(),
        [&mountPoint](const FSTabInfoPtr& entry) { return isMount(entry) && entry->mountPoint == mountPoint; });
    return found == list.cend() ? nullptr : *found;
}

/// The entry whose file system holds what the bind mount shows: mounted there or at the nearest directory above; null
/// when none is. It is never the bind mount itself, which may show a directory in its own place ("/home /home none
/// bind").
FSTabInfoPtr entryThatHolds(const FSTabInfoList& list, const FSTabInfoPtr& bind)
{
    QString directory = bind->device;
    while (!directory.isEmpty()) {
        const FSTabInfoPtr entry = entryMountedAt(list, directory);
        if (entry && entry != bind) {
            return entry;
        }
        directory.truncate(std::max<qsizetype>(directory.lastIndexOf(u'/'), 0));
    }
    return entryMountedAt(list, u"/"_s);
}

/// The entry at the end of a chain of bind mounts; null when the chain leads nowhere or back to itself.
FSTabInfoPtr followBinds(const FSTabInfoList& list, FSTabInfoPtr entry)
{
    for (qsizetype hops = 0; isMount(entry) && !entry->device.startsWith("UUID="_L1); ++hops) {
        if (!FSTab::isBind(entry) || !entry->device.startsWith(u'/') || hops > list.size()) {
            return nullptr;
        }
        entry = entryThatHolds(list, entry);
    }
    return entry;
}

} // namespace

QStringList collectFstabUUIDs(const FSTabInfoList& list)
{
    QStringList uuids;
    for (const FSTabInfoPtr& entry : list) {
        const FSTabInfoPtr source = isMount(entry) ? followBinds(list, entry) : nullptr;
        const QString uuid = source ? FSTab::getUUID(source) : QString();
        if (!uuid.isEmpty()) {
            uuids.append(uuid);
        }
    }
    return uuids;
}
