// SPDX-License-Identifier: GPL-3.0-or-later
#include "sandbox/Sandbox.h"
#include "support/FakePrograms.h"
#include "support/LogCapture.h"
#include "support/files.h"
#include "utils/Device.h"
#include "utils/lsblkpairs.h"

#include <QDir>
#include <QFile>
#include <QTest>

#include <functional>
#include <thread>

using namespace Qt::StringLiterals;

class DeviceTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void init();
    void cleanup();
    void collects();
    void failedTools();
    void lookup();
    void usageFromDf();
    void isLvmRunsEverything();
    void mount();
    void umount();
    void mediaMountPoints();
    void mountPointOfUuid();
    void hostileUuids();
    void manyThreads();

private:
    void prepare(const QString& lsblkFile, const QString& dmsetupFile);

    std::unique_ptr<FakePrograms> m_programs;
};

namespace {

const QString lsblkCall = u"lsblk "_s + lsblkPairsArguments().join(u' ');
const QString dmsetupCall = u"dmsetup deps -o blkdevname"_s;

BlockDevicePtr partition(const QString& mountPoint, const QString& type = u"part"_s)
{
    const auto info = BlockDevicePtr::create();
    info->path = u"/dev/sda1"_s;
    info->type = type;
    info->mountPoint = mountPoint;
    return info;
}

} // namespace

void DeviceTest::init()
{
    Sandbox::reset();
    m_programs = std::make_unique<FakePrograms>();
    QDir(u"/dev/mapper"_s).removeRecursively();
    QDir().mkpath(u"/dev/mapper"_s);
    Sandbox::writeFile(u"/dev/mapper/control"_s, {});
}

void DeviceTest::cleanup()
{
    m_programs.reset();
}

void DeviceTest::prepare(const QString& lsblkFile, const QString& dmsetupFile)
{
    m_programs->reply({u"lsblk"_s}, recording(u"lsblk/"_s + lsblkFile).toUtf8());
    m_programs->reply({u"dmsetup"_s}, recording(u"dmsetup/"_s + dmsetupFile).toUtf8());
}

void DeviceTest::collects()
{
    prepare(u"composed-luks-lvm.txt"_s, u"composed-luks-lvm.txt"_s);
    m_programs->reply({u"dmsetup"_s}, "vg0-root: 1 dependencies\t: (sda2)\n");
    QVERIFY(QFile::link(u"../dm-1"_s, u"/dev/mapper/vg0-root"_s));
    QVERIFY(QFile::link(u"/dev/dm-0"_s, u"/dev/mapper/luks_crypt0"_s));
    BlockDeviceList devices;
    Device::collectDevices(devices);
    Device::collectDevices(devices);
    QCOMPARE(devices.size(), 16);
    QCOMPARE(devices[5]->mapperName + u' ' + devices[5]->mapperPath, u"vg0-root /dev/mapper/vg0-root"_s);
    QCOMPARE(devices[5]->pkname, u"sda2"_s);
    QCOMPARE(devices[4]->mapperName, u"luks_crypt0"_s);
    QCOMPARE(devices[6]->mapperName, QString());
    QCOMPARE(m_programs->callLines(), (QStringList{lsblkCall, dmsetupCall, lsblkCall, dmsetupCall}));
}

void DeviceTest::failedTools()
{
    m_programs->reply({u"lsblk"_s}, {.out = recording(u"lsblk/composed-mixed.txt"_s).toUtf8(), .exitCode = 1});
    m_programs->reply({u"dmsetup"_s}, {.err = "Cannot communicate with kernel driver.", .exitCode = 1});
    BlockDeviceList devices;
    Device::collectDevices(devices);
    QVERIFY(devices.isEmpty());
    Device::refreshDevices();
    QVERIFY(!Device::lookupDevice(u"/dev/sdb"_s));
}

void DeviceTest::lookup()
{
    prepare(u"composed-mixed.txt"_s, u"composed-none.txt"_s);
    QVERIFY(QFile::link(u"/dev/sdb"_s, u"/dev/mapper/mapped"_s));
    Device::refreshDevices();
    const auto found = [](const QString& key) {
        const BlockDevicePtr device = Device::lookupDevice(key);
        return device ? device->kname : QString();
    };
    QCOMPARE(found(u"/dev/nvme0n1p1"_s), u"nvme0n1p1"_s);
    QCOMPARE(found(u"nvme0n1"_s), u"nvme0n1"_s);
    QCOMPARE(found(u"1111-AAAA"_s), u"nvme0n1p1"_s);
    QCOMPARE(found(u"EFI"_s), u"nvme0n1p1"_s);
    QCOMPARE(found(u"/media/user/a b"_s), u"nvme0n1p2"_s);
    QCOMPARE(found(u"/dev/disk/by-uuid/1111-AAAA"_s), u"nvme0n1p1"_s);
    QCOMPARE(found(u"/dev/disk/by-partlabel/EFI"_s), u"nvme0n1p1"_s);
    QCOMPARE(found(u"mapped"_s), u"sdb"_s);
    for (const QString& key : {u"/dev/mapper/mapped"_s, u"/dev/loop0"_s, u"1111-aaaa"_s, QString()}) {
        QVERIFY2(found(key).isEmpty(), qPrintable(key));
    }
}

void DeviceTest::usageFromDf()
{
    prepare(u"composed-mixed.txt"_s, u"composed-none.txt"_s);
    m_programs->reply({u"df"_s},
        "Filesystem     Type     1B-blocks        Used   Available Use% Mounted on\n"
        "udev           devtmpfs 4096000000          0  4096000000   0% /dev\n"
        "/dev/nvme0n1p1 vfat      535805952    6299648   529506304   2% /boot/efi\n"
        "/dev/nvme0n1p2 ext4   503000000000 1000000000 502000000000  1% /media/user/a b\n"
        "/dev/sdb       -                 -          -           -   -  /x\n");
    Device::refreshDevices();
    Device::updateUsageFromDf();
    const BlockDevicePtr efi = Device::lookupDevice(u"nvme0n1p1"_s);
    QCOMPARE((QList<qint64>{efi->size, efi->fsUsed, efi->fsAvail}), (QList<qint64>{535805952, 6299648, 529506304}));
    QCOMPARE(efi->usage, u"2%"_s);
    QCOMPARE(Device::lookupDevice(u"nvme0n1p2"_s)->size, 511573303296);
    QCOMPARE(Device::lookupDevice(u"sdb"_s)->size, 0);
    QCOMPARE(m_programs->callLines().last(), u"df -T -B1"_s);
}

void DeviceTest::isLvmRunsEverything()
{
    prepare(u"composed-luks-lvm.txt"_s, u"composed-luks-lvm.txt"_s);
    m_programs->reply({u"df"_s}, {.exitCode = 1});
    const QString root = u"00000005-0000-4000-8000-000000000005"_s;
    bool isEncrypted = false;
    bool flag = true;
    QVERIFY(Device::isLvm({root}, isEncrypted, flag));
    QVERIFY(isEncrypted && !flag);
    QCOMPARE(m_programs->callLines(), (QStringList{lsblkCall, dmsetupCall, u"df -T -B1"_s}));
    QCOMPARE(Device::lookupDevice(root)->parent->kname, u"dm-0"_s);
    QVERIFY(!Device::lookupDevice(u"/dev/mapper/vg0-root"_s)); // deliberate: lsblk's own path is no name

    QVERIFY(!Device::isLvm({}, isEncrypted, flag));
    QVERIFY(!isEncrypted && !flag);
}

void DeviceTest::mount()
{
    m_programs->reply({u"mount"_s});
    m_programs->reply({u"mount"_s});
    m_programs->reply({u"mount"_s}, {.exitCode = 32});
    const BlockDevicePtr info = partition({});
    QVERIFY(Device(info).mount(u"/media/x"_s));
    QCOMPARE(info->mountPoint, u"/media/x"_s);
    QVERIFY(Device(info).mount(u"/media/x"_s)); // there already: again, deliberately
    const BlockDevicePtr broken = partition({});
    QVERIFY(!Device(broken).mount(u"/media/x"_s));
    QCOMPARE(broken->mountPoint, QString());
    QCOMPARE(m_programs->callLines(), QStringList(3, u"mount /dev/sda1 /media/x"_s));

    const BlockDevicePtr elsewhere = partition(u"/media/y"_s);
    QVERIFY(!Device(elsewhere).mount(u"/media/x"_s));
    QCOMPARE(elsewhere->mountPoint, u"/media/y"_s);
    QVERIFY(!Device(partition({}, u"disk"_s)).mount(u"/media/x"_s));
    QVERIFY(!Device(BlockDevicePtr()).mount(u"/media/x"_s));
    QCOMPARE(m_programs->calls().size(), 3);

    prepare(u"composed-luks-lvm.txt"_s, u"composed-luks-lvm.txt"_s);
    Device::refreshDevices();
    m_programs->reply({u"mount"_s, u"/dev/sda3"_s});
    const BlockDevicePtr listed = Device::lookupDevice(u"sda3"_s);
    QVERIFY(Device(listed).mount(u"/media/new"_s));
    QCOMPARE(Device::lookupDevice(u"/media/new"_s), listed);
}

void DeviceTest::umount()
{
    m_programs->reply({u"umount"_s});
    m_programs->reply({u"umount"_s}, {.exitCode = 32});
    const BlockDevicePtr info = partition(u"/media/a b"_s);
    QVERIFY(Device(info).umount());
    QCOMPARE(info->mountPoint, QString());
    QVERIFY(Device(info).umount()); // mounted nowhere
    const BlockDevicePtr busy = partition(u"/media/a b"_s);
    QVERIFY(!Device(busy).umount());
    QCOMPARE(busy->mountPoint, u"/media/a b"_s);
    QVERIFY(!Device(partition(u"/media/d"_s, u"disk"_s)).umount());
    QCOMPARE(m_programs->calls(), QList<QStringList>(2, {u"umount"_s, u"/media/a b"_s}));
}

void DeviceTest::mediaMountPoints()
{
    m_programs->reply({u"lsblk"_s, u"--output"_s, u"MOUNTPOINT"_s}, "MOUNTPOINT\n\n/\n/media/a b\n  /media/c\n");
    QList<QString> mountPoints{u"kept"_s};
    QVERIFY(Device::getAllMediaMountPoint(mountPoints));
    QCOMPARE(mountPoints, (QStringList{u"kept"_s, u"/media/a b"_s, u"/media/c"_s}));

    FakePrograms without;
    without.reply({u"lsblk"_s}, "MOUNTPOINT\n/\n");
    const LogCapture log;
    QVERIFY(!Device::getAllMediaMountPoint(mountPoints));
    QCOMPARE(log.lines().size(), 1);
    QCOMPARE(log.lines().first().level, QtInfoMsg);
    QCOMPARE(log.lines().first().message,
        u"static bool Device::getAllMediaMountPoint(QList<QString>&) , spawnCmd failed, args =  "
        u"QList(\"-c\", \"lsblk --output MOUNTPOINT | grep /media/\") , out =  \"\""_s);
    QCOMPARE(log.lines().first().file, u"./src/utils/Device.cpp"_s);
}

void DeviceTest::mountPointOfUuid()
{
    m_programs->reply({u"lsblk"_s, u"--output"_s, u"UUID,PATH"_s},
        "UUID PATH\nab-cd-2 kestro-other\nab-cd /dev/none\nef kestro/x\n     12 tmpfs\n");
    QString mountPoint = u"kept"_s;
    const LogCapture log;
    QVERIFY(!Device::getMountPointByUUID(u"cd"_s, mountPoint));
    QCOMPARE(log.messages(), QStringList());
    QVERIFY(!Device::getMountPointByUUID(u"99"_s, mountPoint));
    QCOMPARE(log.messages().size(), 1);
    QVERIFY(log.messages().first().startsWith(
        "static bool Device::getMountPointByUUID(const QString&, QString&) , spawnCmd failed, args = "_L1));
    QCOMPARE(mountPoint, u"kept"_s);
}

void DeviceTest::hostileUuids()
{
    QString mountPoint;
    for (const char* uuid : {"", "a; touch /tmp/hit", "$(touch /tmp/hit)", "-f/etc/passwd", "a b", "a\n", "a|b", "é"}) {
        const LogCapture log;
        QVERIFY2(!Device::getMountPointByUUID(QString::fromUtf8(uuid), mountPoint), uuid);
        QVERIFY2(log.messages(QtInfoMsg).size() == 1, uuid);
    }
    QCOMPARE(m_programs->callLines(), QStringList());
    QVERIFY(!QFile::exists(u"/tmp/hit"_s));
}

void DeviceTest::manyThreads()
{
    prepare(u"composed-luks-lvm.txt"_s, u"composed-luks-lvm.txt"_s);
    m_programs->reply({u"df"_s}, "/dev/sda1 vfat 5 3 2 60% /boot/efi\n");
    const auto work = [](bool& isAlwaysFound) {
        for (int round = 0; round < 3; ++round) {
            bool isEncrypted = false;
            bool flag = false;
            Device::isLvm({}, isEncrypted, flag);
            Device::updateUsageFromDf();
            const BlockDevicePtr found = Device::lookupDevice(u"/boot/efi"_s);
            isAlwaysFound = isAlwaysFound && found && found->kname == "sda1"_L1;
        }
    };
    bool firstFound = true;
    bool secondFound = true;
    std::thread first(work, std::ref(firstFound));
    std::thread second(work, std::ref(secondFound));
    first.join();
    second.join();
    QVERIFY(firstFound && secondFound);
}

int main(int argc, char** argv)
{
    return Sandbox::run<DeviceTest>(argc, argv);
}

#include "tst_device.moc"
