// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// Whether a file that is to be restored can be read from its first byte to its last.
///
/// The job that restores it finds that out too, but by then the restore has made room for it, or has put back the files
/// before it. Reads the whole file with its own tool; the reason of a "no" is logged.
namespace WholeFiles {

/// Every stored hash of the image at @p path is right.
[[nodiscard]] bool isImageWhole(const QString& path);

/// tar can list every member of the archive at @p path.
[[nodiscard]] bool isArchiveWhole(const QString& path);

} // namespace WholeFiles
