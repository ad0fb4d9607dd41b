// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/fstype.h"

#include <QTest>

using namespace Qt::StringLiterals;

class FsTypeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names();
    void types_data();
    void types();
};

void FsTypeTest::names()
{
    QStringList names;
    for (int number = -1; number <= 23; ++number) {
        names.append(fsTypeName(FsType(number)));
    }
    QCOMPARE(names.join(u','),
        u",,btrfs,efi,ext2,ext3,ext4,f2fs,fat16,fat32,vfat,hfs,hfsplus,jfs,linux-swap,lvm2 pv,nilfs2,ntfs,,reiser4,"
        u"reiserfs,xfs,recovery,unknown,"_s);
}

void FsTypeTest::types_data()
{
    QTest::addColumn<QString>("name");
    QTest::addColumn<int>("number");
    const auto row = [](const QString& name, int number) { QTest::newRow(qPrintable(name)) << name << number; };
    row({}, 0);
    row(u"Unused"_s, 0);
    row(u"EXT4"_s, 5);
    row(u"LVM2 PV"_s, 14);
    row(u"Linux-Swap"_s, 13);
    row(u"linux-swap(v1)"_s, 13);
    row(u"swap"_s, 22);
    row(u" ext4"_s, 22);
    row(u"recovery"_s, 21);
}

void FsTypeTest::types()
{
    QFETCH(QString, name);
    QFETCH(int, number);
    QCOMPARE(int(fsTypeFromName(name)), number);
}

QTEST_GUILESS_MAIN(FsTypeTest)
#include "tst_fstype.moc"
