// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/devicelinks.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class DeviceLinksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void linksToTheSameDevice();
};

void DeviceLinksTest::linksToTheSameDevice()
{
    const QTemporaryDir dev;
    const QDir root(dev.path());
    QVERIFY(root.mkpath(u"mapper"_s) && root.mkpath(u"disk/by-uuid"_s));
    QVERIFY(QFile::link(u"../dm-1"_s, root.filePath(u"mapper/vg-root"_s)));
    QVERIFY(QFile::link(u"../../dm-0"_s, root.filePath(u"disk/by-uuid/1111"_s)));
    QVERIFY(QFile::link(u"../../dm-1"_s, root.filePath(u"disk/by-uuid/2222"_s)));
    QVERIFY(QFile::link(u"../../dm-1"_s, root.filePath(u"disk/by-uuid/3333"_s)));

    // The devices need not exist, and the links are relative to different folders.
    const QString target = linkTarget(root.filePath(u"mapper/vg-root"_s));
    QCOMPARE(target, root.filePath(u"dm-1"_s));
    QCOMPARE(linkNameOf(root.filePath(u"disk/by-uuid"_s), target), u"2222"_s);
    QCOMPARE(linkNameOf(root.filePath(u"disk/by-uuid"_s), root.filePath(u"dm-9"_s)), QString());
    QCOMPARE(linkTarget(root.filePath(u"mapper"_s)), QString());
    QCOMPARE(linkTarget(root.filePath(u"none"_s)), QString());
}

QTEST_GUILESS_MAIN(DeviceLinksTest)
#include "tst_devicelinks.moc"
