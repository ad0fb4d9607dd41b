// SPDX-License-Identifier: GPL-3.0-or-later
#include "partitionusage.h"

#include "utils/core/blockcounttools.h"
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

std::optional<FsUsage> readBlockCounts(const BlockCountTool& tool, const QString& path)
{
    QString output;
    return SpawnCmd(tool.program, tool.options + QStringList{path}, output) ? parseBlockCounts(output, tool.patterns)
                                                                            : std::nullopt;
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
    // jfs_debugfs 1.1.15 goes on printing prompts for ever at the end of its input: head ends it. With that its exit
    // code is lost, and what it has said decides alone.
    QString output;
    const QString pipeline = u"echo dm | jfs_debugfs %1 | head -n 40"_s.arg(path);
    if (!SpawnCmd(u"/bin/bash"_s, {u"-c"_s, pipeline}, output)) {
        return std::nullopt;
    }
    return parseBlockCounts(output, jfsPatterns());
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

/// Types whose tools print something else than three numbers each.
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
    {FsType::Jfs, readJfs},
    {FsType::LinuxSwap, readSwap},
    {FsType::Nilfs2, readNilfs},
};

std::optional<FsUsage> readUsage(const QString& path, FsType type)
{
    for (const auto& row : readers) {
        if (row.type == type) {
            return row.read(path);
        }
    }
    for (const BlockCountTool& tool : blockCountTools()) {
        if (tool.types.contains(type)) {
            return readBlockCounts(tool, path);
        }
    }
    return std::nullopt;
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
