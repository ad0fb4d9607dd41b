// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// What the first member of an archive says about it; a field is empty when its line is missing.
struct DataInfo
{
    QString uuid;      ///< the partition that the archived directory belongs to
    QString directory; ///< that directory, relative to the partition's root
};

/// The values after the last "=" of the first lines that contain "UUID=" and "Directory=".
[[nodiscard]] DataInfo parseDataInfo(const QString& text);

/// Whether an archive may be extracted to a directory of this name: archives are not trusted to name one inside the
/// partition (".."), nor one that tar takes for a directory and not for an option ("--absolute-names").
[[nodiscard]] bool isSafeDirectory(const QString& directory);
