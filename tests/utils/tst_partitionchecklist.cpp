// SPDX-License-Identifier: GPL-3.0-or-later
#include "utils/partitionchecklist.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

QList<Utils::BlkIdInfo> parsed(const QStringList& lines)
{
    QList<Utils::BlkIdInfo> devices;
    for (const QString& line : lines) {
        devices.append(Utils::parseBlkIdLine(line));
    }
    return devices;
}

QStringList pathsOf(const QList<PartitionCheckItem>& items)
{
    QStringList paths;
    for (const PartitionCheckItem& item : items) {
        paths.append(item.devicePath);
    }
    return paths;
}

} // namespace

class PartitionCheckListTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void choice_data();
    void choice();
    void classification();
};

void PartitionCheckListTest::choice_data()
{
    QTest::addColumn<QStringList>("lines");
    QTest::addColumn<QStringList>("fileSystems");
    QTest::addColumn<QStringList>("blanks");

    const QString root = uR"(/dev/sda2: UUID="R" TYPE="ext4" PARTUUID="9-2")"_s;
    const QString recovery = uR"(/dev/sda5: LABEL="recovery" UUID="V" TYPE="vfat" PARTUUID="9-5")"_s;
    const QString nvmeRecovery = uR"(/dev/nvme0n1p1: LABEL="recovery" UUID="V" TYPE="vfat")"_s;
    const QStringList none;

    QTest::newRow("only containers") << QStringList{uR"(/dev/sda1: UUID="L" TYPE="crypto_LUKS")"_s,
        uR"(/dev/sda2: UUID="P" TYPE="LVM2_member")"_s}
                                     << none << none;
    QTest::newRow("loop devices") << QStringList{uR"(/dev/loop0: UUID="S" TYPE="squashfs")"_s} << none << none;
    QTest::newRow("whole disk") << QStringList{uR"(/dev/sda: PTUUID="9" PTTYPE="gpt")"_s} << none << none;
    QTest::newRow("partition table's UUID alone")
        << QStringList{uR"(/dev/sdb: PTUUID="9")"_s} << none << QStringList{u"/dev/sdb"_s};
    QTest::newRow("recovery and blanks on its disk")
        << QStringList{recovery, uR"(/dev/sda6: PARTUUID="9-6")"_s, uR"(/dev/sdb1: PARTUUID="8-1")"_s, root}
        << QStringList{u"/dev/sda2"_s} << QStringList{u"/dev/sdb1"_s};
    QTest::newRow("a vfat of another label is no recovery")
        << QStringList{uR"(/dev/sda5: LABEL="RECOVERY" UUID="V" TYPE="vfat")"_s, uR"(/dev/sda6: PARTUUID="9-6")"_s}
        << QStringList{u"/dev/sda5"_s} << QStringList{u"/dev/sda6"_s};
    QTest::newRow("an ext4 labelled recovery is none")
        << QStringList{uR"(/dev/sda5: LABEL="recovery" UUID="V" TYPE="ext4")"_s} << QStringList{u"/dev/sda5"_s} << none;
    QTest::newRow("deliberate: all NVMe disks are one")
        << QStringList{nvmeRecovery, uR"(/dev/nvme1n1p3: PARTUUID="7-3")"_s, uR"(/dev/sda3: PARTUUID="9-3")"_s} << none
        << QStringList{u"/dev/sda3"_s};
    QTest::newRow("blank with a repeated end of its PARTUUID") << QStringList{uR"(/dev/sda3: PARTUUID="9-03")"_s,
        uR"(/dev/sdb3: PARTUUID="8-03")"_s, uR"(/dev/sdc4: PARTUUID="7-04")"_s,
        uR"(/dev/sdd3: PARTUUID="6-03")"_s} << none << QStringList{u"/dev/sda3"_s, u"/dev/sdc4"_s, u"/dev/sdd3"_s};
    QTest::newRow("volumes without any identifier") << QStringList{u"/dev/mapper/vg-a:"_s,
        u"/dev/mapper/vg-b:"_s} << none << QStringList{u"/dev/mapper/vg-a"_s, u"/dev/mapper/vg-b"_s};
}

void PartitionCheckListTest::choice()
{
    QFETCH(QStringList, lines);
    const PartitionCheckCandidates candidates = choosePartitionsToCheck(parsed(lines));
    QTEST(pathsOf(candidates.fileSystems), "fileSystems");
    QTEST(pathsOf(candidates.blanks), "blanks");
}

void PartitionCheckListTest::classification()
{
    // F is in the fstab but not among the system's UUIDs; G has gone from the fstab at hand.
    const FSTabInfoList fstab = FSTab::parseFSTab("UUID=R / ext4 rw 0 1\nUUID=S none swap sw 0 0\n"
                                                  "UUID=N none ext4 noauto 0 0\nUUID=F /f ext4 rw 0 2\n");
    QList<PartitionCheckItem> items;
    for (const QString& uuid : {u"R"_s, u"S"_s, u"N"_s, u"X"_s, u"F"_s, u"G"_s}) {
        items.append(PartitionCheckItem{{}, {}, uuid, {}, {}, 0, -1});
    }
    classifyPartitions(items, {u"R"_s, u"S"_s, u"N"_s, u"G"_s}, fstab);
    QStringList found;
    for (const PartitionCheckItem& item : std::as_const(items)) {
        found.append(u"%1 %2 %3"_s.arg(item.uuid).arg(item.deviceType).arg(item.mountPoint));
    }
    QCOMPARE(found, (QStringList{u"R 1 /"_s, u"S 1 SWAP"_s, u"N 1 none"_s, u"X 0 "_s, u"F 0 "_s, u"G 1 "_s}));
}

QTEST_GUILESS_MAIN(PartitionCheckListTest)
#include "tst_partitionchecklist.moc"
