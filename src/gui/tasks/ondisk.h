// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Whether the path is the directory or lies below it, by whatever names both are reached (links, a second mount of the
/// same file system). The path need not exist yet.
[[nodiscard]] bool liesWithin(const QString& path, const QString& directory);

/// Waits until the file or directory, and all of its file system, has been written to the disk. Neither tar nor cp
/// does, and sync(2) tells of no error.
/// @return false when something could not be written; true, too, for what cannot be opened
[[nodiscard]] bool hasReachedDisk(const QString& path);
