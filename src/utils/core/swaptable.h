// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QList>
#include <QString>

/// One line of "/proc/swaps" (proc(5)).
struct SwapEntry
{
    QString fileName;         ///< device or file, as the kernel prints it
    bool isPartition = false; ///< a device, not a file
    qint64 size = 0;          ///< bytes, at 1000 to the printed unit
    qint64 used = 0;          ///< bytes, likewise
    int priority = 0;         ///< 0 when it is no int
};

/// The entries of a swap table, in order; the header and lines with other than five words are left out.
[[nodiscard]] QList<SwapEntry> parseSwapTable(const QString& text);
