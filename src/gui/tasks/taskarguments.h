// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The UUID in an argument of a pending task: what follows the last ":", white space simplified. "UUID:1234-ABCD" and
/// "1234-ABCD" name the same partition.
[[nodiscard]] QString uuidOfArgument(const QString& argument);

/// Whether a relative path has a ".." part. Task files, records and archives are not trusted to stay in their
/// directory.
[[nodiscard]] bool leadsUpwards(const QString& path);
