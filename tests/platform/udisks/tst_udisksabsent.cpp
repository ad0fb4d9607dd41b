// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VBlockPartition.h"
#include "platform/udisks/VDiskManager.h"
#include "sandbox/Sandbox.h"
#include "support/FakeUDisks.h"
#include "support/PrivateBus.h"

#include <QElapsedTimer>
#include <QTest>

using namespace Qt::StringLiterals;

class UDisksAbsentTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noDaemon();
    void noBus();
};

namespace {

bool answersEmptyAtOnce()
{
    QElapsedTimer timer;
    timer.start();
    const VDiskManager manager;
    const bool empty = manager.blockDevices().isEmpty()
        && !manager.createBlockDevice(u"/org/freedesktop/UDisks2/block_devices/sda1"_s)
        && !manager.createBlockPartition(u"/org/freedesktop/UDisks2/block_devices/sda1"_s);
    return empty && timer.elapsed() < 10000;
}

} // namespace

// The daemon may also go away between the listing and a call.
void UDisksAbsentTest::noDaemon()
{
    PrivateBus::start();
    QVERIFY(answersEmptyAtOnce());
    std::unique_ptr<VBlockDevice> device;
    {
        FakeUDisks daemon;
        daemon.addDevice(FakeUDisks::partition(u"sda1"_s, u"1"_s));
        const VDiskManager manager;
        device = manager.createBlockDevice(manager.blockDevices().value(0));
        QVERIFY(device);
    }
    device->setWatchChanges(true);
    QVERIFY(device->mountPoints().isEmpty());
    QVERIFY(device->mount({}).contains(u' '));
    QVERIFY(!device->unmount({}));
    QVERIFY(answersEmptyAtOnce());
}

void UDisksAbsentTest::noBus()
{
    // A process whose connection to a bus stands asks that one.
    QVERIFY(!qEnvironmentVariableIsSet("DBUS_SYSTEM_BUS_ADDRESS"));
    qputenv("DBUS_SYSTEM_BUS_ADDRESS", "unix:path=/run/nothing-listens-here");
    QVERIFY(answersEmptyAtOnce());
}

int main(int argc, char** argv)
{
    return Sandbox::run<UDisksAbsentTest>(argc, argv);
}

#include "tst_udisksabsent.moc"
