// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/core/fstype.h"

#include <QTest>

using namespace Qt::StringLiterals;

class FsTypeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void names();
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

void FsTypeTest::types()
{
    const auto number = [](const QString& name) { return int(fsTypeFromName(name)); };
    QCOMPARE(number({}), 0);
    QCOMPARE(number(u"Unused"_s), 0);
    QCOMPARE(number(u"EXT4"_s), 5);
    QCOMPARE(number(u"LVM2 PV"_s), 14);
    QCOMPARE(number(u"Linux-Swap"_s), 13);
    QCOMPARE(number(u"linux-swap(v1)"_s), 13);
    QCOMPARE(number(u"swap"_s), 22);
    QCOMPARE(number(u" ext4"_s), 22);
    QCOMPARE(number(u"recovery"_s), 21);
}

QTEST_GUILESS_MAIN(FsTypeTest)
#include "tst_fstype.moc"
