// SPDX-License-Identifier: GPL-3.0-or-later
#include "partitionusage.h"

#include "utils/core/command.h"
#include "utils/core/devicepath.h"
#include "utils/core/swaptable.h"
#include "utils/core/usagereports.h"

#include <QDebug>
#include <QFile>
#include <QStringList>

#include <algorithm>

using namespace Qt::StringLiterals;

/// Reads a FAT file system.
static std::optional<FsUsage> ReadFat16Usage(const QString& path)
{
    QString output;
    QString error;
    if (!SpawnCmd(u"dosfsck"_s, {u"-n"_s, u"-v"_s, path}, output, error)) {
        qDebug() << "dosfsck failed:" << error;
        return std::nullopt;
    }
    return parseFatReport(output, path);
}

namespace {

using Reader = std::optional<FsUsage> (*)(const QString& path);

/// A tool that prints block size, blocks and free blocks, with a sample of each line above its pattern.
struct BlockCountTool
{
    QString program;
    QStringList options;
    BlockCountPatterns patterns;
};

std::optional<FsUsage> readBlockCounts(const BlockCountTool& tool, const QString& path)
{
    QString output;
    return SpawnCmd(tool.program, tool.options + QStringList{path}, output) ? parseBlockCounts(output, tool.patterns)
                                                                            : std::nullopt;
}

std::optional<FsUsage> readExt(const QString& path)
{
    // "Block count:              81920", where "Reserved block count:" is another
    return readBlockCounts(
        {u"dumpe2fs"_s, {u"-h"_s},
            {uR"(^Block size:\s+(\d+))"_s, uR"(^Block count:\s+(\d+))"_s, uR"(^Free blocks:\s+(\d+))"_s}},
        path);
}

std::optional<FsUsage> readNtfs(const QString& path)
{
    // "	Free Clusters: 81395 (99.4%)"
    return readBlockCounts({u"ntfsinfo"_s, {u"-mf"_s},
                               {uR"(^\s*Cluster Size:\s+(\d+))"_s, uR"(^\s*Volume Size in Clusters:\s+(\d+))"_s,
                                   uR"(^\s*Free Clusters:\s+(\d+))"_s}},
        path);
}

std::optional<FsUsage> readXfs(const QString& path)
{
    // "dblocks = 81920", where "fdblocks = 65504" is another
    return readBlockCounts(
        {u"xfs_db"_s, {u"-c sb"_s, u"-c print"_s, u"-r"_s},
            {uR"(^blocksize\s*=\s*(\d+))"_s, uR"(^dblocks\s*=\s*(\d+))"_s, uR"(^fdblocks\s*=\s*(\d+))"_s}},
        path);
}

std::optional<FsUsage> readReiser4(const QString& path)
{
    // "blocks:		81920", where "free blocks:	81892" is another
    return readBlockCounts({u"debugfs.reiser4"_s, {u"--force"_s, u"--yes"_s},
                               {uR"(^blksize:\s*(\d+))"_s, uR"(^blocks:\s*(\d+))"_s, uR"(^free blocks:\s*(\d+))"_s}},
        path);
}

std::optional<FsUsage> readReiserfs(const QString& path)
{
    // "Free blocks (count of blocks - used [journal, bitmaps, data, reserved] blocks): 73706"
    return readBlockCounts({u"debugreiserfs"_s, {u"-d"_s},
                               {uR"(^Blocksize:\s*(\d+))"_s, uR"(^Count of blocks on the device:\s*(\d+))"_s,
                                   uR"(^Free blocks \(count of blocks[^:\n]*:\s*(\d+))"_s}},
        path);
}

std::optional<FsUsage> readBtrfs(const QString& path)
{
    QString output;
    return SpawnCmd(u"btrfs"_s, {u"filesystem"_s, u"show"_s, path}, output) ? parseBtrfsReport(output, path)
                                                                            : std::nullopt;
}

std::optional<FsUsage> readJfs(const QString& path)
{
    if (!isDevicePath(path)) {
        return std::nullopt;
    }
    // jfs_debugfs 1.1.15 goes on printing prompts for ever at the end of its input: head ends it.
    QString output;
    const QString pipeline = u"echo dm | jfs_debugfs %1 | head -n 40"_s.arg(path);
    if (!SpawnCmd(u"/bin/bash"_s, {u"-c"_s, pipeline}, output)) {
        return std::nullopt;
    }
    // "[1] dn_mapsize:		0x00000013dca	[9] dn_agheigth:	0"
    return parseBlockCounts(output,
        {uR"(^Aggregate Block Size:\s*(\d+))"_s, uR"(^\[1\] dn_mapsize:\s*([^\s]+))"_s,
            uR"(^\[2\] dn_nfree:\s*([^\s]+))"_s});
}

std::optional<FsUsage> readNilfs(const QString& path)
{
    QString output;
    return SpawnCmd(u"nilfs-tune"_s, {u"-l"_s, path}, output) ? parseNilfsReport(output) : std::nullopt;
}

std::optional<FsUsage> readSwap(const QString& path)
{
    const QList<SwapEntry> entries = parseSwapTable(ReadFile(u"/proc/swaps"_s));
    const auto entry = std::find_if(
        entries.cbegin(), entries.cend(), [&path](const SwapEntry& swap) { return swap.fileName == path; });
    // An area that is not in use has no bytes at all: deliberate.
    return entry == entries.cend() ? FsUsage{} : FsUsage{entry->size, entry->size - entry->used};
}

constexpr struct
{
    FsType type;
    Reader read;
} readers[] = {
    {FsType::Btrfs, readBtrfs},
    {FsType::Efi, ReadFat16Usage},
    {FsType::Fat16, ReadFat16Usage},
    {FsType::Fat32, ReadFat16Usage},
    {FsType::Vfat, ReadFat16Usage},
    {FsType::Ext2, readExt},
    {FsType::Ext3, readExt},
    {FsType::Ext4, readExt},
    {FsType::Jfs, readJfs},
    {FsType::LinuxSwap, readSwap},
    {FsType::Nilfs2, readNilfs},
    {FsType::Ntfs, readNtfs},
    {FsType::Reiser4, readReiser4},
    {FsType::Reiserfs, readReiserfs},
    {FsType::Xfs, readXfs},
};

std::optional<FsUsage> readUsage(const QString& path, FsType type)
{
    const auto* const row = std::find_if(
        std::begin(readers), std::end(readers), [type](const auto& reader) { return reader.type == type; });
    return row == std::end(readers) ? std::nullopt : row->read(path);
}

} // namespace

bool ReadUsage(const QString& path, FsType type, qint64& freespace, qint64& total)
{
    const std::optional<FsUsage> usage = readUsage(path, type);
    if (!usage) {
        qWarning() << "Failed to read usage:" << path;
    }
    freespace = usage ? usage->free : -1;
    total = usage ? usage->total : -1;
    return usage.has_value();
}

QString ReadFile(const QString& path)
{
    QFile file(path);
    if (!file.exists()) {
        qDebug().noquote() << u"ReadFileContent() file not found: "_s + path;
        return {};
    }
    if (!file.open(QIODevice::ReadOnly | QIODevice::Text)) {
        qDebug().noquote() << u"ReadFile() failed to open"_s + path;
        return {};
    }
    return QString::fromUtf8(file.readAll());
}
