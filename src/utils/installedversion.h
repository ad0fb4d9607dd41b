// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

/// The edition word of the system under the directory ("%1/usr/lib/kestro/desktop-version"); "Professional" when that
/// names none.
[[nodiscard]] QString installedEdition(const QString& rootDir);

/// The minor version of the system under the directory ("%1/etc/os-version"); 0 when unknown. A symbolic link is
/// followed once, inside that system.
[[nodiscard]] int installedMinorVersion(const QString& rootDir);
