// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/FsTab.h"

#include <QStringList>

/// The file-system UUIDs that an fstab mounts, in file order, duplicates kept.
///
/// A "UUID=" entry gives its own UUID. A bind entry gives that of the entry whose file system holds its source
/// directory, through further bind entries where need be. Entries that name no UUID give nothing.
[[nodiscard]] QStringList collectFstabUUIDs(const FSTabInfoList& list);
