// SPDX-License-Identifier: GPL-3.0-or-later
#include "fstabuuids.h"

#include <algorithm>

using namespace Qt::StringLiterals;

namespace {

bool isBind(const FSTabInfo& entry)
{
    return entry.options.contains("bind"_L1);
}

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

/// The entry whose file system holds the directory: mounted there or at the nearest directory above; null when none is.
FSTabInfoPtr entryThatHolds(const FSTabInfoList& list, QString directory)
{
    while (!directory.isEmpty()) {
        if (const FSTabInfoPtr entry = entryMountedAt(list, directory)) {
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
        if (!isBind(*entry) || !entry->device.startsWith(u'/') || hops > list.size()) {
            return nullptr;
        }
        entry = entryThatHolds(list, entry->device);
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
