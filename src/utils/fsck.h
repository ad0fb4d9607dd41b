// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

namespace Utils {

/// Checks a partition with fsck(8) without changing it; waits as long as that takes.
/// @return true exactly when fsck left errors uncorrected (exit code 4); a check that could not be made is false too
bool checkPartitionErrorByFsck(const QString& devicePath);

/// Repairs a partition with fsck(8), all questions answered with yes; waits as long as that takes.
/// @param output,error what fsck printed on standard output and standard error
/// @return whether the file system has no errors now (exit code 0 or 1)
bool fixPartitionByFsck(const QString& devicePath, QString& output, QString& error);

} // namespace Utils
