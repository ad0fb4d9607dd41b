// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/FsTab.h"

#include <QMap>
#include <QString>
#include <QVariantMap>

/// Copies of fstab entries by the file-system UUID that their device field names.
using FSTabByUuid = QMap<QString, FSTabInfo>;

/// The entries that name a "UUID=" and whose type is not "none"; of entries with the same UUID the last one stays.
[[nodiscard]] FSTabByUuid fstabByUuid(const FSTabInfoList& entries);

/// The options for mounting the partition with that UUID: {"options": "compress=zstd"} for a btrfs that the installed
/// system mounts so, else none.
[[nodiscard]] QVariantMap mountOptionsOf(const FSTabByUuid& entries, const QString& uuid);
