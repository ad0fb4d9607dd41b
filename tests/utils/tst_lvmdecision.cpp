// SPDX-License-Identifier: GPL-3.0-or-later
#include "Recording.h"

#include "utils/devicesnapshot.h"
#include "utils/devicetree.h"
#include "utils/lvmdecision.h"

#include <QTest>

using namespace Qt::StringLiterals;

class LvmDecisionTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void decision_data();
    void decision();
};

void LvmDecisionTest::decision_data()
{
    QTest::addColumn<QString>("lsblk");
    QTest::addColumn<QString>("dmsetup");
    QTest::addColumn<QString>("mounts"); // numbers of the recordings' UUIDs; 0 is one that no device has
    QTest::addColumn<QString>("expected");
    const auto row = [](const char* name, const QString& lsblk, const QString& dmsetup, const QString& mounts,
                         const QString& expected) { QTest::newRow(name) << lsblk << dmsetup << mounts << expected; };
    const QString luksLvm = u"composed-luks-lvm"_s;
    const QString luksFs = u"composed-luks-fs"_s;
    const QString twoPvs = u"composed-lvm-two-pvs"_s;
    const QString twoDeps = u"composed-two-pvs"_s;
    row("LVM in LUKS", luksLvm, luksLvm, u"5 6 2"_s, u"lvm encrypted"_s);
    row("LVM in LUKS without dmsetup: lsblk's parents", luksLvm, {}, u"5 6 2"_s, u"lvm encrypted"_s);
    row("LVM in LUKS, only the boot partition", luksLvm, luksLvm, u"2"_s, {});
    row("LVM in LUKS, one is nowhere to be seen", luksLvm, luksLvm, u"2 0"_s, u"encrypted file-system"_s);
    row("duplicates count, deliberately", luksLvm, luksLvm, u"2 2"_s, u"encrypted file-system"_s);
    row("LVM in LUKS, duplicates", luksLvm, luksLvm, u"5 5"_s, u"lvm encrypted file-system"_s);
    row("none is found: says nothing", luksLvm, luksLvm, u"0"_s, {});
    row("file system in LUKS", luksFs, {}, u"2 4"_s, u"encrypted file-system"_s);
    row("file system in LUKS that is not mounted", luksFs, {}, u"2"_s, {});
    row("plain LVM over two disks", twoPvs, twoDeps, u"5 2"_s, u"lvm"_s);
    row("plain LVM without containers, one missing", twoPvs, twoDeps, u"5 0"_s, u"lvm"_s);
}

void LvmDecisionTest::decision()
{
    QFETCH(QString, lsblk);
    QFETCH(QString, dmsetup);
    QFETCH(QString, mounts);
    QFETCH(QString, expected);
    const DeviceSnapshot snapshot(recordedDevices(
        u"lsblk/%1.txt"_s.arg(lsblk), dmsetup.isEmpty() ? QString() : u"dmsetup/%1.txt"_s.arg(dmsetup)));
    const DeviceClasses classes = classifyDevices(snapshot.devices());
    linkDeviceTree(classes);
    QStringList uuids;
    for (const QString& number : mounts.split(u' ', Qt::SkipEmptyParts)) {
        uuids.append(u"0000000%1-0000-4000-8000-00000000000%1"_s.arg(number));
    }
    const LvmDecision found = decideLvm(classes, uuids);
    const QString text = (found.isOnLvm ? u"lvm "_s : QString()) + (found.isEncrypted ? u"encrypted "_s : QString())
        + (found.isEncryptedFileSystem ? u"file-system"_s : QString());
    QCOMPARE(text.trimmed(), expected);
}

QTEST_GUILESS_MAIN(LvmDecisionTest)
#include "tst_lvmdecision.moc"
