// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VBlockPartition.h"
#include "platform/udisks/VDiskManager.h"
#include "sandbox/Sandbox.h"
#include "support/FakeUDisks.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

FakeUDisks::Device ext4(const QString& name)
{
    return FakeUDisks::partition(name, u"uuid-"_s + name);
}

} // namespace

class UDisksTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void nothingThere();
    void oneRoundTripForALookUp();
    void mount_data();
    void mount();
    void mountOptionsReachTheDaemon();
    void watchedMountPoints();
    void unmount();
    void malformedAnswer_data();
    void malformedAnswer();
};

void UDisksTest::nothingThere()
{
    FakeUDisks daemon;
    daemon.addDrive(u"Disk"_s);
    daemon.addDevice(ext4(u"loop0"_s));
    const VDiskManager manager;
    QVERIFY(!manager.createBlockPartition(FakeUDisks::objectPath(u"loop0"_s)));
    for (const QString& path :
        {QString(), u"/"_s, FakeUDisks::objectPath(u"sdz"_s), FakeUDisks::drivePath(u"Disk"_s)}) {
        QVERIFY(!manager.createBlockDevice(path));
        QVERIFY(!manager.createBlockPartition(path));
    }
}

void UDisksTest::oneRoundTripForALookUp()
{
    constexpr int count = 300;
    FakeUDisks daemon;
    for (int i = 0; i < count; ++i) {
        FakeUDisks::Device device = ext4(u"sda%1"_s.arg(i));
        device.table = u"sda"_s;
        daemon.addDevice(device);
    }
    const VDiskManager manager;
    QString seen;
    for (const QString& path : manager.blockDevices()) {
        const auto device = manager.createBlockDevice(path);
        seen += device->device() + device->drive() + device->idType() + device->idUUID();
        seen += manager.createBlockPartition(path)->table() + QString::fromUtf8(device->mountPoints().join());
    }
    QCOMPARE(seen.count("uuid-sda"_L1), count);
    QCOMPARE(daemon.callLines(), QStringList{u"GetManagedObjects"_s});

    // A new manager is a new look-up.
    QCOMPARE(VDiskManager().blockDevices().size(), count);
    QCOMPARE(daemon.callLines().size(), 2);
}

void UDisksTest::mount_data()
{
    QTest::addColumn<QString>("idType");
    QTest::addColumn<QString>("daemonError");
    QTest::addColumn<bool>("mounted");
    QTest::addColumn<QString>("result");
    const QString none;
    QTest::newRow("mounted") << u"ext4"_s << none << false << u"/media/root/uuid-sda1"_s;
    QTest::newRow("error with blanks") << u"ext4"_s << u"Error mounting: bad superblock"_s << false
                                       << u"Error mounting: bad superblock"_s;
    QTest::newRow("error of one word") << u"ext4"_s << u"Failed"_s << false << u"mount failed: Failed"_s;
    QTest::newRow("path-like error") << u"ext4"_s << u"/media/x"_s << false << u"mount failed: /media/x"_s;
    QTest::newRow("error without text") << u"ext4"_s << u""_s << false << u"mount failed"_s;
    QTest::newRow("mounted already") << u"ext4"_s << none << true
                                     << u"Device /dev/sda1 is already mounted at `/media/x'.\n"_s;
    QTest::newRow("no file system") << u"swap"_s << none << false
                                    << u"No such interface “org.freedesktop.UDisks2.Filesystem” on object at path %1"_s
                                           .arg(FakeUDisks::objectPath(u"sda1"_s));
}

void UDisksTest::mount()
{
    QFETCH(QString, idType);
    QFETCH(QString, daemonError);
    QFETCH(bool, mounted);
    FakeUDisks daemon;
    FakeUDisks::Device partition = ext4(u"sda1"_s);
    partition.idType = idType;
    partition.mountError = daemonError;
    partition.mountPoints = mounted ? QByteArrayList{"/media/x"} : QByteArrayList();
    daemon.addDevice(partition);
    const auto device = VDiskManager().createBlockDevice(FakeUDisks::objectPath(u"sda1"_s));
    QTEST(device->mount({}), "result");
}

void UDisksTest::mountOptionsReachTheDaemon()
{
    FakeUDisks daemon;
    daemon.addDevice(ext4(u"sda1"_s));
    const VDiskManager manager;
    const auto device = manager.createBlockDevice(manager.blockDevices().constFirst());
    daemon.forgetCalls();
    QCOMPARE(device->mount({{u"options"_s, u"compress=zstd"_s}}), u"/media/root/uuid-sda1"_s);
    QVERIFY(device->unmount({{u"force"_s, true}}));
    QVERIFY(!device->mount({}).contains(u' '));
    QCOMPARE(daemon.callLines(),
        QStringList({u"Mount sda1 options=compress=zstd"_s, u"Unmount sda1 force=true"_s, u"Mount sda1"_s}));
}

void UDisksTest::watchedMountPoints()
{
    FakeUDisks daemon;
    daemon.addDevice(ext4(u"sda1"_s));
    const VDiskManager manager;
    const auto listed = manager.createBlockDevice(manager.blockDevices().constFirst());
    const auto watched = manager.createBlockDevice(manager.blockDevices().constFirst());
    watched->setWatchChanges(true);
    QVERIFY(watched->mountPoints().isEmpty());
    QCOMPARE(watched->mount({}), u"/media/root/uuid-sda1"_s);
    QCOMPARE(watched->mountPoints(), QByteArrayList{"/media/root/uuid-sda1"});
    QVERIFY(listed->mountPoints().isEmpty());
    QVERIFY(watched->unmount({}));
    QVERIFY(watched->mountPoints().isEmpty());
    watched->setWatchChanges(false);
    daemon.forgetCalls();
    QVERIFY(watched->mountPoints().isEmpty());
    QVERIFY(daemon.calls().isEmpty());
}

void UDisksTest::unmount()
{
    FakeUDisks daemon;
    FakeUDisks::Device partition = ext4(u"sda1"_s);
    partition.mountPoints = {"/media/x"};
    daemon.addDevice(partition);
    const auto device = VDiskManager().createBlockDevice(FakeUDisks::objectPath(u"sda1"_s));
    QVERIFY(device->unmount({}));
    QVERIFY(!device->unmount({}));
    partition.unmountError = u"target is busy"_s;
    daemon.addDevice(partition);
    QVERIFY(!device->unmount({}));
    QCOMPARE(daemon.mountPoints(u"sda1"_s), QStringList{u"/media/x"_s});
}

void UDisksTest::malformedAnswer_data()
{
    QTest::addColumn<QVariant>("answer");
    QTest::newRow("a text") << QVariant(u"objects"_s);
    QTest::newRow("a number") << QVariant(7);
    QTest::newRow("a plain map") << QVariant(QVariantMap{{u"/org/freedesktop/UDisks2"_s, 1}});
    QTest::newRow("a list of texts") << QVariant(QStringList{u"a"_s});
}

void UDisksTest::malformedAnswer()
{
    QFETCH(QVariant, answer);
    FakeUDisks daemon;
    daemon.addDevice(ext4(u"sda1"_s));
    daemon.setObjectsAnswer(answer);
    QVERIFY(VDiskManager().blockDevices().isEmpty());
    QVERIFY(!VDiskManager().createBlockDevice(FakeUDisks::objectPath(u"sda1"_s)));
    daemon.setObjectsAnswer({});
    QCOMPARE(VDiskManager().blockDevices().size(), 1);
}

int main(int argc, char** argv)
{
    return Sandbox::run<UDisksTest>(argc, argv);
}

#include "tst_udisks.moc"
