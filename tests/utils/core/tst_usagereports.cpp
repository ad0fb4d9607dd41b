// SPDX-License-Identifier: GPL-3.0-or-later
#include "support/files.h"
#include "utils/core/blockcounttools.h"
#include "utils/core/swaptable.h"
#include "utils/core/usagereports.h"

#include <QTest>

using namespace Qt::StringLiterals;

class UsageReportsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void reports_data();
    void reports();
    void oddReports_data();
    void oddReports();
    void swapTable();
};

namespace {

const QString device = u"/dev/sdz1"_s;

/// "total free" in bytes; empty for no answer.
QString parsed(const QString& tool, const QString& report)
{
    std::optional<FsUsage> usage;
    for (const BlockCountTool& row : blockCountTools()) {
        usage = row.program == tool ? parseBlockCounts(report, row.patterns) : usage;
    }
    if (tool == "btrfs"_L1) {
        usage = parseBtrfsReport(report, device);
    } else if (tool == "jfs_debugfs"_L1) {
        usage = parseBlockCounts(report, jfsPatterns());
    } else if (tool == "nilfs-tune"_L1) {
        usage = parseNilfsReport(report);
    } else if (tool == "dosfsck"_L1) {
        usage = parseFatReport(report, device);
    }
    return usage ? u"%1 %2"_s.arg(usage->total).arg(usage->free) : QString();
}

QString mebibytes(qint64 number)
{
    return QString::number(number * 1048576);
}

} // namespace

void UsageReportsTest::reports_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString& tool, const QString& file, const QString& expected) {
        QTest::newRow(qPrintable(tool + u' ' + file)) << tool << file << expected;
    };
    row(u"btrfs"_s, u"show.txt"_s, mebibytes(320) + u' ' + mebibytes(320 - 88));
    row(u"debugfs.reiser4"_s, u"reiser4.txt"_s, u"67108864 67006464"_s);
    row(u"debugreiserfs"_s, u"reiserfs.txt"_s, u"67108864 33472512"_s);
    row(u"dosfsck"_s, u"fat16.txt"_s, u"66959360 58421248"_s);
    row(u"dosfsck"_s, u"fat32.txt"_s, u"66059264 65009152"_s);
    row(u"dumpe2fs"_s, u"ext4.txt"_s, u"67108864 48978944"_s);
    row(u"jfs_debugfs"_s, u"jfs.txt"_s, u"65847296 65703936"_s);
    row(u"nilfs-tune"_s, u"nilfs.txt"_s, u"167772160 150994944"_s);
    row(u"ntfsinfo"_s, u"ntfs.txt"_s, u"67104768 56107008"_s);
    row(u"xfs_db"_s, u"xfs.txt"_s, u"335544320 259915776"_s);
}

void UsageReportsTest::reports()
{
    QFETCH(QString, tool);
    QFETCH(QString, file);
    QFETCH(QString, expected);
    const QString report = recording(tool + u'/' + file);
    QCOMPARE(parsed(tool, report), expected);

    // A report that was cut before a digit gives no answer or the whole one, never a shorter number.
    for (qsizetype length = 0; length < report.size(); ++length) {
        if (!report[length].isDigit()) {
            continue;
        }
        const QString found = parsed(tool, report.first(length));
        QVERIFY2(found.isEmpty() || found == expected, qPrintable(u"%1: %2"_s.arg(length).arg(found)));
    }
}

void UsageReportsTest::oddReports_data()
{
    QTest::addColumn<QString>("tool");
    QTest::addColumn<QString>("report");
    QTest::addColumn<QString>("expected");
    const auto row = [](const QString& tool, const char* name, const QString& report, const QString& expected) {
        QTest::newRow(qPrintable(tool + u' ' + QString::fromUtf8(name))) << tool << report << expected;
    };
    const QString btrfs = u"Label: none\n\tTotal devices 2 FS bytes used 1.00MiB\n"_s;
    row(u"btrfs"_s, "one of several devices",
        btrfs
            + u"\tdevid 1 size 64.00MiB used 8.00MiB path /dev/sdz10\n"_s
              "\tdevid 2 size 32.00MiB used 16.00MiB path /dev/sdz1\n",
        u"33554432 16777216"_s);
    row(u"btrfs"_s, "only another device", btrfs + u"\tdevid 1 size 64.00MiB used 8.00MiB path /dev/sdz10\n"_s, {});
    row(u"btrfs"_s, "a label that looks like the line",
        u"Label: 'Total devices size 90.00MiB used 10.00KiB path /dev/sdz1'\n"_s, {});
    row(u"btrfs"_s, "a label that names the device",
        u"Label: 'Total devices /dev/sdz1 size 9.99GiB used 1.00GiB'\n\tTotal devices 1 FS bytes used 1.00MiB\n"
        "\tdevid 1 size 64.00MiB used 8.00MiB path /dev/sdz1\n"_s,
        u"67108864 58720256"_s);
    row(u"btrfs"_s, "more used than there is", btrfs + u"\tdevid 1 size 8.00MiB used 64.00MiB path /dev/sdz1\n"_s, {});
    row(u"dumpe2fs"_s, "only the reserved count", u"Reserved block count: 5\nFree blocks: 1\nBlock size: 1024\n"_s, {});
    row(u"dumpe2fs"_s, "the product does not fit",
        u"Block count: 9223372036854775807\nFree blocks: 1\nBlock size: 4096\n"_s, {});
    row(u"dumpe2fs"_s, "a number that is too large",
        u"Block count: 99999999999999999999\nFree blocks: 1\nBlock size: 4096\n"_s, {});
    row(u"xfs_db"_s, "only the free ones", u"blocksize = 4096\nfdblocks = 7\n"_s, {});
    row(u"debugfs.reiser4"_s, "only the free ones", u"blksize: 4096\nfree blocks: 7\n"_s, {});
    row(u"jfs_debugfs"_s, "decimal numbers",
        u"Aggregate Block Size: 4096\n[1] dn_mapsize:\t100\n[2] dn_nfree:\t0x10\n"_s, u"409600 65536"_s);
    row(u"jfs_debugfs"_s, "no number", u"Aggregate Block Size: 4096\n[1] dn_mapsize:\t0x\n[2] dn_nfree:\t-1\n"_s, {});
    row(u"dosfsck"_s, "a file with the name of the last line",
        u"  2048 bytes per cluster\nData area starts at byte 0\n"_s
        "Checking file /dev/sdz1: 1 files, 0/9 clusters\n",
        {});
    row(u"dosfsck"_s, "full: less than nothing, deliberately",
        u"  2048 bytes per cluster\nData area starts at byte 512 (sector 1)\n/dev/sdz1: 1 files, 4/4 clusters\n"_s,
        u"8192 -512"_s);
    for (const QString& tool : {u"btrfs"_s, u"dumpe2fs"_s, u"ntfsinfo"_s, u"dosfsck"_s, u"nilfs-tune"_s}) {
        // Deliberate: a silent check of FAT stands for an empty file system.
        row(tool, "nothing", {}, tool == "dosfsck"_L1 ? u"0 0"_s : QString());
        row(tool, "1 MiB", QString(1 << 20, u'9') + u'\n', {});
        row(tool, "overrides", QString(255, QChar(0x202E)) + u"\n%n\n\0\n"_s, {});
    }
}

void UsageReportsTest::oddReports()
{
    QFETCH(QString, tool);
    QFETCH(QString, report);
    QFETCH(QString, expected);
    QCOMPARE(parsed(tool, report), expected);
}

void UsageReportsTest::swapTable()
{
    const QString text = recording(u"swaps/one.txt"_s)
        + u"/swap\\040file file 12 3 99999999999\n/dev/dm-0\tpartition\tx 9223372036854775807 5\n"
          "\n/dev/sda1 partition 1 2\n/dev/sda1 partition 1 2 3 4\n  \n"_s;
    QStringList found;
    const QList<SwapEntry> entries = parseSwapTable(text);
    for (const SwapEntry& entry : entries) {
        found.append(u"%1 %2 %3 %4 %5"_s.arg(entry.fileName, entry.isPartition ? u"partition"_s : u"file"_s)
                         .arg(entry.size)
                         .arg(entry.used)
                         .arg(entry.priority));
    }
    // 1000 to the unit, deliberately.
    QCOMPARE(found,
        (QStringList{u"/dev/sdz1 partition 16380000 0 -2"_s, u"/swap\\040file file 12000 3000 0"_s,
            u"/dev/dm-0 partition 0 0 5"_s}));
}

QTEST_GUILESS_MAIN(UsageReportsTest)
#include "tst_usagereports.moc"
