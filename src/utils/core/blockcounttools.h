// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include "utils/core/fstype.h"
#include "utils/core/usagereports.h"

#include <QList>
#include <QString>
#include <QStringList>

/// A program that prints block size, blocks and free blocks of the file systems of some types.
struct BlockCountTool
{
    QList<FsType> types;
    QString program;
    QStringList options; ///< the device's path follows them
    BlockCountPatterns patterns;
};

/// All of them, each with types of its own.
[[nodiscard]] const QList<BlockCountTool>& blockCountTools();

/// Where jfs_debugfs prints them; it is no row above because it asks for a command on standard input.
[[nodiscard]] const BlockCountPatterns& jfsPatterns();
