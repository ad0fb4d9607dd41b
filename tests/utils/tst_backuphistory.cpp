// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/backuphistory.h"

#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class BackupHistoryTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void record_data();
    void record();
    void directory();
    void completeness_data();
    void completeness();
    void day();
    void order();
};

void BackupHistoryTest::initTestCase()
{
    qputenv("TZ", "UTC");
}

void BackupHistoryTest::record_data()
{
    QTest::addColumn<QByteArray>("json");
    QTest::addColumn<QStringList>("backups"); // "uuid time directory"

    const auto row = [](const char* name, const char* json, const QStringList& backups) {
        QTest::newRow(name) << QByteArray(json) << backups;
    };
    row("in key order", R"({"b":{"17":"/x"},"B":{"9":"/z","10":"y"}})", {u"B 10 y"_s, u"B 9 /z"_s, u"b 17 /x"_s});
    row("a partition that is no object", R"({"a":"/x","b":{"1":"/x"},"c":[{"1":"/x"}]})", {u"b 1 /x"_s});
    row("directories that are no text", R"({"b":{"1":5,"2":null,"3":"/x"}})", {u"b 3 /x"_s});
    row("directories that climb out", R"({"b":{"1":"/../etc","2":"..","3":"/x/..","4":"/a..b"}})", {u"b 4 /a..b"_s});
    row("array", R"([{"b":{"1":"/x"}}])", {});
    row("broken", R"({"b":{"1":"/x"})", {});
}

void BackupHistoryTest::record()
{
    QFETCH(QByteArray, json);
    QStringList backups;
    for (const RecordedPartition& partition : parseBackupRecord(json)) {
        for (const RecordedBackup& backup : partition.backups) {
            backups.append(QStringList{partition.uuid, backup.createTime, backup.directory}.join(u' '));
        }
    }
    QTEST(backups, "backups");
}

void BackupHistoryTest::directory()
{
    QCOMPARE(backupDirectory(u"/media/%2"_s, u"/backup/1"_s), u"/media/%2/backup/1"_s);
    QCOMPARE(backupDirectory(u"/media/d"_s, u"backup"_s), u"/media/d/backup"_s);
    QCOMPARE(backupDirectory(u"/"_s, u"backup"_s), u"/backup"_s);
}

void BackupHistoryTest::completeness_data()
{
    QTest::addColumn<QStringList>("files");
    QTest::addColumn<bool>("isComplete");
    QTest::newRow("image and two archives") << QStringList{u"a.kim"_s, u"opt.tar"_s, u"var.tar"_s} << true;
    QTest::newRow("two images") << QStringList{u"a.kim"_s, u"B.KIM"_s, u"opt.tar"_s, u"var.tar"_s} << true;
    QTest::newRow("three archives") << QStringList{u"a.kim"_s, u"a.tar"_s, u"opt.tar"_s, u"var.tar"_s} << false;
    QTest::newRow("one archive") << QStringList{u"a.kim"_s, u"opt.tar"_s, u".hidden.tar"_s} << false;
    QTest::newRow("no image") << QStringList{u"a.kim.part"_s, u"opt.tar"_s, u"var.tar"_s} << false;
}

void BackupHistoryTest::completeness()
{
    QFETCH(QStringList, files);
    const QTemporaryDir dir;
    for (const QString& name : files) {
        QVERIFY(QFile(dir.filePath(name)).open(QIODevice::WriteOnly));
    }
    QTEST(listBackupFiles(dir.path()).isComplete(), "isComplete");
    QVERIFY(!listBackupFiles(dir.filePath(u"gone"_s)).isComplete());
}

void BackupHistoryTest::day()
{
    QCOMPARE(backupDay(u"4294967295"_s), u"2106/02/07"_s);
    QCOMPARE(backupDay(u"4294967296"_s), u"1970/01/01"_s);
    QCOMPARE(backupDay(u"abc"_s), u"1970/01/01"_s);
}

void BackupHistoryTest::order()
{
    QList<BackupFileInfo> list;
    for (const char* time : {"abc", "9", "1600000000", "1700000000", "10"}) {
        list.append({{}, {}, {}, QString::fromLatin1(time)});
    }
    sortNewestFirst(list);
    QStringList times;
    for (const BackupFileInfo& info : std::as_const(list)) {
        times.append(info.createTime);
    }
    QCOMPARE(times, (QStringList{u"1700000000"_s, u"1600000000"_s, u"10"_s, u"9"_s, u"abc"_s}));
}

QTEST_GUILESS_MAIN(BackupHistoryTest)
#include "tst_backuphistory.moc"
