// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/FsTab.h"

#include "support/LogCapture.h"
#include "support/files.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QString fieldsOf(const FSTabInfoPtr& entry)
{
    return QStringList{entry->device, entry->mountPoint, entry->type, entry->options, entry->dump, entry->pass}.join(
        u'|');
}

FSTabInfoPtr entryOf(const QByteArray& line)
{
    return FSTab::parseFSTab(line).first();
}

} // namespace

class FsTabTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lines_data();
    void lines();
    void linesOfAFile();
    void missingAndUnreadableFile();
    void uuidOfDevice();
    void rootUuid_data();
    void rootUuid();
    void binds();
    void emptyUuidNamesNothing();
};

void FsTabTest::lines_data()
{
    QTest::addColumn<QByteArray>("line");
    QTest::addColumn<QString>("fields");
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("isComment");
    QTest::addColumn<bool>("isEmpty");

    const QString none = u"||||0|0"_s;
    const auto row = [](const char* name, const QByteArray& line, const QString& fields) {
        QTest::newRow(name) << line << fields << QString::fromUtf8(line) << false << false;
    };
    row("tabs and blanks", "\tUUID=a \t / ext4\tdefaults  1\t2 ", u"UUID=a|/|ext4|defaults|1|2"_s);
    row("escapes stay", "/dev/sda1 /my\\040disk ext4 rw 0 0", u"/dev/sda1|/my\\040disk|ext4|rw|0|0"_s);
    row("not ASCII", "UUID=a /dät\u00e4 ext4 rw 0 0", u"UUID=a|/dätä|ext4|rw|0|0"_s);
    row("deliberate: four fields are no mount", "UUID=abc / ext4 defaults", none);
    row("deliberate: seven fields are no mount", "UUID=abc / ext4 defaults 0 1 # root", none);
    QTest::newRow("comment of six words")
        << QByteArray("  #UUID=a / ext4 rw 0 0") << none << u"  #UUID=a / ext4 rw 0 0"_s << true << false;
    QTest::newRow("blank") << QByteArray(" \t ") << none << QString() << false << true;
}

void FsTabTest::lines()
{
    QFETCH(QByteArray, line);
    const FSTabInfoPtr entry = entryOf(line);
    QTEST(fieldsOf(entry), "fields");
    QTEST(entry->text, "text");
    QTEST(entry->isComment, "isComment");
    QTEST(entry->isEmpty, "isEmpty");
}

void FsTabTest::linesOfAFile()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(u"fstab"_s);
    writeWholeFile(path, "# first\n\nUUID=a / ext4 rw 0 1\r\nUUID=b none swap sw 0 0\n");

    const FSTabInfoList list = FSTab::getFSTabFromFile(path);
    QCOMPARE(list.size(), 5);
    QVERIFY(list[0]->isComment);
    QVERIFY(list[1]->isEmpty);
    QCOMPARE(fieldsOf(list[2]), u"UUID=a|/|ext4|rw|0|1"_s);
    QCOMPARE(list[2]->text, u"UUID=a / ext4 rw 0 1"_s);
    QCOMPARE(FSTab::findByUUID(list, u"b"_s), list[3]);
    QVERIFY(list[4]->isEmpty);
}

void FsTabTest::missingAndUnreadableFile()
{
    const QTemporaryDir dir;
    const QString missing = dir.filePath(u"fstab"_s);
    const QString warning = u"getFSTabFromFile file not exists, fileName:  \"%1\""_s.arg(missing);
    {
        const LogCapture log;
        QVERIFY(FSTab::getFSTabFromFile(missing).isEmpty());
        QCOMPARE(log.messages(QtWarningMsg), QStringList{warning});
        QCOMPARE(log.find(warning).function, u"static FSTabInfoList FSTab::getFSTabFromFile(const QString&)"_s);
        QCOMPARE(log.find(warning).file, u"./src/utils/FsTab.cpp"_s);
    }

    QTest::failOnWarning(QRegularExpression(u".*"_s));
    QVERIFY(FSTab::getFSTabFromFile(dir.path()).isEmpty());
}

void FsTabTest::uuidOfDevice()
{
    const auto uuid = [](const QByteArray& device) { return FSTab::getUUID(entryOf(device + " /x ext4 rw 0 0")); };
    QCOMPARE(uuid("UUID=1234-ABCD"), u"1234-ABCD"_s);
    QCOMPARE(uuid("UUID==a"), u"a"_s);
    for (const char* device : {"UUID=", "UUID=a=b", "uuid=a", "PARTUUID=a"}) {
        QVERIFY2(uuid(device).isEmpty(), device);
    }
}

void FsTabTest::rootUuid_data()
{
    QTest::addColumn<QByteArray>("fstab");
    QTest::addColumn<bool>("isRoot");
    QTest::newRow("at /") << QByteArray("UUID=abc / ext4 rw 0 1") << true;
    QTest::newRow("only the first entry counts")
        << QByteArray("UUID=abc /a ext4 rw 0 1\nUUID=abc / ext4 rw 0 1") << false;
    QTest::newRow("not listed") << QByteArray("UUID=ABC / ext4 rw 0 1") << false;
}

void FsTabTest::rootUuid()
{
    QFETCH(QByteArray, fstab);
    const QTemporaryDir root;
    writeWholeFile(root.filePath(u"etc/fstab"_s), fstab);
    QTEST(FSTab::isRootUUID(u"abc"_s, root.path()), "isRoot");
}

void FsTabTest::binds()
{
    const FSTabInfoList list = FSTab::parseFSTab("UUID=a /a none defaults,rbind 0 0\n"
                                                 "UUID=b /b ext4 defaults 0 0\n"
                                                 "# UUID=c /c none bind 0 0\n"
                                                 "/data/home /home none bind 0 0\n"
                                                 "UUID=d /d none bind 0 0\n");
    QCOMPARE(FSTab::getBindUUIDs(list), (QStringList{u"a"_s, u"d"_s}));
    QVERIFY(FSTab::hasBindForUUID(list, u"d"_s));
    QVERIFY(!FSTab::hasBindForUUID(list, u"b"_s));
    QVERIFY(!FSTab::hasBindForUUID(list, u"c"_s));
}

void FsTabTest::emptyUuidNamesNothing()
{
    const FSTabInfoList list = FSTab::parseFSTab("# comment\n/data/home / none bind 0 0\n");
    QVERIFY(!FSTab::findByUUID(list, {}));
    QVERIFY(!FSTab::hasBindForUUID(list, {}));
    QCOMPARE(FSTab::getUUID({}), QString());
}

QTEST_GUILESS_MAIN(FsTabTest)
#include "tst_fstab.moc"
