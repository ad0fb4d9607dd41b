// SPDX-License-Identifier: GPL-3.0-or-later
#include "platform/udisks/VBlockDevice.h"
#include "platform/udisks/VDiskManager.h"
#include "sandbox/Sandbox.h"
#include "support/FakeUDisks.h"

#include <QTest>

using namespace Qt::StringLiterals;

/// A journal replay takes longer than the 25 seconds after which the bus gives up by itself.
class UDisksSlowTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void mountTakesLongerThanTheBusWaits();
};

void UDisksSlowTest::mountTakesLongerThanTheBusWaits()
{
    FakeUDisks daemon;
    FakeUDisks::Device partition;
    partition.name = u"sda1"_s;
    partition.idType = u"ext4"_s;
    partition.mountDirectory = u"/media/slow"_s;
    partition.mountDelayMs = 27000;
    daemon.addDevice(partition);
    const VDiskManager manager;
    QCOMPARE(manager.createBlockDevice(manager.blockDevices().constFirst())->mount({}), u"/media/slow"_s);
}

int main(int argc, char** argv)
{
    return Sandbox::run<UDisksSlowTest>(argc, argv);
}

#include "tst_udisksslow.moc"
