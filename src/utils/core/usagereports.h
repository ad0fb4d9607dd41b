// SPDX-License-Identifier: GPL-3.0-or-later
#pragma once

#include <QString>

#include <optional>

/// How large a file system is and how much of it is free, in bytes.
struct FsUsage
{
    qint64 total = 0;
    qint64 free = 0;
};

/// Where a tool prints the three numbers of a file system: patterns with one capture, matched at the beginnings of
/// lines, because "blocks:" also ends "free blocks:".
struct BlockCountPatterns
{
    QString blockSize;   ///< bytes of a block
    QString totalBlocks; ///< blocks of the file system
    QString freeBlocks;  ///< blocks that are not in use
};

/// What a report says in blocks; nothing when a number is missing, is none or is too large.
/// Here as below, a last line without its end is not read: it may have been cut.
[[nodiscard]] std::optional<FsUsage> parseBlockCounts(const QString& report, const BlockCountPatterns& patterns);

/// "btrfs filesystem show": the line of the device, for example
/// "	devid    1 size 1.00GiB used 126.38MiB path /dev/sda3".
[[nodiscard]] std::optional<FsUsage> parseBtrfsReport(const QString& report, const QString& path);

/// "nilfs-tune -l", which says the device's size in bytes and the rest in blocks.
[[nodiscard]] std::optional<FsUsage> parseNilfsReport(const QString& report);

/// "dosfsck -n -v": total are the clusters; from what is free, the offset of the data area is taken off too.
[[nodiscard]] std::optional<FsUsage> parseFatReport(const QString& report, const QString& path);
