// SPDX-License-Identifier: GPL-3.0-or-later
#include "gui/tasks/mountoptions.h"

using namespace Qt::StringLiterals;

FSTabByUuid fstabByUuid(const FSTabInfoList& entries)
{
    constexpr auto reference = "UUID="_L1;
    FSTabByUuid result;
    for (const FSTabInfoPtr& entry : entries) {
        const QString uuid = entry->device.startsWith(reference) ? entry->device.mid(reference.size()) : QString();
        if (!uuid.isEmpty() && entry->type != "none"_L1) {
            result.insert(uuid, *entry);
        }
    }
    return result;
}

QVariantMap mountOptionsOf(const FSTabByUuid& entries, const QString& uuid)
{
    const FSTabInfo entry = entries.value(uuid);
    if (entry.type != "btrfs"_L1 || !entry.options.contains("compress=zstd"_L1)) {
        return {};
    }
    return {{u"options"_s, u"compress=zstd"_s}};
}
