// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/fstabuuids.h"

#include <QTest>

using namespace Qt::StringLiterals;

class FstabUuidsTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void collected_data();
    void collected();
    void entriesThatAreNone();
};

void FstabUuidsTest::collected_data()
{
    QTest::addColumn<QByteArray>("fstab");
    QTest::addColumn<QString>("expected");
    const QByteArray rootAndData = "UUID=r / ext4 defaults 0 1\nUUID=d /data ext4 defaults 0 2\n";
    const auto row = [&rootAndData](const char* name, const QByteArray& lines, const QString& expected) {
        QTest::newRow(name) << rootAndData + lines << expected;
    };
    row("mounts", "#UUID=x /x ext4 defaults 0 0\n\n/dev/sda9 /y ext4 defaults 0 0\nLABEL=l /z ext4 a 0 0\n", u"r d"_s);
    row("bind deep below", "/data/a/b/c /home none defaults,rbind 0 0\n", u"r d d"_s);
    row("bind of the mount point itself", "/data /srv none bind 0 0\n", u"r d d"_s);
    row("bind of a directory to itself", "/home /home none bind 0 0\n", u"r d r"_s);
    row("bind from the root file system", "/var/opt /opt none bind 0 0\n", u"r d r"_s);
    row("not below a path that only begins so", "/database/x /opt none bind 0 0\n", u"r d r"_s);
    row("through another bind", "/data/home /home none bind 0 0\n/home/u /srv none bind 0 0\n", u"r d d d"_s);
    row("not a path", "none /x none bind 0 0\n", u"r d"_s);
    row("not a bind", "/data/home /home none defaults 0 0\n", u"r d"_s);
    row("a circle", "/a/x /b none bind 0 0\n/b/x /a none bind 0 0\n", u"r d"_s);
    row("UUID that is none", "UUID= /x ext4 a 0 0\nUUID=a=b /y ext4 a 0 0\n", u"r d"_s);
    row("UUID with bind", "UUID=e /e ext4 bind 0 0\n", u"r d e"_s);
    QTest::newRow("no root") << QByteArray("/a/b /c none bind 0 0\n") << QString();
}

void FstabUuidsTest::collected()
{
    QFETCH(QByteArray, fstab);
    QFETCH(QString, expected);
    QCOMPARE(collectFstabUUIDs(FSTab::parseFSTab(fstab)).join(u' '), expected);
}

void FstabUuidsTest::entriesThatAreNone()
{
    FSTabInfoList list;
    list.append(FSTabInfoPtr());
    list.append(FSTabInfoPtr::create());
    QCOMPARE(collectFstabUUIDs(list), QStringList());
}

QTEST_GUILESS_MAIN(FstabUuidsTest)
#include "tst_fstabuuids.moc"
