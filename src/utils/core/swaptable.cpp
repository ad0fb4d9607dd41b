// SPDX-License-Identifier: GPL-3.0-or-later
#include "swaptable.h"

#include <QRegularExpression>
#include <QStringList>

using namespace Qt::StringLiterals;

namespace {

/// 0 for what is no number or too large. The factor is 1000 although the kernel counts in KiB: deliberate.
qint64 bytesOf(const QString& printed)
{
    constexpr qint64 bytesPerUnit = 1000;
    qint64 bytes = 0;
    return __builtin_mul_overflow(printed.toLongLong(), bytesPerUnit, &bytes) ? 0 : bytes;
}

} // namespace

QList<SwapEntry> parseSwapTable(const QString& text)
{
    static const QRegularExpression blanks(uR"(\s+)"_s);
    constexpr qsizetype columns = 5;
    QList<SwapEntry> entries;
    const QStringList lines = text.split(u'\n', Qt::SkipEmptyParts);
    for (const QString& line : lines) {
        const QStringList words = line.trimmed().split(blanks, Qt::SkipEmptyParts);
        if (!line.startsWith("Filename"_L1) && words.size() == columns) {
            entries.append(
                {words[0], words[1] == "partition"_L1, bytesOf(words[2]), bytesOf(words[3]), words[4].toInt()});
        }
    }
    return entries;
}
