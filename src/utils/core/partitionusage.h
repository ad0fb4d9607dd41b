// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/core/fstype.h"

#include <QString>

/// Reads how much of an unmounted file system is free, with the file system's own tool (as the running user).
///
/// Swap is looked up in "/proc/swaps": an area that is not in use has 0 and 0 bytes.
/// @param path the device node
/// @param freespace,total bytes; both -1 on failure
/// @return false, with a warning in the log, when the type has no reader or its tool fails or says something else
bool ReadUsage(const QString& path, FsType type, qint64& freespace, qint64& total);

/// The text of a file; empty, with a line in the log, when it does not exist or cannot be opened.
[[nodiscard]] QString ReadFile(const QString& path);
