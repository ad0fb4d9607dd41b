// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QByteArray>
#include <QString>

/// What a tool printed, from a file under "tests/utils/data", for example "lsblk/composed-mixed.txt".
/// Ends the process when there is no such file.
[[nodiscard]] QString recording(const QString& file);

/// Writes a file anew, with the folders above it. Ends the process when that fails.
void writeWholeFile(const QString& path, const QByteArray& content);
