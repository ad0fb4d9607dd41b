// SPDX-License-Identifier: GPL-3.0-or-later
#include "Recording.h"

#include "utils/deviceclasses.h"
#include "utils/devicesnapshot.h"
#include "utils/devicetree.h"

#include <QTest>

using namespace Qt::StringLiterals;

class DeviceTreeTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void classes_data();
    void classes();
    void chainToTheDisk();
    void children();
    void oddParents();
    void linksEndWithTheList();
};

namespace {

QString knames(const BlockDeviceList& devices)
{
    QStringList names;
    for (const BlockDevicePtr& device : devices) {
        names.append(device->kname);
    }
    return names.join(u' ');
}

BlockDevicePtr device(const QString& kname, const QString& pkname, const QString& type, int major = 8, int minor = 0)
{
    const auto info = BlockDevicePtr::create();
    info->kname = kname;
    info->pkname = pkname;
    info->type = type;
    info->major = major;
    info->minor = minor;
    return info;
}

} // namespace

void DeviceTreeTest::classes_data()
{
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("composed-luks-lvm") << QStringList{
        u"sda"_s, u"sda3 dm-0"_s, {}, u"sda1 sda2 sda3"_s, u"dm-1 dm-2 dm-3"_s, {}};
    QTest::newRow("composed-luks-fs") << QStringList{u"sda"_s, u"sda3"_s, {}, u"sda1 sda2 sda3"_s, {}, u"dm-0"_s};
    QTest::newRow("composed-lvm-two-pvs")
        << QStringList{u"sda sdb"_s, {}, u"sda5 sdb1"_s, u"sda1 sda5 sdb1"_s, u"dm-0 dm-0"_s, {}};
    QTest::newRow("composed-mixed") << QStringList{u"nvme0n1 sdb"_s, {}, {}, u"nvme0n1p1 nvme0n1p2"_s, {}, {}};
}

void DeviceTreeTest::classes()
{
    QFETCH(QStringList, expected);
    const DeviceClasses found =
        classifyDevices(recordedDevices(u"lsblk/%1.txt"_s.arg(QString::fromUtf8(QTest::currentDataTag()))));
    QCOMPARE((QStringList{knames(found.disks), knames(found.encryptedContainers), knames(found.lvmPhysicalPartitions),
                 knames(found.partitions), knames(found.logicalVolumes), knames(found.openedFileSystems)}),
        expected);
}

void DeviceTreeTest::chainToTheDisk()
{
    const DeviceSnapshot snapshot(
        recordedDevices(u"lsblk/composed-luks-lvm.txt"_s, u"dmsetup/composed-luks-lvm.txt"_s));
    linkDeviceTree(classifyDevices(snapshot.devices()));
    BlockDeviceList chain;
    for (BlockDevicePtr step = snapshot.find(u"vg0-home"_s); step; step = step->parent) {
        chain.append(step);
    }
    QCOMPARE(knames(chain), u"dm-2 dm-0 sda3 sda"_s);
    QCOMPARE(knames(snapshot.find(u"dm-0"_s)->children), u"dm-1 dm-2 dm-3"_s);
    QCOMPARE(knames(snapshot.find(u"sda"_s)->children), u"sda1 sda2 sda3"_s);
}

// Devices of one major number go by their minor one; those of others stay where they were, deliberately.
void DeviceTreeTest::children()
{
    const BlockDevicePtr disk = device(u"sda"_s, {}, u"disk"_s);
    const DeviceSnapshot snapshot({disk, device(u"c"_s, u"sda"_s, u"part"_s, 8, 3),
        device(u"x"_s, u"sda"_s, u"part"_s, 259, 9), device(u"a"_s, u"sda"_s, u"part"_s, 8, 1)});
    linkDeviceTree(classifyDevices(snapshot.devices()));
    QCOMPARE(knames(disk->children), u"c x a"_s);

    const DeviceSnapshot sameMajor({disk, device(u"c"_s, u"sda"_s, u"part"_s, 8, 3),
        device(u"a"_s, u"sda"_s, u"part"_s, 8, 1), device(u"b"_s, u"sda"_s, u"part"_s, 8, 1)});
    linkDeviceTree(classifyDevices(sameMajor.devices()));
    linkDeviceTree(classifyDevices(sameMajor.devices()));
    QCOMPARE(knames(disk->children), u"a b c"_s);
}

void DeviceTreeTest::oddParents()
{
    const BlockDevicePtr own = device(u"sda1"_s, u"sda1"_s, u"part"_s);
    const BlockDevicePtr nameless = device({}, {}, u"part"_s);
    const BlockDevicePtr onLoop = device(u"loop0p1"_s, u"loop0"_s, u"part"_s);
    const DeviceSnapshot snapshot({own, nameless, onLoop, device(u"loop0"_s, {}, u"loop"_s)});
    linkDeviceTree(classifyDevices(snapshot.devices()));
    QVERIFY(!own->parent && !nameless->parent && !onLoop->parent);
}

void DeviceTreeTest::linksEndWithTheList()
{
    QWeakPointer<BlockDeviceInfo> watched;
    BlockDevicePtr kept;
    {
        const DeviceSnapshot snapshot(recordedDevices(u"lsblk/composed-luks-fs.txt"_s));
        linkDeviceTree(classifyDevices(snapshot.devices()));
        watched = snapshot.find(u"sda3"_s);
        kept = snapshot.find(u"sda1"_s);
        QVERIFY(kept->parent);
    }
    QVERIFY(watched.isNull());
    QVERIFY(!kept->parent);
}

QTEST_GUILESS_MAIN(DeviceTreeTest)
#include "tst_devicetree.moc"
