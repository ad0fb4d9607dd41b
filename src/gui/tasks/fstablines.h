// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QMap>
#include <QString>

/// Mount point to file-system UUID for every line of an fstab that starts with "UUID", however many fields it has.
[[nodiscard]] QMap<QString, QString> parseMountPointUuids(const QString& fstab);

/// What the first line of an fstab that mentions "swap" anywhere begins with: its first field, without what stands
/// before the last "=". Empty when no line does.
[[nodiscard]] QString parseSwapUuid(const QString& fstab);
