// SPDX-License-Identifier: GPL-3.0-or-later
#include "usagereports.h"

#include "utils/core/sizetext.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

using Number = std::optional<qint64>;

/// The report up to the end of its last whole line.
QString wholeLines(const QString& report)
{
    return report.first(report.lastIndexOf(u'\n') + 1);
}

QRegularExpressionMatch firstMatch(const QString& text, const QString& pattern)
{
    return QRegularExpression(pattern, QRegularExpression::MultilineOption).match(text);
}

/// jfs_debugfs prints hexadecimal numbers, with "0x"; all others are decimal.
Number numberOf(QStringView text)
{
    const bool isHexadecimal = text.startsWith("0x"_L1, Qt::CaseInsensitive);
    bool isNumber = false;
    const qint64 number = isHexadecimal ? text.sliced(2).toLongLong(&isNumber, 16) : text.toLongLong(&isNumber, 10);
    return isNumber && number >= 0 ? Number(number) : std::nullopt;
}

Number numberAt(const QString& text, const QString& pattern)
{
    return numberOf(firstMatch(text, pattern).capturedView(1));
}

Number product(const Number& a, const Number& b)
{
    qint64 result = 0;
    return a && b && !__builtin_mul_overflow(*a, *b, &result) ? Number(result) : std::nullopt;
}

Number difference(const Number& a, const Number& b)
{
    qint64 result = 0;
    return a && b && !__builtin_sub_overflow(*a, *b, &result) ? Number(result) : std::nullopt;
}

std::optional<FsUsage> usageOf(const Number& total, const Number& free)
{
    return total && free ? std::optional(FsUsage{*total, *free}) : std::nullopt;
}

/// The line that describes the device itself; the label, which is anybody's text, stands before the line that begins
/// with "Total devices".
QString btrfsDeviceLine(const QString& report, const QString& path)
{
    const QRegularExpressionMatch heading = firstMatch(report, uR"(^\s*Total devices )"_s);
    if (!heading.hasMatch()) {
        return {};
    }
    const QStringList lines = report.mid(heading.capturedEnd()).split(u'\n');
    for (const QString& line : lines) {
        // Whole words: "/dev/loop1" also begins "/dev/loop10".
        if (line.simplified().split(u' ').contains(path)) {
            return line;
        }
    }
    return {};
}

} // namespace

std::optional<FsUsage> parseBlockCounts(const QString& report, const BlockCountPatterns& patterns)
{
    const QString lines = wholeLines(report);
    const Number blockSize = numberAt(lines, patterns.blockSize);
    return usageOf(product(numberAt(lines, patterns.totalBlocks), blockSize),
        product(numberAt(lines, patterns.freeBlocks), blockSize));
}

std::optional<FsUsage> parseBtrfsReport(const QString& report, const QString& path)
{
    const QString line = btrfsDeviceLine(wholeLines(report), path);
    const QRegularExpressionMatch size = firstMatch(line, uR"(size\s*([^\s]*)\s)"_s);
    const QRegularExpressionMatch used = firstMatch(line, uR"(used\s*([^\s]*))"_s);
    if (!size.hasMatch() || !used.hasMatch()) {
        return std::nullopt;
    }
    const qint64 total = bytesOfSizeText(size.captured(1));
    const qint64 usedBytes = bytesOfSizeText(used.captured(1));
    const bool isPlausible = total >= 0 && usedBytes >= 0 && usedBytes <= total;
    return isPlausible ? std::optional(FsUsage{total, total - usedBytes}) : std::nullopt;
}

std::optional<FsUsage> parseNilfsReport(const QString& report)
{
    const QString lines = wholeLines(report);
    return usageOf(numberAt(lines, uR"(^Device size:\s*(\d+))"_s),
        product(numberAt(lines, uR"(^Free blocks count:\s*(\d+))"_s), numberAt(lines, uR"(^Block size:\s*(\d+))"_s)));
}

std::optional<FsUsage> parseFatReport(const QString& report, const QString& path)
{
    const QString lines = wholeLines(report);
    if (report.isEmpty()) {
        // Deliberate: a report without lines is an empty file system, unlike one that cannot be understood.
        return FsUsage{0, 0};
    }
    const Number clusterSize = numberAt(lines, uR"(^\s*(\d+) bytes per cluster)"_s);
    const Number dataArea = numberAt(lines, uR"(^Data area starts at byte (\d+))"_s);
    // "/dev/sda1: 3 files, 12/32695 clusters"; the path keeps a file's name from passing for this line.
    const QRegularExpressionMatch clusters =
        firstMatch(lines, u"^"_s + QRegularExpression::escape(path) + uR"(: \d+ files, (\d+)/(\d+) clusters$)"_s);
    const Number used = product(numberOf(clusters.capturedView(1)), clusterSize);
    const Number total = product(numberOf(clusters.capturedView(2)), clusterSize);
    // The clusters begin behind the data area's offset, and yet it is taken off: deliberate.
    return usageOf(total, difference(difference(total, dataArea), used));
}
