// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QFileInfo>
#include <QString>

/// The files of one initial system image.
struct InitialImage
{
    QString image; ///< the partition image
    QString info;  ///< the text file with the UUID of its partition
};

/// The files that belong to a directory entry. Only its name up to the first "." counts: "a.b.kim" means "a.kim".
[[nodiscard]] InitialImage initialImageOf(const QString& directory, const QString& entry);

/// Whether a file on a person's desktop belongs to the system and stays when their own launchers go.
[[nodiscard]] bool isKeptDesktopEntry(const QString& name);

/// Whether an entry at the top of a separate data partition stays when the users' data is wiped: one of five
/// directories, by its exact name. A link is no directory.
[[nodiscard]] bool isKeptTopLevelEntry(const QFileInfo& entry);
