// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"
#include "support/files.h"
#include "utils/core/partitionusage.h"

#include <QTest>

using namespace Qt::StringLiterals;

class PartitionUsageTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void commands_data();
    void commands();
    void typesWithoutAReader();
    void failedTool();
    void swap();
    void jfsPathNeverReachesTheShell();
    void readFile();
};

namespace {

const QString device = u"/dev/sdz1"_s;

struct Usage
{
    bool isKnown = false;
    qint64 free = 0;
    qint64 total = 0;
};

Usage read(FsType type, const QString& path = device)
{
    Usage usage;
    usage.isKnown = ReadUsage(path, type, usage.free, usage.total);
    return usage;
}

} // namespace

void PartitionUsageTest::commands_data()
{
    QTest::addColumn<QList<int>>("types");
    QTest::addColumn<QString>("file");
    QTest::addColumn<QStringList>("call");
    const auto row = [](const QList<int>& types, const QString& file, const QStringList& call) {
        QTest::newRow(qPrintable(call.first())) << types << file << call;
    };
    row({1}, u"btrfs/show.txt"_s, {u"btrfs"_s, u"filesystem"_s, u"show"_s, device});
    row({2, 7, 8, 9}, u"dosfsck/fat16.txt"_s, {u"dosfsck"_s, u"-n"_s, u"-v"_s, device});
    row({3, 4, 5}, u"dumpe2fs/ext4.txt"_s, {u"dumpe2fs"_s, u"-h"_s, device});
    row({12}, u"jfs_debugfs/jfs.txt"_s, {u"jfs_debugfs"_s, device});
    row({15}, u"nilfs-tune/nilfs.txt"_s, {u"nilfs-tune"_s, u"-l"_s, device});
    row({16}, u"ntfsinfo/ntfs.txt"_s, {u"ntfsinfo"_s, u"-mf"_s, device});
    row({18}, u"debugfs.reiser4/reiser4.txt"_s, {u"debugfs.reiser4"_s, u"--force"_s, u"--yes"_s, device});
    row({19}, u"debugreiserfs/reiserfs.txt"_s, {u"debugreiserfs"_s, u"-d"_s, device});
    row({20}, u"xfs_db/xfs.txt"_s, {u"xfs_db"_s, u"-c sb"_s, u"-c print"_s, u"-r"_s, device});
}

void PartitionUsageTest::commands()
{
    QFETCH(QList<int>, types);
    QFETCH(QString, file);
    QFETCH(QStringList, call);
    FakePrograms programs;
    programs.reply(call, recording(file).toUtf8());
    for (const int type : types) {
        programs.forgetCalls();
        const Usage usage = read(FsType(type));
        QVERIFY(usage.isKnown);
        QVERIFY(0 < usage.free && usage.free < usage.total);
        QCOMPARE(programs.calls(), QList<QStringList>{call});
    }
}

void PartitionUsageTest::typesWithoutAReader()
{
    const FakePrograms programs;
    for (const int type : {0, 6, 10, 11, 14, 17, 21, 22, 23, -1}) {
        const LogCapture log;
        const Usage usage = read(FsType(type));
        QVERIFY(!usage.isKnown && usage.free == -1 && usage.total == -1);
        QCOMPARE(log.messages(), QStringList{u"Failed to read usage: \"/dev/sdz1\""_s});
        QCOMPARE(log.lines().first().level, QtWarningMsg);
        QCOMPARE(log.lines().first().function, u"bool ReadUsage(const QString&, FsType, qint64&, qint64&)"_s);
    }
}

void PartitionUsageTest::failedTool()
{
    FakePrograms programs;
    programs.reply(
        {u"dosfsck"_s}, {.out = recording(u"dosfsck/fat16.txt"_s).toUtf8(), .err = "bad sector", .exitCode = 1});
    programs.reply({u"dumpe2fs"_s}, {.out = recording(u"dumpe2fs/ext4.txt"_s).toUtf8(), .signal = 9});
    const LogCapture log;
    QVERIFY(!read(FsType::Vfat).isKnown);
    QCOMPARE(
        log.messages(), (QStringList{u"dosfsck failed: \"bad sector\""_s, u"Failed to read usage: \"/dev/sdz1\""_s}));
    QVERIFY(!read(FsType::Ext4).isKnown);
}

void PartitionUsageTest::swap()
{
    Sandbox::setSwaps(recording(u"swaps/one.txt"_s).toUtf8() + "/dev/dm-1 partition 1000 400 5\n");
    const Usage used = read(FsType::LinuxSwap, u"/dev/dm-1"_s);
    QVERIFY(used.isKnown);
    QCOMPARE(used.total, 1000000);
    QCOMPARE(used.free, 600000);
    const Usage other = read(FsType::LinuxSwap, u"/dev/dm-10"_s);
    QVERIFY(other.isKnown && other.total == 0 && other.free == 0);
}

void PartitionUsageTest::jfsPathNeverReachesTheShell()
{
    FakePrograms programs;
    programs.reply({u"jfs_debugfs"_s}, recording(u"jfs_debugfs/jfs.txt"_s).toUtf8());
    QVERIFY(read(FsType::Jfs).isKnown);
    programs.forgetCalls();
    for (const QString& path : {u"/dev/x; touch /tmp/hit"_s, u"$(touch /tmp/hit)"_s, u"/tmp/image"_s, QString()}) {
        QVERIFY(!read(FsType::Jfs, path).isKnown);
    }
    QVERIFY(!QFile::exists(u"/tmp/hit"_s));
    QCOMPARE(programs.callLines(), QStringList());
}

void PartitionUsageTest::readFile()
{
    Sandbox::writeFile(u"/tmp/text"_s, "a\r\nä\n");
    QCOMPARE(ReadFile(u"/tmp/text"_s), u"a\nä\n"_s);
    const LogCapture log;
    QCOMPARE(ReadFile(u"/tmp/none"_s), QString());
    QCOMPARE(ReadFile(u"/tmp"_s), QString());
    QCOMPARE(log.messages(),
        (QStringList{u"ReadFileContent() file not found: /tmp/none"_s, u"ReadFile() failed to open/tmp"_s}));
}

int main(int argc, char** argv)
{
    return Sandbox::run<PartitionUsageTest>(argc, argv);
}

#include "tst_partitionusage.moc"
